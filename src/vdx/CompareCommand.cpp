#include "analysis/request/ComparisonList.h"
#include "analysis/request/comparisonEntries.h"
#include "analysis/result/provenance.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "vdx/Command.h"
#include "vdx/TypedComparison.h"

using namespace Qt::StringLiterals;

namespace {

/// vdx compare: one variable of several studies side by side.
class CompareCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    std::string catalogue_, title_, show_ = "absolute", save_, delete_;
    TypedComparison comparison_;
    RunOptions runs_;
    TypedMarks marks_;

    void check() const;
};

CLI::App* CompareCommand::declare(CLI::App& program) {
    CLI::App* command =
        program.add_subcommand("compare", "Compare the frequencies of variables, over studies or within one");
    command->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
    comparison_.declare(*command);
    command->add_option("--title", title_, "title of the comparison");
    command->add_option("--show", show_, "absolute, or column for valid percent (default: absolute)")
        ->check(CLI::IsMember({"absolute", "column"}))
        ->type_name("VALUES");
    command->add_option("--save", save_, "keep the comparison under this name: WRITES TO THE CATALOGUE")
        ->type_name("NAME");
    command->add_option("--delete", delete_, "delete the kept comparison of this name: WRITES TO THE CATALOGUE")
        ->type_name("NAME");
    runs_.declare(*command);
    marks_.declare(*command);
    return command;
}

void CompareCommand::check() const {
    if (!delete_.empty() && (comparison_.hasEntries() || comparison_.hasName() || !save_.empty()))
        throw UsageError{said(u"--delete steht allein"_s, u"--delete stands alone"_s)};
    if (delete_.empty() && comparison_.hasEntries() == comparison_.hasName())
        throw UsageError{
            said(u"--entry oder --load wird gebraucht, nicht beides"_s, u"--entry or --load is needed, not both"_s)};
}

int CompareCommand::run(Session& session) {
    check();
    comparison_.read();
    chooseDataFolder(runs_.data);
    const bool readOnly = save_.empty() && delete_.empty();
    if (!session.open(QString::fromStdString(catalogue_), readOnly))
        return 1;
    RequestEditor editor;
    ComparisonList list(editor);
    editor.open();
    editor.chooseMode(AnalysisMode::Comparison);
    if (!delete_.empty())
        return list.remove(QString::fromStdString(delete_)) ? 0 : 1;
    if (!comparison_.choose(session, editor, list))
        return 1;
    if (!title_.empty())
        list.setTitle(QString::fromStdString(title_));
    // A comparison that is kept is one that was seen to run.
    TableResult result = runMarked(session, editor, statementHooks(session, runs_.sql), runs_.minutes, marks_);
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
