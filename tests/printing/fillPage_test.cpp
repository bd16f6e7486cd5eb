#include "printing/fillPage.h"
#include "printing/flows.h"
#include "printing/splitText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Rows of given heights between which a page may end, but for those that say otherwise.
class Rows final : public Flowable {
public:
    struct Row {
        double height = 10;
        bool mayEnd = true, part = false;
    };
    std::vector<Row> list;
    bool keeps = false, breaks = false;
    double head = 0;

    Rows(std::vector<Row> rowList, bool keepsNext = false) : list(std::move(rowList)), keeps(keepsNext) {}
    int rows() const override { return static_cast<int>(list.size()); }
    double height(int row) const override { return at(row).height; }
    bool mayEndAfter(int row) const override { return at(row).mayEnd; }
    double headHeight(int row) const override { return row > 0 ? head : 0; }
    bool beginsPart(int row) const override { return at(row).part; }
    bool keepsWithNext() const override { return keeps; }
    double width() const override { return 100; }
    void place(ReportPage&, int, const QPointF&) const override {}
    double piece(int, double, double room) const override { return breaks ? std::floor(room / 10) * 10 : 0; }

private:
    const Row& at(int row) const { return list[static_cast<size_t>(row)]; }
};

/// The pages of height 100 that flows of entries fill: rows as "entry.item.row", a piece with its height behind it.
QStringList pagesOf(const std::vector<std::vector<std::shared_ptr<Rows>>>& entries, int newPage = -1) {
    struct Flows final : EntryFlowList {
        std::vector<std::shared_ptr<Rows>> flows;
        int count() const override { return static_cast<int>(flows.size()); }
        std::shared_ptr<const Flowable> flow(int item) override { return flows[static_cast<size_t>(item)]; }
        double spaceBefore(int) override { return 0; }
    };
    EntryAccess access{static_cast<int>(entries.size()), static_cast<int>(entries.size()),
                       [&](int entry) { return entry == newPage; },
                       [&](int entry) {
                           auto flows = std::make_shared<Flows>();
                           flows->flows = entries[static_cast<size_t>(entry)];
                           return flows;
                       }};
    QStringList pages;
    for (PageStart at; at.entry < access.count && pages.size() < 50;) {
        const FilledPage page = fillPage(access, at, 100);
        QStringList rows;
        double bottom = 0;
        for (const PlacedRow& row : page.rows) {
            const auto& flows = entries[static_cast<size_t>(row.entry)];
            const auto item = std::ranges::find(flows, row.flow) - flows.begin();
            rows << u"%1.%2.%3"_s.arg(row.entry).arg(item).arg(row.row) +
                        (row.height > 0 ? u":%1"_s.arg(row.height) : QString());
            EXPECT_GE(row.y - row.head, bottom) << rows.join(u' ').toStdString();
            bottom = row.y + (row.height > 0 ? row.height : row.flow->height(row.row));
        }
        pages << rows.join(u' ');
        at = page.next;
    }
    return pages;
}

std::shared_ptr<Rows> rows(int count, double height = 10, bool keeps = false) {
    return std::make_shared<Rows>(std::vector<Rows::Row>(static_cast<size_t>(count), {height}), keeps);
}

std::shared_ptr<Rows> high(double height, bool breaks) {
    auto flow = rows(1, height);
    flow->breaks = breaks;
    return flow;
}

} // namespace

