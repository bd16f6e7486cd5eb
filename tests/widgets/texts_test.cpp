#include "analysis/frmAuswertung.h"
#include "analysis/frmDescriptives.h"
#include "analysis/frmNewCalculation.h"
#include "analysis/frmSaveChart.h"
#include "app/frmAbout.h"
#include "app/frmImport.h"
#include "app/frmMain.h"
#include "app/frmProcess.h"
#include "app/frmSplash.h"
#include "app/frmStatus.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "charts/ChartLayout.h"
#include "charts/frmGraphicOptions.h"
#include "config/CProfile.h"
#include "config/Options.h"
#include "config/frmOptions.h"
#include "editing/frmDatensatz.h"
#include "editing/frmDocument.h"
#include "editing/frmEdit.h"
#include "editing/frmFragebogen.h"
#include "editing/frmPosition.h"
#include "editing/frmTreeChoice.h"
#include "explorer/frmExplorer.h"
#include "language/SystemTable.h"
#include "language/mdLanguage.h"
#include "platform/dao/DBEngine.h"
#include "platform/system/Paths.h"
#include "printing/frmPrint.h"
#include "search/frmFind.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"
#include "widgets/ChildArea.h"
#include "widgets/Desktop.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Form.h"
#include "widgets/contrast.h"
#include "widgets/toolTips.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFont>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSet>
#include <QStackedLayout>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace {

/// A window of the program and how a test comes by one.
struct TextsWindow {
    QString name;
    std::function<Form*()> open;
};

template<class Window>
Form* textsShown() {
    auto* window = new Window;
    window->show();
    return window;
}

/// The main window, which opens the catalogue that the settings name.
Form* textsMain() {
    mdDataBase::CloseDataBase();
    auto* window = new frmMain;
    window->load();
    window->show();
    return window;
}

Form* textsProcess() {
    auto* window = new frmProcess([] {});
    window->lblStatus->setText(u"SV2018"_s);
    window->show();
    return window;
}

/// An explorer with a variable in both panels.
Form* textsExplorer() {
    if (gDatabase.State() != 1)
        mdDataBase::OpenLastDataBase(Paths::join(gOptions.DatabasePath, gOptions.DatabaseName));
    frmExplorer* window = frmExplorer::OpenExplorerView(1);
    for (const CatalogueNode& node : window->model().tree.nodes())
        if (node.id() == u"SV2018")
            window->showNode(node.Key);
    window->setPanels(2);
    return window;
}

/// The descriptions of the archive's studies.
Form* textsDocument() {
    if (gDatabase.State() != 1)
        mdDataBase::OpenLastDataBase(Paths::join(gOptions.DatabasePath, gOptions.DatabaseName));
    return frmDocument::openView(1);
}

Form* textsFind() {
    if (gDatabase.State() != 1)
        mdDataBase::OpenLastDataBase(Paths::join(gOptions.DatabasePath, gOptions.DatabaseName));
    return textsShown<frmFind>();
}

Form* textsDescriptives() {
    auto* window = new frmDescriptives(nullptr, nullptr);
    window->QDialog::show();
    return window;
}

Form* textsNewCalculation() {
    auto* window = new frmNewCalculation(QString(), nullptr);
    window->QDialog::show();
    return window;
}

/// Of a chart with one value.
Form* textsGraphicOptions() {
    ChartModel chart;
    chart.kind = TableKind::Frequency;
    chart.categories = {{u"ja"_s, u"1"_s, u"1"_s, 1}};
    chart.series.resize(1);
    chart.values = {{{7.0, u"7"_s}}};
    chart.styles.resize(1);
    auto* window = new frmGraphicOptions(chart, labelTableOf(chart), defaultChartSize, true, nullptr);
    window->QDialog::show();
    return window;
}

Form* textsSaveChart() {
    auto* window = new frmSaveChart({}, nullptr);
    window->QDialog::show();
    return window;
}

Form* textsImport() {
    auto* window = new frmImport(QString(), QString(), nullptr);
    window->QDialog::show();
    return window;
}

Form* textsEdit() {
    auto* window = new frmEdit(u"Beschreibung eingeben für 'Person'"_s, QString(), QString(), nullptr);
    window->QDialog::show();
    return window;
}

Form* textsPosition() {
    auto* window = new frmPosition({.lines = {u"Person"_s, u"Haushalt"_s}}, nullptr);
    window->QDialog::show();
    return window;
}

