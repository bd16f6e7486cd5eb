#include "search/ExtendedSearch.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "platform/dao/DBEngine.h"
#include "search/hitTarget.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QMap>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class ExtendedSearchTest : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    ExtendedSearch search;
    SearchRequest request;
    QStringList statements;

    void SetUp() override {
        catalogue.fill();
        catalogue.execute(
            u"UPDATE tkey_Study SET dt_StudyDescription = 'Über die Arbeit' WHERE id_StudyNo = 'QX2020';"_s);
        catalogue.execute(u"UPDATE tkey_Variable SET dt_VarLabel = 'Label Wort' WHERE id_Varname = 'V5';"_s);
        ASSERT_EQ(catalogue.open(), 1);
        request.chkSearch.fill(true);
        dao::DBEngine::instance().setTrace([this](const QString& jet, const QString&) { statements << jet; });
    }
    void TearDown() override {
        dao::DBEngine::instance().setTrace({});
        gLanguage = 0;
    }

    void only(std::initializer_list<int> boxes) {
        request.chkSearch.fill(false);
        for (const int box : boxes)
            request.chkSearch[static_cast<size_t>(box)] = true;
    }
    void find(const QString& term) {
        request.sFind = term;
        statements.clear();
        search.begin(request);
        while (search.goOn()) {
        }
    }
    QStringList found() const {
        QStringList all;
        for (int i = 0; i < search.hits().size(); ++i)
            all << search.hits().at(i).key + u" = "_s + search.hits().at(i).text;
        return all;
    }
};

TEST_F(ExtendedSearchTest, TellsOfEveryPassAndListsHitsWithTheirKeys) {
    catalogue.execute(u"UPDATE tkey_Variable SET dt_QuestionText = 'Was  tun' WHERE id_Varname = 'V5';"_s);
    gViews.set(1, ViewTable::DescName, u"Texte"_s);
    only({0, 1, 2, 9, 18, 19, 20});
    find(u"wort"_s);
    EXPECT_EQ(search.state(), ExtendedSearch::State::Done);
    EXPECT_EQ(found(), (QStringList{u"VAV5@@QX1919 = QX1919, V5, Label Wort, V5, Was tun"_s,
                                    u"VAV5@@QX2020 = QX2020, V5, Label Wort, V5, Was tun"_s}));
    EXPECT_EQ(search.status(), u"0 in Studien , 0 in Kategorien , 0 in Trends , 0 in Studien , 2 in Variablen "_s);
}

TEST_F(ExtendedSearchTest, ReadsAStudysViewOnceARun) {
    only({18});
    find(u"V"_s);
    ASSERT_GT(search.hits().size(), 3);
    QMap<QString, int> asked;
    for (const QString& statement : statements)
        if (statement.contains(u"WHERE id_StudyNo="_s))
            ++asked[statement];
    EXPECT_EQ(asked, (QMap<QString, int>{{u"SELECT * FROM tkey_Study WHERE id_StudyNo='QX1919';"_s, 1},
                                         {u"SELECT * FROM tkey_Study WHERE id_StudyNo='QX2020';"_s, 1}}));
}

TEST_F(ExtendedSearchTest, SaysWhereAHitStands) {
    only({0, 9, 18});
    find(u"*"_s);
    QStringList ways;
    for (int i = 0; i < search.hits().size(); ++i)
        if (const HitList::Hit hit = search.hits().at(i);
            hit.key.endsWith(u"QX1919"_s) || hit.key == u"SAG001" || hit.kind == HitList::Kind::Description)
            ways << hit.key.left(1) + u' ' + hit.way;
    ways.removeDuplicates();
    const QString group = catalogue.path().isEmpty() ? QString() : u"Studien › "_s;
    ASSERT_GE(ways.size(), 3);
    EXPECT_TRUE(ways.contains(u"S Studien"_s)) << ways.join(u'\n').toStdString();
    EXPECT_TRUE(ways.last().startsWith(u"V "_s + group));
    EXPECT_EQ(ways.last().count(u" › "_s), 2);
}

