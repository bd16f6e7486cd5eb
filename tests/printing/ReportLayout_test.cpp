#include "SeededReport.h"
#include "app/globals.h"
#include "pageTexts.h"
#include "printing/ReportLayout.h"
#include "printing/ReportRequest.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

ReportRequest landscape() {
    ReportRequest request;
    request.MarginTop = 30;
    request.MarginBottom = 15;
    request.MarginLeft = request.MarginRight = 10;
    request.LANGUAGE = 1;
    request.ReportFontSize = 11;
    request.PageNumberLocation = request.DateLocation = 2;
    request.Orientation = 2;
    request.PaperSize = 9;
    request.TableFontName = u"Arial"_s;
    request.TableZoom = request.GraphZoom = 1;
    return request;
}

struct PaperCase {
    qint16 orientation, paper;
    int size;
    unsigned seed;
};
constexpr PaperCase setups[] = {{2, 9, 11, 1},  {1, 9, 11, 2}, {2, 9, 6, 3},  {1, 1, 12, 4},
                                {1, 11, 12, 5}, {2, 27, 8, 6}, {1, 38, 12, 7}};

PageSetup setupOf(const PaperCase& one) {
    ReportRequest request = landscape();
    request.Orientation = one.orientation;
    request.PaperSize = one.paper;
    request.ReportFontSize = one.size;
    return PageSetup::of(request);
}

QStringList allPages(const ReportLayout& layout) {
    QStringList pages;
    for (int i = 0; i < layout.pageCount(); ++i)
        pages << dumped(layout.page(i));
    return pages;
}

void finish(ReportLayout& layout) {
    while (layout.step(50)) {
    }
}

/// Texts of a page that lie in a place, from left to right and from top to bottom.
QStringList textsIn(const std::vector<PageText>& texts, const QRectF& place) {
    QStringList found;
    for (const PageText& text : texts)
        if (place.adjusted(-1, -1, 1, 1).contains(text.rect.center()) && !text.text.startsWith(u" ."))
            found << text.text;
    return found;
}

class Language {
public:
    Language() { gLanguage = 1; }
    ~Language() { gLanguage = 0; }
};

} // namespace

TEST(ReportPages, NumbersInContentsAndIndexAreThoseOfTheHeadings) {
    const Language language;
    for (const PaperCase& one : setups) {
        SeededReport report(120, one.seed);
        ReportLayout layout(report.made, report, setupOf(one));
        layout.setFirstPageNumber(7);
        finish(layout);
        QSet<int> inContents, inIndex;
        for (int i = 0; i < layout.pageCount(); ++i) {
            const ReportPage page = layout.page(i);
            const std::vector<PageText> texts = pageTexts(page);
            for (const ReportPage::Link& link : page.links) {
                const ReportEntry& entry = report.made.entries[static_cast<size_t>(link.entry)];
                const QStringList row = textsIn(texts, link.rect);
                const int target = layout.pageOf(link.entry);
                ASSERT_EQ(row.last(), QString::number(target + 7));
                ASSERT_TRUE(row.first() == entry.name || row.join(u' ').contains(entry.title.left(20)));
                const ReportPage there = layout.page(target);
                const auto anchor = std::ranges::find(there.anchors, link.entry, &ReportPage::Anchor::entry);
                ASSERT_NE(anchor, there.anchors.end());
                const QRectF band(0, anchor->y, there.size.width(), 60 * twipsPerPoint);
                const QString heading = entry.kind == ReportEntry::Kind::Variable ? entry.name : entry.title;
                EXPECT_TRUE(textsIn(pageTexts(there), band).join(u' ').contains(heading.left(12)))
                    << heading.toStdString();
                (i < layout.frontPages() ? inContents : inIndex) << link.entry;
            }
        }
        EXPECT_EQ(inContents.size(), static_cast<qsizetype>(report.made.entries.size()));
        EXPECT_EQ(inIndex.size(), report.made.variables());
    }
}

