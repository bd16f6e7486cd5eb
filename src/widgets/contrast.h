#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

/// Contrast of two opaque colours as the guidelines for accessible contents define it (relative luminance, WCAG 2):
/// 1 to 21, and 4.5 for text that everybody can read.
inline double contrast(const QColor& a, const QColor& b) {
    const auto luminance = [](const QColor& colour) {
        const auto part = [](double value) {
            return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
    };
    const double first = luminance(a), second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

/// The colour of a text that stands back: as near to its ground as the contrast allows, in full where even that is too
/// near.
inline QColor faintText(const QColor& text, const QColor& ground, double least = 4.6) {
    for (int percent = least < 4.5 ? 25 : 50; percent < 100; percent += 5) {
        const auto mixed = [percent](int of, int with) { return (of * percent + with * (100 - percent)) / 100; };
        const QColor faint(mixed(text.red(), ground.red()), mixed(text.green(), ground.green()),
                           mixed(text.blue(), ground.blue()));
        if (contrast(faint, ground) >= least)
            return faint;
    }
    return text;
}
