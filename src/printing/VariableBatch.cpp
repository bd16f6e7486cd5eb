#include "printing/VariableBatch.h"

#include "catalogue/StudyRows.h"
#include "catalogue/schema.h"
#include "charts/StoredGraph.h"
#include "charts/pictures.h"
#include "explorer/AssignmentList.h"
#include "explorer/showCardFile.h"
#include "platform/dao/TextOrder.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString variableTable = u"tkey_Variable"_s, valueTable = u"tkey_Value"_s;
/// How often what another program has written to meanwhile is read again.
constexpr int mostTries = 5;
/// Values that are read at a time of several variables: more would take longer than an event may wait.
constexpr int mostValues = 20'000;
/// Characters that a value counts for in what a batch takes.
constexpr qsizetype charactersOfAValue = 30;
/// A larger file is no show card; the whole of one is held while it is read.
constexpr qint64 mostCardBytes = 64LL << 20;

} // namespace

VariableBatch::VariableBatch(ReportCatalogue& catalogue, Spool& spool, const VariableWishes& wishes,
                             std::vector<VariableRecord> variables)
    : catalogue_(catalogue), spool_(spool), wishes_(wishes), asked_(std::move(variables)) {
    for (size_t i = 0; i < asked_.size(); ++i)
        byName_[dao::foldedText(asked_[i].name)].push_back(static_cast<int>(i));
}

QString VariableBatch::condition(const QString& nameColumn) const {
    QStringList names;
    for (const VariableRecord& variable : asked_)
        names << quoted(variable.name);
    return u"fi_StudyNo = "_s + quoted(asked_.front().study) + u" AND "_s + nameColumn + u" IN ("_s +
           names.join(u", "_s) + u')';
}

std::vector<qint64> VariableBatch::version() {
    QStringList tables{variableTable};
    if (catalogue_.hasTable(valueTable))
        tables << valueTable;
    return catalogue_.version(tables);
}

void VariableBatch::readCatalogue() {
    for (int tries = 0; tries < mostTries; ++tries) {
        const std::vector<qint64> before = version();
        variables_ = asked_;
        characters_ = 0;
        isTooLarge_ = !readValues();
        if (isTooLarge_)
            return;
        readRows();
        for (const AssignmentView& view : wishes_.views)
            readAssignments(view);
        if (version() == before)
            break;
    }
    isRead_ = true;
}

bool VariableBatch::step() {
    if (!isRead_)
        readCatalogue();
    else if (nextCard_ < variables_.size())
        for (VariableRecord::Picture& picture : variables_[nextCard_++].cards)
            picture = card(picture.name, picture.mark);
    return !isTooLarge_ && wishes_.cards && nextCard_ < variables_.size();
}

/// The record that a row of this name is for: rows that share one, which only a damaged catalogue has, each take the
/// next; null if there is none.
VariableRecord* VariableBatch::next(QHash<QString, size_t>& taken, const QString& name) {
    const QString key = dao::foldedText(name);
    const auto found = byName_.constFind(key);
    if (found == byName_.constEnd())
        return nullptr;
    size_t& place = taken[key];
    return place < found->size() ? &variables_[static_cast<size_t>((*found)[place++])] : nullptr;
}

void VariableBatch::readRows() {
    const QString gone = wishes_.languages.word(u"Diese Variable ist nicht mehr im Katalog."_s);
    for (VariableRecord& variable : variables_)
        variable.fault = gone;
    QStringList wanted{u"dt_VarGroup"_s, u"dt_Missing"_s, u"dt_FileNameShowCard"_s, u"dt_FileNameEnShowCard"_s};
    if (wishes_.question)
        wanted << u"dt_QuestionText"_s << u"dt_EnQuestionText"_s;
    if (wishes_.table)
        wanted << u"dt_Table"_s << u"dt_TableLayout"_s;
    if (wishes_.graph)
        wanted << u"dt_Graph"_s << u"dt_GraphLayout"_s;
    const QStringList columns = catalogue_.present(variableTable, wanted);
    const dao::RecordsetPtr rows =
        catalogue_.rows(u"SELECT "_s + (QStringList{u"id_VarName"_s} + columns).join(u", "_s) + u" FROM "_s +
                        variableTable + u" WHERE "_s + condition(u"id_VarName"_s) + u';');
    QHash<QString, size_t> taken;
    for (; !rows->Eof(); rows->MoveNext()) {
        VariableRecord* const variable = next(taken, rows->value(0).toText());
        if (!variable)
            continue;
        variable->fault.clear();
        variable->missing = textIn(*rows, u"dt_Missing"_s);
        variable->group = wishes_.groups.value(dao::foldedText(textIn(*rows, u"dt_VarGroup"_s)));
        variable->groupWord = wishes_.groupWord;
        const BothTexts files{textIn(*rows, u"dt_FileNameShowCard"_s), textIn(*rows, u"dt_FileNameEnShowCard"_s)};
        if (wishes_.cards)
            for (const ReportLanguages::Shown& shown : wishes_.languages.shown(files))
                variable->cards.push_back({.name = shown.text, .mark = shown.mark, .fault = {}});
        readMemos(*variable, *rows);
    }
}

