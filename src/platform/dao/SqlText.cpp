#include "platform/dao/SqlText.h"

#include "platform/dao/Error.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace dao {

QString quotedName(const QString& name) {
    QString quoted = name;
    quoted.replace(u'"', u"\"\""_s);
    return u'"' + quoted + u'"';
}

QString quotedText(const QString& text) {
    if (text.contains(QChar(0)))
        raiseEngineError(3075, text);
    QString quoted = text;
    quoted.replace(u'\'', u"''"_s);
    return u'\'' + quoted + u'\'';
}

QString numberLiteral(qint64 number) {
    // The least whole number has no positive counterpart for the sign to be put before.
    return number == std::numeric_limits<qint64>::min() ? u"(-9223372036854775807-1)"_s : QString::number(number);
}

/// SQLite's reader of decimals errs in the last bit of some numbers, and a filter on such a number would then
/// miss its cases. What isn't whole is therefore written as a whole number times or by powers of two, which
/// it computes exactly.
QString numberLiteral(double number) {
    constexpr double wholeLimit = 9007199254740992.0; // 2^53
    if (number == std::floor(number) && std::fabs(number) < wholeLimit)
        return QString::number(number, 'f', 0) + u".0"_s;
    int exponent = 0;
    const double mantissa = std::frexp(std::fabs(number), &exponent);
    double whole = std::ldexp(mantissa, 53);
    exponent -= 53;
    while (exponent < 0 && std::fmod(whole, 2) == 0) {
        whole /= 2;
        ++exponent;
    }
    QString text = (number < 0 ? u"(-"_s : u"("_s) + QString::number(whole, 'f', 0) + u".0"_s;
    constexpr int step = 52;
    for (int rest = std::abs(exponent); rest > 0; rest -= step) {
        const double factor = std::ldexp(1.0, std::min(rest, step));
        text += (exponent < 0 ? u"/"_s : u"*"_s) + QString::number(factor, 'f', 0) + u".0"_s;
    }
    return text + u')';
}

bool sameName(const QString& a, const QString& b) {
    // A letter's other case is as long as itself.
    return a.size() == b.size() && a.compare(b, Qt::CaseInsensitive) == 0;
}

bool containsName(const QStringList& names, const QString& name) {
    return names.contains(name, Qt::CaseInsensitive);
}

} // namespace dao
