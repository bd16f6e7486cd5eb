#include "app/globals.h"
#include "config/Options.h"
#include "explorer/EntryColumns.h"
#include "explorer/ExplorerModel.h"
#include "explorer/iconNames.h"
#include "printing/ReportRun.h"
#include "printing/outlets.h"
#include "printing/paperNames.h"
#include "printing/reportRequest.h"
#include "vdx/Command.h"
#include "vdx/StopSignal.h"
#include "vdx/StudyRequest.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A view and, behind a slash, an entry of it, as typed.
struct TypedEntry {
    QString view, entry;

    static TypedEntry of(const std::string& typed) {
        const QString text = QString::fromStdString(typed);
        return {text.section(u'/', 0, 0), text.section(u'/', 1)};
    }
};

/// vdx report: what the print dialog offers, as a PDF.
class ReportCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    CLI::App* command_ = nullptr;
    std::string catalogue_, variable_, study_, category_, names_, description_, out_, contents_, paper_;
    PrintOrder order_;
    PrintSource source_;

    bool given(const char* option) const { return command_->get_option(option)->count() > 0; }
    QString out() const { return QString::fromStdString(out_); }
    void readArguments();
    void readPaper();
    QString faultOfFile() const;
    bool choose(Session& session);
    bool chooseVariable(Session& session);
    bool chooseStudy(Session& session);
    bool chooseCategory(Session& session);
    bool chooseNames(Session& session);
    bool chooseDescription(Session& session);
    bool openView(Session& session, ExplorerModel& explorer, int view);
    bool openView(Session& session, ExplorerModel& explorer, const QString& typed);
    bool chooseEntry(Session& session, const ExplorerModel& explorer, const QString& typed);
    int write(Session& session, ReportRun& run) const;
};

CLI::App* ReportCommand::declare(CLI::App& program) {
    command_ = program.add_subcommand("report", "A report on a variable, a study, a category, the names of a view or a "
                                                "description, as PDF; of a study its codebook");
    command_->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
    command_->add_option("--variable", variable_, "one variable of a study")->type_name("STUDY/NAME");
    command_->add_option("--study", study_, "all variables of a study, or of all studies of a group")->type_name("NO");
    command_->add_option("--category", category_, "all variables of a category; VIEW is a number or a name of tables")
        ->type_name("VIEW/ID");
    command_->add_option("--names", names_, "the names of a view, or of an entry and what stands below it")
        ->type_name("VIEW[/KEY]");
    command_->add_option("--description", description_, "what is said of an entry; without one, of the catalogue")
        ->expected(0, 1)
        ->type_name("[VIEW/KEY]");
    command_->add_option("--out", out_, "the file, which ends in .pdf")->required()->type_name("FILE");
    command_
        ->add_option("--contents", contents_,
                     "labels, titles and texts: original, english or both (default: the catalogue's)")
        ->check(CLI::IsMember({"original", "english", "both"}))
        ->type_name("WHICH");
    command_->add_option("--paper", paper_, "A4, Letter, A3, Legal ... (default: A4 or Letter, by the locale)")
        ->type_name("NAME");
    return command_;
}

/// @throws UsageError for what makes no report
void ReportCommand::readArguments() {
    constexpr std::array sources = {"--variable", "--study", "--category", "--names", "--description"};
    if (std::ranges::count_if(sources, [this](const char* one) { return given(one); }) != 1)
        throw UsageError{said(u"gebraucht wird eines davon: --variable, --study, --category, --names, --description"_s,
                              u"one of these is needed: --variable, --study, --category, --names, --description"_s)};
    if (given("--variable") && variable_.find('/') == std::string::npos)
        throw UsageError{said(u"--variable %1: erwartet wird STUDIE/NAME"_s, u"--variable %1: expected is STUDY/NAME"_s)
                             .arg(QString::fromStdString(variable_))};
    if (given("--category") && TypedEntry::of(category_).entry.isEmpty())
        throw UsageError{said(u"--category %1: erwartet wird ANSICHT/NUMMER"_s, u"--category %1: expected is VIEW/ID"_s)
                             .arg(QString::fromStdString(category_))};
    if (given("--description") && !description_.empty() && TypedEntry::of(description_).entry.isEmpty())
        throw UsageError{
            said(u"--description %1: erwartet wird ANSICHT/SCHLÜSSEL"_s, u"--description %1: expected is VIEW/KEY"_s)
                .arg(QString::fromStdString(description_))};
    if (!out().endsWith(u".pdf"_s, Qt::CaseInsensitive))
        throw UsageError{
            said(u"--out %1: der Name muss auf .pdf enden"_s, u"--out %1: the name has to end in .pdf"_s).arg(out())};
    readPaper();
}

