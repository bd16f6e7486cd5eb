#include "windowsProgram.h"

#include "PaintWatch.h"
#include "residentMemory.h"

#include "app/frmMain.h"
#include "app/globals.h"
#include "app/start.h"
#include "config/CProfile.h"
#include "explorer/frmExplorer.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "widgets/QtAsker.h"
#include "widgets/StandardTexts.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTableView>

using namespace Qt::StringLiterals;

void windowsProgram::prepareHome(const QString& folder, const QString& catalogue) {
    qputenv("VARIDEX_HOME", QFile::encodeName(folder));
    qputenv("VARIDEX_CONFIG", QFile::encodeName(folder));
    Paths::resetApplicationFolder();
    QFile::copy(QCoreApplication::applicationDirPath() + u"/../bin/Vx.mdb"_s, folder + u"/Vx.mdb"_s);
    const std::pair<QString, QString> settings[] = {{u"DatabasePath"_s, Paths::native(folder)},
                                                    {u"DatabaseName"_s, QDir(folder).relativeFilePath(catalogue)},
                                                    {u"DataPath"_s, Paths::native(folder)}};
    for (const auto& [key, value] : settings)
        CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, key, value);
    mdLanguage::SaveSysSettings(0, 0);
}

frmExplorer& windowsProgram::explorerInFront() {
    for (auto form = Form::open().rbegin(); form != Form::open().rend(); ++form)
        if (auto* explorer = dynamic_cast<frmExplorer*>(*form))
            return *explorer;
    qFatal("there is no explorer");
}

frmExplorer& windowsProgram::openExplorer(frmMain& window, int view) {
    window.perform(arrayName(u"mnuViewExplorers"_s, view));
    return explorerInFront();
}

void windowsProgram::run(int& argc, char** argv, int explorers) {
    QApplication application(argc, argv);
    QtAsker dialogs;
    ui::setAsker(&dialogs);
    Main::StartServices();
    StandardTexts::followLanguage();
    frmMain window;
    {
        const BusyScope starting;
        window.load();
    }
    PaintWatch watch(explorerInFront().findChild<QTableView*>(u"lvListView"_s)->viewport());
    window.panelsChanged();
    window.show();
    watch.wait();
    for (int i = 1; i <= explorers && explorers > 1; ++i) {
        const bool topic = i == explorers;
        frmExplorer& explorer = i == 1 ? explorerInFront() : openExplorer(window, topic ? 2 : 1);
        explorer.setPanels(2);
        if (!explorer.showNode(topic ? u"B1"_s : u"AS0%1"_s.arg(i * 100)))
            qFatal("the entry is not in the tree");
        if (topic)
            explorer.findChild<QLineEdit*>(u"txtQuickFilter"_s)->setText(u"bereich"_s);
        QCoreApplication::processEvents();
    }
    std::printf("%ld\n", residentMemory());
    std::fflush(stdout);
    std::_Exit(0);
}
