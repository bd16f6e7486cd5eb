#include "printing/ReportLayout.h"

#include "printing/ContentsPages.h"
#include "printing/EntryFlows.h"
#include "printing/IndexPages.h"
#include "printing/PageFrame.h"
#include "printing/fillPage.h"
#include "printing/words.h"

#include <QElapsedTimer>
#include <list>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Entries whose flows are kept: those of a page that is shown, or of the next one.
constexpr size_t keptEntries = 12;

} // namespace

struct ReportLayout::State {
    const ReportOutline& outline;
    const BlockSource& source;
    PageSetup setup;
    PageFrame frame;
    ContentsPages contents;
    std::optional<IndexPages> index;

    std::vector<PageStart> starts; ///< of the pages of the entries, and of the one that is to be filled next
    std::vector<int> pages;        ///< of each entry, from that of the first one; -1: not known
    std::shared_ptr<EntryFlows> coverFlows;
    std::vector<PageStart> coverStarts;
    double coverTop = 0; ///< what is left above it
    bool complete = false;
    std::list<std::pair<int, std::shared_ptr<EntryFlows>>> kept; ///< used last in front

    State(const ReportOutline& theOutline, const BlockSource& theSource, const PageSetup& theSetup)
        : outline(theOutline), source(theSource), setup(theSetup), frame(setup), contents(outline, setup, frame.body()),
          starts(1), pages(outline.entries.size(), -1) {
        fillCover();
        settle();
    }

    int coverPages() const { return static_cast<int>(coverStarts.size()); }
    int front() const { return coverPages() + contents.count(); }
    int filled() const { return static_cast<int>(starts.size()) - 1; }
    int bodyPages() const { return filled(); }
    int all() const { return front() + filled() + (complete && index ? index->count() : 0); }

    EntryAccess access();
    EntryAccess coverAccess() const;
    std::shared_ptr<EntryFlows> flows(int entry);
    void fillCover();
    bool fillNext();
    void settle();
    void placeRows(ReportPage& page, const FilledPage& filledPage, double top = 0) const;
    void bodyPage(ReportPage& page, int index);
    RunningHead runningHead(const FilledPage& filledPage) const;
    QString chapterOf(int entry) const;
    QString numberText(int entry) const;
};

std::shared_ptr<EntryFlows> ReportLayout::State::flows(int entry) {
    for (auto it = kept.begin(); it != kept.end(); ++it)
        if (it->first == entry) {
            kept.splice(kept.begin(), kept, it);
            return kept.front().second;
        }
    kept.emplace_front(entry, std::make_shared<EntryFlows>(outline.entries[static_cast<size_t>(entry)].kind,
                                                           source.blocks(entry), setup, frame.body().size()));
    if (kept.size() > keptEntries)
        kept.pop_back();
    return kept.front().second;
}

EntryAccess ReportLayout::State::access() {
    return {static_cast<int>(outline.entries.size()), source.ready(),
            [this](int entry) { return outline.entries[static_cast<size_t>(entry)].newPage; },
            [this](int entry) { return flows(entry); }};
}

EntryAccess ReportLayout::State::coverAccess() const {
    return {1, 1, [](int) { return false; }, [this](int) { return coverFlows; }};
}

void ReportLayout::State::fillCover() {
    if (outline.cover.empty())
        return;
    std::vector<Block> blocks = outline.cover;
    for (Block& block : blocks)
        if (auto* text = std::get_if<TextBlock>(&block); text && text->style == TextBlock::Style::Chapter)
            text->level = -1;
    coverFlows = std::make_shared<EntryFlows>(ReportEntry::Kind::Text, std::move(blocks), setup, frame.body().size());
    const double height = frame.body().height();
    for (PageStart start; start.entry == 0;) {
        const FilledPage filledPage = fillPage(coverAccess(), start, height);
        if (filledPage.next.entry > 0 && start == PageStart()) { // it is all of the cover
            const PlacedRow& last = filledPage.rows.back();
            coverTop = std::min(height * 0.2, height - last.y - last.flow->height(last.row));
        }
        coverStarts.push_back(start);
        start = filledPage.next;
    }
}

/// All pages are known where the entries have none left.
void ReportLayout::State::settle() {
    if (starts.back().entry < static_cast<int>(outline.entries.size()))
        return;
    complete = true;
    index.emplace(outline, setup, frame.body());
}

bool ReportLayout::State::fillNext() {
    const PageStart start = starts.back();
    const FilledPage page = fillPage(access(), start, frame.body().height());
    if (page.waiting)
        return false;
    const bool within = start.item > 0 || start.row > 0 || start.from > 0;
    const bool ends = page.next.item == 0 && page.next.row == 0 && page.next.from == 0;
    for (int entry = start.entry + (within ? 1 : 0); entry < page.next.entry + (ends ? 0 : 1); ++entry)
        pages[static_cast<size_t>(entry)] = filled();
    starts.push_back(page.next);
    settle();
    return true;
}

