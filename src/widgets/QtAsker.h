#pragma once

#include "platform/ui/Asker.h"

class QWidget;

/// Asks with the dialogs of the window system, above the window that is active.
class QtAsker : public ui::Asker {
public:
    ui::Answer messageBox(const ui::Box& box) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title, const QString& proposal) override;
    std::optional<QString> chooseFile(const ui::FileChoice& choice) override;
    std::optional<QString> chooseFolder(const QString& title, const QString& folder) override;
    bool openFile(const QString& path) override;
    void setClipboard(const QString& text, const QString& html) override;
    void setPointer(ui::Pointer pointer) override;
    ui::Pointer pointer() const override { return pointer_; }
    void beep() override;
    void eventTurn() override;

private:
    ui::Pointer pointer_ = ui::Pointer::Default;
};
