#include "printing/LinesFlow.h"

#include <algorithm>

namespace {

double baseline(const SetText& text, int line) {
    if (line >= text.layout->lineCount())
        return 0;
    const QTextLine shown = text.layout->lineAt(line);
    return shown.y() + shown.ascent() - text.tops[static_cast<size_t>(line)];
}

} // namespace

void LinesFlow::add(const SetText& text, double x, double before, const QColor& color) {
    const auto shared = std::make_shared<const SetText>(text);
    const int count = text.lines();
    for (int line = 0; line < count; ++line) {
        const size_t i = static_cast<size_t>(line);
        const double gap = line == 0 ? before : 0;
        Row row;
        row.height = text.tops[i + 1] - text.tops[i] + gap;
        row.mayEnd = line == count - 1 || (line > 0 && line < count - 2);
        row.bits.push_back({shared, line, {x, gap}, color});
        lines.push_back(std::move(row));
    }
    widest = std::max(widest, x + text.width);
}

void LinesFlow::addBeside(size_t row, const SetText& text, double x, const QColor& color) {
    const Bit& main = lines[row].bits.front();
    const double y = main.at.y() + baseline(*main.text, main.line) - baseline(text, 0);
    lines[row].bits.push_back({std::make_shared<const SetText>(text), 0, {x, y}, color});
    widest = std::max(widest, x + text.width);
}

void LinesFlow::place(ReportPage& page, int row, const QPointF& at) const {
    const Row& line = lines[static_cast<size_t>(row)];
    for (const Bit& bit : line.bits)
        bit.text->place(page, at + bit.at, bit.line, 1, bit.color);
    if (line.rule) {
        ReportPage::Rule rule = *line.rule;
        rule.line.translate(at);
        page.pieces.emplace_back(rule);
    }
}
