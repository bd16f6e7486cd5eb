#pragma once

#include "printing/PageSetup.h"

#include <QColor>
#include <algorithm>

/// What all parts of a report share in their look: few sizes, hairlines, and greys that a printout in grey keeps apart.
namespace look {

/// Nothing on a page is set in smaller type.
inline constexpr double smallestPoints = 6;

/// Widths of rules in twips.
inline constexpr double hairline = 6, firmLine = 15;
inline const QColor ruleColor(0x80, 0x80, 0x80);
/// Of what stands back: notes, marks, words in front of their answers, running heads.
inline const QColor quietColor(0x50, 0x50, 0x50);
/// Behind what is to be told apart, missing values for one.
inline const QColor shade(0xee, 0xee, 0xee);

/// Sizes of type in points.
inline double smaller(const PageSetup& setup, double factor) {
    return std::max(smallestPoints, setup.fontSize * factor);
}
inline double noteSize(const PageSetup& setup) {
    return smaller(setup, 0.82);
}
inline double captionSize(const PageSetup& setup) {
    return smaller(setup, 0.9);
}

/// An em of running text in twips; all distances go by it.
inline double em(const PageSetup& setup) {
    return setup.fontSize * twipsPerPoint;
}
/// Room in front of a block.
inline double blockSpace(const PageSetup& setup) {
    return 0.6 * em(setup);
}

/// Where what is said begins, right of the words that it answers: captions of facts, language marks, value codes. On
/// narrow paper it leaves most of a line to the answers.
inline double labelColumn(const PageSetup& setup) {
    return std::min(9.5 * em(setup), setup.textArea().width() / 3);
}
/// Width of a line of running text at most: about 95 characters.
inline double measure(const PageSetup& setup) {
    return 42 * em(setup);
}

} // namespace look
