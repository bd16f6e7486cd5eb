#include "analysis/result/provenance.h"
#include "analysis/result/titles.h"
#include "app/globals.h"
#include "config/Options.h"
#include "vdx/Command.h"
#include "vdx/StudyRequest.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// The views in the order of cbValues, as they are called on the command line and in a title.
struct CrosstabView {
    const char* name;
    QString words;
};
const std::array<CrosstabView, 4> crosstabViews{{{"absolute", u"absolute Werte"_s},
                                                 {"column", u"Spaltenprozente"_s},
                                                 {"row", u"Zeilenprozente"_s},
                                                 {"total", u"Gesamtprozente"_s}}};

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
    if (!request_.prepare(session, editor, AnalysisMode::Crosstab) || !request_.chooseVariable(session, editor, row_) ||
        !request_.chooseVariable(session, editor, column_, true))
        return 1;
    editor.change(RequestPart::Mode, [this](AnalysisRequest& r) { r.chkFlipXtab = r.bCreationMode = flip_; });
    TableResult result = request_.runOnce(session, editor);
    if (result.run.outcome != RunOutcome::Computed || session.failed())
        return 1;
    for (size_t view = 0; view < crosstabViews.size(); ++view) {
        if (show_ != "all" && show_ != crosstabViews[view].name)
            continue;
        AnalysisRequest shown = result.request;
        shown.cbValues = static_cast<int>(view);
        result.showView(shown.cbValues);
        const QString title = resultTitle(shown, result.mfgGrid, gOptions);
        session.printer().print(view == 0 ? title : title + u", "_s + TranslateText(crosstabViews[view].words),
                                result.mfgGrid, provenanceLines(result), provenanceFacts(result));
    }
    return 0;
}

} // namespace

std::unique_ptr<Command> makeCrosstabCommand() {
    return std::make_unique<CrosstabCommand>();
}
