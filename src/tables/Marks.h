#pragma once

#include <QHash>
#include <QList>
#include <QStringList>
#include <optional>
#include <vector>

class ResultTable;

/// The column that marks the missing values of the rows with "X", and the row of a crosstab that marks those of its
/// columns.
constexpr int markColumn = 2;
constexpr int markRow = 2;

/// True for the text of a mark.
inline bool isMark(const QString& text) {
    return text == QLatin1Char('X');
}

/// True for a row or column of data that a table marks as missing.
bool isMarkedRow(const ResultTable& table, int row);
bool isMarkedColumn(const ResultTable& table, int column);

/// Which values of one variable count as missing.
class AxisMarks {
public:
    struct Value {
        QString value, label; ///< as the table shows them; the value of system-missing is empty
        bool null = false;    ///< system-missing; an empty text is a value of its own
        QString mark;         ///< "X" for missing; " " where the user took the mark away
        /// Cumulated percent of a frequency table, which stays on a row once it is marked.
        std::optional<double> cumulated{};

        bool missing() const { return isMark(mark); }
    };

    /// Equal for texts that differ in the case of their letters only; nothing, which is system-missing, equals no text.
    static QString keyOf(const std::optional<QString>& shown);

    void add(Value value);
    /// The values with that text, or, where none has it, those of the same number.
    std::vector<Value*> having(const std::optional<QString>& shown);
    const std::vector<Value>& values() const { return values_; }
    /// What is known of a value, whatever the case of its letters; null where it is not among these.
    /// @param shown its text as the table shows it, nothing for system-missing
    /// @param nth of several values with that text, from 0
    const Value* find(const std::optional<QString>& shown, size_t nth = 0) const;
    /// How many values have that text.
    size_t count(const std::optional<QString>& shown) const;
    /// The values that are missing, those without a text by their label.
    QStringList missing() const;

    bool operator==(const AxisMarks& other) const;

private:
    std::vector<Value> values_;
    QHash<QString, QList<int>> places_; ///< by folded text; system-missing by a key that no text is
};

/// The missing values of a table, and what makes them so: a definition or the user. They belong to values, not to
/// places: a table in another language, another shape or under other options takes them over.
struct Marks {
    enum class By { Definition, Hand };

    By by = By::Definition;
    /// What the table is of: marks are none for another one.
    QString subject;
    AxisMarks rows, columns; ///< columns of a crosstab only

    /// The marks that a table shows, found through its shape.
    static Marks of(const ResultTable& table);
    /// The same with rows and columns exchanged.
    Marks exchanged() const;
    /// True if the same values are missing.
    bool sameValues(const Marks& other) const { return rows == other.rows && columns == other.columns; }
};
