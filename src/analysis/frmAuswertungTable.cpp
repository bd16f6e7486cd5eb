#include "analysis/frmAuswertungTable.h"

#include "analysis/frmAuswertung.h"
#include "analysis/frmAuswertungState.h"
#include "analysis/frmAuswertungStored.h"
#include "analysis/result/provenance.h"
#include "app/globals.h"
#include "widgets/ContextMenu.h"
#include "widgets/FlowLayout.h"
#include "widgets/Form.h"
#include "widgets/ResultTableView.h"

#include <QComboBox>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Characters of the bases of percentages below a table, and of the tooltip that has all of what stands there.
constexpr qsizetype mostOfBases = 1500, mostOfToolTip = 6000;

} // namespace

frmAuswertungTable::frmAuswertungTable(frmAuswertung& window) : frmAuswertungPart(window), page_(build()) {
    connectControls();
}

QWidget* frmAuswertungTable::build() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    lblLabel_ = factLabel(u"lblLabel"_s, page);
    QFont heading = lblLabel_->font();
    heading.setBold(true);
    lblLabel_->setFont(heading);
    cbValues_ = valuesPicker(u"cbValues"_s, page);
    addRow(column, {{lblLabel_, 1}, {cbValues_, 0}});

    mfgGrid_ = new ResultTableView(u"mfgGrid"_s, page);
    column->addWidget(mfgGrid_, 1);
    lblFacts_ = factLabel(u"lblFacts"_s, page);
    QFont small = lblFacts_->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    lblFacts_->setFont(small);
    column->addWidget(lblFacts_);
    state_ = withOwnText(new frmAuswertungState({}, page), u"fraState"_s);
    // Its place is kept for it: a table that moved would be marked in another row than the one that is pointed at.
    QSizePolicy kept = state_->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    state_->setSizePolicy(kept);
    column->addWidget(state_);
    column->addWidget(buildCommands());
    stored_ = new frmAuswertungStored(
        window_, frmAuswertungStored::Kind::Table, [this] { touch(); }, page);
    column->addWidget(stored_);
    return page;
}

QWidget* frmAuswertungTable::buildCommands() {
    auto* bar = new QWidget;
    auto* row = new FlowLayout(bar);
    cmdCalculate_ = control<QPushButton>(u"cmdCalculate"_s, u"&Neu berechnen..."_s, bar);
    cmdSetMissing_ = control<QPushButton>(u"cmdSetMissing"_s, u"Missing &setzen/löschen"_s, bar);
    cmdCopyTable_ = control<QPushButton>(u"cmdCopyTable"_s, u"Tabelle kop&ieren"_s, bar);
    cmdCopyCommand_ = control<QPushButton>(u"cmdCopyCommand"_s, u"Als Befehl kopieren"_s, bar);
    cmdSaveTableAs_ = control<QPushButton>(u"cmdSaveTableAs"_s, u"Tabelle s&peichern unter..."_s, bar);
    cmdPreview_ = control<QPushButton>(u"cmdPreview"_s, u"&Vorschau"_s, bar);
    cmdPrint_ = control<QPushButton>(u"cmdPrint"_s, u"Dr&ucken..."_s, bar);
    for (QPushButton* button : {cmdCalculate_, cmdSetMissing_, cmdCopyTable_, cmdCopyCommand_, cmdSaveTableAs_})
        row->add(button);
    row->addStretch();
    row->add(cmdPreview_);
    row->add(cmdPrint_);
    return bar;
}

/// What the buttons below the table and the menu offer, at the table itself.
void frmAuswertungTable::addContextMenu() {
    const auto fill = [this](QMenu& menu) {
        for (QPushButton* button : {cmdCopyTable_, cmdCopyCommand_, cmdSaveTableAs_})
            ContextMenu::addButton(menu, *button);
        menu.addSeparator();
        const std::pair<TableLines, QString> orders[] = {{TableLines::Rows, u"Zeilen ordnen..."_s},
                                                         {TableLines::Columns, u"Spalten ordnen..."_s}};
        for (const auto& [lines, caption] : orders)
            menu.addAction(TranslateText(caption), &window_, [this, lines = lines] { window_.order(lines); })
                ->setEnabled(model_.canOrder() && model_.result().orderable(lines).size() > 1);
        menu.addSeparator();
        for (QPushButton* button : {cmdSetMissing_, state_->cmdComputeAnew(), cmdCalculate_})
            ContextMenu::addButton(menu, *button);
        menu.addSeparator();
        for (QPushButton* button : {cmdPreview_, cmdPrint_})
            ContextMenu::addButton(menu, *button);
    };
    // What is marked by a click is that of the left button.
    new ContextMenu(*mfgGrid_, fill, ContextMenu::Selection::Stays);
}

void frmAuswertungTable::connectControls() {
    addContextMenu();
    mfgGrid_->onMark = [this](const GridSelection& selection) {
        mark([this, selection] { return model_.mfgGrid_Click(selection); });
    };
    mfgGrid_->onColumnWidth = [this](int column, int twips) { model_.setColWidth(column, twips); };
    mfgGrid_->onRowHeight = [this](int row, int twips) { model_.setRowHeight(row, twips); };
    mfgGrid_->onHeader = [this] { run([this] { model_.headerClick(); }); };
    connect(cbValues_, &QComboBox::activated, this, [this](int view) { act([&] { model_.chooseValues(view); }); });
    const auto onClick = [this](QPushButton* button, const Step& step) {
        connect(button, &QPushButton::clicked, this, [step] { step(); });
    };
    onClick(cmdSetMissing_, [this] { mark([this] { return model_.cmdSetMissing(mfgGrid_->selection()); }); });
    onClick(cmdCalculate_, [this] { run([this] { model_.cmdCalculate(); }); });
    onClick(state_->cmdComputeAnew(), [this] { run([this] { model_.computeAnew(); }); });
    onClick(state_->cmdStop(), [this] { model_.stop(); });
    onClick(cmdCopyTable_, [this] { window_.copy(); });
    onClick(cmdCopyCommand_, [this] { window_.copyCommand(); });
    onClick(cmdSaveTableAs_, [this] { window_.saveTableAs(); });
    onClick(cmdPreview_, [this] { window_.cmdPreview(frmAuswertung::Printed::Table); });
    onClick(cmdPrint_, [this] { window_.cmdPrint(frmAuswertung::Printed::Table); });
}