TEST(ReportPages, HoldEverythingOnceInOrderWithinTheMargins) {
    const Language language;
    for (const PaperCase& one : setups) {
        SeededReport report(40, one.seed);
        const PageSetup setup = setupOf(one);
        ReportLayout layout(report.made, report, setup);
        finish(layout);
        QStringList headings;
        QString questions;
        for (int i = layout.frontPages(); i < layout.pageCount(); ++i) {
            const ReportPage page = layout.page(i);
            double lowest = 0;
            QString last;
            const std::vector<PageText> texts = pageTexts(page);
            for (const PageText& text : texts) {
                for (const PageText& other : texts)
                    EXPECT_TRUE(&text == &other ||
                                !text.rect.adjusted(2, 60, -2, -60).intersects(other.rect.adjusted(2, 60, -2, -60)))
                        << text.text.toStdString() << " over " << other.text.toStdString();
                EXPECT_TRUE(setup.textArea().adjusted(-2, -2, 2, 2).contains(text.rect))
                    << i << ": " << text.text.toStdString();
                if (text.rect.bottom() > lowest) {
                    lowest = text.rect.bottom();
                    last = text.text.trimmed();
                }
            }
            for (const ReportEntry& entry : report.made.entries)
                EXPECT_FALSE(last == entry.name || last == entry.title)
                    << "page " << i << " ends in " << last.toStdString();
            for (const ReportPage::Anchor& anchor : page.anchors)
                headings << QString::number(anchor.entry);
            for (const ReportPage::Piece& piece : page.pieces) {
                if (const auto* rule = std::get_if<ReportPage::Rule>(&piece)) {
                    EXPECT_TRUE(setup.textArea().adjusted(-2, -2, 2, 2).contains(rule->line.p2()));
                }
                if (const auto* line = std::get_if<ReportPage::Line>(&piece))
                    if (line->text->text().size() > 60) // a question, whose lines come one after the other
                        questions += line->text->text().mid(line->text->lineAt(line->line).textStart(),
                                                            line->text->lineAt(line->line).textLength());
            }
        }
        QStringList inOrder;
        for (size_t i = 0; i < report.made.entries.size(); ++i) {
            inOrder << QString::number(i);
            for (const Block& block : report.blocks(static_cast<int>(i)))
                if (const auto* text = std::get_if<TextBlock>(&block);
                    text && text->runs.front().text.size() > 60 && text->style == TextBlock::Style::Question) {
                    const qsizetype at = questions.indexOf(text->runs.front().text);
                    ASSERT_GE(at, 0) << text->runs.front().text.toStdString();
                    questions.remove(0, at);
                }
        }
        EXPECT_EQ(headings, inOrder);
    }
}

TEST(ReportPages, AreTheSameHoweverOneComesToThem) {
    const Language language;
    SeededReport report(90, 11);
    ReportLayout whole(report.made, report, setupOf(setups[0]));
    const int front = whole.frontPages();
    finish(whole);
    const QStringList pages = allPages(whole);
    EXPECT_EQ(whole.frontPages(), front);
    ReportLayout slowly(report.made, report, setupOf(setups[0]));
    for (report.ready_ = 0; report.ready_ < report.made.variables(); report.ready_ += 3) {
        slowly.step(0);
        const int last = slowly.pageCount() - 1;
        if (last >= front) { // a page is whole as soon as it can be had
            EXPECT_EQ(dumped(slowly.page(last)), pages[last]);
        }
    }
    report.ready_ = 1 << 30;
    finish(slowly);
    for (int i = static_cast<int>(pages.size()) - 1; i >= 0; i -= 5)
        EXPECT_EQ(dumped(slowly.page(i)), pages[i]) << i;
}

TEST(ReportPages, HaveContentsAndIndexByTheNumberOfVariables) {
    const Language language;
    struct Case {
        int variables, studies;
        bool contents, inContents, index;
    };
    for (const Case& one :
         {Case{9, 1, false, false, false}, Case{10, 1, true, true, false}, Case{49, 1, true, true, false},
          Case{50, 1, true, true, true}, Case{299, 1, true, true, true}, Case{300, 1, true, false, true}}) {
        SeededReport report(one.variables, 3, one.studies);
        ReportLayout layout(report.made, report, setupOf(setups[1]));
        finish(layout);
        EXPECT_EQ(layout.frontPages() > 0, one.contents) << one.variables;
        bool variable = false;
        for (int i = 0; i < layout.frontPages(); ++i)
            for (const ReportPage::Link& link : layout.page(i).links)
                variable = variable ||
                           report.made.entries[static_cast<size_t>(link.entry)].kind == ReportEntry::Kind::Variable;
        EXPECT_EQ(variable, one.inContents) << one.variables;
        EXPECT_EQ(!layout.page(layout.pageCount() - 1).links.empty(), one.index) << one.variables;
    }
}

