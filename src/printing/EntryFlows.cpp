#include "printing/EntryFlows.h"

#include "printing/arrangedFlows.h"
#include "printing/flows.h"
#include "printing/look.h"
#include "printing/splitText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// As many flows of an entry are kept: those of a page, and of its neighbours.
constexpr int keptFlows = 200;
/// Lists with more rows never stand side by side.
constexpr size_t besideRows = 40;

const TextBlock* caption(const Block& block) {
    const auto* text = std::get_if<TextBlock>(&block);
    return text && text->style == TextBlock::Style::Caption ? text : nullptr;
}

QString captionText(const TextBlock& block) {
    QString text;
    for (const TextRun& run : block.runs)
        text += run.text;
    return text;
}

/// A caption may stand beside what it is of: that has no mark of its own there.
bool takesLabel(const Block& block) {
    const auto* text = std::get_if<TextBlock>(&block);
    return text && text->mark.isEmpty() &&
           (text->style == TextBlock::Style::Question || text->style == TextBlock::Style::Body);
}

/// Number of the table that may stand right of the values at a place; the place itself if there is none.
size_t tableBeside(const std::vector<Block>& blocks, size_t values) {
    size_t i = values + 1;
    while (i < blocks.size() && std::holds_alternative<FactsBlock>(blocks[i]))
        ++i;
    return i < blocks.size() && std::holds_alternative<TableBlock>(blocks[i]) ? i : values;
}

} // namespace

EntryFlows::EntryFlows(ReportEntry::Kind kind, std::vector<Block> blocks, const PageSetup& setup, const QSizeF& body)
    : kind_(kind), setup_(setup), body_(body) {
    const bool variable = kind == ReportEntry::Kind::Variable;
    for (size_t i = 0; i < blocks.size(); ++i) {
        QString label;
        if (variable && caption(blocks[i]) && i + 1 < blocks.size() && takesLabel(blocks[i + 1]))
            label = captionText(*caption(blocks[i++]));
        if (variable && std::holds_alternative<ValuesBlock>(blocks[i])) {
            const size_t table = tableBeside(blocks, i);
            if (table != i && addBeside(blocks, i, table)) {
                i = table;
                continue;
            }
        }
        add(std::move(blocks[i]), std::move(label));
    }
    if (variable)
        keepTogether();
}

/// What is said of a variable stands with its values, question included: a page that ends in between would have both
/// looked for. What is long may stand for itself. A picture stands with the note on where it is from.
void EntryFlows::keepTogether() {
    const auto isOfValues = [](const Item& item) {
        return item.pinned || std::holds_alternative<ValuesBlock>(item.block);
    };
    const auto values = std::ranges::find_if(items_, isOfValues);
    if (values != items_.end())
        std::for_each(items_.begin(), values, [&](Item& item) { item.keptHeight = body_.height() / 5; });
    for (size_t i = 1; i < items_.size(); ++i) {
        const auto* text = std::get_if<TextBlock>(&items_[i].block);
        if (text && text->style == TextBlock::Style::Note && std::holds_alternative<PictureBlock>(items_[i - 1].block))
            items_[i - 1].keptHeight = body_.height();
    }
}

void EntryFlows::add(Block block, QString label) {
    if (auto* text = std::get_if<TextBlock>(&block))
        return addText(std::move(*text), std::move(label));
    // Facts and values have the column in themselves.
    const bool indented = kind_ == ReportEntry::Kind::Variable && !std::holds_alternative<FactsBlock>(block) &&
                          !std::holds_alternative<ValuesBlock>(block);
    items_.push_back({std::move(block), std::move(label), indented, {}});
}

void EntryFlows::addText(TextBlock block, QString label) {
    using enum TextBlock::Style;
    const bool indented =
        kind_ == ReportEntry::Kind::Variable && (block.style == Note || block.style == Fault || block.style == Body);
    bool first = true;
    for (TextPart& part : splitText(std::move(block))) {
        std::optional<double> space;
        if (!first)
            space = part.newParagraph ? 0.35 * look::em(setup_) : 0;
        items_.push_back({std::move(part.block), first ? std::move(label) : QString(), indented, space});
        first = false;
    }
}

bool EntryFlows::addBeside(const std::vector<Block>& blocks, size_t first, size_t last) {
    const auto& values = std::get<ValuesBlock>(blocks[first]);
    const auto& table = std::get<TableBlock>(blocks[last]);
    const double em = look::em(setup_), gap = 2.5 * em;
    const double least = look::labelColumn(setup_) + 14 * em;
    if (values.rows.size() > besideRows || static_cast<size_t>(table.table.Rows()) > besideRows ||
        body_.width() < least + gap + 8 * em)
        return false;
    std::shared_ptr<const Flowable> right = flowOf(blocks[last], body_.width(), setup_);
    const double room = body_.width() - right->width() - gap;
    if (room < least)
        return false;
    // Near its values on a wide page, else at the right margin.
    const double width = std::min(room, look::measure(setup_));
    std::vector<std::shared_ptr<const Flowable>> left;
    for (size_t i = first; i < last; ++i)
        left.push_back(flowOf(blocks[i], width, setup_));
    std::shared_ptr<const Flowable> both = sideBySide(std::move(left), right, width + gap);
    if (!both || both->height(0) > 0.6 * body_.height() || both->width() > body_.width() + 1)
        return false;
    items_.push_back({TextBlock(), {}, false, {}, both, true});
    return true;
}

std::shared_ptr<const Flowable> EntryFlows::laidOut(const Item& item) const {
    const double column = look::labelColumn(setup_);
    if (!item.indented && item.label.isEmpty())
        return flowOf(item.block, body_.width(), setup_);
    if (std::holds_alternative<TableBlock>(item.block)) { // takes the whole width before its type is made smaller
        std::shared_ptr<const Flowable> flow = flowOf(item.block, body_.width(), setup_);
        return flow->width() <= body_.width() - column ? shifted(flow, column) : flow;
    }
    if (!item.indented) // a question text leaves the column free by itself
        return labelled(flowOf(item.block, body_.width(), setup_), item.label, setup_, 0);
    return labelled(flowOf(item.block, body_.width() - column, setup_), item.label, setup_);
}

std::shared_ptr<const Flowable> EntryFlows::flow(int item) {
    Item& wanted = items_[static_cast<size_t>(item)];
    if (!wanted.made) {
        if (++kept_ > keptFlows) {
            for (Item& other : items_)
                if (!other.pinned)
                    other.made.reset();
            kept_ = 1;
        }
        wanted.made = laidOut(wanted);
        if (wanted.keptHeight > 0)
            wanted.made = keptWithNext(std::move(wanted.made), wanted.keptHeight);
    }
    return wanted.made;
}

double EntryFlows::spaceBefore(int item) {
    const Item& wanted = items_[static_cast<size_t>(item)];
    return wanted.space ? *wanted.space : flow(item)->spaceBefore();
}
