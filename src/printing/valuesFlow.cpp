#include "printing/flows.h"
#include "printing/look.h"
#include "printing/setRow.h"
#include "printing/typeWidths.h"
#include "printing/words.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int unbrokenRows = 8;
/// In ems of the type: widest code, between columns, above a missing value that follows a valid one, of what is shaded.
constexpr double widestCode = 9, gap = 0.8, beforeMissing = 0.35, edge = 0.3;

/// Codes, labels and what is missing, in columns; the codes end where labels and answers of an entry begin.
class ValuesFlow : public Flowable {
public:
    ValuesFlow(const ValuesBlock& block, double room, const PageSetup& setup);

    int rows() const override { return std::max(1, static_cast<int>(values_.size())); }
    double height(int row) const override;
    bool mayEndAfter(int row) const override;
    double headHeight(int row) const override { return row > 0 ? head().height : 0; }
    double spaceBefore() const override { return look::blockSpace(setup_); }
    double width() const override { return width_; }
    void place(ReportPage& page, int row, const QPointF& at) const override { built(row).place(page, at); }
    void placeHead(ReportPage& page, int row, const QPointF& at) const override {
        if (row > 0)
            head().place(page, at);
    }
    double piece(int row, double from, double room) const override { return built(row).piece(from, room); }
    void placePiece(ReportPage& page, int row, double from, double pieceHeight, const QPointF& at) const override {
        built(row).placePiece(page, from, pieceHeight, at);
    }

private:
    PageSetup setup_;
    QFont font_, titleFont_, markFont_;
    QString title_, mark_;
    std::vector<ValuesBlock::Row> values_;
    TypeWidths* type_ = nullptr; ///< of the codes and labels
    double em_, codeLeft_ = 0, codeWidth_ = 0, labelLeft_ = 0, labelWidth_ = 0, markLeft_ = 0, width_ = 0;
    bool titleAbove_ = false, numbers_ = true;
    double titleHeight_ = 0;
    mutable std::vector<double> heights_;
    mutable int builtRow_ = -1;
    mutable SetRow built_;

    double step() const { return listSpacing * em_; }
    void measure(double room);
    double above(int row) const;
    double textHeight(const QString& text, double inner) const;
    std::vector<SetText> set(const QString& text, double inner) const;
    SetRow head() const;
    SetRow build(int row) const;
    const SetRow& built(int row) const;
};

ValuesFlow::ValuesFlow(const ValuesBlock& block, double room, const PageSetup& setup)
    : setup_(setup), font_(reportFont(setup.tableFamily, setup.fontSize)),
      titleFont_(reportFont(setup.fontFamily, look::captionSize(setup), true)),
      markFont_(reportFont(setup.fontFamily, look::noteSize(setup), false, true)), title_(printableLine(block.title)),
      values_(block.rows), em_(look::em(setup)) {
    font_.setKerning(false);
    type_ = &TypeWidths::in(font_);
    for (ValuesBlock::Row& value : values_) {
        value.code = printable(value.code).trimmed();
        value.label = printable(value.label).trimmed();
        if (value.missing)
            mark_ = reportWord(u"Missing"_s, setup.language);
    }
    measure(room);
    if (titleAbove_)
        titleHeight_ = heightOf(setStretches(title_, titleFont_, width_)) + 0.1 * em_;
    heights_.assign(static_cast<size_t>(rows()), -1);
}

void ValuesFlow::measure(double room) {
    TypeWidths& widths = *type_;
    double codes = 0, labels = 0;
    for (const ValuesBlock::Row& value : values_) {
        codes = std::max(codes, widths.of(value.code).width);
        labels = std::max(labels, widths.of(value.label).width);
        numbers_ = numbers_ && (value.code.isEmpty() || figureOf(value.code) == Figure::Number);
    }
    codeWidth_ = std::min({codes, widestCode * em_, room / 3});
    const double column = look::labelColumn(setup_), titleWidth = textWidth(title_, titleFont_);
    const bool beside = room >= 2.4 * column;
    labelLeft_ = std::max(codeWidth_ + gap * em_, beside ? column : 0);
    codeLeft_ = labelLeft_ - gap * em_ - codeWidth_;
    titleAbove_ = !title_.isEmpty() && titleWidth + gap * em_ > codeLeft_;
    const double mark = mark_.isEmpty() ? 0 : textWidth(mark_, markFont_) + (gap + edge) * em_;
    labelWidth_ = std::max({em_, std::min({labels, look::measure(setup_), room - labelLeft_ - mark})});
    markLeft_ = labelLeft_ + labelWidth_ + gap * em_;
    width_ = std::min(std::max(room, labelLeft_ + em_), labelLeft_ + labelWidth_ + mark);
    if (titleAbove_)
        width_ = std::max(width_, std::min(room, titleWidth));
}

