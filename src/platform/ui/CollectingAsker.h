#pragma once

#include "platform/ui/Asker.h"

#include <utility>

namespace ui {

/// For a step over many things that nobody sits beside: as long as it lives no box opens. What a box says is collected
/// and answered with the button that changes nothing; pointer and event turns are those of the asker before.
class CollectingAsker : public Asker {
public:
    CollectingAsker() : outer_(asker()), before_(setAsker(this)) {}
    ~CollectingAsker() override { setAsker(before_); }
    CollectingAsker(const CollectingAsker&) = delete;
    CollectingAsker& operator=(const CollectingAsker&) = delete;

    /// What has been said since the last call, each text once.
    QStringList take() { return std::exchange(texts_, {}); }

    Answer messageBox(const Box& box) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title, const QString& proposal) override;
    std::optional<QString> chooseFile(const FileChoice& choice) override;
    std::optional<QString> chooseFolder(const QString& title, const QString& folder) override;
    std::optional<unsigned> chooseColor(const QString& title, unsigned proposal) override;
    void setClipboard(const QString&, const QString&) override {}
    void copyPicture(const QImage&, const QByteArray&) override {}
    std::vector<Printer> printers() const override { return outer_.printers(); }
    std::shared_ptr<QPagedPaintDevice> openPrinter(const PrintJob& job) override { return outer_.openPrinter(job); }
    void setPointer(Pointer pointer) override { outer_.setPointer(pointer); }
    Pointer pointer() const override { return outer_.pointer(); }
    void eventTurn() override { outer_.eventTurn(); }

private:
    Asker& outer_;
    Asker* before_; ///< as it was set; null for the terminal's
    QStringList texts_;

    void collect(const QString& text);
};

} // namespace ui
