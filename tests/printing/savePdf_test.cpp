#include "printing/ReportPages.h"
#include "printing/outlets.h"
#include "printing/toUnicode.h"

#include "platform/system/wholeFile.h"
#include "support/FullDisk.h"
#include "support/Poppler.h"
#include "support/TestHome.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QSysInfo>
#include <QTextLayout>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QSizeF a4Landscape(297 * twipsPerMillimetre, 210 * twipsPerMillimetre);

ReportPage::Line lineOf(const QString& text, const QPointF& at) {
    QFont font(u"Arial"_s);
    font.setPixelSize(220);
    auto laid = std::make_shared<QTextLayout>(text, font);
    laid->beginLayout();
    laid->createLine().setLineWidth(12000);
    laid->endLayout();
    return {laid, 0, at};
}

/// A report of one entry a page, behind a page of contents with a link to each.
struct MadeReport {
    ReportOutline outline;
    PageSetup setup;
    QStringList texts; ///< of the entries' pages
    int firstNumber = 1;

    explicit MadeReport(int entries = 0) {
        setup.page = a4Landscape;
        outline.title = u"Bericht"_s;
        for (int i = 0; i < entries; ++i)
            add({ReportEntry::Kind::Variable, 0, u"V%1"_s.arg(i), u"Frage %1"_s.arg(i)}, u"Text %1"_s.arg(i));
    }
    void add(const ReportEntry& entry, const QString& text = u"x"_s) {
        outline.entries.push_back(entry);
        texts << text;
    }
    double headingAt(int entry) const { return 1000 + 97 * (entry % 90); }
    ReportPage page(int index) const {
        ReportPage page;
        page.size = setup.page;
        if (index > 0) {
            page.pieces.push_back(lineOf(texts.at(index - 1), {1000, headingAt(index - 1)}));
            page.anchors.push_back({index - 1, headingAt(index - 1)});
        }
        for (int i = 0; index == 0 && i < texts.size(); ++i) {
            const double y = 600 + 300 * i;
            page.pieces.push_back(lineOf(u"nach %1"_s.arg(i), {1000, y}));
            page.links.push_back({QRectF(1000, y, 1500, 280), i});
        }
        return page;
    }
    ReportPages pages() const {
        return {outline, setup, static_cast<int>(texts.size()) + 1, [this](int i) { return page(i); },
                [this](int i) { return firstNumber + i; }};
    }
    /// @return the file
    QString save(const TestHome& home) const {
        const QString file = home.path(u"report.pdf"_s);
        EXPECT_EQ(saveWhole(file,
                            [&](QIODevice& to) {
                                const Outcome outcome = writePdf(pages(), to, [](int, int) { return true; });
                                EXPECT_EQ(outcome.fault, QString());
                                return outcome.done;
                            }),
                  QString());
        return file;
    }
};

QByteArray contentOfFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Takes so many writings and refuses those that follow.
class FailingDevice : public QIODevice {
public:
    explicit FailingDevice(int writings) : left_(writings) { open(WriteOnly | Unbuffered); }
    bool failed() const { return left_ < 0; }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override {
        if (--left_ >= 0)
            return size;
        setErrorString(u"kein Platz"_s);
        return -1;
    }

private:
    int left_;
};

/// A printer that takes so many pages.
class Printer : public QPdfWriter {
public:
    Printer(QIODevice* to, int pages) : QPdfWriter(to), left_(pages) {}
    bool newPage() override { return --left_ > 0 && QPdfWriter::newPage(); }

private:
    int left_;
};

} // namespace