/// With the longest of its words and a printer.
Form* textsPrint() {
    PrintSource source{.window = PrintSource::Window::Explorer, .language = gLanguage == 0 ? 1 : 2, .view = 1};
    source.study = source.nodeId = u"SV2018"_s;
    source.variable = u"LZUFR"_s;
    source.nodeText = u"Leben in Solvarden 2018"_s;
    source.viewName = u"Studien"_s;
    auto* window = new frmPrint(source, PrinterChoice({{.name = u"Büro"_s, .place = u"Flur"_s, .paper = 9}}),
                                frmPrint::For::Printing);
    window->QDialog::show();
    return window;
}

Form* textsTreeChoice() {
    static const ui::TreeChoice choice{.title = u"Kopieren nach"_s, .entries = {{.text = u"Person"_s}}};
    auto* window = new frmTreeChoice(choice, nullptr);
    window->show();
    return window;
}

const TextsWindow textsWindows[] = {
    {u"frmMain"_s, textsMain},
    {u"frmSplash"_s, textsShown<frmSplash>},
    {u"frmAbout"_s, textsShown<frmAbout>},
    {u"frmStatus"_s, textsShown<frmStatus>},
    {u"frmProcess"_s, textsProcess},
    {u"frmOptions"_s, textsShown<frmOptions>},
    {u"frmAuswertung"_s, textsShown<frmAuswertung>},
    {u"frmExplorer"_s, textsExplorer},
    {u"frmDescriptives"_s, textsDescriptives},
    {u"frmDocument"_s, textsDocument},
    {u"frmFragebogen"_s, textsShown<frmFragebogen>},
    {u"frmDatensatz"_s, textsShown<frmDatensatz>},
    {u"frmFind"_s, textsFind},
    {u"frmImport"_s, textsImport},
    {u"frmNewCalculation"_s, textsNewCalculation},
    {u"frmGraphicOptions"_s, textsGraphicOptions},
    {u"frmSaveChart"_s, textsSaveChart},
    {u"frmEdit"_s, textsEdit},
    {u"frmPosition"_s, textsPosition},
    {u"frmTreeChoice"_s, textsTreeChoice},
    {u"frmPrint"_s, textsPrint},
};

/// Texts that are the same word in both languages.
const QSet<QString> textsEqual = {u"Varidex Creation Mode"_s,
                                  u"OK"_s,
                                  u"Explorer"_s,
                                  u"Proportional:"_s,
                                  u"Variable"_s,
                                  u"Count"_s,
                                  u"Minimum"_s,
                                  u"Minimum:"_s,
                                  u"Maximum:"_s,
                                  u"Missing"_s,
                                  u"Maximum"_s,
                                  u"Arithmetic Mean"_s,
                                  u"Standard Deviation"_s,
                                  u"Valid N"_s,
                                  u"Range"_s,
                                  u"Sum"_s,
                                  u"Kurtosis"_s,
                                  u"Mode"_s,
                                  u"Median"_s,
                                  u"Quartiles"_s,
                                  u"Missing Values"_s,
                                  u"Filter"_s,
                                  u"Labels"_s,
                                  u"ShowCards"_s,
                                  u"AaBbCc ÄäÖöÜüß 0123456789"_s,
                                  u"Varidex"_s,
                                  u"Deutsch"_s,
                                  u"English"_s};

/// Places that have no row by rule: what they show is made at run time or is the same in any language.
const QStringList textsByRule = {
    u"frmMain Form frmMain"_s,              // the product's name, and the catalogue before it
    u"frmStatus Form frmStatus"_s,          // the product's name
    u"frmEdit Form frmEdit"_s,              // the entry that it is about
    u"frmTreeChoice Form frmTreeChoice"_s,  // what is to be done with the entry
    u"frmExplorer Form frmExplorer"_s,      // the view's name and the window's number
    u"frmDocument Form frmDocument"_s,      // the same of its descriptions
    u"frmExplorer ListView lvListView("_s,  // headings set in code
    u"frmExplorer Statusbar sbStatusBarV"_s // facts carry their names and what they tell
};
bool textsIsByRule(const QString& place) {
    return std::ranges::any_of(textsByRule, [&](const QString& start) { return place.startsWith(start); });
}

struct TextsRow {
    QString german, english;
};
QString textsPlace(const QString& form, const QString& type, const QString& name, const QString& index,
                   const QString& property) {
    const QString member = index.isEmpty() ? QString() : u'(' + index + u')';
    return form + u' ' + type + u' ' + name + member + (property == u"ToolTipText" ? u" ToolTipText"_s : QString());
}

