#include "VdxRunner.h"

#include "support/PrintQt.h"
#include "support/TestCatalogue.h"
#include <QDir>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class DescriptivesCommands : public VdxArchive {
protected:
    VdxResult run(const QString& variables, const QStringList& options) const {
        return runVdx(QStringList{u"descriptives"_s, catalogue_, u"QX1919"_s} + variables.split(u' ') + options +
                      QStringList{u"--data"_s, data_, u"--language"_s, u"de"_s, u"--decimal"_s, u"comma"_s,
                                  u"--format"_s, u"csv"_s, u"--plain"_s});
    }
};

const QString surveyData = QStringLiteral(VARIDEX_SOURCE_ROOT "/../shared/data");

/// A table of the other program: its comment lines and its rows by column name.
struct OtherTable {
    QHash<QString, QString> facts;
    std::vector<QHash<QString, QString>> rows;
};

OtherTable readOther(const QString& path) {
    OtherTable table;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QStringList header;
    for (const QString& line : QString::fromUtf8(file.readAll()).remove(u'\r').split(u'\n', Qt::SkipEmptyParts)) {
        if (line.startsWith(u"# ")) {
            const qsizetype colon = line.indexOf(u':');
            table.facts.insert(line.mid(2, colon - 2), line.mid(colon + 1).trimmed());
        } else if (header.isEmpty()) {
            header = line.split(u',');
        } else {
            const QStringList cells = line.split(u',');
            QHash<QString, QString> row;
            for (qsizetype i = 0; i < cells.size(); ++i)
                row.insert(header.value(i), cells[i]);
            table.rows.push_back(row);
        }
    }
    return table;
}

/// Our table for the same request: first column (group, or "" without groups), title, number.
QHash<QString, QHash<QString, double>> ours(const QString& catalogue, const QString& study, const OtherTable& other,
                                            const QStringList& more) {
    QStringList arguments{u"descriptives"_s, catalogue, study};
    arguments << more << QStringList{u"--statistics"_s, u"all"_s,       u"--digits"_s, u"13"_s,         u"--format"_s,
                                     u"json"_s,         u"--decimal"_s, u"point"_s,    u"--language"_s, u"de"_s};
    QStringList conditions;
    if (!other.facts[u"filter"_s].isEmpty())
        conditions << other.facts[u"filter"_s];
    if (other.facts[u"weight"_s] != u"OFF") {
        arguments << u"--weight"_s << other.facts[u"weight"_s];
        conditions << other.facts[u"weight"_s] + u">0"_s; // the other program leaves these cases out
    }
    if (!conditions.isEmpty())
        arguments << u"--filter"_s << u'(' + conditions.join(u") AND ("_s) + u')';
    const VdxResult run = runVdx(arguments);
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    QHash<QString, QHash<QString, double>> numbers;
    const QJsonArray cells = QJsonDocument::fromJson(run.out.toUtf8()).object()[u"cells"_s].toArray();
    const QJsonArray titles = cells[0].toArray();
    const bool grouped = titles[1].toString() != u"Statistik";
    for (qsizetype i = 1; i < cells.size(); ++i) {
        const QJsonArray row = cells[i].toArray();
        if (!grouped)
            numbers[QString()][row[1].toString()] = row[2].toString().toDouble();
        for (qsizetype column = 1; grouped && column < row.size(); ++column)
            if (!row[column].toString().isEmpty())
                numbers[row[0].toString()][titles[column].toString()] = row[column].toString().toDouble();
    }
    return numbers;
}

/// Twelve digits stand in the other program's tables.
void expectTwelveDigits(double number, const QString& other, const std::string& what) {
    const double expected = other.toDouble();
    EXPECT_NEAR(number, expected, 1e-11 * std::fabs(expected) + 1e-12) << what;
}

/// The sample's corrected forms, which other programs print, from the plain ones.
double correctedSkewness(double skewness, double n) {
    return std::sqrt(n * (n - 1)) / (n - 2) * skewness;
}
double correctedKurtosis(double kurtosis, double n) {
    return (n - 1) / ((n - 2) * (n - 3)) * ((n + 1) * (kurtosis - 3) + 6);
}