TEST_F(ExtendedSearchTest, SearchesEnglishContentsAndSaysItInTheLanguageOfTheLabels) {
    catalogue.execute(u"UPDATE tkey_Variable SET dt_EnVarLabel = 'Label word' WHERE id_Varname = 'V7';"_s);
    gLanguage = 1;
    request.english = true;
    only({0, 19});
    find(u"WORD"_s);
    ASSERT_EQ(search.hits().size(), 2);
    EXPECT_EQ(search.hits().at(0).text, u"QX1919, V7, Label word"_s);
    EXPECT_EQ(search.status(), u"0 in Studies , 2 in Variablen "_s); // no text table is loaded here
}

TEST_F(ExtendedSearchTest, StopsAtTheNextRowWithoutACountOfThatPass) {
    only({0, 18});
    request.sFind = u"*"_s;
    search.begin(request);
    while (search.hits().size() < 4 && search.goOn())
        if (search.hits().size() > 0 && search.status().contains(u"Studien"_s))
            search.stop();
    search.stop();
    EXPECT_FALSE(search.goOn());
    EXPECT_EQ(search.state(), ExtendedSearch::State::Stopped);
    EXPECT_EQ(search.status(), u"3 in Studien (abgebrochen)"_s);
}

TEST_F(ExtendedSearchTest, StopsInTheMiddleOfAStatement) {
    catalogue.together([this] {
        for (int i = 0; i < 20000; ++i)
            catalogue.addVariable(u"QX2020"_s, u"W%1"_s.arg(i), u"QX2020_1"_s);
    });
    only({19});
    search.onStatement = [this] { search.stop(); };
    find(u"a*b*c*d"_s);
    EXPECT_EQ(search.state(), ExtendedSearch::State::Stopped);
    EXPECT_EQ(search.status(), u"(abgebrochen)"_s);
    EXPECT_TRUE(asker.boxes.empty());
    // The engine is free again.
    search.onStatement = {};
    find(u"Wort"_s);
    EXPECT_EQ(search.status(), u"2 in Variablen "_s);
}

TEST_F(ExtendedSearchTest, ReportsARefusedStatementOnceAndEnds) {
    const struct {
        QString term, hint;
    } cases[] = {
        {u"O'Neill"_s, u"(nicht zu Ende geführt) Wahrscheinlich liegt es an dem Anführungszeichen (') im Suchbegriff; "
                       "zwei davon hintereinander stehen für eines."_s},
        {u"[b"_s, u"(nicht zu Ende geführt) Wahrscheinlich liegt es an der eckigen Klammer im Suchbegriff; [[] steht "
                  "für eine."_s},
    };
    only({18});
    for (const auto& one : cases) {
        asker.boxes.clear();
        find(one.term);
        EXPECT_EQ(search.state(), ExtendedSearch::State::Failed);
        EXPECT_EQ(asker.boxes.size(), 1u) << one.term.toStdString();
        EXPECT_EQ(search.status(), one.hint);
        EXPECT_FALSE(search.goOn());
    }
    find(u"O''Neill"_s);
    EXPECT_EQ(search.state(), ExtendedSearch::State::Done);
    asker.boxes.clear();
    find(QString(70000, u'x')); // three times in one statement
    EXPECT_LE(asker.boxes.size(), 1u);
    EXPECT_FALSE(search.isRunning());
}

TEST_F(ExtendedSearchTest, TellsOfAFolderThatIsGoneWhereThePathIsPutRight) {
    const dao::DatabasePtr database = gDatabase.CurrentDatabase();
    const dao::TableDefPtr link = database->CreateTableDef(u"tkey_Gone"_s);
    link->setConnect(u";DATABASE="_s + home.path() + u"/nowhere/away.mdb"_s);
    link->setSourceTableName(u"tkey_Gone"_s);
    database->TableDefs().Append(link);
    gViews.set(2, ViewTable::Table, u"Gone"_s);
    gOptions.DatabasePath = u"C:\\Daten"_s;
    gOptions.DatabaseName = u"away.mdb"_s;
    only({1, 18});
    find(u"V"_s);
    EXPECT_EQ(asker.texts(), QStringList{u"Pfad zur Datenbank C:\\Daten\\away.mdb nicht gefunden!\r\n"
                                         "Geben Sie in den Optionen den korrekten Pfad an."_s});
    EXPECT_EQ(search.state(), ExtendedSearch::State::Failed);
    EXPECT_EQ(search.status(), u"(nicht zu Ende geführt)"_s);
    gOptions = {};
}

