#include "vdx/Command.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    std::vector<std::string> arguments;
    const QStringList given = QCoreApplication::arguments();
    for (const QString& argument : given.mid(1))
        arguments.push_back(argument.toStdString());
    return runVdx(arguments, stdout, stderr);
}
