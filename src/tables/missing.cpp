#include "tables/missing.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "platform/system/NumberFormat.h"

#include <QScopedValueRollback>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

const QString highestText = u"1,79769313486231E308"_s;
const QString lowestText = u"-1,79769313486231E308"_s;

void replaceFirst(QString& text, const QString& word, const QString& replacement) {
    const qsizetype at = text.indexOf(word, 0, Qt::CaseInsensitive);
    if (at >= 0)
        text.replace(at, word.size(), replacement);
}

QString normalised(QString text) {
    replaceFirst(text, u"highest"_s, highestText);
    replaceFirst(text, u"lowest"_s, lowestText);
    // The largest double as it prints would not read back.
    replaceFirst(text, u"1,79769313486232e+308"_s, u"1,79769313486231E+308"_s);
    replaceFirst(text, u"1,79769313486232e308"_s, highestText);
    return text;
}

/// Part of a text, from a position up to another; one that ends before it starts is an invalid call.
QString piece(const QString& text, qsizetype from, qsizetype to) {
    if (to < from)
        dao::raiseRuntimeError(5);
    return text.mid(from, to - from);
}

double numberOf(const QString& text) {
    const std::optional<double> number = dao::textToNumber(text);
    if (!number)
        dao::raiseRuntimeError(13);
    return *number;
}

/// Reads one piece. @return false to leave the whole operation
bool readPiece(double& number, const QString& text, qsizetype from, qsizetype to) {
    const auto read = [&] { number = numberOf(piece(text, from, to)); };
    if (gErrorTrapping)
        return trapped(read) != Trap::Aborted;
    read();
    return true;
}

} // namespace

MissingDefinition::MissingDefinition(const QString& text) {
    if (!text.isEmpty() && !split(normalised(text)))
        kind_ = Kind::None;
}

std::optional<MissingDefinition> MissingDefinition::readable(const QString& text) {
    const QScopedValueRollback<bool> noBox(gErrorTrapping, false);
    try {
        return MissingDefinition(text);
    } catch (const dao::Error&) {
        return std::nullopt;
    }
}

/// Classifies the text by "thru", ";" and ", " and reads its numbers. The three-value test of the ", " form
/// counts blanks and each piece starts one character behind its separator, as the definitions in catalogues
/// have come to rely on.
bool MissingDefinition::split(const QString& text) {
    const qsizetype end = text.size();
    const qsizetype thru = text.indexOf(u"thru"_s);
    QString separator = u";"_s;
    if (!text.contains(separator) && text.contains(u", "_s))
        separator = u", "_s;
    const qsizetype first = text.indexOf(separator);
    const qsizetype second = first < 0 ? -1 : text.indexOf(separator, first + 1);

    if (thru >= 0) {
        kind_ = first < 0 ? Kind::Range : Kind::RangeAndOne;
        return readPiece(d1_, text, 0, thru) && readPiece(d2_, text, thru + 4, first < 0 ? end : first) &&
               (first < 0 || readPiece(d3_, text, first + 1, end));
    }
    if (first < 0) {
        kind_ = Kind::One;
        return readPiece(d1_, text, 0, end);
    }
    const bool three = separator.size() == 1 ? second >= 0 : text.count(u' ') >= 2;
    kind_ = three ? Kind::Three : Kind::Two;
    if (!three)
        return readPiece(d1_, text, 0, first) && readPiece(d2_, text, first + 1, end);
    return readPiece(d1_, text, 0, first) && readPiece(d2_, text, first + 1, second) &&
           readPiece(d3_, text, second + 1, end);
}

std::vector<double> MissingDefinition::numbers() const {
    switch (kind_) {
    case Kind::None:
        return {};
    case Kind::One:
        return {d1_};
    case Kind::Two:
    case Kind::Range:
        return {d1_, d2_};
    case Kind::Three:
    case Kind::RangeAndOne:
        return {d1_, d2_, d3_};
    }
    return {};
}

