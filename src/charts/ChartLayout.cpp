#include "charts/ChartLayout.h"

#include "app/globals.h"
#include "charts/bars.h"
#include "charts/categoryLabels.h"
#include "charts/entryBlock.h"
#include "charts/lines.h"
#include "charts/palette.h"
#include "charts/valueTexts.h"

#include <QTransform>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr double pageMargin = 2, gapBetween = 3, rightOfPlot = 1.5;
constexpr double labelType = 10 * onePoint, legendType = 9 * onePoint, noteType = 8 * onePoint,
                 titleType = 11 * onePoint;
/// Of the page's height that labels may take: in full, and where they are cut anyway.
constexpr double highestLabels = 1.0 / 3, highestShort = 0.26;
constexpr double tickLength = 1, tickGap = 0.7, axisTitleGap = 1;

QString shownLevel(const QString& text) {
    return shownText(text.left(400));
}

/// For an item that has neither code nor label, as an empty text and what is missing in the data have none: nobody
/// could tell whose its bars are. Empty for every other.
QString wordFor(const ChartItem& item) {
    const bool empty = item.place >= 0 && item.level1.trimmed().isEmpty() && item.level2.trimmed().isEmpty();
    return empty ? TranslateText(u"(leer)"_s) : QString();
}

QString itemText(const QString& label, const QString& code) {
    if (label.isEmpty() || label == code)
        return code;
    return code.isEmpty() ? label : label + u" ("_s + code + u')';
}

/// What is equal to what, never with the sign at the end or the beginning of a line.
QString pair(const QString& left, const QString& right) {
    return left + QChar(QChar::Nbsp) + u'=' + QChar(QChar::Nbsp) + right;
}

class Composer {
public:
    Composer(const ChartModel& model, const QSizeF& size, ChartParts parts)
        : model_(model), whole_(parts == ChartParts::Whole) {
        layout_.size = size;
        // Type keeps its size in print; only a chart too small for it gets a smaller one.
        factor_ = std::clamp(
            std::min(size.width() / defaultChartSize.width(), size.height() / defaultChartSize.height()), 0.6, 1.0);
        const double margin = std::min({pageMargin, size.width() / 20, size.height() / 20});
        room_ = QRectF(QPointF(), size).adjusted(margin, margin, -margin, -margin);
    }

    ChartLayout take() {
        const QRectF page(QPointF(), layout_.size);
        layout_.shapes.push_back(
            {{{page.topLeft(), page.topRight(), page.bottomRight(), page.bottomLeft()}}, paperColor, 0, true});
        if (whole_)
            addTitle();
        addNotes();
        if (!model_.isEmpty()) {
            axis_ = makeAxis();
            addLegend();
            placeLabels();
            addPlot();
            addBlocks();
        }
        // On a page too small for anything, what would be cut is left out.
        std::erase_if(layout_.texts, [&](const ChartText& text) {
            const QPolygonF corners = text.bounds();
            const QRectF seen = page.adjusted(-1e-6, -1e-6, 1e-6, 1e-6);
            return !std::all_of(corners.begin(), corners.end(),
                                [&](const QPointF& corner) { return seen.contains(corner); });
        });
        return std::move(layout_);
    }

private:
    struct Block {
        EntryBlock block;
        QPointF at;
        bool ofSeries;
    };

    const ChartModel& model_;
    bool whole_;
    double factor_ = 1;
    Typesetter type_;
    ChartLayout layout_;
    QRectF room_; ///< what is left of the page
    ValueAxis axis_;
    CategoryLabels labels_;
    std::vector<Block> blocks_;
    double widestTick_ = 0; ///< of the axis that is drawn

    bool frequency() const { return model_.kind == TableKind::Frequency; }

    void addText(const QString& text, const QPointF& at, double size, QRgb color, bool bold = false) {
        layout_.texts.push_back({text, at, size, type_.width(text, size, bold), 0, bold, isRightToLeft(text), color});
    }

