#include "config/frmOptions.h"

#include "app/globals.h"
#include "config/CProfile.h"
#include "config/Options.h"
#include "diagnostics/GestureScope.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

class OptionsDialog : public WindowTest {
protected:
    std::unique_ptr<frmOptions> dialog;

    void open() {
        dialog = std::make_unique<frmOptions>();
        dialog->show();
        settle();
    }
    template<class Widget>
    Widget* of(const QString& name) {
        auto* found = dialog->findChild<Widget*>(name);
        EXPECT_TRUE(found) << qPrintable(name);
        return found;
    }
    int tab() { return of<QTabWidget>(u"tbsOptions"_s)->currentIndex(); }
    void click(const QString& button) { of<QPushButton>(button)->click(); }
};

/// A window that counts how often options reached it.
class OptionsFollower : public QWidget, public Form {
public:
    OptionsFollower() : Form(*this, u"frmFollower"_s) {}
    void optionsApplied() override { ++applied; }
    int applied = 0;
};

} // namespace

TEST_F(OptionsDialog, ShowsEveryOptionInItsControlAndChangesNoneByOpeningAndApplying) {
    gOptions.FixedFont = u"A font this machine lacks"_s;
    gOptions.FontSize = 13;
    gOptions.ComparisonWeight = 1;
    gOptions.Landscape = false;
    gOptions.ZoomFactor = 5;
    const Options before = gOptions;
    open();
    EXPECT_EQ(of<QComboBox>(u"cmbFixedFont"_s)->currentText(), before.FixedFont);
    EXPECT_EQ(of<QSpinBox>(u"txtMaxItems"_s)->value(), 20);
    EXPECT_EQ(of<QSpinBox>(u"zoomfactor"_s)->value(), 5) << "less than can be typed";
    EXPECT_TRUE(of<QRadioButton>(u"optWeight(1)"_s)->isChecked());
    EXPECT_FALSE(of<QCheckBox>(u"chkLandscape"_s)->isChecked());
    EXPECT_TRUE(of<QCheckBox>(u"chkbSys"_s)->isChecked());
    for (const OptionDescriptor* option : OptionsModel::shown())
        EXPECT_TRUE(dialog->control(option->control.name.toString()) ||
                    option->control.form == OptionControl::Form::Choices)
            << qPrintable(option->key.toString());
    dialog->cmdApply_Click();
    for (const OptionDescriptor& option : optionDescriptors()) {
        const QString extension = option.key == u"DatabaseName" ? u".mdb"_s : QString();
        EXPECT_EQ(optionText(gOptions, option, false), optionText(before, option, false) + extension);
    }
}

