#include "app/frmAbout.h"
#include "app/frmMain.h"
#include "app/frmProcess.h"
#include "app/frmSplash.h"
#include "app/globals.h"
#include "app/start.h"
#include "config/CProfile.h"
#include "config/frmOptions.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "widgets/Desktop.h"
#include "widgets/QtAsker.h"
#include "widgets/StandardTexts.h"

#include <CLI/CLI.hpp>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QLabel>
#include <QMenu>
#include <QPalette>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

struct Wanted {
    std::string catalogue, data, folder, language = "de";
    bool dark = false;
    double scale = 1;
    int fontSize = 0;
};

void useDarkPalette() {
    QPalette dark(QColor(53, 55, 59));
    dark.setColor(QPalette::Base, QColor(35, 37, 40));
    dark.setColor(QPalette::AlternateBase, QColor(43, 45, 49));
    dark.setColor(QPalette::Highlight, QColor(61, 123, 190));
    dark.setColor(QPalette::Link, QColor(120, 175, 235));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, QColor(140, 143, 148));
    QApplication::setPalette(dark);
}

/// A screen as it is usual today; the platform's own is smaller than the main window.
QByteArray screenOf(const QTemporaryDir& folder) {
    QFile file(folder.filePath(u"screen.json"_s));
    if (!file.open(QIODevice::WriteOnly))
        return "offscreen";
    file.write(R"({"screens":[{"name":"screen","x":0,"y":0,"width":1920,"height":1080,"logicalDpi":96,"dpr":1}]})");
    return "offscreen:configfile=" + QFile::encodeName(file.fileName());
}

/// A person's settings, made for this run only.
void prepareHome(const Wanted& wanted, const QTemporaryDir& folder) {
    qputenv("VARIDEX_HOME", QFile::encodeName(folder.path()));
    qputenv("VARIDEX_CONFIG", QFile::encodeName(folder.path()));
    const QString program = QCoreApplication::applicationDirPath();
    QFile::copy(program + u"/../bin/Vx.mdb"_s, folder.filePath(u"Vx.mdb"_s));
    const QFileInfo catalogue(QString::fromLocal8Bit(wanted.catalogue));
    const std::pair<QString, QString> settings[] = {
        {u"DatabasePath"_s, Paths::native(catalogue.absolutePath())},
        {u"DatabaseName"_s, catalogue.fileName()},
        {u"DataPath"_s, Paths::native(QFileInfo(QString::fromLocal8Bit(wanted.data)).absoluteFilePath())},
    };
    for (const auto& [key, value] : settings)
        CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, key, value);
    mdLanguage::SaveSysSettings(wanted.language == "en" ? 1 : 0, 0);
}

/// Takes the pictures of one run of the program.
class Walk {
public:
    explicit Walk(const Wanted& wanted) : folder_(QString::fromLocal8Bit(wanted.folder)) {
        suffix_ = u'-' + QString::fromLatin1(wanted.language) + (wanted.dark ? u"-dark"_s : u"-light"_s);
        if (wanted.scale != 1)
            suffix_ += u'-' + QString::number(qRound(wanted.scale * 100));
        if (wanted.fontSize > 0)
            suffix_ += u"-pt"_s + QString::number(wanted.fontSize);
    }

    bool failed() const { return failed_; }

    /// The windows around the others: start, progress and about.
    void small() {
        frmSplash splash;
        splash.show();
        take(splash, u"start"_s);
        frmProcess progress([] {});
        progress.lblStatus->setText(u"SV2018.mdb"_s);
        progress.setProgress(40, 100);
        progress.show();
        take(progress, u"progress"_s);
        frmAbout about;
        about.show();
        about.findChild<QPushButton*>(u"cmdSysInfo"_s)->click();
        take(about, u"about"_s);
    }

    /// The frame with menus and child windows.
    void frame() {
        frmMain main;
        main.load();
        main.resize(1280, 800);
        main.show();
        take(main, u"main"_s);
        for (const QString& name : {u"mnuView"_s, u"mnuOptions"_s}) {
            auto* menu = main.findChild<QMenu*>(name);
            menu->popup(QPoint());
            take(*menu, name);
            menu->close();
        }
        main.perform(u"mnuViewExplorers(1)"_s);
        main.perform(u"mnuWindowTileVertical"_s);
        take(main, u"main-tiled"_s);
        unloadChildWindows();
        take(main, u"main-empty"_s);
    }

    void options() {
        frmOptions dialog;
        dialog.show();
        auto* tabs = dialog.findChild<QTabWidget*>(u"tbsOptions"_s);
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            take(dialog, u"options"_s + (i == 0 ? QString() : QString::number(i + 1)));
        }
    }

private:
    QString folder_, suffix_;
    bool failed_ = false;

    void take(QWidget& window, const QString& name) {
        QCoreApplication::processEvents();
        const QString file = QDir(folder_).filePath(name + suffix_ + u".png"_s);
        if (!window.grab().save(file)) {
            std::fprintf(stderr, "%s cannot be written.\n", qUtf8Printable(file));
            failed_ = true;
        }
    }
};

} // namespace

/// take_pictures CATALOGUE DATA FOLDER: walks through the program on a catalogue, without a screen, and leaves pictures of its
/// windows. Settings are made for the run; nobody's own are read or written.
int main(int count, char** arguments) {
    Wanted wanted;
    CLI::App line("Pictures of the program's windows");
    line.add_option("catalogue", wanted.catalogue)->required();
    line.add_option("data", wanted.data, "folder of the case data files")->required();
    line.add_option("folder", wanted.folder, "where the pictures go")->required();
    line.add_option("--language", wanted.language)->check(CLI::IsMember({"de", "en"}));
    line.add_flag("--dark", wanted.dark);
    line.add_option("--scale", wanted.scale)->check(CLI::Range(0.5, 4.0));
    line.add_option("--font-size", wanted.fontSize)->check(CLI::Range(6, 48));
    CLI11_PARSE(line, count, arguments);

    const QTemporaryDir home;
    qputenv("QT_SCALE_FACTOR", QByteArray::number(wanted.scale));
    qputenv("QT_QPA_PLATFORM", screenOf(home));
    QApplication application(count, arguments);
    QApplication::setStyle(u"Fusion"_s);
    if (wanted.dark)
        useDarkPalette();
    if (wanted.fontSize > 0) {
        QFont font = QApplication::font();
        font.setPointSize(wanted.fontSize);
        QApplication::setFont(font);
    }
    QtAsker asker;
    ui::setAsker(&asker);
    prepareHome(wanted, home);
    if (!QDir().mkpath(QString::fromLocal8Bit(wanted.folder)))
        return 1;
    Main::StartServices();
    StandardTexts::followLanguage();
    Walk walk(wanted);
    walk.small();
    walk.frame();
    walk.options();
    ui::setAsker(nullptr);
    return walk.failed() ? 1 : 0;
}
