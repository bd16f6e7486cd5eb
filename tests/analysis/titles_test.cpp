#include "analysis/result/titles.h"

#include "analysis/request/windowTitle.h"
#include "analysis/result/saveTable.h"
#include "app/globals.h"
#include "config/Options.h"
#include "language/SystemDatabase.h"
#include "language/mdLanguage.h"
#include "support/TestHome.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// A table that states these numbers of cases.
ResultTable stating(const StatedCases& cases) {
    ResultTable table;
    table.shape.cases = {cases};
    return table;
}

AnalysisRequest requestOf(AnalysisMode mode) {
    AnalysisRequest request;
    request.mode = mode;
    request.dbcStudy = {u"QX1919"_s, u"Erhebung"_s};
    request.dbcVariableUni = u"V5: Zufriedenheit"_s;
    request.dbcVariable2Uni = u"V6: Vertrauen"_s;
    return request;
}

} // namespace

TEST(Titles, NameTheNThatThePercentagesRestOnOrNone) {
    const TestHome home;
    const ResultTable both = stating({u"8"_s, u"5"_s}), onlyAll = stating({u"8"_s, std::nullopt}), none = stating({});
    const QString base = u"QX1919, V5: Zufriedenheit"_s;
    const QString byTwo = base + u" nach V6: Vertrauen"_s;
    struct Case {
        AnalysisMode mode;
        const ResultTable& table;
        bool withMissing;
        QString title;
    };
    const std::vector<Case> cases{
        {AnalysisMode::Frequency, both, false, base + u" (N=5)"_s},
        {AnalysisMode::Frequency, both, true, base + u" (N=8)"_s},
        {AnalysisMode::Frequency, none, false, base},
        {AnalysisMode::Frequency, none, true, base},
        {AnalysisMode::Crosstab, both, false, byTwo + u" (N=5)"_s},
        {AnalysisMode::Crosstab, both, true, byTwo + u" (N=8)"_s},
        {AnalysisMode::Crosstab, onlyAll, false, byTwo},
        {AnalysisMode::Crosstab, onlyAll, true, byTwo + u" (N=8)"_s},
        {AnalysisMode::Descriptives, both, false, base + u" (N=8)"_s},
        {AnalysisMode::Descriptives, none, true, base},
    };
    for (const Case& c : cases) {
        Options options;
        options.IncludeMissing = options.IncludeMissingInPercentXTab = c.withMissing;
        EXPECT_EQ(resultTitle(requestOf(c.mode), c.table, options).toStdString(), c.title.toStdString());
    }
    AnalysisRequest percent = requestOf(AnalysisMode::Crosstab);
    percent.cbValues = 1;
    EXPECT_EQ(resultTitle(percent, both, {}), byTwo);
    AnalysisRequest groups = requestOf(AnalysisMode::Descriptives);
    groups.chkDescGroup = true;
    EXPECT_EQ(resultTitle(groups, both, {}), byTwo);
}

TEST(Titles, TellWeightAndFilter) {
    const TestHome home;
    const ResultTable table = stating({u"5"_s, u"4"_s});
    AnalysisRequest request = requestOf(AnalysisMode::Frequency);
    request.dt_WeightRE = u"V3"_s;
    request.dt_WeightHH = u"V4"_s;
    request.dbcVarGewicht_1Uni = u"V11: Eigenes"_s;
    request.dbcParts.text = u"Teil A"_s;
    request.txtFilter = u"V7=1"_s;
    const QString base = u"QX1919, V5: Zufriedenheit (N=4)"_s;
    const std::vector<std::tuple<WeightKind, FilterKind, QString>> cases{
        {WeightKind::WeightRE, FilterKind::noFilter, u" (gewichtet nach V3)"_s},
        {WeightKind::WeightHH, FilterKind::FilterParts, u" (gewichtet nach V4) (Fälle aus Teil A)"_s},
        {WeightKind::WeightUser, FilterKind::FilterUser, u" (gewichtet nach V11: Eigenes) (ausgewählte Fälle: V7=1)"_s},
    };
    for (const auto& [weight, filter, words] : cases) {
        request.Option3 = weight;
        request.optFilter = filter;
        EXPECT_EQ(resultTitle(request, table, {}).toStdString(), (base + words).toStdString());
    }
    request.mode = AnalysisMode::Comparison;
    request.txtTitle = u"Trend"_s;
    EXPECT_EQ(resultTitle(request, table, {}), u"Vergleichsauswertung: Trend"_s);
}

