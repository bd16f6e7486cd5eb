#include "catalogue/StudyRows.h"
#include "catalogue/schema.h"
#include "explorer/CatalogueTree.h"
#include "platform/system/Paths.h"
#include "printing/ReportReader.h"
#include "printing/ReportSelection.h"
#include "printing/textBlocks.h"

// Reports of names and descriptions, which are read whole when they are opened.

using namespace Qt::StringLiterals;

/// Names as the tree of the view shows them: each entry directly below the start is an entry of the report, with what
/// stands below it.
QString ReportReader::outlineNames(bool study) {
    const QString suffix = request_.table.isEmpty() ? request_.sourceTable : request_.table;
    const EntryTree tree = EntryTree::read(catalogue_, suffix.isEmpty() && study ? studyTable() : suffix, study);
    const QString key = selectedKey(request_);
    const int start = key.isEmpty() ? -1 : tree.find(key);
    if (start < 0 && !key.isEmpty())
        return notThere(study ? u"Die Studie %1 ist nicht mehr im Katalog."_s
                              : u"Die Kategorie %1 ist nicht mehr im Katalog."_s,
                        key);
    QString view;
    for (int i = 1; i <= views_.lastRow(); ++i)
        if (views_.at(i, ViewTable::Table).compare(suffix, Qt::CaseInsensitive) == 0)
            view = views_.at(i, languages_.words == 2 ? ViewTable::NameEnglish : ViewTable::Name);
    const auto shown = [&](const EntryTree::Entry& entry) {
        return shownText(entry.key, languages_.name(entry.name), false);
    };
    const QString title = start < 0 ? word(u"Namen der"_s).trimmed() + u' ' + view : shown(tree.entry(start));
    outline_.title = start < 0 ? title : word(u"Namen der"_s).trimmed() + u' ' + view + u": "_s + title;

    const auto lines = [&](std::vector<Block>& blocks, const EntryTree::Entry& entry, int level) {
        TextBlock line{.style = TextBlock::Style::Name, .level = level, .runs = {{.text = shown(entry)}}};
        if (study && line.runs.front().text != entry.key)
            line.name = entry.key;
        const QString other = languages_.otherName(entry.name);
        if (!other.isEmpty())
            line.runs.push_back({.text = u" / "_s + other, .italic = true});
        if (!entry.year.isEmpty() && !line.runs.front().text.contains(entry.year))
            line.runs.push_back({.text = u" ("_s + entry.year + u')'});
        blocks.push_back(std::move(line));
    };
    const std::vector<EntryTree::Step> steps = tree.below(start, request_.MaxLevels > 0 ? request_.MaxLevels : 0);
    FactsBlock facts;
    if (study && start >= 0)
        facts.facts.emplace_back(word(u"Nummer"_s), tree.entry(start).key);
    facts.facts.emplace_back(word(u"Einträge"_s), QString::number(steps.size()));
    facts.facts.emplace_back(word(u"Katalog"_s),
                             databaseTitle_.isEmpty() ? Paths::fileOf(request_.DatabaseFile) : databaseTitle_);
    std::vector<Block> head{headingBlock(title, 0), facts};
    if (steps.empty())
        head.push_back(textBlock(TextBlock::Style::Note, word(u"Darunter steht kein Eintrag."_s)));
    addMade({.kind = ReportEntry::Kind::Chapter, .level = 0, .name = {}, .title = outline_.title}, head);
    for (size_t i = 0; i < steps.size();) {
        const EntryTree::Entry& top = tree.entry(steps[i].entry);
        std::vector<Block> blocks;
        do {
            lines(blocks, tree.entry(steps[i].entry), steps[i].depth);
            ++i;
        } while (i < steps.size() && steps[i].depth > 0);
        addMade({.kind = ReportEntry::Kind::Text, .level = 1, .name = {}, .title = shown(top)}, blocks);
    }
    if (const std::vector<int> left = start < 0 ? tree.unreached() : std::vector<int>(); !left.empty()) {
        const QString words = word(u"Einträge, zu denen kein Weg führt:"_s);
        std::vector<Block> blocks{textBlock(TextBlock::Style::Caption, words)};
        for (const int entry : left)
            lines(blocks, tree.entry(entry), 1);
        addMade({.kind = ReportEntry::Kind::Text, .level = 1, .name = {}, .title = {}}, blocks);
    }
    return {};
}

