#include "analysis/frmAuswertung_widgets.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

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
    auto* columns = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    auto* right = new QVBoxLayout;
    columns->addLayout(left, 3);
    columns->addLayout(right, 2);
    column->addLayout(columns);
    // Below both, so that nothing above gives way when it comes.
    column->addWidget(buildComparison(), 1);
    column->addStretch();
    left->addWidget(buildStudy());
    left->addWidget(buildVariable(false));
    left->addWidget(buildVariable(true));
    left->addWidget(buildFilter());
    left->addStretch(1);
    right->addWidget(buildMode());
    right->addWidget(buildWeight());
    right->addStretch(1);
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(page);
    return scroll;
}

QWidget* frmAuswertung::buildStudy() {
    auto* frame = analysisControl<QGroupBox>(u"fraStudy"_s, u"Studie"_s, nullptr);
    auto* grid = new QGridLayout(frame);
    w_->dbcStudy_1 = picker(u"dbcStudy_1"_s, frame);
    w_->dbcStudy = picker(u"dbcStudy"_s, frame);
    grid->addWidget(caption(u"lblStudyNo"_s, u"Nu&mmer und Titel:"_s, w_->dbcStudy_1, frame), 0, 0);
    grid->addWidget(w_->dbcStudy_1, 0, 1);
    grid->addWidget(w_->dbcStudy, 0, 2);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 3);
    return frame;
}

QWidget* frmAuswertung::buildVariable(bool second) {
    const QString number = second ? u"2"_s : QString();
    auto* frame = analysisControl<QGroupBox>(u"fraVariable"_s + number,
                                             second ? u"Zweite Variable"_s : u"Variable"_s, nullptr);
    auto* grid = new QGridLayout(frame);
    ChoicePicker*& name = second ? w_->dbcVariable_2 : w_->dbcVariable_1;
    ChoicePicker*& label = second ? w_->dbcVariable2 : w_->dbcVariable;
    ChoicePicker*& search = second ? w_->dbcVariable2Uni : w_->dbcVariableUni;
    name = picker(second ? u"dbcVariable_2"_s : u"dbcVariable_1"_s, frame);
    label = picker(u"dbcVariable"_s + number, frame);
    search = searchPicker(u"dbcVariable"_s + number + u"Uni"_s, frame);
    (second ? w_->lblVariable2 : w_->lblVariable) = factLabel(u"lblVariable"_s + number, frame);
    grid->addWidget(caption(u"lblVarSearch"_s + number, second ? u"Suchen (&5):"_s : u"S&uchen:"_s, search, frame), 0, 0);
    grid->addWidget(search, 0, 1, 1, 2);
    grid->addWidget(caption(u"lblVarName"_s + number, second ? u"Name und Label (&2):"_s : u"&Name und Label:"_s, name, frame),
                    1, 0);
    grid->addWidget(name, 1, 1);
    grid->addWidget(label, 1, 2);
    grid->addWidget(second ? w_->lblVariable2 : w_->lblVariable, 2, 1, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 3);
    if (second)
        w_->fraVariable2 = frame;
    return frame;
}

QWidget* frmAuswertung::buildMode() {
    auto* frame = analysisControl<QGroupBox>(u"fraMode"_s, u"Auswertung"_s, nullptr);
    auto* grid = new QGridLayout(frame);
    w_->Option1 = analysisControl<QRadioButton>(u"Option1"_s, u"Häufigkeit (&1)"_s, frame);
    w_->Option2 = analysisControl<QRadioButton>(u"Option2"_s, u"&Kreuztabelle"_s, frame);
    w_->Option4 = analysisControl<QRadioButton>(arrayName(u"Option4"_s, 3), u"Deskriptive Statistik (&3)"_s, frame);
    w_->Option5 = analysisControl<QRadioButton>(u"Option5"_s, u"&Vergleich"_s, frame);
    w_->cmdDescriptives = analysisControl<QPushButton>(u"cmdDescriptives"_s, u"&Statistiken..."_s, frame);
    w_->chkDescGroup = analysisControl<QCheckBox>(u"chkDescGroup"_s, u"mit Gru&ppierung"_s, frame);
    w_->chkFlipXtab = analysisControl<QCheckBox>(u"chkFlipXtab"_s, u"Kreu&ztabelle drehen"_s, frame);
    w_->chkVaridexCreation = analysisControl<QCheckBox>(u"chkVaridexCreation"_s, u"Varide&x Creation Mode"_s, frame);
    w_->chkPreserveLayout = analysisControl<QCheckBox>(u"chkPreserveLayout"_s, u"Layout beibehalten"_s, frame);
    w_->cbValuesInstruct = valuesPicker(u"cbValuesInstruct"_s, frame);
    grid->addWidget(w_->Option1, 0, 0);
    grid->addWidget(w_->Option2, 1, 0);
    grid->addWidget(w_->chkFlipXtab, 1, 1);
    grid->addWidget(w_->Option4, 2, 0);
    grid->addWidget(w_->chkDescGroup, 2, 1);
    grid->addWidget(w_->cmdDescriptives, 3, 1);
    grid->addWidget(w_->Option5, 4, 0);
    grid->addWidget(w_->chkVaridexCreation, 5, 0, 1, 2);
    grid->addWidget(w_->chkPreserveLayout, 6, 0);
    grid->addWidget(w_->cbValuesInstruct, 6, 1);
    return frame;
}

