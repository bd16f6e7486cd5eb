#include "printing/EntryTree.h"

#include "catalogue/schema.h"
#include "explorer/CatalogueTree.h"
#include "platform/dao/TextOrder.h"

using namespace Qt::StringLiterals;

namespace {

const QString rootKey = u"0"_s;

QString parentOf(const EntryTree::Entry& entry) {
    return entry.parent.isEmpty() ? rootKey : dao::foldedText(entry.parent);
}

} // namespace

EntryTree::EntryTree(std::vector<Entry> entries) : entries_(std::move(entries)) {
    for (int i = 0; i < static_cast<int>(entries_.size()); ++i) {
        const QString key = dao::foldedText(entry(i).key);
        if (!byKey_.contains(key))
            byKey_.insert(key, i);
        children_[parentOf(entry(i))].push_back(i);
    }
}

EntryTree EntryTree::read(ReportCatalogue& catalogue, const QString& suffix, bool study) {
    const QString table = schema::entryTableName(suffix);
    const QString name = study ? u"StudyTitle"_s : u"IndicatorName"_s;
    const QString key = study ? u"id_StudyNo"_s : u"id"_s, group = u"dt_IsGroup"_s;
    const QStringList optional = catalogue.present(table, {u"dt_"_s + name, u"dt_En"_s + name, u"dt_Year"_s, group});
    const QStringList order = catalogue.present(table, {u"fid"_s, u"Order"_s});
    QString statement = u"SELECT "_s + (QStringList{key, u"fid"_s} + optional).join(u", "_s) + u" FROM "_s + table;
    if (order.size() == 2)
        statement += u" ORDER BY [fid], [order]"_s;
    const dao::RecordsetPtr rows = catalogue.rows(statement + u';');
    std::vector<Entry> entries;
    for (; !rows->Eof(); rows->MoveNext()) {
        Entry entry{.key = rows->value(0).toText(), .parent = rows->value(1).toText()};
        entry.name = {textIn(*rows, u"dt_"_s + name), textIn(*rows, u"dt_En"_s + name)};
        entry.year = textIn(*rows, u"dt_Year"_s);
        if (const QString mark = textIn(*rows, group); study && !mark.isEmpty())
            entry.isGroup = mark != u"0";
        entries.push_back(std::move(entry));
    }
    return EntryTree(std::move(entries));
}

int EntryTree::find(const QString& key) const {
    return byKey_.value(dao::foldedText(key), -1);
}

std::vector<EntryTree::Step> EntryTree::below(int start, int levels) const {
    const int deepest = levels > 0 ? std::min(levels, deepestEntry) : deepestEntry;
    std::vector<bool> met(entries_.size(), false);
    if (start >= 0)
        met[static_cast<size_t>(start)] = true;
    std::vector<Step> found, waiting;
    const auto wait = [&](const QString& key, int depth) {
        const auto children = children_.constFind(key);
        if (depth >= deepest || children == children_.constEnd())
            return;
        for (auto child = children->rbegin(); child != children->rend(); ++child)
            waiting.push_back({*child, depth});
    };
    wait(start < 0 ? rootKey : dao::foldedText(entry(start).key), 0);
    while (!waiting.empty()) {
        const Step step = waiting.back();
        waiting.pop_back();
        if (met[static_cast<size_t>(step.entry)])
            continue;
        met[static_cast<size_t>(step.entry)] = true;
        found.push_back(step);
        // An entry with the root's own key has nothing of its own below it.
        if (const QString key = dao::foldedText(entry(step.entry).key); key != rootKey)
            wait(key, step.depth + 1);
    }
    return found;
}

std::vector<int> EntryTree::unreached() const {
    std::vector<bool> met(entries_.size(), false);
    for (const Step& step : below(-1))
        met[static_cast<size_t>(step.entry)] = true;
    std::vector<int> left;
    for (int i = 0; i < static_cast<int>(entries_.size()); ++i)
        if (!met[static_cast<size_t>(i)])
            left.push_back(i);
    return left;
}
