#include "platform/system/Paths.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Floors from the ground up; a room includes from those below, and from its own floor where a pair is declared. The
/// windows (frm*) stand above their rooms, and app/main.cpp above all.
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
    {u"charts"_s, 6},
    {u"analysis/request"_s, 7},
    {u"analysis/result"_s, 7},
    {u"analysis/run"_s, 7},
    {u"analysis"_s, 7},
    {u"explorer"_s, 7},
    {u"search"_s, 8},
    {u"editing"_s, 8},
    {u"printing"_s, 8},
    {u"app"_s, 9},
    {u"vdx"_s, 10},
    {u"widgets"_s, 10},
};

/// Rooms of one floor of which the first includes from the second.
const QSet<std::pair<QString, QString>> pairsOfRooms = {
    {u"config"_s, u"diagnostics"_s},
    {u"config"_s, u"language"_s},
    {u"language"_s, u"diagnostics"_s},
    {u"analysis/result"_s, u"analysis/request"_s},
    {u"analysis/run"_s, u"analysis/request"_s},
    {u"analysis/run"_s, u"analysis/result"_s},
    {u"analysis"_s, u"analysis/request"_s},
    {u"analysis"_s, u"analysis/result"_s},
    {u"analysis"_s, u"analysis/run"_s},
    {u"printing"_s, u"editing"_s},
};

/// Rooms of which a window of the first opens windows of the second.
const QSet<std::pair<QString, QString>> pairsOfWindows = {
    {u"analysis"_s, u"explorer"_s}, {u"analysis"_s, u"charts"_s}, {u"config"_s, u"analysis"_s},
    {u"app"_s, u"analysis"_s},      {u"app"_s, u"config"_s},      {u"app"_s, u"explorer"_s},
    {u"search"_s, u"explorer"_s},   {u"search"_s, u"editing"_s},  {u"editing"_s, u"explorer"_s},
    {u"app"_s, u"search"_s},        {u"app"_s, u"editing"_s},     {u"app"_s, u"printing"_s},
    {u"printing"_s, u"config"_s},
};

const QString entry = u"app/main.cpp"_s;

/// The room that a path below src/ lies in: its folder, or the nearest one above it that is a room.
QString roomOf(QString path) {
    while (path.contains(u'/')) {
        path.truncate(path.lastIndexOf(u'/'));
        if (floors.contains(path))
            return path;
    }
    return {};
}

bool isWindow(const QString& path) {
    return Paths::fileOf(path).startsWith(u"frm"_s);
}

/// The headers that Qt Widgets has and no other library of Qt.
const QSet<QString>& widgetHeaders() {
    static const QSet<QString> names = [] {
        const QDir headers(QLibraryInfo::path(QLibraryInfo::HeadersPath));
        const auto of = [&](const QString& library) {
            const QStringList files = QDir(headers.filePath(library)).entryList(QDir::Files);
            return QSet<QString>(files.begin(), files.end());
        };
        return of(u"QtWidgets"_s) - of(u"QtGui"_s) - of(u"QtCore"_s);
    }();
    return names;
}

/// What is wrong with an include of a library's header, empty if nothing is.
QString faultOfLibrary(const QString& file, const QString& header) {
    const QString room = roomOf(file);
    if (header == u"sqlite3.h")
        return room == u"platform/dao" && !isWindow(file) ? QString() : u"only platform/dao knows SQLite"_s;
    if (header.startsWith(u"qpdf/"))
        return room == u"printing" && !isWindow(file) ? QString() : u"only printing knows QPDF"_s;
    static const QRegularExpression widgetLibrary(u"^Qt(\\w*Widgets|PrintSupport)(/|$)"_s);
    const bool ofWidgets = widgetHeaders().contains(header) || widgetLibrary.match(header).hasMatch();
    if (ofWidgets && !isWindow(file) && room != u"widgets" && file != entry)
        return u"knows Qt Widgets"_s;
    return {};
}

/// What is wrong with a window's or the widgets' include of another file of ours.
QString faultOfWindow(const QString& file, const QString& included) {
    const QString room = roomOf(file), target = roomOf(included);
    if (target == u"vdx")
        return u"is no business of a window"_s;
    if (target == u"analysis/run" || included == u"analysis/runRequest.h")
        return u"asks the model for a run"_s;
    if (room == u"widgets" && target == u"app")
        return u"is shared by windows and knows no program"_s;
    if (!isWindow(included) || room == target)
        return {};
    if (!isWindow(file))
        return u"knows a window"_s;
    return pairsOfWindows.contains({room, target}) ? QString() : u"is no pair of windows"_s;
}

