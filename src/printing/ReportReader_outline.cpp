#include "printing/ReportReader.h"

#include "catalogue/StudyRows.h"
#include "catalogue/schema.h"
#include "explorer/CatalogueTree.h"
#include "platform/dao/TextOrder.h"
#include "platform/system/Paths.h"
#include "printing/ReportSelection.h"
#include "printing/textBlocks.h"

#include <QDate>
#include <QFileInfo>
#include <QSet>
#include <algorithm>

// What is in a report of variables and in which order: names and labels, read when it is opened.

using namespace Qt::StringLiterals;

namespace {

/// A list of a category's variables gets a cover where it gets contents.
constexpr int variablesOfABook = 10;
/// Variables that a group has on average, for chapters by groups.
constexpr size_t leastOfAGroup = 3;

} // namespace

QString ReportReader::makeOutline() {
    readDatabaseTitle();
    switch (request_.ReportType) {
    case ReportKind::Variables:
        return outlineVariables();
    case ReportKind::Category:
        return outlineCategory();
    case ReportKind::Database:
        return outlineDatabase();
    case ReportKind::StudyDescription:
        return outlineDescription(true);
    case ReportKind::CategoryDescription:
        return outlineDescription(false);
    case ReportKind::CategoryNames:
        return outlineNames(false);
    case ReportKind::StudyNames:
        return outlineNames(true);
    }
    return word(u"Diese Art von Bericht gibt es nicht."_s);
}

QString ReportReader::notThere(const QString& german, const QString& key) const {
    return word(german).arg(key);
}

/// The table of studies: that of the selection's view if it is one of studies, else that of the first view.
QString ReportReader::studyTable() const {
    const bool own = request_.ReportType == ReportKind::Variables || request_.ReportType == ReportKind::StudyNames ||
                     request_.ReportType == ReportKind::StudyDescription;
    for (int view = 1; own && view <= views_.lastRow(); ++view)
        if (views_.at(view, ViewTable::Type) == u"1" &&
            views_.at(view, ViewTable::Table).compare(request_.sourceTable, Qt::CaseInsensitive) == 0)
            return request_.sourceTable;
    const QString first = views_.at(1, ViewTable::Table);
    return first.isEmpty() ? u"Study"_s : first;
}

void ReportReader::readDatabaseTitle() {
    const QString table = u"tkey_Database"_s;
    const QStringList columns = catalogue_.present(table, {u"dt_DatabaseTitle"_s, u"dt_EnDatabaseTitle"_s});
    if (columns.isEmpty())
        return;
    const dao::RecordsetPtr rows = catalogue_.rows(u"SELECT "_s + columns.join(u", "_s) + u" FROM "_s + table);
    if (!rows->Eof())
        databaseTitle_ =
            languages_.name({textIn(*rows, u"dt_DatabaseTitle"_s), textIn(*rows, u"dt_EnDatabaseTitle"_s)});
}

void ReportReader::readGroups() {
    const QString table = u"tkey_VarGroups"_s;
    if (!catalogue_.has(table, {u"id_VarGroup"_s, u"dt_VarGroupName"_s}))
        return;
    const QStringList columns = catalogue_.present(table, {u"dt_VarGroupName"_s, u"dt_VarGroupNameEn"_s});
    const dao::RecordsetPtr rows =
        catalogue_.rows(u"SELECT id_VarGroup, "_s + columns.join(u", "_s) + u" FROM "_s + table);
    for (; !rows->Eof(); rows->MoveNext())
        if (const QString key = dao::foldedText(rows->value(0).toText()); !key.isEmpty())
            wishes_.groups.insert(key, {textIn(*rows, u"dt_VarGroupName"_s), textIn(*rows, u"dt_VarGroupNameEn"_s)});
}

