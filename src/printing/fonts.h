#pragma once

#include "printing/ReportPage.h"

#include <QFont>
#include <QList>
#include <QString>

/// A font of a report, measured in twips: lines break alike on every device.
/// @param family the one asked for; where it is not installed the nearest of its kind
QFont reportFont(const QString& family, double points, bool bold = false, bool italic = false);

/// A text as it can be printed: what no font shows and what controls something stands there as its code ("[U+12345]"),
/// what would turn its neighbours round is left out. Tabs, line feeds and U+2028 stay, other ends of lines become line
/// feeds.
QString printable(const QString& text);

/// The same in one line, as a heading or a name is shown: blanks and ends of lines are one blank each.
QString printableLine(const QString& text);

/// A text in lines of one width. Lengths in twips.
struct SetText {
    std::shared_ptr<const QTextLayout> layout;
    std::vector<double> tops; ///< of each line from that of the first, and the bottom of the last
    double width = 0;         ///< of the widest line, without blanks at its end

    int lines() const { return static_cast<int>(tops.size()) - 1; }
    double height() const { return tops.back(); }
    /// Adds some of its lines to a page, the upper left corner of the first at `at`.
    void place(ReportPage& page, const QPointF& at, int first, int count, const QColor& color = Qt::black,
               double scale = 1) const;
    void place(ReportPage& page, const QPointF& at, const QColor& color = Qt::black, double scale = 1) const {
        place(page, at, 0, lines(), color, scale);
    }
};

/// From line to line of running text, in heights of the type; tables and lists stand a little closer.
inline constexpr double textSpacing = 1.28, listSpacing = 1.2;

/// Breaks a text into lines: between words, a word that is wider than a line anywhere. It is taken as it is, so it has
/// to be printable; a line feed is a line's end.
/// @param width of the lines; 0: it is not broken
/// @param spacing from line to line in heights of the type; a script that needs more takes more
SetText setText(QString text, const QFont& font, double width, Qt::Alignment alignment = Qt::AlignLeft,
                double spacing = listSpacing, const QList<QTextLayout::FormatRange>& formats = {});
/// The same in one line that ends in "…" where it is too long.
SetText setLine(const QString& text, const QFont& font, double width, Qt::Alignment alignment = Qt::AlignLeft);
/// Width of a text in one line.
double textWidth(const QString& text, const QFont& font);
