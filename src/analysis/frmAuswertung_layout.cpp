#include "analysis/frmAuswertung_widgets.h"
#include "widgets/FlowLayout.h"
#include "widgets/PageArea.h"

#include <QHBoxLayout>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

/// How the analysis window is put together; what its controls do stands elsewhere.

namespace {

template<class Widget>
Widget* analysisControl(const QString& name, const QString& text, QWidget* parent) {
    auto* widget = new Widget(text, parent);
    widget->setObjectName(name);
    return widget;
}

/// A label whose text comes from the catalogue or the run.
QLabel* factLabel(const QString& name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setProperty("CtrlTyp", QString());
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel* caption(const QString& name, const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = analysisControl<QLabel>(name, text, parent);
    label->setBuddy(buddy);
    return label;
}

template<class Widget>
Widget* plainControl(const QString& name, QWidget* parent) {
    auto* widget = new Widget(parent);
    widget->setObjectName(name);
    widget->setProperty("CtrlTyp", QString());
    return widget;
}

/// What a table of several views shows.
QComboBox* valuesPicker(const QString& name, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    box->addItems({u"absolute Werte"_s, u"Spaltenprozente"_s, u"Zeilenprozente"_s, u"Gesamtprozente"_s});
    return box;
}

ChoicePicker* picker(const QString& name, QWidget* parent) {
    return new ChoicePicker(name, ChoicePicker::Kind::Plain, parent);
}

ChoicePicker* searchPicker(const QString& name, QWidget* parent) {
    return new ChoicePicker(name, ChoicePicker::Kind::Searched, parent);
}

struct InRow {
    QWidget* widget;
    int stretch;
};

/// A row that goes on in the next line, further in, where the window is narrow.
void addRow(QVBoxLayout* rows, std::initializer_list<InRow> widgets, int hanging = 0) {
    auto* row = new FlowLayout;
    row->hanging = hanging;
    for (const InRow& one : widgets)
        row->add(one.widget, one.stretch);
    rows->addLayout(row);
}

/// The name of something and, wider, its title.
QWidget* besideEachOther(ChoicePicker* name, ChoicePicker* title) {
    auto* both = new QWidget(name->parentWidget());
    auto* row = new FlowLayout(both);
    row->add(name, 1);
    row->add(title, 3);
    return both;
}

QWidget* columnOf(std::initializer_list<QWidget*> groups) {
    auto* column = new QWidget;
    auto* rows = new QVBoxLayout(column);
    rows->setContentsMargins(0, 0, 0, 0);
    for (QWidget* group : groups)
        rows->addWidget(group);
    rows->addStretch();
    return column;
}

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

/// How far the text of a radio button stands in.
int textIndent(const QRadioButton& button) {
    const QStyle* style = button.style();
    return style->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, &button) +
           style->pixelMetric(QStyle::PM_RadioButtonLabelSpacing, nullptr, &button);
}

} // namespace

void frmAuswertung::build() {
    w_->SSTab = new QTabWidget(this);
    w_->SSTab->setObjectName(u"SSTab"_s);
    w_->SSTab->setDocumentMode(true);
    w_->SSTab->addTab(buildRequest(), u"Anfra&ge"_s);
    w_->SSTab->addTab(buildTable(), u"&Tabelle"_s);
    w_->SSTab->addTab(new QWidget(w_->SSTab), u"Grafik"_s);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(w_->SSTab);
    resize(fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 44);
}

QWidget* frmAuswertung::buildRequest() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    // Studies and variables on the left, what is done with them on the right; below each other in a narrow window.
    auto* columns = new FlowLayout;
    column->addLayout(columns);
    columns->add(columnOf({buildStudy(), buildVariable(false), buildVariable(true), buildFilter()}), 3);
    columns->add(columnOf({buildMode(), buildWeight()}), 2);
    // Below both, so that nothing above gives way when it comes.
    column->addWidget(buildComparison(), 1);
    column->addStretch();
    return new PageArea(page);
}