void compareStatistics(const QHash<QString, double>& our, const QHash<QString, QString>& other, bool weighted,
                       const std::string& what) {
    const std::pair<QString, QString> same[] = {{u"ArithmeticMean"_s, u"mean"_s},
                                                {u"StandardDeviation"_s, u"std_dev"_s},
                                                {u"StandardDeviation"_s, u"std_deviation"_s},
                                                {u"Variance"_s, u"variance"_s},
                                                {u"Range"_s, u"range"_s},
                                                {u"Minimum"_s, u"minimum"_s},
                                                {u"Maximum"_s, u"maximum"_s},
                                                {u"Sum"_s, u"sum"_s}};
    for (const auto& [title, column] : same)
        if (other.contains(column)) {
            ASSERT_TRUE(our.contains(title)) << what << title.toStdString();
            expectTwelveDigits(our[title], other[column], what + column.toStdString());
        }
    ASSERT_TRUE(other.contains(u"sum"_s));
    const double n = our[u"ValidN"_s];
    if (other.contains(u"kurtosis"_s)) {
        expectTwelveDigits(n, other[u"n"_s], what + "n");
        if (!weighted) {
            expectTwelveDigits(correctedSkewness(our[u"Skewness"_s], n), other[u"skewness"_s], what + "skewness");
            expectTwelveDigits(correctedKurtosis(our[u"Kurtosis"_s], n), other[u"kurtosis"_s], what + "kurtosis");
        }
    } else {
        // Group sizes are rounded there where they are weighted.
        expectTwelveDigits(n, QString::number(other[u"sum"_s].toDouble() / other[u"mean"_s].toDouble(), 'g', 17),
                           what + "n");
    }
}

} // namespace

TEST_F(DescriptivesCommands, printWhatIsChosen) {
    // V5: 1 1 2 2 valid, 9 missing, one Null.
    EXPECT_EQ(run(u"V5"_s, {}).out, u";Statistik;Wert\r\n;Count;6,00\r\n;Minimum;1,00\r\n;Maximum;2,00\r\n"
                                    ";ArithmeticMean;1,50\r\n;StandardDeviation;0,58\r\n;ValidN;4,00\r\n"_s);
    EXPECT_EQ(run(u"V5"_s, {u"--statistics"_s, u"validn,Quartiles, arithmetic mean"_s, u"--digits"_s, u"0;0;0;3;0;1"_s,
                            u"--missing"_s, u"none"_s})
                  .out,
              // With the 9 there are five: p = 1.5 and 4.5.
              u";Statistik;Wert\r\n;ArithmeticMean;3,000\r\n;ValidN;5,0\r\n;25%-Percentile;1\r\n"
              ";50%-Percentile;2\r\n;75%-Percentile;6\r\n"_s);
    // V3 is 0.5 1.2 1.0 where V7 is 1, and 1.5 0.8 1.0 where it is 2.
    EXPECT_EQ(run(u"V3"_s, {u"--by"_s, u"V7"_s, u"--statistics"_s, u"Count,Sum"_s, u"--digits"_s, u"1"_s}).out,
              u"V7;Count;Sum\r\n1;3,0;2,7\r\n2;3,0;3,3\r\n"_s);
    const VdxResult text = run(u"V8 V7"_s, {u"--statistics"_s, u"Maximum"_s, u"--weight"_s, u"re"_s, u"--sql"_s});
    EXPECT_EQ(text.out, u";Statistik;Wert\r\n;;Descriptives nur für numerische Felder\r\n\r\n"
                        ";Statistik;Wert\r\n;Maximum;2,00\r\n"_s);
    EXPECT_TRUE(text.err.contains(u"counts: SELECT q.*, QX1919_1.V7 AS VAR  FROM (q INNER JOIN QX1919_1 ON q.ID = "
                                  "QX1919_1.dt_CaseID)\n"_s));
}

