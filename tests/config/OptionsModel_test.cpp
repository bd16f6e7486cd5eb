#include "config/CProfile.h"
#include "config/OptionPaths.h"
#include "config/OptionsModel.h"
#include "diagnostics/errors.h"
#include "language/SystemDatabase.h"
#include "language/mdLanguage.h"
#include "support/KeptTexts.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include <QMap>
#include <QSet>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class OptionsModelTest : public ::testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;

    OptionsModelTest() {
        gOptions = {};
        loadKeptTexts();
    }
    ~OptionsModelTest() override {
        gOptions = {};
        gLanguage = 0;
    }
};

QString stored(const QString& name) {
    return storedSetting(name, u"-"_s).toString();
}

} // namespace

TEST_F(OptionsModelTest, EveryOptionButThoseWithoutAControlHasOneOfItsOwn) {
    QSet<QString> controls;
    for (const OptionDescriptor* option : OptionsModel::shown()) {
        const QString name = option->control.name.toString();
        EXPECT_FALSE(controls.contains(name)) << qPrintable(name);
        controls.insert(name);
    }
    QStringList left;
    for (const OptionDescriptor& option : optionDescriptors())
        if (option.control.form == OptionControl::Form::None)
            left << option.key.toString();
    EXPECT_EQ(left, (QStringList{u"EditStudiesMode"_s, u"EnglishLanguage"_s, u"PrintPageCount"_s, u"PrintStartPage"_s,
                                 u"PrintStartPageNumber"_s, u"Descriptives"_s, u"DescriptivesDigits"_s}));
}

// A control that is spelled wrongly in its row would have no English, and its option no control that anyone finds.
TEST_F(OptionsModelTest, EveryControlHasItsCaptionInTheTextTable) {
    SystemRows rows;
    ASSERT_EQ(readControlRows(QStringLiteral(VARIDEX_SOURCE_ROOT "/resources/controls/frmOptions.tsv"), rows),
              QStringList());
    QMap<QString, QString> captions;
    for (const ControlRow& row : rows.controls)
        captions[row.ctrlName + (row.index ? u"(%1)"_s.arg(*row.index) : QString())] = row.german;
    for (const OptionDescriptor* option : OptionsModel::shown()) {
        const OptionControl& control = option->control;
        const QString name = control.name.toString();
        const QString word = name.startsWith(u"txt") || name.startsWith(u"cmb") ? name.mid(3) : name;
        const QString captioned = control.form == OptionControl::Form::CheckBox ? name : u"lbl"_s + word;
        EXPECT_EQ(captions.value(captioned), control.caption) << qPrintable(name);
        EXPECT_EQ(captions.value(u"cmd"_s + word), control.tip) << qPrintable(name);
    }
}

TEST_F(OptionsModelTest, PathsAreNormalisedAtApplyAndOnlyThen) {
    struct Case {
        QString Options::*option;
        QString typed, applied;
    };
    const Case cases[] = {
        {&Options::DatabaseName, u"archiv"_s, u"archiv.mdb"_s},
        {&Options::DatabaseName, u"Archiv.MDB"_s, u"Archiv.MDB"_s},
        {&Options::DatabasePath, u"D:\\Archiv\\"_s, u"D:\\Archiv"_s},
        {&Options::DatabasePath, u"D:\\"_s, u"D:"_s},
        {&Options::DatabasePath, u"/"_s, u"/"_s},
        {&Options::QuestionnairePath, u"/srv/pdf/"_s, u"/srv/pdf"_s},
        {&Options::SPSSPath, u"\\\\host\\sav\\"_s, u"\\\\host\\sav"_s},
        {&Options::DataPath, u" D:\\Daten\\ "_s, u" D:\\Daten\\ "_s},
        {&Options::SkinPath, u"C:\\"_s, u"C:\\"_s},
    };
    for (const Case& c : cases) {
        const QString control = OptionsModel::controlOf(c.option);
        OptionsModel model;
        model.setValue(control, c.typed);
        EXPECT_EQ(model.value(control), c.typed);
        ASSERT_TRUE(model.apply());
        EXPECT_EQ(model.value(control), c.applied);
        EXPECT_EQ(gOptions.*c.option, c.applied);
    }
}

TEST_F(OptionsModelTest, NothingChangesBeforeApplyAndThenSettingsAndRegistryHoldTheNewValues) {
    gOptions.EditStudiesMode = true;
    gOptions.EnglishLanguage = true;
    gOptions.PrintStartPage = 3;
    OptionsModel model;
    const QString hard = u"D:\\Größe \"2;3\"\\;ä"_s;
    model.setValue(u"txtDataPath"_s, hard);
    model.setValue(u"txtMaxItems"_s, u"12"_s);
    model.setValue(u"optWeight"_s, u"2"_s);
    model.setValue(u"chkbSys"_s, u"0"_s);
    EXPECT_EQ(gOptions.DataPath, QString());
    EXPECT_EQ(gOptions.MaxItems, 20);
    ASSERT_TRUE(model.apply());
    EXPECT_EQ(gOptions.ComparisonWeight, 2);
    EXPECT_EQ(stored(u"DataPath"_s), hard);
    EXPECT_EQ(stored(u"MaxItems"_s), u"12"_s);
    EXPECT_EQ(stored(u"EditStudiesMode"_s), u"1"_s);
    EXPECT_EQ(stored(u"IncludeMissing"_s), u"0"_s);
    EXPECT_EQ(stored(u"PrintStartPage"_s), u"3"_s);
    EXPECT_EQ(stored(u"Descriptives"_s), u"126"_s);
    EXPECT_EQ(stored(u"EnglishLanguage"_s), u"-"_s);
    EXPECT_EQ(mdLanguage::GetFormStatus(), 0);
    gOptions = {};
    OptionsFromRegistry();
    EXPECT_EQ(gOptions.DataPath, hard);
    const QString file = home.path(u"Größe;x.ini"_s);
    OptionsToIniFile(file);
    gOptions = {};
    OptionsFromIniFile(file);
    EXPECT_EQ(gOptions.DataPath, hard);
    EXPECT_EQ(asker.texts(), QStringList());
}