/// @throws UsageError for a paper that there is not
void ReportCommand::readPaper() {
    const QString name = QString::fromStdString(paper_);
    order_.paper = given("--paper") ? Paper::code(name) : Paper::byLocale();
    if (order_.paper == 0)
        throw UsageError{said(u"--paper %1: dieses Papier gibt es nicht, sondern %2"_s,
                              u"--paper %1: there is no such paper, but %2"_s)
                             .arg(name, Paper::names().join(u", "_s))};
}

/// What can be seen to fail before a long report is made.
QString ReportCommand::faultOfFile() const {
    const QFileInfo file(out());
    if (file.isDir())
        return said(u"das ist ein Ordner"_s, u"this is a folder"_s);
    if (!file.absoluteDir().exists())
        return said(u"diesen Ordner gibt es nicht"_s, u"there is no such folder"_s);
    if (file.exists() && file.canonicalFilePath() == QFileInfo(QString::fromStdString(catalogue_)).canonicalFilePath())
        return said(u"das ist der Katalog"_s, u"this is the catalogue"_s);
    return {};
}

bool ReportCommand::openView(Session& session, ExplorerModel& explorer, int view) {
    session.takeWarningsAsFailures();
    explorer.open(view);
    source_.view = view;
    source_.isStudy = isStudyView(view);
    source_.viewName = viewName(view);
    source_.sourceTable = gViews.at(view, ViewTable::Table);
    return !session.failed() && explorer.tree.root();
}

/// By its number, or by the name that its tables have in common. False after words on standard error.
bool ReportCommand::openView(Session& session, ExplorerModel& explorer, const QString& typed) {
    for (int view = 1; view <= gCatalogueOptions.NumberOfFrmExplorers; ++view) {
        const QString table = gViews.at(view, ViewTable::Table);
        if (!table.isEmpty() && (typed == QString::number(view) || typed.compare(table, Qt::CaseInsensitive) == 0))
            return openView(session, explorer, view);
    }
    session.say(said(u"Der Katalog hat keine Ansicht %1."_s, u"The catalogue has no view %1."_s).arg(typed));
    return false;
}

/// The entry of an id, or of a key as vdx tree prints it. @return null without one
const CatalogueNode* entryOf(const ExplorerModel& explorer, const QString& typed) {
    const CatalogueNode* byId = explorer.tree.find(explorer.tree.root()->Key.left(1) + typed);
    return byId ? byId : explorer.tree.find(typed);
}

bool ReportCommand::chooseEntry(Session& session, const ExplorerModel& explorer, const QString& typed) {
    const CatalogueNode* node = entryOf(explorer, typed);
    if (!node) {
        session.say(
            said(u"Ansicht %1 hat keinen Eintrag %2."_s, u"View %1 has no entry %2."_s).arg(source_.view).arg(typed));
        return false;
    }
    // The root is the view itself: no entry is selected then, as in an explorer.
    if (node->Parent) {
        source_.nodeId = node->id();
        source_.nodeText = node->Text;
    }
    return true;
}

/// Study and variable may have the slash in their names: the first place that gives both counts.
bool ReportCommand::chooseVariable(Session& session) {
    order_.choice = PrintChoice::Variable;
    if (!hasStudies(session))
        return false;
    const QString typed = QString::fromStdString(variable_);
    for (qsizetype slash = typed.indexOf(u'/'); slash >= 0; slash = typed.indexOf(u'/', slash + 1)) {
        RequestEditor editor;
        editor.open();
        if (!editor.StudyClick(typed.left(slash)) || !editor.chooseVariable(typed.mid(slash + 1)))
            continue;
        source_.study = editor.request().dbcStudy.value;
        source_.variable = editor.request().dbcVariable.value;
        return !session.failed();
    }
    if (!session.failed())
        session.say(said(u"Variable nicht gefunden: %1"_s, u"Variable not found: %1"_s).arg(typed));
    return false;
}

/// In whichever view of studies it stands.
bool ReportCommand::chooseStudy(Session& session) {
    order_.choice = PrintChoice::NodeVariables;
    const QString typed = QString::fromStdString(study_);
    for (int view = 1; view <= gCatalogueOptions.NumberOfFrmExplorers; ++view) {
        if (!isStudyView(view))
            continue;
        ExplorerModel explorer;
        if (!openView(session, explorer, view))
            return false;
        if (const CatalogueNode* node = entryOf(explorer, typed); node && node->Parent)
            return chooseEntry(session, explorer, typed);
    }
    session.say(said(u"Der Katalog hat keine Studie oder Gruppe %1."_s, u"The catalogue has no study or group %1."_s)
                    .arg(typed));
    return false;
}