bool MissingDefinition::contains(double number) const {
    const bool inRange = std::min(d1_, d2_) <= number && number <= std::max(d1_, d2_);
    switch (kind_) {
    case Kind::None:
        return false;
    case Kind::One:
        return number == d1_;
    case Kind::Two:
        return number == d1_ || number == d2_;
    case Kind::Three:
        return number == d1_ || number == d2_ || number == d3_;
    case Kind::Range:
        return inRange;
    case Kind::RangeAndOne:
        return inRange || number == d3_;
    }
    return false;
}

namespace {

/// The words "lowest" and "highest" became the ends of what a number can be.
bool isExtreme(double number) {
    return std::abs(number) > 1e308;
}

} // namespace

QString MissingDefinition::inWords(QString (*word)(const QString&, int), int language) const {
    const auto said = [&](const QString& german) { return word(german, language); };
    const auto one = [&](double number) {
        return !isExtreme(number) ? NumberFormat::plain(number)
               : number < 0       ? said(u"kleinster Wert"_s)
                                  : said(u"größter Wert"_s);
    };
    if (!isRange()) {
        QStringList values;
        for (const double number : numbers())
            if (const QString text = one(number); !values.contains(text))
                values << text;
        if (values.size() < 2)
            return values.join(QString());
        const QString last = values.takeLast();
        return said(u"%1 und %2"_s).arg(values.join(u", "_s), last);
    }
    const double low = std::min(d1_, d2_), high = std::max(d1_, d2_);
    const bool open = isExtreme(low) && low < 0, endless = isExtreme(high) && high > 0;
    QString range = low == high       ? one(low)
                    : open && endless ? said(u"alle Werte"_s)
                    : open            ? said(u"bis %1"_s).arg(one(high))
                    : endless         ? said(u"ab %1"_s).arg(one(low))
                                      : said(u"%1 bis %2"_s).arg(one(low), one(high));
    const bool apart = kind_ == Kind::RangeAndOne && (d3_ < low || d3_ > high);
    return apart ? said(u"%1 sowie %2"_s).arg(range, one(d3_)) : range;
}

QString MissingDefinition::validCondition(const QString& fieldExpression) const {
    const auto differs = [&](double number) { return fieldExpression + u" <> "_s + NumberFormat::plain(number); };
    const QString outside = fieldExpression + u" < "_s + NumberFormat::plain(std::min(d1_, d2_)) + u" OR "_s +
                            fieldExpression + u" > "_s + NumberFormat::plain(std::max(d1_, d2_));
    QString condition;
    switch (kind_) {
    case Kind::None:
        break;
    case Kind::One:
        condition = differs(d1_);
        break;
    case Kind::Two:
        condition = differs(d1_) + u" AND "_s + differs(d2_);
        break;
    case Kind::Three:
        condition = differs(d1_) + u" AND "_s + differs(d2_) + u" AND "_s + differs(d3_);
        break;
    case Kind::Range:
        condition = outside;
        break;
    case Kind::RangeAndOne:
        condition = u"("_s + outside + u") AND "_s + differs(d3_);
        break;
    }
    condition.replace(u"-1,79769313486231E+308"_s, u"CDbl('-1,79769313486231E308')"_s);
    condition.replace(u"1,79769313486231E+308"_s, u"CDbl('1,79769313486231E+308')"_s);
    return condition;
}

MissingDefinition definitionOrNone(const QString& text) {
    const QScopedValueRollback<bool> thrown(gErrorTrapping, false);
    try {
        return MissingDefinition(text);
    } catch (const dao::Error&) {
        return MissingDefinition(QString());
    }
}

bool IsMissing(const dao::Value& value, const QString& missingText) {
    return !missingText.isEmpty() && MissingDefinition(missingText).contains(value.toDouble());
}

QString MissingToSql(const QString& fieldExpression, const QString& missingText) {
    return MissingDefinition(missingText).validCondition(fieldExpression);
}