TEST(Titles, AFileIsNamedAfterWhatItsTableIsOf) {
    const TestHome home;
    AnalysisRequest request = requestOf(AnalysisMode::Frequency);
    request.dbcVariable.value = u"V5"_s;
    request.dbcVariable2.value = u"V6"_s;
    request.txtTitle = u"Zufrieden: 1/2"_s;
    EXPECT_EQ(tableFileName(request), u"QX1919-V5"_s);
    request.mode = AnalysisMode::Crosstab;
    EXPECT_EQ(tableFileName(request), u"QX1919-V5-V6"_s);
    request.mode = AnalysisMode::Comparison;
    EXPECT_TRUE(tableFileName(request).startsWith(u"Zufrieden"_s));
    EXPECT_FALSE(tableFileName(request).contains(u'/'));
    request.txtTitle.clear();
    EXPECT_EQ(tableFileName(request), u"Vergleich"_s);
}

TEST(Titles, OfAComparisonsColumnsFollowTheHeaderOptions) {
    const TestHome home;
    ComparisonEntry entry;
    entry.column[ComparisonEntry::Study] = u"QX1"_s;
    entry.column[ComparisonEntry::Variable] = u"V5"_s;
    entry.column[ComparisonEntry::Year] = u"1919"_s;
    entry.column[ComparisonEntry::Group] = u"Welle 1"_s;
    Options options;
    EXPECT_EQ(comparisonHeader(entry, options), u"QX1, V5, 1919, Welle 1"_s);
    entry.column[ComparisonEntry::Weight] = u"V3"_s;
    entry.column[ComparisonEntry::Filter] = u"V7=1"_s;
    entry.column[ComparisonEntry::FilterInfo] = u"user"_s;
    options.HeaderYear = options.HeaderGroup = false;
    EXPECT_EQ(comparisonHeader(entry, options), u"QX1, V5 (G. V3) (F. V7=1)"_s);
    entry.column[ComparisonEntry::FilterInfo] = u"2"_s;
    entry.column[ComparisonEntry::PartText] = u"Teil A"_s;
    options.HeaderStudy = options.HeaderVar = options.HeaderAddWeight = false;
    EXPECT_EQ(comparisonHeader(entry, options), u"(F. Teil A)"_s);
    entry.column[ComparisonEntry::FilterInfo].clear();
    EXPECT_EQ(comparisonHeader(entry, options), u"(F. V7=1)"_s) << "no part: the filter is the user's";
}

TEST(Titles, ReadAndSpeakEnglishWithTheKeptTexts) {
    const TestHome home;
    SystemRows rows;
    const QDir texts(QStringLiteral(VARIDEX_SOURCE_ROOT) + u"/resources/texts"_s);
    for (const QString& name : {u"analysis.tsv"_s, u"tables.tsv"_s})
        ASSERT_EQ(readTextRows(texts.filePath(name), rows), QStringList());
    ASSERT_EQ(makeSystemDatabase(home.path(u"home/Vx.mdb"_s), rows), QStringList());
    mdLanguage::LoadTextTable();
    gLanguage = 1;
    const ResultTable table = stating({u"5"_s, u"4"_s});
    AnalysisRequest request = requestOf(AnalysisMode::Frequency);
    request.Option3 = WeightKind::WeightRE;
    request.dt_WeightRE = u"V3"_s;
    request.optFilter = FilterKind::FilterUser;
    request.txtFilter = u"V7=1"_s;
    Options options;
    options.IncludeMissing = false;
    EXPECT_EQ(resultTitle(request, table, options),
              u"QX1919, V5: Zufriedenheit (N=4) (weighted by V3) (selected cases: V7=1)"_s);
    options.IncludeMissing = true;
    request.optFilter = FilterKind::FilterParts;
    request.dbcParts.text = u"Part A"_s;
    EXPECT_EQ(resultTitle(request, table, options),
              u"QX1919, V5: Zufriedenheit (N=5) (weighted by V3) (Cases from Part A)"_s);
    ComparisonEntry entry;
    entry.column[ComparisonEntry::Weight] = u"V3"_s;
    options.HeaderStudy = options.HeaderVar = options.HeaderYear = options.HeaderGroup = false;
    EXPECT_EQ(comparisonHeader(entry, options).trimmed(), u"(W. V3)"_s);
}

