#pragma once

#include "platform/ui/Asker.h"

#include <deque>
#include <functional>
#include <vector>

/// An asker that answers from a script and records every text shown. A box that needs a choice and has no answer left
/// fails the running test; a box with only OK is answered and recorded.
class ScriptedAsker : public ui::Asker {
public:
    ScriptedAsker();
    ~ScriptedAsker() override;

    /// @param meanwhile what the user does while the box is open
    ScriptedAsker& answer(ui::Answer answer, std::function<void()> meanwhile = {});
    ScriptedAsker& input(const QString& text);
    /// A prompt that is cancelled.
    ScriptedAsker& noInput();
    /// @param text nothing for Cancel
    ScriptedAsker& edited(std::optional<QString> text, std::function<void()> meanwhile = {});
    ScriptedAsker& order(std::optional<std::vector<int>> places, std::function<void()> meanwhile = {});
    /// The first entry of that text; an empty text for Cancel.
    ScriptedAsker& fromTree(const QString& text);
    ScriptedAsker& file(const QString& path);
    /// 0xRRGGBB; nothing for Cancel.
    ScriptedAsker& color(std::optional<unsigned> rgb);

    std::vector<ui::Box> boxes; ///< every box shown, in order
    /// What was asked besides boxes.
    struct Prompt {
        QString prompt, title, proposal;
    };
    std::vector<Prompt> prompts;
    std::vector<std::pair<QString, QString>> editors; ///< caption and text of each
    std::vector<ui::LineOrder> orders;
    std::vector<ui::TreeChoice> trees;
    std::function<void()> onEventTurn;
    std::function<std::unique_ptr<ui::ProgressView>(bool mayStop)> onProgress;
    QString clipboardText, clipboardHtml;
    ui::FileChoice lastChoice; ///< what was last asked of a file; of a folder its title and where it begins
    /// Hears of every picture that is copied.
    std::function<void(const QImage& picture, const QByteArray& svg)> onPicture;
    std::vector<ui::Printer> systemPrinters;
    mutable int printersAsked = 0;
    /// Chooses what is printed; without one the answer is that of Cancel.
    std::function<std::optional<ui::PrintJob>(const ui::PrintJob& proposal, int pages)> onPrintJob;
    /// Opens a printer; without one it is not there any more.
    std::function<std::shared_ptr<QPagedPaintDevice>(const ui::PrintJob& job)> onOpenPrinter;
    std::optional<bool> checks; ///< what the user leaves the check boxes of boxes at
    QStringList opened;         ///< files handed to other applications
    bool opens = true;          ///< there is an application for them

    QStringList texts() const;
    /// Text of the last box, empty if none was shown.
    QString lastText() const { return boxes.empty() ? QString() : boxes.back().text; }

    ui::Answer messageBox(const ui::Box& box) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title, const QString& proposal) override;
    std::optional<QString> editText(const QString& caption, const QString& text, const QString& kept) override;
    std::optional<std::vector<int>> orderLines(const ui::LineOrder& order) override;
    std::optional<int> chooseFromTree(const ui::TreeChoice& choice) override;
    std::optional<QString> chooseFile(const ui::FileChoice& choice) override;
    std::optional<QString> chooseFolder(const QString& title, const QString& folder) override;
    bool openFile(const QString& path) override {
        opened << path;
        return opens;
    }
    std::optional<unsigned> chooseColor(const QString& title, unsigned proposal) override;
    std::vector<ui::Printer> printers() const override {
        ++printersAsked;
        return systemPrinters;
    }
    std::optional<ui::PrintJob> choosePrintJob(const ui::PrintJob& proposal, int pages) override {
        return onPrintJob ? onPrintJob(proposal, pages) : std::nullopt;
    }
    std::shared_ptr<QPagedPaintDevice> openPrinter(const ui::PrintJob& job) override {
        return onOpenPrinter ? onOpenPrinter(job) : nullptr;
    }
    void setClipboard(const QString& text, const QString& html) override;
    void copyPicture(const QImage& picture, const QByteArray& svg) override {
        if (onPicture)
            onPicture(picture, svg);
    }
    void setPointer(ui::Pointer pointer) override { pointer_ = pointer; }
    ui::Pointer pointer() const override { return pointer_; }
    std::unique_ptr<ui::ProgressView> openProgress(bool mayStop) override {
        return onProgress ? onProgress(mayStop) : nullptr;
    }
    void eventTurn() override;

private:
    ui::Asker* before_;
    ui::Pointer pointer_ = ui::Pointer::Default;
    std::deque<std::pair<ui::Answer, std::function<void()>>> answers_;
    std::deque<std::optional<QString>> inputs_, files_;
    std::deque<QString> fromTree_;
    std::deque<std::pair<std::optional<QString>, std::function<void()>>> edited_;
    std::deque<std::pair<std::optional<std::vector<int>>, std::function<void()>>> order_;
    std::deque<std::optional<unsigned>> colors_;
};
