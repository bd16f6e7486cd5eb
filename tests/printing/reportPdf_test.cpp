#include "printing/ReportLayout.h"
#include "printing/outlets.h"

#include "support/Poppler.h"
#include "support/TestHome.h"

#include <QPdfWriter>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <random>
#include <set>

using namespace Qt::StringLiterals;

namespace {

/// A codebook drawn from a seed: chapters of variables, each with a label that stands nowhere else.
class DrawnReport : public BlockSource {
public:
    ReportOutline outline;

    DrawnReport(unsigned seed, int variables) : random_(seed) {
        outline.title = u"Gezogener Bericht"_s;
        outline.cover = {TextBlock{TextBlock::Style::Chapter, 0, {}, {TextRun{outline.title}}}};
        for (int i = 0; i < variables; ++i) {
            if (i % 17 == 0)
                addChapter(i / 17);
            addVariable(i);
        }
    }
    int ready() const override { return static_cast<int>(blocks_.size()); }
    std::vector<Block> blocks(int entry) const override { return blocks_.at(static_cast<size_t>(entry)); }

    static QString name(int variable) { return u"V%1"_s.arg(variable, 4, 10, QLatin1Char('0')); }
    static QString label(int variable) { return u"Kennung%1"_s.arg(variable, 4, 10, QLatin1Char('0')); }

private:
    std::mt19937 random_;
    std::vector<std::vector<Block>> blocks_;

    int draw(int most) { return static_cast<int>(random_() % static_cast<unsigned>(most)); }
    static TextBlock text(TextBlock::Style style, const QString& words, const QString& name = {}) {
        TextBlock block;
        block.style = style;
        block.name = name;
        block.runs = {TextRun{words}};
        return block;
    }
    void addChapter(int number) {
        outline.entries.push_back({ReportEntry::Kind::Chapter, 0, {}, u"Kapitel%1"_s.arg(number), draw(2) == 0});
        blocks_.push_back({text(TextBlock::Style::Chapter, u"Kapitel%1"_s.arg(number))});
    }
    void addVariable(int i) {
        outline.entries.push_back({ReportEntry::Kind::Variable, 1, name(i), label(i)});
        std::vector<Block> blocks = {text(TextBlock::Style::Entry, label(i), name(i))};
        blocks.push_back(text(TextBlock::Style::Question, u"Wie zufrieden sind Sie damit? "_s.repeated(draw(12))));
        if (draw(3) > 0)
            blocks.push_back(FactsBlock{{{u"Jahr"_s, u"1998"_s}, {u"Gruppe"_s, u"Demographie"_s}}});
        ValuesBlock values;
        for (int row = draw(20); row > 0; --row)
            values.rows.push_back({QString::number(row), u"Stufe %1"_s.arg(row), row < 3});
        if (!values.rows.empty())
            blocks.push_back(values);
        if (i % 10 == 3)
            blocks.push_back(table());
        blocks_.push_back(blocks);
    }
    TableBlock table() {
        TableBlock block;
        block.title = u"Häufigkeiten"_s;
        block.table.FixedRows = block.table.FixedCols = 1;
        block.table.setRows(2 + draw(40));
        block.table.setCols(2 + draw(14));
        for (int row = 0; row < block.table.Rows(); ++row)
            for (int column = 0; column < block.table.Cols(); ++column)
                block.table.setCell(column, row, QString::number(draw(100000)));
        return block;
    }
};

PageSetup setupOf(QSizeF millimetres, double fontSize, int firstNumber) {
    PageSetup setup;
    setup.page = millimetres * twipsPerMillimetre;
    setup.margins = QMarginsF(10, 30, 10, 15) * twipsPerMillimetre;
    setup.fontFamily = u"Arial"_s;
    setup.fontSize = fontSize;
    setup.date = QDate(2018, 3, 31);
    setup.firstPageNumber = firstNumber;
    return setup;
}

const QRegularExpression labels(u"Kennung\\d{4}"_s);

/// Page from 1 on which each label stands as a heading, from the pages that are neither contents nor index.
/// @return nothing where one stands on none or twice
std::vector<int> headings(const QStringList& pages, int from, int variables) {
    std::vector<int> found;
    for (qsizetype page = from; page < pages.size(); ++page)
        for (auto match = labels.globalMatch(pages[page]); match.hasNext();) {
            const QString label = match.next().captured();
            EXPECT_EQ(label, DrawnReport::label(static_cast<int>(found.size()))) << "page " << page + 1;
            found.push_back(static_cast<int>(page) + 1);
        }
    EXPECT_EQ(found.size(), variables);
    return found;
}

} // namespace

