#include "app/walk/Screen.h"

#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QPalette>
#include <QPixmap>
#include <QScreen>
#include <QStandardPaths>
#include <QThread>
#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 30'000; // ms
constexpr int interval = 40;     // ms between two questions

/// Nothing that a test started outlives it, even if it is killed.
void tie(QProcess& process) {
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

void end(QProcess& process) {
    process.terminate();
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(5000)) {
        process.kill();
        process.waitForFinished();
    }
}

} // namespace

QStringList Screen::missingPrograms() {
    QStringList missing = {u"Xvfb"_s, u"openbox"_s, u"xdotool"_s};
    missing.removeIf([](const QString& name) { return !QStandardPaths::findExecutable(name).isEmpty(); });
    return missing;
}

Screen::Screen(const QString& folder) {
    tie(server_);
    server_.setStandardErrorFile(QProcess::nullDevice());
    // The server takes a number that is free and tells it as soon as it can be asked.
    server_.start(u"Xvfb"_s,
                  {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1440x900x24"_s, u"-nolisten"_s, u"tcp"_s});
    QByteArray number;
    while (!number.endsWith('\n') && server_.waitForReadyRead(patience))
        number += server_.readAllStandardOutput();
    if (number.isEmpty())
        return;
    qputenv("DISPLAY", ':' + number.trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    for (const char* name : {"QT_SCALE_FACTOR", "QT_STYLE_OVERRIDE", "WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP"})
        qunsetenv(name);
    qputenv("XDG_CONFIG_HOME", folder.toLocal8Bit());
    qputenv("XDG_CACHE_HOME", folder.toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", folder.toLocal8Bit());
    static int count = 1;
    static char name[] = "walk";
    static char* arguments[] = {name, nullptr};
    application_ = std::make_unique<QGuiApplication>(count, arguments);
    tie(manager_);
    manager_.setStandardErrorFile(QProcess::nullDevice());
    // A window that comes before the manager looks is never seen; so it says itself when it does.
    const QString ready = folder + u"/ready"_s;
    manager_.start(u"openbox"_s, {u"--sm-disable"_s, u"--startup"_s, u"touch "_s + ready});
    stands_ = until([&] { return QFile::exists(ready); });
}

Screen::~Screen() {
    application_.reset();
    end(manager_);
    end(server_);
}

void Screen::start(QProcess& program, const QString& file) {
    tie(program);
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(file, QStringList());
}

bool Screen::until(const std::function<bool()>& condition) {
    QElapsedTimer waited;
    waited.start();
    while (!condition()) {
        if (waited.elapsed() > patience)
            return condition();
        QCoreApplication::processEvents();
        QThread::msleep(interval);
    }
    return true;
}

QString Screen::xdotool(const QStringList& arguments) {
    QProcess tool;
    tie(tool);
    tool.setStandardErrorFile(QProcess::nullDevice());
    tool.start(u"xdotool"_s, arguments);
    tool.waitForFinished();
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

void Screen::press(const QStringList& keys) {
    xdotool(QStringList{u"key"_s, u"--delay"_s, u"5"_s} + keys);
}

void Screen::type(const QString& text) {
    xdotool({u"type"_s, u"--delay"_s, u"5"_s, text});
}

QImage Screen::seen() {
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
}

std::optional<QPoint> Screen::selectedBy(const QStringList& keys) {
    const QRgb selection = QGuiApplication::palette().color(QPalette::Highlight).rgb();
    const QImage before = seen();
    press(keys);
    std::optional<QPoint> found;
    until([&] {
        const QImage now = seen();
        for (int x = 0; x < now.width() && !found; ++x)
            for (int y = 0; y + 6 < now.height() && !found; ++y)
                if (now.pixel(x, y) == selection && now.pixel(x, y + 6) == selection &&
                    now.pixel(x + 4, y) == selection && before.pixel(x, y) != selection)
                    found = QPoint(x + 80, y + 6);
        return found.has_value();
    });
    return found;
}

void Screen::dragRight(const QPoint& from, const QPoint& to, const std::function<void()>& beforeRelease) {
    const auto moveTo = [](const QPoint& where) {
        xdotool({u"mousemove"_s, QString::number(where.x()), QString::number(where.y())});
    };
    moveTo(from);
    xdotool({u"mousedown"_s, u"3"_s});
    for (int step = 1; step <= 5; ++step)
        moveTo(from + (to - from) * step / 5);
    beforeRelease();
    xdotool({u"mouseup"_s, u"3"_s});
}

QString Screen::activeWindow() const {
    return xdotool({u"getactivewindow"_s});
}

QString Screen::activeTitle() const {
    return xdotool({u"getactivewindow"_s, u"getwindowname"_s});
}

int Screen::widthOf(const QString& window) const {
    for (const QString& line : xdotool({u"getwindowgeometry"_s, u"--shell"_s, window}).split(u'\n'))
        if (line.startsWith(u"WIDTH="))
            return line.mid(6).toInt();
    return 0;
}

bool Screen::opens(const QString& title, const QString& before) const {
    return until([&] {
        const QString active = activeWindow();
        return !active.isEmpty() && active != before && activeTitle() == title;
    });
}

bool Screen::take(const QString& file) const {
    QImage last;
    // A cursor that blinks never rests: what is seen after a while will do.
    for (int i = 0; i < 20; ++i) {
        const QImage now = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
        if (now == last)
            break;
        last = now;
        QThread::msleep(2 * interval);
    }
    return !last.isNull() && last.save(file);
}
