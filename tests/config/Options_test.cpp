#include "config/CProfile.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include <QFile>
#include <algorithm>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

void store(const QString& name, const QVariant& value, int type = Registry::String) {
    ASSERT_FALSE(CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, name, value, type));
}

class OptionsTest : public ::testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    QString iniFile = home.path(u"options.ini"_s);

    OptionsTest() {
        gOptions = {};
        gErrHandler.Destination = home.path(u"home/Error.log"_s);
    }
    ~OptionsTest() override { gOptions = {}; }

    void writeIni(const QByteArray& content) {
        QFile file(iniFile);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Varidex]\n" + content);
    }
};

/// Every option in its text form, one a line.
QString allTexts(const Options& options) {
    QString text;
    for (const OptionDescriptor& option : optionDescriptors())
        text += option.key.toString() + u'=' + optionText(options, option, false) + u'\n';
    return text;
}

} // namespace

TEST_F(OptionsTest, AFreshMachineGivesTheDefaultsAndTurnsErrorTrappingOn) {
    gErrorTrapping = false;
    gOptions.MaxItems = 3;
    gOptions.DataPath = u"left over"_s;
    gOptions.FixedFont = gOptions.PropFont = QString();
    OptionsFromRegistry();
    EXPECT_TRUE(gErrorTrapping);
    EXPECT_EQ(allTexts(gOptions), allTexts(Options{}));
    EXPECT_EQ(gOptions.FixedFont, u"Courier New"_s);
    EXPECT_EQ(gOptions.FontName, u"ARIAL"_s);
    EXPECT_EQ(gOptions.PrintPageCount, 99999);
    EXPECT_EQ(gOptions.Descriptives, 0b1111110);
    EXPECT_EQ(gOptions.DescriptivesDigits.split(u';').size(), 14);
    EXPECT_FALSE(gOptions.TakeSameVarWindow);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(OptionsTest, RegistryValuesAreConvertedWithoutAWordOnBadOnes) {
    store(u"MaxItems"_s, u"7"_s);
    store(u"StartItem"_s, 3, Registry::Number);
    store(u"DataOnCD"_s, u"1"_s);
    store(u"Skin"_s, u"0"_s);
    store(u"AskMissing"_s, u"vielleicht"_s);
    store(u"FontSize"_s, u"groß"_s);
    store(u"DataPath"_s, u"D:\\Daten;alt\\"_s);
    store(u"PropFont"_s, QString());
    OptionsFromRegistry();
    EXPECT_EQ(gOptions.MaxItems, 7);
    EXPECT_EQ(gOptions.StartItem, 3);
    EXPECT_TRUE(gOptions.DataOnCD);
    EXPECT_FALSE(gOptions.Skin);
    EXPECT_FALSE(gOptions.AskMissing);
    EXPECT_EQ(gOptions.FontSize, 0);
    EXPECT_EQ(gOptions.DataPath, u"D:\\Daten;alt\\"_s);
    EXPECT_EQ(gOptions.PropFont, u"Arial"_s);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(OptionsTest, AnIniFileThatLacksKeysGivesItsOwnDefaults) {
    writeIni("MaxItems=5\n");
    gOptions.DescriptivesDigits = u"1;"_s;
    OptionsFromIniFile(iniFile);
    EXPECT_TRUE(gOptions.TakeSameVarWindow);
    EXPECT_TRUE(gOptions.DataOnCD);
    EXPECT_TRUE(gOptions.EnglishLanguage);
    EXPECT_TRUE(gOptions.AutomaticVariableColumnWidth);
    EXPECT_FALSE(gOptions.EditStudiesMode);
    EXPECT_EQ(gOptions.FontName, QString());
    EXPECT_EQ(gOptions.PrintDatePosition, u"topmiddle"_s);
    EXPECT_EQ(gOptions.PrintPageNumberPosition, u"botmiddle"_s);
    EXPECT_EQ(gOptions.FixedFont, u"Courier New"_s);
    EXPECT_EQ(gOptions.MaxItems, 5);
    EXPECT_EQ(gOptions.DescriptivesDigits, u"1;"_s) << "not part of this form";
}

TEST_F(OptionsTest, WhatIsSavedToAnIniFileComesBackWholeAndInItsOrder) {
    gOptions.DatabasePath = u"C:\\Archiv \"alt\"; neu\\"_s;
    gOptions.FontName = u" Arial "_s;
    gOptions.PrintMaxLevels = -3;
    gOptions.AskMissing = false;
    gOptions.EnglishLanguage = true;
    const QString before = allTexts(gOptions);
    OptionsToIniFile(iniFile);
    gOptions = {};
    OptionsFromIniFile(iniFile);
    EXPECT_EQ(allTexts(gOptions), before);

    QFile file(iniFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(text.startsWith(u"[Varidex]\nEditStudiesMode=False\nDatabaseName=\n"_s));
    EXPECT_TRUE(text.contains(u"\nShowValidSums=True\nNoColumnLabels=False\n"_s));
    EXPECT_TRUE(
        text.trimmed().endsWith(u"\nFontSize=11\nShowPercentSign=True\nCommaInPercent=True\nAskMissing=False"_s));
    EXPECT_FALSE(text.contains(u"Descriptives"_s));
}

TEST_F(OptionsTest, AMissingFileIsReportedForEachKeyAndLeavesTheDefaults) {
    OptionsFromIniFile(home.path(u"none.ini"_s));
    EXPECT_EQ(asker.boxes.size(), std::ranges::count_if(optionDescriptors(), [](const OptionDescriptor& option) {
                  return option.iniPlace != IniPlace::NotHeld;
              }));
    EXPECT_TRUE(gOptions.DataOnCD);
    EXPECT_EQ(gOptions.MaxItems, 20);
    EXPECT_EQ(gErrHandler.depth(), 0);
}

TEST_F(OptionsTest, TextsConvertAsTheLanguageDoesAndBadOnesAreReportedUnderTheirLabel) {
    struct Case {
        QString text;
        bool yes, no; ///< with default true, with default false
    };
    const Case cases[] = {
        {u"True"_s, true, true},     {u"wahr"_s, true, true}, {u"-1"_s, true, true},
        {u"1"_s, true, true},        {u"0,5"_s, true, true},  {u"FALSE"_s, false, false},
        {u"Falsch"_s, false, false}, {u"0"_s, false, false},  {u""_s, true, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(CBool_me(c.text, true), c.yes) << qPrintable(c.text);
        EXPECT_EQ(CBool_me(c.text, false), c.no) << qPrintable(c.text);
    }
    EXPECT_EQ(CLng_me(u"-12"_s, 5), -12);
    EXPECT_EQ(CLng_me(u"2,5"_s, 5), 2); // half to even
    EXPECT_EQ(CLng_me(u""_s, 5), 5);
    EXPECT_TRUE(asker.boxes.empty());

    EXPECT_TRUE(CBool_me(u"vielleicht"_s, true));
    EXPECT_TRUE(asker.lastText().contains(u"[Module1.CBool_me]"_s) && asker.lastText().contains(u"(13)"_s));
    EXPECT_EQ(CLng_me(u"2147483648"_s, 5), 5);
    EXPECT_TRUE(asker.lastText().contains(u"[Module1.CLng_me]"_s) && asker.lastText().contains(u"(6)"_s));
    EXPECT_EQ(gErrHandler.depth(), 0);
}

TEST_F(OptionsTest, AnOptionIsFoundByItsKeyAndSetForOneRun) {
    Options options;
    EXPECT_TRUE(setOptionFromText(options, *findOption(u"includemissing"_s), u"wahr"_s));
    EXPECT_TRUE(options.IncludeMissing);
    EXPECT_FALSE(setOptionFromText(options, *findOption(u"MaxItems"_s), u"viele"_s));
    EXPECT_FALSE(setOptionFromText(options, *findOption(u"AskMissing"_s), QString()));
    EXPECT_EQ(options.MaxItems, 20);
    EXPECT_EQ(findOption(u"MainLeft"_s), nullptr);
}
