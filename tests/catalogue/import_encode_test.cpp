// Text variables stored as numbers: which, in which order, what is said, and what is refused.

#include "ImportFixture.h"
#include "catalogue/ArchiveBuilder.h"
#include "catalogue/TextCodes.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

/// LAND with labels and two codes declared missing, NOTE with neither; LAND's codes in the cases, NOTE "n" and "m" in
/// turn.
void writeLands(const QString& path, const std::vector<const char*>& lands) {
    SurveyFileMaker maker;
    readstat_variable_t* land = maker.text("LAND", 3, "Herkunft");
    maker.label(land, {{"UA", "Ukraine"}, {"DE", "Deutschland"}, {"99", "keine Angabe"}, {" ", "leer"}, {"NL", ""}});
    readstat_variable_add_missing_string_value(land, "99");
    readstat_variable_add_missing_string_value(land, "98");
    maker.text("NOTE", 40);
    maker.number("V1");
    std::vector<SurveyFileMaker::Row> rows;
    for (size_t i = 0; i < lands.size(); ++i)
        rows.push_back({lands[i], i % 2 ? "m" : "n", 1.0});
    maker.write(path, rows);
}

const std::vector<const char*> lands = {"UA", "DE", "FR", "99", "", "de", "10", "9"};

} // namespace

class ImportEncode : public ImportFixture {
protected:
    const QString file = home.path(u"lands.sav"_s);

    QString outcome(bool all, const QStringList& names, bool replace = false) {
        ImportRequest wish = request(file, u"QX1"_s);
        wish.settings.encodeAll = all;
        wish.settings.encode = names;
        wish.settings.replace = replace;
        return ImportFixture::outcome(wish);
    }
    QStringList variables() const {
        return rows(catalogue, u"SELECT id_VarName, dt_Format, dt_Missing FROM tkey_Variable ORDER BY dt_Position"_s);
    }
    QStringList cases(const QString& variable) const {
        return rows(home.path(u"QX1.mdb"_s), u"SELECT %1 FROM QX1_1 ORDER BY dt_CaseID"_s.arg(variable));
    }
};

// As texts, 10 comes before 9; upper and lower case are two codes and stand side by side.
TEST_F(ImportEncode, NumbersFollowTheOrderOfAllCodes) {
    writeLands(file, lands);
    ASSERT_EQ(outcome(true, {}), QString());
    EXPECT_EQ(variables(), (QStringList{u"LAND|F1|4;3"_s, u"NOTE|A40|NULL"_s, u"V1|F8.2|NULL"_s}));
    EXPECT_EQ(rows(catalogue, u"SELECT dt_Value, dt_Label FROM tkey_Value ORDER BY dt_Value"_s),
              (QStringList{u"1|10"_s, u"2|9"_s, u"3|98"_s, u"4|99 keine Angabe"_s, u"5|DE Deutschland"_s, u"6|de"_s,
                           u"7|FR"_s, u"8|NL"_s, u"9|UA Ukraine"_s}));
    EXPECT_EQ(cases(u"LAND"_s), (QStringList{u"9"_s, u"5"_s, u"7"_s, u"4"_s, u"NULL"_s, u"6"_s, u"1"_s, u"2"_s}));
    EXPECT_EQ(cases(u"NOTE"_s).front(), u"n"_s);
    EXPECT_EQ(report.labels, 9);
    EXPECT_TRUE(hasFact(
        {u"LAND: Texte in Zahlen umgesetzt, 1 bis 9 "_s, u"(6 ohne Label; fehlend: 4;3 (99, 98); Format A3 → F1)"_s}));
    EXPECT_TRUE(hasFact({u"LAND: 1 leere Texte sind systembedingt fehlend"_s}));
    EXPECT_TRUE(hasFact({u"Labels eines leeren Codes (1): LAND 'leer'"_s}));
    EXPECT_FALSE(hasFact({u"ohne --encode"_s}));
}

