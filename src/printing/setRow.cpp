#include "printing/setRow.h"

#include <QTextBoundaryFinder>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestStretch = 2000, longestWordStretch = 400;
constexpr double hair = 0.01; ///< of a twip: what sums of heights are exact to

/// Where a stretch ends that begins at a place: behind a line's end, before a blank, at least between two letters.
qsizetype endOfStretch(const QString& text, qsizetype from) {
    const qsizetype most = from + longestStretch;
    if (most >= text.size())
        return text.size();
    for (const QChar sign : {u'\n', u' '})
        if (const qsizetype found = text.lastIndexOf(sign, most); found > from + longestStretch / 2)
            return found;
    // A word without an end takes the most time of all.
    const qsizetype middle = from + longestWordStretch;
    // A letter with all its marks is no longer than that; what is longer is none.
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, text.mid(middle - 50, 100));
    letters.setPosition(50);
    const qsizetype end = letters.isAtBoundary() ? 50 : letters.toPreviousBoundary();
    return middle - 50 + (end > 0 ? end : 50);
}

} // namespace

std::vector<SetText> setStretches(const QString& text, const QFont& font, double width, Qt::Alignment alignment,
                                  double spacing) {
    std::vector<SetText> stretches;
    for (qsizetype from = 0; from < text.size() || stretches.empty();) {
        const qsizetype end = endOfStretch(text, from);
        stretches.push_back(setText(text.mid(from, end - from), font, width, alignment, spacing));
        const bool parted = end < text.size() && (text[end] == u'\n' || text[end] == u' ');
        from = end + (parted ? 1 : 0);
    }
    return stretches;
}

double heightOf(const std::vector<SetText>& stretches) {
    double height = 0;
    for (const SetText& text : stretches)
        height += text.height();
    return height;
}

double SetRow::add(const std::vector<SetText>& stretches, const QPointF& at, double scale, const QColor& color) {
    double y = 0;
    for (const SetText& text : stretches) {
        texts.push_back({text, at + QPointF(0, y), scale, color});
        y += text.height() * scale;
    }
    return y;
}

void SetRow::place(ReportPage& page, const QPointF& at) const {
    for (ReportPage::Box box : boxes) {
        box.rect.translate(at);
        page.pieces.emplace_back(box);
    }
    for (ReportPage::Rule rule : rules) {
        rule.line.translate(at);
        page.pieces.emplace_back(rule);
    }
    for (const Text& text : texts)
        text.text.place(page, at + text.at, text.color, text.scale);
}

double SetRow::piece(double from, double room) const {
    double end = from + room;
    if (end >= height - hair)
        return height - from;
    for (bool cut = true; cut;) {
        cut = false;
        for (const Text& text : texts)
            for (int line = 0; line < text.text.lines(); ++line) {
                const double top = text.at.y() + text.text.tops[static_cast<size_t>(line)] * text.scale;
                const double bottom = text.at.y() + text.text.tops[static_cast<size_t>(line) + 1] * text.scale;
                if (top < end - hair && bottom > end + hair) {
                    end = top;
                    cut = true;
                }
            }
    }
    return std::max(0.0, end - from);
}

void SetRow::placePiece(ReportPage& page, double from, double pieceHeight, const QPointF& at) const {
    const double end = from + pieceHeight;
    const QPointF origin = at - QPointF(0, from);
    for (ReportPage::Box box : boxes) {
        box.rect.setTop(std::max(box.rect.top(), from));
        box.rect.setBottom(std::min(box.rect.bottom(), end));
        if (box.rect.height() > 0) {
            box.rect.translate(origin);
            page.pieces.emplace_back(box);
        }
    }
    for (ReportPage::Rule rule : rules)
        if (rule.line.y1() >= from - hair && rule.line.y1() <= end + hair) {
            rule.line.translate(origin);
            page.pieces.emplace_back(rule);
        }
    for (const Text& text : texts) {
        int first = -1, count = 0;
        for (int line = 0; line < text.text.lines(); ++line) {
            const double top = text.at.y() + text.text.tops[static_cast<size_t>(line)] * text.scale;
            const double bottom = text.at.y() + text.text.tops[static_cast<size_t>(line) + 1] * text.scale;
            if (top >= from - hair && bottom <= end + hair) {
                first = count++ == 0 ? line : first;
            }
        }
        if (count > 0)
            text.text.place(page,
                            origin + text.at + QPointF(0, text.text.tops[static_cast<size_t>(first)] * text.scale),
                            first, count, text.color, text.scale);
    }
}