/// What is known of studies by their numbers; one that has no row is known by its number.
void ReportReader::readStudies(const QString& suffix, const QStringList& numbers) {
    const QString table = schema::entryTableName(suffix);
    const QStringList columns = catalogue_.present(table, {u"id_StudyNo"_s, u"dt_StudyTitle"_s, u"dt_EnStudyTitle"_s,
                                                           u"dt_Year"_s, u"dt_WeightHH"_s, u"dt_WeightRE"_s});
    if (!columns.contains(u"id_StudyNo"_s))
        return;
    QString statement = u"SELECT "_s + columns.join(u", "_s) + u" FROM "_s + table;
    if (numbers.size() == 1)
        statement += u" WHERE id_StudyNo = "_s + quoted(numbers.front());
    QSet<QString> wanted;
    for (const QString& number : numbers)
        wanted.insert(dao::foldedText(number));
    const dao::RecordsetPtr rows = catalogue_.rows(statement);
    for (; !rows->Eof(); rows->MoveNext()) {
        Study study{.number = textIn(*rows, u"id_StudyNo"_s),
                    .year = textIn(*rows, u"dt_Year"_s),
                    .weights = {},
                    .title = {textIn(*rows, u"dt_StudyTitle"_s), textIn(*rows, u"dt_EnStudyTitle"_s)}};
        QStringList weights{textIn(*rows, u"dt_WeightHH"_s), textIn(*rows, u"dt_WeightRE"_s)};
        weights.removeAll(QString());
        weights.removeDuplicates();
        study.weights = weights.join(u", "_s);
        if (const QString key = dao::foldedText(study.number); wanted.contains(key))
            studies_.insert(key, study);
    }
}

/// Everything that the variables need besides their own rows.
void ReportReader::findAssignmentViews() {
    wishes_.languages = languages_;
    wishes_.catalogue = request_.DatabaseFile;
    wishes_.question = request_.CompleteQuestionText;
    wishes_.table = request_.AnalysisTable;
    wishes_.graph = request_.AnalysisGraph;
    wishes_.cards = request_.ShowCards;
    const QString& groupName = languages_.words == 2 ? options_.VarGroupInfoNameEnglish : options_.VarGroupInfoName;
    wishes_.groupWord = options_.ShowVarGroupInfo && !groupName.isEmpty() ? groupName : word(u"Gruppe"_s);
    readGroups();
    for (int view = 1; view <= views_.lastRow(); ++view) {
        const QString table = views_.at(view, ViewTable::Table);
        if (views_.at(view, ViewTable::Type) != u"1" &&
            catalogue_.has(schema::assignmentTableName(table), {u"fid"_s, u"fi_StudyNo"_s, u"fi_VariableNo"_s}) &&
            catalogue_.has(schema::entryTableName(table),
                           {u"id"_s, u"dt_IndicatorName"_s, u"dt_EnIndicatorName"_s, u"Order"_s}))
            wishes_.views.push_back(
                {table, views_.at(view, languages_.words == 2 ? ViewTable::NameEnglish : ViewTable::Name)});
    }
}

/// Leaves out variables with neither label nor question text, as the request says.
QString ReportReader::emptyCondition(const QString& prefix) {
    const auto anyOf = [&](const QStringList& columns) {
        QStringList texts{u"''"_s}; // an older catalogue may have neither
        for (const QString& column : catalogue_.present(u"tkey_Variable"_s, columns))
            texts << prefix + column;
        return u" AND Trim("_s + texts.join(u" & "_s) + u") <> ''"_s;
    };
    return (request_.NoEmpty ? anyOf({u"dt_VarLabel"_s, u"dt_QuestionText"_s}) : QString()) +
           (request_.NoEmptyEn ? anyOf({u"dt_EnVarLabel"_s, u"dt_EnQuestionText"_s}) : QString());
}

std::vector<ReportReader::Listed> ReportReader::listed(const QString& statement) {
    const dao::RecordsetPtr rows = catalogue_.rows(statement);
    const auto place = [&](const QString& column) { return rows->hasField(column) ? rows->indexOf(column) : -1; };
    const int study = place(u"fi_StudyNo"_s), name = place(u"id_VarName"_s), group = place(u"dt_VarGroup"_s),
              label = place(u"dt_VarLabel"_s), english = place(u"dt_EnVarLabel"_s);
    const auto text = [&](int column) { return column < 0 ? QString() : rows->value(column).toText(); };
    std::vector<Listed> found;
    found.reserve(static_cast<size_t>(rows->RecordCount()));
    for (; !rows->Eof(); rows->MoveNext())
        found.push_back({text(study), text(name), dao::foldedText(text(group)), {text(label), text(english)}});
    return found;
}

