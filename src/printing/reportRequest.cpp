#include "printing/reportRequest.h"

#include "config/Options.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace {

constexpr int smallestFont = 6, largestFont = 12, otherFont = 10; // points

constexpr double picturesBesideTables = 0.6;

const QHash<QString, qint16>& places() {
    static const QHash<QString, qint16> all = {{u"topleft"_s, 1}, {u"topmiddle"_s, 2}, {u"topright"_s, 3},
                                               {u"botleft"_s, 4}, {u"botmiddle"_s, 5}, {u"botright"_s, 6},
                                               {u"none"_s, 7}};
    return all;
}

/// A category is told by its id and its name, of which only the id is sure to have no blank in it.
QString ofCategory(const QString& id, const QString& name) {
    return u'@' + id + u' ' + name + u'@';
}

QString ofStudy(const QString& study) {
    return u'@' + study + u'@';
}

ReportKind kindOf(const PrintSource& source, PrintChoice choice) {
    switch (choice) {
    case PrintChoice::NodeVariables:
        return source.isStudy ? ReportKind::Variables : ReportKind::Category;
    case PrintChoice::Names:
        return source.isStudy ? ReportKind::StudyNames : ReportKind::CategoryNames;
    case PrintChoice::Description:
        return source.view == 0 ? ReportKind::Database
               : source.isStudy ? ReportKind::StudyDescription
                                : ReportKind::CategoryDescription;
    case PrintChoice::Variable:
    case PrintChoice::NoReport:
        break;
    }
    return ReportKind::Variables;
}

QString studiesOf(const PrintSource& source, PrintChoice choice) {
    const PrintEntry entry = describedEntry(source);
    switch (kindOf(source, choice)) {
    case ReportKind::Variables:
        return ofStudy(choice == PrintChoice::Variable ? source.study : source.nodeId);
    case ReportKind::Category:
        return ofCategory(source.nodeId, source.nodeText);
    case ReportKind::Database:
        return {};
    case ReportKind::StudyDescription:
        return ofStudy(entry.id);
    case ReportKind::CategoryDescription:
        return ofCategory(entry.id, entry.text);
    case ReportKind::CategoryNames:
        return source.nodeId.isEmpty() ? QString() : ofCategory(source.nodeId, source.nodeText);
    case ReportKind::StudyNames:
        return source.nodeId.isEmpty() ? QString() : ofStudy(source.nodeId + u' ');
    }
    return {};
}

} // namespace

qint16 dateLocation(const QString& word) {
    return places().value(word, 4);
}

qint16 pageNumberLocation(const QString& word) {
    return word == u"botmiddle" ? 2 : places().value(word, 6);
}

ReportRequest reportRequest(const PrintSource& source, const PrintOrder& order, const Options& options) {
    ReportRequest request;
    const double zoom = options.ZoomFactor / 100.0;
    request.MarginTop = 30;
    request.MarginBottom = 15;
    request.MarginLeft = request.MarginRight = 10;
    request.LANGUAGE = source.language == 2 ? 2 : 1;
    request.DatabaseFile = source.database;
    request.ReportType = kindOf(source, order.choice);
    request.Studies = studiesOf(source, order.choice);
    request.variable = order.choice == PrintChoice::Variable ? source.variable : QString();
    if (request.ReportType == ReportKind::CategoryNames || request.ReportType == ReportKind::StudyNames) {
        request.table = source.sourceTable;
        request.MaxLevels = options.PrintMaxLevels;
    }
    request.CompleteQuestionText = options.ReportIncludeQuestionText;
    request.AnalysisTable = options.ReportIncludeTables;
    request.AnalysisGraph = options.ReportIncludeGraphs;
    request.ReportFontSize =
        options.FontSize < smallestFont || options.FontSize > largestFont ? otherFont : options.FontSize;
    request.PageNumberLocation = pageNumberLocation(options.PrintPageNumberPosition);
    request.DateLocation = dateLocation(options.PrintDatePosition);
    request.ReportLanguage = static_cast<qint16>(!order.original ? 3 : order.english ? 1 : 2);
    request.TableFontName = source.fixedFont ? options.FixedFont : options.PropFont;
    request.NoEmpty = request.NoEmptyEn = false;
    request.Orientation = options.Landscape ? 2 : 1;
    request.PicHandling = 0;
    request.PicZoom = picturesBesideTables * options.ZoomFactor / 100.0;
    request.PictureSequence = false;
    request.PaperSize = static_cast<qint16>(order.paper);
    request.ShowCards = options.ReportIncludeShowCards;
    request.TableZoom = request.GraphZoom = zoom;
    request.sourceTable = source.sourceTable;
    return request;
}
