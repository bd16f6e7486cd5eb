#pragma once

#include "printing/Flowable.h"
#include "printing/fonts.h"

#include <optional>

/// Rows of lines of text and rules: what headings, texts and facts are laid out as.
class LinesFlow final : public Flowable {
public:
    struct Bit {
        std::shared_ptr<const SetText> text;
        int line = 0;
        QPointF at; ///< from the row's upper left corner
        QColor color = Qt::black;
    };
    struct Row {
        double height = 0;
        bool mayEnd = true; ///< a page may end behind it
        std::vector<Bit> bits;
        std::optional<ReportPage::Rule> rule; ///< from the row's upper left corner
    };

    std::vector<Row> lines;
    bool keeps = false; ///< stands with what follows
    double space = 0;   ///< in front
    double widest = 0;

    /// Adds a text, a row for each line; no page ends behind its first or in front of its last one.
    /// @param before room above the first line
    void add(const SetText& text, double x, double before, const QColor& color = Qt::black);
    /// Adds a text to the first line of a row that is there, on its baseline; it is in one line.
    void addBeside(size_t row, const SetText& text, double x, const QColor& color);

    int rows() const override { return static_cast<int>(lines.size()); }
    double height(int row) const override { return lines[static_cast<size_t>(row)].height; }
    bool mayEndAfter(int row) const override { return lines[static_cast<size_t>(row)].mayEnd; }
    bool keepsWithNext() const override { return keeps; }
    double spaceBefore() const override { return space; }
    double width() const override { return widest; }
    void place(ReportPage& page, int row, const QPointF& at) const override;
};
