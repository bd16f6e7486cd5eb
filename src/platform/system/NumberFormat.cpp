#include "platform/system/NumberFormat.h"

#include <QLocale>
#include <QtGlobal>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

using namespace Qt::StringLiterals;

namespace {

constexpr int significantDigits = 15;
/// More than any double needs to show whether it lies on or just beside the middle of two 15-digit numbers.
constexpr int exactDigits = 60;

QChar separatorInForce;

/// 0.d1d2d3... times 10 to the power of `exponent`.
struct Decimal {
    bool negative = false;
    std::string digits;
    int exponent = 0;

    bool isZero() const { return digits.find_first_not_of('0') == std::string::npos; }

    /// Keeps the first `count` digits, rounding half away from zero.
    void round(int count) {
        if (count >= static_cast<int>(digits.size()))
            return;
        const bool up = count >= 0 && digits[static_cast<size_t>(count)] >= '5';
        digits.resize(static_cast<size_t>(std::max(count, 0)));
        if (!up)
            return;
        size_t place = digits.size();
        while (place > 0 && digits[place - 1] == '9')
            digits[--place] = '0';
        if (place > 0) {
            ++digits[place - 1];
        } else {
            digits.insert(digits.begin(), '1');
            ++exponent;
        }
    }
};

/// The number in 15 significant digits.
Decimal toDecimal(double number) {
    char text[exactDigits + 32];
    const auto end =
        std::to_chars(text, text + sizeof text, std::fabs(number), std::chars_format::scientific, exactDigits - 1).ptr;
    char* const mark = std::find(text, end, 'e');
    Decimal decimal;
    decimal.negative = std::signbit(number);
    decimal.digits.assign(1, text[0]);
    decimal.digits.append(text + 2, mark);
    const char* power = mark + 1;
    if (*power == '+')
        ++power;
    std::from_chars(power, end, decimal.exponent);
    ++decimal.exponent;
    decimal.round(significantDigits);
    return decimal;
}

QString notFinite(double number, QChar separator) {
    const QString sign = std::isnan(number) || number < 0 ? u"-1"_s : u"1"_s;
    return sign + separator + (std::isnan(number) ? u"#IND"_s : u"#INF"_s);
}

/// Digits with the separator behind the first `whole` of them, zeros added where there are none.
QString placed(const std::string& digits, int whole, QChar separator) {
    QString text;
    if (whole <= 0)
        text = u"0"_s;
    for (int i = 0; i < whole; ++i)
        text += QLatin1Char(i < static_cast<int>(digits.size()) ? digits[static_cast<size_t>(i)] : '0');
    if (whole < static_cast<int>(digits.size())) {
        text += separator;
        for (int i = whole; i < 0; ++i)
            text += u'0';
        text += QLatin1StringView(digits.data() + std::max(whole, 0),
                                  static_cast<qsizetype>(digits.size()) - std::max(whole, 0));
    }
    return text;
}

} // namespace

QChar NumberFormat::decimalSeparator() {
    if (separatorInForce.isNull())
        separatorInForce = QLocale::system().decimalPoint() == u"."_s ? u'.' : u',';
    return separatorInForce;
}

void NumberFormat::setDecimalSeparator(QChar separator) {
    separatorInForce = separator;
}

QString NumberFormat::fixed(double number, int decimals) {
    const QChar separator = decimalSeparator();
    if (!std::isfinite(number))
        return notFinite(number, separator);
    Decimal decimal = toDecimal(number);
    decimal.round(decimal.exponent + decimals);
    if (decimal.isZero()) {
        decimal = {};
        decimal.exponent = 0;
    }
    QString text = placed(decimal.digits, decimal.exponent, separator);
    if (decimals > 0) {
        qsizetype point = text.indexOf(separator);
        if (point < 0) {
            point = text.size();
            text += separator;
        }
        text = text.leftJustified(point + 1 + decimals, u'0');
    }
    return decimal.negative ? u'-' + text : text;
}

QString NumberFormat::plain(double number) {
    return digits(number, decimalSeparator());
}

QString NumberFormat::digits(double number, QChar separator) {
    if (!std::isfinite(number))
        return notFinite(number, separator);
    if (number == 0)
        return u"0"_s;
    Decimal decimal = toDecimal(number);
    decimal.digits.resize(decimal.digits.find_last_not_of('0') + 1);
    const int power = decimal.exponent - 1;
    QString text;
    if (power >= significantDigits || power < -4) {
        text = placed(decimal.digits, 1, separator) + (power < 0 ? u"E-"_s : u"E+"_s) +
               QString::number(std::abs(power)).rightJustified(2, u'0');
    } else {
        text = placed(decimal.digits, decimal.exponent, separator);
    }
    return decimal.negative ? u'-' + text : text;
}
