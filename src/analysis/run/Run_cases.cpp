#include "analysis/run/Run.h"

#include "analysis/run/caseData.h"
#include "app/globals.h"
#include "catalogue/StudyRows.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

#include <algorithm>

/// The steps of a run that settle which cases it is about: the study's cases, their weight, their files, the
/// filter.

using namespace Qt::StringLiterals;

bool Run::readRound() {
    CountFacts& facts = round_.facts;
    if (isComparison()) {
        if (!readComparisonRound())
            return false;
    } else {
        round_.study = r_.dbcStudy.value;
        round_.weightVariable = r_.weightVariable();
        facts.table = r_.dtTable;
        facts.field = r_.dtField;
        facts.variable = r_.dbcVariable.value;
        facts.table2 = r_.dtTable2;
        facts.field2 = r_.dtField2;
        facts.variable2 = r_.dbcVariable2.value;
    }
    facts.mode = r_.mode;
    facts.weightVariable = round_.weightVariable;
    facts.weight = r_.Option3;
    facts.chkDescGroup = r_.chkDescGroup;
    facts.flip = r_.flipInForce();
    facts.part = r_.optFilter == FilterKind::FilterParts && !r_.dbcParts.isEmpty() && r_.dbcParts.value != "user"_L1;
    facts.partCriteria = r_.dtCriteria;
    facts.userFilter = r_.optFilter == FilterKind::FilterUser && !r_.txtFilter.isEmpty();
    facts.IncludeNinXTabPercent = options_.IncludeNinXTabPercent;
    return true;
}

/// Takes an entry as the round; its filter becomes the window's.
bool Run::readComparisonRound() {
    const ComparisonEntry& e = entry();
    round_.study = e.at(ComparisonEntry::Study);
    round_.weightVariable = e.at(ComparisonEntry::Weight);
    round_.facts.variable = e.at(ComparisonEntry::Variable);
    round_.facts.table = e.at(ComparisonEntry::Table);
    round_.facts.field = e.at(ComparisonEntry::Field);
    r_.dtMissing = e.at(ComparisonEntry::Missing);
    r_.dtYear = e.at(ComparisonEntry::Year);
    r_.dtVarGroup = e.at(ComparisonEntry::Group);
    // A part is known by its number: what is written beside it is for the eye.
    const QString& filter = e.at(ComparisonEntry::Filter);
    const QString& kind = e.at(ComparisonEntry::FilterInfo);
    const bool part = !kind.isEmpty() && kind != "user"_L1;
    if (filter.isEmpty() && !part) {
        r_.optFilter = FilterKind::noFilter;
        return true;
    }
    r_.dbcParts = {kind, e.at(ComparisonEntry::PartText)};
    r_.optFilter = part ? FilterKind::FilterParts : FilterKind::FilterUser;
    r_.txtFilter = filter;
    r_.dtCriteria.clear();
    return !part || loadPartCriteria();
}

/// Reads the criteria from the catalogue: the entry's study need not be the one whose parts the window lists.
bool Run::loadPartCriteria() {
    bool found = false;
    const bool done = step([&] {
        const dao::RecordsetPtr parts = db_->OpenRecordset(u"tkey_Parts"_s);
        parts->FindFirst(u"id_Part = "_s + r_.dbcParts.value + u" AND fi_StudyNo = "_s + quoted(round_.study));
        found = !parts->NoMatch();
        if (found)
            r_.dtCriteria = parts->text(u"dt_SelectionCriteria"_s);
    });
    return done &&
           (found || endWith(round_.study + u", "_s + r_.txtFilter + u" "_s + TranslateText(u"nicht gefunden"_s)));
}

/// A stored comparison may outlive what it names. Without the study there is no run; a variable that has gone is
/// reported, and its stored table and field are used as they stand.
bool Run::tellWhatHasGone(bool studyFound) {
    if (!studyFound)
        return endWith(round_.study + u" "_s + TranslateText(u"nicht gefunden"_s));
    std::optional<VariablePlace> place;
    if (!step([&] { place = findPlace(round_.facts.variable); }))
        return false;
    if (!place)
        ui::asker().messageBox(
            {.text = round_.study + u", "_s + round_.facts.variable + u" "_s + TranslateText(u"nicht gefunden"_s),
             .icon = ui::Icon::Exclamation});
    return true;
}

/// The study's cases: its own selection, or the first case table.
bool Run::findCases() {
    bool found = false;
    QString own;
    const bool done = step([&] {
        if (!studies_)
            studies_ = db_->OpenRecordset(in_.studies, dao::dbOpenSnapshot);
        studies_->FindFirst(u"id_StudyNo = "_s + quoted(round_.study));
        found = !studies_->NoMatch();
        own = found ? studies_->text(u"dt_query"_s) : QString();
    });
    if (!done)
        return false;
    if (isComparison() && !tellWhatHasGone(found))
        return false;
    if (!found)
        return clearAndEnd();
    round_.qSql = own.isEmpty() ? defaultCaseQuery(round_.study) : own;
    return true;
}

