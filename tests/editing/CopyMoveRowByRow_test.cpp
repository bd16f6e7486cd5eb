#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/StudyRows.h"
#include "editing/Drop.h"
#include "platform/dao/Transaction.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;
using ui::Answer;

namespace {

/// Wants everything, and hears no more of duplicates after some.
class CountingAsker : public ScriptedAsker {
public:
    int heard = 0, hears = 0;
    QStringList said;
    Answer messageBox(const ui::Box& box) override {
        if (box.buttons == ui::Buttons::OkCancel)
            return Answer::Ok;
        said << box.text;
        return box.buttons == ui::Buttons::YesNo && ++heard > hears ? Answer::No : Answer::Yes;
    }
};

/// What a batch of variables comes to is told row by row; here it is done so, on rows that are anything but tidy.
class CopyMoveRowByRow : public testing::Test {
protected:
    TestHome home;
    CountingAsker asker;
    TestCatalogue catalogue{home.path()};
    std::mt19937 random{1};
    const QStringList studies{u"S1"_s, u"s1"_s, u"S2"_s, u"S#"_s, u"S*"_s, u"?2"_s, u"[S]1"_s, u"S'1"_s, u""_s};
    const QStringList names{u"V1"_s, u"v1"_s, u"V2"_s, u"V*"_s, u"V'3"_s};
    // Two of the categories' view, one of another's, one of a view that shares the categories' tables.
    const QStringList places{u"B1"_s, u"B2"_s, u"C1"_s, u"D2"_s, u"D3"_s};

    size_t below(size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(random); }
    dao::Value some(const QStringList& texts) {
        return below(12) == 0 ? dao::Value() : dao::Value(texts[static_cast<qsizetype>(below(texts.size()))]);
    }
    static QString table(const QString& key) {
        return key.startsWith(u'C') ? u"trel_VariableTrend"_s : u"trel_VariableCategory"_s;
    }

    void SetUp() override {
        catalogue.fill();
        catalogue.execute(
            u"UPDATE tsys_Options SET dt_OptionValue = '4' WHERE dt_OptionName = 'NumberOfFrmExplorers'"_s);
        catalogue.addOption(u"frmExplorer4Name"_s, u"Nochmals"_s);
        catalogue.addOption(u"frmExplorer4Table"_s, u"Category"_s);
        catalogue.addVariable(u"S1"_s, u"V1"_s, u"t"_s);
        catalogue.addVariable(u"S*"_s, u"V'3"_s, u"t"_s);
        ASSERT_EQ(catalogue.open(), 1);
    }

    /// Other assignments than before.
    void refill() {
        for (const QString& of : {u"trel_VariableCategory"_s, u"trel_VariableTrend"_s}) {
            gDatabase.CurrentDatabase()->Execute(u"DELETE FROM "_s + of);
            const dao::RecordsetPtr rows = gDatabase.CurrentDatabase()->OpenRecordset(of);
            for (int i = 0; i < 40; ++i) {
                rows->AddNew();
                rows->setValue(u"fid"_s, static_cast<int>(below(3)) + 1);
                rows->setValue(u"fi_StudyNo"_s, some(studies));
                rows->setValue(u"fi_VariableNo"_s, some(names));
                rows->setValue(u"dt_QuestionNo"_s, some({u"7"_s, u""_s}));
                rows->setValue(u"dt_PrintSelect"_s, some({u"x"_s}));
                rows->Update();
            }
        }
    }

