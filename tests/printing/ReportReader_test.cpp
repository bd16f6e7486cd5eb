#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "language/CText.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "printing/ReportContent.h"
#include "support/FullDisk.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString plain(const std::vector<TextRun>& runs) {
    QString text;
    for (const TextRun& run : runs)
        text += run.text;
    return text;
}

/// A block as a line: its style's letter, then what it says.
QString lineOf(const Block& block) {
    if (const auto* text = std::get_if<TextBlock>(&block)) {
        const QString mark = text->mark.isEmpty() ? QString() : u'[' + text->mark + u']';
        const QString name = text->name.isEmpty() ? QString() : text->name + u'|';
        return QString(u"CVTBQNnF"[static_cast<int>(text->style)]) + QString::number(text->level) + mark + u' ' + name +
               plain(text->runs);
    }
    if (const auto* facts = std::get_if<FactsBlock>(&block)) {
        QStringList parts;
        for (const auto& [word, answer] : facts->facts)
            parts << word + u'=' + answer;
        return u"= "_s + parts.join(u" | "_s);
    }
    if (const auto* values = std::get_if<ValuesBlock>(&block)) {
        QStringList rows;
        for (const ValuesBlock::Row& row : values->rows)
            rows << row.code + u' ' + row.label + (row.missing ? u" (M)"_s : QString());
        return u"# "_s + rows.join(u" | "_s);
    }
    if (const auto* table = std::get_if<TableBlock>(&block))
        return u"+ %1 %2x%3 fixed %4"_s.arg(table->title)
                   .arg(table->table.Cols())
                   .arg(table->table.Rows())
                   .arg(table->table.FixedRows) +
               u" | "_s + table->notes.join(u" | "_s);
    const auto& picture = std::get<PictureBlock>(block);
    return u"* %1 %2 %3%4"_s.arg(picture.title).arg(picture.bytes.size()).arg(picture.explanation, picture.fault);
}

class Reports : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    ReportRequest request;
    std::unique_ptr<ReportContent> content;

    void SetUp() override {
        catalogue.fill();
        request.LANGUAGE = 1;
        request.ReportLanguage = 2;
        request.DatabaseFile = catalogue.path();
        request.sourceTable = u"Study"_s;
        request.CompleteQuestionText = true;
    }
    ReportRequest of(ReportKind kind, const QString& selection, const QString& table) const {
        ReportRequest asked = request;
        asked.ReportType = kind;
        asked.Studies = selection;
        asked.sourceTable = table;
        return asked;
    }
    /// The reason why there is no report, or every entry with its blocks.
    QStringList shown(const ReportRequest& asked) {
        content = contentOf(asked);
        if (const QString reason = content->open(); !reason.isEmpty())
            return {u"! "_s + reason};
        while (content->read(1000)) {
        }
        return lines();
    }
    QStringList lines() const {
        QStringList found;
        EXPECT_EQ(content->fault(), QString());
        const ReportOutline& outline = content->outline();
        EXPECT_EQ(content->ready(), static_cast<int>(outline.entries.size()));
        for (int i = 0; i < content->ready(); ++i) {
            found << u"%1: %2 %3"_s.arg(outline.entries[static_cast<size_t>(i)].level)
                         .arg(outline.entries[static_cast<size_t>(i)].name,
                              outline.entries[static_cast<size_t>(i)].title);
            for (const Block& block : content->blocks(i))
                found << lineOf(block);
        }
        return found;
    }
    void keepTable(const QString& variable, const QString& table) {
        const dao::DatabasePtr open = dao::DBEngine::instance().OpenDatabase(catalogue.path());
        const dao::RecordsetPtr row = open->OpenRecordset(
            u"SELECT * FROM tkey_Variable WHERE fi_StudyNo = 'QX1919' AND id_VarName = '"_s + variable + u"';"_s);
        row->Edit();
        row->setValue(u"dt_Table"_s, dao::Value(table));
        row->Update();
        row->Close();
        open->Close();
    }
};

} // namespace

