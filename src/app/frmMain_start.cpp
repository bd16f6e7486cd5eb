#include "app/SampleArchive.h"
#include "app/VdxProcess.h"
#include "app/frmImport.h"
#include "app/frmMain.h"
#include "app/frmProcess.h"
#include "app/frmStartPage.h"
#include "app/globals.h"
#include "app/start.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CatalogueImport.h"
#include "catalogue/ImportGuard.h"
#include "catalogue/fileKind.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"
#include "widgets/ChildArea.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QStackedWidget>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

// The ways to a catalogue that is not just opened: the start page, an import, the sample archive.

namespace {

bool isSameFile(const QString& a, const QString& b) {
    const QFileInfo one(Paths::resolved(a)), other(Paths::resolved(b));
    return one.exists() && other.exists() && one.canonicalFilePath() == other.canonicalFilePath();
}

/// Runs a command of vdx under the progress window, until it has ended or the user has stopped it.
VdxProcess::End runUnderProgress(const QStringList& arguments, const QString& words, QWidget* parent) {
    VdxProcess process;
    frmProcess window([&process] { process.stop(); }, parent);
    window.setWindowModality(Qt::ApplicationModal);
    window.lblStatus->setText(words);
    VdxProcess::End outcome{VdxProcess::Outcome::Stopped, {}, {}};
    bool ended = false;
    process.onProgress = [&window](int percent) { window.setProgress(percent, 100); };
    process.onEnd = [&](const VdxProcess::End& end) {
        outcome = end;
        ended = true;
        window.done(0);
    };
    process.start(arguments);
    if (!ended)
        window.exec();
    return outcome;
}

} // namespace

void frmMain::showStartPage() {
    if (stateOpen_ || area_->current()) {
        centre_->setCurrentWidget(area_);
        return;
    }
    if (!startPage_) {
        startPage_ = new frmStartPage([this](const QString& name) { perform(name); }, this);
        centre_->addWidget(startPage_);
    }
    frmStartPage::Ways ways;
    for (const QString& file : recentFiles_)
        ways.recent.push_back({file, !mdDataBase::fileExists(file)});
    const SampleArchive sample = SampleArchive::find(QCoreApplication::applicationDirPath());
    ways.canImport = !VdxProcess::program().isEmpty();
    ways.hasSample = sample.isThere();
    ways.sampleIsBuilt = sample.isBuilt();
    startPage_->showWays(ways);
    centre_->setCurrentWidget(startPage_);
    startPage_->takeFocus();
}

/// Tells of a file that is gone or is no catalogue before anything is closed for it, and offers to import one that can
/// be.
/// @return true if it is not to be opened
bool frmMain::refuses(const QString& file) {
    if (!mdDataBase::fileExists(file)) {
        mdDataBase::reportMissingFile(file);
        return true;
    }
    const FileKind kind = kindOfFile(file, true);
    const QString words = refusalOf(file, kind);
    if (words.isEmpty())
        return false;
    recent_.RemoveRecentFile(file);
    InitFileMenu();
    if (!kind.canBeImported || VdxProcess::program().isEmpty()) {
        ui::asker().messageBox({.text = words, .icon = ui::Icon::Exclamation});
        return true;
    }
    const QString question = words + u"\r\n"_s + TranslateText(u"Wollen Sie sie importieren?"_s);
    if (ui::asker().messageBox({question, {}, ui::Icon::Question, ui::Buttons::YesNo}) == ui::Answer::Yes)
        importSurvey(file);
    return true;
}

/// A catalogue that is open here is not written by another process: the windows would show what is no longer so.
bool frmMain::closeForImport(const QString& catalogue, QString& closed) {
    if (gDatabase.State() != 1 || !isSameFile(catalogue, gDatabase.Database()))
        return true;
    const QString question = TranslateText(u"Die Datenbank ist geöffnet. Sie wird für den Import mit ihren Fenstern "
                                           u"geschlossen und danach wieder geöffnet. Fortfahren?"_s);
    if (ui::asker().messageBox({question, {}, ui::Icon::Question, ui::Buttons::YesNo, ui::Answer::No}) !=
        ui::Answer::Yes)
        return false;
    closed = gDatabase.Database();
    CloseForms();
    mdDataBase::CloseDataBase();
    InitFormState(0);
    return true;
}

void frmMain::importSurvey(const QString& file) {
    QString proposal = gDatabase.State() == 1 ? gDatabase.Database() : QString();
    if (proposal.isEmpty()) {
        // Not everybody has a folder of documents.
        QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        if (!QFileInfo(folder).isDir())
            folder = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
        proposal = Paths::join(folder, u"katalog.mdb"_s);
    }
    QString closed, wanted;
    {
        frmImport dialog(file, proposal, this);
        dialog.mayWrite = [&](const QString& catalogue) { return closeForImport(catalogue, closed); };
        dialog.exec();
        wanted = dialog.wanted();
        if (!dialog.imported().isEmpty())
            Main::proposeDataFolder(dialog.imported());
    }
    if (!wanted.isEmpty() && closeCurrentDatabase())
        openFile(wanted);
    else if (!closed.isEmpty() && gDatabase.State() != 1)
        openFile(closed);
}

void frmMain::openSample() {
    const SampleArchive sample = SampleArchive::find(QCoreApplication::applicationDirPath());
    if (!sample.isThere() || !closeCurrentDatabase())
        return;
    if (!sample.isBuilt()) {
        QDir().mkpath(Paths::folderOf(sample.catalogue));
        VdxProcess::End end = runUnderProgress({u"build"_s, sample.catalogue, u"--from"_s, sample.description},
                                               TranslateText(u"Das Beispielarchiv wird gebaut."_s), this);
        if (end.outcome != VdxProcess::Outcome::Done) {
            try {
                removeLeftovers(sample.catalogue);
            } catch (const ImportError& error) {
                end.words += u'\n' + error.text();
            }
            ui::asker().messageBox(
                {.text = end.words,
                 .icon = end.outcome == VdxProcess::Outcome::Stopped ? ui::Icon::Information : ui::Icon::Exclamation});
            InitFormState(0);
            return;
        }
    }
    Main::proposeDataFolder(sample.catalogue);
    Main::proposeFolder(&Options::QuestionnairePath, sample.questionnaires);
    Main::proposeFolder(&Options::SPSSPath, sample.dataSets);
    openFile(sample.catalogue);
}
