#include "tables/TableBuilder.h"

#include "app/globals.h"
#include "platform/ui/Asker.h"

#include <algorithm>

int estimatedTextWidth(const QString& text) {
    return static_cast<int>(text.size()) * 80;
}

void showTableWarning(const QString& text) {
    ui::asker().messageBox({.text = TranslateText(text), .icon = ui::Icon::Exclamation});
}

void ColumnWidths::note(int column, const QString& text, bool emphasized) {
    if (!on_ || text.isEmpty())
        return;
    const auto index = static_cast<size_t>(column);
    if (index >= widest_.size())
        widest_.resize(index + 1, 0.0);
    auto measured = measured_.constFind(text);
    if (measured == measured_.constEnd())
        measured = measured_.insert(text, textWidth_(text));
    const double width = 1.2 * *measured + (emphasized ? 50 : 0);
    widest_[index] = std::max(widest_[index], width);
}

int ColumnWidths::width(int column) const {
    const auto index = static_cast<size_t>(column);
    return index < widest_.size() ? static_cast<int>(widest_[index]) : 0;
}