TEST_F(ImportEncode, ANamedVariableNeedsNoLabels) {
    writeLands(file, lands);
    ASSERT_EQ(outcome(false, {u"note"_s}), QString());
    EXPECT_EQ(variables(), (QStringList{u"LAND|A3|NULL"_s, u"NOTE|F1|NULL"_s, u"V1|F8.2|NULL"_s}));
    EXPECT_EQ(cases(u"NOTE"_s).first(3), (QStringList{u"2"_s, u"1"_s, u"2"_s}));
    EXPECT_TRUE(hasFact({u"ohne --encode"_s, u"LAND"_s}));
}

TEST_F(ImportEncode, RefusesWithNothingChanged) {
    SurveyFileMaker maker;
    readstat_variable_t* wide = maker.text("WIDE", 200);
    maker.label(wide, {{"A", "eins"}});
    readstat_variable_add_missing_string_value(wide, "B");
    maker.text("MANY", 8);
    maker.number("V1");
    std::string number;
    maker.write(file, TextCodes::mostCodes + 1, [&](int i) {
        number = std::to_string(i);
        static const std::string sentence(TextCodes::mostCharacters + 1, 'x');
        return SurveyFileMaker::Row{i == 70 ? sentence.c_str() : "A", number.c_str(), 1.0};
    });
    ASSERT_EQ(outcome(false, {}), QString());
    const auto before = folder();
    for (const auto& [name, reason] : {std::pair(u"V9"_s, u"V9: Die Datei hat keine solche Variable"_s),
                                       std::pair(u"V1"_s, u"V1: Die Variable ist in der Datei kein Text"_s),
                                       std::pair(u"MANY"_s, u"mehr als 25000 verschiedene Texte"_s),
                                       std::pair(u"WIDE"_s, u"freie Texte wie 'xxx"_s)}) {
        const QString message = outcome(true, {name}, true);
        EXPECT_TRUE(message.contains(reason)) << message.toStdString();
        EXPECT_EQ(folder(), before) << name.toStdString();
    }
    // Without being named, it stays text with all its cases.
    ASSERT_EQ(outcome(true, {}, true), QString());
    EXPECT_EQ(cases(u"WIDE"_s).value(70).size(), TextCodes::mostCharacters + 1);
    EXPECT_EQ(cases(u"WIDE"_s).value(1), u"A"_s);
    EXPECT_TRUE(hasFact({u"WIDE: bleibt Text, freie Texte"_s, u"als gültige Codes"_s}) &&
                !hasFact({u"ohne --encode"_s}));
}

TEST_F(ImportEncode, AReplacementSaysWhatNumbersStandForNow) {
    const QString kind = u"Waren Text und sind jetzt Zahlen oder umgekehrt"_s, moved = u"andere Codes"_s;
    writeLands(file, lands);
    ASSERT_EQ(outcome(false, {}), QString());
    ASSERT_EQ(outcome(true, {}, true), QString());
    EXPECT_TRUE(hasFact({kind, u"(1): LAND"_s}) && !hasFact({moved}));
    ASSERT_EQ(outcome(true, {}, true), QString());
    EXPECT_FALSE(hasFact({kind}) || hasFact({moved}));
    writeLands(file, {"UA", "AT"});
    ASSERT_EQ(outcome(true, {}, true), QString());
    EXPECT_TRUE(hasFact({moved, u"(1): LAND"_s}) && !hasFact({kind}));
    EXPECT_EQ(cases(u"LAND"_s), (QStringList{u"6"_s, u"3"_s})); // 98 99 AT DE NL UA
    ASSERT_EQ(outcome(false, {}, true), QString());
    EXPECT_TRUE(hasFact({kind, u"(1): LAND"_s}));
}