void ReportLayout::State::placeRows(ReportPage& page, const FilledPage& filledPage, double top) const {
    const QPointF corner = frame.body().topLeft() + QPointF(0, top);
    for (const PlacedRow& row : filledPage.rows) {
        const QPointF at = corner + QPointF(0, row.y);
        if (row.head > 0)
            row.flow->placeHead(page, row.row, at - QPointF(0, row.head));
        if (row.height > 0)
            row.flow->placePiece(page, row.row, row.from, row.height, at);
        else
            row.flow->place(page, row.row, at);
    }
}

QString ReportLayout::State::chapterOf(int entry) const {
    int level = outline.entries[static_cast<size_t>(entry)].level;
    QString title;
    for (int i = entry; i >= 0 && level >= 0; --i) {
        const ReportEntry& candidate = outline.entries[static_cast<size_t>(i)];
        if (candidate.kind == ReportEntry::Kind::Chapter && (candidate.level < level || i == entry)) {
            title = candidate.title;
            level = candidate.level;
            if (level == 0)
                break;
        }
    }
    return title.isEmpty() ? outline.title : title;
}

RunningHead ReportLayout::State::runningHead(const FilledPage& filledPage) const {
    RunningHead head;
    if (filledPage.rows.empty())
        return head;
    head.chapter = chapterOf(filledPage.rows.front().entry);
    QString first, last;
    for (const PlacedRow& row : filledPage.rows) {
        const ReportEntry& entry = outline.entries[static_cast<size_t>(row.entry)];
        if (entry.kind != ReportEntry::Kind::Variable)
            continue;
        if (first.isEmpty())
            first = entry.name;
        last = entry.name;
    }
    head.range = first == last ? first : first + u" – "_s + last;
    return head;
}

void ReportLayout::State::bodyPage(ReportPage& page, int number) {
    const PageStart& start = starts[static_cast<size_t>(number)];
    const FilledPage filledPage = fillPage(access(), start, frame.body().height());
    placeRows(page, filledPage);
    RunningHead head = runningHead(filledPage);
    if (number == 0 && outline.entries.size() == 1)
        head.chapter.clear(); // its title stands below
    head.number = front() + number + setup.firstPageNumber;
    frame.place(page, head);
    size_t row = 0;
    for (int entry = start.entry; entry <= filledPage.next.entry && entry < static_cast<int>(pages.size()); ++entry) {
        if (pages[static_cast<size_t>(entry)] != number)
            continue;
        while (row + 1 < filledPage.rows.size() && filledPage.rows[row].entry < entry)
            ++row;
        const double y = filledPage.rows.empty() ? 0 : filledPage.rows[row].y;
        page.anchors.push_back({entry, frame.body().top() + y});
    }
}

QString ReportLayout::State::numberText(int entry) const {
    const int page = pages[static_cast<size_t>(entry)];
    return page < 0 ? QString() : QString::number(front() + page + setup.firstPageNumber);
}

ReportLayout::ReportLayout(const ReportOutline& outline, const BlockSource& source, const PageSetup& setup)
    : state_(std::make_unique<State>(outline, source, setup)) {}

ReportLayout::~ReportLayout() = default;

bool ReportLayout::step(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (!state_->complete && state_->fillNext() && timer.elapsed() < milliseconds) {
    }
    return !state_->complete;
}

bool ReportLayout::complete() const {
    return state_->complete;
}

int ReportLayout::pageCount() const {
    return state_->all();
}

int ReportLayout::frontPages() const {
    return state_->front();
}

int ReportLayout::pageOf(int entry) const {
    if (entry < 0 || entry >= static_cast<int>(state_->pages.size()))
        return -1;
    const int page = state_->pages[static_cast<size_t>(entry)];
    return page < 0 ? -1 : state_->front() + page;
}

ReportPage ReportLayout::page(int index) const {
    ReportPage page;
    page.size = state_->setup.page;
    if (index < 0 || index >= pageCount())
        return page;
    const NumberOfEntry number = [this](int entry) { return state_->numberText(entry); };
    RunningHead head{state_->outline.title, {}, numberOf(index)};
    const int contents = index - state_->coverPages(), body = index - state_->front(),
              last = body - state_->bodyPages();
    if (contents < 0) {
        const PageStart& start = state_->coverStarts[static_cast<size_t>(index)];
        state_->placeRows(page, fillPage(state_->coverAccess(), start, state_->frame.body().height()),
                          state_->coverTop);
    } else if (body < 0) {
        state_->contents.place(page, contents, number);
        head.range = reportWord(u"Inhalt"_s, state_->setup.language);
        state_->frame.place(page, head);
    } else if (last < 0) {
        state_->bodyPage(page, body);
    } else {
        state_->index->place(page, last, number);
        head.range = state_->index->range(last);
        state_->frame.place(page, head);
    }
    return page;
}

const PageSetup& ReportLayout::setup() const {
    return state_->setup;
}

const ReportOutline& ReportLayout::outline() const {
    return state_->outline;
}

void ReportLayout::setFirstPageNumber(int number) {
    state_->setup.firstPageNumber = number;
}

int ReportLayout::numberOf(int index) const {
    return index + state_->setup.firstPageNumber;
}
