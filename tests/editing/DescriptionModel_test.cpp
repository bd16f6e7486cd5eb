#include "editing/DescriptionModel.h"

#include "app/globals.h"
#include "config/Options.h"
#include "explorer/CatalogueChange.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Move = DescriptionModel::Move;

/// The categories of view 2 in the order of their keys and places: 2 (German), 11 (both), 12 (one blank), 13 (German),
/// 14 (none), 15 (English), and 16 below 11, so last (both).
class Descriptions : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};

    void SetUp() override {
        catalogue.fill();
        catalogue.addCategory(u"Category"_s, 11, 0, 11, u"Elf"_s,
                              {{"dt_EnIndicatorName", u"Eleven"_s},
                               {"dt_IndicatorDescription", u"elf\r\n<b>HTML</b>"_s},
                               {"dt_EnIndicatorDescription", u"eleven"_s}});
        catalogue.addCategory(u"Category"_s, 12, 0, 12, u"Zwölf"_s, {{"dt_IndicatorDescription", u" "_s}});
        catalogue.addCategory(u"Category"_s, 13, 0, 13, u"Dreizehn"_s, {{"dt_IndicatorDescription", u"dreizehn"_s}});
        catalogue.addCategory(u"Category"_s, 14, 0, 14, u"Vierzehn"_s);
        catalogue.addCategory(u"Category"_s, 15, 0, 15, QString(), {{"dt_EnIndicatorDescription", u"fifteen"_s}});
        catalogue.addCategory(u"Category"_s, 16, 11, 1, u"Sechzehn"_s,
                              {{"dt_EnIndicatorName", u"Sixteen"_s},
                               {"dt_IndicatorDescription", u"sechzehn"_s},
                               {"dt_EnIndicatorDescription", u"sixteen"_s}});
    }

    /// Keys of the lines, the one of the entry in view in brackets.
    static QString lines(const DescriptionModel& model) {
        QString text;
        for (size_t i = 0; i < model.cmbAuswahl.size(); ++i)
            text += (static_cast<int>(i) == model.line() ? u"[%1] "_s : u"%1 "_s).arg(model.cmbAuswahl[i].key);
        return text.trimmed();
    }

    /// "position/count key: title: text".
    static QString shown(const DescriptionModel& model) {
        return u"%1/%2 %3: %4: %5"_s.arg(model.position())
            .arg(model.count())
            .arg(model.txtStudyNo(), model.title(), model.txtText());
    }
};

