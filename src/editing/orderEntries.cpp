#include "editing/Entries.h"
#include "editing/EntryEdit.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;
using namespace entryEdit;

namespace {

/// An entry and the place that it is to have among its siblings, from 1.
struct Placed {
    QString key;
    qint64 order;
};

/// A sibling as the tree shows it.
struct Line {
    QString key, text;
};

std::vector<Line> linesOf(const CatalogueNode& parent) {
    std::vector<Line> lines;
    for (const CatalogueNode* sibling : parent.Children)
        // What a window of the other language shows without a text is told by its key.
        lines.push_back({sibling->id(), sibling->Text.isEmpty() ? sibling->id() : sibling->Text});
    return lines;
}

/// Places of the lines in the order that the user gives them.
std::optional<std::vector<int>> askOrder(const std::vector<Line>& lines, int current) {
    ui::LineOrder order{.lines = {}, .current = current};
    for (const Line& line : lines)
        order.lines << line.text;
    return ui::asker().orderLines(order);
}

/// Whether the siblings are those of the lines, and no order of theirs speaks against that of the lines.
bool areShown(const std::vector<Line>& lines, const ViewEntries& entries, size_t siblings) {
    qint64 before = std::numeric_limits<qint64>::min();
    for (const Line& line : lines) {
        const EntryRow* entry = entries.find(line.key);
        if (!entry || entry->order < before)
            return false;
        before = entry->order;
    }
    return lines.size() == siblings;
}

/// In a study view a line stands for the studies of its title: those of one title get one place, the first line's.
std::vector<Placed> placesOf(const ViewTables& tables, const std::vector<Line>& lines, const std::vector<int>& order) {
    std::vector<Placed> places;
    QHash<QString, qint64> ofTitle;
    for (const int place : order) {
        const Line& line = lines.at(static_cast<size_t>(place));
        const auto next = static_cast<qint64>(places.size()) + 1;
        if (tables.study && !ofTitle.contains(line.text))
            ofTitle.insert(line.text, next);
        places.push_back({line.key, ofTitle.value(line.text, next)});
    }
    return places;
}

bool isOrdered(const ViewEntries& entries, const std::vector<Placed>& places) {
    return std::all_of(places.begin(), places.end(), [&](const Placed& placed) {
        const EntryRow* entry = entries.find(placed.key);
        return entry && entry->order == placed.order;
    });
}

void writeOrder(const ViewTables& tables, const std::vector<Placed>& places) {
    const QString order = u"Order"_s;
    for (const Placed& placed : places) {
        const dao::RecordsetPtr row = tables.row(placed.key);
        const dao::Value before = row->value(order);
        if (before.isNumeric() && before.toInteger() == placed.order)
            continue;
        row->Edit();
        row->setValue(order, placed.order);
        row->Update();
    }
}

bool orderSiblings(ExplorerModel& model, const CatalogueNode& node, const ViewTables& tables) {
    const QString parent = node.Parent->id(), parentText = node.Parent->Text, key = node.Key;
    const EditBasis basis = EditBasis().children(node.Parent->Key);
    const ViewEntries entries(tables);
    const size_t siblings = entries.below(parent).size();
    if (siblings == 0) {
        ui::asker().messageBox(
            {.text = tables.study ? TranslateText(u"Studie nicht gefunden"_s)
                                  : askedName(node.Text) + u' ' + TranslateText(u"nicht gefunden"_s).toLower(),
             .icon = ui::Icon::Exclamation});
        return false;
    }
    const std::vector<Line> lines = linesOf(*node.Parent);
    if (!areShown(lines, entries, siblings)) {
        tellChanged();
        return false;
    }
    const std::optional<std::vector<int>> order = askOrder(lines, node.Place);
    if (!order)
        return false;
    const std::vector<Placed> places = placesOf(tables, lines, *order);
    if (isOrdered(entries, places))
        return false;
    const auto write = [&](CatalogueChanges& changes) {
        writeOrder(tables, places);
        changes.push_back({.kind = CatalogueChange::Kind::Ordered,
                           .view = tables.view,
                           .key = tables.nodeKey(parent),
                           .parentKey = tables.nodeKey(parent)});
        return true;
    };
    if (perform({.name = editName(TranslateText(u"Position einstellen"_s), parentText),
                 .tables = {tables.entries},
                 .stillSo = [&] { return basis.stillSo(); },
                 .write = write}) != EditOutcome::Done)
        return false;
    goTo(model, key);
    return true;
}

} // namespace

bool showPosition(ExplorerModel& model) {
    return onSelected(model, u"[Entries.showPosition]"_s, [&](const CatalogueNode& node, const ViewTables& tables) {
        return node.Parent && !isRefused(tables.view) && orderSiblings(model, node, tables);
    });
}