    /// As it is told, one row after the other. @return what is said
    static QStringList rowByRow(const DropSource& source, const DropTarget& target, bool moves, int hears) {
        dao::Database& catalogue = *gDatabase.CurrentDatabase();
        const bool fromStudy = source.key.startsWith(u'A');
        QStringList said;
        int heard = 0;
        for (const MovedVariable& variable : source.variables) {
            const QString both =
                u"fi_VariableNo = "_s + quoted(variable.name) + u" AND fi_StudyNo like "_s + quoted(variable.study);
            const dao::RecordsetPtr from =
                fromStudy ? catalogue.OpenRecordset(u"SELECT * from tkey_Variable  WHERE [fi_StudyNo] = "_s +
                                                    quoted(variable.study) + u" ;"_s)
                          : catalogue.OpenRecordset(u"SELECT * FROM "_s + table(source.key) + u" WHERE fid = "_s +
                                                    source.key.mid(1) + u" ;"_s);
            from->FindFirst(fromStudy ? u"id_VarName = "_s + quoted(variable.name) : both);
            if (from->NoMatch()) {
                said << (fromStudy ? u"Variable nicht gefunden!"_s
                                   : u"Variable "_s + variable.name + u" nicht gefunden! "_s);
                continue;
            }
            const dao::RecordsetPtr to =
                catalogue.OpenRecordset(u"SELECT * from "_s + table(target.key) + u" order by fid;"_s);
            to->FindFirst(u"fid = "_s + target.key.mid(1) + u" AND "_s + both);
            if (to->NoMatch()) {
                to->AddNew();
                to->setValue(u"fid"_s, target.key.mid(1).toInt());
                to->setValue(u"fi_StudyNo"_s, from->value(u"fi_StudyNo"_s));
                to->setValue(u"fi_VariableNo"_s, from->value(fromStudy ? u"id_VarName"_s : u"fi_VariableNo"_s));
                for (const QString& field : {u"dt_QuestionNo"_s, u"dt_PrintSelect"_s})
                    if (!fromStudy)
                        to->setValue(field, from->value(field));
                to->Update();
            } else if (heard <= hears) {
                ++heard;
                said << u"Variable "_s + variable.name + u" aus Studie "_s + variable.study + u" ist bereits in "_s +
                            target.tree->find(target.key)->Text +
                            u" Kategorie vorhanden und wird übersprungen!\r\nMöchten Sie für jede weitere doppelte "
                            "Variable diese Meldung bekommen?"_s;
            }
            if (moves)
                from->Delete();
        }
        return said;
    }

    static QStringList assignments() {
        QStringList all;
        for (const QString& of : {u"trel_VariableCategory"_s, u"trel_VariableTrend"_s}) {
            const dao::RecordsetPtr rows = gDatabase.CurrentDatabase()->OpenRecordset(
                u"SELECT fid, fi_StudyNo, fi_VariableNo, dt_QuestionNo, dt_PrintSelect FROM "_s + of);
            for (; !rows->Eof(); rows->MoveNext()) {
                QString line = of;
                for (int i = 0; i < 5; ++i)
                    line += u'|' + (rows->value(i).isNull() ? u"Null"_s : rows->value(i).toText());
                all << line;
            }
        }
        all.sort();
        return all;
    }
};

TEST_F(CopyMoveRowByRow, ABatchComesToTheSame) {
    constexpr int rounds = 40;
    int changes = 0;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        const QString key = below(5) == 0 ? u"AS1"_s : places[static_cast<qsizetype>(below(places.size()))];
        const QString target = places[static_cast<qsizetype>(below(places.size()))];
        if (isSameEntry(key, target))
            continue;
        const bool moves = key[0] != u'A' && below(2) == 0;
        DropSource source{key, true, false, u"Titel"_s, {}};
        for (int i = 0; i < 25; ++i)
            source.variables.push_back({key, some(names).toText(), some(studies).toText()});
        asker.heard = 0;
        asker.said.clear();
        asker.hears = static_cast<int>(below(6));
        {
            dao::Transaction filling;
            refill();
            filling.commit();
        }
        ExplorerModel window;
        window.open(viewOfKey(target));
        const DropTarget to = DropTarget::in(window, target, false);
        const QStringList before = assignments();
        QStringList said, outcome;
        {
            const dao::Transaction takenBack;
            said = rowByRow(source, to, moves, asker.hears);
            outcome = assignments();
        }
        ASSERT_EQ(assignments(), before);
        drop(source, to, moves ? TransferMode::Move : TransferMode::Copy);
        EXPECT_EQ(assignments(), outcome);
        EXPECT_EQ(asker.said, said);
        changes += outcome != before;
    }
    EXPECT_GT(changes, rounds / 2);
}

} // namespace
