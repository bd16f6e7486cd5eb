#pragma once

#include <QString>
#include <QStringList>
#include <algorithm>
#include <vector>

/// What the head of a survey file says about its variables, free of the library that reads it.

/// Codes that count as missing, both bounds included; infinite where the file says lowest or highest.
struct MissingRange {
    double low = 0;
    double high = 0;
    bool single() const { return low == high; }
};

struct SurveyVariable {
    QString name, label;
    QString format;      ///< as the file has it: F8.2, A12, DATE11, %9.0g, %td
    bool isText = false; ///< strings in the file
    int width = 0;       ///< bytes of a string, 0 without limit
    int labelSet = -1;   ///< index into SurveyFile::labelSets
    bool hasMeasure = false;
    std::vector<MissingRange> missing;
    bool missingTexts = false;      ///< strings are declared missing
    QStringList missingCodes;       ///< these strings
    bool otherMissingTexts = false; ///< and some that are no single strings, or cannot be read
};

/// True if the file declares that number of the variable missing.
inline bool isDeclaredMissing(const SurveyVariable& variable, double value) {
    return std::any_of(variable.missing.begin(), variable.missing.end(),
                       [value](const MissingRange& range) { return range.low <= value && value <= range.high; });
}

/// One value label.
struct SurveyLabel {
    enum Kind { Number, Text, Letter, SystemMissing } kind = Number;
    double number = 0;
    QString code;    ///< Text
    char letter = 0; ///< Letter: the 'a' of .a
    QString label;
};

struct SurveyFile {
    bool stata = false;
    QString label;
    QStringList notes;
    qint64 rows = -1;      ///< number of cases, -1: not known
    bool saysRows = false; ///< the number is known before they are read
    std::vector<SurveyVariable> variables;
    std::vector<std::vector<SurveyLabel>> labelSets;
    int weight = -1;    ///< index of the weight variable, -1 without one
    QStringList extras; ///< what the file holds beyond all this, in words
};

/// Takes the cases of a survey file. What is not given of a row is system-missing.
class RowReceiver {
public:
    virtual ~RowReceiver() = default;
    virtual void number(int variable, double value) = 0;
    /// A missing value with a letter, .a to .z.
    virtual void letter(int variable, char letter) = 0;
    /// A string without its trailing blanks.
    virtual void text(int variable, const char* utf8, int bytes) = 0;
    virtual void endRow() = 0;
};