TEST_F(DescriptivesCommands, goOnBehindAStatisticThatCannotBeComputed) {
    const VdxResult result =
        run(u"V5"_s, {u"--filter"_s, u"V9=31"_s, u"--statistics"_s, u"StandardDeviation,Sum"_s, u"--digits"_s, u"0"_s});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, u";Statistik;Wert\r\n;StandardDeviation;\r\n;Sum;1\r\n"_s);
    EXPECT_EQ(result.err,
              u"V5, StandardDeviation ist nicht zu berechnen (11 Division by zero), die Zelle bleibt leer.\n"_s);
    EXPECT_EQ(run(u"V5"_s, {u"--by"_s, u"V9"_s, u"--statistics"_s, u"Variance"_s}).err.count(u"Division by zero"_s), 4);
    const VdxResult weight = run(u"V5"_s, {u"--weight"_s, u"V8"_s, u"--statistics"_s, u"Count"_s});
    EXPECT_EQ(weight.out, u";Statistik;Wert\r\n;Count;\r\n"_s);
    EXPECT_TRUE(weight.err.contains(u"V5, Count ist nicht zu berechnen (13 Type mismatch)"_s))
        << weight.err.toStdString();
}

TEST_F(DescriptivesCommands, refuseWhatTheyDontKnow) {
    const std::pair<QStringList, QString> wrong[] = {
        {{u"--statistics"_s, u"Count,Modus"_s}, u"--statistics Modus: Eine Statistik dieses Namens gibt es nicht"_s},
        {{u"--digits"_s, u"x"_s}, u"--digits x:"_s},
        {{u"--digits"_s, u"2;16"_s}, u"--digits 2;16:"_s},
        {{u"--digits"_s, u"1;1;1;1;1;1;1;1;1;1;1;1;1;1;1"_s}, u"--digits 1;1"_s},
    };
    for (const auto& [options, words] : wrong) {
        const VdxResult result = run(u"V5"_s, options);
        EXPECT_EQ(result.status, 2);
        EXPECT_TRUE(result.err.contains(words)) << result.err.toStdString();
    }
    EXPECT_EQ(run(u"V5"_s, {u"--by"_s, u"V99"_s}).status, 1);
    const VdxResult second = run(u"V5 V99"_s, {});
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.out, u""_s);
    EXPECT_EQ(second.err, u"Variable V99 nicht gefunden in Studie QX1919.\n"_s);
}

TEST(IndependentResults, statisticsOfRealFilesAgreeWithPspp) {
    const QDir results(surveyData + u"/results"_s);
    if (!results.exists())
        GTEST_SKIP() << "the folder of survey files is not here";
    const VdxHome home;
    int compared = 0;
    for (const QString& name : results.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString catalogue = home.path(u"survey.mdb"_s);
        const QString study = u"S"_s + QString(name).remove(u'_');
        const VdxResult import = runVdx({u"import"_s, catalogue, surveyData + u"/sav/"_s + name + u".sav"_s,
                                         u"--study"_s, study, u"--language"_s, u"de"_s});
        ASSERT_EQ(import.status, 0) << import.err.toStdString();
        const QDir folder(results.filePath(name));
        for (const QString& file : folder.entryList({u"desc_*.csv"_s, u"means_*.csv"_s})) {
            SCOPED_TRACE((name + u'/' + file).toStdString());
            const OtherTable other = readOther(folder.filePath(file));
            const bool weighted = other.facts[u"weight"_s] != u"OFF";
            if (file.startsWith(u"desc_")) {
                for (const auto& row : other.rows) {
                    const QString variable = row[u"variable"_s];
                    compareStatistics(ours(catalogue, study, other, {variable})[QString()], row, weighted,
                                      variable.toStdString() + ' ');
                    ++compared;
                }
                continue;
            }
            const auto groups =
                ours(catalogue, study, other, {other.facts[u"dependent"_s], u"--by"_s, other.facts[u"by"_s]});
            for (const auto& row : other.rows) {
                if (row[u"group"_s] == u"Total")
                    continue;
                compareStatistics(groups[row[u"group"_s]], row, weighted, row[u"group"_s].toStdString() + ' ');
                ++compared;
            }
        }
    }
    EXPECT_GT(compared, 100);
}
