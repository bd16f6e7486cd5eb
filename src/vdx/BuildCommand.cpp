#include "catalogue/ArchiveBuilder.h"
#include "catalogue/CatalogueImport.h"
#include "vdx/Command.h"

using namespace Qt::StringLiterals;

namespace {

/// vdx build: a whole catalogue from a description.
class BuildCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override {
        CLI::App* command = program.add_subcommand("build", "Make a whole catalogue from an archive description");
        command->add_option("CATALOGUE", catalogue_, "catalogue file to be made; the case files come beside it")
            ->required();
        command->add_option("--from", description_, "archive description in JSON")
            ->required()
            ->type_name("ARCHIVE.json");
        command->add_flag("--replace", replace_, "put the new catalogue in place of the one that is there");
        command->add_flag("--progress", progress_, "a line 'progress N' (percent) on standard error for each step");
        return command;
    }
    int run(Session& session) override;

private:
    std::string catalogue_, description_;
    bool replace_ = false, progress_ = false;
};

int BuildCommand::run(Session& session) {
    BuildRequest request;
    request.catalogue = QString::fromStdString(catalogue_);
    request.description = QString::fromStdString(description_);
    request.replace = replace_;
    request.progress = session.progress(progress_);
    try {
        const BuildReport report = buildArchive(request);
        for (const QString& warning : report.warnings)
            session.say(warning);
        session.printer().printLines(report.facts);
        return 0;
    } catch (const ImportError& error) {
        session.say(error.text());
        return 1;
    }
}

} // namespace

std::unique_ptr<Command> makeBuildCommand() {
    return std::make_unique<BuildCommand>();
}
