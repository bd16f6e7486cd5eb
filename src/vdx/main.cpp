#include "vdx/Command.h"

#include <QCoreApplication>
#include <csignal>

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN); // a file that may grow no further is told of as a full disk is
    QCoreApplication application(argc, argv);
    std::vector<std::string> arguments;
    const QStringList given = QCoreApplication::arguments();
    for (const QString& argument : given.mid(1))
        arguments.push_back(argument.toStdString());
    return runVdx(arguments, stdout, stderr);
}
