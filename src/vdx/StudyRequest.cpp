#include "vdx/StudyRequest.h"

#include "analysis/result/provenance.h"
#include "analysis/run/caseData.h"
#include "analysis/runRequest.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <chrono>

using namespace Qt::StringLiterals;

namespace {

/// A table that has come out, with what is printed beside it.
struct Printed {
    QString title;
    ResultTable table;
    QStringList lines;
    QJsonObject facts;
};

} // namespace

void chooseDataFolder(const std::string& folder) {
    if (folder.empty())
        return;
    const QString path = QString::fromStdString(folder);
    if (!QFileInfo(Paths::onDisk(path)).isDir())
        throw UsageError{
            said(u"--data %1: Den Ordner gibt es nicht"_s, u"--data %1: there is no such folder"_s).arg(path)};
    gOptions.DataPath = path;
}

void tellCasesElsewhere(Session& session, const QStringList& studies) {
    for (const QString& study : studies) {
        const QString folder = caseFolderOf(*gDatabase.CurrentDatabase(), study, gOptions.DataPath);
        if (!gOptions.DataPath.isEmpty() && !folder.isEmpty() && folder != gOptions.DataPath)
            session.say(said(u"Die Fälle von %1 liegen nicht in %2; gezählt wird %3."_s,
                             u"The cases of %1 are not in %2; what is counted is %3."_s)
                            .arg(study, gOptions.DataPath, Paths::join(folder, study + u".mdb"_s)));
    }
}

QString typedDefinition(const QString& typed) {
    return typed == u"none"_s ? QString() : typed;
}

bool hasStudies(Session& session) {
    if (!studyQuerySource().isEmpty())
        return true;
    session.say(said(u"Der Katalog hat keine Ansicht von Studien."_s, u"The catalogue has no view of studies."_s));
    return false;
}

