#include "config/frmOptionsPages.h"

#include "widgets/Form.h"
#include "widgets/Icons.h"
#include "widgets/PageArea.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// One page while it is being filled, group by group and row by row.
class Page {
public:
    Page(QTabWidget* tabs, const QString& title) : frame_(new QWidget), column_(new QVBoxLayout(frame_)) {
        frame_->setObjectName(arrayName(u"picOptions"_s, tabs->count()));
        tabs->addTab(new PageArea(frame_), title);
    }

    void group(const QString& name, const QString& title) {
        auto* box = new QGroupBox(title);
        box->setObjectName(name);
        column_->addWidget(box);
        rows_ = new QFormLayout(box);
        rows_->setHorizontalSpacing(box->fontMetrics().averageCharWidth());
        rows_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    }

    void check(const QString& name, const QString& text) { rows_->addRow(named<QCheckBox>(name, text)); }

    /// A box that hangs on the one above it stands further in.
    void dependentCheck(const QString& name, const QString& text) {
        auto* row = new QHBoxLayout;
        auto* box = named<QCheckBox>(name, text);
        row->addSpacing(box->fontMetrics().averageCharWidth() * 4);
        row->addWidget(box, 1);
        rows_->addRow(row);
    }

    void choice(const QString& name, const QString& text) { rows_->addRow(named<QRadioButton>(name, text)); }

    void text(const QString& name, const QString& label) { addLabelled(label, name, named<QLineEdit>(name, {})); }

    void number(const QString& name, const QString& label) {
        auto* field = named<QLineEdit>(name, {});
        narrow(field);
        addLabelled(label, name, field);
    }

    void combo(const QString& name, const QString& label) {
        auto* box = new QComboBox;
        box->setObjectName(name);
        box->setProperty("Tag", u"user_defined"_s); // its items are made in code
        box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        addLabelled(label, name, box);
    }

    /// A field for a path with its browse button.
    void path(const QString& field, const QString& button, const QString& label, const QString& tip) {
        auto* line = named<QLineEdit>(field, {});
        line->setMinimumWidth(line->fontMetrics().averageCharWidth() * 42);
        auto* browse = named<QPushButton>(button, {});
        browse->setIcon(Icons::get(u"open"_s));
        browse->setIconSize(QSize(1, 1) * browse->fontMetrics().height());
        browse->setToolTip(tip);
        browse->setAutoDefault(false);
        auto* row = new QHBoxLayout;
        row->addWidget(line, 1);
        row->addWidget(browse);
        addLabelled(label, field, line, row);
    }

    void button(const QString& name, const QString& text) {
        auto* push = named<QPushButton>(name, text);
        push->setAutoDefault(false);
        auto* row = new QHBoxLayout;
        row->addWidget(push);
        row->addStretch();
        rows_->addRow(row);
    }

    void sample(const QString& frame, const QString& title, const QString& name) {
        group(frame, title);
        rows_->addRow(named<QLabel>(name, u"AaBbCc ÄäÖöÜüß 0123456789"_s));
    }

    /// Tells what can be set on the page but isn't used by this version.
    void note(int number, const QString& text) {
        auto* label = named<QLabel>(arrayName(u"lblNotUsed"_s, number), text);
        QFont small = label->font();
        small.setItalic(true);
        label->setFont(small);
        column_->addWidget(label);
    }

    void end() { column_->addStretch(); }

private:
    QWidget* frame_;
    QVBoxLayout* column_;
    QFormLayout* rows_ = nullptr;

    template<class Widget>
    static Widget* named(const QString& name, const QString& text) {
        auto* widget = new Widget(text);
        widget->setObjectName(name);
        return widget;
    }

    static void narrow(QLineEdit* field) {
        field->setMaximumWidth(field->fontMetrics().averageCharWidth() * 16);
        field->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    }

    void addLabelled(const QString& text, const QString& name, QWidget* field, QLayout* row = nullptr) {
        auto* label = new QLabel(text);
        label->setObjectName(u"lbl"_s + (name.startsWith(u"txt") || name.startsWith(u"cmb") ? name.mid(3) : name));
        label->setBuddy(field);
        if (row)
            rows_->addRow(label, row);
        else
            rows_->addRow(label, field);
    }
};