QString ReportReader::outlineDatabase() {
    const QString table = u"tkey_Database"_s;
    const QStringList columns = catalogue_.present(table, {u"dt_DatabaseTitle"_s, u"dt_EnDatabaseTitle"_s,
                                                           u"dt_DatabaseDescription"_s, u"dt_EnDatabaseDescription"_s});
    const QString none = word(u"Beschreibung nicht gefunden!"_s);
    if (columns.isEmpty())
        return none;
    const dao::RecordsetPtr rows = catalogue_.rows(u"SELECT "_s + columns.join(u", "_s) + u" FROM "_s + table);
    if (rows->Eof())
        return none;
    return addDescription({textIn(*rows, u"dt_DatabaseTitle"_s), textIn(*rows, u"dt_EnDatabaseTitle"_s)},
                          word(u"Datenbankbeschreibung"_s), {},
                          {textIn(*rows, u"dt_DatabaseDescription"_s), textIn(*rows, u"dt_EnDatabaseDescription"_s)});
}

QString ReportReader::outlineDescription(bool study) {
    const QString suffix = study ? studyTable() : request_.sourceTable, key = selectedKey(request_);
    const QString table = schema::entryTableName(suffix), of = study ? u"Study"_s : u"Indicator"_s;
    const QString name = study ? u"StudyTitle"_s : u"IndicatorName"_s;
    const QStringList columns =
        catalogue_.present(table, {u"dt_"_s + name, u"dt_En"_s + name, u"dt_"_s + of + u"Description"_s,
                                   u"dt_En"_s + of + u"Description"_s, u"dt_Year"_s});
    const QString gone = notThere(
        study ? u"Die Studie %1 ist nicht mehr im Katalog."_s : u"Die Kategorie %1 ist nicht mehr im Katalog."_s, key);
    if (columns.isEmpty() || (!study && !dao::textToNumber(key)))
        return gone;
    const dao::RecordsetPtr rows =
        catalogue_.rows(u"SELECT "_s + columns.join(u", "_s) + u" FROM "_s + table + u" WHERE "_s +
                        (study ? u"id_StudyNo = "_s + quoted(key) : u"id = "_s + key) + u';');
    if (rows->Eof())
        return gone;
    FactsBlock facts;
    if (study) {
        facts.facts.emplace_back(word(u"Nummer"_s), key);
        if (const QString year = textIn(*rows, u"dt_Year"_s); !year.isEmpty())
            facts.facts.emplace_back(word(u"Jahr"_s), year);
    }
    return addDescription(
        {textIn(*rows, u"dt_"_s + name), textIn(*rows, u"dt_En"_s + name)}, key, std::move(facts),
        {textIn(*rows, u"dt_"_s + of + u"Description"_s), textIn(*rows, u"dt_En"_s + of + u"Description"_s)});
}

/// @param key what an entry without a name is called
QString ReportReader::addDescription(const BothTexts& name, const QString& key, FactsBlock facts,
                                     const BothTexts& description) {
    if (languages_.shown(description).empty())
        return word(u"Beschreibung nicht gefunden!"_s);
    const QString title = languages_.name(name).isEmpty() ? key : languages_.name(name);
    std::vector<Block> blocks{headingBlock(title, 0)};
    addOtherName(blocks, languages_.otherName(name), languages_);
    facts.facts.emplace_back(word(u"Katalog"_s),
                             databaseTitle_.isEmpty() ? Paths::fileOf(request_.DatabaseFile) : databaseTitle_);
    blocks.push_back(std::move(facts));
    addTexts(blocks, TextBlock::Style::Body, description, languages_);
    addMade({.kind = ReportEntry::Kind::Chapter, .level = 0, .name = {}, .title = title}, blocks);
    outline_.title = title;
    return {};
}
