#pragma once

#include <QString>
#include <QStringList>

/// What a report is of.
enum class ReportKind : qint16 {
    Variables = 0,        ///< one variable of a study, or all of a study or of a group's studies
    Category = 2,         ///< the variables of a category
    Database = 4,         ///< the description of the catalogue
    StudyDescription = 5, ///< of a study or group
    CategoryDescription = 6,
    CategoryNames = 9, ///< the names of a category view, or of a part of it
    StudyNames = 10    ///< the same of a study view
};

/// What a report is to hold and how it is to look: the whole of what its writer is told. Lengths are in millimetres.
struct ReportRequest {
    qint16 MarginTop = 0, MarginBottom = 0, MarginLeft = 0, MarginRight = 0;
    qint16 LANGUAGE = 0; ///< of our words: 1 German, 2 English
    QString DatabaseFile;
    ReportKind ReportType = ReportKind::Variables;
    QString Studies;      ///< the selection between two "@": a study's number, or a category's id, a blank and its name
    QString variable;     ///< empty: all of the selection
    QString table;        ///< suffix of the view's tables, of the two kinds of names only
    qint32 MaxLevels = 0; ///< levels of names below the start; 0: all
    bool CompleteQuestionText = false, AnalysisTable = false, AnalysisGraph = false;
    int ReportFontSize = 0;                          ///< points
    qint16 PageNumberLocation = 0, DateLocation = 0; ///< 1 to 3 top left, middle, right; 4 to 6 bottom; 7 nowhere
    qint16 ReportLanguage = 0;                       ///< of the contents: 1 both, 2 original, 3 English
    QString TableFontName;
    bool NoEmpty = false, NoEmptyEn = false; ///< leave out variables without text in the original, in English
    qint16 Orientation = 0;                  ///< 1 upright, 2 landscape
    int PicHandling = 0;                     ///< 0 fitted under the text
    double PicZoom = 0;
    bool PictureSequence = false; ///< pictures one behind another instead of with their variable
    qint16 PaperSize = 0;         ///< paper code of the printer; 0 for none
    bool ShowCards = false;
    double TableZoom = 0, GraphZoom = 0;

    QString sourceTable;    ///< suffix of the tables of the view that the selection is of
    QString TableRawString; ///< a table in its stored form, "<TableEnd>", its layout: it alone is the report then
    QString GraphRawString; ///< layout of a graph, "<GraphEnd>", its picture: likewise
    QStringList RawNotes;   ///< what the numbers of such a table or graph stand on; stands below it
    /// The report is a table or graph that was handed over: no catalogue is read.
    bool isRaw() const { return !TableRawString.isEmpty() || !GraphRawString.isEmpty(); }

    bool operator==(const ReportRequest&) const = default;
};