TEST_F(OptionsModelTest, ANumberThatIsNoneStopsWithTheStandardErrorBoxAtThatOption) {
    const auto applyWith = [&](ui::Answer answer) {
        gOptions = {};
        OptionsModel model;
        model.setValue(u"txtFontName"_s, u"Times"_s);
        model.setValue(u"txtMaxItems"_s, u"zwölf"_s);
        model.setValue(u"txtStartItem"_s, u"4"_s);
        asker.answer(answer);
        return model.apply();
    };
    EXPECT_FALSE(applyWith(ui::Answer::Abort));
    EXPECT_TRUE(asker.lastText().startsWith(u"13\r\n"_s)) << qPrintable(asker.lastText());
    EXPECT_EQ(gOptions.FontName, u"Times"_s);
    EXPECT_EQ(gOptions.MaxItems, 20);
    EXPECT_EQ(gOptions.StartItem, 1);
    EXPECT_EQ(stored(u"FontName"_s), u"-"_s);
    EXPECT_TRUE(applyWith(ui::Answer::Ignore));
    EXPECT_EQ(gOptions.MaxItems, 20);
    EXPECT_EQ(gOptions.StartItem, 4);
    EXPECT_EQ(stored(u"StartItem"_s), u"4"_s);
}

TEST_F(OptionsModelTest, ADependentBoxFollowsItsGoverningOneAndOnlyTheTitlesLosesItsMark) {
    struct Case {
        QString governing, dependent, markLeft;
    };
    const Case cases[] = {
        {u"chkHeader(4)"_s, u"chkHeader(5)"_s, u"0"_s},
        {u"chkIncludeMissingXtab"_s, u"chkIncludeMissingInPercentXtab"_s, u"1"_s},
        {u"chkIncludeNinXTabPercent"_s, u"chkIncludeNinXTabPercentNFirst"_s, u"1"_s},
    };
    for (const Case& c : cases) {
        OptionsModel model;
        model.setValue(c.governing, u"1"_s);
        model.setValue(c.dependent, u"1"_s);
        EXPECT_TRUE(model.isEnabled(c.dependent));
        model.setValue(c.governing, u"0"_s);
        EXPECT_FALSE(model.isEnabled(c.dependent)) << qPrintable(c.dependent);
        EXPECT_EQ(model.value(c.dependent), c.markLeft) << qPrintable(c.dependent);
    }
    gOptions.HeaderValFirst = false;
    EXPECT_FALSE(OptionsModel().isOn(u"chkHeader(5)"_s));
}

TEST_F(OptionsModelTest, PositionsShowInTheUsersLanguageAndAreStoredWithoutOne) {
    OptionsModel german;
    EXPECT_EQ(german.value(u"cmbDate"_s), u"oben, mitte"_s);
    gLanguage = 1;
    gOptions.PrintPageNumberPosition = u"nowhere"_s;
    OptionsModel model;
    EXPECT_EQ(model.value(u"cmbDate"_s), u"top, middle"_s);
    model.setValue(u"cmbDate"_s, u"bottom, right"_s);
    ASSERT_TRUE(model.apply());
    EXPECT_EQ(gOptions.PrintDatePosition, u"botright"_s);
    EXPECT_EQ(gOptions.PrintPageNumberPosition, u"botright"_s);
    model.setValue(u"cmbDate"_s, u"unten, mitte"_s);
    ASSERT_TRUE(model.apply());
    EXPECT_EQ(stored(u"PrintDatePosition"_s), u"botleft"_s);
    EXPECT_EQ(OptionsModel::positionTexts().last(), u"none"_s);
}

TEST_F(OptionsModelTest, AChosenFileGivesAPathFieldItsFolderAndTheDatabaseItsNameToo) {
    OptionsModel model;
    asker.file(u"/srv/archiv/neu.mdb"_s).file(u"/srv/pdf/fragen.pdf"_s).file(u"/srv/daten"_s);
    EXPECT_TRUE(OptionPaths::browse(model, u"txtDatabaseName"_s));
    EXPECT_EQ(model.value(u"txtDatabaseName"_s), u"neu.mdb"_s);
    EXPECT_EQ(model.value(u"txtDatabasePath"_s), u"/srv/archiv"_s);
    EXPECT_TRUE(OptionPaths::browseByDoubleClick(model, u"txtQuestionnairePath"_s));
    EXPECT_EQ(model.value(u"txtQuestionnairePath"_s), u"/srv/pdf"_s);
    EXPECT_TRUE(OptionPaths::browse(model, u"txtDataPath"_s));
    EXPECT_EQ(model.value(u"txtDataPath"_s), u"/srv/daten"_s);
}
