#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <variant>

namespace dao {

/// The content of one field: Null, a whole number, a double, a text or bytes.
///
/// Null is kept apart from empty text. Yes/No values are whole numbers, true being -1. Every
/// conversion between text and number that the engine makes stands here, so that statements, recordsets
/// and tables agree on what a value looks like.
class Value {
public:
    enum class Kind : quint8 { Null, Integer, Double, Text, Bytes };

    Value() = default;
    Value(int number) : content_(qint64{number}) {}
    Value(qint64 number) : content_(number) {}
    Value(double number) : content_(number) {}
    Value(bool yes) : content_(qint64{yes ? -1 : 0}) {}
    Value(QString text) : content_(std::move(text)) {}
    Value(QByteArray bytes) : content_(std::move(bytes)) {}
    Value(const char*) = delete;

    Kind kind() const { return static_cast<Kind>(content_.index()); }
    bool isNull() const { return kind() == Kind::Null; }

    /// True for a number, and for a text that is wholly one number (blanks around it allowed, either
    /// decimal separator, no group separators).
    bool isNumeric() const;

    /// The value as people and other texts read it, in the process's decimal separator; Null is empty text,
    /// bytes are Latin-1.
    QString toText() const;
    /// The number; a text is read with either decimal separator.
    /// @throws Error 94 for Null, 13 for a text that is no number
    double toDouble() const;
    /// The whole number, rounded half to even as the language does. @throws Error 94, 13; 6 out of range
    qint64 toInteger() const;
    /// False for 0, true for any other number. @throws Error 94, 13
    bool toBoolean() const;
    QByteArray toBytes() const;

    /// Sameness in kind and content, for tests and containers; statements compare with compareValues().
    friend bool operator==(const Value& a, const Value& b) { return a.content_ == b.content_; }

private:
    std::variant<std::monostate, qint64, double, QString, QByteArray> content_;
};

/// A number as the engine writes it: 15 significant digits, no trailing zeros, exponents as E+308 (from
/// 1E+15 on and below 1E-4 in the engine's way), whole numbers without a separator.
QString numberToText(double number, QChar decimalSeparator);

/// The number that the whole text spells (either decimal separator, blanks around it, exponent with or
/// without sign); nothing for anything else, including group separators, "inf", "nan" and hex.
/// A number beyond the largest double reads as the largest double of its sign.
std::optional<double> textToNumber(QStringView text);

/// The number at the start of the text, 0 if there is none. Val in a statement knows only the point; what
/// reads a table's own cells back accepts either separator.
double leadingNumber(QStringView text, bool commaToo);

/// Order of two texts in every comparison of the engine: without regard to case for all of Unicode's simple
/// pairs, trailing blanks count. Negative, 0 or positive.
int compareTexts(QStringView a, QStringView b);

/// Order of two values: Null first, numbers by value, text by compareTexts(), text against number
/// by the number it wholly spells (such a text that spells none is above every number and equal to none).
int compareValues(const Value& a, const Value& b);

/// False for a number beside what is no number: no comparison of the two but <> holds. (Their order above only
/// gives such values a place when rows are sorted.)
bool haveOrder(const Value& a, const Value& b);

/// True when the text matches a LIKE pattern with *, ?, #, [a-z], [!a-z], without regard to case.
bool matchesPattern(QStringView text, QStringView pattern);

} // namespace dao
