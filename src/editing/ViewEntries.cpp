#include "editing/ViewEntries.h"

#include "catalogue/CDaoDatabase.h"
#include "catalogue/schema.h"
#include "config/Options.h"
#include "editing/EditRun.h"
#include "editing/tableRows.h"
#include "explorer/CatalogueTree.h"
#include "platform/dao/TextOrder.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestInMenu = 40, longestInQuestion = 200;

QString cut(const QString& text, qsizetype longest) {
    if (text.size() <= longest)
        return text;
    // Never between the halves of a character.
    const qsizetype end = text.at(longest - 1).isHighSurrogate() ? longest - 1 : longest;
    return text.left(end) + u'…';
}

/// A number that is Null or none counts as 0.
qint64 numberOf(const dao::Value& value) {
    return value.isNumeric() ? value.toInteger() : 0;
}

} // namespace

ViewTables::ViewTables(int viewNumber, bool englishContents)
    : view(viewNumber), study(isStudyView(viewNumber)), english(englishContents), columns(study, english),
      entries(schema::entryTableName(gViews.at(view, ViewTable::Table))),
      assignments(study ? u"tkey_Variable"_s : schema::assignmentTableName(gViews.at(view, ViewTable::Table))) {}

QString ViewTables::literal(const QString& key) const {
    if (study)
        return quoted(key);
    if (!dao::textToNumber(key))
        dao::raiseRuntimeError(13);
    return key;
}

dao::Value ViewTables::stored(const QString& key) const {
    return study ? dao::Value(key) : dao::Value(dao::Value(key).toInteger());
}

QString ViewTables::nodeKey(const QString& key) const {
    return viewLetter(view) + key;
}

dao::RecordsetPtr ViewTables::row(const QString& key) const {
    return openCatalogue().OpenRecordset(u"SELECT * FROM "_s + entries + u" WHERE "_s + columns.key + u" = "_s +
                                         literal(key) + u" ORDER BY [fid], [order];"_s);
}

dao::RecordsetPtr ViewTables::rowsBelow(const QString& parent) const {
    return openCatalogue().OpenRecordset(u"SELECT * FROM "_s + entries + u" WHERE fid = "_s + literal(parent) +
                                         u" ORDER BY [fid], [order];"_s);
}

ViewEntries::ViewEntries(const ViewTables& tables) {
    const EntryColumns& columns = tables.columns;
    const dao::RecordsetPtr all =
        openCatalogue().OpenRecordset(u"SELECT "_s + columns.key + u", fid, "_s + columns.text + u", [order] FROM "_s +
                                          tables.entries + u" ORDER BY [fid], [order];"_s,
                                      dao::dbOpenSnapshot);
    for (; !all->Eof(); all->MoveNext()) {
        const QString parent = all->value(1).toText();
        rows_.push_back({all->value(0).toText(), parent.isEmpty() ? u"0"_s : parent, all->value(2).toText(),
                         numberOf(all->value(3))});
        below_[dao::foldedText(rows_.back().parent)].push_back(rows_.size() - 1);
        const QString key = dao::foldedText(rows_.back().key);
        if (!byKey_.contains(key))
            byKey_.insert(key, rows_.size() - 1);
    }
    all->Close();
}

const EntryRow* ViewEntries::find(const QString& key) const {
    const auto place = byKey_.constFind(dao::foldedText(key));
    return place == byKey_.constEnd() ? nullptr : &rows_[*place];
}

std::vector<EntryRow> ViewEntries::below(const QString& parent) const {
    std::vector<EntryRow> siblings;
    for (const size_t place : below_.value(dao::foldedText(parent)))
        siblings.push_back(rows_[place]);
    return siblings;
}

std::vector<EntryRow> ViewEntries::subtree(const QString& key) const {
    std::vector<EntryRow> all;
    const auto begin = byKey_.constFind(dao::foldedText(key));
    if (begin == byKey_.constEnd())
        return all;
    QSet<size_t> seen{*begin};
    std::vector<size_t> waiting{*begin};
    while (!waiting.empty()) {
        const size_t place = waiting.back();
        waiting.pop_back();
        all.push_back(rows_[place]);
        const std::vector<size_t> children = below_.value(dao::foldedText(rows_[place].key));
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            if (seen.contains(*child))
                continue;
            seen.insert(*child);
            waiting.push_back(*child);
        }
    }
    return all;
}

QString whyNotEditable(int view) {
    if (const QString why = whyNotEditable(); !why.isEmpty())
        return why;
    if (isStudyView(view) && !gOptions.EditStudiesMode)
        return TranslateText(u"Studien lassen sich nur ändern, wenn die Option EditStudiesMode gesetzt ist."_s);
    return {};
}

QString editName(const QString& what, const QString& entry) {
    return what + u" \""_s + cut(entry.simplified(), longestInMenu) + u'"';
}

QString askedName(const QString& name) {
    return cut(name, longestInQuestion);
}
