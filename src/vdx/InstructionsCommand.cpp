#include "analysis/BatchRun.h"
#include "app/globals.h"
#include "config/Options.h"
#include "vdx/Command.h"
#include "vdx/StudyRequest.h"

using namespace Qt::StringLiterals;

namespace {

/// vdx run-instructions: the tables and graphs that the variables of a study are to have.
class InstructionsCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    std::string catalogue_, study_;
    RunOptions runs_;
    bool tables_ = false, graphs_ = false, preserveLayout_ = false, progress_ = false;
    std::vector<QStringList> rows_;
    QString told_; ///< why nothing was run

    bool runKind(Session& session, BatchKind kind);
    void addRows(Session& session, const BatchReport& report);
};

CLI::App* InstructionsCommand::declare(CLI::App& program) {
    CLI::App* command = program.add_subcommand(
        "run-instructions", "Run the instructions of all variables of a study and keep with each its table or graph: "
                            "WRITES TO THE CATALOGUE and asks nothing");
    command->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
    command->add_option("STUDY", study_, "study number")->required();
    command->add_flag("--tables", tables_,
                      "store the tables; a variable without an instruction LOSES the table that it has");
    command->add_flag("--graphs", graphs_,
                      "store the graphs; a variable without an instruction, or without a chart, "
                      "LOSES the graph that it has");
    command->add_flag("--preserve-layout", preserveLayout_,
                      "widths, heights and alignment of a stored table hold for the new one too");
    command->add_flag("--progress", progress_, "a line 'progress N' (percent) on standard error for each step");
    runs_.declare(*command);
    return command;
}

int InstructionsCommand::run(Session& session) {
    if (!tables_ && !graphs_)
        throw UsageError{
            said(u"--tables oder --graphs wird gebraucht, oder beide"_s, u"--tables or --graphs is needed, or both"_s)};
    chooseDataFolder(runs_.data);
    if (!session.open(QString::fromStdString(catalogue_), false) || !hasStudies(session))
        return 1;
    bool good = true;
    if (tables_)
        good = runKind(session, BatchKind::Tables);
    if (graphs_)
        good = runKind(session, BatchKind::Graphs) && good;
    session.printer().print({u"variable"_s, u"kind"_s, u"outcome"_s, u"words"_s}, rows_);
    return good ? 0 : 1;
}

/// @return whether every variable has what its instruction says
bool InstructionsCommand::runKind(Session& session, BatchKind kind) {
    const double kinds = tables_ && graphs_ ? 2 : 1, before = tables_ && kind == BatchKind::Graphs ? 1 : 0;
    const std::function<bool(double)> share = progress_ ? session.progress(true) : nullptr;
    BatchRequest request{.kind = kind,
                         .study = QString::fromStdString(study_),
                         .preserveLayout = preserveLayout_,
                         .englishContents = gOptions.EnglishLanguage,
                         .minutes = runs_.minutes,
                         .onStatement = statementHooks(session, runs_.sql).onStatement};
    request.progress = [&](const QString& text, int done, int total) {
        if (share)
            share((before + (total > 0 ? double(done) / total : 1.0)) / kinds);
        else if (session.errIsTerminal())
            session.progressLine(text.isEmpty() ? QString()
                                                : u"%1 (%2/%3)"_s.arg(oneLine(text)).arg(done + 1).arg(total));
    };
    BatchRun batch(std::move(request));
    if (const QString obstacle = batch.obstacle(); !obstacle.isEmpty()) {
        if (obstacle != told_)
            session.say(obstacle);
        told_ = obstacle;
        return false;
    }
    if (before == 0)
        tellCasesElsewhere(session, {QString::fromStdString(study_)});
    const BatchReport report = batch.run();
    addRows(session, report);
    return report.failed.empty() && report.ended.isEmpty();
}

void InstructionsCommand::addRows(Session& session, const BatchReport& report) {
    const QString kind = report.kind == BatchKind::Tables ? u"table"_s : u"graph"_s;
    const auto add = [&](const QString& variable, const QString& outcome, const QString& words) {
        rows_.push_back({variable, kind, outcome, words.simplified()});
    };
    const auto remark = [&](const QString& variable) {
        for (const BatchReport::Named& one : report.remarks)
            if (one.variable == variable)
                return one.words;
        return QString();
    };
    for (const QString& variable : report.done)
        add(variable, u"stored"_s, remark(variable));
    for (const BatchReport::Named& one : report.failed) {
        add(one.variable, u"failed"_s, one.words);
        session.say(one.variable + u": "_s + one.words);
    }
    for (const QString& variable : report.deleted)
        add(variable, u"deleted"_s, remark(variable));
    for (const QString& variable : report.withoutChart)
        add(variable, u"no chart"_s, {});
    for (const QString& variable : report.notReached)
        add(variable, u"not reached"_s, {});
    if (!report.ended.isEmpty())
        session.say(TranslateText(u"Der Lauf wurde abgebrochen:"_s) + u' ' + report.ended);
}

} // namespace

std::unique_ptr<Command> makeInstructionsCommand() {
    return std::make_unique<InstructionsCommand>();
}
