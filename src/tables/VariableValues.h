#pragma once

#include <QString>

#include <vector>

namespace dao {
class Database;
}

/// One value of a variable as the catalogue documents it.
struct DocumentedValue {
    QString code;         ///< as it stands in the catalogue
    QString label;        ///< empty for a code that only the missing-value definition names
    bool missing = false; ///< by the variable's definition

    bool operator==(const DocumentedValue&) const = default;
};

/// What the catalogue says about the values of a variable: no case is read.
struct VariableValues {
    /// More rows than any table has are not read.
    static constexpr int most = 25000;

    /// Numbers in their order, as a table has them; behind them texts in that of the catalogue. Single values of the
    /// definition that have no label stand among them.
    std::vector<DocumentedValue> values;
    QString missing;            ///< the definition as it stands in the catalogue
    bool missingIsClear = true; ///< false for a definition that cannot be read, under which nothing is marked
    QString format;             ///< as it stands in the catalogue
    bool cut = false;           ///< there are more values than `most`

    /// A variable that is not in the catalogue has neither values nor definition; a catalogue without the tables or
    /// fields in question likewise.
    /// @throws dao::Error whatever else keeps the catalogue from being read
    static VariableValues of(dao::Database& catalogue, const QString& study, const QString& variable);
    /// The same from what was read elsewhere: codes with their labels, and the definition.
    static VariableValues from(std::vector<DocumentedValue> labelled, const QString& missing);

    bool operator==(const VariableValues&) const = default;
};