void addGeneral(QTabWidget* tabs) {
    Page page(tabs, u"Allgemein"_s);
    page.group(u"fraDatabase"_s, u"Datenbank beim Start"_s);
    page.path(u"txtDatabaseName"_s, u"cmdDatabaseName"_s, u"&Dateiname:"_s, u"Datenbankdatei auswählen (F4)"_s);
    page.path(u"txtDatabasePath"_s, u"cmdDatabasePath"_s, u"&Ordner:"_s, u"Ordner der Datenbank auswählen (F4)"_s);
    page.group(u"fraPaths"_s, u"Ordner"_s);
    page.path(u"txtDataPath"_s, u"cmdDataPath"_s, u"&Auswertungsdateien:"_s,
              u"Ordner der Auswertungsdateien auswählen (F4)"_s);
    page.path(u"txtQuestionnairePath"_s, u"cmdQuestionnairePath"_s, u"&Fragebogen:"_s,
              u"Ordner der Fragebögen auswählen (F4)"_s);
    page.path(u"txtSPSSPath"_s, u"cmdSPSSPath"_s, u"S&PSS-Dateien:"_s, u"Ordner der SPSS-Dateien auswählen (F4)"_s);
    page.check(u"chkDataOnCD"_s, u"Daten-Dateien auf &CD-ROM"_s);
    page.group(u"fraStart"_s, u"Programmstart"_s);
    page.check(u"chkbSys"_s, u"&Begrüßungsdialog beim Start anzeigen"_s);
    page.note(0, u"Noch ohne Wirkung: Ordner für Fragebögen und SPSS"_s);
    page.end();
}

void addExplorer(QTabWidget* tabs) {
    Page page(tabs, u"Explorer"_s);
    page.group(u"fraVariableWindow"_s, u"Variablenfenster"_s);
    page.check(u"chkbAlignSBVTop"_s, u"Merkmalsleiste oberhalb &des Fragetextes"_s);
    page.check(u"chkbShowCards"_s, u"ShowCards &anzeigen"_s);
    page.check(u"chkTakeSameVarWindow"_s, u"&Immer dasselbe Variablenfenster verwenden"_s);
    page.number(u"txtAssignListHeight"_s, u"Höhe der &Zuordnungsliste (Twips):"_s);
    page.group(u"fraVariableList"_s, u"Variablenliste und Suche"_s);
    page.check(u"chkbAutoVarWidth"_s, u"&Breite der Variablenspalte anpassen"_s);
    page.check(u"chkArrangeTwoWindows"_s, u"&Fenster nach einem Suchtreffer anordnen"_s);
    page.group(u"fraSkin"_s, u"Hintergrundbild"_s);
    page.check(u"chkbSkin"_s, u"&Hintergrundbild verwenden"_s);
    page.path(u"txtSkinPath"_s, u"cmdSkinPath"_s, u"&Ordner:"_s, u"Skin-Datei auswählen (F4)"_s);
    page.note(1, u"Noch ohne Wirkung: ShowCards, Hintergrundbild, Anordnen"_s);
    page.end();
}

void addFonts(QTabWidget* tabs) {
    Page page(tabs, u"Schrift"_s);
    page.group(u"fraFonts"_s, u"Schriftarten der Ausgabe"_s);
    page.combo(u"cmbFixedFont"_s, u"&Feste Breite:"_s);
    page.combo(u"cmbPropFont"_s, u"&Proportional:"_s);
    page.sample(u"fraSample1"_s, u"Muster, feste Breite"_s, u"lblSample1"_s);
    page.sample(u"fraSample2"_s, u"Muster, proportional"_s, u"lblSample2"_s);
    page.end();
}

void addTables(QTabWidget* tabs) {
    Page page(tabs, u"Tabellen"_s);
    page.group(u"fraFrequency"_s, u"Häufigkeitstabelle"_s);
    page.check(u"chkIncludeMissing"_s, u"&Fehlende Werte einbeziehen"_s);
    page.check(u"chkSeparateValidCases"_s, u"&Gültige Fälle getrennt ausweisen"_s);
    page.check(u"chkCumulatedPercent"_s, u"&Kumulierte Prozente"_s);
    page.group(u"fraDescriptives"_s, u"Deskriptive Statistik"_s);
    page.check(u"chkIncludeMissingDesc"_s, u"Fehlende &Werte in der Statistik einbeziehen"_s);
    page.button(u"cmdDescriptives"_s, u"S&tatistiken auswählen..."_s);
    page.group(u"fraAllTables"_s, u"Alle Tabellen"_s);
    page.check(u"chkAskMissing"_s, u"&Vor der Auswertung nach fehlenden Werten fragen"_s);
    page.check(u"chkAutoColWidth"_s, u"Spaltenbreite &anpassen"_s);
    page.check(u"chkShowPercentSign"_s, u"&Prozentzeichen anzeigen"_s);
    page.check(u"chkCommaInPercent"_s, u"Dezimalzeichen des S&ystems verwenden"_s);
    page.end();
}

