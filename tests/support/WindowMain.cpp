#include "widgets/ProgramStyle.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

/// A screen as it is usual today; the platform's own is smaller than a main window.
QByteArray screenOf(const QTemporaryDir& folder) {
    QFile file(folder.filePath(QStringLiteral("screen.json")));
    if (!file.open(QIODevice::WriteOnly))
        return "offscreen";
    file.write(R"({"screens":[{"name":"screen","x":0,"y":0,"width":1920,"height":1080,"logicalDpi":96,"dpr":1}]})");
    return "offscreen:configfile=" + QFile::encodeName(file.fileName());
}

} // namespace

/// Windows are tested without a screen unless one is asked for.
int main(int count, char** arguments) {
    const QTemporaryDir folder;
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", screenOf(folder));
    testing::InitGoogleTest(&count, arguments);
    QApplication application(count, arguments);
    QApplication::setStyle(new ProgramStyle(QStringLiteral("Fusion")));
    return RUN_ALL_TESTS();
}
