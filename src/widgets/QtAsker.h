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
    std::optional<unsigned> chooseColor(const QString& title, unsigned proposal) override;
    std::optional<QString> editText(const QString& caption, const QString& text, const QString& kept) override;
    std::optional<std::vector<int>> orderLines(const ui::LineOrder& order) override;
    std::optional<int> chooseFromTree(const ui::TreeChoice& choice) override;
    bool openFile(const QString& path) override;
    std::vector<ui::Printer> printers() const override;
    std::optional<ui::PrintJob> choosePrintJob(const ui::PrintJob& proposal, int pages) override;
    std::shared_ptr<QPagedPaintDevice> openPrinter(const ui::PrintJob& job) override;
    void setClipboard(const QString& text, const QString& html) override;
    void copyPicture(const QImage& picture, const QByteArray& svg) override;
    void setPointer(ui::Pointer pointer) override;
    ui::Pointer pointer() const override { return pointer_; }
    void beep() override;
    std::unique_ptr<ui::ProgressView> openProgress(bool mayStop) override;
    void eventTurn() override;

    /// Makes the window that shows progress; without one nothing is shown of it.
    std::function<std::unique_ptr<ui::ProgressView>(bool mayStop)> progressWindow;
    /// Show the windows for a text, an order, a choice from a tree and a printout; without one the answer is that of
    /// Cancel.
    std::function<std::optional<QString>(const QString& caption, const QString& text, const QString& kept)> textEditor;
    std::function<std::optional<std::vector<int>>(const ui::LineOrder& order)> lineOrderer;
    std::function<std::optional<int>(const ui::TreeChoice& choice)> treeChooser;
    std::function<std::optional<ui::PrintJob>(const ui::PrintJob& proposal, int pages)> printJobChooser;

private:
    ui::Pointer pointer_ = ui::Pointer::Default;
};