// AT is 5 here, DE there. A code without a label is another one than the code that begins with it.
TEST_F(ImportEncode, NumbersOfOtherCodesInOtherStudiesAreNamed) {
    const auto import = [&](const QString& study, const std::vector<const char*>& codes, bool replace = false) {
        writeLands(file, codes);
        ImportRequest wish = request(file, study);
        wish.settings.encodeAll = true;
        wish.settings.replace = replace;
        ASSERT_EQ(ImportFixture::outcome(wish), QString());
    };
    const QString elsewhere = u"in anderen Studien für andere Codes"_s;
    import(u"QX1"_s, {"UA", "XX YY"}); // 98 99 DE NL UA XX YY
    EXPECT_FALSE(hasFact({elsewhere}));
    import(u"QX2"_s, {"DE"});
    EXPECT_FALSE(hasFact({elsewhere}));
    import(u"QX3"_s, {"AT"});
    EXPECT_TRUE(hasFact({elsewhere, u"(1): LAND (QX1, QX2)"_s}));
    import(u"QX1"_s, {"XX"}, true);
    EXPECT_TRUE(hasFact({u"jetzt für andere Codes"_s, u"(1): LAND"_s}));
}

TEST_F(ImportEncode, WhatStoodOnTheNumbersOfAVariableIsNamed) {
    const auto write = [&](bool text) {
        SurveyFileMaker maker;
        if (text)
            maker.label(maker.text("W", 3), {{"0.5", "halb"}});
        else
            maker.number("W");
        maker.write(file, {{text ? SurveyFileMaker::Cell("0.5") : SurveyFileMaker::Cell(0.5)}});
    };
    write(false);
    ImportRequest wish = request(file, u"QX1"_s);
    wish.settings.weightRe = u"W"_s;
    ASSERT_EQ(ImportFixture::outcome(wish), QString());
    execute(catalogue, u"INSERT INTO tkey_Parts (id_Part, fi_StudyNo, dt_PartName, dt_SelectionVariable) VALUES (1, "
                       u"'QX1', 'B', 'W')"_s);
    write(true);
    ASSERT_EQ(outcome(true, {}, true), QString());
    EXPECT_EQ(rows(catalogue, u"SELECT dt_WeightRE FROM tkey_Study"_s), QStringList(u"NULL"_s));
    EXPECT_TRUE(hasFact({u"W ist keine Zahlenvariable mehr"_s}) && hasFact({u"jetzt für andere Codes"_s, u": W"_s}));
    EXPECT_TRUE(hasFact({u"Steht auf solchen Codes: W: Auswahlvariable des Teils 'B'"_s}));
}

// The codes of a first reading would meet the cases of another file.
TEST_F(ImportEncode, AFileThatChangedSinceItsHeadWasReadIsRefused) {
    writeLands(file, lands);
    ImportRequest wish = request(file, u"QX1"_s);
    wish.settings.encodeAll = true;
    bool changed = false;
    wish.settings.progress = [&](double) {
        if (!std::exchange(changed, true))
            writeLands(file, {"AT", "CH"});
        return true;
    };
    EXPECT_TRUE(ImportFixture::outcome(wish).contains(u"geändert"_s) && changed);
    EXPECT_EQ(folder().keys(), QStringList(u"lands.sav"_s));
}

TEST_F(ImportEncode, ADescriptionSaysTheSame) {
    writeLands(file, lands);
    for (const auto& [encode, land, note] : {std::tuple("true", u"LAND|F1|4;3"_s, u"NOTE|A40|NULL"_s),
                                             std::tuple(R"(["NOTE", "Land"])", u"LAND|F1|4;3"_s, u"NOTE|F1|NULL"_s),
                                             std::tuple("false", u"LAND|A3|NULL"_s, u"NOTE|A40|NULL"_s)}) {
        QFile description(home.path(u"archive.json"_s));
        ASSERT_TRUE(description.open(QIODevice::WriteOnly));
        description.write(QByteArray(R"({"format": 1, "views": [{"table": "Study", "kind": "study", "name": "S", )"
                                     R"("entries": [{"study": "QX1", "file": "lands.sav", "encode": )") +
                          encode + "}]}]}");
        description.close();
        buildArchive({catalogue, description.fileName(), true, {}});
        EXPECT_EQ(variables().first(2), (QStringList{land, note})) << encode;
    }
}