/// The user goes on marking where the hand was.
void frmAuswertungTable::mark(const std::function<ClickEffect()>& click) {
    ClickEffect effect = ClickEffect::None;
    run([&] { effect = click(); });
    if (effect == ClickEffect::Marked)
        mfgGrid_->setFocus();
}

int frmAuswertungTable::textWidth(const QString& text) const {
    return mfgGrid_->textWidth(text);
}

QPushButton* frmAuswertungTable::cmdStop() const {
    return state_->cmdStop();
}

void frmAuswertungTable::showRunning() {
    state_->showRunning();
    mfgGrid_->updateTable({});
    lblLabel_->clear();
    lblFacts_->clear();
    resultChanged();
}

/// Every change of the request may leave the table behind it.
void frmAuswertungTable::showChanges(const Changes& changes) {
    if (changes.touched() || changes.has(RequestPart::Values))
        showTable();
    stored_->showOffered();
    state_->showState(model_);
}

void frmAuswertungTable::showTable() {
    lblLabel_->setText(model_.result().lblLabel);
    cbValues_->setVisible(model_.view().cbValuesShown);
    cbValues_->setEnabled(model_.view().cbValuesEnabled);
    cbValues_->setCurrentIndex(model_.request().cbValues);
    const std::optional<TableFacts>& facts = model_.result().facts;
    const bool marks = facts && model_.marksCanBeSet();
    const bool crosstab = model_.result().mfgGrid.Tag == TableKind::Crosstab;
    mfgGrid_->setMarks(marks ? markColumn : -1, marks && crosstab ? markRow : -1);
    // A table that was never ready is not shown as one.
    const ResultTable empty;
    mfgGrid_->updateTable(model_.result().hasTable() ? model_.result().mfgGrid : empty);
    showFacts();
    for (QPushButton* button : {cmdCopyTable_, cmdSaveTableAs_})
        button->setEnabled(model_.result().hasTable());
    for (QPushButton* button : {cmdPreview_, cmdPrint_})
        button->setEnabled(model_.view().tableCommands);
    cmdCopyCommand_->setEnabled(facts && facts->complete);
    cmdSetMissing_->setEnabled(marks && !crosstab);
}

/// A comparison of many entries has a line for each: the table needs the room more, above all with large type.
void frmAuswertungTable::showFacts() {
    // What is to be known of the numbers, and what percentages are of, is never cut.
    const TableResult& result = model_.result();
    const QStringList notes = result.facts ? result.notes() : QStringList();
    const QStringList all = linesBelow(result);
    const QStringList facts = result.facts ? standsOn(*result.facts) : QStringList();
    const QStringList base = all.mid(notes.size() + facts.size());
    const int room = window_.height() / 5, width = page_->contentsRect().width();
    const auto first = [&](qsizetype most) {
        if (facts.size() <= most)
            return all.join(u'\n');
        const QString rest =
            u"... "_s + QString::number(facts.size() - most + 1) + u' ' + TranslateText(u"weitere Einträge"_s);
        return (notes + facts.first(most - 1) + QStringList{rest} + base).join(u'\n');
    };
    qsizetype most = 4;
    lblFacts_->setText(first(most));
    while (most > 2 && facts.size() > 1 && lblFacts_->heightForWidth(width) > room)
        lblFacts_->setText(first(--most));
    const bool cut = facts.size() > most || shortenBases(base, room, width);
    QString whole = all.join(u'\n');
    if (whole.size() > mostOfToolTip)
        whole = whole.left(mostOfToolTip) + u"..."_s;
    lblFacts_->setToolTip(cut ? Qt::convertFromPlainText(whole) : QString());
}

/// A table of many columns has as many numbers of cases: the first of them stand below it, all in the tooltip.
/// @return true if some had to go
bool frmAuswertungTable::shortenBases(const QStringList& base, int room, int width) {
    if (base.isEmpty())
        return false;
    const QString whole = lblFacts_->text();
    const QString before = whole.left(whole.size() - base.first().size());
    qsizetype end = base.first().size();
    // Thousands of columns would take as many layouts: no window shows more of them than this.
    if (end > mostOfBases) {
        end = std::max<qsizetype>(0, base.first().lastIndexOf(u"; "_s, mostOfBases));
        lblFacts_->setText(before + base.first().left(end) + u"; ..."_s);
    }
    while (end > 0 && lblFacts_->heightForWidth(width) > room) {
        end = base.first().lastIndexOf(u"; "_s, end - 1);
        if (end > 0)
            lblFacts_->setText(before + base.first().left(end) + u"; ..."_s);
    }
    return lblFacts_->text() != whole;
}

void frmAuswertungTable::nameForReaders() {
    cbValues_->setAccessibleName(TranslateText(u"Werte der Tabelle"_s));
    mfgGrid_->setAccessibleName(TranslateText(u"Ergebnistabelle"_s));
}
