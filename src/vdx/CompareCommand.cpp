#include "analysis/request/ComparisonList.h"
#include "analysis/request/comparisonEntries.h"
#include "analysis/result/provenance.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "vdx/Command.h"
#include "vdx/StudyRequest.h"

#include <QRegularExpression>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// One --entry: 'STUDY VARIABLE [weight=..] [filter=..] [part=..] [missing=..]'. A value reaches to the next key; one
/// in double quotes to its end, and so does a name.
struct TypedEntry {
    TypedCases cases;
    QString variable;
    std::optional<QString> missing;
};

const QString quotedForm = u"\"((?:[^\"]|\"\")*)\""_s;

/// Takes what a form matches at the start of a text away. @return nothing if it matches nothing there
std::optional<QRegularExpressionMatch> takeAway(QString& text, const QString& form) {
    const QRegularExpression start(u"^\\s*"_s + form, QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = start.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    text.remove(0, match.capturedLength());
    return match;
}

std::optional<QString> takeQuoted(QString& text, const QString& behind) {
    const std::optional<QRegularExpressionMatch> match = takeAway(text, quotedForm + behind);
    return match ? std::optional(match->captured(1).replace(u"\"\""_s, u"\""_s)) : std::nullopt;
}

std::optional<QString> takeName(QString& text) {
    if (const std::optional<QString> name = takeQuoted(text, u"(?=\\s|$)"_s))
        return name;
    const std::optional<QRegularExpressionMatch> match = takeAway(text, u"(\\S+)"_s);
    return match ? std::optional(match->captured(1)) : std::nullopt;
}

TypedEntry entryFrom(const QString& text) {
    const QString key = u"(weight|filter|part|missing)\\s*="_s;
    const QString toNextKey = u"(.*?)\\s*(?=\\s"_s + key + u"|$)"_s;
    QString rest = text;
    const std::optional<QString> study = takeName(rest), variable = takeName(rest);
    TypedEntry entry;
    bool good = study && variable;
    while (good && !rest.trimmed().isEmpty()) {
        const std::optional<QRegularExpressionMatch> named = takeAway(rest, key);
        good = named.has_value();
        if (!good)
            break;
        const QString name = named->captured(1);
        std::optional<QString> value = takeQuoted(rest, u"\\s*(?=\\s"_s + key + u"|$)"_s);
        if (!value)
            value = takeAway(rest, toNextKey)->captured(1);
        if (name == u"missing")
            entry.missing = typedDefinition(*value);
        else
            (name == u"weight"   ? entry.cases.weight
             : name == u"filter" ? entry.cases.filter
                                 : entry.cases.part) = *value;
    }
    if (!good)
        throw UsageError{
            said(u"--entry \"%1\": erwartet wird STUDIE VARIABLE [weight=..] [filter=..] [part=..] [missing=..]"_s,
                 u"--entry \"%1\": expected is STUDY VARIABLE [weight=..] [filter=..] [part=..] [missing=..]"_s)
                .arg(text)};
    entry.cases.study = *study;
    entry.variable = *variable;
    if (!entry.cases.filter.isEmpty() && !entry.cases.part.isEmpty())
        throw UsageError{said(u"--entry \"%1\": filter und part schließen einander aus"_s,
                              u"--entry \"%1\": filter and part exclude each other"_s)
                             .arg(text)};
    return entry;
}

/// vdx compare: one variable of several studies side by side.
class CompareCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    std::string catalogue_, title_, show_ = "absolute", load_, save_, delete_, data_;
    std::vector<std::string> entries_;
    bool sql_ = false;
    int minutes_ = defaultMinutes;
    TypedMarks marks_;

    void check() const;
    bool addEntries(Session& session, RequestEditor& editor, ComparisonList& list,
                    const std::vector<TypedEntry>& typed) const;
};

CLI::App* CompareCommand::declare(CLI::App& program) {
    CLI::App* command =
        program.add_subcommand("compare", "Compare the frequencies of variables, over studies or within one");
    command->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
    command
        ->add_option(
            "--entry", entries_,
            "a column: 'STUDY VARIABLE [weight=re|hh|NAME] [filter=TEXT] [part=ID] [missing=TEXT]'; may be repeated")
        ->type_name("ENTRY")
        ->expected(1)
        ->take_all();
    command->add_option("--title", title_, "title of the comparison");
    command->add_option("--show", show_, "absolute, or column for valid percent (default: absolute)")
        ->check(CLI::IsMember({"absolute", "column"}))
        ->type_name("VALUES");
    command->add_option("--load", load_, "a comparison that the catalogue keeps, in place of --entry")
        ->type_name("NAME");
    command->add_option("--save", save_, "keep the comparison under this name: WRITES TO THE CATALOGUE")
        ->type_name("NAME");
    command->add_option("--delete", delete_, "delete the kept comparison of this name: WRITES TO THE CATALOGUE")
        ->type_name("NAME");
    command->add_option("--data", data_, "folder of the case files (default: beside the catalogue)");
    command->add_flag("--sql", sql_, "also print the statements, to standard error");
    marks_.declare(*command);
    declareLimit(*command, minutes_);
    return command;
}