QWidget* frmAuswertung::buildStudy() {
    auto* frame = analysisControl<QGroupBox>(u"fraStudy"_s, u"Studie"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    w_->dbcStudy_1 = picker(u"dbcStudy_1"_s, frame);
    w_->dbcStudy = picker(u"dbcStudy"_s, frame);
    QLabel* label = caption(u"lblStudyNo"_s, u"Nu&mmer und Titel:"_s, w_->dbcStudy_1, frame);
    addRow(rows, {{label, 0}, {besideEachOther(w_->dbcStudy_1, w_->dbcStudy), 1}});
    w_->sameWidth[0] << label;
    return frame;
}

QWidget* frmAuswertung::buildVariable(bool second) {
    const QString number = second ? u"2"_s : QString();
    auto* frame =
        analysisControl<QGroupBox>(u"fraVariable"_s + number, second ? u"Zweite Variable"_s : u"Variable"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    ChoicePicker*& name = second ? w_->dbcVariable_2 : w_->dbcVariable_1;
    ChoicePicker*& label = second ? w_->dbcVariable2 : w_->dbcVariable;
    ChoicePicker*& search = second ? w_->dbcVariable2Uni : w_->dbcVariableUni;
    search = searchPicker(u"dbcVariable"_s + number + u"Uni"_s, frame);
    name = picker(second ? u"dbcVariable_2"_s : u"dbcVariable_1"_s, frame);
    label = picker(u"dbcVariable"_s + number, frame);
    QLabel*& whole = second ? w_->lblVariable2 : w_->lblVariable;
    whole = factLabel(u"lblVariable"_s + number, frame);
    label->onResized = [this] { showLongLabels(); };
    QLabel* searchCaption =
        caption(u"lblVarSearch"_s + number, second ? u"Suchen (&5):"_s : u"S&uchen:"_s, search, frame);
    QLabel* nameCaption =
        caption(u"lblVarName"_s + number, second ? u"Name und Label (&2):"_s : u"&Name und Label:"_s, name, frame);
    addRow(rows, {{searchCaption, 0}, {search, 1}});
    addRow(rows, {{nameCaption, 0}, {besideEachOther(name, label), 1}});
    rows->addWidget(whole);
    w_->sameWidth[0] << searchCaption << nameCaption;
    if (second)
        w_->fraVariable2 = frame;
    return frame;
}

QWidget* frmAuswertung::buildMode() {
    auto* frame = analysisControl<QGroupBox>(u"fraMode"_s, u"Auswertung"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    w_->Option1 = analysisControl<QRadioButton>(u"Option1"_s, u"Häufigkeit (&1)"_s, frame);
    w_->Option2 = analysisControl<QRadioButton>(u"Option2"_s, u"&Kreuztabelle"_s, frame);
    w_->chkFlipXtab = analysisControl<QCheckBox>(u"chkFlipXtab"_s, u"Kreu&ztabelle drehen"_s, frame);
    w_->Option4 = analysisControl<QRadioButton>(arrayName(u"Option4"_s, 3), u"Deskriptive Statistik (&3)"_s, frame);
    w_->chkDescGroup = analysisControl<QCheckBox>(u"chkDescGroup"_s, u"mit Gru&ppierung"_s, frame);
    w_->cmdDescriptives = analysisControl<QPushButton>(u"cmdDescriptives"_s, u"&Statistiken..."_s, frame);
    w_->Option5 = analysisControl<QRadioButton>(u"Option5"_s, u"&Vergleich"_s, frame);
    w_->chkVaridexCreation = analysisControl<QCheckBox>(u"chkVaridexCreation"_s, u"Varide&x Creation Mode"_s, frame);
    w_->chkPreserveLayout = analysisControl<QCheckBox>(u"chkPreserveLayout"_s, u"Layout beibehalten"_s, frame);
    w_->cbValuesInstruct = valuesPicker(u"cbValuesInstruct"_s, frame);
    rows->addWidget(w_->Option1);
    addRow(rows, {{w_->Option2, 0}, {w_->chkFlipXtab, 0}}, textIndent(*w_->Option2));
    addRow(rows, {{w_->Option4, 0}, {w_->chkDescGroup, 0}, {w_->cmdDescriptives, 0}}, textIndent(*w_->Option4));
    rows->addWidget(w_->Option5);
    rows->addWidget(w_->chkVaridexCreation);
    addRow(rows, {{w_->chkPreserveLayout, 0}, {w_->cbValuesInstruct, 0}});
    return frame;
}

QWidget* frmAuswertung::buildWeight() {
    auto* frame = analysisControl<QGroupBox>(u"fraWeight"_s, u"Gewichtung"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    const std::array<QString, 4> texts{u"kein&e"_s, u"&Repräsentativgewicht"_s, u"Haushaltsgewi&cht"_s, QString()};
    for (int i = 0; i < 4; ++i)
        w_->Option3[static_cast<size_t>(i)] =
            analysisControl<QRadioButton>(arrayName(u"Option3"_s, i), texts[static_cast<size_t>(i)], frame);
    w_->dt_WeightRE = factLabel(u"dt_WeightRE"_s, frame);
    w_->dt_WeightHH = factLabel(u"dt_WeightHH"_s, frame);
    w_->lblWeightUser = caption(u"lblWeightUser"_s, u"Ge&wichtungsvariable:"_s, w_->Option3[3], frame);
    w_->dbcVarGewicht_1Uni = searchPicker(u"dbcVarGewicht_1Uni"_s, frame);
    w_->dbcVarGewicht_1 = picker(u"dbcVarGewicht_1"_s, frame);
    w_->dbcVarGewicht = picker(u"dbcVarGewicht"_s, frame);
    rows->addWidget(w_->Option3[0]);
    addRow(rows, {{w_->Option3[1], 0}, {w_->dt_WeightRE, 1}}, textIndent(*w_->Option3[0]));
    addRow(rows, {{w_->Option3[2], 0}, {w_->dt_WeightHH, 1}}, textIndent(*w_->Option3[0]));
    auto* own = new QHBoxLayout;
    own->setSpacing(0);
    own->addWidget(w_->Option3[3]);
    own->addWidget(w_->lblWeightUser, 1);
    rows->addLayout(own);
    auto* indented = new QVBoxLayout;
    indented->setContentsMargins(textIndent(*w_->Option3[0]), 0, 0, 0);
    indented->addWidget(w_->dbcVarGewicht_1Uni);
    indented->addWidget(besideEachOther(w_->dbcVarGewicht_1, w_->dbcVarGewicht));
    rows->addLayout(indented);
    w_->sameWidth[1] << w_->Option3[1] << w_->Option3[2];
    return frame;
}

QWidget* frmAuswertung::buildFilter() {
    auto* frame = analysisControl<QGroupBox>(u"fraFilter"_s, u"Filter"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    const std::array<QString, 3> texts{u"ke&iner"_s, u"Datensatz-Tei&le"_s, u"benutzerdefiniert (&Y)"_s};
    for (int i = 0; i < 3; ++i)
        w_->optFilter[static_cast<size_t>(i)] =
            analysisControl<QRadioButton>(arrayName(u"optFilter"_s, i), texts[static_cast<size_t>(i)], frame);
    w_->dbcParts = picker(u"dbcParts"_s, frame);
    w_->txtFilter = new FilterLine(u"txtFilter"_s, frame);
    w_->lblFilterCheck = factLabel(u"lblFilterCheck"_s, frame);
    w_->lblFilterCheck->setIndent(textIndent(*w_->optFilter[0]));
    rows->addWidget(w_->optFilter[0]);
    addRow(rows, {{w_->optFilter[1], 0}, {w_->dbcParts, 1}}, textIndent(*w_->optFilter[0]));
    addRow(rows, {{w_->optFilter[2], 0}, {w_->txtFilter, 1}}, textIndent(*w_->optFilter[0]));
    rows->addWidget(w_->lblFilterCheck);
    w_->sameWidth[0] << w_->optFilter[1] << w_->optFilter[2];
    return frame;
}

QWidget* frmAuswertung::buildComparison() {
    auto* frame = w_->fraComparison = analysisControl<QGroupBox>(u"fraComparison"_s, u"Vergleich"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    w_->txtTitle = plainControl<QLineEdit>(u"txtTitle"_s, frame);
    w_->lst_TrendVars = plainControl<EntryList>(u"lst_TrendVars"_s, frame);
    w_->cmd_AddTrend = analysisControl<QPushButton>(u"cmd_AddTrend"_s, u"Hin&zufügen"_s, frame);
    w_->cmd_DeleteFromTrend = analysisControl<QPushButton>(u"cmd_DeleteFromTrend"_s, u"Entfernen (&5)"_s, frame);
    w_->cmd_ClearTrend = analysisControl<QPushButton>(u"cmd_ClearTrend"_s, u"Alle entfernen (&Q)"_s, frame);
    w_->lst_SavedTrends = plainControl<EntryList>(u"lst_SavedTrends"_s, frame);
    w_->cmd_LoadTrend = analysisControl<QPushButton>(u"cmd_LoadTrend"_s, u"Laden (&J)"_s, frame);
    w_->cmd_SaveTrend = analysisControl<QPushButton>(u"cmd_SaveTrend"_s, u"&Speichern"_s, frame);
    w_->cmd_DelSavedTrend = analysisControl<QPushButton>(u"cmd_DelSavedTrend"_s, u"L&öschen"_s, frame);
    w_->lst_TrendVars->setSelectionMode(QAbstractItemView::ExtendedSelection);
    w_->lst_SavedTrends->setSelectionMode(QAbstractItemView::SingleSelection);
    QLabel* title = caption(u"lblTitle"_s, u"&Überschrift:"_s, w_->txtTitle, frame);
    addRow(rows, {{title, 0}, {w_->txtTitle, 1}});
    auto* lists = new FlowLayout;
    lists->add(entriesBox(w_->lst_TrendVars,
                          caption(u"lblTrend"_s, u"Aufgenommene Variablen (&4):"_s, w_->lst_TrendVars, frame),
                          {w_->cmd_AddTrend, w_->cmd_DeleteFromTrend, w_->cmd_ClearTrend}),
               3);
    lists->add(entriesBox(w_->lst_SavedTrends,
                          caption(u"lblSavedTrends"_s, u"Ges&peicherte Vergleiche:"_s, w_->lst_SavedTrends, frame),
                          {w_->cmd_LoadTrend, w_->cmd_SaveTrend, w_->cmd_DelSavedTrend}),
               2);
    rows->addLayout(lists, 1);
    return frame;
}

/// Captions that stand below each other get one width, so that what they name begins at one line.
void frmAuswertung::alignCaptions() {
    for (const QList<QWidget*>& captions : w_->sameWidth) {
        int widest = 0;
        for (QWidget* one : captions) {
            one->setMinimumWidth(0);
            widest = std::max(widest, one->sizeHint().width());
        }
        for (QWidget* one : captions)
            one->setMinimumWidth(widest);
    }
    // Without a caption a button is lower than its neighbours.
    w_->Option3[3]->setFixedSize(textIndent(*w_->Option3[0]), w_->Option3[0]->sizeHint().height());
}

QWidget* frmAuswertung::buildTable() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    w_->lblLabel = factLabel(u"lblLabel"_s, page);
    QFont heading = w_->lblLabel->font();
    heading.setBold(true);
    w_->lblLabel->setFont(heading);
    w_->cbValues = valuesPicker(u"cbValues"_s, page);
    addRow(column, {{w_->lblLabel, 1}, {w_->cbValues, 0}});

    w_->mfgGrid = new ResultTableView(u"mfgGrid"_s, page);
    column->addWidget(w_->mfgGrid, 1);
    w_->lblFacts = factLabel(u"lblFacts"_s, page);
    QFont small = w_->lblFacts->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    w_->lblFacts->setFont(small);
    column->addWidget(w_->lblFacts);
    w_->fraState = new QFrame(page);
    w_->fraState->setFrameShape(QFrame::StyledPanel);
    // Its place is kept for it: a table that moved would be marked in another row than the one that is pointed at.
    QSizePolicy kept = w_->fraState->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    w_->fraState->setSizePolicy(kept);
    auto* state = new QVBoxLayout(w_->fraState);
    const int narrow = state->contentsMargins().left() / 2;
    state->setContentsMargins(2 * narrow, narrow, narrow, narrow);
    w_->lblState = factLabel(u"lblState"_s, w_->fraState);
    w_->cmdComputeAnew = analysisControl<QPushButton>(u"cmdComputeAnew"_s, u"&Jetzt neu berechnen"_s, w_->fraState);
    w_->cmdStop = analysisControl<QPushButton>(u"cmdStop"_s, u"Abbrechen (Esc)"_s, w_->fraState);
    addRow(state, {{w_->lblState, 1}, {w_->cmdComputeAnew, 0}, {w_->cmdStop, 0}});
    column->addWidget(w_->fraState);
    column->addWidget(buildTableCommands());
    return page;
}

QWidget* frmAuswertung::buildTableCommands() {
    auto* bar = new QWidget;
    auto* row = new FlowLayout(bar);
    w_->cmdCalculate = analysisControl<QPushButton>(u"cmdCalculate"_s, u"Neu berechnen (&Z)..."_s, bar);
    w_->cmdSetMissing = analysisControl<QPushButton>(u"cmdSetMissing"_s, u"Missing &setzen/löschen"_s, bar);
    w_->cmdCopyTable = analysisControl<QPushButton>(u"cmdCopyTable"_s, u"Tabelle kop&ieren"_s, bar);
    w_->cmdSaveTableAs = analysisControl<QPushButton>(u"cmdSaveTableAs"_s, u"Tabelle s&peichern unter..."_s, bar);
    w_->cmdPreview = analysisControl<QPushButton>(u"cmdPreview"_s, u"Vorschau"_s, bar);
    w_->cmdPrint = analysisControl<QPushButton>(u"cmdPrint"_s, u"Drucken..."_s, bar);
    for (QPushButton* button : {w_->cmdCalculate, w_->cmdSetMissing, w_->cmdCopyTable, w_->cmdSaveTableAs})
        row->add(button);
    row->addStretch();
    row->add(w_->cmdPreview);
    row->add(w_->cmdPrint);
    return bar;
}
