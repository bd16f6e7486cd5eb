#pragma once

#include "search/HitList.h"
#include "search/termPlaces.h"

#include <QAbstractTableModel>
#include <QCache>
#include <QHash>
#include <QIcon>
#include <QStringList>
#include <QTableView>
#include <functional>

/// The hits of a search for a table view: text, where it stands, and the text around the terms. Of half a million hits
/// only those in sight are ever read.
class HitListModel : public QAbstractTableModel {
public:
    enum Column { Text, Way, Context, Columns };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows the hits of a search that begins. @param hits not owned
    void begin(const HitList& hits, const QStringList& terms);
    /// Hits have come: they stand behind the others until they are sorted.
    void grow();
    /// Sorts them where the list is sorted.
    void settle();
    void headingsChanged();

    /// Place of the hit in a row among all hits, and the other way round; -1 without one.
    int hitAt(int row) const;
    int rowOf(int hit) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;
    const TermContext& contextAt(int row) const;

private:
    struct Shown {
        HitList::Hit hit;
        TermContext context;
    };
    const HitList* hits_ = nullptr;
    QStringList terms_;
    int shown_ = 0;
    std::vector<int> order_; ///< hits by row; empty as they were found
    int sortedBy_ = -1;
    Qt::SortOrder direction_ = Qt::AscendingOrder;
    mutable QCache<int, Shown> inSight_{500};
    mutable QHash<int, QIcon> icons_; ///< by number

    std::vector<int> byContext() const;
    const Shown& shownAt(int row) const;
    const QIcon& icon(int number) const;
};

/// The list of hits: whole rows, sorted by a click on a heading or Alt and the column's number; a third brings back
/// the order in which they were found.
class HitListView : public QTableView {
public:
    explicit HitListView(HitListModel& model, QWidget* parent = nullptr);

    std::function<void()> opened; ///< double click or Enter

    /// What is written where hits would be.
    void setHint(const QString& hint);
    int currentRow() const { return currentIndex().row(); }
    void goTo(int row);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    HitListModel& model_;
    QString hint_;
    bool widthsByUser_ = false, settingWidths_ = false;
    int heightBefore_ = 0;

    void fitColumns();
};