void ReportReader::addEntry(const ReportEntry& entry, const Source& source) {
    outline_.entries.push_back(entry);
    sources_.push_back(source);
    labels_.emplace_back();
}

void ReportReader::addMade(const ReportEntry& entry, const std::vector<Block>& blocks) {
    addEntry(entry, {.what = Source::What::Made, .key = {}, .place = spool_.put(toBytes(blocks))});
}

void ReportReader::addVariable(const Listed& variable, int level) {
    addEntry({.kind = ReportEntry::Kind::Variable,
              .level = level,
              .name = variable.name,
              .title = languages_.name(variable.label)},
             {.what = Source::What::Variable, .key = variable.study});
    labels_.back() = variable.label;
}

void ReportReader::addStudyChapter(const QString& number) {
    const Study of = study(number);
    addEntry({.kind = ReportEntry::Kind::Chapter,
              .level = 0,
              .name = of.number,
              .title = studyTitle(languages_, of.number, of.title),
              .newPage = true},
             {.what = Source::What::Study, .key = of.number});
}

/// The variables of a study below its chapter. Groups of variables get chapters of their own where they follow one
/// another in the order of the study; where they take turns a chapter would hold hardly more than its heading.
void ReportReader::addVariables(const std::vector<Listed>& variables, int level) {
    size_t runs = 0;
    bool anyGroup = false;
    for (size_t i = 0; i < variables.size(); ++i) {
        runs += i == 0 || variables[i].group != variables[i - 1].group ? 1 : 0;
        anyGroup = anyGroup || wishes_.groups.contains(variables[i].group);
    }
    const bool chapters = anyGroup && runs > 1 && variables.size() >= leastOfAGroup * runs;
    const Listed* before = nullptr;
    int below = level;
    for (const Listed& variable : variables) {
        const bool named = wishes_.groups.contains(variable.group);
        if (chapters && (!before || before->group != variable.group) && (named || before)) {
            const BothTexts group = wishes_.groups.value(variable.group);
            QString title = named ? languages_.name(group) : word(u"Ohne Gruppe"_s);
            if (title.isEmpty())
                title = variable.group;
            std::vector<Block> blocks{headingBlock(title, level)};
            addMade({.kind = ReportEntry::Kind::Chapter, .level = level, .name = {}, .title = title}, blocks);
            below = level + 1;
        }
        addVariable(variable, below);
        before = &variable;
    }
}

