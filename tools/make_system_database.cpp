#include "language/SystemDatabase.h"

#include <QDir>
#include <QFileInfo>
#include <cstdio>

using namespace Qt::StringLiterals;

/// make_system_database FILE ROWS...: makes the system database from text rows (in a folder "texts") and
/// control rows (in a folder "controls").
int main(int count, char** arguments) {
    if (count < 2) {
        std::fputs("usage: make_system_database FILE ROWS...\n", stderr);
        return 2;
    }
    SystemRows rows;
    QStringList faults;
    for (int i = 2; i < count; ++i) {
        const QString file = QString::fromLocal8Bit(arguments[i]);
        const bool controls = QFileInfo(file).dir().dirName() == u"controls";
        faults += controls ? readControlRows(file, rows) : readTextRows(file, rows);
    }
    if (faults.isEmpty())
        faults = makeSystemDatabase(QString::fromLocal8Bit(arguments[1]), rows);
    for (const QString& fault : faults)
        std::fprintf(stderr, "%s\n", qUtf8Printable(fault));
    return faults.isEmpty() ? 0 : 1;
}
