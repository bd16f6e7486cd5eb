#include "catalogue/surveyDates.h"

#include <QRegularExpression>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

using Unit = TimeFormat::Unit;

constexpr qint64 millisPerDay = 86'400'000;
constexpr qint64 spssEpoch = -141'428; // days from 1 January 1970
constexpr qint64 stataEpoch = -3'653;

struct Civil {
    qint64 year;
    int month, day;
};

/// Proleptic Gregorian calendar, by eras of 400 years that begin on 1 March.
qint64 daysFromCivil(qint64 year, int month, int day) {
    year -= month <= 2;
    const qint64 era = (year >= 0 ? year : year - 399) / 400;
    const qint64 yearOfEra = year - era * 400;
    const qint64 dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146'097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719'468;
}

Civil civilFromDays(qint64 days) {
    days += 719'468;
    const qint64 era = (days >= 0 ? days : days - 146'096) / 146'097;
    const qint64 dayOfEra = days - era * 146'097;
    const qint64 yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
    const qint64 dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int shifted = static_cast<int>((5 * dayOfYear + 2) / 153);
    const int month = shifted < 10 ? shifted + 3 : shifted - 9;
    return {yearOfEra + era * 400 + (month <= 2), month, static_cast<int>(dayOfYear - (153 * shifted + 2) / 5 + 1)};
}

qint64 floorDivide(qint64 a, qint64 b) {
    return a / b - (a % b < 0);
}

/// Days after whose end a second was inserted, as years and half-years.
constexpr std::array<std::pair<int, int>, 27> leapSeconds = {
    {{1972, 6}, {1972, 12}, {1973, 12}, {1974, 12}, {1975, 12}, {1976, 12}, {1977, 12}, {1978, 12}, {1979, 12},
     {1981, 6}, {1982, 6},  {1983, 6},  {1985, 6},  {1987, 12}, {1989, 12}, {1990, 12}, {1992, 6},  {1993, 6},
     {1994, 6}, {1995, 12}, {1997, 6},  {1998, 12}, {2005, 12}, {2008, 12}, {2012, 6},  {2015, 6},  {2016, 12}}};

/// Takes the leap seconds out of a count of milliseconds since 1960. A moment within a leap second becomes
/// the second before.
qint64 withoutLeapSeconds(qint64 millis) {
    qint64 inserted = 0;
    for (const auto& [year, month] : leapSeconds) {
        const qint64 end = daysFromCivil(year + (month == 12), month == 12 ? 1 : 7, 1) - stataEpoch;
        if (millis < end * millisPerDay + inserted)
            break;
        inserted += 1000;
    }
    return millis - inserted;
}

/// A number with leading zeros.
QByteArray digits(qint64 number, int atLeast) {
    return QByteArray::number(number).rightJustified(atLeast, '0');
}

QByteArray clockText(qint64 millisOfDay) {
    const qint64 seconds = millisOfDay / 1000;
    QByteArray text = digits(seconds / 3600, 2) + ':' + digits(seconds / 60 % 60, 2) + ':' + digits(seconds % 60, 2);
    if (millisOfDay % 1000 != 0) {
        text += '.' + digits(millisOfDay % 1000, 3);
        while (text.endsWith('0'))
            text.chop(1);
    }
    return text;
}

std::optional<QByteArray> dateText(qint64 days) {
    const Civil civil = civilFromDays(days);
    if (civil.year < 1 || civil.year > 9999)
        return std::nullopt;
    return digits(civil.year, 4) + '-' + digits(civil.month, 2) + '-' + digits(civil.day, 2);
}

/// A moment in milliseconds from an epoch; a date that carries a time of day shows it.
std::optional<QByteArray> momentText(qint64 millis, qint64 epoch, bool alwaysTime) {
    const qint64 days = floorDivide(millis, millisPerDay);
    const qint64 rest = millis - days * millisPerDay;
    std::optional<QByteArray> text = dateText(days + epoch);
    if (text && (alwaysTime || rest != 0))
        *text += 'T' + clockText(rest);
    return text;
}

/// First day of a period, `perYear` of which make a year, counted from 1960.
std::optional<QByteArray> periodText(qint64 period, int perYear) {
    const qint64 years = floorDivide(period, perYear);
    const int within = static_cast<int>(period - years * perYear);
    if (std::abs(years) > 10'000)
        return std::nullopt;
    if (perYear == 52)
        return dateText(daysFromCivil(1960 + years, 1, 1) + 7 * within);
    return dateText(daysFromCivil(1960 + years, 1 + within * (12 / perYear), 1));
}

} // namespace

TimeFormat timeFormat(const QString& format, bool stata) {
    if (!stata) {
        static const QRegularExpression name(u"^([A-Z]+)\\d"_s);
        const QString type = name.match(format.toUpper()).captured(1);
        for (const char16_t* date : {u"DATE", u"ADATE", u"EDATE", u"SDATE", u"JDATE", u"QYR", u"MOYR", u"WKYR"})
            if (type == QStringView(date))
                return {Unit::SpssDate};
        if (type == u"DATETIME"_s || type == u"YMDHMS"_s)
            return {Unit::SpssDateTime};
        if (type == u"TIME"_s || type == u"DTIME"_s || type == u"MTIME"_s)
            return {Unit::SpssDuration};
        return {};
    }
    static const QRegularExpression name(u"^%-?\\d*(?:t([a-zA-Z])|(d))"_s);
    const QRegularExpressionMatch match = name.match(format);
    if (!match.hasMatch())
        return {};
    switch (match.captured(1).isEmpty() ? 'd' : match.captured(1).at(0).toLatin1()) {
    case 'd':
        return {Unit::StataDays};
    case 'c':
        return {Unit::StataClock};
    case 'C':
        return {Unit::StataLeapClock};
    case 'w':
        return {Unit::StataWeeks};
    case 'm':
        return {Unit::StataMonths};
    case 'q':
        return {Unit::StataQuarters};
    case 'h':
        return {Unit::StataHalfYears};
    case 'b':
        return {Unit::StataBusiness};
    default:
        return {}; // years are numbers as they stand
    }
}

bool isNumeric(const SurveyFile& file, int variable) {
    const SurveyVariable& one = file.variables[static_cast<size_t>(variable)];
    return !one.isText && !timeFormat(one.format, file.stata).isTime();
}

std::optional<QByteArray> isoText(double value, TimeFormat format) {
    // Beyond this no unit has a date of ours, and every product below stays within 64 bits.
    if (!(std::abs(value) < 1e15))
        return std::nullopt;
    const auto millis = [&](double perUnit) { return std::llround(value * perUnit); };
    switch (format.unit) {
    case Unit::SpssDate:
        return momentText(millis(1000), spssEpoch, false);
    case Unit::SpssDateTime:
        return momentText(millis(1000), spssEpoch, true);
    case Unit::SpssDuration: {
        const qint64 length = millis(1000);
        return (length < 0 ? QByteArray("-") : QByteArray()) + clockText(std::abs(length));
    }
    case Unit::StataClock:
        return momentText(millis(1), stataEpoch, true);
    case Unit::StataLeapClock:
        return momentText(withoutLeapSeconds(millis(1)), stataEpoch, true);
    default:
        break;
    }
    if (std::abs(value) > 1e8)
        return std::nullopt;
    if (format.unit == Unit::StataDays)
        return momentText(millis(double(millisPerDay)), stataEpoch, false);
    if (value != std::floor(value))
        return std::nullopt;
    switch (format.unit) {
    case Unit::StataWeeks:
        return periodText(millis(1), 52);
    case Unit::StataMonths:
        return periodText(millis(1), 12);
    case Unit::StataQuarters:
        return periodText(millis(1), 4);
    case Unit::StataHalfYears:
        return periodText(millis(1), 2);
    default:
        return std::nullopt;
    }
}

bool isFinerThanMillisecond(double value, TimeFormat format) {
    double millis = value;
    if (format.unit == Unit::StataDays)
        millis = value * double(millisPerDay);
    else if (format.unit != Unit::StataClock && format.unit != Unit::StataLeapClock)
        millis = value * 1000;
    // A double holds seconds of today to about two millionths.
    return std::abs(millis - std::round(millis)) > 0.01;
}
