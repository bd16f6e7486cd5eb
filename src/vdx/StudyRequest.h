#pragma once

#include "analysis/request/RequestEditor.h"
#include "analysis/run/CreateSQL.h"
#include "vdx/TypedMarks.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

/// Takes the typed folder of the case files for this run; an empty one leaves the catalogue's. @throws UsageError if
/// there is none
void chooseDataFolder(const std::string& folder);
/// A message on standard error for each study whose cases the typed folder lacks and the catalogue's has.
void tellCasesElsewhere(Session& session, const QStringList& studies);
/// A definition of missing values as typed: the word none for an empty one.
QString typedDefinition(const QString& typed);
/// False after a message on standard error if the catalogue has no view of studies.
bool hasStudies(Session& session);

/// Hooks of a run that print its statements, if asked for.
RunHooks statementHooks(Session& session, bool sql);
/// Runs the request of an editor for a command. What counts for nothing in a filter is refused, and what a reader of
/// the table has to know of its numbers is said on standard error.
/// A table that takes longer than the limit is given up.
TableResult runFor(Session& session, RequestEditor& editor, const RunHooks& hooks, int minutes);
/// The same with marks set by hand: the table is made by the definitions, marked, and made again. A value that it has
/// not is told, and the run refused.
/// @param first of the first variable or the rows of a comparison @param second of the second variable of a crosstab
TableResult runMarked(Session& session, RequestEditor& editor, const RunHooks& hooks, int minutes,
                      const TypedMarks& first, const TypedMarks& second = {});
/// How long a table may take: a catalogue of a stranger may ask for what never ends, and nobody is there to stop it.
constexpr int defaultMinutes = 10;

/// What every run takes from the command line beside its request.
struct RunOptions {
    std::string data; ///< folder of the case files; empty: the catalogue's
    bool sql = false;
    int minutes = defaultMinutes;

    void declare(CLI::App& command);
};

/// The cases of a study and their weight, as typed.
struct TypedCases {
    QString study;
    QString weight = QStringLiteral("none"); ///< none, re, hh or the name of a variable
    QString filter, part;                    ///< one of them, or none

    /// Chooses study, weight, and filter or part. False after a message on standard error.
    bool choose(Session& session, RequestEditor& editor) const;
    /// Weight, and filter or part of the study that is chosen already.
    bool chooseWeightAndFilter(Session& session, RequestEditor& editor) const;
    bool chooseStudy(Session& session, RequestEditor& editor) const;
    /// Chooses a variable of the study, as the second one if asked.
    bool chooseVariable(Session& session, RequestEditor& editor, const QString& variable, bool second = false) const;
};

/// What every analysis of one study takes from the command line: catalogue and study, weight, filter or part, missing
/// values, the folder of the case files, --sql.
class StudyRequest {
public:
    /// The places in front: CATALOGUE and STUDY, the latter perhaps left out.
    void declarePlaces(CLI::App& command, bool studyNeeded = true);
    void declareOptions(CLI::App& command);
    /// Declares --missing2, and the marks of a mode that has them.
    void declareSecond(CLI::App& command);
    void declareMarks(CLI::App& command, AnalysisMode mode);
    /// Declares the marks of all modes.
    void declareAllMarks(CLI::App& command);

    /// Opens the catalogue and makes the request for a mode. False after a message on standard error.
    /// @throws UsageError
    bool prepare(Session& session, RequestEditor& editor, AnalysisMode mode) const;
    /// Runs the request for one variable after the other and prints the tables once all have come out: a table that
    /// failed must not hide among those that did. @param choose what else is chosen with each variable; false ends it
    /// @return exit status
    int run(Session& session, RequestEditor& editor, const std::vector<std::string>& variables,
            const std::function<bool()>& choose = {}) const;
    /// The hooks of a run: with --sql its statements are printed, and a number that cannot be computed leaves its cell
    /// empty, with a message on standard error.
    RunHooks hooks(Session& session, const RequestEditor& editor) const;
    /// Runs the request as it stands, with the marks that were typed.
    TableResult runOnce(Session& session, RequestEditor& editor) const;
    /// Chooses a variable by a name as typed; a message where there is none.
    bool chooseVariable(Session& session, RequestEditor& editor, const std::string& name, bool second = false) const;
    /// The same for both variables of a crosstab. @param flip exchanges rows and columns
    bool chooseCrosstab(Session& session, RequestEditor& editor, const std::string& row, const std::string& column,
                        bool flip) const;

    const std::string& catalogue() const { return catalogue_; }
    const std::string& study() const { return study_; }
    const RunOptions& runs() const { return runs_; }
    const TypedMarks& marks() const { return marks_; }

private:
    std::string catalogue_, study_, weight_ = "none", filter_, part_, missing_;
    RunOptions runs_;
    std::string missing2_;
    CLI::Option *missingGiven_ = nullptr, *missing2Given_ = nullptr;
    TypedMarks marks_, marks2_;

    TypedCases cases() const;
};
