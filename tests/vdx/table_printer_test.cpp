#include "platform/system/NumberFormat.h"
#include "tables/ResultTable.h"
#include "tables/tableText.h"
#include "vdx/TablePrinter.h"

#include <QTemporaryFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

ResultTable smallTable() {
    ResultTable table;
    table.Tag = TableKind::Frequency;
    table.setRows(3);
    table.setCols(3);
    table.FixedRows = 1;
    table.FixedCols = 1;
    const QString cells[3][3] = {{u"Wert"_s, u"Ausprägung"_s, u"Anzahl"_s},
                                 {u"1"_s, u"Ja, \"gern\""_s, u"12"_s},
                                 {QString(), u"日本\nzwei"_s, u"3"_s}};
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            table.setCell(c, r, cells[r][c]);
    return table;
}

QString printed(TablePrinter::Format format, int times, bool plain = true, const QStringList& lines = {},
                const QJsonObject& facts = {}) {
    std::FILE* file = std::tmpfile();
    TablePrinter printer(format, file, plain);
    for (int i = 0; i < times; ++i)
        printer.print(u"Titel \"A\""_s, smallTable(), lines, facts);
    EXPECT_TRUE(printer.finish());
    std::rewind(file);
    QByteArray bytes(10000, '\0');
    bytes.resize(static_cast<qsizetype>(std::fread(bytes.data(), 1, 10000, file)));
    std::fclose(file);
    return QString::fromUtf8(bytes);
}

} // namespace

TEST(TablePrinter, csvQuotesWhatRfc4180QuotesAndPartsTablesByAnEmptyLine) {
    NumberFormat::setDecimalSeparator(u'.');
    const QString table = u"Wert,Ausprägung,Anzahl\r\n1,\"Ja, \"\"gern\"\"\",12\r\n,\"日本\nzwei\",3\r\n"_s;
    EXPECT_EQ(printed(TablePrinter::Format::Csv, 2), table + u"\r\n"_s + table);
    NumberFormat::setDecimalSeparator(u',');
    EXPECT_EQ(printed(TablePrinter::Format::Csv, 1),
              u"Wert;Ausprägung;Anzahl\r\n1;\"Ja, \"\"gern\"\"\";12\r\n;\"日本\nzwei\";3\r\n"_s);
}

TEST(TablePrinter, whatATableSaysOfItselfStandsBehindItsCellsUnlessTheyAreWantedAlone) {
    NumberFormat::setDecimalSeparator(u',');
    const QStringList lines{u"Studie: A; \"B\"\r\nC"_s, u"N = 3"_s};
    const QString csv = printed(TablePrinter::Format::Csv, 1, false, lines);
    EXPECT_TRUE(csv.endsWith(u";3\r\n# Titel \"A\"\r\n# Studie: A; \"B\" C\r\n# N = 3\r\n"_s)) << csv.toStdString();
    EXPECT_FALSE(printed(TablePrinter::Format::Csv, 1, true, lines).contains(u'#'));
    EXPECT_TRUE(printed(TablePrinter::Format::Text, 1, false, lines).endsWith(u"3\n\nStudie: A; \"B\"  C\nN = 3\n"_s));
    EXPECT_TRUE(printed(TablePrinter::Format::Text, 1, true, lines).endsWith(u"3\n"_s));
    EXPECT_TRUE(printed(TablePrinter::Format::Json, 1, true, {}, {{u"n"_s, 3}}).contains(u"\"facts\":{\"n\":3},"_s));
}

/// A reader told of comments must not take a label for one, and a spreadsheet must not compute one.
TEST(TablePrinter, csvQuotesTheSignOfACommentAndFormulasOfStrangersAreTexts) {
    NumberFormat::setDecimalSeparator(u',');
    struct Case {
        QString cell, program, spreadsheet;
    };
    for (const Case& c : {Case{u"#1"_s, u"\"#1\""_s, u"\"#1\""_s},
                          {u"a;b"_s, u"\"a;b\""_s, u"\"a;b\""_s},
                          {u"a,b"_s, u"a,b"_s, u"a,b"_s},
                          {u"=1+1"_s, u"=1+1"_s, u"'=1+1"_s},
                          {u"@SUM(A1;A2)"_s, u"\"@SUM(A1;A2)\""_s, u"\"'@SUM(A1;A2)\""_s},
                          {u"-weiß nicht-"_s, u"-weiß nicht-"_s, u"'-weiß nicht-"_s},
                          {u"-9"_s, u"-9"_s, u"-9"_s},
                          {u"-12,5%"_s, u"-12,5%"_s, u"-12,5%"_s}}) {
        EXPECT_EQ(csvCell(c.cell), c.program);
        EXPECT_EQ(csvCell(c.cell, CsvReader::Spreadsheet), c.spreadsheet);
    }
}

TEST(TablePrinter, jsonIsOneObjectALine) {
    const QString object =
        u"{\"cells\":[[\"Wert\",\"Ausprägung\",\"Anzahl\"],[\"1\",\"Ja, "
        u"\\\"gern\\\"\",\"12\"],[\"\",\"日本\\nzwei\",\"3\"]],"
        u"\"columns\":3,\"fixedColumns\":1,\"fixedRows\":1,\"rows\":3,\"tag\":\"Frequency\",\"title\":\"Titel \\\"A\\\"\"}\n"_s;
    EXPECT_EQ(printed(TablePrinter::Format::Json, 2), object + object);
}

TEST(TablePrinter, textAlignsColumnsByWhatATerminalShows) {
    EXPECT_EQ(printed(TablePrinter::Format::Text, 1), u"Titel \"A\"\n\n"
                                                      u"Wert  Ausprägung  Anzahl\n"
                                                      u"------------------------\n"
                                                      u"   1  Ja, \"gern\"      12\n"
                                                      u"      日本 zwei        3\n"_s);
}

TEST(TablePrinter, aFullDiskIsNoticed) {
    std::FILE* full = std::fopen("/dev/full", "w");
    if (!full)
        GTEST_SKIP() << "no device that is full";
    TablePrinter printer(TablePrinter::Format::Csv, full);
    printer.print(u"T"_s, smallTable());
    EXPECT_FALSE(printer.finish());
    std::fclose(full);
}
