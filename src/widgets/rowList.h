#pragma once

#include <QHeaderView>
#include <QTableView>

/// Makes a table one to read and select by rows: no grid, no editing, no heading at the left, Tab leaves it.
inline void showAsRows(QTableView& table) {
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setShowGrid(false);
    table.setWordWrap(false);
    table.setTabKeyNavigation(false);
    table.setAlternatingRowColors(true);
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

/// Gives the rows, and the icons in them, the height that the table's font needs; to be asked again where that changes.
inline void fitRowHeight(QTableView& table) {
    const int line = table.fontMetrics().height();
    table.setIconSize({qMax(16, line), qMax(16, line)});
    table.verticalHeader()->setMinimumSectionSize(1);
    table.verticalHeader()->setDefaultSectionSize(line + qMax(4, line / 3));
}