TEST(SavePdf, BookmarksLinksAndLabelsLeadToThePagesOfTheirEntries) {
    SKIP_WITHOUT_POPPLER();
    const TestHome home;
    MadeReport report;
    const QString strange = u"北京 – „Frage“\u202E (1)\n<b>\\)\t\u0001"_s, longTitle = u"lang "_s.repeated(2000);
    using enum ReportEntry::Kind;
    report.add({Chapter, 0, {}, u"Studie 1"_s});
    report.add({Chapter, 1, {}, u"Gruppe"_s});
    report.add({Variable, 2, u"V1"_s, strange});
    report.add({Variable, 2, u"V2"_s, longTitle});
    report.add({Text, 0, {}, {}});
    report.add({Chapter, 0, {}, u"Studie 2"_s});
    report.add({Variable, 3, u"V3"_s, {}}); // a level that nothing leads to
    report.firstNumber = -1;
    const QString file = report.save(home);

    poppler::Navigation found = poppler::navigation(file);
    std::vector<poppler::Bookmark>& marks = found.bookmarks;
    ASSERT_EQ(marks.size(), 6);
    EXPECT_TRUE(marks[3].title.startsWith(u"V2 lang lang"_s) && marks[3].title.size() < 400);
    marks[3].title.clear();
    EXPECT_EQ(marks, (std::vector<poppler::Bookmark>{{0, 2, u"Studie 1"_s},
                                                     {1, 3, u"Gruppe"_s},
                                                     {2, 4, u"V1 北京 – „Frage“\u202E (1) <b>\\)"_s},
                                                     {2, 5, {}},
                                                     {0, 7, u"Studie 2"_s},
                                                     {1, 8, u"V3"_s}}));
    std::vector<poppler::Link> links;
    for (int i = 0; i < 7; ++i)
        links.push_back({1, i + 2, u"nach %1"_s.arg(i)});
    EXPECT_EQ(found.links, links);
    const QByteArray bytes = contentOfFile(file);
    // The sheet is 595.28 points high: a heading 1,000 twips below its edge lies at 595 - 50.
    EXPECT_TRUE(bytes.contains("/XYZ 0 545 null"));
    EXPECT_EQ(bytes.count("/Subtype /Link"), bytes.count("/F 4"));
    EXPECT_TRUE(bytes.contains("/Nums [ 0 << /P (-1) >> 1 << /P (0) >> 2 << /S /D /St 1 >> ]"))
        << "pages below 1 have no numbers of their own in the format";
}

TEST(SavePdf, IsAPlainOldFileThatSaysWhatItIsAndNotWhereItWasMade) {
    SKIP_WITHOUT_POPPLER();
    const TestHome home;
    MadeReport report(12);
    report.outline.title = u"Ümläute <&> 北\u0007 und\nmehr"_s + QChar(0xD800);
    report.setup.language = 2;
    const QString file = report.save(home);
    const auto info = poppler::info(file);
    EXPECT_EQ(info[u"Title"_s], u"Ümläute <&> 北 und mehr\uFFFD"_s);
    EXPECT_EQ(info[u"PDF version"_s], u"1.4"_s);
    EXPECT_EQ(info[u"Pages"_s], u"13"_s);
    EXPECT_TRUE(info[u"Page size"_s].startsWith(u"841.89 x 595.28 pts"_s)) << qPrintable(info[u"Page size"_s]);
    const QByteArray bytes = contentOfFile(file);
    EXPECT_FALSE(bytes.contains("/ObjStm") || bytes.contains("/XRef"));
    EXPECT_TRUE(bytes.contains("/Lang (en)") && bytes.contains("/DisplayDocTitle true"));
    EXPECT_TRUE(bytes.contains("pdfaid:part=\"1\"") && bytes.contains("pdfaid:conformance=\"B\""));
    // What the properties say stands in the file twice, and must be the same.
    static const QRegularExpression two(u"CreationDate \\(D:(\\d{4})(\\d\\d)(\\d\\d)(\\d\\d)(\\d\\d)(\\d\\d).*"
                                        "CreateDate=\"(\\d{4})-(\\d\\d)-(\\d\\d)T(\\d\\d):(\\d\\d):(\\d\\d)|"
                                        "CreateDate=\"(\\d{4})-(\\d\\d)-(\\d\\d)T(\\d\\d):(\\d\\d):(\\d\\d).*"
                                        "CreationDate \\(D:(\\d{4})(\\d\\d)(\\d\\d)(\\d\\d)(\\d\\d)(\\d\\d)"_s,
                                        QRegularExpression::DotMatchesEverythingOption);
    const QStringList parts =
        two.match(QString::fromLatin1(bytes)).capturedTexts().mid(1).filter(QRegularExpression(u"."_s));
    ASSERT_EQ(parts.size(), 12);
    EXPECT_EQ(parts.mid(0, 6), parts.mid(6));
    EXPECT_TRUE(QString::fromUtf8(bytes).contains(u"Ümläute &lt;&amp;&gt; 北 und mehr\uFFFD</rdf:li>"_s));
    for (const QString& place : {QDir::tempPath(), QDir::homePath(), home.path(), QSysInfo::machineHostName()})
        EXPECT_FALSE(place.size() > 3 && bytes.contains(place.toUtf8())) << qPrintable(place);
}