QWidget* frmAuswertung::buildWeight() {
    auto* frame = analysisControl<QGroupBox>(u"fraWeight"_s, u"Gewichtung"_s, nullptr);
    auto* grid = new QGridLayout(frame);
    const std::array<QString, 4> texts{u"kein&e"_s, u"&Repräsentativgewicht"_s, u"Haushaltsgewi&cht"_s, QString()};
    for (int i = 0; i < 4; ++i)
        w_->Option3[static_cast<size_t>(i)] =
            analysisControl<QRadioButton>(arrayName(u"Option3"_s, i), texts[static_cast<size_t>(i)], frame);
    w_->dt_WeightRE = factLabel(u"dt_WeightRE"_s, frame);
    w_->dt_WeightHH = factLabel(u"dt_WeightHH"_s, frame);
    w_->dbcVarGewicht_1Uni = searchPicker(u"dbcVarGewicht_1Uni"_s, frame);
    w_->dbcVarGewicht_1 = picker(u"dbcVarGewicht_1"_s, frame);
    w_->dbcVarGewicht = picker(u"dbcVarGewicht"_s, frame);
    grid->addWidget(w_->Option3[0], 0, 0, 1, 3);
    grid->addWidget(w_->Option3[1], 1, 0, 1, 2);
    grid->addWidget(w_->dt_WeightRE, 1, 2);
    grid->addWidget(w_->Option3[2], 2, 0, 1, 2);
    grid->addWidget(w_->dt_WeightHH, 2, 2);
    grid->addWidget(w_->Option3[3], 3, 0);
    w_->lblWeightUser = caption(u"lblWeightUser"_s, u"Ge&wichtungsvariable:"_s, w_->Option3[3], frame);
    grid->addWidget(w_->lblWeightUser, 3, 1, 1, 2);
    grid->addWidget(w_->dbcVarGewicht_1Uni, 4, 1, 1, 2);
    grid->addWidget(w_->dbcVarGewicht_1, 5, 1);
    grid->addWidget(w_->dbcVarGewicht, 5, 2);
    grid->setColumnStretch(1, 2);
    grid->setColumnStretch(2, 3);
    return frame;
}

QWidget* frmAuswertung::buildFilter() {
    auto* frame = analysisControl<QGroupBox>(u"fraFilter"_s, u"Filter"_s, nullptr);
    auto* grid = new QGridLayout(frame);
    const std::array<QString, 3> texts{u"ke&iner"_s, u"Datensatz-Tei&le"_s, u"benutzerdefiniert (&Y)"_s};
    for (int i = 0; i < 3; ++i)
        w_->optFilter[static_cast<size_t>(i)] =
            analysisControl<QRadioButton>(arrayName(u"optFilter"_s, i), texts[static_cast<size_t>(i)], frame);
    w_->dbcParts = picker(u"dbcParts"_s, frame);
    w_->txtFilter = new FilterLine(u"txtFilter"_s, frame);
    w_->lblFilterCheck = factLabel(u"lblFilterCheck"_s, frame);
    grid->addWidget(w_->optFilter[0], 0, 0);
    grid->addWidget(w_->optFilter[1], 1, 0);
    grid->addWidget(w_->dbcParts, 1, 1);
    grid->addWidget(w_->optFilter[2], 2, 0);
    grid->addWidget(w_->txtFilter, 2, 1);
    grid->addWidget(w_->lblFilterCheck, 3, 1);
    grid->setColumnStretch(1, 1);
    return frame;
}

