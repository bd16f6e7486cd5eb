#include "charts/valueTexts.h"

#include "charts/lines.h"
#include "charts/palette.h"

#include <QLineF>
#include <cmath>

namespace {

constexpr double gap = 0.5;
/// Nobody reads so many, and there is no page for them.
constexpr size_t mostValues = 2500;

QString textOf(const ChartModel& model, const ChartMark& mark) {
    return shownText(model.values[static_cast<size_t>(mark.series)][static_cast<size_t>(mark.category)].text);
}

/// Areas in which nothing else may lie, found by their columns.
class Occupied {
public:
    explicit Occupied(double columnWidth) : width_(std::max(columnWidth, 1.0)) {}

    void add(const QRectF& area) {
        for (int column = first(area); column <= last(area); ++column)
            columns_[column].push_back(area);
    }
    bool meets(const QRectF& area) const {
        for (int column = first(area); column <= last(area); ++column) {
            const auto found = columns_.constFind(column);
            if (found != columns_.cend() &&
                std::any_of(found->begin(), found->end(), [&](const QRectF& other) { return overlap(area, other); }))
                return true;
        }
        return false;
    }

private:
    double width_;
    QHash<int, std::vector<QRectF>> columns_;

    int first(const QRectF& area) const { return static_cast<int>(std::floor(area.left() / width_)); }
    int last(const QRectF& area) const { return static_cast<int>(std::floor(area.right() / width_)); }
    static bool overlap(const QRectF& a, const QRectF& b) {
        return a.left() < b.right() && b.left() < a.right() && a.top() < b.bottom() && b.top() < a.bottom();
    }
};

bool crosses(const QPolygonF& line, const QRectF& area) {
    for (qsizetype i = 1; i < line.size(); ++i) {
        const QLineF part(line[i - 1], line[i]);
        if (area.contains(part.p1()) || area.contains(part.p2()))
            return true;
        const QLineF sides[] = {{area.topLeft(), area.bottomRight()}, {area.topRight(), area.bottomLeft()}};
        for (const QLineF& side : sides)
            if (part.intersects(side, nullptr) == QLineF::BoundedIntersection)
                return true;
    }
    return false;
}

QSizeF extentOf(Typesetter& type, const ValueType& as, const QString& text) {
    const QSizeF flat(type.width(text, as.size), (ascent + descent) * as.size);
    return as.upright ? flat.transposed() : flat;
}

double distance(const QRectF& area, const QPointF& point) {
    return std::hypot(std::max({area.left() - point.x(), point.x() - area.right(), 0.0}),
                      std::max({area.top() - point.y(), point.y() - area.bottom(), 0.0}));
}

struct Placer {
    ChartFrame& frame;
    Typesetter& type;
    ValueType as;
    std::vector<ChartText> texts;

    void add(const QString& text, const QRectF& area) {
        const QPointF at = as.upright ? QPointF(area.left() + ascent * as.size, area.bottom())
                                      : QPointF(area.left(), area.top() + ascent * as.size);
        texts.push_back(
            {text, at, as.size, type.width(text, as.size), as.upright ? 90.0 : 0.0, false, false, inkColor});
    }

    bool atBars(const std::vector<ChartMark>& marks) {
        const QRectF page(QPointF(), frame.layout.size);
        Occupied occupied(frame.pitch());
        for (const ChartMark& mark : marks)
            occupied.add(mark.area);
        for (const ChartMark& mark : marks) {
            const QString text = textOf(frame.model, mark);
            const QSizeF extent = extentOf(type, as, text);
            const double top = mark.hanging ? mark.area.bottom() + gap : mark.area.top() - gap - extent.height();
            const QRectF area({mark.area.center().x() - extent.width() / 2, top}, extent);
            if (occupied.meets(area) || !page.contains(area))
                return false;
            occupied.add(area);
            add(text, area);
        }
        return true;
    }

