#include "widgets/BestFirst.h"

#include <utility>

BestFirst::BestFirst(QAbstractItemModel* choices, QObject* parent) : QSortFilterProxyModel(parent) {
    // Only a search sorts: lists are filled entry by entry.
    setDynamicSortFilter(false);
    setSourceModel(choices);
}

int BestFirst::misfit(const QString& choice, const QString& typed) {
    if (choice.startsWith(typed, Qt::CaseInsensitive))
        return choice.size() == typed.size() || choice[typed.size()] == u':' ? 0 : 1;
    return choice.contains(typed, Qt::CaseInsensitive) ? 2 : noMatch;
}

void BestFirst::fit(const QString& typed) {
    typed_ = typed;
    sort(0);
}

bool BestFirst::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    const auto place = [this](const QModelIndex& index) {
        return std::pair(misfit(index.data().toString(), typed_), index.row());
    };
    return place(left) < place(right);
}