TEST(FilledPages, EndWhereTheyMay) {
    const auto whole = [](int count) {
        std::vector<Rows::Row> list(static_cast<size_t>(count), {10, false});
        return std::make_shared<Rows>(list);
    };
    auto parts = rows(3);
    parts->list[1].part = true;
    auto headed = rows(11);
    headed->head = 30;
    struct Case {
        const char* what;
        std::vector<std::vector<std::shared_ptr<Rows>>> entries;
        int newPage;
        QStringList pages;
    };
    const Case cases[] = {
        {"rows go on",
         {{rows(12, 25)}},
         -1,
         {u"0.0.0 0.0.1 0.0.2 0.0.3"_s, u"0.0.4 0.0.5 0.0.6 0.0.7"_s, u"0.0.8 0.0.9 0.0.10 0.0.11"_s}},
        {"a list that is kept together",
         {{rows(1, 60)}, {whole(5)}},
         -1,
         {u"0.0.0"_s, u"1.0.0 1.0.1 1.0.2 1.0.3 1.0.4"_s}},
        {"headings go with what they head, across entries",
         {{rows(1, 70)}, {rows(1, 15, true)}, {rows(1, 10, true), rows(2, 20)}},
         -1,
         {u"0.0.0"_s, u"1.0.0 2.0.0 2.1.0 2.1.1"_s}},
        {"a page of its own", {{rows(1)}, {rows(1)}}, 1, {u"0.0.0"_s, u"1.0.0"_s}},
        {"but not behind a heading", {{rows(1, 10, true)}, {rows(1)}}, 1, {u"0.0.0 1.0.0"_s}},
        {"parts of a table", {{parts}}, -1, {u"0.0.0"_s, u"0.0.1 0.0.2"_s}},
        {"what is repeated takes room",
         {{rows(1, 90), headed}},
         -1,
         {u"0.0.0 0.1.0"_s, u"0.1.1 0.1.2 0.1.3 0.1.4 0.1.5 0.1.6 0.1.7"_s, u"0.1.8 0.1.9 0.1.10"_s}},
        {"a row higher than a page breaks",
         {{rows(1, 40), high(170, true)}},
         -1,
         {u"0.0.0 0.1.0:60"_s, u"0.1.0:100"_s, u"0.1.0:10"_s}},
        {"one that is not does not", {{rows(1, 40), high(70, true)}}, -1, {u"0.0.0"_s, u"0.1.0"_s}},
        {"but for a heading's sake", {{rows(1, 40, true), high(70, true)}}, -1, {u"0.0.0 0.1.0:60"_s, u"0.1.0:10"_s}},
        {"what nothing helps takes a page",
         {{rows(1, 10, true), high(500, false), rows(1)}},
         -1,
         {u"0.0.0"_s, u"0.1.0"_s, u"0.2.0"_s}},
        {"empty flows and entries", {{}, {rows(0), rows(1)}, {}}, -1, {u"1.1.0"_s}},
    };
    for (const Case& one : cases)
        EXPECT_EQ(pagesOf(one.entries, one.newPage), one.pages)
            << one.what << "\n"
            << pagesOf(one.entries, one.newPage).join(u'\n').toStdString();
}

TEST(LongTexts, AreDividedWithoutLosingALetter) {
    const QString words = u"Eine Frage, die man stellt. Und noch eine? "_s, word = u"Wort"_s, pair = u"\U0001F600"_s;
    for (const QString& text : {words.repeated(5000), word.repeated(50'000), u"x"_s + pair.repeated(10'000),
                                (words.repeated(30) + u'\n').repeated(200)}) {
        TextBlock block;
        block.mark = u"Original"_s;
        block.runs = {{text.left(777), true, false}, {text.mid(777), false, false}};
        QString together;
        const std::vector<TextPart> parts = splitText(block);
        EXPECT_GT(parts.size(), 5u);
        for (const TextPart& part : parts) {
            EXPECT_EQ(part.block.mark.isEmpty(), !together.isEmpty());
            qsizetype size = 0;
            for (const TextRun& run : part.block.runs) {
                EXPECT_EQ(run.bold, together.size() < 777);
                EXPECT_FALSE(run.text.back().isHighSurrogate() && run.text != text.left(777));
                together += run.text;
                size += run.text.size();
            }
            EXPECT_LE(size, 12'000);
        }
        EXPECT_EQ(together, text);
    }
}