TEST(ReportPages, SayWhatIsOnThem) {
    const Language language;
    SeededReport report(60, 5);
    struct Case {
        qint16 number, date;
        const char* shown; ///< at the head left, middle, right; at the foot likewise
    };
    const Case cases[] = {
        {2, 2, "|25.11.2026   ·   Seite N||||"}, {1, 1, "25.11.2026   ·   Seite N|||||"}, {3, 7, "||Seite N|||"},
        {6, 4, "|||25.11.2026||Seite N"},        {2, 5, "|Seite N|||25.11.2026|"},        {7, 7, "|||||"},
        {6, 6, "|||||25.11.2026   ·   Seite N"}};
    for (const Case& one : cases) {
        ReportRequest request = landscape();
        request.PageNumberLocation = one.number;
        request.DateLocation = one.date;
        PageSetup setup = PageSetup::of(request);
        setup.date = QDate(2026, 11, 25);
        ReportLayout layout(report.made, report, setup);
        finish(layout);
        const int index = layout.frontPages() + 3;
        const ReportPage page = layout.page(index);
        QString last;
        for (size_t i = 0; i < report.made.entries.size(); ++i)
            if (report.made.entries[i].kind == ReportEntry::Kind::Variable &&
                layout.pageOf(static_cast<int>(i)) <= index)
                last = report.made.entries[i].name;
        const QRectF area = setup.textArea();
        QStringList shown;
        for (const double y : {area.top(), area.bottom() - 300})
            for (int column = 0; column < 3; ++column)
                shown << textsIn(pageTexts(page), QRectF(area.left() + column * area.width() / 3, y, area.width() / 3,
                                                         y > area.top() ? 300 : 250))
                             .join(u' ');
        EXPECT_TRUE(shown[0].contains(u"A survey of attitudes, wave 1"_s));
        EXPECT_TRUE(shown[2].contains(last)) << shown[2].toStdString();
        QStringList expected = QString::fromUtf8(one.shown).replace(u'N', QString::number(index + 1)).split(u'|');
        for (int place = 0; place < 6; ++place) {
            if (place == 0)
                shown[0].remove(u"A survey of attitudes, wave 1"_s);
            if (place == 2)
                shown[2].remove(QRegularExpression(u"v\\d+( – v\\d+)?"_s));
            if (place >= 3 && one.number < 4 && (one.date < 4 || one.date == 7))
                continue; // text may stand there
            if (!expected[place].isEmpty() || place < 3) {
                EXPECT_EQ(shown[place].remove(QRegularExpression(u"^( · |   ·   )|   ·   $"_s)).trimmed(),
                          expected[place])
                    << one.shown;
            }
        }
    }
}

TEST(ReportPages, TakeTextsOfAnyLengthInShortSteps) {
    const Language language;
    SeededReport report(0, 1, 0);
    const QString word = u"Wort"_s.repeated(50'000), text = (u"Wie oft? "_s).repeated(22'000);
    report.add(
        {ReportEntry::Kind::Variable, 0, u"v1"_s, u"long"_s, false},
        {SeededReport::text(TextBlock::Style::Question, word), SeededReport::text(TextBlock::Style::Question, text)});
    ReportLayout layout(report.made, report, setupOf(setups[0]));
    finish(layout);
    QString found;
    for (int i = 0; i < layout.pageCount(); ++i)
        for (const PageText& line : pageTexts(layout.page(i)))
            if (line.rect.left() > layout.setup().textArea().left() + 100 &&
                line.rect.top() > layout.setup().textArea().top() + 300)
                found += line.text;
    EXPECT_EQ(found.remove(u' '), QString(word + text).remove(u' '));
}

TEST(ReportPages, HaveValuesAndTableSideBySideWhereTheyFit) {
    const Language language;
    for (const qint16 orientation : {qint16(1), qint16(2)}) {
        SeededReport report(0, 1, 0);
        ValuesBlock values{u"Values"_s, {{u"1"_s, u"often enough"_s, false}, {u"2"_s, u"never"_s, false}}};
        report.add({ReportEntry::Kind::Variable, 0, u"v1"_s, u"label"_s, false},
                   {values, FactsBlock{{{u"Topic"_s, u"politics"_s}}}, SeededReport::table(4, 4, u"Frequencies"_s)});
        ReportLayout layout(report.made, report, setupOf({orientation, 9, 11, 0}));
        finish(layout);
        const std::vector<PageText> texts = pageTexts(layout.page(0));
        const auto find = [&](const QString& text) { return std::ranges::find(texts, text, &PageText::text)->rect; };
        EXPECT_EQ(find(u"Frequencies"_s).top() < find(u"never"_s).top(), orientation == 2);
        EXPECT_EQ(find(u"Frequencies"_s).left() > find(u"often enough"_s).right(), orientation == 2);
    }
}

TEST(ReportPages, HaveRoomOnAnyPaper) {
    struct Case {
        const char* what;
        qint16 orientation, paper, margin;
        int size;
        QSizeF page;
    };
    for (const Case& one :
         {Case{"A4 wide", 2, 9, 15, 11, {297, 210}}, Case{"Letter upright", 1, 1, 15, 12, {215.9, 279.4}},
          Case{"a card with margins beyond it", 1, 11, 300, 5, {148, 210}},
          Case{"no margins", 1, 9, 0, 13, {210, 297}}}) {
        ReportRequest request = landscape();
        request.Orientation = one.orientation;
        request.PaperSize = one.paper;
        request.ReportFontSize = one.size;
        request.MarginTop = request.MarginBottom = request.MarginLeft = request.MarginRight = one.margin;
        const PageSetup setup = PageSetup::of(request);
        EXPECT_NEAR(setup.page.width() / twipsPerMillimetre, one.page.width(), 0.5) << one.what;
        EXPECT_NEAR(setup.page.height() / twipsPerMillimetre, one.page.height(), 0.5) << one.what;
        EXPECT_GE(setup.textArea().width() / twipsPerMillimetre, 49.9) << one.what;
        EXPECT_GE(setup.textArea().height() / twipsPerMillimetre, 49.9) << one.what;
        EXPECT_GT(setup.margins.left(), 0) << one.what;
        EXPECT_EQ(setup.fontSize, one.size < 6 || one.size > 12 ? 10 : one.size) << one.what;
    }
}
