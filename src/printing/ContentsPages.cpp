#include "printing/ContentsPages.h"

#include "printing/fonts.h"
#include "printing/look.h"
#include "printing/words.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// Variables from which there are contents, and from which they name chapters only.
constexpr int leastForContents = 10, chaptersOnly = 300;
/// From as many rows on each is one line, whatever it says.
constexpr size_t wrappedRows = 1000;
constexpr int mostLines = 3;

/// Dots from a text to its number; they end at one place, so they stand one below the other down the page.
void placeLeader(ReportPage& page, const QFont& font, double left, double right, const QPointF& origin) {
    const QString dot = u" ."_s;
    const int dots = static_cast<int>((right - left) / textWidth(dot, font));
    if (dots < 2)
        return;
    const SetText set = setText(dot.repeated(dots), font, 0);
    set.place(page, origin + QPointF(right - set.width, 0), look::ruleColor);
}

} // namespace

struct ContentsPages::Text {
    SetText name, text;
    double x = 0, textX = 0;
    bool chapter = false;
    int lines = 1;
    double height = 0, before = 0;
};

ContentsPages::ContentsPages(const ReportOutline& outline, const PageSetup& setup, const QRectF& body)
    : outline_(outline), setup_(setup), body_(body) {
    if (outline.variables() < leastForContents)
        return;
    chooseEntries();
    if (rows_.empty())
        return;
    wraps_ = rows_.size() < wrappedRows;
    arrange();
}

void ContentsPages::chooseEntries() {
    const QFont font = reportFont(setup_.fontFamily, setup_.fontSize);
    const bool variables = outline_.variables() < chaptersOnly;
    for (size_t i = 0; i < outline_.entries.size(); ++i) {
        const ReportEntry& entry = outline_.entries[i];
        const bool variable = entry.kind == ReportEntry::Kind::Variable;
        if (variable ? variables : !entry.title.isEmpty())
            rows_.push_back({static_cast<int>(i)});
        if (variable && variables) // beyond a usual width a name moves its own label only
            nameColumn_ =
                std::max(nameColumn_, std::min(textWidth(printableLine(entry.name), font) + 0.8 * look::em(setup_),
                                               8 * look::em(setup_)));
    }
}

int ContentsPages::columns() const {
    return body_.width() > 62 * look::em(setup_)
               ? std::min(3, static_cast<int>(body_.width() / (31 * look::em(setup_))))
               : 1;
}

double ContentsPages::columnWidth() const {
    const double gap = 2.5 * look::em(setup_);
    return (body_.width() + gap) / columns() - gap;
}

double ContentsPages::headHeight() const {
    return 3.2 * look::em(setup_);
}

ContentsPages::Text ContentsPages::textOf(const ReportEntry& entry) const {
    const double em = look::em(setup_), width = columnWidth() - 3.5 * em; // room for the number
    Text row;
    row.chapter = entry.kind != ReportEntry::Kind::Variable;
    const bool strong = row.chapter && entry.level == 0;
    row.x = std::min(1.2 * em * std::max(entry.level, 0), width / 4);
    const QFont font = reportFont(setup_.fontFamily, setup_.fontSize, strong);
    row.textX = row.x;
    if (!row.chapter) {
        row.name = setLine(printableLine(entry.name), reportFont(setup_.fontFamily, setup_.fontSize), width / 2);
        row.textX += std::max(row.name.width + 0.8 * em, std::min(nameColumn_, width / 3));
    }
    const QString title = printableLine(entry.title);
    row.text = wraps_ ? setText(title, font, std::max(width - row.textX, em)) : setLine(title, font, width - row.textX);
    if (row.text.lines() > mostLines)
        row.text = setLine(title, font, std::max(width - row.textX, em));
    row.lines = row.text.lines();
    row.height = row.text.height();
    row.before = strong ? 0.6 * em : row.chapter && nameColumn_ > 0 ? 0.3 * em : 0;
    return row;
}

void ContentsPages::arrange() {
    double y = headHeight();
    int column = 0;
    pages_ = 1;
    for (size_t i = 0; i < rows_.size(); ++i) {
        const Text text = textOf(outline_.entries[static_cast<size_t>(rows_[i].entry)]);
        const double top = pages_ == 1 ? headHeight() : 0;
        double before = y == top ? 0 : text.before;
        // A chapter stands with the line below it.
        const double needed = text.height * (text.chapter && i + 1 < rows_.size() ? 2 : 1);
        if (y > top && y + before + needed > body_.height()) {
            if (++column == columns()) {
                column = 0;
                ++pages_;
            }
            y = pages_ == 1 ? headHeight() : 0;
            before = 0;
        }
        rows_[i].page = pages_ - 1;
        rows_[i].column = column;
        rows_[i].y = y + before;
        y += before + text.height;
    }
}

void ContentsPages::placeRow(ReportPage& page, const Row& row, const NumberOfEntry& number) const {
    const double em = look::em(setup_);
    const Text text = textOf(outline_.entries[static_cast<size_t>(row.entry)]);
    const QPointF corner = body_.topLeft() + QPointF(row.column * (columnWidth() + 2.5 * em), row.y);
    if (!text.name.tops.empty())
        text.name.place(page, corner + QPointF(text.x, 0));
    text.text.place(page, corner + QPointF(text.textX, 0));
    const QFont font = reportFont(setup_.fontFamily, setup_.fontSize);
    const SetText set = setText(number(row.entry), font, 0);
    const int last = text.lines - 1;
    const double y = text.text.tops[static_cast<size_t>(last)];
    const double end = text.textX + text.text.layout->lineAt(last).naturalTextWidth();
    placeLeader(page, font, end + 0.4 * em, columnWidth() - std::max(set.width, 1.5 * em) - 0.4 * em,
                corner + QPointF(0, y));
    set.place(page, corner + QPointF(columnWidth() - set.width, y));
    page.links.push_back({QRectF(corner, QSizeF(columnWidth(), text.height)), row.entry});
}

void ContentsPages::place(ReportPage& page, int index, const NumberOfEntry& number) const {
    if (index == 0) {
        const QFont font = reportFont(setup_.fontFamily, setup_.fontSize * 1.6, true);
        setLine(reportWord(u"Inhalt"_s, setup_.language), font, body_.width()).place(page, body_.topLeft());
    }
    for (const Row& row : rows_)
        if (row.page == index)
            placeRow(page, row, number);
}