/// The rows of the system database by place.
std::map<QString, TextsRow> textsRows() {
    std::map<QString, TextsRow> rows;
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(SystemTable::path());
    const dao::RecordsetPtr table = database->OpenRecordset(u"select * from tblStat"_s, dao::dbOpenSnapshot);
    for (; !table->Eof(); table->MoveNext())
        rows[textsPlace(table->text(u"FormName"_s), table->text(u"CtrlTyp"_s), table->text(u"CtrlName"_s),
                        table->value(u"Index"_s).toText(), table->text(u"Property"_s))] = {table->text(u"Deutsch"_s),
                                                                                           table->text(u"Englisch"_s)};
    table->Close();
    database->Close();
    return rows;
}

QString textsPlaceOf(const Form& form, const ControlText& control) {
    const QString index = control.index ? QString::number(*control.index) : QString();
    return textsPlace(form.windowName(), control.type, control.name, index, control.property);
}

bool textsSkipped(const ControlText& control) {
    return control.text.isEmpty() || control.type == u"TextBox" ||
           (control.type == u"ComboBox" && control.tag == u"user_defined");
}

/// What is wrong with a widget's room for its text; empty if nothing is.
QString textsCut(const QWidget* widget) {
    const QSize room = widget->size();
    QSize needed;
    // What comes from the catalogue may be of any length, and ends in dots where it must.
    if (dynamic_cast<const ElidedLabel*>(widget))
        return {};
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        needed = label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
    } else if (qobject_cast<const QCheckBox*>(widget) || qobject_cast<const QRadioButton*>(widget) ||
               qobject_cast<const QPushButton*>(widget)) {
        needed = widget->sizeHint();
    } else if (const auto* box = qobject_cast<const QGroupBox*>(widget)) {
        needed = QSize(box->fontMetrics().horizontalAdvance(QString(box->title()).remove(u'&')), 0);
    } else if (const auto* bar = qobject_cast<const QTabBar*>(widget)) {
        // Tabs that have tips shorten their captions where the font is large.
        const bool shortens =
            bar->elideMode() != Qt::ElideNone && !bar->tabToolTip(0).isEmpty() && bar->fontInfo().pointSize() > 14;
        needed = QSize((shortens ? bar->minimumSizeHint() : bar->sizeHint()).width(), 0);
    } else if (const auto* header = qobject_cast<const QHeaderView*>(widget)) {
        for (int i = 0; i < header->count(); ++i)
            if (!header->isSectionHidden(i) && header->orientation() == Qt::Horizontal &&
                header->sectionSize(i) < header->sectionSizeHint(i))
                return u"column "_s + QString::number(i);
        return {};
    }
    if (needed.width() <= room.width() && needed.height() <= room.height())
        return {};
    return QString::number(room.width()) + u'x' + QString::number(room.height()) + u" instead of "_s +
           QString::number(needed.width()) + u'x' + QString::number(needed.height());
}

void expectNothingCut(const Form& form, const QString& where) {
    QWidget& window = form.widget();
    QList<QWidget*> widgets = window.findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        if (!widget->isVisible())
            continue;
        const QString fault = textsCut(widget);
        EXPECT_EQ(fault, QString()) << qPrintable(where) << ' ' << qPrintable(form.windowName()) << ' '
                                    << qPrintable(widget->objectName()) << " \""
                                    << qPrintable(widget->property("text").toString()) << '"';
    }
}

/// Everything has the least size that it asks for, nothing lies over its neighbour, and no page is wider than its view.
void expectRoomForAll(const Form& form, const QString& where) {
    const QString place = where + u' ' + form.windowName() + u' ';
    for (QWidget* widget : form.widget().findChildren<QWidget*>()) {
        if (!widget->isVisible())
            continue;
        const auto* area = qobject_cast<QScrollArea*>(widget);
        EXPECT_TRUE(!area || area->widget()->width() <= area->viewport()->width())
            << qPrintable(place) << "scrolls sideways";
        QRegion taken;
        for (int i = 0; widget->layout() && i < widget->layout()->count(); ++i) {
            QLayoutItem* item = widget->layout()->itemAt(i);
            if (item->isEmpty() || qobject_cast<QStackedLayout*>(widget->layout()))
                continue;
            const QRect part = item->geometry();
            const QString name =
                place + (item->widget() ? item->widget()->objectName() : QString()) + u" in "_s + widget->objectName();
            EXPECT_FALSE(taken.intersects(part)) << qPrintable(name) << " lies over its neighbour";
            EXPECT_TRUE(widget->rect().contains(part)) << qPrintable(name) << " reaches beyond";
            EXPECT_GE(part.height(), item->minimumSize().height()) << qPrintable(name);
            EXPECT_GE(part.width(), item->minimumSize().width()) << qPrintable(name);
            taken += part;
        }
    }
}