TEST_F(Reports, EachKindShowsWhatBelongsToIt) {
    ASSERT_EQ(catalogue.open(), 1);
    ReportRequest one = of(ReportKind::Variables, u"@QX1919@"_s, u"Study"_s);
    one.variable = u"v5"_s; // names are found without regard to case
    EXPECT_EQ(shown(one),
              (QStringList{u"0: V5 Zufriedenheit"_s, u"V0 V5|Zufriedenheit"_s,
                           u"= Studie=QX1919, Erhebung 1919 | Jahr=1919 | Welle=Welle 1"_s, u"T0 Fragetext"_s,
                           u"Q0 Wie zufrieden sind Sie?"_s, u"# 1 zufrieden | 2 unzufrieden | 9 keine Angabe (M)"_s,
                           u"= Fehlende Werte=9 | Kategorien=Einstellungen | Trends=Zufriedenheit"_s}));
    one.ReportLanguage = 1;
    EXPECT_EQ(shown(one).mid(1, 4),
              (QStringList{u"V0[Original] V5|Zufriedenheit"_s, u"Q0[Englisch] Satisfaction"_s,
                           u"= Studie=QX1919, Erhebung 1919 | Jahr=1919 | Welle=Welle 1"_s, u"T0 Fragetext"_s}));

    const QStringList group = shown(of(ReportKind::Variables, u"@G001@"_s, u"Study"_s));
    EXPECT_EQ(group.filter(QRegularExpression(u"^\\d: "_s)),
              (QStringList{u"0: QX1919 Erhebung 1919 (QX1919)"_s, u"1: V3 Gewicht"_s, u"1: V5 Zufriedenheit"_s,
                           u"1: V6 Vertrauen"_s, u"1: V7 Geschlecht"_s, u"1: V8 Beruf"_s, u"1: V9 Alter"_s}));
    EXPECT_EQ(group.mid(1, 3),
              (QStringList{u"C0 Erhebung 1919 (QX1919)"_s, u"= Studiennummer=QX1919 | Jahr=1919 | Gewichte=V3"_s,
                           u"B0 Beschreibung"_s}));
    EXPECT_FALSE(content->outline().cover.empty());

    EXPECT_EQ(shown(of(ReportKind::Category, u"@1 Einstellungen @ mehr@"_s, u"Category"_s))
                  .filter(QRegularExpression(u"^(\\d: |= S)"_s)),
              (QStringList{u"0:  Einstellungen"_s, u"1: V5 Zufriedenheit"_s,
                           u"= Studie=QX1919, Erhebung 1919 | Jahr=1919 | Welle=Welle 1"_s, u"1: V5 Zufriedenheit"_s,
                           u"= Studie=QX2020, Erhebung 2020 | Jahr=2020"_s}))
        << "its own variables only, each with its study";

    ReportRequest names = of(ReportKind::StudyNames, {}, u"Study"_s);
    names.table = u"Study"_s;
    EXPECT_EQ(shown(names).filter(QRegularExpression(u"^N"_s)),
              (QStringList{u"N0 G001|Gruppe"_s, u"N1 QX1919|Erhebung 1919"_s, u"N0 QX2020|Erhebung 2020"_s}));
    names.MaxLevels = 1;
    EXPECT_EQ(shown(names).filter(QRegularExpression(u"^N"_s)),
              (QStringList{u"N0 G001|Gruppe"_s, u"N0 QX2020|Erhebung 2020"_s}));
    names.Studies = u"@G001 @"_s;
    EXPECT_EQ(shown(names).filter(QRegularExpression(u"^N"_s)), (QStringList{u"N0 QX1919|Erhebung 1919"_s}));
    names = of(ReportKind::CategoryNames, u"@1 Einstellungen@"_s, u"Category"_s);
    names.table = u"Category"_s;
    names.ReportLanguage = 3;
    EXPECT_EQ(shown(names).filter(QRegularExpression(u"^[CN]"_s)), (QStringList{u"C0 Attitudes"_s, u"N0 Trust"_s}));

    EXPECT_EQ(shown(of(ReportKind::StudyDescription, u"@QX1919@"_s, u"Study"_s)).mid(1),
              (QStringList{u"C0 Erhebung 1919"_s, u"= Nummer=QX1919 | Jahr=1919 | Katalog=catalogue.mdb"_s,
                           u"B0 Beschreibung"_s}));
    EXPECT_EQ(shown(of(ReportKind::CategoryDescription, u"@2 Demographie@"_s, u"Category"_s)).last(),
              u"B0 Person und Haushalt"_s);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(Reports, WhatIsNotThereIsSaidInTheLanguageOfTheWords) {
    ASSERT_EQ(catalogue.open(), 1);
    ASSERT_TRUE(
        QFile::copy(QStringLiteral(VARIDEX_BINARIES "/Vx.mdb"), Paths::join(Paths::applicationFolder(), u"Vx.mdb"_s)));
    mdLanguage::LoadTextTable();
    request.LANGUAGE = 2;
    const struct {
        ReportKind kind;
        QString selection, table, variable, words;
    } cases[] = {
        {ReportKind::Variables, u"@QX1919@"_s, u"Study"_s, u"V99"_s,
         u"The variable V99 of the study QX1919 is no longer in the catalogue."_s},
        {ReportKind::Variables, u"@QX'19@"_s, u"Study"_s, {}, u"The study QX'19 is no longer in the catalogue."_s},
        {ReportKind::Category, u"@99 Alt@"_s, u"Category"_s, {}, u"The category 99 is no longer in the catalogue."_s},
        {ReportKind::Category, u"@1 OR 1=1@"_s, u"Nowhere"_s, {}, u"The category 1 is no longer in the catalogue."_s},
        {ReportKind::Category, u"@x y@"_s, u"Category"_s, {}, u"The category x is no longer in the catalogue."_s},
        {ReportKind::CategoryNames,
         u"@99 Alt@"_s,
         u"Category"_s,
         {},
         u"The category 99 is no longer in the catalogue."_s},
        {ReportKind::StudyDescription, u"@QX2020@"_s, u"Study"_s, {}, u"Description not found!"_s},
        {ReportKind::Database, {}, {}, {}, u"Description not found!"_s},
    };
    for (const auto& one : cases) {
        ReportRequest asked = of(one.kind, one.selection, one.table);
        asked.variable = one.variable;
        EXPECT_EQ(shown(asked), QStringList{u"! "_s + one.words});
    }
    catalogue.addStudy(u"QX3"_s, u"Leer"_s, {{"fid", u"0"_s}, {"Order", 3}});
    EXPECT_EQ(shown(of(ReportKind::Variables, u"@QX3@"_s, u"Study"_s)),
              QStringList{u"! The study QX3 has no variables that the report can show."_s});
    request.DatabaseFile = home.path(u"nowhere.mdb"_s);
    EXPECT_TRUE(shown(of(ReportKind::Database, {}, {})).front().startsWith(u"! The catalogue cannot be read: 3024"_s));
    EXPECT_TRUE(asker.boxes.empty());
    gTextObject = CText();
}

TEST_F(Reports, StoredResultsSayWhereTheyComeFromAndDamageSaysSoInItsPlace) {
    const QByteArray bytes("\xFF\xD8\xFF picture");
    keepTable(u"V5"_s, u"\"V5 nach V7\";Xtab;S;;2;3;\"\";\"1\";\"2\";\"1\";\"10,0\";\"90,0\";V3;"_s);
    keepTable(u"V7"_s, u"\"kaputt\";Freq;;;9;9;"_s);
    catalogue.execute(u"UPDATE tkey_Variable SET dt_FileNameShowCard = 'cards\\one.png' WHERE id_VarName = 'V5'"_s);
    catalogue.execute(u"UPDATE tkey_Variable SET dt_FileNameShowCard = '..\\outside.png' WHERE id_VarName = 'V7'"_s);
    catalogue.execute(u"UPDATE tkey_Variable SET dt_Graph = '"_s + QString::fromLatin1(bytes) +
                      u"', dt_GraphLayout = '\"Balken\";1440;720;\"1 ja\";' WHERE id_VarName = 'V5'"_s);
    catalogue.execute(u"UPDATE tkey_Variable SET dt_Graph = 'Ж' WHERE id_VarName = 'V7'"_s);
    QDir(home.path()).mkpath(u"cards"_s);
    QFile card(home.path(u"cards/one.png"_s));
    ASSERT_TRUE(card.open(QIODevice::WriteOnly) && card.write("12345") == 5);
    card.close();
    ASSERT_EQ(catalogue.open(), 1);
    request.AnalysisTable = request.AnalysisGraph = request.ShowCards = true;
    request.variable = u"V5"_s;
    request.Studies = u"@QX1919@"_s;
    EXPECT_EQ(
        shown(request).mid(7),
        (QStringList{u"+ V5 nach V7 2x3 fixed 2 | Spaltenprozente | Gewicht: V3 | Quelle: gespeichert im Katalog "
                     "catalogue.mdb (ohne Datum), Studie QX1919, Erhebung 1919"_s,
                     u"* Balken 11 1 ja"_s,
                     u"n0 Quelle: gespeichert im Katalog catalogue.mdb (ohne Datum), Studie QX1919, Erhebung 1919"_s,
                     u"* ShowCard 5 "_s}));
    request.variable = u"V7"_s;
    EXPECT_EQ(
        shown(request).mid(5),
        (QStringList{u"F0 Die gespeicherte Tabelle ist beschädigt."_s, u"* V7 0 Das Bild ist beschädigt."_s,
                     u"n0 Quelle: gespeichert im Katalog catalogue.mdb (ohne Datum), Studie QX1919, Erhebung 1919"_s,
                     u"* ShowCard 0 Das Bild ist nicht da. ..\\outside.png"_s}));
}

TEST_F(Reports, ValuesStandAsNumbersTheMissingOnesBelowAndTheDefinitionInWords) {
    catalogue.addStudy(u"Q*"_s, u"Muster"_s, {{"fid", u"0"_s}, {"Order", 4}});
    catalogue.addVariable(u"Q*"_s, u"A"_s, u"T"_s, {{"dt_Missing", u"-1;98;99"_s}});
    catalogue.addVariable(u"Q*"_s, u"B"_s, u"T"_s, {{"dt_Missing", u"acht"_s}});
    for (const QString& code : {u"10"_s, u"2"_s, u"x"_s, u"-1"_s, u"98"_s})
        catalogue.addValue(u"Q*"_s, u"A"_s, code, u"L"_s);
    catalogue.addValue(u"Q*"_s, u"B"_s, u"8"_s, u"acht"_s);
    ASSERT_EQ(catalogue.open(), 1);
    const QStringList found = shown(of(ReportKind::Variables, u"@Q*@"_s, u"Study"_s));
    EXPECT_EQ(found.filter(QRegularExpression(u"^(#|= F)"_s)),
              (QStringList{u"# 2 L | 10 L | x L | -1 L (M) | 98 L (M) | 99  (M)"_s, u"= Fehlende Werte=-1, 98 und 99"_s,
                           u"# 8 acht"_s,
                           u"= Fehlende Werte=„acht“: nicht zu deuten, kein Wert ist als fehlend gekennzeichnet"_s}))
        << "a study whose number is a pattern has its own values only";
}

TEST_F(Reports, LongListsOfValuesAreReadApartAndAreCutWhereNoTableWouldEnd) {
    const dao::DatabasePtr open = dao::DBEngine::instance().OpenDatabase(catalogue.path());
    dao::DBEngine::instance().Workspaces(0).BeginTrans();
    const auto values =
        open->openAppender(u"tkey_Value"_s, {u"fi_StudyNo"_s, u"fi_VarName"_s, u"dt_Value"_s, u"dt_Label"_s});
    for (const auto& [variable, count] :
         {std::pair{u"V3"_s, 15'000}, std::pair{u"V6"_s, 25'000}, std::pair{u"V8"_s, 25'001}})
        for (int i = 0; i < count; ++i) {
            values->setText(0, u"QX1919"_s);
            values->setText(1, variable);
            values->setText(2, QString::number(i));
            values->setText(3, u"L"_s);
            values->appendRow();
        }
    dao::DBEngine::instance().Workspaces(0).CommitTrans();
    open->Close();
    ASSERT_EQ(catalogue.open(), 1);
    const QStringList found = shown(of(ReportKind::Variables, u"@QX1919@"_s, u"Study"_s));
    QStringList sizes;
    for (const QString& line : found.filter(QRegularExpression(u"^[#n]"_s)))
        sizes << (line.startsWith(u'#') ? QString::number(line.count(u'|') + 1) : line);
    EXPECT_EQ(sizes, (QStringList{u"15000"_s, u"3"_s, u"25000"_s, u"2"_s, u"25000"_s,
                                  u"n0 Nur die ersten 25000 Werte werden gezeigt; der Katalog hat mehr."_s}));
}

TEST_F(Reports, AnOldOrDamagedCatalogueShowsWhatItHas) {
    catalogue.addStudy(u"A"_s, u"im Kreis"_s, {{"fid", u"B"_s}, {"Order", 1}, {"dt_IsGroup", true}});
    catalogue.addStudy(u"B"_s, u"im Kreis"_s, {{"fid", u"A"_s}, {"Order", 1}});
    catalogue.addStudy(u"C"_s, u"verwaist"_s, {{"fid", u"nirgends"_s}, {"Order", 1}});
    const dao::DatabasePtr open = dao::DBEngine::instance().OpenDatabase(catalogue.path());
    for (const QString& table : {u"tkey_VarGroups"_s, u"tkey_Parts"_s, u"tkey_Value"_s, u"trel_VariableTrend"_s})
        open->TableDefs().Delete(table);
    open->Close();
    ASSERT_EQ(catalogue.open(), 1);
    ReportRequest names = of(ReportKind::StudyNames, {}, u"Study"_s);
    names.table = u"Study"_s;
    EXPECT_EQ(shown(names).filter(QRegularExpression(u"^[NT]"_s)),
              (QStringList{u"N0 G001|Gruppe"_s, u"N1 QX1919|Erhebung 1919"_s, u"N0 QX2020|Erhebung 2020"_s,
                           u"T0 Einträge, zu denen kein Weg führt:"_s, u"N1 B|im Kreis"_s, u"N1 A|im Kreis"_s,
                           u"N1 C|verwaist"_s}));
    EXPECT_EQ(shown(of(ReportKind::Variables, u"@A@"_s, u"Study"_s)),
              QStringList{u"! Die Studie B hat keine Variablen, die der Bericht zeigen kann."_s});
    request.variable = u"V5"_s;
    request.Studies = u"@QX1919@"_s;
    EXPECT_EQ(shown(request), (QStringList{u"0: V5 Zufriedenheit"_s, u"V0 V5|Zufriedenheit"_s,
                                           u"= Studie=QX1919, Erhebung 1919 | Jahr=1919"_s, u"T0 Fragetext"_s,
                                           u"Q0 Wie zufrieden sind Sie?"_s, u"# 9  (M)"_s,
                                           u"= Fehlende Werte=9 | Kategorien=Einstellungen"_s}));
}

TEST_F(Reports, VariablesWithoutTextAreLeftOutWhereAskedFor) {
    catalogue.addVariable(u"QX2020"_s, u"V0"_s, u"T"_s, {{"dt_EnVarLabel", u"only"_s}});
    ASSERT_EQ(catalogue.open(), 1);
    const auto names = [&](bool original, bool english) {
        ReportRequest asked = of(ReportKind::Variables, u"@QX2020@"_s, u"Study"_s);
        asked.NoEmpty = original;
        asked.NoEmptyEn = english;
        return shown(asked).filter(QRegularExpression(u"^1: "_s));
    };
    catalogue.execute(u"UPDATE tkey_Variable SET dt_EnVarLabel = Null WHERE id_VarName = 'V7'"_s);
    EXPECT_EQ(names(false, false).size(), 3);
    EXPECT_EQ(names(true, false), (QStringList{u"1: V5 Zufriedenheit"_s, u"1: V7 Geschlecht"_s}));
    EXPECT_EQ(names(false, true), (QStringList{u"1: V5 Zufriedenheit"_s, u"1: V0 only"_s}));
}

TEST_F(Reports, GroupsOfVariablesThatFollowOneAnotherAreChapters) {
    const auto chapters = [&](const QString& study) {
        shown(of(ReportKind::Variables, u'@' + study + u'@', u"Study"_s));
        QStringList titles;
        for (const ReportEntry& entry : content->outline().entries)
            if (entry.kind == ReportEntry::Kind::Chapter)
                titles << QString::number(entry.level) + u' ' + entry.title;
        return titles;
    };
    const auto add = [&](const QString& study, int count, int group) {
        for (int i = 0; i < count; ++i)
            catalogue.addVariable(study, u"%1_%2"_s.arg(group).arg(i), u"T"_s, {{"dt_VarGroup", group}});
    };
    add(u"QX2020"_s, 4, 1); // behind two variables without one
    ASSERT_EQ(catalogue.open(), 1);
    EXPECT_EQ(chapters(u"QX2020"_s), (QStringList{u"0 Erhebung 2020 (QX2020)"_s, u"1 Welle 1"_s}));
    EXPECT_EQ(content->outline().entries.back().level, 2);
    add(u"QX2020"_s, 6, 99); // of a group that is not there
    EXPECT_EQ(chapters(u"QX2020"_s), (QStringList{u"0 Erhebung 2020 (QX2020)"_s, u"1 Welle 1"_s, u"1 Ohne Gruppe"_s}));
    EXPECT_EQ(chapters(u"QX1919"_s), (QStringList{u"0 Erhebung 1919 (QX1919)"_s})) << "its groups take turns";
}

/// Somebody writes through the program's own connection while a report is read between his events.
TEST_F(Reports, AnEditMeanwhileNeitherWaitsNorMixesTwoStates) {
    catalogue.together([&] {
        for (int i = 0; i < 600; ++i)
            catalogue.addVariable(u"QX2020"_s, u"X%1"_s.arg(i), u"T"_s,
                                  {{"dt_VarLabel", u"alt"_s}, {"dt_QuestionText", u"alt"_s}, {"dt_Missing", u"1"_s}});
    });
    ASSERT_EQ(catalogue.open(), 1);
    const dao::DatabasePtr edited = gDatabase.CurrentDatabase();
    content = contentOf(of(ReportKind::Variables, u"@QX2020@"_s, u"Study"_s));
    ASSERT_EQ(content->open(), QString());
    int edits = 0;
    while (content->read(0)) {
        ++edits;
        gDatabase.CurrentWorkspace().BeginTrans();
        edited->Execute(
            u"UPDATE tkey_Variable SET dt_QuestionText = '%1', dt_Missing = '%1' WHERE id_VarName Like 'X*'"_s.arg(
                edits));
        if (edits == 1) {
            edited->Execute(u"DELETE FROM tkey_Variable WHERE id_VarName = 'X599'"_s);
            EXPECT_TRUE(content->read(0)) << "what is not committed yet is not there, and keeps nobody";
        }
        gDatabase.CurrentWorkspace().CommitTrans();
    }
    while (content->read(1000)) {
    }
    const QStringList found = lines();
    int same = 0;
    QString question;
    for (const QString& line : found) {
        if (line.startsWith(u"Q0 "_s))
            question = line.mid(3);
        if (line.startsWith(u"= Fehlende Werte="_s) && !question.isEmpty())
            same += line == u"= Fehlende Werte="_s + question ? 1 : -1000;
    }
    EXPECT_GT(same, 500);
    EXPECT_EQ(found.mid(found.indexOf(u"1: X599 alt"_s) + 1, 2),
              (QStringList{u"V0 X599|alt"_s, u"F0 Diese Variable ist nicht mehr im Katalog."_s}));
}

TEST_F(Reports, AClosedOrRemovedCatalogueEndsNoReadingAndTheBlocksStay) {
    ASSERT_EQ(catalogue.open(), 1);
    content = contentOf(of(ReportKind::Variables, u"@QX1919@"_s, u"Study"_s));
    ASSERT_EQ(content->open(), QString());
    mdDataBase::CloseDataBase();
    ASSERT_TRUE(QFile::remove(catalogue.path()));
    while (content->read(0)) {
    }
    const QStringList before = lines();
    EXPECT_TRUE(before.contains(u"Q0 Wie zufrieden sind Sie?"_s));
    EXPECT_TRUE(before.contains(u"= Fehlende Werte=9 | Kategorien=Einstellungen | Trends=Zufriedenheit"_s))
        << "the views are those of the moment when it was asked for";
    EXPECT_EQ(lines(), before);
}

TEST_F(Reports, AnotherProgramsLockIsWaitedForBetweenSlices) {
    ASSERT_EQ(catalogue.open(), 1);
    content = contentOf(of(ReportKind::Variables, u"@QX1919@"_s, u"Study"_s));
    ASSERT_EQ(content->open(), QString());
    mdDataBase::CloseDataBase();
    dao::Workspace elsewhere;
    const dao::DatabasePtr locked = elsewhere.OpenDatabase(catalogue.path(), true);
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_TRUE(content->read(0));
    EXPECT_TRUE(content->read(0));
    EXPECT_LT(elapsed.elapsed(), 1000) << "the two seconds of a statement that waits";
    EXPECT_EQ(content->fault(), QString());
    locked->Close();
    while (content->read(0)) {
    }
    EXPECT_TRUE(lines().contains(u"Q0 Wie zufrieden sind Sie?"_s));
}

TEST_F(Reports, ADiskThatIsFullAtAnyTimeEndsAReportWithTheReason) {
    ASSERT_EQ(catalogue.open(), 1);
    const ReportRequest asked = of(ReportKind::Variables, u"@QX1919@"_s, u"Study"_s);
    const QStringList whole = shown(asked);
    const QString words = u"Der Bericht kann nicht zwischengespeichert werden: "_s;
    int failed = 0;
    for (qint64 room = 0;; room += 100) {
        content = contentOf(asked);
        {
            const FullDisk full(room);
            ASSERT_EQ(content->open(), QString());
            while (content->read(1000)) {
            }
        }
        if (content->fault().isEmpty())
            break;
        ++failed;
        EXPECT_TRUE(content->fault().startsWith(words)) << qPrintable(content->fault());
        ASSERT_LT(content->ready(), static_cast<int>(content->outline().entries.size()));
    }
    EXPECT_GT(failed, 5);
    EXPECT_EQ(lines(), whole);
}