std::vector<SetText> ValuesFlow::set(const QString& text, double inner) const {
    const TextExtent extent = type_->of(text);
    return extent.plain && extent.width <= inner ? std::vector<SetText>{setText(text, font_, 0)}
                                                 : setStretches(text, font_, inner);
}

double ValuesFlow::textHeight(const QString& text, double inner) const {
    const TextExtent extent = type_->of(text);
    return text.isEmpty() || (extent.plain && extent.width <= inner) ? step()
                                                                     : heightOf(setStretches(text, font_, inner));
}

/// What stands above a value's own line: the title, or room between what is valid and what is missing.
double ValuesFlow::above(int row) const {
    if (row == 0)
        return titleHeight_;
    const auto i = static_cast<size_t>(row);
    return values_[i].missing && !values_[i - 1].missing ? beforeMissing * em_ : 0;
}

double ValuesFlow::height(int row) const {
    double& known = heights_[static_cast<size_t>(row)];
    if (known < 0) {
        known = above(row) + step();
        if (!values_.empty()) {
            const ValuesBlock::Row& value = values_[static_cast<size_t>(row)];
            known = above(row) + std::max(textHeight(value.code, codeWidth_), textHeight(value.label, labelWidth_));
        }
    }
    return known;
}

SetRow ValuesFlow::build(int row) const {
    SetRow made;
    made.height = height(row);
    double y = above(row);
    if (row == 0 && !title_.isEmpty()) {
        const std::vector<SetText> title = setStretches(title_, titleFont_, titleAbove_ ? width_ : codeLeft_);
        // On one line with the first code.
        made.add(title, {0, titleAbove_ ? 0 : (step() - title.front().height()) / 2});
    }
    if (values_.empty())
        return made;
    const ValuesBlock::Row& value = values_[static_cast<size_t>(row)];
    const double left = std::max(0.0, codeLeft_ - edge * em_);
    if (value.missing) {
        made.boxes.push_back({QRectF(left, y, width_ - left, made.height - y), look::shade});
    }
    const QColor color = value.missing ? look::quietColor : QColor(Qt::black);
    if (!value.code.isEmpty()) {
        const std::vector<SetText> code = set(value.code, codeWidth_);
        const bool right = numbers_ && code.size() == 1 && code.front().lines() == 1;
        made.add(code, {codeLeft_ + (right ? codeWidth_ - code.front().width : 0), y}, 1, color);
    }
    if (!value.label.isEmpty())
        made.add(set(value.label, labelWidth_), {labelLeft_, y}, 1, color);
    if (value.missing) {
        const SetText mark = setText(mark_, markFont_, 0);
        made.add({mark}, {markLeft_, y + (step() - mark.height()) / 2}, 1, look::quietColor);
    }
    return made;
}

const SetRow& ValuesFlow::built(int row) const {
    if (builtRow_ != row) {
        built_ = build(row);
        builtRow_ = row;
    }
    return built_;
}

SetRow ValuesFlow::head() const {
    SetRow made;
    const SetText word = setText(reportWord(u"(Fortsetzung)"_s, setup_.language),
                                 reportFont(setup_.fontFamily, look::captionSize(setup_), false, true), 0);
    const double space = title_.isEmpty() ? 0 : 0.4 * em_;
    const SetText title = setLine(title_, titleFont_, std::max(em_, width_ - word.width - space));
    if (!title_.isEmpty())
        made.add({title}, {0, 0});
    made.add({word}, {title_.isEmpty() ? 0 : title.width + space, 0}, 1, look::quietColor);
    made.height = word.height() + 0.1 * em_;
    return made;
}

bool ValuesFlow::mayEndAfter(int row) const {
    const int last = rows() - 1;
    if (row == last)
        return true;
    if (height(row) > setup_.textArea().height() / 5) // a label that goes on for pages
        return true;
    return rows() > unbrokenRows && row > 0 && row + 1 < last;
}

} // namespace

std::unique_ptr<Flowable> valuesFlow(const ValuesBlock& block, double width, const PageSetup& setup) {
    return std::make_unique<ValuesFlow>(block, width, setup);
}