/// What is wrong with one include as it stands between its quotes or brackets, empty if nothing is.
QString faultOf(const QString& file, const QString& include) {
    const QString included = include.mid(1).chopped(1);
    if (QDir::cleanPath(included) != included || included.contains(u'\\') || included.startsWith(u'/') ||
        included.startsWith(u"../"))
        return u"is not written from src/ down"_s;
    const QString room = roomOf(file), target = roomOf(included);
    if (file == u"app/globals.h" && !target.isEmpty())
        return u"may be included anywhere and knows nobody"_s;
    if (target.isEmpty())
        return include.startsWith(u'<') ? faultOfLibrary(file, included) : u"is not written from src/ down"_s;
    if (included == u"app/globals.h" || file == entry)
        return {};
    if (isWindow(file) || room == u"widgets")
        return faultOfWindow(file, included);
    if (isWindow(included))
        return u"knows a window"_s;
    if (room == target || floors[target] < floors[room] || pairsOfRooms.contains({room, target}))
        return {};
    return floors[target] == floors[room] ? u"is no pair of rooms"_s : u"climbs from "_s + room + u" to "_s + target;
}

} // namespace

TEST(Floors, AnIncludeIsAllowedFromBelowAndFromADeclaredPairOnly) {
    struct Case {
        QString file, include;
        bool allowed;
    };
    const Case cases[] = {
        {u"catalogue/views.cpp"_s, u"\"platform/dao/Value.h\""_s, true},
        {u"platform/dao/Value.cpp"_s, u"\"catalogue/views.h\""_s, false},
        {u"platform/system/Paths.cpp"_s, u"\"app/globals.h\""_s, true},
        {u"platform/system/Paths.cpp"_s, u"\"app/start.h\""_s, false},
        {u"explorer/AssignmentList.cpp"_s, u"\"explorer/iconNames.h\""_s, true},
        // rooms of one floor
        {u"config/Options.cpp"_s, u"\"diagnostics/errors.h\""_s, true},
        {u"diagnostics/errors.cpp"_s, u"\"config/Options.h\""_s, false},
        {u"platform/dao/Database.cpp"_s, u"\"platform/ui/Asker.h\""_s, false},
        {u"analysis/AnalysisModel.cpp"_s, u"\"explorer/ExplorerModel.h\""_s, false},
        {u"analysis/request/RequestEditor.cpp"_s, u"\"explorer/ExplorerState.h\""_s, false},
        {u"explorer/ExplorerModel.cpp"_s, u"\"analysis/AnalysisModel.h\""_s, false},
        {u"explorer/ExplorerModel.cpp"_s, u"\"analysis/request/AnalysisRequest.h\""_s, false},
        {u"analysis/run/Run.cpp"_s, u"\"analysis/request/AnalysisRequest.h\""_s, true},
        {u"analysis/request/RequestEditor.cpp"_s, u"\"analysis/run/RunInput.h\""_s, false},
        {u"analysis/run/Run.cpp"_s, u"\"analysis/AnalysisModel.h\""_s, false},
        {u"vdx/Session.cpp"_s, u"\"widgets/Form.h\""_s, false},
        // charts stand between tables and analysis
        {u"charts/ChartModel.cpp"_s, u"\"tables/ResultTable.h\""_s, true},
        {u"tables/ResultTable.cpp"_s, u"\"charts/ChartModel.h\""_s, false},
        {u"analysis/result/TableResult.h"_s, u"\"charts/ChartModel.h\""_s, true},
        // libraries
        {u"tables/ResultTable.cpp"_s, u"<QString>"_s, true},
        {u"tables/ResultTable.cpp"_s, u"<QWidget>"_s, false},
        {u"tables/ResultTable.cpp"_s, u"<qwidget.h>"_s, false},
        {u"tables/ResultTable.cpp"_s, u"<QtWidgets/QLabel>"_s, false},
        {u"vdx/main.cpp"_s, u"<QtWidgets>"_s, false},
        {u"widgets/Form.cpp"_s, u"<QWidget>"_s, true},
        {u"config/frmOptions.cpp"_s, u"<QDialog>"_s, true},
        {u"app/main.cpp"_s, u"<QApplication>"_s, true},
        {u"platform/dao/Connection.cpp"_s, u"<sqlite3.h>"_s, true},
        {u"catalogue/views.cpp"_s, u"<sqlite3.h>"_s, false},
        {u"widgets/Form.cpp"_s, u"<sqlite3.h>"_s, false},
        {u"printing/finishPdf.cpp"_s, u"<qpdf/QPDF.hh>"_s, true},
        {u"printing/frmPreview.cpp"_s, u"<qpdf/QPDF.hh>"_s, false},
        {u"charts/chartFile.cpp"_s, u"<qpdf/QPDFWriter.hh>"_s, false},
        {u"printing/ReportPages.h"_s, u"<QtPrintSupport/QPrinter>"_s, false},
        // ways around
        {u"tables/ResultTable.cpp"_s, u"\"../analysis/AnalysisModel.h\""_s, false},
        {u"tables/ResultTable.cpp"_s, u"\"tables/../analysis/AnalysisModel.h\""_s, false},
        {u"analysis/AnalysisModel.cpp"_s, u"\"run/CreateSQL.h\""_s, false},
        {u"tables/ResultTable.cpp"_s, u"<analysis/AnalysisModel.h>"_s, false},
        // windows
        {u"analysis/frmAuswertung.cpp"_s, u"\"analysis/AnalysisModel.h\""_s, true},
        {u"analysis/frmAuswertung.cpp"_s, u"\"explorer/frmExplorer.h\""_s, true},
        {u"explorer/frmExplorer.cpp"_s, u"\"analysis/frmAuswertung.h\""_s, false},
        {u"analysis/frmAuswertung.cpp"_s, u"\"app/frmMain.h\""_s, false},
        {u"widgets/Desktop.cpp"_s, u"\"app/frmMain.h\""_s, false},
        {u"widgets/FilterLine.cpp"_s, u"\"analysis/run/CreateSQL.h\""_s, false},
        {u"analysis/frmAuswertung.cpp"_s, u"\"analysis/runRequest.h\""_s, false},
        {u"widgets/Desktop.cpp"_s, u"\"app/start.h\""_s, false},
        {u"widgets/Desktop.cpp"_s, u"\"app/globals.h\""_s, true},
        {u"app/globals.h"_s, u"\"analysis/AnalysisModel.h\""_s, false},
        {u"app/globals.h"_s, u"<QString>"_s, true},
        {u"analysis/frmAuswertung.cpp"_s, u"\"analysis/run/Run.h\""_s, false},
        {u"analysis/AnalysisModel.cpp"_s, u"\"analysis/frmAuswertung.h\""_s, false},
        {u"app/frmMain.cpp"_s, u"\"vdx/Session.h\""_s, false},
        {u"app/main.cpp"_s, u"\"app/frmMain.h\""_s, true},
    };
    for (const Case& c : cases) {
        const QString fault = faultOf(c.file, c.include);
        EXPECT_EQ(fault.isEmpty(), c.allowed)
            << qPrintable(c.file) << " includes " << qPrintable(c.include) << ": " << qPrintable(fault);
    }
}