    void addTitle() {
        const QString title = shownText(model_.caption);
        if (title.isEmpty())
            return;
        double size = titleType * factor_;
        const double most = layout_.size.height() / 4;
        std::vector<TextLine> lines = type_.wrapped(title, size, room_.width(), true);
        while (static_cast<double>(lines.size()) * lineHeight * size > most && size > 6 * onePoint) {
            size -= onePoint / 2;
            lines = type_.wrapped(title, size, room_.width(), true);
        }
        const auto fitting = static_cast<size_t>(std::max(1.0, most / (lineHeight * size)));
        if (lines.size() > fitting) {
            lines[fitting - 1].text =
                type_.shortened(lines[fitting - 1].text + u' ' + lines[fitting].text, size, room_.width(), true);
            lines.resize(fitting);
        }
        for (const TextLine& line : lines) {
            addText(line.text, {room_.left(), room_.top() + ascent * size}, size, inkColor, true);
            room_.setTop(room_.top() + lineHeight * size);
        }
        room_.setTop(room_.top() + gapBetween / 2);
    }

    /// What the percentages are of, unless the title says so, and what of the table the chart shows, where it doesn't
    /// show all.
    void addNotes() {
        QStringList notes;
        if (!whole_ || !model_.caption.contains(model_.percentOf, Qt::CaseInsensitive))
            notes << model_.percentOf;
        const auto note = [&](const ItemsShown& items, const QString& what) {
            if (items.shown >= items.of)
                return;
            const QString said = TranslateText(u"%1 von %2, ab %3"_s).arg(items.shown).arg(items.of).arg(items.first);
            notes << (frequency() ? said : TranslateText(what) + u": "_s + said);
        };
        note(model_.rowsShown, u"Zeilen"_s);
        note(model_.columnsShown, u"Spalten"_s);
        notes.removeAll(QString());
        if (notes.isEmpty())
            return;
        const double size = noteType * factor_;
        const std::vector<TextLine> lines = type_.wrapped(notes.join(u"; "_s), size, room_.width());
        for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
            addText(line->text, {room_.left(), room_.bottom() - descent * size}, size, quietColor);
            room_.setBottom(room_.bottom() - lineHeight * size);
        }
        room_.setBottom(room_.bottom() - 0.5);
    }

    void addLegend() {
        if (!model_.legend)
            return;
        std::vector<BlockEntry> entries;
        for (int s = 0; s < std::min(model_.seriesCount(), 400); ++s)
            if (const QString text = shownSeries(model_, s); !text.isEmpty())
                entries.push_back({text.left(400), s});
        // Lines are told apart at their ends; bars would rather be wide.
        const double beside = model_.chartType == ChartType::Lines ? 1.06 : 0.98;
        take({0.35 * room_.width(), 0.35 * room_.height(), legendType * factor_, beside}, entries, true, false);
    }

    /// Puts a block at an edge of the room that is left, and takes its place away.
    void take(const BlockRoom& rules, const std::vector<BlockEntry>& entries, bool ofSeries, bool left) {
        if (entries.empty())
            return;
        PlacedBlock placed = placeBlock(type_, entries, room_.size(), rules);
        const QSizeF size = placed.block.size;
        QPointF at;
        if (placed.isBeside && left) {
            at = room_.topLeft();
            room_.setLeft(room_.left() + size.width() + gapBetween);
        } else if (placed.isBeside) {
            at = {room_.right() - size.width(),
                  room_.top() + std::min(gapBetween, (room_.height() - size.height()) / 2)};
            room_.setRight(at.x() - gapBetween);
        } else {
            at = {room_.center().x() - size.width() / 2, room_.bottom() - size.height()};
            room_.setBottom(at.y() - gapBetween / 2);
        }
        blocks_.push_back({std::move(placed.block), at, ofSeries});
    }

    QStringList level(bool first) const {
        QStringList texts;
        for (const ChartItem& item : model_.categories)
            texts << shownLevel(first ? item.level1 + wordFor(item) : item.level2);
        return texts;
    }

    void placeLabels() {
        LabelTexts texts{level(true), level(false)};
        if (texts.first == texts.second)
            texts.second.clear();
        if (std::optional<CategoryLabels> full =
                laid(highestLabels, [&](const LabelRoom& room) { return fullLabels(type_, texts, room); })) {
            labels_ = std::move(*full);
            return;
        }
        texts.second = level(false);
        if (frequency())
            placeCodesAndKey(texts);
        else
            hideSecondLevel(texts);
    }

    /// Asks for labels until what they need to the left of the plot is there.
    template<typename Ask>
    std::optional<CategoryLabels> laid(double highest, Ask ask) {
        LabelRoom room;
        room.type = labelType * factor_;
        room.left = axisWidth();
        room.mostLeft = std::max(room.left, 0.3 * room_.width());
        room.height = std::min(layout_.size.height() * highest, room_.height() * 0.6);
        std::optional<CategoryLabels> labels;
        for (int attempt = 0; attempt < 6; ++attempt) {
            room.pitch = std::max(room_.width() - room.left - rightOfPlot, 1.0) / model_.categoryCount();
            labels = ask(room);
            if (!labels || labels->left <= room.left + 1e-6)
                return labels;
            room.left = labels->left + 0.1;
        }
        return std::nullopt;
    }

    void placeShort(const QStringList& texts) {
        labels_ =
            *laid(highestShort, [&](const LabelRoom& room) { return std::optional(shortLabels(type_, texts, room)); });
    }

    void placeCodesAndKey(const LabelTexts& texts) {
        QStringList onAxis;
        std::vector<BlockEntry> key, everything;
        for (int i = 0; i < texts.first.size(); ++i) {
            const QString &label = texts.first[i], &code = texts.second[i];
            onAxis << (code.isEmpty() ? label : code);
            const QString entry = code.isEmpty() || label.isEmpty() ? onAxis.back() : pair(code, label);
            if (!code.isEmpty() && !label.isEmpty())
                key.push_back({entry});
            if (everything.size() < 400)
                everything.push_back({entry});
        }
        const BlockRoom rules{0.45 * room_.width(), 0.45 * room_.height(), noteType * factor_};
        const QRectF before = room_;
        if (key.size() <= 400)
            take(rules, key, false, false);
        placeShort(onAxis);
        if (!labels_.shortened || key.size() == everything.size())
            return;
        room_ = before;
        if (!key.empty() && key.size() <= 400)
            blocks_.pop_back();
        take(rules, everything, false, false);
        placeShort(onAxis);
    }

    /// The label of a category whose full text stands in the box. In a comparison it says which entry it is from, which
    /// makes all of them long and alike: that goes first.
    QString axisText(const QString& label, const QString& code) const {
        QString shown = label;
        for (int s = 0; s < model_.seriesCount() && model_.kind == TableKind::Comparison; ++s) {
            const QString entry = shownText(model_.series[static_cast<size_t>(s)].level1).section(u'(', 0, 0).trimmed();
            const QString ending = u'(' + entry + u')';
            if (entry.isEmpty() || !label.endsWith(ending))
                continue;
            shown = label.chopped(ending.size()).trimmed();
            if (!shown.isEmpty())
                shown += u'…';
            break;
        }
        return shown.isEmpty() ? code : shown;
    }

    void hideSecondLevel(const LabelTexts& texts) {
        layout_.secondLevelHidden = true;
        QStringList onAxis;
        std::vector<BlockEntry> box;
        for (int i = 0; i < texts.first.size(); ++i) {
            const ChartItem& item = model_.categories[static_cast<size_t>(i)];
            layout_.explanation += item.level1 + u" = "_s + item.level2 + u"\r\n"_s;
            onAxis << axisText(texts.first[i], texts.second[i]);
            // A code without a label stands on the axis itself.
            if (box.size() < 400 && !texts.first[i].isEmpty())
                box.push_back({pair(texts.first[i], texts.second[i])});
        }
        if (whole_)
            take({0.4 * room_.width(), 0, noteType * factor_}, box, false, true);
        if (std::optional<CategoryLabels> full = laid(highestLabels, [&](const LabelRoom& room) {
                return fullLabels(type_, {onAxis, {}}, room);
            }))
            labels_ = std::move(*full);
        else
            placeShort(onAxis);
    }

    /// Goes by the page and not by what is left of it: the plot has the same axis with and without title and box.
    ValueAxis makeAxis() const {
        const double height = 0.75 * layout_.size.height();
        return valueAxis(model_, std::clamp(static_cast<int>(height / (11 * factor_)), 3, 10));
    }

    double axisWidth() {
        double widest = 0;
        for (const QString& label : axis_.labels)
            widest = std::max(widest, type_.width(label, labelType * factor_));
        const double title = model_.yTitle.isEmpty() ? 0 : (ascent + descent) * labelType * factor_ + axisTitleGap;
        return std::min(title + widest + tickGap + tickLength, 0.4 * room_.width());
    }

    void addPlot() {
        const double half = lineHeight * labelType * factor_ / 2;
        const double below = model_.xTitle.isEmpty() ? 0 : 2 * half;
        QRectF plot(room_.left() + labels_.left, room_.top() + half, 0, 0);
        plot.setRight(std::max(room_.right() - rightOfPlot, plot.left() + 1));
        plot.setBottom(std::max(room_.bottom() - labels_.height - below, plot.top() + 1));
        layout_.plot = plot;
        ChartFrame frame{model_, layout_, axis_};
        std::vector<ChartMark> marks;
        for (const ValueType& as : valueTypes(model_, factor_)) {
            const ValueMargins margins = valueMargins(frame, type_, as);
            layout_.plot = plot.adjusted(0, std::max(margins.above - half, 0.0), 0, -margins.below);
            if (layout_.plot.height() < plot.height() / 2)
                break;
            marks = marksOf(frame);
            layout_.valuesShown = drawValues(frame, type_, as, marks);
            if (layout_.valuesShown)
                break;
            layout_.plot = plot;
        }
        if (!layout_.valuesShown) {
            layout_.plot = plot;
            marks = marksOf(frame);
        }
        drawPlot(frame, marks, plot.bottom());
    }

    std::vector<ChartMark> marksOf(const ChartFrame& frame) const {
        return model_.chartType == ChartType::Lines ? pointMarks(frame) : barMarks(frame);
    }

    void drawPlot(ChartFrame& frame, const std::vector<ChartMark>& marks, double labelsFrom) {
        const bool lines = model_.chartType == ChartType::Lines;
        const QRectF& plot = layout_.plot;
        drawGrid(frame);
        if (lines)
            drawLines(frame);
        else
            drawBars(frame, marks);
        frame.line(plot.bottomLeft(), plot.topLeft(), inkColor, 0.25);
        const double base = std::clamp(frame.y(frame.axis.base), plot.top(), plot.bottom());
        frame.line({plot.left(), base}, {plot.right(), base}, inkColor, 0.25);
        drawBreak(frame, lines ? std::vector<ChartMark>() : marks);
        layout_.axisMinimum = frame.axis.low;
        layout_.axisMaximum = frame.axis.high;
        layout_.axisDivision = static_cast<int>(frame.axis.ticks.size()) - 1;
        for (CategoryLabels::Label& label : labels_.labels) {
            label.text.at += QPointF(frame.x(label.category), labelsFrom);
            layout_.hits.push_back({label.text.bounds(), -1, label.category});
            layout_.texts.push_back(std::move(label.text));
        }
        addAxisTitles(labelsFrom);
    }

    void drawGrid(ChartFrame& frame) {
        const QRectF& plot = layout_.plot;
        const double size = labelType * factor_, apart = 1.2 * size;
        const auto& ticks = frame.axis.ticks;
        const double step = plot.height() / static_cast<double>(ticks.size() - 1);
        const auto stride = static_cast<size_t>(std::max(1.0, std::ceil(apart / step)));
        for (size_t i = 0; i < ticks.size(); ++i) {
            const double y = frame.y(ticks[i]);
            frame.line({plot.left(), y}, {plot.right(), y}, gridColor, 0.15);
            frame.line({plot.left() - tickLength, y}, {plot.left(), y}, inkColor, 0.2);
            if (i % stride != 0)
                continue;
            const QString& label = frame.axis.labels[static_cast<int>(i)];
            const double right = plot.left() - tickLength - tickGap;
            addText(label, {right - type_.width(label, size), y + 0.36 * size}, size, inkColor);
            widestTick_ = std::max(widestTick_, type_.width(label, size));
        }
    }

    void addAxisTitles(double labelsFrom) {
        const QRectF& plot = layout_.plot;
        const double size = labelType * factor_;
        if (const QString title = shownLevel(model_.yTitle); !title.isEmpty()) {
            // Its full text stands nowhere else: on a low page it gets smaller.
            const double small = std::min(size, size * plot.height() / type_.width(title, size));
            const double width = type_.width(title, small);
            const double x = plot.left() - tickLength - tickGap - widestTick_ - axisTitleGap - descent * size;
            const QPointF at(x, plot.center().y() + width / 2);
            if (x - ascent * size > room_.left() - 0.01 && small > 0.5 * size) // else the page is too little for it
                layout_.texts.push_back({title, at, small, width, 90, false, isRightToLeft(title), inkColor});
        }
        if (const QString title = shownLevel(model_.xTitle); !title.isEmpty()) {
            const QString text = type_.shortened(title, size, plot.width());
            addText(text,
                    {plot.center().x() - type_.width(text, size) / 2, labelsFrom + labels_.height + ascent * size},
                    size, inkColor);
        }
    }

    void addBlocks() {
        ChartFrame frame{model_, layout_, {}};
        for (Block& block : blocks_) {
            for (ChartText& text : block.block.texts) {
                text.at += block.at;
                layout_.texts.push_back(std::move(text));
            }
            if (!block.ofSeries)
                continue;
            for (const EntryBlock::Place& place : block.block.places) {
                const QRectF swatch = place.swatch.translated(block.at);
                if (model_.chartType == ChartType::Lines)
                    drawLineSample(frame, swatch, place.entry);
                else
                    drawFilled(frame, swatch, place.entry, barPatternScale(frame));
                layout_.hits.push_back({QPolygonF(place.area.translated(block.at)), place.entry, -1});
            }
        }
    }
};

} // namespace

