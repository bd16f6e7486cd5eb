#include "VdxRunner.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// Frequency tables of real survey files, compared with what PSPP counts in them. The other program knows no rounding of
// counts, so its exact counts are rounded here by the rule of the table: percentages rest on counts rounded per cell.

namespace {

const QString sharedData = QStringLiteral(VARIDEX_SOURCE_ROOT "/../shared/data");

struct Expected {
    QString kind, value, label;
    double count;
};

struct ExpectedTable {
    QHash<QString, QString> facts; // of the comment lines
    std::vector<Expected> rows;
};

QStringList csvFields(const QString& line) {
    QStringList fields(QString{});
    bool quoted = false;
    for (QChar c : line) {
        if (c == u'"')
            quoted = !quoted;
        else if (c == u',' && !quoted)
            fields << QString();
        else
            fields.last() += c;
    }
    return fields;
}

ExpectedTable readExpected(const QString& path) {
    ExpectedTable table;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        if (line.startsWith(u"# ")) {
            const qsizetype colon = line.indexOf(u':');
            table.facts.insert(line.mid(2, colon - 2), line.mid(colon + 1).trimmed());
        } else if (!line.startsWith(u"kind,")) {
            const QStringList fields = csvFields(line);
            table.rows.push_back({fields[0], fields[1], fields[2], fields[3].toDouble()});
        }
    }
    return table;
}

// A text variable with "." declared missing, which no definition can express: it is taken in as numbers.
const QString encodedVariable = u"edu"_s;

/// The number of a code of that variable; "." stands before "1" to "5", whether labelled or not.
QString encoded(const QString& code) {
    return code == u"." ? u"1"_s : QString::number(code.toInt() + 1);
}

/// Takes one of the real files in. @return what is said when that fails
QString import(const QString& catalogue, const QString& name, const QString& study) {
    QStringList words{u"import"_s, catalogue, sharedData + u"/sav/"_s + name + u".sav"_s, u"--study"_s, study};
    if (name == u"panem_pss_de")
        words << u"--encode="_s + encodedVariable;
    const VdxResult result = runVdx(words);
    return result.status == 0 ? QString() : u"%1 %2"_s.arg(result.status).arg(result.err);
}

bool sameValue(const QString& ours, const QString& theirs) {
    bool a = false, b = false;
    const double x = ours.toDouble(&a), y = theirs.toDouble(&b);
    return a && b ? std::fabs(x - y) <= 1e-9 * std::max(1.0, std::fabs(y)) : ours == theirs;
}

QString rounded(double count) {
    return QString::number(std::floor(count + 0.5), 'f', 0);
}

/// A share of whole numbers in percent with one decimal, half away from zero, in whole-number arithmetic.
QString oneDecimal(const QString& count, double base) {
    const auto n = count.toLongLong();
    const auto all = static_cast<qint64>(base);
    const qint64 tenths = (2000 * n + all) / (2 * all);
    return QString::number(tenths / 10) + u'.' + QString::number(tenths % 10);
}

/// The options that ask for what the other program was asked for.
QStringList optionsOf(const QHash<QString, QString>& facts) {
    QStringList options{u"--format"_s, u"json"_s, u"--decimal"_s, u"point"_s, u"--language"_s, u"de"_s};
    QStringList conditions;
    if (!facts[u"filter"_s].isEmpty())
        conditions << facts[u"filter"_s];
    const QString weight = facts[u"weight"_s];
    if (weight != u"OFF") {
        options << u"--weight"_s << weight;
        conditions << weight + u">0"_s; // the other program leaves these cases out
    }
    if (!conditions.isEmpty())
        options << u"--filter"_s << u'(' + conditions.join(u") AND ("_s) + u')';
    return options;
}