TEST_F(OptionsDialog, CancelCostsNothingAndOkAppliesTellsTheWindowsAndLeaves) {
    OptionsFollower follower;
    open();
    of<QCheckBox>(u"chkIncludeMissing"_s)->setChecked(true);
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_FALSE(gOptions.IncludeMissing);
    EXPECT_EQ(follower.applied, 0);
    open();
    EXPECT_FALSE(of<QCheckBox>(u"chkIncludeMissing"_s)->isChecked());
    of<QCheckBox>(u"chkIncludeMissing"_s)->setChecked(true);
    of<QComboBox>(u"cmbDate"_s)->setCurrentText(u"unten, links"_s);
    QTest::keyClick(of<QLineEdit>(u"txtDatabaseName"_s), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(gOptions.IncludeMissing);
    EXPECT_EQ(gOptions.PrintDatePosition, u"botleft"_s);
    EXPECT_EQ(gOptions.DatabaseName, u".mdb"_s);
    EXPECT_EQ(follower.applied, 1);
}

TEST_F(OptionsDialog, CtrlTabTurnsTheTabsRoundTheEndsAndOnlyThePageInViewIsEnabled) {
    open();
    const int last = of<QTabWidget>(u"tbsOptions"_s)->count() - 1;
    QTest::keyClick(of<QPushButton>(u"cmdOK"_s), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(tab(), last);
    EXPECT_TRUE(of<QWidget>(arrayName(u"picOptions"_s, last))->isEnabled());
    EXPECT_FALSE(of<QWidget>(u"picOptions(0)"_s)->isEnabled());
    QTest::keyClick(of<QCheckBox>(u"chkLandscape"_s), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(tab(), 0);
    QTest::keyClick(of<QLineEdit>(u"txtDataPath"_s), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(tab(), 1);
}

TEST_F(OptionsDialog, DependentBoxesAndSamplesFollowAsOneClicks) {
    open();
    auto* tabs = of<QTabWidget>(u"tbsOptions"_s);
    tabs->setCurrentIndex(5);
    auto* dependent = of<QCheckBox>(u"chkHeader(5)"_s);
    EXPECT_TRUE(dependent->isEnabled());
    QTest::keyClick(of<QCheckBox>(u"chkHeader(4)"_s), Qt::Key_Space);
    EXPECT_FALSE(dependent->isEnabled());
    EXPECT_FALSE(dependent->isChecked());
    tabs->setCurrentIndex(2);
    auto* fonts = of<QComboBox>(u"cmbPropFont"_s);
    ASSERT_GT(fonts->count(), 1);
    fonts->setCurrentIndex(fonts->count() - 1);
    EXPECT_EQ(of<QLabel>(u"lblSample2"_s)->font().family(), fonts->currentText());
    EXPECT_FALSE(of<QComboBox>(u"cmbDate"_s)->isEditable());
}

TEST_F(OptionsDialog, StatisticsAreChosenAsDefaultsInTheirOwnDialog) {
    open();
    gOptions.Descriptives = 126;
    auto* tabs = of<QTabWidget>(u"tbsOptions"_s);
    for (int i = 0; i < tabs->count() && !of<QPushButton>(u"cmdDescriptives"_s)->isVisible(); ++i)
        tabs->setCurrentIndex(i);
    const auto choose = [&](Qt::Key end) {
        QTimer::singleShot(0, [end] {
            QWidget* inFront = QApplication::activeModalWidget();
            ASSERT_NE(inFront, nullptr);
            QTest::keyClick(inFront->findChild<QCheckBox*>(u"chkDescriptives(0)"_s), Qt::Key_Space);
            QTest::keyClick(inFront, end);
        });
        of<QPushButton>(u"cmdDescriptives"_s)->click();
    };
    choose(Qt::Key_Escape);
    EXPECT_EQ(gOptions.Descriptives, 126);
    choose(Qt::Key_Enter);
    EXPECT_EQ(gOptions.Descriptives, 124) << "without Count, which is 2";
    EXPECT_EQ(gOptions.DescriptivesDigits, u"2;2;2;2;2;2;2;2;2;2;2;2;2;0;") << "a missing number of digits counts as 0";
}

TEST_F(OptionsDialog, LoadingTakesEffectAtOnceAndSavingWritesWhatIsInForce) {
    gOptions.MaxItems = 7;
    const QString file = home.path(u"meine;Optionen.ini"_s);
    open();
    of<QSpinBox>(u"txtMaxItems"_s)->setValue(99);
    asker.file(file);
    click(u"cmdSave"_s);
    gOptions.MaxItems = 20;
    asker.file(file);
    click(u"cmdLoad"_s);
    EXPECT_EQ(gOptions.MaxItems, 7);
    EXPECT_EQ(of<QSpinBox>(u"txtMaxItems"_s)->value(), 7);
}

TEST_F(OptionsDialog, EachPressOfAButtonTellsOfItsFailureThoughTheCommandThatOpenedTheDialogLasts) {
    struct Failing : OptionsFollower {
        void optionsApplied() override { throw dao::Error(3051, u"cannot open the file '/a/x.mdb'."_s); }
    } follower;
    const GestureScope command;
    open();
    for (const size_t boxes : {1u, 2u}) {
        asker.answer(ui::Answer::Abort);
        click(u"cmdApply"_s);
        EXPECT_EQ(asker.boxes.size(), boxes);
    }
}

TEST_F(OptionsDialog, AFieldIsFilledByItsButtonByF4AndByADoubleClick) {
    open();
    auto* field = of<QLineEdit>(u"txtSPSSPath"_s);
    asker.file(u"/srv/sav"_s);
    click(u"cmdSPSSPath"_s);
    EXPECT_EQ(field->text(), u"/srv/sav"_s);
    asker.file(u"/srv/sav2"_s);
    QTest::keyClick(field, Qt::Key_F4);
    EXPECT_EQ(asker.lastChoice.folder, u"/srv/sav"_s) << "the choice begins where the field points";
    EXPECT_EQ(field->text(), u"/srv/sav2"_s);
    asker.file(u"/srv/sav3/studie.sav"_s);
    QTest::mouseDClick(field, Qt::LeftButton);
    EXPECT_EQ(field->text(), u"/srv/sav3"_s);
}

TEST_F(OptionsDialog, APathThatLeadsNowhereIsMarkedAsItIsTypedAndANumberCannotBeWrong) {
    QDir(home.path()).mkdir(u"daten"_s);
    QFile(home.path(u"archiv.mdb"_s)).open(QIODevice::WriteOnly);
    open();
    const auto words = [this](const QString& field) {
        const auto* label = of<QLabel>(u"lblFault"_s + field.mid(3));
        const bool marked =
            of<QLineEdit>(field)->palette().color(QPalette::Base) != dialog->palette().color(QPalette::Base);
        EXPECT_TRUE(label->isVisible() == marked && marked == !label->text().isEmpty()) << qPrintable(field);
        return label->text();
    };
    const QString folder = u"Diesen Ordner gibt es nicht."_s, file = u"Diese Datei gibt es in dem Ordner nicht."_s;
    const struct {
        QString field, typed, words;
    } cases[] = {{u"txtDataPath"_s, home.path(u"date"_s), folder},
                 {u"txtDataPath"_s, home.path(u"daten"_s), {}},
                 {u"txtDataPath"_s, home.path(u"archiv.mdb"_s), folder},
                 {u"txtDataPath"_s, {}, {}},
                 {u"txtDatabaseName"_s, u"archi"_s, {}},
                 {u"txtDatabasePath"_s, home.path(), {}},
                 {u"txtDatabaseName"_s, u"archi"_s, file},
                 {u"txtDatabaseName"_s, u"archiv"_s, {}},
                 {u"txtDatabasePath"_s, home.path(u"x"_s), folder}};
    for (const auto& c : cases) {
        of<QLineEdit>(c.field)->setText(c.typed);
        EXPECT_EQ(words(c.field), c.words) << qPrintable(c.typed);
    }
    EXPECT_EQ(words(u"txtDatabaseName"_s), QString());

    auto* number = of<QSpinBox>(u"txtMaxItems"_s);
    number->selectAll();
    QTest::keyClicks(number, u"twelve"_s);
    dialog->cmdApply_Click();
    EXPECT_EQ(gOptions.MaxItems, 20);
    EXPECT_EQ(gOptions.DatabasePath, home.path(u"x"_s)) << "what is typed wrongly costs nothing else";
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(OptionsDialog, OpensOnThePageThatItWasLeftOnAndAPageGetsItsDefaultsBackAlone) {
    CProfile().SetRegistryEntry(Registry::LocalMachine, SettingsKeys::machine, u"StartItem"_s, u"3"_s);
    gOptions.MaxItems = 7;
    gOptions.Landscape = false;
    open();
    of<QTabWidget>(u"tbsOptions"_s)->setCurrentIndex(6);
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    open();
    EXPECT_EQ(tab(), 6);
    of<QSpinBox>(u"txtStartItem"_s)->setValue(2);
    of<QCheckBox>(u"chkGraphColor"_s)->setChecked(false);
    click(u"cmdDefaults"_s);
    EXPECT_EQ(of<QSpinBox>(u"txtStartItem"_s)->value(), 3) << "the installation's own default";
    EXPECT_EQ(gOptions.MaxItems, 7) << "nothing is in force yet";
    click(u"cmdApply"_s);
    EXPECT_TRUE(gOptions.MaxItems == 20 && gOptions.GraphColor && !gOptions.Landscape);
    of<QTabWidget>(u"tbsOptions"_s)->setCurrentIndex(0);
    of<QLineEdit>(u"txtDataPath"_s)->setText(u"/srv/daten"_s);
    of<QCheckBox>(u"chkReopenCatalogue"_s)->setChecked(false);
    click(u"cmdDefaults"_s);
    EXPECT_TRUE(of<QCheckBox>(u"chkReopenCatalogue"_s)->isChecked());
    EXPECT_EQ(of<QLineEdit>(u"txtDataPath"_s)->text(), u"/srv/daten"_s) << "a path has no default";
    of<QTabWidget>(u"tbsOptions"_s)->setCurrentIndex(5);
    of<QRadioButton>(u"optWeight(1)"_s)->click();
    click(u"cmdDefaults"_s);
    EXPECT_TRUE(of<QRadioButton>(u"optWeight(0)"_s)->isChecked());
}

TEST_F(OptionsDialog, NoMnemonicIsGivenTwiceOnAPageInEitherLanguage) {
    for (const int language : {0, 1}) {
        setLanguage(language);
        open();
        const int pages = of<QTabWidget>(u"tbsOptions"_s)->count();
        for (int page = 0; page < pages; ++page) {
            QStringList letters;
            const auto note = [&](const QString& text) {
                const qsizetype at = text.indexOf(u'&');
                if (at >= 0)
                    letters << text.mid(at + 1, 1).toLower();
            };
            QList<QWidget*> widgets = of<QWidget>(arrayName(u"picOptions"_s, page))->findChildren<QWidget*>();
            widgets << of<QPushButton>(u"cmdDefaults"_s) << of<QPushButton>(u"cmdLoad"_s)
                    << of<QPushButton>(u"cmdSave"_s) << of<QPushButton>(u"cmdApply"_s);
            for (const QWidget* widget : widgets)
                note(widget->property("text").toString());
            const QStringList all = letters;
            EXPECT_EQ(letters.removeDuplicates(), 0) << page << ": " << qPrintable(all.join(u' '));
            EXPECT_GT(letters.size(), 4);
        }
        for (const QString& field : {u"txtDatabasePath"_s, u"txtSkinPath"_s})
            EXPECT_FALSE(of<QPushButton>(u"cmd"_s + field.mid(3))->accessibleName().isEmpty());
    }
    setLanguage(0);
}