void addCrosstab(QTabWidget* tabs) {
    Page page(tabs, u"Kreuztabelle"_s);
    page.group(u"fraXTabMissing"_s, u"Fehlende Werte"_s);
    page.check(u"chkIncludeMissingXtab"_s, u"&Fehlende Werte in Kreuztabellen einbeziehen"_s);
    page.dependentCheck(u"chkIncludeMissingInPercentXtab"_s, u"auch &in die Prozentwerte"_s);
    page.check(u"chkShowValidSums"_s, u"&Gültige Summen anzeigen"_s);
    page.group(u"fraXTabCells"_s, u"Zellen"_s);
    page.check(u"chkIncludeNinXTab"_s, u"&Zeilen und Spalten mit der Anzahl (N)"_s);
    page.check(u"chkIncludeNinXTabPercent"_s, u"&Anzahl (N) neben dem Prozentwert"_s);
    page.dependentCheck(u"chkIncludeNinXTabPercentNFirst"_s, u"Anzahl &vor dem Prozentwert"_s);
    page.group(u"fraXTabLabels"_s, u"Beschriftung"_s);
    page.check(u"chkNoColumnLabels"_s, u"O&hne Spaltenbeschriftung"_s);
    page.check(u"chkNoRowLabels"_s, u"&Ohne Zeilenbeschriftung"_s);
    page.end();
}

void addTitles(QTabWidget* tabs) {
    Page page(tabs, u"Titel"_s);
    page.group(u"fraHeader"_s, u"Der Titel einer Tabelle enthält"_s);
    page.check(u"chkHeader(0)"_s, u"S&tudie"_s);
    page.check(u"chkHeader(1)"_s, u"&Variable"_s);
    page.check(u"chkHeader(2)"_s, u"&Jahr"_s);
    page.check(u"chkHeader(3)"_s, u"V&ariablengruppe"_s);
    page.check(u"chkHeader(6)"_s, u"&Gewichtung"_s);
    page.check(u"chkHeader(7)"_s, u"&Filter"_s);
    page.group(u"fraComparisonHeader"_s, u"Titel der Vergleichsauswertung"_s);
    page.check(u"chkHeader(4)"_s, u"&Wert zuerst"_s);
    page.dependentCheck(u"chkHeader(5)"_s, u"Wert &mit Variablenbezeichnung"_s);
    page.group(u"fraWeight"_s, u"Gewicht der Vergleichsauswertung"_s);
    page.choice(u"optWeight(0)"_s, u"&kein Gewicht"_s);
    page.choice(u"optWeight(1)"_s, u"&Repräsentativgewicht"_s);
    page.choice(u"optWeight(2)"_s, u"&Haushaltsgewicht"_s);
    page.end();
}

void addCharts(QTabWidget* tabs) {
    Page page(tabs, u"Grafik"_s);
    page.group(u"fraCharts"_s, u"Darstellung"_s);
    page.check(u"chkTakeAbsolutValues"_s, u"&Absolute Werte verwenden"_s);
    page.check(u"chkGraphColor"_s, u"&Farbige Grafik"_s);
    page.check(u"chkTrendGraphLine"_s, u"&Vergleichsauswertung als Liniengrafik"_s);
    page.group(u"fraChartItems"_s, u"Kategorien"_s);
    page.number(u"txtMaxItems"_s, u"&Höchstzahl der Kategorien:"_s);
    page.number(u"txtStartItem"_s, u"&Erste Kategorie:"_s);
    page.note(2, u"Noch ohne Wirkung: alle Angaben zu Grafiken"_s);
    page.end();
}

void addReport(QTabWidget* tabs) {
    Page page(tabs, u"Bericht"_s);
    page.group(u"fraPage"_s, u"Seite"_s);
    page.check(u"chkLandscape"_s, u"&Querformat"_s);
    page.text(u"txtFontName"_s, u"S&chriftart:"_s);
    page.combo(u"cmbFontSize"_s, u"Sch&riftgröße (Punkt):"_s);
    page.combo(u"cmbDate"_s, u"&Datum:"_s);
    page.combo(u"cmbPageNumber"_s, u"S&eitenzahl:"_s);
    page.number(u"zoomfactor"_s, u"&Vergrößerung der Vorschau (%):"_s);
    page.group(u"fraReport"_s, u"Inhalt des Berichts"_s);
    page.check(u"chkIncludeVars"_s, u"&Fragetexte"_s);
    page.check(u"chkIncludeTables"_s, u"&Gespeicherte Tabellen"_s);
    page.check(u"chkIncludeGraphs"_s, u"Ges&peicherte Grafiken"_s);
    page.check(u"chkIncludeShowCards"_s, u"S&howCards"_s);
    page.number(u"maxlevel"_s, u"&Tiefe der Gliederung:"_s);
    page.note(3, u"Noch ohne Wirkung: alle Angaben zum Bericht"_s);
    page.end();
}

} // namespace

QTabWidget* makeOptionPages(QWidget* parent) {
    auto* tabs = new QTabWidget(parent);
    tabs->setObjectName(u"tbsOptions"_s);
    tabs->setProperty("CtrlTyp", u"TabStrip"_s);
    addGeneral(tabs);
    addExplorer(tabs);
    addFonts(tabs);
    addTables(tabs);
    addCrosstab(tabs);
    addTitles(tabs);
    addCharts(tabs);
    addReport(tabs);
    return tabs;
}
