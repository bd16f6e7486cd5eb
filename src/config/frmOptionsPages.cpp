#include "config/frmOptionsPages.h"

#include "config/OptionsModel.h"
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
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

/// A number that the wheel changes only where the keyboard is: a page that is scrolled changes nothing.
class NumberBox : public QSpinBox {
public:
    NumberBox() { setFocusPolicy(Qt::StrongFocus); }

protected:
    void wheelEvent(QWheelEvent* event) override {
        if (hasFocus())
            QSpinBox::wheelEvent(event);
        else
            event->ignore();
    }
};

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

    /// The control of an option, as its row describes it.
    void option(const OptionDescriptor::Member& member) {
        const OptionControl& control = optionOf(member).control;
        const QString name = control.name.toString(), caption = control.caption.toString();
        using enum OptionControl::Form;
        switch (control.form) {
        case CheckBox:
            return control.governing ? dependentCheck(name, caption) : check(name, caption);
        case Text:
            return addLabelled(caption, name, named<QLineEdit>(name, {}));
        case Number:
            return number(control, name, caption);
        case Path:
            return path(name, caption, control.tip.toString());
        case FontList:
        case SizeList:
        case Position:
            return combo(name, caption);
        case Choices:
        case None:
            break;
        }
    }

    /// The buttons of an option array.
    void choices(const OptionDescriptor::Member& member, const QStringList& captions) {
        for (int i = 0; i < captions.size(); ++i)
            rows_->addRow(named<QRadioButton>(arrayName(OptionsModel::controlOf(member), i), captions[i]));
    }

    void check(const QString& name, const QString& text) { rows_->addRow(named<QCheckBox>(name, text)); }

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

    /// Names what can be set on the page but isn't used by this version.
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

    /// A box that depends on the one above it is indented.
    void dependentCheck(const QString& name, const QString& text) {
        auto* row = new QHBoxLayout;
        auto* box = named<QCheckBox>(name, text);
        row->addSpacing(box->fontMetrics().averageCharWidth() * 4);
        row->addWidget(box, 1);
        rows_->addRow(row);
    }

    void number(const OptionControl& control, const QString& name, const QString& label) {
        auto* field = new NumberBox;
        field->setObjectName(name);
        field->setRange(control.least, control.most);
        field->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
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
    void path(const QString& field, const QString& label, const QString& tip) {
        auto* line = named<QLineEdit>(field, {});
        line->setMinimumWidth(line->fontMetrics().averageCharWidth() * 42);
        auto* browse = named<QPushButton>(browseButtonOf(field), {});
        browse->setIcon(Icons::get(u"open"_s));
        browse->setIconSize(QSize(1, 1) * browse->fontMetrics().height());
        browse->setToolTip(tip);
        browse->setAutoDefault(false);
        auto* row = new QHBoxLayout;
        row->addWidget(line, 1);
        row->addWidget(browse);
        auto* fault = withOwnText(new QLabel, faultLabelOf(field));
        fault->hide();
        auto* both = new QVBoxLayout;
        both->setSpacing(0);
        both->addLayout(row);
        both->addWidget(fault);
        addLabelled(label, field, line, both);
    }

    template<class Widget>
    static Widget* named(const QString& name, const QString& text) {
        auto* widget = new Widget(text);
        widget->setObjectName(name);
        return widget;
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
    page.option(&Options::DatabaseName);
    page.option(&Options::DatabasePath);
    page.option(&Options::ReopenCatalogue);
    page.group(u"fraPaths"_s, u"Ordner"_s);
    page.option(&Options::DataPath);
    page.option(&Options::QuestionnairePath);
    page.option(&Options::SPSSPath);
    page.option(&Options::DataOnCD);
    page.group(u"fraStart"_s, u"Programmstart"_s);
    page.check(u"chkbSys"_s, u"&Begrüßungsdialog beim Start anzeigen"_s);
    page.end();
}

void addExplorer(QTabWidget* tabs) {
    Page page(tabs, u"Explorer"_s);
    page.group(u"fraVariableWindow"_s, u"Variablenfenster"_s);
    page.option(&Options::AlignSBVTop);
    page.option(&Options::ShowCards);
    page.option(&Options::TakeSameVarWindow);
    page.option(&Options::AssignListHeight);
    page.group(u"fraVariableList"_s, u"Variablenliste und Suche"_s);
    page.option(&Options::AutomaticVariableColumnWidth);
    page.option(&Options::SortByPosition);
    page.group(u"fraSkin"_s, u"Hintergrundbild"_s);
    page.option(&Options::Skin);
    page.option(&Options::SkinPath);
    page.note(0, u"Noch ohne Wirkung: Hintergrundbild"_s);
    page.end();
}

void addFonts(QTabWidget* tabs) {
    Page page(tabs, u"Schrift"_s);
    page.group(u"fraFonts"_s, u"Schriftarten der Ausgabe"_s);
    page.option(&Options::FixedFont);
    page.option(&Options::PropFont);
    page.sample(u"fraSample1"_s, u"Muster, feste Breite"_s, u"lblSample1"_s);
    page.sample(u"fraSample2"_s, u"Muster, proportional"_s, u"lblSample2"_s);
    page.end();
}

void addTables(QTabWidget* tabs) {
    Page page(tabs, u"Tabellen"_s);
    page.group(u"fraFrequency"_s, u"Häufigkeitstabelle"_s);
    page.option(&Options::IncludeMissing);
    page.option(&Options::SeparateValidCases);
    page.option(&Options::CumulatedPercent);
    page.group(u"fraDescriptives"_s, u"Deskriptive Statistik"_s);
    page.option(&Options::IncludeMissingDesc);
    page.button(u"cmdDescriptives"_s, u"S&tatistiken auswählen..."_s);
    page.group(u"fraAllTables"_s, u"Alle Tabellen"_s);
    page.option(&Options::AskMissing);
    page.option(&Options::AutoColWidth);
    page.option(&Options::TellOfCopies);
    page.option(&Options::ShowPercentSign);
    page.option(&Options::CommaInPercent);
    page.end();
}

void addCrosstab(QTabWidget* tabs) {
    Page page(tabs, u"Kreuztabelle"_s);
    page.group(u"fraXTabMissing"_s, u"Fehlende Werte"_s);
    page.option(&Options::IncludeMissingXTab);
    page.option(&Options::IncludeMissingInPercentXTab);
    page.option(&Options::ShowValidSums);
    page.group(u"fraXTabCells"_s, u"Zellen"_s);
    page.option(&Options::IncludeNinXTab);
    page.option(&Options::IncludeNinXTabPercent);
    page.option(&Options::IncludeNinXTabPercentNFirst);
    page.group(u"fraXTabLabels"_s, u"Beschriftung"_s);
    page.option(&Options::NoColumnLabels);
    page.option(&Options::NoRowLabels);
    page.end();
}

void addTitles(QTabWidget* tabs) {
    Page page(tabs, u"Titel"_s);
    page.group(u"fraHeader"_s, u"Der Titel einer Tabelle enthält"_s);
    page.option(&Options::HeaderStudy);
    page.option(&Options::HeaderVar);
    page.option(&Options::HeaderYear);
    page.option(&Options::HeaderGroup);
    page.option(&Options::HeaderAddWeight);
    page.option(&Options::HeaderAddFilter);
    page.group(u"fraComparisonHeader"_s, u"Titel der Vergleichsauswertung"_s);
    page.option(&Options::HeaderValFirst);
    page.option(&Options::HeaderValAddVar);
    page.group(u"fraWeight"_s, u"Gewicht der Vergleichsauswertung"_s);
    page.choices(&Options::ComparisonWeight, {u"&kein Gewicht"_s, u"&Repräsentativgewicht"_s, u"&Haushaltsgewicht"_s});
    page.end();
}

void addCharts(QTabWidget* tabs) {
    Page page(tabs, u"Grafik"_s);
    page.group(u"fraCharts"_s, u"Darstellung"_s);
    page.option(&Options::TakeAbsolutValues);
    page.option(&Options::GraphColor);
    page.option(&Options::TrendGraphLine);
    page.group(u"fraChartItems"_s, u"Kategorien"_s);
    page.option(&Options::MaxItems);
    page.option(&Options::StartItem);
    page.end();
}

void addReport(QTabWidget* tabs) {
    Page page(tabs, u"Bericht"_s);
    page.group(u"fraPage"_s, u"Seite"_s);
    page.option(&Options::Landscape);
    page.option(&Options::FontName);
    page.option(&Options::FontSize);
    page.option(&Options::PrintDatePosition);
    page.option(&Options::PrintPageNumberPosition);
    page.option(&Options::ZoomFactor);
    page.group(u"fraReport"_s, u"Inhalt des Berichts"_s);
    page.option(&Options::ReportIncludeQuestionText);
    page.option(&Options::ReportIncludeTables);
    page.option(&Options::ReportIncludeGraphs);
    page.option(&Options::ReportIncludeShowCards);
    page.option(&Options::PrintMaxLevels);
    page.note(1, u"Ohne Wirkung: Schriftart. Tabellen stehen in einer der Schriften der Seite \"Schrift\"."_s);
    page.end();
}

} // namespace

QString browseButtonOf(const QString& field) {
    return u"cmd"_s + field.mid(3);
}

QString faultLabelOf(const QString& field) {
    return u"lblFault"_s + field.mid(3);
}

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
