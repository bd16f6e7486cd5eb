#pragma once

#include "tables/TableShape.h"

#include <QList>
#include <QString>
#include <QStringList>

enum class AnalysisMode { Frequency, Crosstab, Descriptives, Comparison };
/// Option3, elements 0 to 3.
enum class WeightKind { noWeight, WeightRE, WeightHH, WeightUser };
/// optFilter, elements 0 to 2.
enum class FilterKind { noFilter, FilterParts, FilterUser };

TableKind kindOfMode(AnalysisMode mode);
/// Number of the weight kind, 1 to 4, as `oldproc` keeps it.
inline int runNumber(WeightKind kind) {
    return static_cast<int>(kind) + 1;
}
/// The name in a choice "<id_Varname>: <label>": what stands before the first ":" if that is behind the first
/// character.
QString nameOfChoice(const QString& choice);

/// A choice bound to a row of the catalogue: what it is bound by and what it shows. `dbcStudy` and
/// `dbcStudy_1` are one picker (title and number), likewise `dbcVariable` and `dbcVariable_1` (label and
/// name), and the weight's pair.
struct BoundPicker {
    QString value; ///< study number, variable name, id_Part
    QString text;  ///< title, label, name of the part

    bool isEmpty() const { return value.isEmpty(); }
    void clear() { *this = {}; }
};

/// Where a variable's cases lie.
struct VariablePlace {
    QString table, field;
};

/// A variable of the study that is chosen.
struct StudyVariable {
    QString name, label;
    VariablePlace place;
};

/// One entry of a comparison, a row of lst_TrendVars.
struct ComparisonEntry {
    enum Column {
        Study = 1,
        Variable,
        Table,
        Field,
        Missing,
        Year,
        Group,
        Weight,
        Filter,
        WeightInfo, ///< "user", "HH", "RE" or empty
        FilterInfo, ///< "user", else the id_Part of the part
        VarLabel,
        PartText,
        columns
    };
    QString text; ///< what the list shows
    QString key;
    QString column[columns]; ///< addressed from 1; 0 stays empty

    const QString& at(Column c) const { return column[c]; }
};

/// All that a request consists of. A run needs nothing else but a catalogue and options.
struct AnalysisRequest {
    AnalysisMode mode = AnalysisMode::Frequency;
    WeightKind Option3 = WeightKind::noWeight;
    FilterKind optFilter = FilterKind::noFilter;

    BoundPicker dbcStudy;
    BoundPicker dbcVariable, dbcVariable2;
    /// The same variables as "<id_Varname>: <label>".
    QString dbcVariableUni, dbcVariable2Uni;
    BoundPicker dbcVarGewicht;
    QString dbcVarGewicht_1Uni;

    QString dtTable, dtField, dtTable2, dtField2;
    /// Definitions of the first and second variable; sMissing is the working one of the first.
    QString dtMissing, dtMissing2, sMissing;
    QString dtYear, dtVarGroup;
    QString dt_WeightRE, dt_WeightHH;

    BoundPicker dbcParts;
    QString dtCriteria;
    QString txtFilter;

    QString dtDesc, dtDescDigits;
    bool chkDescGroup = false;
    bool chkFlipXtab = false;
    bool chkPreserveLayout = false;
    bool bCreationMode = false;
    /// What the user has said of missing values holds at the next run: sMissing, and the marks in the table.
    bool bUserMissing = false;
    QString txtTitle;
    QList<ComparisonEntry> lst_TrendVars;
    /// Entries of cbValues and cbValuesInstruct: 0 "absolute Werte", 1 "Spaltenprozente", 2 "Zeilenprozente",
    /// 3 "Gesamtprozente".
    int cbValues = 0;
    int cbValuesInstruct = 0;

    /// The weight variable that the weight kind names; empty for none.
    QString weightVariable() const;
    /// True if a crosstab has its variables exchanged: asked for, and in creation mode.
    bool flipInForce() const { return chkFlipXtab && bCreationMode; }
    /// True if the table is of two variables.
    bool groupsByTwo() const;
};