QPolygonF ChartText::bounds() const {
    const QRectF flat(0, -ascent * size, width, (ascent + descent) * size);
    QTransform turned;
    turned.translate(at.x(), at.y());
    turned.rotate(-angle);
    const QPolygonF corners{flat.topLeft(), flat.topRight(), flat.bottomRight(), flat.bottomLeft()};
    return turned.map(corners);
}

const ChartHit* ChartLayout::hitAt(const QPointF& millimetres) const {
    const auto found = std::find_if(hits.rbegin(), hits.rend(), [&](const ChartHit& hit) {
        return hit.area.containsPoint(millimetres, Qt::WindingFill);
    });
    return found == hits.rend() ? nullptr : &*found;
}

ChartLayout layOut(const ChartModel& model, const QSizeF& millimetres, ChartParts parts) {
    return Composer(model, millimetres, parts).take();
}

QString shownSeries(const ChartModel& model, int series) {
    const ChartItem& item = model.series.at(static_cast<size_t>(series));
    const QString first = shownText(item.level1), second = shownText(item.level2);
    // The rows of a crosstab have the code first.
    if (model.kind != TableKind::Crosstab || second.isEmpty())
        return first.isEmpty() ? wordFor(item) : first;
    return std::ranges::count(model.series, item.level2, &ChartItem::level2) > 1 ? itemText(second, first) : second;
}

QString chartTip(const ChartModel& model, const ChartHit& hit) {
    QStringList lines;
    if (hit.category >= 0 && hit.category < model.categoryCount()) {
        const ChartItem& item = model.categories[static_cast<size_t>(hit.category)];
        lines << itemText(shownText(item.level1), shownText(item.level2)) + wordFor(item);
    }
    if (hit.series >= 0 && hit.series < model.seriesCount()) {
        const ChartItem& item = model.series[static_cast<size_t>(hit.series)];
        const QString first = shownText(item.level1), second = shownText(item.level2);
        lines << (model.kind == TableKind::Crosstab ? itemText(second, first) : itemText(first, second)) +
                     wordFor(item);
        if (hit.category >= 0 && hit.series < static_cast<int>(model.values.size())) {
            const ChartPoint& point =
                model.values[static_cast<size_t>(hit.series)].at(static_cast<size_t>(hit.category));
            lines << shownText(point.text) + (model.percent ? u" %"_s : QString());
        }
    }
    lines.removeAll(QString());
    return lines.join(u'\n');
}
