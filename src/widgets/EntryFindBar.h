#pragma once

#include "widgets/FindBar.h"

#include <functional>

class PreviewModel;

/// The line in which a preview's variable is looked for by its name or label.
class EntryFindBar : public FindBar {
public:
    EntryFindBar(PreviewModel& model, QWidget* parent);

    std::function<void()> onFound, onClosed;

protected:
    void find(bool backward, bool fromHere) override;
    void closed() override;
    QString prompt() const override;
    QString result() const override;

private:
    PreviewModel& model_;
};
