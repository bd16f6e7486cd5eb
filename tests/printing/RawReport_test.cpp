#include "printing/RawReport.h"

#include "config/Options.h"
#include "printing/rawRequest.h"
#include "support/TestHome.h"

#include <QBuffer>
#include <QImage>
#include <QLoggingCategory>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

ReportRequest ofTable(const QString& raw) {
    ReportRequest request;
    request.LANGUAGE = 1;
    request.TableRawString = raw;
    return request;
}

ReportRequest ofGraph(const QString& raw) {
    ReportRequest request;
    request.LANGUAGE = 2;
    request.GraphRawString = raw;
    return request;
}

// Two columns of three rows; a cell has the mark that stands behind the cellTexts.
const QString cellTexts = u"\"Familie \"neu\"\";Xtab;S;;2;3;\"\";\"a<TableEnd>2;\";\"b\";\"x\";\"270\";\"12,5\";V3;"_s;
const QString sizes = u"2;3;1500;0;-1;-1;300;0;0;0;6;6;6;0;9;"_s;

ui::Printer printer(int paper, bool landscape, bool isDefault) {
    ui::Printer one;
    one.paper = paper;
    one.landscape = landscape;
    one.isDefault = isDefault;
    return one;
}

QByteArray jpeg() {
    QImage image(9, 7, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "jpeg");
    return bytes;
}

} // namespace

TEST(RawReport, ATableWhoseCellHasTheMarkIsReadToItsLastOne) {
    const TestHome home;
    ReportRequest request = ofTable(cellTexts + u"<TableEnd>"_s + sizes);
    RawReport report(request);
    ASSERT_EQ(report.open(), QString());
    EXPECT_EQ(report.outline().title, u"Familie"_s) << "up to the first quote, as everywhere";
    ASSERT_EQ(report.ready(), 1);
    ASSERT_EQ(report.blocks(0).size(), 1u);
    const TableBlock table = std::get<TableBlock>(report.blocks(0).front());
    EXPECT_EQ(table.table.Cell(0, 1), u"a<TableEnd>2;"_s);
    EXPECT_EQ(table.table.Cell(1, 2), u"12,5"_s);
    EXPECT_EQ(table.table.FixedRows, 2);
    EXPECT_EQ(table.table.FixedCols, 2);
    EXPECT_EQ(table.table.ColWidth(0), 1500);
    EXPECT_EQ(table.table.ColWidth(1), 0);
    EXPECT_EQ(table.table.RowHeight(2), 300);
    EXPECT_EQ(table.notes, (QStringList{u"Spaltenprozente"_s, u"Gewicht: V3"_s}));

    request.RawNotes = QStringList{u"Filter: V7=1 · Gewicht: V3"_s};
    RawReport withNotes(request);
    ASSERT_EQ(withNotes.open(), QString());
    EXPECT_EQ(std::get<TableBlock>(withNotes.blocks(0).front()).notes,
              (QStringList{u"Spaltenprozente"_s, u"Filter: V7=1 · Gewicht: V3"_s}))
        << "what the window says has the weight already";
}

TEST(RawReport, ATableCutAnywhereSaysWhatIsDamagedAndNeverShowsOtherNumbers) {
    const TestHome home;
    const QString raw = cellTexts + u"<TableEnd>"_s + sizes;
    const qsizetype whole = raw.size() - sizes.size();
    for (qsizetype length = 1; length < raw.size(); ++length) {
        RawReport report(ofTable(raw.left(length)));
        const QString reason = report.open();
        if (length < whole) {
            EXPECT_EQ(reason, u"Die Tabelle, die gedruckt werden soll, ist beschädigt."_s) << length;
            EXPECT_EQ(report.ready(), 0) << length;
            continue;
        }
        ASSERT_EQ(reason, QString()) << length;
        const TableBlock table = std::get<TableBlock>(report.blocks(0).front());
        EXPECT_EQ(table.table.Cell(1, 1), u"270"_s) << length;
        EXPECT_TRUE(table.notes.last().startsWith(u"Breiten und Ausrichtung"_s)) << length;
    }
}

TEST(RawReport, AGraphIsReadFieldByFieldAndCutAnywhereItSaysSo) {
    const TestHome home;
    const QString beside = u"\"A <GraphEnd> B\";2880;1440,5;\"1 <GraphEnd>\";"_s;
    const QString raw = beside + u"<GraphEnd>"_s + QString::fromLatin1(jpeg());
    ReportRequest request = ofGraph(raw);
    request.RawNotes = QStringList{u"Study: S1"_s};
    RawReport report(request);
    ASSERT_EQ(report.open(), QString());
    EXPECT_EQ(report.outline().title, u"A <GraphEnd> B"_s);
    const std::vector<Block> blocks = report.blocks(0);
    ASSERT_EQ(blocks.size(), 2u);
    const PictureBlock graph = std::get<PictureBlock>(blocks[0]);
    EXPECT_EQ(graph.bytes, jpeg());
    EXPECT_EQ(graph.size, QSizeF(2880, 1440.5));
    EXPECT_EQ(graph.explanation, u"1 <GraphEnd>"_s);
    EXPECT_EQ(std::get<TextBlock>(blocks[1]).runs.front().text, u"Study: S1"_s);

    QLoggingCategory::setFilterRules(u"qt.gui.imageio.jpeg=false"_s); // what Qt says of each
    for (qsizetype length = 1; length < raw.size(); ++length) {
        RawReport cut(ofGraph(raw.left(length)));
        EXPECT_EQ(cut.open(), u"Die Grafik, die gedruckt werden soll, ist beschädigt."_s) << length;
        EXPECT_EQ(cut.ready(), 0) << length;
    }
}

TEST(RawRequest, HasTheFieldsOfAWindowsOwnReportAndNoOthers) {
    const TestHome home;
    Options options;
    options.PrintPageNumberPosition = u"botmiddle"_s;
    options.PrintDatePosition = u"none"_s;
    options.ZoomFactor = 150;
    options.Landscape = true; // of other reports
    options.FontSize = 11;
    ReportRequest wanted;
    wanted.PageNumberLocation = 2;
    wanted.DateLocation = 7;
    wanted.TableFontName = u"Arial"_s;
    wanted.Orientation = 1;
    wanted.PaperSize = 8;
    wanted.TableZoom = wanted.GraphZoom = 1.5;
    wanted.LANGUAGE = 2;
    const std::vector<ui::Printer> printers = {printer(1, true, false), printer(8, false, true)};
    EXPECT_EQ(rawRequest(options, printers, 2), wanted);

    options.PrintPageNumberPosition = u"elsewhere"_s;
    options.PrintDatePosition = QString();
    wanted.PageNumberLocation = 6;
    wanted.DateLocation = 4;
    wanted.Orientation = 2;
    wanted.PaperSize = 1;
    wanted.LANGUAGE = 1;
    EXPECT_EQ(rawRequest(options, {printer(1, true, true)}, 1), wanted);
    for (const std::vector<ui::Printer>& none :
         {std::vector<ui::Printer>(), {printer(0, false, true)}, {printer(5, true, false)}}) {
        const ReportRequest request = rawRequest(options, none, 1);
        EXPECT_TRUE(request.PaperSize == 1 || request.PaperSize == 9) << request.PaperSize;
        EXPECT_EQ(request.Orientation, 1);
    }
}