QString ReportReader::outlineVariables() {
    findAssignmentViews();
    const QString suffix = studyTable(), key = selectedKey(request_), table = u"tkey_Variable"_s;
    const QStringList columns = catalogue_.present(
        table, {u"fi_StudyNo"_s, u"id_VarName"_s, u"dt_VarLabel"_s, u"dt_EnVarLabel"_s, u"dt_VarGroup"_s});
    const QString select = u"SELECT "_s + columns.join(u", "_s) + u" FROM "_s + table + u" WHERE fi_StudyNo = "_s;
    if (!request_.variable.isEmpty()) {
        const std::vector<Listed> one =
            listed(select + quoted(key) + u" AND id_VarName = "_s + quoted(request_.variable) + u';');
        if (one.empty())
            return word(u"Die Variable %1 der Studie %2 ist nicht mehr im Katalog."_s).arg(request_.variable, key);
        readStudies(suffix, {key});
        addVariable(one.front(), 0);
        outline_.title = (one.front().name + u' ' + languages_.name(one.front().label)).trimmed() + u" – "_s +
                         studyTitle(languages_, study(key).number, study(key).title);
        return {};
    }
    const EntryTree tree = EntryTree::read(catalogue_, suffix, true);
    const int at = tree.find(key);
    if (at < 0)
        return notThere(u"Die Studie %1 ist nicht mehr im Katalog."_s, key);
    QStringList numbers;
    if (!tree.entry(at).isGroup)
        numbers << tree.entry(at).key;
    for (const EntryTree::Step& step : tree.below(at))
        if (!tree.entry(step.entry).isGroup)
            numbers << tree.entry(step.entry).key;
    if (numbers.isEmpty())
        return notThere(u"Zur Gruppe %1 gehört keine Studie."_s, key);
    readStudies(suffix, numbers);
    const QString order = columns.isEmpty() || !catalogue_.has(table, {u"dt_Position"_s})
                              ? QString()
                              : u" ORDER BY fi_StudyNo, dt_Position"_s;
    for (const QString& number : numbers) {
        const std::vector<Listed> variables =
            listed(select + quoted(number) + emptyCondition(QString()) + order + u';');
        if (variables.empty() && numbers.size() == 1)
            return notThere(u"Die Studie %1 hat keine Variablen, die der Bericht zeigen kann."_s, number);
        addStudyChapter(number);
        if (variables.empty())
            addMade({.kind = ReportEntry::Kind::Text, .level = 1, .name = {}, .title = {}},
                    {textBlock(TextBlock::Style::Note, word(u"Diese Studie hat keine Variablen."_s))});
        addVariables(variables, 1);
    }
    const EntryTree::Entry& of = tree.entry(at);
    FactsBlock facts;
    facts.facts.emplace_back(of.isGroup ? word(u"Gruppe"_s) : word(u"Studie"_s), of.key);
    if (!of.year.isEmpty())
        facts.facts.emplace_back(word(u"Jahr"_s), of.year);
    if (of.isGroup)
        facts.facts.emplace_back(word(u"Studien"_s), QString::number(numbers.size()));
    const QString name = languages_.name(of.name);
    makeCover(u"Codebuch"_s, name.isEmpty() ? of.key : name, languages_.otherName(of.name), std::move(facts));
    outline_.title = word(u"Codebuch"_s) + u' ' + studyTitle(languages_, of.key, of.name);
    return {};
}

QString ReportReader::outlineCategory() {
    findAssignmentViews();
    const QString key = selectedKey(request_), entries = schema::entryTableName(request_.sourceTable),
                  relation = schema::assignmentTableName(request_.sourceTable);
    const QStringList columns =
        catalogue_.present(entries, {u"dt_IndicatorName"_s, u"dt_EnIndicatorName"_s, u"dt_IndicatorDescription"_s,
                                     u"dt_EnIndicatorDescription"_s});
    const QString gone = notThere(u"Die Kategorie %1 ist nicht mehr im Katalog."_s, key);
    if (!dao::textToNumber(key) || columns.isEmpty())
        return gone;
    const dao::RecordsetPtr entry =
        catalogue_.rows(u"SELECT "_s + columns.join(u", "_s) + u" FROM "_s + entries + u" WHERE id = "_s + key + u';');
    if (entry->Eof())
        return gone;
    const BothTexts name{textIn(*entry, u"dt_IndicatorName"_s), textIn(*entry, u"dt_EnIndicatorName"_s)};
    const QString title = languages_.name(name).isEmpty() ? key : languages_.name(name);
    QStringList fields;
    for (const QString& column : catalogue_.present(
             u"tkey_Variable"_s, {u"fi_StudyNo"_s, u"id_VarName"_s, u"dt_VarLabel"_s, u"dt_EnVarLabel"_s}))
        fields << u"tkey_Variable."_s + column;
    std::vector<Listed> variables =
        listed(u"SELECT "_s + fields.join(u", "_s) + u" FROM "_s + relation + u" INNER JOIN tkey_Variable ON ("_s +
               relation + u".fi_VariableNo = tkey_Variable.id_VarName) AND ("_s + relation +
               u".fi_StudyNo = tkey_Variable.fi_StudyNo) WHERE "_s + relation + u".fid = "_s + key +
               emptyCondition(u"tkey_Variable."_s) + u" ORDER BY "_s + relation +
               u".fi_StudyNo, tkey_Variable.dt_Position;"_s);
    QSet<QString> met;
    std::erase_if(variables, [&](const Listed& one) {
        const QString both = dao::foldedText(one.study) + QChar(0) + dao::foldedText(one.name);
        const bool again = met.contains(both);
        met.insert(both);
        return again;
    });
    if (variables.empty())
        return notThere(u"Der Kategorie „%1“ selbst ist keine Variable zugeordnet."_s, title);
    QStringList studies;
    for (const Listed& variable : variables)
        if (studies.isEmpty() || dao::foldedText(studies.back()) != dao::foldedText(variable.study))
            studies << variable.study;
    readStudies(studyTable(), studies);

    std::vector<Block> blocks{headingBlock(title, 0)};
    addOtherName(blocks, languages_.otherName(name), languages_);
    addTexts(blocks, TextBlock::Style::Body,
             {textIn(*entry, u"dt_IndicatorDescription"_s), textIn(*entry, u"dt_EnIndicatorDescription"_s)},
             languages_);
    addMade({.kind = ReportEntry::Kind::Chapter, .level = 0, .name = {}, .title = title, .newPage = true}, blocks);
    // A chapter for each study only where it holds more than the heading takes.
    const bool chapters = studies.size() > 1 && variables.size() > 2 * static_cast<size_t>(studies.size());
    const Listed* before = nullptr;
    for (const Listed& variable : variables) {
        if (chapters && (!before || dao::foldedText(before->study) != dao::foldedText(variable.study))) {
            const Study of = study(variable.study);
            const QString chapter = studyTitle(languages_, of.number, of.title);
            addMade({.kind = ReportEntry::Kind::Chapter, .level = 1, .name = of.number, .title = chapter},
                    {headingBlock(chapter, 1)});
        }
        addVariable(variable, chapters ? 2 : 1);
        before = &variable;
    }
    outline_.title = title;
    if (outline_.variables() >= variablesOfABook) {
        FactsBlock facts;
        facts.facts.emplace_back(word(u"Studien"_s), QString::number(studies.size()));
        makeCover(u"Variablen einer Kategorie"_s, title, languages_.otherName(name), std::move(facts));
    }
    return {};
}