    bool atPoints(const std::vector<ChartMark>& marks) {
        const QRectF page(QPointF(), frame.layout.size);
        const QRectF room(frame.layout.plot.left(), page.top(), frame.layout.plot.width(),
                          frame.layout.plot.bottom() - page.top());
        std::vector<QPolygonF> lines;
        for (int s = 0; s < frame.model.seriesCount(); ++s)
            for (const QPolygonF& piece : linePieces(frame, s))
                for (qsizetype i = 1; i < piece.size(); ++i)
                    lines.push_back({piece[i - 1], piece[i]});
        Occupied occupied(frame.pitch());
        std::vector<std::vector<QPointF>> points(static_cast<size_t>(frame.model.categoryCount()));
        for (const ChartMark& mark : marks) {
            occupied.add(mark.area);
            points[static_cast<size_t>(mark.category)].push_back(mark.area.center());
        }
        for (const ChartMark& mark : marks) {
            const QString text = textOf(frame.model, mark);
            const QSizeF extent = extentOf(type, as, text);
            const std::optional<QRectF> area = freeNear(mark.area, extent, [&](const QRectF& a) {
                return room.contains(a) && !occupied.meets(a) && isNearest(mark, a, points) &&
                       std::none_of(lines.begin(), lines.end(),
                                    [&](const QPolygonF& line) { return crosses(line, a); });
            });
            if (!area)
                return false;
            occupied.add(*area);
            add(text, *area);
        }
        return true;
    }

    /// Whether a value in this area is read as that of its own point: every other is clearly farther away.
    static bool isNearest(const ChartMark& mark, const QRectF& area, const std::vector<std::vector<QPointF>>& points) {
        const double own = distance(area, mark.area.center());
        bool itself = false;
        for (const QPointF& point : points[static_cast<size_t>(mark.category)]) {
            if (!itself && point == mark.area.center())
                itself = true;
            else if (distance(area, point) < own + 0.6)
                return false;
        }
        return true;
    }

    template<typename Free>
    static std::optional<QRectF> freeNear(const QRectF& mark, const QSizeF& extent, Free free) {
        const double w = extent.width(), h = extent.height(), x = mark.center().x(), y = mark.center().y();
        const QPointF places[] = {{x - w / 2, mark.top() - gap - h}, {x - w / 2, mark.bottom() + gap},
                                  {mark.right() + gap, y - h / 2},   {mark.left() - gap - w, y - h / 2},
                                  {mark.right(), mark.top() - h},    {mark.left() - w, mark.top() - h},
                                  {mark.right(), mark.bottom()},     {mark.left() - w, mark.bottom()}};
        for (const QPointF& place : places)
            if (const QRectF area(place, extent); free(area))
                return area;
        return std::nullopt;
    }
};

/// The least margin m beside a plot of height h - m so that a value that reaches `part` of it has `extent` behind it.
double marginFor(double part, double extent, double height) {
    return part <= 0 ? 0 : std::max(0.0, (extent - (1 - part) * height) / part);
}

} // namespace

std::vector<ValueType> valueTypes(const ChartModel& model, double factor) {
    std::vector<ValueType> types;
    for (const double points : {8.0, 7.0, 6.0})
        types.push_back({points * onePoint * factor, false});
    if (model.chartType != ChartType::Lines)
        for (const double points : {8.0, 7.0, 6.0})
            types.push_back({points * onePoint * factor, true});
    return types;
}

ValueMargins valueMargins(const ChartFrame& frame, Typesetter& type, const ValueType& as) {
    ValueMargins margins;
    const double height = frame.layout.plot.height();
    const bool lines = frame.model.chartType == ChartType::Lines;
    for (const std::vector<ChartPoint>& row : frame.model.values) {
        for (const ChartPoint& point : row) {
            const std::optional<double> value = drawnValue(point);
            if (!value)
                continue;
            const double extent = extentOf(type, as, shownText(point.text)).height() + gap + (lines ? 1.4 : 0);
            const double place = std::clamp(frame.axis.place(*value), 0.0, 1.0);
            if (frame.axis.hangs(*value))
                margins.below = std::max(margins.below, marginFor(1 - place, extent, height));
            else
                margins.above = std::max(margins.above, marginFor(place, extent, height));
        }
    }
    return margins;
}

bool drawValues(ChartFrame& frame, Typesetter& type, const ValueType& as, const std::vector<ChartMark>& marks) {
    if (marks.empty() || marks.size() > mostValues)
        return false;
    Placer placer{frame, type, as, {}};
    const bool lines = frame.model.chartType == ChartType::Lines;
    if (!(lines ? placer.atPoints(marks) : placer.atBars(marks)))
        return false;
    for (ChartText& text : placer.texts)
        if (!text.text.isEmpty())
            frame.layout.texts.push_back(std::move(text));
    return true;
}
