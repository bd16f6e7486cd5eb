#include "tables/ResultTable.h"
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

QString printed(TablePrinter::Format format, int times) {
    std::FILE* file = std::tmpfile();
    TablePrinter printer(format, file);
    for (int i = 0; i < times; ++i)
        printer.print(u"Titel \"A\""_s, smallTable());
    EXPECT_TRUE(printer.finish());
    std::rewind(file);
    QByteArray bytes(10000, '\0');
    bytes.resize(static_cast<qsizetype>(std::fread(bytes.data(), 1, 10000, file)));
    std::fclose(file);
    return QString::fromUtf8(bytes);
}

} // namespace

TEST(TablePrinter, csvQuotesWhatRfc4180QuotesAndPartsTablesByAnEmptyLine) {
    const QString table = u"Wert,Ausprägung,Anzahl\r\n1,\"Ja, \"\"gern\"\"\",12\r\n,\"日本\nzwei\",3\r\n"_s;
    EXPECT_EQ(printed(TablePrinter::Format::Csv, 2), table + u"\r\n"_s + table);
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
