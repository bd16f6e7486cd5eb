#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QHash>
#include <QString>
#include <vector>

/// Millimetres of a typographic point.
inline constexpr double onePoint = 25.4 / 72;

/// Of the height of the em: what letters take above and below the baseline, and from line to line.
inline constexpr double ascent = 0.905, descent = 0.212, lineHeight = 1.17;

/// Type is measured and painted at one size in pixels and scaled: so a line is as wide on a screen as on paper.
inline constexpr int referencePixels = 100;

/// The font of charts at the reference size: Arial or its metric twin, other scripts by what the system has.
QFont chartFont(bool bold = false);

struct TextLine {
    QString text;
    double width = 0;
};

/// Measures and breaks text. Sizes and widths in one unit, whatever it is.
class Typesetter {
public:
    Typesetter();
    double width(const QString& text, double size, bool bold = false);
    /// Breaks a text into lines where its script allows; a word that is too long is broken anywhere.
    std::vector<TextLine> wrapped(const QString& text, double size, double width, bool bold = false);
    /// The same between words only: nothing if a word is wider, or if there are more lines.
    std::vector<TextLine> wrappedAtWords(const QString& text, double size, double width, int most);
    /// As much of a text as there is room for, with "…" behind it; the text itself if it fits.
    QString shortened(const QString& text, double size, double width, bool bold = false);

private:
    /// A part of a text between two places where a line may end.
    struct Piece {
        qsizetype end;
        double width, withBlanks; ///< without the blanks behind it, and with them, in heights of the type
    };

    QFontMetricsF metrics_[2]; ///< regular and bold
    QHash<QString, double> widths_[2];
    QHash<QString, std::vector<Piece>> pieces_[2];

    const std::vector<Piece>& pieces(const QString& text, bool bold);

    /// Between pieces only; nothing if one is wider, or if there are more lines than `most`.
    std::vector<TextLine> filled(const QString& text, double size, double width, bool bold, size_t most);
    std::vector<TextLine> brokenAnywhere(const QString& text, double size, double width, bool bold);
};

/// A text as charts show it: in one line, without signs that nobody sees, and no longer than anybody reads.
QString shownText(const QString& text);
bool isRightToLeft(const QString& text);
