#include "editing/Entries.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Entries : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    ExplorerModel model;

    void SetUp() override {
        catalogue.fill();
        ASSERT_EQ(catalogue.open(), 1);
        gOptions.EditStudiesMode = true;
    }

    /// Rows of a statement, cells parted by "|" and rows by ";"; Null is "-".
    static QString rows(const QString& statement) {
        QStringList lines;
        for (const auto found = gDatabase.CurrentDatabase()->OpenRecordset(statement, dao::dbOpenSnapshot);
             !found->Eof(); found->MoveNext()) {
            QStringList cells;
            for (int i = 0; i < static_cast<int>(found->Fields().size()); ++i)
                cells << (found->value(i).isNull() ? u"-"_s : found->value(i).toText());
            lines << cells.join(u'|');
        }
        return lines.join(u';');
    }
    static QString categories() {
        return rows(
            u"SELECT id, fid, [Order], dt_IndicatorName, dt_IndicatorDescription FROM tkey_Category ORDER BY id"_s);
    }
    static QString studies() {
        return rows(u"SELECT id_StudyNo, fid, [Order], dt_IsGroup, dt_StudyTitle, dt_StudyDescription FROM tkey_Study "
                    "ORDER BY id_StudyNo"_s);
    }
    void open(const QString& key) {
        model.open(key.front().unicode() - u'@');
        ASSERT_TRUE(model.select(key));
    }
};

TEST_F(Entries, AreMade) {
    open(u"B1"_s);
    asker.input(u"Sonstiges"_s).edited(u"Was übrig bleibt"_s);
    EXPECT_TRUE(newEntry(model));
    EXPECT_EQ(categories(), u"1|0|2|Einstellungen|-;2|0|1|Demographie|Person und Haushalt;3|1|1|Vertrauen|-;"
                            "4|1|2|Sonstiges|Was übrig bleibt"_s);
    EXPECT_EQ(model.state.selectedKey, u"B4"_s);
    open(u"AG001"_s);
    asker.input(u"Erhebung 1950"_s).input(u"qx2020"_s).answer(ui::Answer::Yes).edited(u"Text"_s);
    asker.input(u"QX1950"_s).answer(ui::Answer::Yes).edited(u"Text"_s);
    EXPECT_TRUE(newEntry(model));
    EXPECT_EQ(asker.texts().filter(u"vergeben"_s).size(), 1);
    EXPECT_EQ(asker.prompts.back().proposal, u"G001"_s);
    EXPECT_EQ(asker.editors.back().second, u"Text"_s);
    EXPECT_TRUE(studies().contains(u"QX1950|G001|2|0|Erhebung 1950|Text"_s)) << qPrintable(studies());
}

TEST_F(Entries, AreRenamedDeletedAndOrdered) {
    open(u"B3"_s);
    asker.input(u"Zutrauen"_s).edited(std::nullopt);
    EXPECT_TRUE(renameEntry(model));
    asker.edited(u"neu"_s);
    EXPECT_TRUE(editDescription(model));
    EXPECT_TRUE(categories().endsWith(u"3|1|1|Zutrauen|neu"_s)) << qPrintable(categories());
    model.select(u"B1"_s);
    asker.order(std::vector{1, 0});
    EXPECT_TRUE(showPosition(model));
    EXPECT_TRUE(categories().startsWith(u"1|0|1|Einstellungen|-;2|0|2|"_s)) << qPrintable(categories());
    asker.answer(ui::Answer::Ok);
    EXPECT_TRUE(deleteEntry(model));
    EXPECT_EQ(categories(), u"2|0|2|Demographie|Person und Haushalt"_s);
    EXPECT_EQ(rows(u"SELECT fid FROM trel_VariableCategory"_s), u"2"_s);
    asker.answer(ui::Answer::Ok);
    EXPECT_TRUE(deleteRows(model, {0}));
    EXPECT_EQ(rows(u"SELECT fid FROM trel_VariableCategory"_s), QString());
    open(u"AQX2020"_s);
    asker.answer(ui::Answer::Ok);
    EXPECT_TRUE(deleteRows(model, {1}));
    EXPECT_EQ(rows(u"SELECT id_VarName FROM tkey_Variable WHERE fi_StudyNo = 'QX2020'"_s), u"V5"_s);
    asker.answer(ui::Answer::Ok);
    EXPECT_TRUE(deleteEntry(model));
    EXPECT_EQ(model.state.selectedKey, u"AG001"_s);
    EXPECT_EQ(rows(u"SELECT id_VarName FROM tkey_Variable WHERE fi_StudyNo = 'QX2020'"_s), QString());
}

} // namespace