TEST(Titles, HeadsOfAComparisonLeaveOutWhatAllEntriesShareAndNothingThatTellsThemApart) {
    const TestHome home;
    struct Case {
        const char* what;
        std::vector<QStringList> entries; ///< study, variable, year, group, weight, filter
        QStringList heads;                ///< empty: the cells as they are
        bool Options::*off = nullptr;
    };
    const std::vector<Case> cases{
        {"one entry", {{u"A"_s, u"V5"_s, u"2000"_s, u"G"_s, {}, {}}}, {}},
        {"studies",
         {{u"A"_s, u"V5"_s, u"2000"_s, u"G"_s, u"W"_s, {}}, {u"B"_s, u"V5"_s, u"2000"_s, u"G"_s, u"W"_s, {}}},
         {u"A"_s, u"B"_s}},
        {"a filter of one",
         {{u"A"_s, u"V5"_s, u"2000"_s, u"G"_s, {}, {}}, {u"A"_s, u"V5"_s, u"2000"_s, u"G"_s, {}, u"V7=1"_s}},
         {u"V5"_s, u"V5 (F. V7=1)"_s}},
        {"all alike",
         {{u"A"_s, u"V5"_s, u"2000"_s, u"G"_s, {}, {}}, {u"A"_s, u"V5"_s, u"2000"_s, u"G"_s, {}, {}}},
         {u"V5"_s, u"V5"_s}},
        {"no variable in the heads",
         {{u"A"_s, u"V5"_s, u"2000"_s, u"G"_s, {}, {}}, {u"A"_s, u"V6"_s, u"2000"_s, u"G"_s, {}, {}}},
         {u"V5"_s, u"V6"_s},
         &Options::HeaderVar},
        {"a year or a group of the same text",
         {{u"A"_s, u"V5"_s, u"2000"_s, {}, {}, {}}, {u"A"_s, u"V5"_s, {}, u"2000"_s, {}, {}}},
         {}},
    };
    for (const Case& c : cases) {
        Options options;
        if (c.off)
            options.*c.off = false;
        QList<ComparisonEntry> entries;
        for (const QStringList& one : c.entries) {
            ComparisonEntry entry;
            entry.column[ComparisonEntry::Study] = one[0];
            entry.column[ComparisonEntry::Variable] = one[1];
            entry.column[ComparisonEntry::Year] = one[2];
            entry.column[ComparisonEntry::Group] = one[3];
            entry.column[ComparisonEntry::Weight] = one[4];
            entry.column[ComparisonEntry::Filter] = one[5];
            entry.column[ComparisonEntry::FilterInfo] = one[5].isEmpty() ? QString() : u"user"_s;
            entries.append(entry);
        }
        const std::vector<QString> heads = shortHeads(entries, options, 3);
        EXPECT_EQ(QStringList(heads.begin(), heads.end()).mid(3), c.heads) << c.what;
    }
}

TEST(Titles, AWindowIsCalledAfterWhatItAsksFor) {
    const TestHome home;
    const auto named = [](AnalysisMode mode, const QString& variable, const QString& second, bool grouped = false) {
        AnalysisRequest request = requestOf(mode);
        request.dbcVariable.value = variable;
        request.dbcVariable2.value = second;
        request.chkDescGroup = grouped;
        return requestName(request);
    };
    const QString v5 = u"V5"_s, v6 = u"V6"_s;
    EXPECT_EQ(named(AnalysisMode::Frequency, v5, v6), u"QX1919 V5 - Häufigkeiten"_s);
    EXPECT_EQ(named(AnalysisMode::Crosstab, v5, v6), u"QX1919 V5 nach V6 - Kreuztabelle"_s);
    EXPECT_EQ(named(AnalysisMode::Crosstab, v5, QString()), u"QX1919 V5 - Kreuztabelle"_s);
    EXPECT_EQ(named(AnalysisMode::Descriptives, v5, v6), u"QX1919 V5 - Deskriptive Statistik"_s);
    EXPECT_EQ(named(AnalysisMode::Descriptives, v5, v6, true), u"QX1919 V5 nach V6 - Deskriptive Statistik"_s);
    EXPECT_EQ(named(AnalysisMode::Frequency, QString(), v6), QString());
    AnalysisRequest comparison = requestOf(AnalysisMode::Comparison);
    comparison.dbcVariable.value = v5;
    EXPECT_EQ(requestName(comparison), QString()) << "what could be added is not compared yet";
    ComparisonEntry entry;
    entry.column[ComparisonEntry::Study] = u"QX2020"_s;
    entry.column[ComparisonEntry::Variable] = v6;
    comparison.lst_TrendVars = {entry, entry};
    EXPECT_EQ(requestName(comparison), u"QX2020 V6, … - Vergleich"_s);
    comparison.txtTitle = u"Vertrauen\r\nseit 1919"_s;
    EXPECT_EQ(requestName(comparison), u"Vertrauen seit 1919 - Vergleich"_s);
}
