#include "vdx/Command.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "platform/system/ApplicationInfo.h"

#include <algorithm>
#include <sstream>

using namespace Qt::StringLiterals;

std::vector<std::unique_ptr<Command>> allCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(makeImportCommand());
    commands.push_back(makeBuildCommand());
    commands.push_back(makeStudiesCommand());
    commands.push_back(makeVariablesCommand());
    commands.push_back(makeTreeCommand());
    commands.push_back(makeListCommand());
    commands.push_back(makeSearchCommand());
    commands.push_back(makeFrequencyCommand());
    commands.push_back(makeCrosstabCommand());
    commands.push_back(makeDescriptivesCommand());
    commands.push_back(makeCompareCommand());
    commands.push_back(makeComparisonsCommand());
    commands.push_back(makeChartCommand());
    commands.push_back(makeInstructionsCommand());
    commands.push_back(makeStoredCommand());
    commands.push_back(makeReportCommand());
    return commands;
}

bool drawsPictures(const std::vector<std::string>& arguments) {
    if (arguments.empty())
        return false;
    // A flag may also be typed as --graphs=true.
    return arguments[0] == "chart" || arguments[0] == "report" ||
           (arguments[0] == "run-instructions" &&
            std::ranges::any_of(arguments, [](const std::string& one) { return one.starts_with("--graphs"); }));
}

namespace {

/// The common options as they are typed.
struct TypedOptions {
    std::string format = "text", decimal, language, contents;
    bool plain = false;
    std::vector<std::string> set;

    void declare(CLI::App& command) {
        command.add_option("--format", format, "text, csv or json (default: text)")
            ->check(CLI::IsMember({"text", "csv", "json"}))
            ->type_name("FORMAT");
        command.add_flag("--plain", plain, "the cells alone: nothing about them below a table, in text and csv");
        command.add_option("--decimal", decimal, "comma or point (default: the locale's)")
            ->check(CLI::IsMember({"comma", "point"}))
            ->type_name("SIGN");
        command
            .add_option("--language", language, "language of headings and messages: de or en (default: the locale's)")
            ->check(CLI::IsMember({"de", "en"}))
            ->type_name("LANG");
        // A report has it in both, and says so itself.
        if (!command.get_option_no_throw("--contents"))
            command
                .add_option("--contents", contents, "labels and titles: original or english (default: the catalogue's)")
                ->check(CLI::IsMember({"original", "english"}))
                ->type_name("WHICH");
        command.add_option("--set", set, "an option of the program for this run; may be repeated")
            ->type_name("KEY=VALUE")
            ->expected(1)
            ->take_all();
    }

    CommonOptions read() const {
        CommonOptions options;
        options.format = format == "csv"    ? TablePrinter::Format::Csv
                         : format == "json" ? TablePrinter::Format::Json
                                            : TablePrinter::Format::Text;
        options.plain = plain;
        options.decimal = QString::fromStdString(decimal);
        options.language = QString::fromStdString(language);
        options.contents = QString::fromStdString(contents);
        for (const std::string& setting : set)
            options.set << QString::fromStdString(setting);
        return options;
    }
};

int usageError(const UsageError& error, std::FILE* err) {
    const QString text = u"vdx: "_s + oneLine(error.text) + u'\n' +
                         said(u"vdx --help sagt, was zu schreiben ist.\n"_s, u"Run vdx --help for what to type.\n"_s);
    std::fputs(text.toUtf8().constData(), err);
    return 2;
}

/// @param name of the command, which stands for the procedure where an error names none of its own
int carryOut(Command& command, const QString& name, const CommonOptions& options, std::FILE* out, std::FILE* err) {
    try {
        Session session(options, out, err);
        const ProcedureScope scope(u"[vdx %1]"_s.arg(name));
        int status = 1;
        try {
            status = command.run(session);
        } catch (const std::exception& failure) {
            reportError(asError(failure));
        }
        if (!session.printer().finish()) {
            session.say(said(u"Die Ausgabe konnte nicht geschrieben werden."_s, u"The output could not be written."_s));
            return 1;
        }
        return status;
    } catch (const UsageError& error) {
        return usageError(error, err);
    } catch (const std::exception& failure) {
        std::fputs((oneLine(asError(failure).description()) + u'\n').toUtf8().constData(), err);
        return 1;
    }
}

} // namespace

int runVdx(const std::vector<std::string>& arguments, std::FILE* out, std::FILE* err) {
    CLI::App program{"Survey catalogues from the command line: import survey files, look at what a catalogue holds, "
                     "print tables, draw "
                     "charts, write reports.",
                     "vdx"};
    program.require_subcommand(1);
    program.set_version_flag("--version", "vdx " + std::to_string(ApplicationInfo::majorVersion) + "." +
                                              std::to_string(ApplicationInfo::minorVersion) + "." +
                                              std::to_string(ApplicationInfo::revision));
    program.footer("Each command tells more with --help, such as: vdx frequency --help\n"
                   "Exit status: 0; 1 when the catalogue or the data say no; 2 for wrong usage.");

    TypedOptions typed;
    std::vector<std::unique_ptr<Command>> commands = allCommands();
    std::vector<CLI::App*> declared;
    for (const std::unique_ptr<Command>& command : commands) {
        declared.push_back(command->declare(program));
        typed.declare(*declared.back());
    }

    // CLI11 would only say that a command is missing.
    const bool named = !arguments.empty() && !arguments[0].starts_with('-');
    if (named && std::none_of(declared.begin(), declared.end(),
                              [&](const CLI::App* command) { return command->get_name() == arguments[0]; })) {
        const QString words = u"There is no command %1\nRun with --help for the commands there are.\n"_s.arg(
            oneLine(QString::fromStdString(arguments[0])));
        std::fputs(words.toUtf8().constData(), err);
        return 2;
    }
    try {
        // CLI11 takes the arguments from the back.
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& problem) {
        std::ostringstream asked, wrong;
        const int status = program.exit(problem, asked, wrong);
        std::fputs(asked.str().c_str(), out);
        std::fputs(cleanLines(QString::fromStdString(wrong.str())).toUtf8().constData(), err);
        return status == 0 ? 0 : 2;
    }
    for (size_t i = 0; i < commands.size(); ++i)
        if (declared[i]->parsed())
            return carryOut(*commands[i], QString::fromStdString(declared[i]->get_name()), typed.read(), out, err);
    return 2;
}