QWidget* frmAuswertung::buildComparison() {
    auto* frame = w_->fraComparison = analysisControl<QGroupBox>(u"fraComparison"_s, u"Vergleich"_s, nullptr);
    auto* grid = new QGridLayout(frame);
    w_->txtTitle = plainControl<QLineEdit>(u"txtTitle"_s, frame);
    w_->lst_TrendVars = plainControl<EntryList>(u"lst_TrendVars"_s, frame);
    w_->lst_SavedTrends = plainControl<EntryList>(u"lst_SavedTrends"_s, frame);
    w_->lst_TrendVars->setSelectionMode(QAbstractItemView::ExtendedSelection);
    w_->lst_SavedTrends->setSelectionMode(QAbstractItemView::SingleSelection);
    w_->cmd_AddTrend = analysisControl<QPushButton>(u"cmd_AddTrend"_s, u"Hin&zufügen"_s, frame);
    w_->cmd_DeleteFromTrend = analysisControl<QPushButton>(u"cmd_DeleteFromTrend"_s, u"Entfernen (&5)"_s, frame);
    w_->cmd_ClearTrend = analysisControl<QPushButton>(u"cmd_ClearTrend"_s, u"Alle entfernen (&Q)"_s, frame);
    w_->cmd_LoadTrend = analysisControl<QPushButton>(u"cmd_LoadTrend"_s, u"Laden (&J)"_s, frame);
    w_->cmd_SaveTrend = analysisControl<QPushButton>(u"cmd_SaveTrend"_s, u"&Speichern"_s, frame);
    w_->cmd_DelSavedTrend = analysisControl<QPushButton>(u"cmd_DelSavedTrend"_s, u"L&öschen"_s, frame);
    auto* title = new QHBoxLayout;
    title->addWidget(caption(u"lblTitle"_s, u"&Überschrift:"_s, w_->txtTitle, frame));
    title->addWidget(w_->txtTitle, 1);
    grid->addLayout(title, 0, 0, 1, 4);
    const auto list = [&](EntryList* entries, QLabel* label, std::initializer_list<QPushButton*> buttons, int column) {
        grid->addWidget(label, 1, column);
        entries->setMinimumHeight(fontMetrics().height() * 5);
        grid->addWidget(entries, 2, column);
        auto* box = new QVBoxLayout;
        for (QPushButton* button : buttons)
            box->addWidget(button);
        box->addStretch();
        grid->addLayout(box, 2, column + 1);
    };
    list(w_->lst_TrendVars, caption(u"lblTrend"_s, u"Aufgenommene Variablen (&4):"_s, w_->lst_TrendVars, frame),
         {w_->cmd_AddTrend, w_->cmd_DeleteFromTrend, w_->cmd_ClearTrend}, 0);
    list(w_->lst_SavedTrends, caption(u"lblSavedTrends"_s, u"Ges&peicherte Vergleiche:"_s, w_->lst_SavedTrends, frame),
         {w_->cmd_LoadTrend, w_->cmd_SaveTrend, w_->cmd_DelSavedTrend}, 2);
    grid->setColumnStretch(0, 3);
    grid->setColumnStretch(2, 2);
    return frame;
}

QWidget* frmAuswertung::buildTable() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    w_->lblLabel = factLabel(u"lblLabel"_s, page);
    QFont heading = w_->lblLabel->font();
    heading.setBold(true);
    w_->lblLabel->setFont(heading);
    w_->cbValues = valuesPicker(u"cbValues"_s, page);
    auto* top = new QHBoxLayout;
    top->addWidget(w_->lblLabel, 1);
    top->addWidget(w_->cbValues);
    column->addLayout(top);

    w_->fraState = new QFrame(page);
    w_->fraState->setFrameShape(QFrame::StyledPanel);
    auto* state = new QHBoxLayout(w_->fraState);
    w_->lblState = factLabel(u"lblState"_s, w_->fraState);
    w_->cmdComputeAnew = analysisControl<QPushButton>(u"cmdComputeAnew"_s, u"&Jetzt neu berechnen"_s, w_->fraState);
    w_->cmdStop = analysisControl<QPushButton>(u"cmdStop"_s, u"Abbrechen (Esc)"_s, w_->fraState);
    state->addWidget(w_->lblState, 1);
    state->addWidget(w_->cmdComputeAnew);
    state->addWidget(w_->cmdStop);
    column->addWidget(w_->fraState);

    w_->mfgGrid = new ResultTableView(u"mfgGrid"_s, page);
    column->addWidget(w_->mfgGrid, 1);
    w_->lblFacts = factLabel(u"lblFacts"_s, page);
    QFont small = w_->lblFacts->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    w_->lblFacts->setFont(small);
    column->addWidget(w_->lblFacts);
    column->addWidget(buildTableCommands());
    return page;
}

QWidget* frmAuswertung::buildTableCommands() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    w_->cmdCalculate = analysisControl<QPushButton>(u"cmdCalculate"_s, u"Neu berechnen (&Z)..."_s, bar);
    w_->cmdSetMissing = analysisControl<QPushButton>(u"cmdSetMissing"_s, u"Missing &setzen/löschen"_s, bar);
    w_->cmdCopyTable = analysisControl<QPushButton>(u"cmdCopyTable"_s, u"Tabelle kop&ieren"_s, bar);
    w_->cmdSaveTableAs = analysisControl<QPushButton>(u"cmdSaveTableAs"_s, u"Tabelle s&peichern unter..."_s, bar);
    w_->cmdPreview = analysisControl<QPushButton>(u"cmdPreview"_s, u"Vorschau"_s, bar);
    w_->cmdPrint = analysisControl<QPushButton>(u"cmdPrint"_s, u"Drucken..."_s, bar);
    for (QPushButton* button : {w_->cmdCalculate, w_->cmdSetMissing, w_->cmdCopyTable, w_->cmdSaveTableAs})
        row->addWidget(button);
    row->addStretch(1);
    row->addWidget(w_->cmdPreview);
    row->addWidget(w_->cmdPrint);
    return bar;
}
