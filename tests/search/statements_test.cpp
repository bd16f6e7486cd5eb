#include "app/globals.h"
#include "search/SearchRequest.h"
#include "support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// A study view and a category view, both with descriptions, and a third without.
class SearchStatements : public testing::Test {
protected:
    SearchRequest request;

    SearchStatements() {
        gViews.resize(3);
        gCatalogueOptions.NumberOfFrmExplorers = 3;
        const auto set = [](int view, const QString& table, const QString& type, const QString& description) {
            gViews.set(view, ViewTable::Name, table);
            gViews.set(view, ViewTable::Table, table);
            gViews.set(view, ViewTable::Type, type);
            gViews.set(view, ViewTable::DescName, description);
        };
        set(1, u"Study"_s, u"1"_s, u"Texte"_s);
        set(2, u"Topic"_s, u""_s, u"Texte"_s);
        set(3, u"Trend"_s, u""_s, u""_s);
        request.sFind = u"eins"_s;
    }
    ~SearchStatements() override {
        gViews.clear();
        gCatalogueOptions = {};
    }

    void second(SearchRequest::Join join) {
        request.sFind2 = u"zwei"_s;
        request.join = join;
    }
    QStringList statements(std::initializer_list<int> boxes) {
        request.chkSearch.fill(false);
        for (const int box : boxes)
            request.chkSearch[static_cast<size_t>(box)] = true;
        QStringList all;
        for (const SearchPass& pass : searchPasses(request))
            all << pass.statement;
        return all;
    }
};

TEST_F(SearchStatements, OfEntriesHaveTheirBlanksAsTheyAre) {
    EXPECT_EQ(statements({0}), QStringList{u"SELECT id_StudyNo, dt_StudyTitle FROM tkey_Study WHERE dt_StudyTitle LIKE "
                                           "'*eins*'  ORDER BY dt_StudyTitle;"_s});
    EXPECT_EQ(statements({1}), QStringList{u"SELECT id, dt_IndicatorName FROM tkey_Topic WHERE dt_IndicatorName LIKE "
                                           "'*eins*'  ORDER BY dt_IndicatorName;"_s});
    second(SearchRequest::Join::Or);
    EXPECT_EQ(statements({0}), QStringList{u"SELECT id_StudyNo, dt_StudyTitle FROM tkey_Study WHERE dt_StudyTitle LIKE "
                                           "'*eins*' OR dt_StudyTitle LIKE '*zwei*' ORDER BY dt_StudyTitle;"_s});
    request.english = true;
    request.join = SearchRequest::Join::And;
    EXPECT_EQ(
        statements({9, 10}),
        (QStringList{
            u"SELECT id_StudyNo, dt_EnStudyDescription FROM tkey_Study WHERE dt_EnStudyDescription LIKE '*eins*' AND "
            "dt_EnStudyDescription LIKE '*zwei*' ORDER BY dt_EnStudyDescription;"_s,
            u"SELECT id, dt_EnIndicatorDescription FROM tkey_Topic WHERE dt_EnIndicatorDescription LIKE '*eins*' AND "
            "dt_EnIndicatorDescription LIKE '*zwei*' ORDER BY dt_EnIndicatorDescription;"_s}));
}

TEST_F(SearchStatements, RunNamesFirstThenDescriptionsWhereAViewHasThemThenVariables) {
    QStringList columns;
    for (const QString& statement : statements({0, 1, 2, 3, 9, 10, 11, 12, 18}))
        columns << statement.section(u' ', 2, 4);
    EXPECT_EQ(columns, (QStringList{u"dt_StudyTitle FROM tkey_Study"_s, u"dt_IndicatorName FROM tkey_Topic"_s,
                                    u"dt_IndicatorName FROM tkey_Trend"_s, u"dt_StudyDescription FROM tkey_Study"_s,
                                    u"dt_IndicatorDescription FROM tkey_Topic"_s, u"FROM tkey_Variable WHERE"_s}));
    EXPECT_EQ(statements({}), QStringList());
}

