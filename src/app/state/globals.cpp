#include "app/globals.h"

qint16 gLanguage = 0;
bool gErrorTrapping = false;
int gBusy = 0;
std::array<qint32, 7> gWindowSerials{};
ViewTable gViews;
CatalogueOptions gCatalogueOptions;
void (*gUnloadWindows)() = nullptr;

void ViewTable::resize(int last) {
    rows_.assign(static_cast<size_t>(last) + 1, {});
}

QString ViewTable::at(int row, int column) const {
    if (row < 0 || row > lastRow())
        return {};
    return rows_[static_cast<size_t>(row)].at(static_cast<size_t>(column));
}

void ViewTable::set(int row, int column, const QString& text) {
    rows_.at(static_cast<size_t>(row)).at(static_cast<size_t>(column)) = text;
}

void ViewTable::removeRow(int row) {
    if (row >= 0 && row <= lastRow())
        rows_.erase(rows_.begin() + row);
}