/// Looks at a window page by page.
template<class Look>
void onEveryPage(QWidget& window, Look&& look) {
    auto* tabs = window.findChild<QTabWidget*>();
    const int pages = tabs ? tabs->count() : 1;
    for (int page = 0; page < pages; ++page) {
        if (tabs)
            tabs->setCurrentIndex(page);
        look(page);
    }
}

class WindowTexts : public WindowTest {
protected:
    WindowTexts() {
        const QString path = openSampleArchive();
        const std::pair<QString, QString> settings[] = {{u"DatabasePath"_s, Paths::folderOf(path)},
                                                        {u"DatabaseName"_s, Paths::fileOf(path)}};
        for (const auto& [key, value] : settings)
            CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, key, value);
    }
    ~WindowTexts() override { QApplication::setFont(font_); }

    static void closeAll() {
        unloadChildWindows();
        while (!Form::open().empty())
            delete &Form::open().front()->widget();
    }

    static void setFontSize(int points) {
        QFont font = QApplication::font();
        font.setPointSize(points);
        QApplication::setFont(font);
    }

private:
    QFont font_ = QApplication::font();
};

} // namespace

TEST_F(WindowTexts, EveryControlShowsTheTextOfItsRowInBothLanguages) {
    const std::map<QString, TextsRow> rows = textsRows();
    QSet<QString> places;
    for (const int language : {0, 1}) {
        setLanguage(language);
        for (const TextsWindow& window : textsWindows) {
            Form* form = window.open();
            settle();
            for (const ControlText& control : form->controls()) {
                const QString place = textsPlaceOf(*form, control);
                places.insert(place);
                if (textsSkipped(control) || textsIsByRule(place))
                    continue;
                const auto row = rows.find(place);
                if (row == rows.end()) {
                    ADD_FAILURE() << "no row for " << qPrintable(place) << " \"" << qPrintable(control.text) << '"';
                    continue;
                }
                EXPECT_EQ(control.text, language == 0 ? row->second.german : row->second.english) << qPrintable(place);
            }
            closeAll();
        }
    }
    for (const auto& [place, row] : rows) {
        const QString german = QString(row.german).remove(u'&');
        EXPECT_FALSE((row.german + row.english).contains(u"(&"_s)) << qPrintable(place) << " reads as a count";
        EXPECT_TRUE(german != QString(row.english).remove(u'&') || textsEqual.contains(german)) << qPrintable(place);
        const bool isOpened = std::ranges::any_of(
            textsWindows, [&](const TextsWindow& window) { return place.startsWith(window.name + u' '); });
        EXPECT_TRUE(!isOpened || places.contains(place)) << "a row without a control: " << qPrintable(place);
    }
}

TEST_F(WindowTexts, AReaderOfTheScreenHasANameForWhateverTakesTheKeyboard) {
    for (const int language : {0, 1}) {
        setLanguage(language);
        for (const TextsWindow& window : textsWindows) {
            Form* form = window.open();
            settle();
            for (QWidget* widget : form->widget().findChildren<QWidget*>()) {
                // Tabs and menus have their texts one by one, and what drops down speaks for what it drops from.
                const bool spoken = widget->inherits("QTabBar") || widget->inherits("QTabWidget") ||
                                    widget->inherits("QMenu") || widget->inherits("QMdiArea") ||
                                    widget->window() != form->widget().window() ||
                                    qobject_cast<QComboBox*>(widget->parentWidget());
                if (spoken || widget->focusProxy() || !(widget->focusPolicy() & Qt::TabFocus))
                    continue;
                const QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(widget);
                EXPECT_FALSE(!reader || reader->text(QAccessible::Name).isEmpty())
                    << qPrintable(form->windowName()) << ' ' << qPrintable(widget->objectName()) << ' '
                    << widget->metaObject()->className();
            }
            closeAll();
        }
    }
}

TEST_F(WindowTexts, AReaderOfTheScreenHearsNoMarkupAndPickersByTheirNames) {
    for (const TextsWindow& window : textsWindows) {
        Form* form = window.open();
        settle();
        for (QWidget* widget : form->widget().findChildren<QWidget*>()) {
            const QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(widget);
            const QString description = reader ? reader->text(QAccessible::Description) : QString();
            EXPECT_FALSE(description.contains(u'<') || description.contains(u"&amp;"_s))
                << qPrintable(widget->objectName()) << ": " << qPrintable(description);
            const auto* box = qobject_cast<QComboBox*>(widget);
            if (!box || box->accessibleName().isEmpty())
                continue;
            EXPECT_EQ(reader->text(QAccessible::Name), box->accessibleName());
            EXPECT_EQ(reader->text(QAccessible::Value), box->currentText());
            EXPECT_EQ(reader->childCount(), box->isEditable() ? 2 : 1);
        }
        closeAll();
    }
    QLabel label;
    label.setToolTip(plainToolTip(u"a < b & <i>c</i>"_s));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Description), u"a < b & <i>c</i>"_s);
    label.setToolTip(u"plain"_s);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Description), u"plain"_s);
}