TEST_F(ExtendedSearchTest, SurvivesAnEditAndTheEndOfTheCatalogueBetweenTwoSlices) {
    only({18});
    request.sFind = u"V"_s;
    search.begin(request);
    ASSERT_TRUE(search.goOn() || search.hits().size() > 0);
    search.begin(request);
    gDatabase.CurrentDatabase()->Execute(u"DELETE FROM tkey_Variable;"_s);
    while (search.goOn()) {
    }
    EXPECT_EQ(search.state(), ExtendedSearch::State::Done);
    search.begin(request);
    mdDataBase::CloseDataBase();
    EXPECT_FALSE(search.goOn());
    EXPECT_EQ(search.state(), ExtendedSearch::State::Stopped);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST(HitTarget, IsReadFromTheKey) {
    const auto all = [](const QString& key) {
        const std::optional<HitTarget> target = hitTarget(key);
        if (!target)
            return QStringList();
        return QStringList{target->window == HitTarget::Window::Description ? u"B"_s : u"S"_s,
                           QString::number(target->view),
                           target->nodeKey,
                           target->entryKey,
                           target->variable,
                           target->study};
    };
    EXPECT_EQ(all(u"SAQX1919"_s), (QStringList{u"S"_s, u"1"_s, u"AQX1919"_s, u"QX1919"_s, {}, {}}));
    EXPECT_EQ(all(u"BB12"_s), (QStringList{u"B"_s, u"2"_s, u"B12"_s, u"12"_s, {}, {}}));
    EXPECT_EQ(all(u"VCV7@@QX1"_s), (QStringList{u"S"_s, u"3"_s, u"CQX1"_s, {}, u"V7"_s, u"QX1"_s}));
    // A study that no view holds leads to view 1, whose letter stands there.
    EXPECT_EQ(all(u"VAV7@@QX1"_s), (QStringList{u"S"_s, u"1"_s, u"AQX1"_s, {}, u"V7"_s, u"QX1"_s}));
    EXPECT_EQ(all(u"VAa@@b@@QX1"_s), (QStringList{u"S"_s, u"1"_s, u"AQX1"_s, {}, u"a@@b"_s, u"QX1"_s}));
    for (const QString& none : {u""_s, u"S"_s, u"V"_s, u"VAx"_s, u"XA1"_s, u"S@1"_s})
        EXPECT_EQ(all(none), QStringList()) << none.toStdString();
}

TEST(HitList, SortsByTextAndWayAndKeepsEqualHitsAsFound) {
    HitList hits;
    const int last = hits.addWay(u"Z"_s), first = hits.addWay(u"a"_s), same = hits.addWay(u"A"_s);
    hits.add(HitList::Kind::Name, 1, u"1"_s, u"beta"_s, last);
    hits.add(HitList::Kind::Description, 2, u"2"_s, u"Alpha"_s, first);
    hits.add(HitList::Kind::Variable, 0, variableId(u"V"_s, u"S"_s), u"ALPHA"_s, same);
    hits.add(HitList::Kind::Variable, 1, variableId(u"W"_s, u"S"_s), QString(2 << 20, u'ä'), -1);
    EXPECT_EQ(hits.sorted(HitList::By::Text, false), (std::vector<int>{1, 2, 0, 3}));
    EXPECT_EQ(hits.sorted(HitList::By::Text, true), (std::vector<int>{3, 0, 1, 2}));
    EXPECT_EQ(hits.sorted(HitList::By::Way, false), (std::vector<int>{3, 1, 2, 0}));
    EXPECT_EQ(hits.at(0).icon(), 6);
    EXPECT_EQ(hits.at(1).icon(), 9);
    EXPECT_EQ(hits.at(2).icon(), 5);
    EXPECT_EQ(hits.at(2).key, u"VAV@@S"_s);
    EXPECT_EQ(hits.at(3).text.size(), 2 << 20);
}

} // namespace