/// What a codebook holds, in words.
QString ReportReader::contentsWords() const {
    QStringList parts{word(u"Werte"_s)};
    const std::pair<bool, QString> wished[] = {{wishes_.question, u"Fragetexte"_s},
                                               {wishes_.table, u"gespeicherte Tabellen"_s},
                                               {wishes_.graph, u"gespeicherte Grafiken"_s},
                                               {wishes_.cards, u"ShowCards zu den Fragen"_s}};
    for (const auto& [is, german] : wished)
        if (is)
            parts << word(german);
    return parts.join(u", "_s);
}

/// @param kind what sort of report it is, in German
void ReportReader::makeCover(const QString& kind, const QString& title, const QString& other, FactsBlock facts) {
    std::vector<Block>& cover = outline_.cover;
    cover.push_back(textBlock(TextBlock::Style::Caption, word(kind)));
    cover.push_back(headingBlock(title, 0));
    addOtherName(cover, other, languages_);
    facts.facts.emplace_back(word(u"Variablen"_s), QString::number(outline_.variables()));
    facts.facts.emplace_back(word(u"Inhalt"_s), contentsWords());
    const bool both = languages_.original && languages_.english;
    facts.facts.emplace_back(word(u"Sprache der Inhalte"_s),
                             both ? word(u"Original und Englisch"_s) : languages_.markOf(languages_.english));
    const QString file = Paths::fileOf(request_.DatabaseFile);
    facts.facts.emplace_back(word(u"Katalog"_s),
                             databaseTitle_.isEmpty() ? file : databaseTitle_ + u" ("_s + file + u')');
    facts.facts.emplace_back(word(u"Datum"_s), reportDate(QDate::currentDate(), languages_.words));
    cover.push_back(std::move(facts));
    if (wishes_.table || wishes_.graph)
        cover.push_back(textBlock(
            TextBlock::Style::Note,
            word(u"Gespeicherte Tabellen und Grafiken stehen da, wie sie im Katalog liegen. Wann sie gerechnet wurden, "
                 "hält er nicht fest."_s)));
}
