#include "vdx/Command.h"
#include "vdx/StudyRequest.h"

namespace {

/// vdx frequency: the frequency table of one variable or more.
class FrequencyCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    StudyRequest request_;
    std::vector<std::string> variables_;
};

CLI::App* FrequencyCommand::declare(CLI::App& program) {
    CLI::App* command = program.add_subcommand("frequency", "Frequency tables of variables of a study");
    request_.declarePlaces(*command);
    command->add_option("VARIABLE", variables_, "one variable or more")->required();
    request_.declareOptions(*command);
    request_.declareMarks(*command, AnalysisMode::Frequency);
    return command;
}

int FrequencyCommand::run(Session& session) {
    RequestEditor editor;
    if (!request_.prepare(session, editor, AnalysisMode::Frequency))
        return 1;
    return request_.run(session, editor, variables_);
}

} // namespace

std::unique_ptr<Command> makeFrequencyCommand() {
    return std::make_unique<FrequencyCommand>();
}
