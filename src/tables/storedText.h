#pragma once

#include <QString>
#include <optional>

/// The fields of what is stored of tables and graphs: each ends with ";", a text stands between double quotes. Only a
/// quote directly followed by ";" ends a text; where a text has that itself, an invisible word joiner (U+2060) stands
/// between the two, and one more where the text has some there, so that every text reads back as it was.

/// A text as such a field, its ";" included.
QString quotedField(const QString& text);
/// Whole numbers as such fields, one after the other.
QString numberField(int number);

/// Reads a stored text from its beginning, field by field. After a field that isn't there nothing else may be read.
class StoredFields {
public:
    explicit StoredFields(QStringView text) : left_(text) {}

    /// A text between quotes.
    std::optional<QString> quoted();
    /// What stands up to the next ";".
    std::optional<QString> plain();
    /// A whole number, written with digits alone and perhaps a minus in front.
    std::optional<int> number();

    /// Characters that are left.
    qsizetype left() const { return left_.size(); }

private:
    QStringView left_;
};
