#include "analysis/result/titles.h"

#include "app/globals.h"
#include "config/Options.h"
#include "language/SystemDatabase.h"
#include "language/mdLanguage.h"
#include "support/TestHome.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

ResultTable tableOf(const QStringList& rows) {
    ResultTable table;
    table.setRows(static_cast<int>(rows.size()));
    table.setCols(static_cast<int>(rows.front().split(u'|').size()));
    for (int row = 0; row < table.Rows(); ++row) {
        const QStringList cells = rows[row].split(u'|');
        for (int column = 0; column < table.Cols(); ++column)
            table.setCell(column, row, cells[column]);
    }
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

TEST(Titles, TakeTheNFromTheRowWithItsLabelOrLeaveItOut) {
    const TestHome home;
    const ResultTable plain = tableOf({u"h|h|h|h"_s, u"1|Summe||3"_s, u"|Summe||5"_s, u"|Gültige Fälle||4"_s});
    const ResultTable separate =
        tableOf({u"h|h|h|h"_s, u"1|ja||3"_s, u"|Summe||5"_s, u"|||"_s, u"|Gültige Fälle||4"_s});
    const ResultTable cutShort = tableOf({u"h|h|h|h"_s, u"1|Gültige Fälle||3"_s, u"2|Summe||7"_s, u"|||"_s});
    const ResultTable crosstab = tableOf({u"|V6||1|Summe|Gült. Summe"_s, u"V5|||||"_s, u"||Missing|||"_s,
                                          u"1|||3|3|2"_s, u"Summe|||3|8|6"_s, u"Gült. Summe|||2|6|5"_s});
    const ResultTable withoutValid =
        tableOf({u"|V6||1|Summe"_s, u"V5||||"_s, u"||Missing||"_s, u"1|||3|3"_s, u"Summe|||3|8"_s});
    const ResultTable counted = tableOf({u"|Statistik|Wert"_s, u"|Count|1200"_s, u"|Minimum|1"_s});
    const ResultTable uncounted = tableOf({u"|Statistik|Wert"_s, u"|Minimum|1"_s, u"|Maximum|5"_s});
    const ResultTable countAlone = tableOf({u"|Statistik|Wert"_s, u"|Count|1200"_s});

    const QString base = u"QX1919, V5: Zufriedenheit"_s;
    const QString both = base + u" nach V6: Vertrauen"_s;
    struct Case {
        AnalysisMode mode;
        const ResultTable& table;
        bool withMissing;
        QString title;
    };
    const std::vector<Case> cases{
        {AnalysisMode::Frequency, plain, false, base + u" (N=4)"_s},
        {AnalysisMode::Frequency, plain, true, base + u" (N=5)"_s},
        {AnalysisMode::Frequency, separate, false, base + u" (N=4)"_s},
        {AnalysisMode::Frequency, separate, true, base + u" (N=5)"_s},
        {AnalysisMode::Frequency, cutShort, false, base},
        {AnalysisMode::Frequency, cutShort, true, base},
        {AnalysisMode::Crosstab, crosstab, false, both + u" (N=5)"_s},
        {AnalysisMode::Crosstab, crosstab, true, both + u" (N=8)"_s},
        {AnalysisMode::Crosstab, withoutValid, false, both},
        {AnalysisMode::Crosstab, withoutValid, true, both + u" (N=8)"_s},
        {AnalysisMode::Descriptives, counted, false, base + u" (N=1200)"_s},
        {AnalysisMode::Descriptives, uncounted, true, base},
        {AnalysisMode::Descriptives, countAlone, false, base},
    };
    for (const Case& c : cases) {
        Options options;
        options.IncludeMissing = options.IncludeMissingInPercentXTab = c.withMissing;
        EXPECT_EQ(resultTitle(requestOf(c.mode), c.table, options).toStdString(), c.title.toStdString());
    }
    AnalysisRequest percent = requestOf(AnalysisMode::Crosstab);
    percent.cbValues = 1;
    EXPECT_EQ(resultTitle(percent, crosstab, {}), both);
    AnalysisRequest groups = requestOf(AnalysisMode::Descriptives);
    groups.chkDescGroup = true;
    EXPECT_EQ(resultTitle(groups, counted, {}), both);
}

TEST(Titles, TellWeightAndFilter) {
    const TestHome home;
    const ResultTable table = tableOf({u"h|h|h|h"_s, u"|Summe||5"_s, u"|Gültige Fälle||4"_s});
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
    const ResultTable table = tableOf({u"Value|Label|Missing|Count"_s, u"|Sum||5"_s, u"|Valid cases||4"_s});
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