TEST_F(SearchStatements, OfVariablesTakeLabelsNamesAndQuestionsInThatOrder) {
    const struct {
        std::initializer_list<int> boxes;
        QString one, two;
    } cases[] = {
        {{18}, u" (id_Varname LIKE '*eins*' )"_s, u" (id_Varname LIKE '*eins*' AND id_Varname LIKE '*zwei*')"_s},
        {{19}, u"(dt_VarLabel LIKE '*eins*' )"_s, u"(dt_VarLabel LIKE '*eins*' AND dt_VarLabel LIKE '*zwei*')"_s},
        {{20},
         u"(dt_QuestionText LIKE '*eins*' )"_s,
         u"(dt_QuestionText LIKE '*eins*' AND dt_QuestionText LIKE '*zwei*')"_s},
        {{18, 19},
         u"(dt_VarLabel LIKE '*eins*' ) OR (id_Varname LIKE '*eins*' )"_s,
         u"(dt_VarLabel LIKE '*eins*' AND dt_VarLabel LIKE '*zwei*') OR (id_Varname LIKE '*eins*' AND id_Varname LIKE "
         "'*zwei*')"_s},
        {{18, 20},
         u" (id_Varname LIKE '*eins*' ) OR(dt_QuestionText LIKE '*eins*' )"_s,
         u" (id_Varname LIKE '*eins*' AND id_Varname LIKE '*zwei*') OR(dt_QuestionText LIKE '*eins*' AND "
         "dt_QuestionText LIKE '*zwei*')"_s},
        {{19, 20},
         u"(dt_VarLabel LIKE '*eins*' ) OR(dt_QuestionText LIKE '*eins*' )"_s,
         u"(dt_VarLabel LIKE '*eins*' AND dt_VarLabel LIKE '*zwei*') OR(dt_QuestionText LIKE '*eins*' AND "
         "dt_QuestionText LIKE '*zwei*')"_s},
        {{18, 19, 20},
         u"(dt_VarLabel LIKE '*eins*' ) OR (id_Varname LIKE '*eins*' ) OR(dt_QuestionText LIKE '*eins*' )"_s,
         u"(dt_VarLabel LIKE '*eins*' AND dt_VarLabel LIKE '*zwei*') OR (id_Varname LIKE '*eins*' AND id_Varname LIKE "
         "'*zwei*') OR(dt_QuestionText LIKE '*eins*' AND dt_QuestionText LIKE '*zwei*')"_s},
    };
    const auto whole = [](const QString& condition) {
        return QStringList{u"SELECT * FROM tkey_Variable WHERE ("_s + condition +
                           u") ORDER BY fi_StudyNo, dt_Position;"_s};
    };
    for (const auto& one : cases) {
        request.sFind2.clear();
        EXPECT_EQ(statements(one.boxes), whole(one.one));
        for (const SearchRequest::Join join : {SearchRequest::Join::And, SearchRequest::Join::Or}) {
            second(join);
            const QString word = join == SearchRequest::Join::Or ? u"OR "_s : u"AND "_s;
            EXPECT_EQ(statements(one.boxes), whole(QString(one.two).replace(u"AND "_s, word)));
        }
    }
    request.sFind2.clear();
    request.english = true;
    EXPECT_EQ(statements({19, 20}), whole(u"(dt_EnVarLabel LIKE '*eins*' ) OR(dt_EnQuestionText LIKE '*eins*' )"_s));
}

TEST_F(SearchStatements, TakeATermAsItWasTyped) {
    request.sFind = u"O'Neill [#]*"_s;
    EXPECT_TRUE(statements({18})[0].contains(u"LIKE '*O'Neill [#]**' "_s));
}

TEST_F(SearchStatements, WantATermAndBetweenTwoAJoin) {
    EXPECT_EQ(faultOf(request), SearchFault::None);
    request.join = SearchRequest::Join::None;
    request.sFind2 = u"zwei"_s;
    EXPECT_EQ(faultText(faultOf(request)), u"Bitte eine Verknüpfung (und bzw. oder) eingeben"_s);
    request.sFind.clear();
    EXPECT_EQ(faultText(faultOf(request)), u"Bitte einen Suchbegriff eingeben"_s);
}

} // namespace
