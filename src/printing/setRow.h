#pragma once

#include "printing/fonts.h"

#include <vector>

/// A row of a flowable with all that stands in it, from its upper left corner on: it can be placed whole, or in pieces
/// where it is higher than a page. Lengths in twips.
struct SetRow {
    struct Text {
        SetText text;
        QPointF at;
        double scale = 1;
        QColor color = Qt::black;
    };
    double height = 0;
    std::vector<ReportPage::Box> boxes;
    std::vector<ReportPage::Rule> rules;
    std::vector<Text> texts;

    void place(ReportPage& page, const QPointF& at) const;
    /// Height of what fits from a height on: no line is cut, whatever stands beside it. 0 where not even a line fits
    double piece(double from, double room) const;
    /// Adds the lines that are wholly in a piece.
    void placePiece(ReportPage& page, double from, double pieceHeight, const QPointF& at) const;

    /// Adds a text in stretches, one below the other. @return the height that it takes
    double add(const std::vector<SetText>& stretches, const QPointF& at, double scale = 1,
               const QColor& color = Qt::black);
};

/// Breaks a text of any length into lines; one that goes on for pages is set in stretches, since the time for setting
/// one grows faster than its length.
std::vector<SetText> setStretches(const QString& text, const QFont& font, double width,
                                  Qt::Alignment alignment = Qt::AlignLeft, double spacing = listSpacing);
/// Height of them all.
double heightOf(const std::vector<SetText>& stretches);
