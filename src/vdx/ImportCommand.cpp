#include "catalogue/CatalogueImport.h"
#include "vdx/Command.h"

using namespace Qt::StringLiterals;

namespace {

/// What `--encode` without names is read as, and what the help shows behind it; no variable can be called so.
constexpr const char* allWithCodes = "=VARS";

/// vdx import: a survey file becomes a study of a catalogue.
class ImportCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    std::string catalogue_, file_, study_, data_, title_, titleEnglish_, year_, group_, weightRe_, weightHh_, encoding_;
    bool replace_ = false, progress_ = false;
    std::vector<std::string> encode_;
    CLI::App* command_ = nullptr;

    std::optional<QString> given(const char* option, const std::string& text) const;
};

CLI::App* ImportCommand::declare(CLI::App& program) {
    command_ = program.add_subcommand("import", "Take a survey file (.sav, .zsav, .por, .dta) into a catalogue");
    command_->add_option("CATALOGUE", catalogue_, "catalogue file; made if it is missing")->required();
    command_->add_option("FILE", file_, "survey file of SPSS or Stata")->required();
    command_->add_option("--study", study_, "study number: letters and digits, a letter first")
        ->required()
        ->type_name("NO");
    command_->add_option("--data", data_, "folder of the case file (default: beside the catalogue)")->type_name("DIR");
    command_->add_option("--title", title_, "title of the study");
    command_->add_option("--title-en", titleEnglish_, "its English title");
    command_->add_option("--year", year_, "year of the study");
    command_->add_option("--group", group_, "number of the group that it belongs to")->type_name("NO");
    command_->add_option("--weight-re", weightRe_, "representative weight (default: the file's own weight)")
        ->type_name("VAR");
    command_->add_option("--weight-hh", weightHh_, "household weight")->type_name("VAR");
    command_
        ->add_option("--encoding", encoding_, "encoding of the file's texts, where the file itself is wrong about it")
        ->type_name("ENC");
    command_->add_flag(
        "--encode{" + std::string(allWithCodes) + "}", encode_,
        "store text variables whose codes have labels or are declared missing as numbers, with the codes "
        "in the labels; --encode=A,B: these text variables");
    command_->add_flag("--replace", replace_, "put the file in place of the study of that number");
    command_->add_flag("--progress", progress_, "a line 'progress N' (percent) on standard error for each step");
    return command_;
}

std::optional<QString> ImportCommand::given(const char* option, const std::string& text) const {
    if (command_->count(option) == 0)
        return std::nullopt;
    return QString::fromStdString(text);
}

int ImportCommand::run(Session& session) {
    ImportRequest request;
    request.catalogue = QString::fromStdString(catalogue_);
    request.file = QString::fromStdString(file_);
    ImportSettings& settings = request.settings;
    settings.study = QString::fromStdString(study_);
    settings.dataFolder = QString::fromStdString(data_);
    settings.title = given("--title", title_);
    settings.titleEnglish = given("--title-en", titleEnglish_);
    settings.year = given("--year", year_);
    settings.group = given("--group", group_);
    settings.weightRe = given("--weight-re", weightRe_);
    settings.weightHh = given("--weight-hh", weightHh_);
    settings.encoding = QString::fromStdString(encoding_);
    settings.replace = replace_;
    for (const std::string& wish : encode_) {
        if (wish == allWithCodes)
            settings.encodeAll = true;
        else
            for (const QString& name : QString::fromStdString(wish).split(u','))
                settings.encode << name.trimmed();
    }
    settings.progress = session.progress(progress_);
    try {
        const ImportReport report = importSurvey(request);
        session.printer().printLines(report.facts);
        return 0;
    } catch (const ImportError& error) {
        session.say(error.text());
        return 1;
    }
}

} // namespace

std::unique_ptr<Command> makeImportCommand() {
    return std::make_unique<ImportCommand>();
}