void compare(const ExpectedTable& expected, const QJsonObject& table) {
    const QJsonArray cells = table[u"cells"_s].toArray();
    const bool weighted = expected.facts[u"weight"_s] != u"OFF";
    double roundedTotal = 0, roundedValid = 0;
    // The base of the percentages: the displayed total, and the displayed counts of the valid rows.
    for (const Expected& row : expected.rows) {
        if (row.kind == u"total")
            roundedTotal = rounded(row.count).toDouble();
        if (row.kind == u"valid")
            roundedValid += rounded(row.count).toDouble();
    }
    int matched = 0;
    for (const Expected& row : expected.rows) {
        if (row.kind == u"total" || (weighted && row.count == 0))
            continue;
        const bool sysmis = row.kind == u"sysmis";
        bool found = false;
        for (const auto& cellRow : cells) {
            const QJsonArray cell = cellRow.toArray();
            if (cell[1].toString() == u"Summe" || cell[1].toString() == u"Gültige Fälle")
                break;
            if (sysmis ? cell[1].toString() != u"SYSMIS" : !sameValue(cell[0].toString(), row.value))
                continue;
            found = true;
            ++matched;
            const std::string what = row.kind.toStdString() + " " + row.value.toStdString();
            EXPECT_EQ(cell[2].toString() == u"X", row.kind != u"valid") << what;
            EXPECT_EQ(cell[3].toString(), rounded(row.count)) << what;
            EXPECT_EQ(cell[4].toString(), oneDecimal(rounded(row.count), roundedTotal)) << what;
            if (row.kind == u"valid") {
                EXPECT_EQ(cell[5].toString(), oneDecimal(rounded(row.count), roundedValid)) << what;
            }
            bool number = false;
            row.value.toDouble(&number);
            if (number) { // labels of text values are not looked up
                EXPECT_EQ(cell[1].toString(), row.label) << what;
            }
        }
        EXPECT_TRUE(found) << row.kind.toStdString() << " " << row.value.toStdString();
    }
    // Nothing beyond what the other program lists: header, rows, sum, blank, valid.
    EXPECT_EQ(cells.size(), matched + 4);
}

} // namespace

TEST(IndependentResults, frequenciesOfRealFilesAgreeWithPspp) {
    const QDir results(sharedData + u"/results"_s);
    if (!results.exists())
        GTEST_SKIP() << "the folder of survey files is not here";
    const VdxHome home;
    int tables = 0;
    for (const QString& name : results.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString catalogue = home.path(u"survey.mdb"_s);
        const QString study = u"S"_s + QString(name).remove(u'_');
        ASSERT_EQ(import(catalogue, name, study), QString());
        const QDir folder(results.filePath(name));
        for (const QString& file : folder.entryList({u"freq_*.csv"_s})) {
            SCOPED_TRACE((name + u'/' + file).toStdString());
            ExpectedTable expected = readExpected(folder.filePath(file));
            if (expected.facts[u"variable"_s] == encodedVariable)
                for (Expected& row : expected.rows) {
                    row.label = (row.value + u' ' + row.label).trimmed();
                    row.value = encoded(row.value);
                }
            const VdxResult run = runVdx(QStringList{u"frequency"_s, catalogue, study, expected.facts[u"variable"_s]} +
                                         optionsOf(expected.facts));
            ASSERT_EQ(run.status, 0) << run.err.toStdString();
            compare(expected, QJsonDocument::fromJson(run.out.toUtf8()).object());
            ++tables;
        }
    }
    EXPECT_EQ(tables, 80);
}

namespace {

struct ExpectedCell {
    QString row, column;
    double count = 0; // rounded
};

struct ExpectedCrosstab {
    QHash<QString, QString> facts;
    std::vector<ExpectedCell> cells; // without sums
    QHash<QString, double> rowSums, columnSums;
    double sum = 0;
};

ExpectedCrosstab readExpectedCrosstab(const QString& path) {
    ExpectedCrosstab table;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        const qsizetype colon = line.indexOf(u':');
        const QStringList fields = csvFields(line);
        if (line.startsWith(u"# ")) {
            table.facts.insert(line.mid(2, colon - 2), line.mid(colon + 1).trimmed());
        } else if (fields[0] != u"row" && fields[0] != u"Total" && fields[2] != u"Total") {
            const double count = rounded(fields[4].toDouble()).toDouble();
            const QString column = table.facts[u"columns"_s] == encodedVariable ? encoded(fields[2]) : fields[2];
            table.cells.push_back({fields[0], column, count});
            table.rowSums[fields[0]] += count;
            table.columnSums[column] += count;
            table.sum += count;
        }
    }
    return table;
}

