#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

/// What a description in JSON says of a whole archive: its catalogue's title, options, views and the studies,
/// categories and variables in them. docs/file-formats.md describes the format.
namespace archive {

/// A text in the original language and in English; what is not given is Null in the catalogue.
struct Text {
    std::optional<QString> original, english;
};

/// Every entry remembers where it stands in the description ("views[0].entries[2]"), for messages.
struct Entry {
    QString place;
};

struct VariableTexts : Entry {
    QString name;
    Text label, question, showCard;
    QString group;       ///< key of a variable group
    QString instruction; ///< what is to be made of it in creation mode; empty: none
};

struct VariableGroup : Entry {
    QString key;
    Text name;
};

struct Part : Entry {
    QString number;
    Text name;
    QString variable, criterion;
    bool separateAnalysis = false;
};

struct CaseTable : Entry {
    QStringList variables;
    bool ownFile = false;
};

struct Study : Entry {
    QString number, parent = QStringLiteral("0");
    int order = 0;
    bool isGroup = false;
    Text title, description;
    // Of a study only:
    QString file, encoding;
    bool encodeAll = false; ///< text variables whose codes have labels or are declared missing become numbers
    QStringList encode;     ///< and so do these
    std::optional<QString> year, weightRe, weightHh, query;
    std::vector<Part> parts;
    std::vector<CaseTable> tables; ///< beyond the first
    std::vector<VariableTexts> variables;
};

struct Category : Entry {
    int id = 0, parent = 0, order = 0;
    Text name, description;
    std::vector<std::pair<QString, QString>>
        variables; ///< patterns of study number and variable name, as LIKE has them
    QStringList variablePlaces;
};

struct View : Entry {
    QString table;
    bool isStudyView = false, comparison = false;
    Text name, descriptionsName;
    std::vector<Study> studies;       ///< of a study view, in the order in which they are given
    std::vector<Category> categories; ///< of a category view, likewise
};

struct Description {
    QString file;      ///< the description's own path; other paths start in its folder
    QByteArray source; ///< its text
    Text title, description;
    std::vector<std::pair<QString, QString>> options; ///< rows of tsys_Options, those of views apart
    std::vector<VariableGroup> groups;
    std::vector<VariableTexts> variables; ///< for each study that has a variable of that name
    std::vector<View> views;
    QString questionnaires, dataSets; ///< folders, empty if not given

    /// "archive.json, Zeile 12 (views[0].name): " and the message.
    QString at(const QString& place, const QString& message) const;
};

/// Most bytes of a description, and most levels of groups or categories inside each other.
constexpr qint64 maxDescriptionSize = 64 * 1024 * 1024;
constexpr int maxTreeDepth = 50;

/// Reads a description and checks everything that can be checked without the survey files.
/// @throws ImportError with the place
Description readDescription(const QString& path);

/// Throws unless each group of the view is read before its members when the tree is filled in the order of
/// `fid` and `[order]`: a group must sort behind the group that holds it.
/// @throws ImportError
void checkReadingOrder(const Description& description, const View& view);

} // namespace archive
