#include "app/frmMain.h"
#include "app/frmProcess.h"
#include "app/frmSplash.h"
#include "app/frmStatus.h"
#include "app/globals.h"
#include "app/start.h"
#include "diagnostics/errors.h"
#include "editing/frmEdit.h"
#include "editing/frmPosition.h"
#include "editing/frmTreeChoice.h"
#include "language/mdLanguage.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/ui/Asker.h"
#include "printing/frmPrintJob.h"
#include "widgets/Desktop.h"
#include "widgets/Icons.h"
#include "widgets/ProgramStyle.h"
#include "widgets/QtAsker.h"
#include "widgets/StandardTexts.h"

#include <QApplication>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {

class Program : public QApplication {
public:
    using QApplication::QApplication;

    /// A failure that no handler caught is reported; the window system could not pass it on.
    bool notify(QObject* receiver, QEvent* event) override {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::exception& failure) {
            reportError(asError(failure));
            return false;
        }
    }
};

} // namespace

int main(int, char** arguments) {
    std::signal(SIGXFSZ, SIG_IGN); // a file that may grow no further is reported as a full disk is
    // No command line is read, not even the window system's own part of it.
    int count = 1;
    Program program(count, arguments);
    Program::setApplicationName(u"varidex"_s);
    Program::setApplicationVersion(u"%1.%2.%3"_s.arg(ApplicationInfo::majorVersion)
                                       .arg(ApplicationInfo::minorVersion)
                                       .arg(ApplicationInfo::revision));
    Program::setDesktopFileName(u"varidex"_s);
    Program::setWindowIcon(Icons::get(u"varidex"_s));
    Program::setStyle(new ProgramStyle);
    // The start window is not the last one.
    Program::setQuitOnLastWindowClosed(false);

    QtAsker dialogs;
    dialogs.progressWindow = frmProcess::open;
    dialogs.textEditor = frmEdit::ask;
    dialogs.lineOrderer = frmPosition::ask;
    dialogs.treeChooser = frmTreeChoice::ask;
    dialogs.printJobChooser = frmPrintJob::ask;
    ui::setAsker(&dialogs);
    mdLanguage::showStartWindow = frmSplash::showModal;
    gUnloadWindows = unloadChildWindows;
    int outcome = 0;
    {
        Main::StartServices();
        StandardTexts::followLanguage();
        frmMain window;
        {
            const BusyScope starting;
            window.load();
        }
        window.panelsChanged();
        window.show();
        frmStatus::unload();
        dialogs.setPointer(ui::Pointer::Default);
        Program::setQuitOnLastWindowClosed(true);
        outcome = Program::exec();
    }
    gUnloadWindows = nullptr;
    ui::setAsker(nullptr);
    return outcome;
}
