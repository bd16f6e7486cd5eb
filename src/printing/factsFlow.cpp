#include "printing/LinesFlow.h"
#include "printing/flows.h"
#include "printing/look.h"

#include <algorithm>

namespace {

/// As many lines stay together: what is said of a variable begins no page with its last word.
constexpr size_t togetherLines = 5;

/// A page that is so wide, in ems, has short facts two by two.
constexpr double widePage = 60;

/// Adds facts two by two. @return false where one of them needs more room than that
bool addPairs(LinesFlow& flow, const FactsBlock& block, double width, const PageSetup& setup) {
    const double em = look::em(setup), column = look::labelColumn(setup), second = width / 2;
    if (width < widePage * em || block.facts.size() < 2)
        return false;
    const QFont font = reportFont(setup.fontFamily, setup.fontSize);
    std::vector<std::pair<SetText, SetText>> set;
    for (const auto& fact : block.facts) {
        set.emplace_back(setText(printableLine(fact.first), font, 0, Qt::AlignLeft, textSpacing),
                         setText(printable(fact.second).trimmed(), font, 0, Qt::AlignLeft, textSpacing));
        if (set.back().first.width > column - 0.5 * em || set.back().second.width > second - column - em ||
            set.back().second.lines() > 1)
            return false;
    }
    for (size_t i = 0; i < set.size(); ++i) {
        const double x = i % 2 == 0 ? 0 : second;
        if (i % 2 == 0)
            flow.add(set[i].second, column, i == 0 ? 0 : 0.1 * em);
        else
            flow.addBeside(flow.lines.size() - 1, set[i].second, x + column, Qt::black);
        flow.addBeside(flow.lines.size() - 1, set[i].first, x, look::quietColor);
    }
    return true;
}

void addFact(LinesFlow& flow, const std::pair<QString, QString>& fact, double width, const PageSetup& setup) {
    const double em = look::em(setup), x = std::min(look::labelColumn(setup), width * 0.42); // also beside a table
    const QFont font = reportFont(setup.fontFamily, setup.fontSize);
    const SetText word = setText(printableLine(fact.first), font, x - 0.5 * em, Qt::AlignLeft, textSpacing);
    const double before = flow.lines.empty() ? 0 : 0.1 * em;
    const size_t first = flow.lines.size();
    flow.add(setText(printable(fact.second).trimmed(), font, std::min(width - x, look::measure(setup)), Qt::AlignLeft,
                     textSpacing),
             x, before);
    const auto shared = std::make_shared<const SetText>(word);
    for (int line = 0; line < word.lines(); ++line) {
        const size_t row = first + static_cast<size_t>(line);
        const double gap = line == 0 ? before : 0;
        if (row == flow.lines.size()) // more words than answer
            flow.lines.emplace_back().height = textSpacing * font.pixelSize();
        flow.lines[row].bits.push_back({shared, line, {0, gap}, look::quietColor});
    }
}

} // namespace

std::unique_ptr<Flowable> factsFlow(const FactsBlock& block, double width, const PageSetup& setup) {
    auto flow = std::make_unique<LinesFlow>();
    if (!addPairs(*flow, block, width, setup))
        for (const auto& fact : block.facts)
            addFact(*flow, fact, width, setup);
    if (flow->lines.size() <= togetherLines)
        for (LinesFlow::Row& row : flow->lines)
            row.mayEnd = false;
    flow->space = 0.3 * look::em(setup);
    return flow;
}
