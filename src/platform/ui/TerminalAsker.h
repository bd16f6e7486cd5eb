#pragma once

#include "platform/ui/Asker.h"

#include <QTextStream>
#include <functional>

namespace ui {

/// Shows boxes on the terminal. Where nobody sits at one, a question is answered with the button that changes
/// nothing.
class TerminalAsker : public Asker {
public:
    /// Standard input and standard error.
    TerminalAsker();
    /// Given streams; `interactive` tells whether somebody answers.
    TerminalAsker(QTextStream& in, QTextStream& out, bool interactive);

    /// Tells whether a box marks the run as failed; by default an exclamation, a critical box, and one that
    /// offers to retry.
    std::function<bool(const Box&)> isFailure;
    /// True once a box that marks the run as failed was shown.
    bool failed() const { return failed_; }
    void forgetFailure() { failed_ = false; }

    Answer messageBox(const Box& box) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title, const QString& proposal) override;
    std::optional<QString> chooseFile(const FileChoice& choice) override;
    std::optional<QString> chooseFolder(const QString& title, const QString& folder) override;
    std::optional<unsigned> chooseColor(const QString& title, unsigned proposal) override;
    void setClipboard(const QString&, const QString&) override {}
    void copyPicture(const QImage&, const QByteArray&) override {}
    void setPointer(Pointer pointer) override { pointer_ = pointer; }
    Pointer pointer() const override { return pointer_; }

private:
    QTextStream standardIn_, standardError_;
    QTextStream& in_;
    QTextStream& out_;
    bool interactive_;
    bool failed_ = false;
    Pointer pointer_ = Pointer::Default;

    std::optional<QString> ask(const QString& prompt);
};

/// The terminal's asker of the process, which answers until another is set.
TerminalAsker& terminalAsker();

} // namespace ui
