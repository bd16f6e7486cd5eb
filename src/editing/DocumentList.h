#pragma once

#include <QString>
#include <vector>

/// A part of a study that has a questionnaire of its own.
struct StudyPart {
    QString number, name;
};

/// The studies of all study views with the questionnaire or the data set of each, to choose one and have it opened by
/// the application that the desktop has for it. Without the window.
class DocumentList {
public:
    enum class Kind { Questionnaires, DataSets };
    struct Line {
        QString text;
        QString file; ///< its name in the folder that the options give
    };

    explicit DocumentList(Kind kind) : kind_(kind) {}

    /// Reads the studies; of a questionnaire in parts each part has a line. Failures are reported, and what could be
    /// read is there.
    void fill();
    const std::vector<Line>& lines() const { return lines_; }
    /// The first line that begins with a study's number; -1 if none does.
    int lineOf(const QString& study) const;

    /// Opens the file of a line, -1 for none chosen. Says why where that fails; a file outside the folder is not
    /// opened, whether its name leads there or a link does.
    /// @return whether the list has done its work and is to be closed
    bool open(int line) const;

private:
    Kind kind_;
    std::vector<Line> lines_;

    void addStudy(const QString& number, const QString& title, const std::vector<StudyPart>& parts);
};
