#include "tables/VariableValues.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "platform/system/NumberFormat.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct Documented {
    const char* what;
    QString definition;
    std::vector<std::pair<QString, QString>> labels; ///< in the catalogue
    QStringList shown;                               ///< "code label", an X behind those that are missing
    bool clear = true;
};

QStringList shown(const VariableValues& found) {
    QStringList lines;
    for (const DocumentedValue& value : found.values)
        lines << (value.code + u' ' + value.label + (value.missing ? u" X"_s : QString())).simplified();
    return lines;
}

const std::vector<Documented> documented{
    {"in order of number, not of text",
     u""_s,
     {{u"10"_s, u"j"_s}, {u"2"_s, u"b"_s}, {u"-1"_s, u"n"_s}},
     {u"-1 n"_s, u"2 b"_s, u"10 j"_s}},
    {"a single value by number, whatever its spelling",
     u"9"_s,
     {{u"9.0"_s, u"k.A."_s}, {u"1"_s, u"ja"_s}},
     {u"1 ja"_s, u"9.0 k.A. X"_s}},
    {"values without a label have rows of their own",
     u"7; 8;9"_s,
     {{u"8"_s, u"w.n."_s}, {u"10"_s, u"z"_s}},
     {u"7 X"_s, u"8 w.n. X"_s, u"9 X"_s, u"10 z"_s}},
    {"a range marks and adds nothing",
     u"97 thru 99"_s,
     {{u"96"_s, u"a"_s}, {u"97"_s, u"b"_s}, {u"98,5"_s, u"c"_s}, {u"100"_s, u"d"_s}},
     {u"96 a"_s, u"97 b X"_s, u"98,5 c X"_s, u"100 d"_s}},
    {"what stands beside a range is added",
     u"97 thru highest, 0"_s,
     {{u"1"_s, u"a"_s}, {u"1E300"_s, u"b"_s}},
     {u"0 X"_s, u"1 a"_s, u"1E300 b X"_s}},
    {"lowest as a bound and one named twice",
     u"lowest thru -1;-1"_s,
     {{u"-5"_s, u"a"_s}, {u"0"_s, u"b"_s}},
     {u"-5 a X"_s, u"-1 X"_s, u"0 b"_s}},
    {"a text is no number and comes last",
     u"9"_s,
     {{u"DE"_s, u"Deutschland"_s}, {u"9"_s, u"k.A."_s}, {u""_s, u"leer"_s}},
     {u"9 k.A. X"_s, u"leer"_s, u"DE Deutschland"_s}},
    {"a definition that cannot be read marks nothing", u"UA;DE"_s, {{u"UA"_s, u"Ukraine"_s}}, {u"UA Ukraine"_s}, false},
};

} // namespace

class VariableValuesTest : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};

    VariableValues read(const QString& variable) {
        return VariableValues::of(*gDatabase.CurrentDatabase(), u"QX1919"_s, variable);
    }
};

TEST_F(VariableValuesTest, ValuesAreMarkedAsARunMarksThemAndThoseOfTheDefinitionAreComplete) {
    catalogue.together([&] {
        for (size_t i = 0; i < documented.size(); ++i) {
            const QString name = u"C%1"_s.arg(i);
            catalogue.addVariable(u"QX1919"_s, name, u"T"_s,
                                  {{"dt_Missing", documented[i].definition}, {"dt_Format", u"F%1.0"_s.arg(i)}});
            for (const auto& [code, label] : documented[i].labels)
                catalogue.addValue(u"QX1919"_s, name, code, label);
        }
        catalogue.addValue(u"QX2020"_s, u"C0"_s, u"5"_s, u"of another study"_s);
    });
    catalogue.open();
    gErrorTrapping = true;
    for (size_t i = 0; i < documented.size(); ++i) {
        const VariableValues found = read(u"C%1"_s.arg(i));
        EXPECT_EQ(shown(found), documented[i].shown)
            << documented[i].what << ": " << qPrintable(shown(found).join(u" | "_s));
        EXPECT_EQ(found.missing, documented[i].definition) << documented[i].what;
        EXPECT_EQ(found.missingIsClear, documented[i].clear) << documented[i].what;
        EXPECT_EQ(found.format, u"F%1.0"_s.arg(i));
    }
    EXPECT_TRUE(gErrorTrapping);
    EXPECT_TRUE(asker.boxes.empty());
    EXPECT_EQ(read(u"none"_s), VariableValues());
}

TEST_F(VariableValuesTest, AStrangersCatalogueIsReadWithABoundAndWithoutItsTables) {
    catalogue.together([&] {
        catalogue.addVariable(u"QX1919"_s, u"L"_s, u"T"_s);
        for (int i = 0; i < VariableValues::most + 1; ++i)
            catalogue.addValue(u"QX1919"_s, u"L"_s, QString::number(i), u"x"_s);
    });
    catalogue.open();
    const VariableValues many = read(u"L"_s);
    EXPECT_EQ(many.values.size(), size_t{VariableValues::most});
    EXPECT_TRUE(many.cut);
    gDatabase.CurrentDatabase()->TableDefs().Delete(u"tkey_Value"_s);
    EXPECT_TRUE(read(u"L"_s).values.empty());
}