TEST_F(Descriptions, AWalkGoesOverEveryEntryWithADescriptionAndEndsAtTheEnds) {
    ASSERT_EQ(catalogue.open(), 1);
    DescriptionModel model(2);
    const std::pair<Move, QString> steps[] = {
        {Move::First, u"0/5 2: Demographie: Person und Haushalt"_s},
        {Move::Previous, u"0/5 2: Demographie: Person und Haushalt"_s},
        {Move::Next, u"1/5 11: Elf: elf\r\n<b>HTML</b>"_s},
        {Move::Same, u"1/5 11: Elf: elf\r\n<b>HTML</b>"_s},
        {Move::Next, u"2/5 12: Zwölf:  "_s},
        {Move::Next, u"3/5 13: Dreizehn: dreizehn"_s},
        {Move::Next, u"4/5 16: Sechzehn: sechzehn"_s},
        {Move::Next, u"4/5 16: Sechzehn: sechzehn"_s},
        {Move::Previous, u"3/5 13: Dreizehn: dreizehn"_s},
        {Move::First, u"0/5 2: Demographie: Person und Haushalt"_s},
    };
    for (const auto& [move, wanted] : steps) {
        const int place = model.FillDescriptionForm(move);
        EXPECT_EQ(shown(model), wanted);
        EXPECT_EQ(place, model.position());
    }
    const std::pair<int, QString> places[] = {{3, u"13"_s}, {0, u"2"_s}, {99, u"16"_s}, {-5, u"2"_s}};
    for (const auto& [place, key] : places) {
        model.FillDescriptionForm(place);
        EXPECT_EQ(model.txtStudyNo(), key) << place;
    }
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(Descriptions, LinesKnowTheirEntryThoughABlankOneHasNone) {
    ASSERT_EQ(catalogue.open(), 1);
    DescriptionModel model(2);
    model.FillDescriptionForm(Move::First);
    EXPECT_EQ(lines(model), u"[2] 11 13 16"_s);
    model.cmbAuswahl_Click(2);
    EXPECT_EQ(shown(model), u"3/5 13: Dreizehn: dreizehn"_s);
    EXPECT_EQ(lines(model), u"2 11 [13] 16"_s);
    EXPECT_TRUE(model.showEntry(u"12"_s)) << "it can be led to";
    EXPECT_EQ(lines(model), u"2 11 13 16"_s);
    EXPECT_EQ(model.title(), u"Zwölf"_s);
    for (const QString& key : {u"14"_s, u"99"_s, u"1 or 1=1"_s, u"'"_s, QString()}) {
        EXPECT_FALSE(model.showEntry(key)) << qPrintable(key);
        EXPECT_EQ(model.txtStudyNo(), u"12"_s) << "what isn't there changes nothing";
    }
}

TEST_F(Descriptions, ALanguageKeepsTheEntryThatItHasAndShowsTheFirstElse) {
    ASSERT_EQ(catalogue.open(), 1);
    DescriptionModel model(2);
    EXPECT_FALSE(model.bEL());
    model.FillDescriptionForm(1);
    model.setEnglish(true);
    EXPECT_EQ(shown(model), u"0/3 11: Eleven: eleven"_s);
    EXPECT_EQ(lines(model), u"[11] 15 16"_s);
    EXPECT_EQ(model.cmbAuswahl[1].title, QString()) << "Null is empty";
    model.FillDescriptionForm(Move::Next);
    EXPECT_EQ(shown(model), u"1/3 15: : fifteen"_s);
    model.setEnglish(false);
    EXPECT_EQ(model.txtStudyNo(), u"2"_s);
    // A view without any in a language is empty, and is left again.
    DescriptionModel study(1);
    study.FillDescriptionForm(Move::First);
    EXPECT_EQ(shown(study), u"0/1 QX1919: Erhebung 1919: Beschreibung"_s);
    study.setEnglish(true);
    EXPECT_EQ(shown(study), u"-1/0 : : "_s);
    EXPECT_EQ(lines(study), QString());
    study.FillDescriptionForm(Move::Next);
    study.setEnglish(false);
    EXPECT_EQ(study.txtStudyNo(), u"QX1919"_s);
    EXPECT_TRUE(study.showEntry(u"qx1919"_s));
    gOptions.EnglishLanguage = true;
    EXPECT_TRUE(DescriptionModel(2).bEL());
}

TEST_F(Descriptions, AfterAnEditTheNextMoveFollows) {
    struct Case {
        QString statement;
        Move move;
        QString shown;
    };
    const Case cases[] = {
        {u"UPDATE tkey_Category SET dt_IndicatorName = 'XI' WHERE id = 11"_s, Move::Same, u"11 XI"_s},
        {u"UPDATE tkey_Category SET dt_IndicatorDescription = 'x' WHERE id = 14"_s, Move::Same, u"11 XI"_s},
        {u"UPDATE tkey_Category SET [Order] = 99 WHERE id = 11"_s, Move::Next, u"16 Sechzehn"_s},
        {u"DELETE FROM tkey_Category WHERE id = 16"_s, Move::Next, u"2 Demographie"_s},
        {u"UPDATE tkey_Category SET dt_IndicatorDescription = Null WHERE id = 2"_s, Move::Previous, u"12 Zwölf"_s},
        {u"DELETE FROM tkey_Category"_s, Move::Same, u" "_s},
    };
    ASSERT_EQ(catalogue.open(), 1);
    DescriptionModel model(2);
    model.FillDescriptionForm(1);
    for (const Case& c : cases) {
        catalogue.execute(c.statement);
        model.FillDescriptionForm(c.move);
        EXPECT_EQ(model.txtStudyNo() + u' ' + model.title(), c.shown) << qPrintable(c.statement);
    }
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
    // What cannot be read leaves text and language as they are.
    DescriptionModel study(1);
    study.FillDescriptionForm(Move::First);
    gViews.set(1, ViewTable::Table, u"Gone"_s);
    study.setEnglish(true);
    EXPECT_FALSE(study.bEL());
    EXPECT_EQ(shown(study), u"0/1 QX1919: Erhebung 1919: Beschreibung"_s);
    EXPECT_EQ(asker.boxes.size(), 1u);
}

TEST_F(Descriptions, TheCatalogueHasOneOfItsOwnIfAny) {
    ASSERT_EQ(catalogue.open(), 1);
    DescriptionModel model(0);
    EXPECT_EQ(model.FillDescriptionForm(Move::First), -1);
    EXPECT_EQ(asker.texts(), QStringList{u"Beschreibung nicht gefunden!"_s});
    catalogue.add(u"tkey_Database"_s, {{"dt_DatabaseTitle", u"Archiv"_s},
                                       {"dt_DatabaseDescription", u"Zehn Studien"_s},
                                       {"dt_EnDatabaseTitle", u"Archive"_s}});
    model.FillDescriptionForm(Move::Same);
    EXPECT_EQ(shown(model), u"0/1 : Archiv: Zehn Studien"_s);
    EXPECT_EQ(model.line(), 0);
    model.setEnglish(true);
    EXPECT_EQ(shown(model), u"0/1 : : "_s) << "no description, no line";
    EXPECT_EQ(model.line(), -1);
    EXPECT_EQ(asker.boxes.size(), 1u);
}

} // namespace