TEST(ReportPdf, EveryNumberLinkAndBookmarkLeadsToItsHeading) {
    SKIP_WITHOUT_POPPLER();
    const TestHome home;
    struct Case {
        QSizeF paper;
        double fontSize;
        int variables, firstNumber;
    };
    const QSizeF a4(210, 297), letterWide(279.4, 215.9);
    for (const Case& c : {Case{letterWide, 11, 60, 1}, Case{a4, 12, 20, 7}, Case{a4, 6, 300, 1}, Case{a4, 9, 9, 1}}) {
        SCOPED_TRACE(c.variables);
        const DrawnReport report(20180331 + c.variables, c.variables);
        const PageSetup setup = setupOf(c.paper, c.fontSize, c.firstNumber);
        ReportLayout layout(report.outline, report, setup);
        while (layout.step(50)) {
        }
        ASSERT_TRUE(layout.complete());
        const QString file = home.path(u"report.pdf"_s);
        ASSERT_EQ(savePdf(layout, file), QString());

        const QStringList pages = poppler::pages(file);
        ASSERT_EQ(pages.size(), layout.pageCount());
        const std::vector<int> heading = headings(pages, layout.frontPages(), c.variables);
        ASSERT_EQ(heading.size(), c.variables);
        const auto numberOn = [&](int page) { return QString::number(page - 1 + c.firstNumber); };

        const poppler::Navigation found = poppler::navigation(file);
        int marks = 0;
        for (const poppler::Bookmark& mark : found.bookmarks)
            if (const QRegularExpressionMatch label = labels.match(mark.title); label.hasMatch()) {
                EXPECT_EQ(mark.title, DrawnReport::name(marks) + u' ' + DrawnReport::label(marks));
                EXPECT_EQ(mark.page, heading[marks++]);
            }
        EXPECT_EQ(marks, c.variables);

        std::set<QString> linked, numbered;
        for (const poppler::Link& link : found.links) {
            static const QRegularExpression name(u"V(\\d{4})"_s), number(u"(\\d+)\\s*$"_s);
            if (const auto match = name.match(link.text); match.hasMatch()) {
                EXPECT_EQ(link.target, heading[match.captured(1).toUInt()]) << qPrintable(link.text);
                linked.insert(match.captured());
            }
            QString last = link.text.trimmed();
            last.remove(name);
            last.remove(labels);
            last.remove(QRegularExpression(u"Kapitel\\d+"_s));
            if (const auto match = number.match(last); match.hasMatch()) {
                EXPECT_EQ(match.captured(1), numberOn(link.target)) << qPrintable(link.text);
                numbered.insert(match.captured(1));
            }
        }
        // An index from 50 variables on; all of them are in the contents from 10 on, and below 300.
        EXPECT_EQ(linked.size(), c.variables >= 10 ? c.variables : 0);
        std::set<QString> wanted;
        for (const int page : heading)
            wanted.insert(numberOn(page));
        EXPECT_TRUE(c.variables < 10 || std::ranges::includes(numbered, wanted));

        const QMarginsF margins = setup.margins / twipsPerPoint;
        const QRectF area = QRectF(QPointF(), setup.page / twipsPerPoint).marginsRemoved(margins);
        // A word's box has room for descenders that its line need not have.
        const QRectF room = area.adjusted(-1, -1, 1, 0.2 * c.fontSize);
        for (const poppler::Word& word : poppler::words(file))
            EXPECT_TRUE(room.contains(word.box))
                << word.page << qPrintable(u": "_s + word.text) << word.box.left() << ' ' << word.box.top() << ' '
                << word.box.right() << ' ' << word.box.bottom();
        for (const poppler::Font& font : poppler::fonts(file))
            EXPECT_TRUE(font.embedded && font.unicode) << qPrintable(font.name);

        // A printer of another resolution has the same pages.
        if (c.variables != 60)
            continue;
        const QString printed = home.path(u"printed.pdf"_s);
        QPdfWriter printer(printed);
        printer.setResolution(600);
        ASSERT_EQ(printPages(layout, printer, 0, 99999), QString());
        EXPECT_EQ(poppler::pages(printed), pages);
    }
}