void RunOptions::declare(CLI::App& command) {
    command.add_option("--data", data, "folder of the case files (default: beside the catalogue)");
    command.add_flag("--sql", sql, "also print the statements, to standard error");
    command.add_option("--minutes", minutes, "give a table up that takes longer (default: 10)")
        ->check(CLI::Range(0, 100'000))
        ->type_name("MINUTES");
}

void StudyRequest::declarePlaces(CLI::App& command, bool studyNeeded) {
    command.add_option("CATALOGUE", catalogue_, "catalogue file")->required();
    command.add_option("STUDY", study_, "study number")->required(studyNeeded);
}

void StudyRequest::declareOptions(CLI::App& command) {
    command.add_option("--weight", weight_, "none, re, hh (the study's own weights) or the name of a weight variable")
        ->type_name("WEIGHT");
    command.add_option("--filter", filter_,
                       "condition over variables of the study, such as \"V7=1 AND [be1.1b] IN (1,2)\"");
    command.add_option("--part", part_, "part of the data set, by its number");
    missingGiven_ = command.add_option("--missing", missing_,
                                       "missing values in place of the documented ones, such as \"8;9\", or none");
    runs_.declare(command);
}

void StudyRequest::declareSecond(CLI::App& command) {
    missing2Given_ = command.add_option("--missing2", missing2_, "the same for the second variable");
}

void StudyRequest::declareMarks(CLI::App& command, AnalysisMode mode) {
    marks_.declare(command);
    if (mode == AnalysisMode::Crosstab)
        marks2_.declare(command, "2");
    if (mode == AnalysisMode::Frequency)
        marks_.declareCumulated(command);
}

void StudyRequest::declareAllMarks(CLI::App& command) {
    declareMarks(command, AnalysisMode::Crosstab);
    marks_.declareCumulated(command);
}

bool StudyRequest::prepare(Session& session, RequestEditor& editor, AnalysisMode mode) const {
    if (!filter_.empty() && !part_.empty())
        throw UsageError{
            said(u"--filter und --part schließen einander aus"_s, u"--filter and --part exclude each other"_s)};
    chooseDataFolder(runs_.data);
    if (!session.open(QString::fromStdString(catalogue_)))
        return false;
    editor.open();
    if (!cases().chooseStudy(session, editor))
        return false;
    tellCasesElsewhere(session, {editor.request().dbcStudy.value});
    editor.chooseMode(mode);
    if (missingGiven_->count() > 0)
        editor.overrideMissing(typedDefinition(QString::fromStdString(missing_)));
    if (missing2Given_ && missing2Given_->count() > 0)
        editor.overrideMissing2(typedDefinition(QString::fromStdString(missing2_)));
    return cases().chooseWeightAndFilter(session, editor) && !session.failed();
}

TypedCases StudyRequest::cases() const {
    return {QString::fromStdString(study_), QString::fromStdString(weight_), QString::fromStdString(filter_),
            QString::fromStdString(part_)};
}

bool StudyRequest::chooseVariable(Session& session, RequestEditor& editor, const std::string& name, bool second) const {
    return cases().chooseVariable(session, editor, QString::fromStdString(name), second);
}

bool StudyRequest::chooseCrosstab(Session& session, RequestEditor& editor, const std::string& row,
                                  const std::string& column, bool flip) const {
    if (!chooseVariable(session, editor, row) || !chooseVariable(session, editor, column, true))
        return false;
    editor.change(RequestPart::Mode, [flip](AnalysisRequest& r) { r.chkFlipXtab = r.bCreationMode = flip; });
    return true;
}

bool TypedCases::choose(Session& session, RequestEditor& editor) const {
    return chooseStudy(session, editor) && chooseWeightAndFilter(session, editor);
}

bool TypedCases::chooseStudy(Session& session, RequestEditor& editor) const {
    if (!hasStudies(session))
        return false;
    if (editor.StudyClick(study))
        return true;
    if (!session.failed())
        session.say(said(u"Studie %1 nicht gefunden."_s, u"Study %1 not found."_s).arg(study));
    return false;
}

bool TypedCases::chooseWeightAndFilter(Session& session, RequestEditor& editor) const {
    if (weight == u"re" || weight == u"hh") {
        const bool representative = weight == u"re";
        if (!editor.chooseWeight(representative ? WeightKind::WeightRE : WeightKind::WeightHH)) {
            session.say(said(representative ? u"Studie %1 hat kein Repräsentativgewicht."_s
                                            : u"Studie %1 hat kein Haushaltsgewicht."_s,
                             representative ? u"Study %1 has no representative weight."_s
                                            : u"Study %1 has no household weight."_s)
                            .arg(study));
            return false;
        }
    } else if (!editor.chooseWeight(weight == u"none" ? WeightKind::noWeight : WeightKind::WeightUser, weight)) {
        if (!session.failed())
            session.say(said(u"Gewichtungsvariable %1 nicht gefunden in Studie %2."_s,
                             u"Weight variable %1 not found in study %2."_s)
                            .arg(weight, study));
        return false;
    }
    if (!part.isEmpty() && !editor.choosePart(part)) {
        session.say(said(u"Studie %1 hat keinen Datensatz-Teil %2."_s, u"Study %1 has no part %2."_s).arg(study, part));
        for (const BoundPicker& there : editor.parts())
            session.say(said(u"Teil %1: %2"_s, u"Part %1: %2"_s).arg(there.value, there.text));
        return false;
    }
    if (!filter.isEmpty())
        editor.chooseFilterText(filter);
    return true;
}

bool TypedCases::chooseVariable(Session& session, RequestEditor& editor, const QString& variable, bool second) const {
    if (second ? editor.chooseVariable2(variable) : editor.chooseVariable(variable))
        return true;
    if (!session.failed())
        session.say(said(u"Variable %1 nicht gefunden in Studie %2."_s, u"Variable %1 not found in study %2."_s)
                        .arg(variable, study));
    return false;
}

RunHooks statementHooks(Session& session, bool sql) {
    RunHooks hooks;
    if (sql)
        hooks.onStatement = [&session](const QString& name, const QString& statement) {
            session.say(name + u": "_s + statement);
        };
    return hooks;
}

RunHooks StudyRequest::hooks(Session& session, const RequestEditor& editor) const {
    RunHooks hooks = statementHooks(session, runs_.sql);
    hooks.onStatisticFailure = [&](const QString& place, const dao::Error& error) {
        session.say(said(u"%1 ist nicht zu berechnen (%2), die Zelle bleibt leer."_s,
                         u"%1 cannot be computed (%2), its cell stays empty."_s)
                        .arg(editor.request().dbcVariable.value + u", "_s + place,
                             QString::number(error.number()) + u' ' + error.description()));
    };
    return hooks;
}

namespace {

TableResult runFrom(Session& session, RequestEditor& editor, const RunHooks& hooks, int minutes, TableResult before) {
    RunHooks own = hooks;
    const QDeadlineTimer end(std::chrono::minutes{minutes});
    own.cancelled = [end] { return end.hasExpired(); };
    own.acceptsLost = [](const QString& lost) {
        ui::asker().messageBox({.text = TranslateText(u"Das Ende des Filters zählt nicht:"_s) + u' ' + lost,
                                .icon = ui::Icon::Exclamation});
        return false;
    };
    TableResult result = runRequest(editor, gOptions, own, std::move(before));
    if (result.run.outcome == RunOutcome::Cancelled)
        session.say(said(u"Die Berechnung dauert länger als %1 Minuten und wurde abgebrochen (--minutes)."_s,
                         u"The computation takes longer than %1 minutes and was given up (--minutes)."_s)
                        .arg(minutes));
    return result;
}

TableResult noted(Session& session, TableResult result) {
    for (const QString& note : result.notes())
        session.say(result.lblLabel + u": "_s + note);
    return result;
}

} // namespace

TableResult runFor(Session& session, RequestEditor& editor, const RunHooks& hooks, int minutes) {
    return noted(session, runFrom(session, editor, hooks, minutes, {}));
}

TableResult runMarked(Session& session, RequestEditor& editor, const RunHooks& hooks, int minutes,
                      const TypedMarks& first, const TypedMarks& second) {
    if (first.empty() && second.empty())
        return runFor(session, editor, hooks, minutes);
    TableResult result = runFrom(session, editor, hooks, minutes, {});
    if (session.failed() || result.run.outcome != RunOutcome::Computed)
        return result;
    const bool flip = editor.request().flipInForce();
    Marks marks = Marks::of(result.marked());
    first.applyTo(flip ? marks.columns : marks.rows);
    second.applyTo(flip ? marks.rows : marks.columns);
    marks.subject = result.marks.subject;
    marks.by = Marks::By::Hand;
    result.marks = marks;
    result.computation.ResultCacheKey.clear();
    editor.change(RequestPart::Missing, [](AnalysisRequest& r) { r.bUserMissing = true; });
    result = noted(session, runFrom(session, editor, hooks, minutes, std::move(result)));
    const Marks now = Marks::of(result.marked());
    const bool whole = first.standIn(session, flip ? now.columns : now.rows);
    if (!second.standIn(session, flip ? now.rows : now.columns) || !whole)
        result.run.outcome = RunOutcome::Refused;
    return result;
}

TableResult StudyRequest::runOnce(Session& session, RequestEditor& editor) const {
    return runMarked(session, editor, hooks(session, editor), runs_.minutes, marks_, marks2_);
}

int StudyRequest::run(Session& session, RequestEditor& editor, const std::vector<std::string>& variables,
                      const std::function<bool()>& choose) const {
    std::vector<Printed> results;
    for (const std::string& variable : variables) {
        if (!chooseVariable(session, editor, variable) || (choose && !choose()))
            return 1;
        const TableResult result = runOnce(session, editor);
        if (session.failed() || result.run.outcome != RunOutcome::Computed)
            return 1;
        results.push_back({result.lblLabel, result.mfgGrid, provenanceLines(result), provenanceFacts(result)});
    }
    for (const Printed& result : results)
        session.printer().print(result.title, result.table, result.lines, result.facts);
    return 0;
}