/// Position of a value on an axis that is not marked as missing, -1 without.
template<class CellAt>
int positionOf(const QString& value, int count, CellAt&& cellAt) {
    for (int i = 3; i < count; ++i)
        if (cellAt(i, 2) != u"X" && sameValue(cellAt(i, 0), value))
            return i;
    return -1;
}

/// @param percentages of the columns, rows and of all
void compare(const ExpectedCrosstab& expected, const QJsonObject& absolute,
             const std::vector<QJsonObject>& percentages) {
    const auto at = [](const QJsonObject& table, int column, int row) {
        return table[u"cells"_s].toArray()[row].toArray()[column].toString();
    };
    const auto find = [&](const QJsonObject& table, const ExpectedCell& cell) {
        return std::pair{
            positionOf(cell.column, table[u"columns"_s].toInt(), [&](int i, int k) { return at(table, i, k); }),
            positionOf(cell.row, table[u"rows"_s].toInt(), [&](int i, int k) { return at(table, k, i); })};
    };
    double found = 0;
    for (const ExpectedCell& cell : expected.cells) {
        if (cell.count == 0)
            continue;
        const std::string what = (cell.row + u" by "_s + cell.column).toStdString();
        const auto [column, row] = find(absolute, cell);
        ASSERT_TRUE(column > 0 && row > 0) << what;
        EXPECT_EQ(at(absolute, column, row).toDouble(), cell.count) << what;
        found += at(absolute, column, row).toDouble();
        const double bases[] = {expected.columnSums[cell.column], expected.rowSums[cell.row], expected.sum};
        for (size_t view = 0; view < 3; ++view) {
            const auto [c, r] = find(percentages[view], cell);
            ASSERT_TRUE(c > 0 && r > 0) << what;
            EXPECT_EQ(at(percentages[view], c, r), oneDecimal(QString::number(cell.count, 'f', 0), bases[view]))
                << what;
        }
    }
    // Nothing beyond what the other program counts.
    EXPECT_EQ(found, at(absolute, absolute[u"columns"_s].toInt() - 1, absolute[u"rows"_s].toInt() - 1).toDouble());
}

} // namespace

TEST(IndependentResults, crosstabsOfRealFilesAgreeWithPspp) {
    const QDir results(sharedData + u"/results"_s);
    if (!results.exists())
        GTEST_SKIP() << "the folder of survey files is not here";
    const VdxHome home;
    int tables = 0;
    for (const QString& name : results.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString catalogue = home.path(u"survey.mdb"_s);
        const QString study = u"S"_s + QString(name).remove(u'_');
        ASSERT_EQ(import(catalogue, name, study), QString());
        const QDir folder(results.filePath(name));
        for (const QString& file : folder.entryList({u"xtab_*.csv"_s})) {
            SCOPED_TRACE((name + u'/' + file).toStdString());
            const ExpectedCrosstab expected = readExpectedCrosstab(folder.filePath(file));
            ASSERT_NE(expected.facts[u"rows"_s], encodedVariable);
            const VdxResult run = runVdx(QStringList{u"crosstab"_s, catalogue, study, expected.facts[u"rows"_s],
                                                     expected.facts[u"columns"_s], u"--show"_s, u"all"_s, u"--set"_s,
                                                     u"ShowPercentSign=0"_s} +
                                         optionsOf(expected.facts));
            ASSERT_EQ(run.status, 0) << run.err.toStdString();
            std::vector<QJsonObject> views;
            for (const QString& line : run.out.split(u'\n', Qt::SkipEmptyParts))
                views.push_back(QJsonDocument::fromJson(line.toUtf8()).object());
            ASSERT_EQ(views.size(), 4u);
            compare(expected, views[0], {views.begin() + 1, views.end()});
            ++tables;
        }
    }
    EXPECT_EQ(tables, 28);
}
