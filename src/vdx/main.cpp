#include "vdx/Command.h"

#include <QGuiApplication>
#include <csignal>
#include <cstdio>

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN); // a file that may grow no further is told of as a full disk is
    const bool draws = drawsPictures({argv + 1, argv + argc});
    if (draws) {
        qputenv("QT_QPA_PLATFORM", "offscreen"); // whatever the desktop is
        // What a platform misses of a desktop is nothing for whoever reads standard error.
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type == QtCriticalMsg || type == QtFatalMsg)
                std::fprintf(stderr, "%s\n", qPrintable(text));
        });
    }
    int own = 1; // the arguments are the program's: Qt would take some of them away
    const std::unique_ptr<QCoreApplication> application =
        draws ? std::make_unique<QGuiApplication>(own, argv) : std::make_unique<QCoreApplication>(own, argv);
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i)
        arguments.push_back(QString::fromLocal8Bit(argv[i]).toStdString());
    return runVdx(arguments, stdout, stderr);
}
