#include "charts/valueAxis.h"

#include "platform/system/NumberFormat.h"

#include <algorithm>
#include <cmath>

namespace {

/// Differences and steps of drawn values are numbers, too.
constexpr double largestValue = 1e300;

struct Range {
    double low = 0, high = 0;
    bool whole = true;
};

Range rangeOf(const ChartModel& model) {
    Range range;
    for (const std::vector<ChartPoint>& row : model.values) {
        for (const ChartPoint& point : row) {
            const std::optional<double> value = drawnValue(point);
            if (!value)
                continue;
            range.low = std::min(range.low, *value);
            range.high = std::max(range.high, *value);
            range.whole = range.whole && *value == std::floor(*value);
        }
    }
    return range;
}

/// The least step of 1, 2 or 5 times a power of ten that is no smaller.
double niceStep(double atLeast) {
    const double power = std::pow(10, std::floor(std::log10(atLeast)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= atLeast * (1 - 1e-9))
            return factor * power;
    }
    return 10 * power;
}

/// As many decimals as it takes to tell the marks apart, and to state each of them.
int decimalsFor(double from, double step) {
    for (int decimals = 0; decimals <= 12; ++decimals) {
        const double unit = std::pow(10, decimals);
        const auto stated = [&](double number) {
            return std::abs(std::round(number * unit) / unit - number) < step * 1e-6;
        };
        if (stated(from) && stated(step))
            return decimals;
        if (decimals > 0 && step * unit >= 10)
            return decimals; // a third of something is never stated: two digits of it will do
    }
    return 12;
}

/// The separator that the table has: an option can exchange it.
QChar separatorOf(const ChartModel& model) {
    const auto separates = [](QChar sign) { return sign == u'.' || sign == u','; };
    for (const std::vector<ChartPoint>& row : model.values) {
        for (const ChartPoint& shown : row) {
            const auto found = std::find_if(shown.text.begin(), shown.text.end(), separates);
            if (found != shown.text.end())
                return *found;
        }
    }
    return NumberFormat::decimalSeparator();
}

QString tickText(double value, double from, double step, QChar separator) {
    if (std::abs(value) < step * 1e-9)
        value = 0;
    const bool far = std::abs(value) >= 1e15 || step < 1e-6;
    QString text = far ? NumberFormat::plain(value) : NumberFormat::fixed(value, decimalsFor(from, step));
    return text.replace(NumberFormat::decimalSeparator(), separator);
}

ValueAxis marked(double low, double high, int parts, QChar separator) {
    ValueAxis axis{low, high, {}, {}, std::clamp(0.0, low, high), low > 0 || high < 0};
    const double step = (high - low) / parts;
    for (int i = 0; i <= parts; ++i) {
        axis.ticks.push_back(i == parts ? high : low + step * i);
        axis.labels.push_back(tickText(axis.ticks.back(), low, step, separator));
    }
    return axis;
}

} // namespace

std::optional<double> drawnValue(const ChartPoint& point) {
    if (!point.value || !std::isfinite(*point.value))
        return std::nullopt;
    return std::clamp(*point.value, -largestValue, largestValue);
}

ValueAxis valueAxis(const ChartModel& model, int parts) {
    const ValueScale& scale = model.scale;
    const QChar separator = separatorOf(model);
    const auto drawable = [](double end) { return std::isfinite(end) && std::abs(end) <= largestValue; };
    if (!scale.automatic && drawable(scale.minimum) && drawable(scale.maximum) && scale.minimum < scale.maximum)
        return marked(scale.minimum, scale.maximum, std::clamp(scale.division, 1, 50), separator);

    Range range = rangeOf(model);
    const bool empty = range.low == 0 && range.high == 0;
    if (empty)
        range.high = 1;
    double step = niceStep((range.high - range.low) / std::max(parts, 1));
    if (empty || (range.whole && !model.percent))
        step = std::max(step, 1.0);
    const double below = std::ceil(-range.low / step - 1e-9), above = std::ceil(range.high / step - 1e-9);
    return marked(-below * step, above * step, static_cast<int>(below + above), separator);
}
