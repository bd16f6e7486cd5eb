#pragma once

#include "app/walk/Screen.h"
#include "support/PrintQt.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

/// The program as a person meets it who has just been given it, and the keys that lead through it.
class Walk : public testing::Test {
protected:
    QTemporaryDir folder;
    std::unique_ptr<Screen> screen;
    QProcess program;
    QString mainWindow;

    QString home(const QString& name) const { return folder.filePath(name); }

    /// A home with the sample archive as what an installation opens by default.
    void prepareHome() {
        const QString archive = QStringLiteral(VARIDEX_SAMPLES);
        ASSERT_TRUE(QFile::copy(QStringLiteral(VARIDEX_BINARIES "/Vx.mdb"), home(u"Vx.mdb"_s)));
        ASSERT_TRUE(QFile::copy(archive + u"/solvarden.mdb"_s, home(u"solvarden.mdb"_s)));
        QFile defaults(home(u"machine.ini"_s));
        ASSERT_TRUE(defaults.open(QIODevice::WriteOnly));
        defaults.write(
            u"[Software\\Norvik\\Varidex\\3.6\\Default]\nDatabasePath=1:%1\nDatabaseName=1:solvarden.mdb\n"
            "DataPath=1:%2\nQuestionnairePath=1:%2/fragebogen\nEditStudiesMode=1:1\n"_s.arg(folder.path(), archive)
                .toUtf8());
        prepareDesktop();
        qputenv("VARIDEX_HOME", QFile::encodeName(folder.path()));
        qputenv("VARIDEX_CONFIG", QFile::encodeName(folder.path()));
        // In a build that looks for leaks: what the desktop's libraries keep to their end is not the program's.
        qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":detect_leaks=0");
    }

    /// A desktop with one application, which tells what it was started with.
    void prepareDesktop() {
        ASSERT_TRUE(QDir(folder.path()).mkpath(u"applications"_s));
        const QByteArray reader = QFile::encodeName(home(u"reader"_s));
        const std::pair<QString, QByteArray> files[] = {
            {u"reader"_s, "#!/bin/sh\nprintf '%s' \"$*\" > \"$0.new\" && mv \"$0.new\" \"$0.told\"\n"},
            {u"applications/reader.desktop"_s, "[Desktop Entry]\nType=Application\nExec=" + reader + " %f\n"},
            {u"mimeapps.list"_s, "[Default Applications]\napplication/pdf=reader.desktop\n"}};
        for (const auto& [name, content] : files) {
            QFile file(home(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) > 0);
            file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
        }
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()));
    }

    ~Walk() override {
        if (program.state() != QProcess::NotRunning) {
            take(u"failed"_s);
            program.kill();
            program.waitForFinished();
        }
    }

    bool take(const QString& name) const {
        const QString pictures = QStringLiteral(VARIDEX_PICTURES);
        QDir().mkpath(pictures);
        return screen && screen->take(pictures + u'/' + name + u".png"_s);
    }

    static const QMimeData* clipboard() { return QGuiApplication::clipboard()->mimeData(); }

    /// Repeats keys until the clipboard holds what they should copy: type-ahead starts anew when the machine was too
    /// slow for it.
    bool copies(const QString& text, const std::function<void()>& keys) const {
        return Screen::until([&] {
            keys();
            for (int i = 0; i < 10 && clipboard()->text() != text; ++i) {
                QCoreApplication::processEvents();
                QThread::msleep(50);
            }
            return clipboard()->text() == text;
        });
    }
    /// Opens the options dialog, which tells the language, and leaves it.
    bool optionsAreCalled(const QString& title, const QString& picture) {
        // A key that came while the program was at something is pressed again, as a person would.
        const bool opened =
            Screen::until([&] {
                screen->press({u"ctrl+comma"_s});
                return soon([&] { return screen->activeWindow() != mainWindow && screen->activeTitle() == title; });
            }) &&
            take(picture);
        return opened && Screen::until([&] {
                   screen->press({u"Escape"_s});
                   return soon([&] { return screen->activeWindow() == mainWindow; });
               });
    }
    /// Asks for about two seconds.
    static bool soon(const std::function<bool()>& condition) {
        for (int i = 0; i < 20; ++i) {
            if (condition())
                return true;
            QCoreApplication::processEvents();
            QThread::msleep(100);
        }
        return false;
    }

    /// Starts the program on a screen of its own, past the start window, in German.
    void begin();

    void startWindow();
};

inline void Walk::begin() {
    prepareHome();
    screen = std::make_unique<Screen>(folder.path());
    ASSERT_TRUE(screen->stands());
    startWindow();
}

inline void Walk::startWindow() {
    screen->start(program, QStringLiteral(VARIDEX_BINARIES "/varidex"));
    ASSERT_TRUE(screen->opens(u"Varidex"_s, {}));
    const QString start = screen->activeWindow();
    ASSERT_TRUE(take(u"1-start"_s));
    screen->press({u"Escape"_s});
    ASSERT_EQ(screen->activeWindow(), start) << "keys do nothing on the start window";
    // Not again at the next start; and German.
    screen->press({u"alt+d"_s});
    ASSERT_TRUE(Screen::until([&] {
        mainWindow = screen->activeWindow();
        return mainWindow != start && screen->widthOf(mainWindow) > 1000;
    }));
    EXPECT_EQ(screen->activeTitle(), u"solvarden.mdb - Varidex");
    ASSERT_TRUE(optionsAreCalled(u"Optionen"_s, u"2-optionen"_s));
}
