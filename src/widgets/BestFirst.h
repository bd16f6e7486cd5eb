#pragma once

#include <QSortFilterProxyModel>
#include <QString>

/// A search in a list of choices ("<name>: <label>" among them): those that fit what was typed best come first.
class BestFirst : public QSortFilterProxyModel {
public:
    /// Of a choice that does not hold what was typed.
    static constexpr int noMatch = 3;
    /// How well a choice fits; less is better: the name itself, a name or text that begins so, anywhere in the text.
    static int misfit(const QString& choice, const QString& typed);

    BestFirst(QAbstractItemModel* choices, QObject* parent);
    void fit(const QString& typed);

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    QString typed_;
};