TEST(SavePdf, TextIsFoundAsItIsTyped) {
    SKIP_WITHOUT_POPPLER();
    const TestHome home;
    MadeReport report;
    const QStringList texts = {u"Wie zufrieden sind Sie, alles in allem?"_s,
                               u"office café 5 µg"_s,
                               u"مرحبا بكم"_s,
                               u"السلام عليكم ولا"_s,
                               u"北京大学 一二三 人"_s,
                               u"x 😀 und 𝔸, 😀"_s,
                               u"שלום עולם"_s};
    for (const QString& text : texts)
        report.add({}, text);
    const QString file = report.save(home);
    const QStringList pages = poppler::pages(file);
    for (qsizetype i = 0; i < texts.size(); ++i)
        EXPECT_EQ(QString(pages.at(i + 1)).remove(QRegularExpression(u"[\u202A-\u202E]"_s)).trimmed(), texts[i]);
    EXPECT_GE(poppler::fonts(file).size(), 2);
    for (const poppler::Font& font : poppler::fonts(file))
        EXPECT_TRUE(font.embedded && font.unicode) << qPrintable(font.name);
}

TEST(SavePdf, AThousandPagesAndMoreStandInATree) {
    SKIP_WITHOUT_POPPLER();
    const TestHome home;
    const QString file = MadeReport(1100).save(home);
    EXPECT_EQ(poppler::info(file)[u"Pages"_s], u"1101"_s);
    const QStringList pages = poppler::pages(file, {u"-f"_s, u"1000"_s, u"-l"_s, u"1003"_s});
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(pages.at(i).trimmed(), u"Text %1"_s.arg(998 + i));
    int kids = 0;
    static const QRegularExpression list(u"/Kids \\[([^\\]]*)\\]"_s);
    for (auto match = list.globalMatch(QString::fromLatin1(contentOfFile(file))); match.hasNext(); ++kids)
        EXPECT_LE(match.next().captured(1).count(u" R"_s), 1000);
    EXPECT_EQ(kids, 3);
}

TEST(SavePdf, AFontsTableNamesPlainLetters) {
    const QByteArray before = "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n2 beginbfrange\n"
                              "<0000> <0000> <0000>\n"
                              "<0001> <0006> [<0009> <FEE3> <FB01> <2F00> <FEFB> <FF21> ]\n"
                              "<0010> <0012> <0041>\nendbfrange\nendcmap\n";
    EXPECT_EQ(plainFont(before).table, QByteArray("1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n"
                                                  "9 beginbfchar\n<0001> <0020>\n<0002> <0645>\n<0003> <00660069>\n"
                                                  "<0004> <4e00>\n<0005> <fefb>\n<0006> <ff21>\n<0010> <0041>\n"
                                                  "<0011> <0042>\n<0012> <0043>\nendbfchar\nendcmap\n"));
    // With a glyph for the second letter a ligature of two gets one for each.
    const PlainFont split = plainFont("1 beginbfrange\n<0001> <0003> [<FEFC> <0627> <FEF7> ]\nendbfrange\n");
    EXPECT_TRUE(split.table.contains("<0001> <0644>") && split.table.contains("<0003> <fef7>"));
    EXPECT_EQ(split.splits, (QMap<QByteArray, QByteArray>{{"<0001>", "<0002>"}}));
    // Glyphs without a name are the rare characters, unless others lack one as well.
    const QByteArray gaps = "1 beginbfrange\n<0001> <0001> <0041>\nendbfrange\n";
    EXPECT_TRUE(plainFont(gaps, 4, {U'😀', U'𝔸'}).table.contains("<0002> <d83dde00>\n<0003> <d835dd38>"));
    EXPECT_FALSE(plainFont(gaps, 5, {U'😀', U'𝔸'}).table.contains("<0002>"));
    QByteArray many = "1 beginbfrange\n<0001> <0100> [";
    for (int i = 0; i < 256; ++i)
        many += "<4E" + QByteArray::number(i, 16).rightJustified(2, '0') + "> ";
    many = plainFont(many + "]\nendbfrange\n").table;
    EXPECT_TRUE(many.startsWith("100 beginbfchar\n") && many.count("endbfchar\n") == 3);
    EXPECT_TRUE(many.contains("endbfchar\n56 beginbfchar\n"));
    for (const char* damaged : {"", "beginbfrange", "endbfrange beginbfrange", "1 beginbfrange\n<zz>\nendbfrange"})
        EXPECT_EQ(plainFont(damaged).table, damaged);
}