bool ReportCommand::chooseCategory(Session& session) {
    order_.choice = PrintChoice::NodeVariables;
    const TypedEntry typed = TypedEntry::of(category_);
    ExplorerModel explorer;
    if (!openView(session, explorer, typed.view) || !chooseEntry(session, explorer, typed.entry))
        return false;
    if (source_.nodeId.isEmpty())
        session.say(said(u"Das ist die Ansicht selbst, keine Kategorie: %1"_s,
                         u"This is the view itself, and no category: %1"_s)
                        .arg(QString::fromStdString(category_)));
    return !source_.nodeId.isEmpty();
}

bool ReportCommand::chooseNames(Session& session) {
    order_.choice = PrintChoice::Names;
    const TypedEntry typed = TypedEntry::of(names_);
    ExplorerModel explorer;
    return openView(session, explorer, typed.view) &&
           (typed.entry.isEmpty() || chooseEntry(session, explorer, typed.entry));
}

bool ReportCommand::chooseDescription(Session& session) {
    order_.choice = PrintChoice::Description;
    source_.window = PrintSource::Window::Document;
    if (description_.empty())
        return true;
    const TypedEntry typed = TypedEntry::of(description_);
    ExplorerModel explorer;
    if (!openView(session, explorer, typed.view) || !chooseEntry(session, explorer, typed.entry))
        return false;
    if (source_.nodeId.isEmpty())
        session.say(said(u"Das ist die Ansicht selbst, die keine Beschreibung hat: %1"_s,
                         u"This is the view itself, which has no description: %1"_s)
                        .arg(QString::fromStdString(description_)));
    return !source_.nodeId.isEmpty();
}

/// What is selected, as a window would hand it over. False after words on standard error.
bool ReportCommand::choose(Session& session) {
    source_ = {.window = PrintSource::Window::Explorer};
    source_.database = QFileInfo(QString::fromStdString(catalogue_)).absoluteFilePath();
    source_.language = gLanguage + 1;
    if (given("--variable"))
        return chooseVariable(session);
    if (given("--study"))
        return chooseStudy(session);
    if (given("--category"))
        return chooseCategory(session);
    return given("--names") ? chooseNames(session) : chooseDescription(session);
}

int ReportCommand::write(Session& session, ReportRun& run) const {
    constexpr double ofReading = 0.6;
    constexpr int slice = 100; // milliseconds
    const StopSignal stop;
    const std::function<bool(double)> progress = session.progress(false);
    const auto goesOn = [&](double share) {
        if (progress)
            progress(share);
        return !stop.wanted();
    };
    while (goesOn(ofReading * run.done()) && run.step(slice)) {
    }
    QString fault = run.fault();
    if (!stop.wanted() && fault.isEmpty())
        fault = savePdf(run.layout(), out(), [&](int done, int total) {
            return goesOn(ofReading + (1 - ofReading) * done / std::max(total, 1));
        });
    session.progressLine({});
    if (stop.wanted())
        fault = said(u"abgebrochen"_s, u"stopped"_s);
    if (!fault.isEmpty()) {
        session.say(out() + u": "_s + fault);
        return 1;
    }
    const int pages = run.layout().pageCount();
    session.printer().printLines({run.layout().outline().title, pages == 1
                                                                    ? said(u"1 Seite"_s, u"1 page"_s)
                                                                    : said(u"%1 Seiten"_s, u"%1 pages"_s).arg(pages)});
    return 0;
}

int ReportCommand::run(Session& session) {
    readArguments();
    if (const QString fault = faultOfFile(); !fault.isEmpty()) {
        session.say(out() + u": "_s + fault);
        return 1;
    }
    if (!session.open(QString::fromStdString(catalogue_)))
        return 1;
    if (given("--contents"))
        gOptions.EnglishLanguage = contents_ == "english";
    order_.original = contents_ == "both" || !gOptions.EnglishLanguage;
    order_.english = contents_ == "both" || gOptions.EnglishLanguage;
    if (!choose(session) || session.failed())
        return 1;
    ReportRun run(reportRequest(source_, order_, gOptions));
    if (const QString reason = run.open(); !reason.isEmpty()) {
        session.say(reason);
        return 1;
    }
    return write(session, run);
}

} // namespace

std::unique_ptr<Command> makeReportCommand() {
    return std::make_unique<ReportCommand>();
}
