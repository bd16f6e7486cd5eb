#include "platform/system/Paths.h"

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Floors from the ground up; a room includes from its own floor and from those below.
const QMap<QString, int> floors = {
    {u"platform/system"_s, 0},
    {u"app/state"_s, 1},
    {u"platform/ui"_s, 2},
    {u"platform/dao"_s, 2},
    {u"diagnostics"_s, 3},
    {u"config"_s, 3},
    {u"language"_s, 3},
    {u"catalogue"_s, 4},
    {u"tables"_s, 5},
    {u"analysis"_s, 6},
    {u"explorer"_s, 6},
    {u"charts"_s, 6},
    {u"search"_s, 6},
    {u"editing"_s, 6},
    {u"printing"_s, 6},
    {u"app"_s, 7},
    {u"vdx"_s, 8},
    {u"widgets"_s, 8},
};

/// The room that a path below src/ lies in: its folder, or the nearest one above it that is a room.
QString roomOf(QString path) {
    while (path.contains(u'/')) {
        path.truncate(path.lastIndexOf(u'/'));
        if (floors.contains(path))
            return path;
    }
    return {};
}

/// What is wrong with one include, empty if nothing is.
QString faultOf(const QString& file, const QString& included) {
    // A window knows every model and the other windows; nothing but windows and the program's entry knows a window.
    const bool isWindow = Paths::fileOf(file).startsWith(u"frm"_s) || file == u"app/main.cpp";
    const bool ofWindows = Paths::fileOf(included).startsWith(u"frm"_s) || included.startsWith(u"widgets/"_s);
    if (isWindow)
        return included.startsWith(u"vdx/"_s) || included == u"sqlite3.h" ? u"is no business of a window"_s : QString();
    const QString room = roomOf(file);
    if (ofWindows && room != u"widgets")
        return u"knows a window"_s;
    if (included == u"sqlite3.h")
        return room == u"platform/dao" ? QString() : u"only platform/dao knows SQLite"_s;
    if (!included.contains(u'/') || included == u"app/globals.h")
        return {};
    const QString target = roomOf(included);
    if (target.isEmpty())
        return {};
    return floors[target] <= floors[room] ? QString() : u"climbs from "_s + room + u" to "_s + target;
}

} // namespace

TEST(Floors, NoFileIncludesFromAFloorAboveItsOwn) {
    static const QRegularExpression include(u"^\\s*#\\s*include\\s*[<\"]([^>\"]+)[>\"]"_s,
                                            QRegularExpression::MultilineOption);
    const QString root = QStringLiteral(VARIDEX_SOURCE_ROOT "/src/");
    int files = 0;
    QDirIterator sources(root, {u"*.h"_s, u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (sources.hasNext()) {
        QFile file(sources.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString name = file.fileName().mid(root.size());
        ASSERT_FALSE(roomOf(name).isEmpty()) << qPrintable(name) << " lies in no room; give it a floor";
        ++files;
        auto matches = include.globalMatch(QString::fromUtf8(file.readAll()));
        while (matches.hasNext()) {
            const QString included = matches.next().captured(1);
            const QString fault = faultOf(name, included);
            EXPECT_TRUE(fault.isEmpty()) << qPrintable(name) << " includes " << qPrintable(included) << ": "
                                         << qPrintable(fault);
        }
    }
    EXPECT_GT(files, 20);
}
