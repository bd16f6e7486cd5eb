#include "analysis/result/provenance.h"
#include "vdx/Command.h"
#include "vdx/StudyRequest.h"
#include "vdx/shownViews.h"

namespace {

/// vdx crosstab: the crosstab of two variables.
class CrosstabCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    StudyRequest request_;
    std::string row_, column_, show_ = "absolute";
    bool flip_ = false;
};

CLI::App* CrosstabCommand::declare(CLI::App& program) {
    CLI::App* command = program.add_subcommand("crosstab", "Crosstab of two variables of a study");
    request_.declarePlaces(*command);
    command->add_option("ROWVAR", row_, "variable in the rows")->required();
    command->add_option("COLVAR", column_, "variable in the columns")->required();
    request_.declareOptions(*command);
    request_.declareSecond(*command);
    request_.declareMarks(*command, AnalysisMode::Crosstab);
    command->add_option("--show", show_, "absolute, column, row or total (percentages), or all")
        ->check(CLI::IsMember({"absolute", "column", "row", "total", "all"}))
        ->type_name("VIEW");
    command->add_flag("--flip", flip_, "exchange rows and columns, in creation mode");
    return command;
}

int CrosstabCommand::run(Session& session) {
    RequestEditor editor;
    if (!request_.prepare(session, editor, AnalysisMode::Crosstab) ||
        !request_.chooseCrosstab(session, editor, row_, column_, flip_))
        return 1;
    TableResult result = request_.runOnce(session, editor);
    if (result.run.outcome != RunOutcome::Computed || session.failed())
        return 1;
    for (size_t view = 0; view < viewNames.size(); ++view) {
        if (show_ != "all" && show_ != viewNames[view])
            continue;
        const QString title = showCrosstabView(result, static_cast<int>(view));
        session.printer().print(title, result.mfgGrid, provenanceLines(result), provenanceFacts(result));
    }
    return 0;
}

} // namespace

std::unique_ptr<Command> makeCrosstabCommand() {
    return std::make_unique<CrosstabCommand>();
}