TEST(SavePdf, AWritingThatFailsLeavesTheReasonAndNoFile) {
    const TestHome home;
    const MadeReport report(60);
    const auto goOn = [](int, int) { return true; };
    int writings = 0;
    for (; writings < 100; ++writings) {
        FailingDevice device(writings);
        const Outcome outcome = writePdf(report.pages(), device, goOn);
        if (!device.failed()) {
            EXPECT_TRUE(outcome.done);
            break;
        }
        ASSERT_FALSE(outcome.done) << writings;
        ASSERT_EQ(outcome.fault, u"kein Platz"_s) << writings;
    }
    EXPECT_GT(writings, 3);

    // The disk of the draft and of the file itself is full at every length.
    const QString file = home.path(u"report.pdf"_s);
    ASSERT_EQ(saveBytes(file, "before"), QString());
    const auto save = [&] {
        Outcome outcome;
        const QString fault = saveWhole(file, [&](QIODevice& to) {
            outcome = writePdf(report.pages(), to, goOn);
            return outcome.done;
        });
        return fault.isEmpty() ? outcome.fault : fault;
    };
    int faults = 0;
    for (qint64 size = 0;; size += 4999) {
        QString fault;
        {
            const FullDisk full(size);
            fault = save();
        }
        if (fault.isEmpty())
            break;
        ++faults;
        ASSERT_EQ(contentOfFile(file), "before") << size;
        ASSERT_EQ(QDir(home.path()).entryList({u"report.*"_s}, QDir::Files), QStringList{u"report.pdf"_s});
    }
    EXPECT_GT(faults, 8);
    EXPECT_TRUE(contentOfFile(file).endsWith("%%EOF\n"));
}

TEST(SavePdf, WhoStopsItHasNoFileAndNoFault) {
    const TestHome home;
    const MadeReport report(4);
    for (int stopAt = 1; stopAt <= 5; ++stopAt) {
        QBuffer to;
        to.open(QIODevice::WriteOnly);
        int heard = 0;
        const Outcome outcome = writePdf(report.pages(), to, [&](int done, int total) {
            heard = done;
            EXPECT_EQ(total, 5);
            return done < stopAt;
        });
        EXPECT_FALSE(outcome.done);
        EXPECT_EQ(outcome.fault, QString());
        EXPECT_EQ(heard, stopAt);
    }
    const MadeReport none;
    QBuffer to;
    ReportPages pages = none.pages();
    pages.count = 0;
    EXPECT_FALSE(writePdf(pages, to, [](int, int) { return true; }).fault.isEmpty());
}

TEST(PrintPages, PrintsTheAskedPagesOnTheReportsPaperInAnyResolution) {
    SKIP_WITHOUT_POPPLER();
    const TestHome home;
    const MadeReport report(4);
    for (const int resolution : {96, 300, 1200}) {
        const QString file = home.path(u"printed.pdf"_s);
        QPdfWriter device(file);
        device.setResolution(resolution);
        device.setPageLayout(QPageLayout(QPageSize(QPageSize::A5), QPageLayout::Portrait, QMarginsF(20, 20, 20, 20)));
        int heard = 0;
        const Outcome outcome =
            paintPages(report.pages(), device, 2, 2, [&](int done, int) { return ++heard == done; });
        EXPECT_TRUE(outcome.done) << qPrintable(outcome.fault);
        EXPECT_EQ(heard, 2);
        const auto words = poppler::words(file);
        ASSERT_EQ(words.size(), 4) << resolution;
        EXPECT_EQ(words[1].text + words[3].text, u"12"_s);
        // The line stands where the page has it: 1,000 twips from the left, 1,097 from above.
        EXPECT_NEAR(words[0].box.left(), 50, 0.8) << resolution;
        EXPECT_NEAR(words[0].box.top(), 54.85, 1.5) << resolution;
        EXPECT_TRUE(poppler::info(file)[u"Page size"_s].startsWith(u"842 x 595"_s));
    }
}

TEST(PrintPages, APrinterThatGoesAwayIsSaid) {
    const TestHome home;
    const MadeReport report(4);
    const auto goOn = [](int, int) { return true; };
    QBuffer to;
    to.open(QIODevice::WriteOnly);
    for (const int taken : {1, 2, 4}) {
        Printer printer(&to, taken);
        const Outcome outcome = paintPages(report.pages(), printer, 0, 99999, goOn);
        EXPECT_FALSE(outcome.done || outcome.fault.isEmpty()) << taken;
    }
    QPdfWriter dead(home.path(u"no such folder/printed.pdf"_s));
    EXPECT_FALSE(paintPages(report.pages(), dead, 0, 1, goOn).fault.isEmpty());
    Printer whole(&to, 5);
    EXPECT_TRUE(paintPages(report.pages(), whole, 0, 99999, goOn).done);
    for (const auto& [first, count] : {std::pair(5, 1), std::pair(-1, 1), std::pair(0, 0)}) {
        Printer printer(&to, 9);
        EXPECT_FALSE(paintPages(report.pages(), printer, first, count, goOn).fault.isEmpty()) << first;
    }
    Printer stopped(&to, 9);
    const Outcome outcome = paintPages(report.pages(), stopped, 0, 5, [](int done, int) { return done < 2; });
    EXPECT_TRUE(!outcome.done && outcome.fault.isEmpty());
}
