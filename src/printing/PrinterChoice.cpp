#include "printing/PrinterChoice.h"

#include "printing/paperNames.h"

using namespace Qt::StringLiterals;

PrinterChoice::PrinterChoice(std::vector<ui::Printer> printers) : printers_(std::move(printers)) {
    for (int i = 0; i < static_cast<int>(printers_.size()) && current_ < 0; ++i)
        if (printers_[static_cast<size_t>(i)].isDefault)
            current_ = i;
}

QStringList PrinterChoice::names() const {
    QStringList names;
    for (const ui::Printer& printer : printers_)
        names << printer.name;
    return names;
}

void PrinterChoice::choose(const QString& name) {
    if (const qsizetype place = names().indexOf(name); place >= 0)
        current_ = static_cast<int>(place);
}

int PrinterChoice::paper() const {
    return current_ < 0 ? 0 : printers_[static_cast<size_t>(current_)].paper;
}

QString PrinterChoice::printername(const QString& on) const {
    if (current_ < 0)
        return {};
    const ui::Printer& printer = printers_[static_cast<size_t>(current_)];
    return Paper::name(printer.paper) + u' ' + on + u' ' + printer.place + u"   "_s + printer.name;
}