bool Run::addWeightToQuery() {
    const QString& weight = round_.weightVariable;
    if (weight.isEmpty())
        return true;
    std::optional<VariablePlace> place;
    if (!step([&] { place = findPlace(weight); }))
        return false;
    if (!place)
        return endWith(weight + TranslateText(u"nicht gefunden"_s));
    const std::optional<WeightedQuery> weighted = addWeight(round_.qSql, place->table, place->field);
    if (!weighted)
        return endWith(TranslateText(u"Fehler in Abfrage"_s));
    round_.qSql = weighted->qSql;
    round_.nullSql = weighted->nullSql;
    return true;
}

/// Where a variable of the round's study lies. @throws dao::Error
std::optional<VariablePlace> Run::findPlace(const QString& variable) {
    if (!variables_)
        variables_ =
            db_->OpenRecordset(u"SELECT fi_StudyNo, id_VarName, dt_TableName, dt_FieldName FROM tkey_Variable"_s);
    variables_->FindFirst(u"fi_StudyNo = "_s + quoted(round_.study) + u" AND id_VarName ="_s + quoted(variable));
    if (variables_->NoMatch())
        return std::nullopt;
    return VariablePlace{variables_->text(u"dt_TableName"_s), variables_->text(u"dt_FieldName"_s)};
}

bool Run::storeQuery() {
    out_.run.q << round_.qSql;
    if (in_.hooks.onStatement)
        in_.hooks.onStatement(u"q"_s, round_.qSql);
    return step([this] {
        EnsureQueryQ(*db_);
        db_->QueryDefs().Item(u"q"_s)->setSQL(round_.qSql);
    });
}

bool Run::findFolder() {
    round_.folder = caseFolderOf(*db_, round_.study, options_.DataPath);
    if (!round_.folder.isEmpty())
        return true;
    ui::asker().messageBox({.text = u"'"_s + Paths::join(options_.DataPath, round_.study + u".mdb"_s) + u"' "_s +
                                    TranslateText(u"nicht gefunden."_s),
                            .icon = ui::Icon::Exclamation});
    return clearAndEnd();
}

/// A round may name a table more than once.
bool Run::attach(const QString& table, const QString& study) {
    const auto isThisOne = [&](const AttachedTable& other) { return other.table == table && other.study == study; };
    if (std::any_of(attached_.begin() + roundAttached_, attached_.end(), isThisOne))
        return true;
    return step([&] {
        const QString file = AttachCaseTable(*db_, table, study, round_.folder);
        attached_.push_back({table, study, round_.study, file, fileStamp(file)});
    });
}

/// A case table of another maker may hold a case more than once: joined by its key it counts so often. What can't be
/// found out is left to the count statement.
void Run::noteRepeatedCases() {
    QStringList joined{round_.facts.table};
    if (r_.groupsByTwo())
        joined << round_.facts.table2;
    joined << round_.facts.joins.tables << tableBehind(round_.qSql, u"FROM"_s) << tableBehind(round_.qSql, u"JOIN"_s);
    joined.removeDuplicates();
    const QString key = u"dt_CaseID"_s;
    for (const QString& table : joined) {
        try {
            const bool attached =
                std::ranges::any_of(attached_, [&](const AttachedTable& other) { return other.table == table; });
            if (!attached || db_->isUnique(table, key))
                continue;
            const QString repeated = u"SELECT %1.%2 FROM %1 GROUP BY %1.%2 HAVING Count(%1.%2) > 1"_s.arg(table, key);
            if (!db_->OpenRecordset(repeated, dao::dbOpenSnapshot)->Eof())
                notes_.push_back(
                    TableNote{u"Fälle kommen in der Tabelle %1 mehrfach vor und zählen mehrfach."_s, table});
        } catch (const dao::Error&) {
            continue;
        }
    }
}

bool Run::attachTables() {
    const CountFacts& facts = round_.facts;
    roundAttached_ = static_cast<std::ptrdiff_t>(attached_.size());
    if (!findFolder() || !attach(facts.table, round_.study))
        return false;
    if (!facts.table2.isEmpty() && !attach(facts.table2, round_.study))
        return false;
    const auto attachNamed = [this](const QString& table) {
        QString study;
        const bool named = step([&] {
            const qsizetype underscore = table.indexOf(u'_');
            if (underscore < 0)
                dao::raiseRuntimeError(5);
            study = table.left(underscore);
        });
        return named && attach(table, study);
    };
    const QString first = tableBehind(round_.qSql, u"FROM"_s);
    if (!first.isEmpty() && first != "(q"_L1 && !attachNamed(first))
        return false;
    const QString joined = tableBehind(round_.qSql, u"JOIN"_s);
    return joined.isEmpty() || attachNamed(joined);
}

bool Run::warnOfUnweighted() {
    if (round_.weightVariable.isEmpty())
        return true;
    bool some = false;
    if (!step([&] { some = !db_->OpenRecordset(round_.nullSql, dao::dbOpenSnapshot)->Eof(); }))
        return false;
    if (some)
        ui::asker().messageBox(
            {.text = TranslateText(u"Warnung: unbekannte Anzahl fehlender Werte in Gewichtungsvariable."_s),
             .icon = ui::Icon::Exclamation});
    return true;
}