/// Luminances and ratios worked out by hand: black on white 21, #767676 on white 4.54.
TEST_F(WindowTexts, PromptsAndHintsCanBeReadOnAnyGround) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.01);
    EXPECT_NEAR(contrast(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01);
    const QPalette before = QApplication::palette();
    for (const auto& [text, ground] : {std::pair<QColor, QColor>{Qt::black, Qt::white},
                                       {QColor(255, 255, 255), QColor(35, 37, 40)},
                                       {QColor(200, 200, 200), QColor(60, 60, 60)}}) {
        QPalette palette(text, ground, ground, ground, ground, text, text, ground, ground);
        QApplication::setPalette(palette);
        QLineEdit line;
        QTableView list;
        ChildArea area;
        for (const QWidget* widget : {static_cast<QWidget*>(&line), static_cast<QWidget*>(&list)})
            EXPECT_GE(contrast(widget->palette().color(QPalette::PlaceholderText), ground), 4.5) << ground.lightness();
        area.setHint(u"Hint"_s);
        area.resize(400, 200);
        const QImage picture = area.grab().toImage();
        const QColor behind = picture.pixelColor(2, 2);
        double most = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                most = std::max(most, contrast(picture.pixelColor(x, y), behind));
        EXPECT_GE(most, 4.5) << ground.lightness();
    }
    QApplication::setPalette(before);
}

TEST_F(WindowTexts, NothingIsCutAtTheDefaultSizeWithSmallAndLargeFonts) {
    for (const int points : {8, 24})
        for (const int language : {0, 1}) {
            setFontSize(points);
            setLanguage(language);
            for (const TextsWindow& window : textsWindows) {
                Form* form = window.open();
                onEveryPage(form->widget(), [&](int page) {
                    settle();
                    expectNothingCut(*form, (language == 0 ? u"de "_s : u"en "_s) + QString::number(points) +
                                                u" pt page "_s + QString::number(page));
                });
                closeAll();
            }
        }
}

TEST_F(WindowTexts, NothingIsCutOrScrolledSidewaysInsideTheMainWindowWithALargeFont) {
    setFontSize(24);
    for (const QSize& screen : {QSize(1920, 1080), QSize(1366, 768)})
        for (const int language : {0, 1}) {
            setLanguage(language);
            Form* form = textsMain();
            auto& window = static_cast<frmMain&>(form->widget());
            window.resize(screen * 0.9);
            settle();
            frmExplorer* explorer = frmExplorer::OpenExplorerView(1);
            explorer->setPanels(2);
            for (const CatalogueNode& node : explorer->model().tree.nodes())
                if (node.id() == u"SV2018")
                    explorer->showNode(node.Key);
            auto* list = explorer->findChild<QAbstractItemView*>(u"lvListView"_s);
            list->setCurrentIndex(list->model()->index(3, 0));
            settle();
            const QString where = (language == 0 ? u"de "_s : u"en "_s) + QString::number(screen.width());
            expectNothingCut(*explorer, where);
            expectRoomForAll(*explorer, where);
            auto* analysis = frmAuswertung::openFrom(explorer);
            analysis->model().edit().StudyClick(u"SV2018"_s);
            analysis->model().edit().chooseVariable(u"LZUFR"_s);
            for (const AnalysisMode mode : {AnalysisMode::Frequency, AnalysisMode::Crosstab, AnalysisMode::Descriptives,
                                            AnalysisMode::Comparison}) {
                analysis->model().edit().chooseMode(mode);
                analysis->optionsApplied();
                settle();
                const QString inMode = where + u" mode "_s + QString::number(static_cast<int>(mode));
                expectNothingCut(*analysis, inMode);
                expectRoomForAll(*analysis, inMode);
            }
            analysis->model().edit().chooseMode(AnalysisMode::Frequency);
            analysis->findChild<QTabWidget*>(u"SSTab"_s)->setCurrentIndex(1);
            settle();
            EXPECT_TRUE(analysis->model().result().facts);
            expectNothingCut(*analysis, where + u" table"_s);
            expectRoomForAll(*analysis, where + u" table"_s);
            closeAll();
        }
}
