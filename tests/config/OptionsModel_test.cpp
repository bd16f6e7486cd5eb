#include "config/CProfile.h"
#include "config/OptionPaths.h"
#include "config/OptionsModel.h"
#include "diagnostics/errors.h"
#include "language/SystemDatabase.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

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
        SystemRows rows;
        rows.texts = {{u"Datenbank auswählen"_s, u"Select Database"_s, u"a:1"_s}};
        EXPECT_EQ(makeSystemDatabase(Paths::join(Paths::applicationFolder(), u"Vx.mdb"_s), rows), QStringList());
        mdLanguage::LoadTextTable();
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

TEST_F(OptionsModelTest, EveryOptionButThoseWithoutAControlIsBoundToExactlyOne) {
    QSet<QString> controls, keys;
    for (const OptionControl& bound : OptionsModel::controls()) {
        EXPECT_FALSE(controls.contains(bound.control)) << qPrintable(bound.control);
        controls.insert(bound.control);
        keys.insert(QString::fromUtf16(bound.option->key));
    }
    QStringList left;
    for (const OptionDescriptor& option : optionDescriptors())
        if (!keys.contains(QString::fromUtf16(option.key)))
            left << QString::fromUtf16(option.key);
    EXPECT_EQ(left, (QStringList{u"EditStudiesMode"_s, u"EnglishLanguage"_s, u"PrintPageCount"_s, u"PrintStartPage"_s,
                                 u"PrintStartPageNumber"_s, u"Descriptives"_s, u"DescriptivesDigits"_s}));
}

TEST_F(OptionsModelTest, PathsAreNormalisedAtApplyAndOnlyThen) {
    struct Case {
        QString control, typed, applied;
    };
    const Case cases[] = {
        {u"txtDatabaseName"_s, u"archiv"_s, u"archiv.mdb"_s},
        {u"txtDatabaseName"_s, u"Archiv.MDB"_s, u"Archiv.MDB"_s},
        {u"txtDatabasePath"_s, u"D:\\Archiv\\"_s, u"D:\\Archiv"_s},
        {u"txtDatabasePath"_s, u"D:\\"_s, u"D:"_s},
        {u"txtDatabasePath"_s, u"/"_s, u"/"_s},
        {u"txtQuestionnairePath"_s, u"/srv/pdf/"_s, u"/srv/pdf"_s},
        {u"txtSPSSPath"_s, u"\\\\host\\sav\\"_s, u"\\\\host\\sav"_s},
        {u"txtDataPath"_s, u" D:\\Daten\\ "_s, u" D:\\Daten\\ "_s},
        {u"txtSkinPath"_s, u"C:\\"_s, u"C:\\"_s},
    };
    for (const Case& c : cases) {
        OptionsModel model;
        model.setValue(c.control, c.typed);
        EXPECT_EQ(model.value(c.control), c.typed);
        ASSERT_TRUE(model.apply());
        EXPECT_EQ(model.value(c.control), c.applied);
        EXPECT_EQ(optionText(gOptions, *OptionsModel::find(c.control)->option, false), c.applied);
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
