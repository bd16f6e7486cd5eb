#include "analysis/frmAuswertungComparison.h"

#include "analysis/frmAuswertung.h"
#include "app/globals.h"
#include "widgets/EntryList.h"
#include "widgets/FlowLayout.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A list with its caption above and its buttons beside it.
QWidget* entriesBox(EntryList* entries, QLabel* label, std::initializer_list<QPushButton*> buttons) {
    auto* box = new QWidget(entries->parentWidget());
    auto* rows = new QVBoxLayout(box);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addWidget(label);
    entries->setMinimumSize(entries->fontMetrics().averageCharWidth() * 14, entries->fontMetrics().height() * 5);
    auto* row = new QHBoxLayout;
    row->addWidget(entries, 1);
    auto* column = new QVBoxLayout;
    for (QPushButton* button : buttons)
        column->addWidget(button);
    column->addStretch();
    row->addLayout(column);
    rows->addLayout(row, 1);
    return box;
}

/// Shows these texts. Entries keep their places and only get other words: the list may be in the middle of a change of
/// its selection.
void showTexts(QListWidget& list, const QStringList& texts) {
    const QSignalBlocker quiet(list);
    const bool more = list.count()<texts.size(), fewer = list.count()> texts.size();
    const int current = list.currentRow();
    while (list.count() > texts.size())
        delete list.takeItem(list.count() - 1);
    for (int row = 0; row < texts.size(); ++row) {
        if (row == list.count())
            list.addItem(QString());
        list.item(row)->setText(texts[row]);
        list.item(row)->setToolTip(texts[row].toHtmlEscaped());
    }
    if (texts.isEmpty() || !(more || fewer))
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

frmAuswertungComparison::frmAuswertungComparison(frmAuswertung& window)
    : frmAuswertungPart(window), list_(model_.comparison()), fraComparison_(build()) {
    connectEntries();
    connectSaved();
}

QGroupBox* frmAuswertungComparison::build() {
    auto* frame = control<QGroupBox>(u"fraComparison"_s, u"Vergleich"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    txtTitle_ = withOwnText(new QLineEdit(frame), u"txtTitle"_s);
    lst_TrendVars_ = withOwnText(new EntryList(frame), u"lst_TrendVars"_s);
    cmd_AddTrend_ = control<QPushButton>(u"cmd_AddTrend"_s, u"Hinzufüg&en"_s, frame);
    cmd_DeleteFromTrend_ = control<QPushButton>(u"cmd_DeleteFromTrend"_s, u"Entfernen"_s, frame);
    cmd_ClearTrend_ = control<QPushButton>(u"cmd_ClearTrend"_s, u"Alle entfernen"_s, frame);
    lst_SavedTrends_ = withOwnText(new EntryList(frame), u"lst_SavedTrends"_s);
    cmd_LoadTrend_ = control<QPushButton>(u"cmd_LoadTrend"_s, u"&Laden"_s, frame);
    cmd_SaveTrend_ = control<QPushButton>(u"cmd_SaveTrend"_s, u"&Speichern"_s, frame);
    cmd_DelSavedTrend_ = control<QPushButton>(u"cmd_DelSavedTrend"_s, u"L&öschen"_s, frame);
    lst_TrendVars_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lst_SavedTrends_->setSelectionMode(QAbstractItemView::SingleSelection);
    QLabel* title = caption(u"lblTitle"_s, u"&Überschrift:"_s, txtTitle_, frame);
    addRow(rows, {{title, 0}, {txtTitle_, 1}});
    auto* lists = new FlowLayout;
    lists->add(entriesBox(lst_TrendVars_, caption(u"lblTrend"_s, u"Aufgenommene Variablen:"_s, lst_TrendVars_, frame),
                          {cmd_AddTrend_, cmd_DeleteFromTrend_, cmd_ClearTrend_}),
               3);
    lists->add(entriesBox(lst_SavedTrends_,
                          caption(u"lblSavedTrends"_s, u"Ges&peicherte Vergleiche:"_s, lst_SavedTrends_, frame),
                          {cmd_LoadTrend_, cmd_SaveTrend_, cmd_DelSavedTrend_}),
               2);
    rows->addLayout(lists, 1);
    return frame;
}

void frmAuswertungComparison::onClick(QPushButton* button, const Step& step) {
    connect(button, &QPushButton::clicked, this, [this, step] { act(step); });
}

void frmAuswertungComparison::connectEntries() {
    const auto add = [this] {
        if (window_.isTypedOut())
            list_.cmd_AddTrend();
    };
    const auto removeSelected = [this] { list_.cmd_DeleteFromTrend(); };
    onClick(cmd_AddTrend_, add);
    onClick(cmd_DeleteFromTrend_, removeSelected);
    onClick(cmd_ClearTrend_, [this] { list_.cmd_ClearTrend(); });
    connect(lst_TrendVars_, &QListWidget::itemSelectionChanged, this, [this] { selectEntries(); });
    lst_TrendVars_->onKey = [=, this](int key) {
        if (key == Qt::Key_Insert)
            act(add);
        else if (key == Qt::Key_Delete)
            act(removeSelected);
        else
            selectEntries();
    };
    connect(txtTitle_, &QLineEdit::textEdited, this, [this](const QString& text) {
        model_.edit().change(RequestPart::Entries, [&](AnalysisRequest& r) { r.txtTitle = text; });
    });
}

void frmAuswertungComparison::connectSaved() {
    const auto save = [this] { list_.cmd_SaveTrend(); };
    const auto load = [this] { list_.cmd_LoadTrend(lst_SavedTrends_->currentRow()); };
    const auto forget = [this] { list_.cmd_DelSavedTrend(lst_SavedTrends_->currentRow()); };
    onClick(cmd_SaveTrend_, save);
    onClick(cmd_LoadTrend_, load);
    onClick(cmd_DelSavedTrend_, forget);
    lst_SavedTrends_->onKey = [=, this](int key) {
        act([&] { key == Qt::Key_Insert ? save() : key == Qt::Key_Delete ? forget() : load(); });
    };
    connect(lst_SavedTrends_, &QListWidget::itemDoubleClicked, this, [=, this] { act(load); });
}

/// What is selected comes back into the window.
void frmAuswertungComparison::selectEntries() {
    act([this] { list_.select(selectedIn(*lst_TrendVars_)); });
}

void frmAuswertungComparison::selectNone() {
    list_.select({});
    touch();
}

bool frmAuswertungComparison::concerns(RequestPart part) const {
    return part == RequestPart::Mode || part == RequestPart::Entries;
}

void frmAuswertungComparison::showChanges(const Changes&) {
    const AnalysisView view = model_.view();
    fraComparison_->setVisible(view.comparison);
    if (txtTitle_->text() != model_.request().txtTitle)
        txtTitle_->setText(model_.request().txtTitle);
    QStringList entries, saved;
    for (const ComparisonEntry& entry : list_.entries())
        entries << entry.text;
    for (const ComparisonList::Saved& one : list_.lst_SavedTrends())
        saved << one.name;
    showTexts(*lst_TrendVars_, entries);
    showTexts(*lst_SavedTrends_, saved);
    if (!std::ranges::equal(selectedIn(*lst_TrendVars_), list_.selected())) {
        const QSignalBlocker quiet(lst_TrendVars_);
        lst_TrendVars_->clearSelection();
        for (const int row : list_.selected())
            lst_TrendVars_->item(row)->setSelected(true);
    }
    cmd_ClearTrend_->setEnabled(view.cmd_ClearTrend);
    cmd_SaveTrend_->setEnabled(view.cmd_SaveTrend);
    cmd_DeleteFromTrend_->setEnabled(list_.deleteEnabled());
    for (QPushButton* button : {cmd_LoadTrend_, cmd_DelSavedTrend_})
        button->setEnabled(!saved.isEmpty());
}

void frmAuswertungComparison::nameForReaders() {
    lst_TrendVars_->setAccessibleName(TranslateText(u"Aufgenommene Variablen"_s));
    lst_SavedTrends_->setAccessibleName(TranslateText(u"Gespeicherte Vergleiche"_s));
}
