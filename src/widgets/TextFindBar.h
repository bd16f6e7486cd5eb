#pragma once

#include "widgets/FindBar.h"

class QTextEdit;

/// The line below a text in which words are looked for in it; Ctrl+F asks for it. Past the end it goes on at the other.
class TextFindBar : public FindBar {
public:
    TextFindBar(QTextEdit& text, QWidget* parent);

protected:
    void find(bool backward, bool fromHere) override;
    void closed() override;
    QString prompt() const override;
    QString result() const override;

private:
    QTextEdit& text_;
    bool found_ = true;

    void openWithSelection();
};
