#pragma once

#include "catalogue/SurveyFile.h"

#include <QByteArray>
#include <QString>
#include <optional>

/// Dates and times of survey files as ISO text.

/// How the numbers of a variable count time.
struct TimeFormat {
    enum class Unit {
        None,           ///< plain numbers
        SpssDate,       ///< seconds since 14 October 1582; dates, also of months, quarters and weeks
        SpssDateTime,   ///< the same with the time of day
        SpssDuration,   ///< seconds
        StataDays,      ///< days since 1 January 1960
        StataClock,     ///< milliseconds since then, days of 86,400 seconds
        StataLeapClock, ///< milliseconds since then, leap seconds counted
        StataWeeks,     ///< weeks since then, each year's first beginning on 1 January, 52 a year
        StataMonths,
        StataQuarters,
        StataHalfYears,
        StataBusiness ///< days of a calendar that the file does not hold
    };
    Unit unit = Unit::None;
    /// True if the values become text.
    bool isTime() const { return unit != Unit::None && unit != Unit::StataBusiness; }
};

TimeFormat timeFormat(const QString& format, bool stata);
/// True for a variable of plain numbers, neither texts nor times.
bool isNumeric(const SurveyFile& file, int variable);

/// "2018-03-31", "2018-03-31T12:00:00", "12:00:00", fractions of a second only where there are any; hours of
/// a duration may pass
/// 24. Nothing for a number that is no date of the years 1 to 9999.
std::optional<QByteArray> isoText(double value, TimeFormat format);
/// True if the time has a fraction below a millisecond, which the text does not show.
bool isFinerThanMillisecond(double value, TimeFormat format);