void CompareCommand::check() const {
    if (!delete_.empty() && (!entries_.empty() || !load_.empty() || !save_.empty()))
        throw UsageError{said(u"--delete steht allein"_s, u"--delete stands alone"_s)};
    if (delete_.empty() && entries_.empty() == load_.empty())
        throw UsageError{
            said(u"--entry oder --load wird gebraucht, nicht beides"_s, u"--entry or --load is needed, not both"_s)};
}

bool CompareCommand::addEntries(Session& session, RequestEditor& editor, ComparisonList& list,
                                const std::vector<TypedEntry>& typed) const {
    for (const TypedEntry& entry : typed) {
        editor.overrideMissing(entry.missing);
        if (!entry.cases.choose(session, editor) || !entry.cases.chooseVariable(session, editor, entry.variable) ||
            !list.cmd_AddTrend() || session.failed())
            return false;
        // The next entry begins without the filter of this one.
        editor.chooseFilter(FilterKind::noFilter);
    }
    return true;
}

int CompareCommand::run(Session& session) {
    check();
    std::vector<TypedEntry> typed;
    for (const std::string& entry : entries_)
        typed.push_back(entryFrom(QString::fromStdString(entry)));
    chooseDataFolder(data_);
    const bool readOnly = save_.empty() && delete_.empty();
    if (!session.open(QString::fromStdString(catalogue_), readOnly))
        return 1;
    RequestEditor editor;
    ComparisonList list(editor);
    editor.open();
    editor.chooseMode(AnalysisMode::Comparison);
    if (!delete_.empty())
        return list.remove(QString::fromStdString(delete_)) ? 0 : 1;
    if (load_.empty() ? !addEntries(session, editor, list, typed) : !list.load(QString::fromStdString(load_)))
        return 1;
    if (!title_.empty())
        list.setTitle(QString::fromStdString(title_));
    QStringList studies;
    for (const ComparisonEntry& e : editor.request().lst_TrendVars)
        studies << e.at(ComparisonEntry::Study);
    studies.removeDuplicates();
    tellCasesElsewhere(session, studies);
    // A comparison that is kept is one that was seen to run.
    TableResult result = runMarked(session, editor, statementHooks(session, sql_), minutes_, marks_);
    if (session.failed() || result.run.outcome != RunOutcome::Computed)
        return 1;
    if (!save_.empty() && !list.save(QString::fromStdString(save_)))
        return 1;
    result.showView(show_ == "column" ? 1 : 0);
    session.printer().print(result.lblLabel, result.mfgGrid, provenanceLines(result), provenanceFacts(result));
    return 0;
}

/// vdx comparisons: what the catalogue keeps.
class ComparisonsCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override {
        CLI::App* command = program.add_subcommand("comparisons", "Comparisons that the catalogue keeps");
        command->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
        return command;
    }

    int run(Session& session) override {
        if (!session.open(QString::fromStdString(catalogue_)))
            return 1;
        RequestEditor editor;
        ComparisonList list(editor);
        list.RefreshSavedComparisons();
        std::vector<QStringList> rows;
        for (const ComparisonList::Saved& saved : list.lst_SavedTrends()) {
            std::optional<StoredComparison> stored;
            attempt([&] { stored = readComparison(saved.key.mid(2), gOptions.EnglishLanguage); });
            if (!stored)
                continue;
            QStringList entries;
            for (const ComparisonEntry& entry : stored->entries)
                entries << entry.text;
            rows.push_back({saved.name, stored->title.simplified(), entries.join(u" / "_s)});
        }
        session.printer().print({u"name"_s, u"title"_s, u"entries"_s}, rows);
        return session.failed() ? 1 : 0;
    }

private:
    std::string catalogue_;
};

} // namespace

std::unique_ptr<Command> makeCompareCommand() {
    return std::make_unique<CompareCommand>();
}

std::unique_ptr<Command> makeComparisonsCommand() {
    return std::make_unique<ComparisonsCommand>();
}
