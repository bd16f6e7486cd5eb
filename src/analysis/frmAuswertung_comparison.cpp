#include "analysis/frmAuswertung_widgets.h"
#include "app/globals.h"

#include <QSignalBlocker>
#include <algorithm>

using namespace Qt::StringLiterals;

/// The comparison on the request's tab: its entries, its title, the comparisons that the catalogue keeps.

namespace {

/// Shows these texts; a list that shows them already keeps its place.
void showTexts(QListWidget& list, const QStringList& texts) {
    QStringList shown;
    for (int row = 0; row < list.count(); ++row)
        shown << list.item(row)->text();
    if (shown == texts)
        return;
    const QSignalBlocker quiet(list);
    const int current = list.currentRow();
    list.clear();
    for (const QString& text : texts) {
        auto* item = new QListWidgetItem(text, &list);
        item->setToolTip(text.toHtmlEscaped());
    }
    if (texts.isEmpty())
        return;
    const bool one = list.selectionMode() == QAbstractItemView::SingleSelection;
    list.setCurrentRow(std::clamp(current, 0, list.count() - 1),
                       one ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate);
}

QList<int> selectedIn(const QListWidget& list) {
    QList<int> rows;
    for (const QModelIndex& index : list.selectionModel()->selectedIndexes())
        rows << index.row();
    std::ranges::sort(rows);
    return rows;
}

} // namespace

void frmAuswertung::connectComparison() {
    const auto onClick = [this](QPushButton* button, auto&& step) {
        connect(button, &QPushButton::clicked, this, [=, this] { act(step); });
    };
    const auto add = [this] { comparison().cmd_AddTrend(); };
    const auto remove = [this] { comparison().cmd_DeleteFromTrend(); };
    const auto save = [this] { comparison().cmd_SaveTrend(); };
    const auto load = [this] { comparison().cmd_LoadTrend(w_->lst_SavedTrends->currentRow()); };
    const auto forget = [this] { comparison().cmd_DelSavedTrend(w_->lst_SavedTrends->currentRow()); };
    onClick(w_->cmd_AddTrend, add);
    onClick(w_->cmd_DeleteFromTrend, remove);
    onClick(w_->cmd_ClearTrend, [this] { comparison().cmd_ClearTrend(); });
    onClick(w_->cmd_SaveTrend, save);
    onClick(w_->cmd_LoadTrend, load);
    onClick(w_->cmd_DelSavedTrend, forget);
    connect(w_->lst_TrendVars, &QListWidget::itemSelectionChanged, this, [this] { selectEntries(); });
    w_->lst_TrendVars->onKey = [=, this](int key) {
        if (key == Qt::Key_Insert)
            act(add);
        else if (key == Qt::Key_Delete)
            act(remove);
        else
            selectEntries();
    };
    w_->lst_SavedTrends->onKey = [=, this](int key) {
        act([&] { key == Qt::Key_Insert ? save() : key == Qt::Key_Delete ? forget() : load(); });
    };
    connect(w_->lst_SavedTrends, &QListWidget::itemDoubleClicked, this, [=, this] { act(load); });
    connect(w_->txtTitle, &QLineEdit::textEdited, this, [this](const QString& text) {
        model_.edit().change(RequestPart::Entries, [&](AnalysisRequest& r) { r.txtTitle = text; });
    });
}

/// What is selected comes back into the window.
void frmAuswertung::selectEntries() {
    act([this] { comparison().select(selectedIn(*w_->lst_TrendVars)); });
}

void frmAuswertung::showComparison(const AnalysisView& view) {
    w_->fraComparison->setVisible(view.comparison);
    if (w_->txtTitle->text() != model_.request().txtTitle)
        w_->txtTitle->setText(model_.request().txtTitle);
    QStringList entries, saved;
    for (const ComparisonEntry& entry : comparison().entries())
        entries << entry.text;
    for (const ComparisonList::Saved& one : comparison().lst_SavedTrends())
        saved << one.name;
    showTexts(*w_->lst_TrendVars, entries);
    showTexts(*w_->lst_SavedTrends, saved);
    if (!std::ranges::equal(selectedIn(*w_->lst_TrendVars), comparison().selected())) {
        const QSignalBlocker quiet(w_->lst_TrendVars);
        w_->lst_TrendVars->clearSelection();
        for (const int row : comparison().selected())
            w_->lst_TrendVars->item(row)->setSelected(true);
    }
    w_->cmd_ClearTrend->setEnabled(view.cmd_ClearTrend);
    w_->cmd_SaveTrend->setEnabled(view.cmd_SaveTrend);
    w_->cmd_DeleteFromTrend->setEnabled(comparison().deleteEnabled());
    for (QPushButton* button : {w_->cmd_LoadTrend, w_->cmd_DelSavedTrend})
        button->setEnabled(!saved.isEmpty());
}