void VariableBatch::readMemos(VariableRecord& variable, const dao::Recordset& row) {
    variable.question = {textIn(row, u"dt_QuestionText"_s), textIn(row, u"dt_EnQuestionText"_s)};
    variable.table = textIn(row, u"dt_Table"_s);
    variable.tableLayout = textIn(row, u"dt_TableLayout"_s);
    variable.graphLayout = textIn(row, u"dt_GraphLayout"_s);
    const QString graph = textIn(row, u"dt_Graph"_s);
    variable.hasGraph = !graph.isEmpty();
    if (const std::optional<QByteArray> bytes = bytesOf(graph); bytes && !bytes->isEmpty())
        variable.graph = spool_.put(*bytes);
    characters_ += variable.question.original.size() + variable.question.english.size() + variable.table.size() +
                   variable.tableLayout.size() + graph.size();
}

/// @return false if there are too many
bool VariableBatch::readValues() {
    if (!catalogue_.has(valueTable, {u"fi_StudyNo"_s, u"fi_VarName"_s, u"dt_Value"_s, u"dt_Label"_s}))
        return true;
    const bool several = asked_.size() > 1;
    const int limit = several ? mostValues : VariableValues::most;
    const dao::RecordsetPtr rows = catalogue_.rows(
        u"SELECT TOP %1 fi_VarName, dt_Value, dt_Label FROM %2 WHERE %3 ORDER BY fi_VarName, dt_Value;"_s.arg(limit + 1)
            .arg(valueTable, condition(u"fi_VarName"_s)));
    const bool cut = rows->RecordCount() > limit;
    if (cut && several)
        return false;
    for (int row = 0; !rows->Eof() && row < limit; rows->MoveNext(), ++row)
        for (const int at : byName_.value(dao::foldedText(rows->value(0).toText())))
            variables_[static_cast<size_t>(at)].values.push_back({rows->value(1).toText(), rows->value(2).toText()});
    variables_.front().valuesCut = cut;
    characters_ += charactersOfAValue * rows->RecordCount();
    return true;
}

void VariableBatch::readAssignments(const AssignmentView& view) {
    QStringList names;
    for (const VariableRecord& variable : asked_)
        names << variable.name;
    const dao::RecordsetPtr rows = catalogue_.rows(categoriesStatement(view.table, asked_.front().study, names));
    QHash<QString, QStringList> categories;
    for (; !rows->Eof(); rows->MoveNext()) {
        const BothTexts both{rows->value(1).toText(), rows->value(2).toText()};
        const QString other = wishes_.languages.otherName(both);
        QString name = wishes_.languages.name(both);
        if (!other.isEmpty())
            name += u" / "_s + other;
        categories[dao::foldedText(rows->value(0).toText())] << name;
    }
    for (VariableRecord& variable : variables_)
        if (const QStringList found = categories.value(dao::foldedText(variable.name)); !found.isEmpty())
            variable.assigned.push_back({view.name, found.join(u"; "_s)});
}

VariableRecord::Picture VariableBatch::card(const QString& name, const QString& mark) {
    VariableRecord::Picture picture{.name = name, .mark = mark, .fault = {}};
    const auto word = [&](const QString& german) { return wishes_.languages.word(german); };
    const QString path = showCardFile(wishes_.catalogue, name);
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isFile()) {
        picture.fault = word(faultWords(PictureFault::Missing));
        return picture;
    }
    if (info.size() > mostCardBytes) {
        picture.fault = word(u"Die Datei des Bildes ist zu groß."_s);
        return picture;
    }
    picture.bytes = spool_.putFile(path);
    if (picture.bytes < 0)
        picture.fault = word(faultWords(PictureFault::Missing));
    return picture;
}