TEST(Floors, EveryIncludeUnderSrcIsAllowed) {
    static const QRegularExpression include(u"^\\s*#\\s*include\\s*(<[^>]+>|\"[^\"]+\")"_s,
                                            QRegularExpression::MultilineOption);
    static const QRegularExpression anyInclude(u"^\\s*#\\s*include"_s, QRegularExpression::MultilineOption);
    const QString root = QStringLiteral(VARIDEX_SOURCE_ROOT "/src/");
    int files = 0;
    QDirIterator sources(root, QDir::Files, QDirIterator::Subdirectories);
    while (sources.hasNext()) {
        QFile file(sources.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString name = file.fileName().mid(root.size());
        ASSERT_TRUE(name.endsWith(u".h"_s) || name.endsWith(u".cpp"_s)) << qPrintable(name) << " is read by nobody";
        ASSERT_FALSE(roomOf(name).isEmpty()) << qPrintable(name) << " lies in no room; give it a floor";
        ++files;
        const QString text = QString::fromUtf8(file.readAll());
        EXPECT_EQ(text.count(include), text.count(anyInclude)) << qPrintable(name) << " includes in a way of its own";
        auto matches = include.globalMatch(text);
        while (matches.hasNext()) {
            const QString included = matches.next().captured(1);
            const QString fault = faultOf(name, included);
            EXPECT_TRUE(fault.isEmpty()) << qPrintable(name) << " includes " << qPrintable(included) << ": "
                                         << qPrintable(fault);
        }
    }
    EXPECT_GT(files, 20);
}
