#pragma once

#include "platform/ui/Asker.h"

/// The printers of the system as the print dialog offers them, and the current one of them.
class PrinterChoice {
public:
    /// The default printer is current; without one none is.
    explicit PrinterChoice(std::vector<ui::Printer> printers);

    bool isEmpty() const { return printers_.empty(); }
    QStringList names() const;
    /// Place of the current printer; -1 for none.
    int current() const { return current_; }
    /// Makes the printer of that name the current one; nothing changes if there is none.
    void choose(const QString& name);
    /// Code of the paper of the current printer; 0 for none.
    int paper() const;
    /// Paper, place and name of the current printer; empty for none. @param on the word between paper and place
    QString printername(const QString& on) const;

private:
    std::vector<ui::Printer> printers_;
    int current_ = -1;
};
