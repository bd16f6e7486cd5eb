#include "charts/GraphicOptions.h"

#include "app/globals.h"
#include "platform/dao/Value.h"
#include "platform/system/NumberFormat.h"
#include "platform/ui/Asker.h"

#include <QRegularExpression>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

const QString patternNames[] = {
    u"94%-Musterfarbe"_s, u"88%-Musterfarbe"_s,           u"75%-Musterfarbe"_s,        u"50%-Musterfarbe"_s,
    u"25%-Musterfarbe"_s, u"Fette horizontale Linien"_s,  u"Fette vertikale Linien"_s, u"Karomuster"_s,
    u"Webmuster"_s,       u"Horizontale Linien"_s,        u"Vertikale Linien"_s,       u"Gittermuster"_s,
    u"Spaliermuster"_s,   u"Invertiertes Spaliermuster"_s};

const QString markerNames[] = {u"Bindestrich"_s,
                               u"Plus"_s,
                               u"X"_s,
                               u"Stern"_s,
                               u"Kreis"_s,
                               u"Quadrat"_s,
                               u"Raute"_s,
                               u"Dreieck, Spitze oben"_s,
                               u"Dreieck, Spitze unten"_s,
                               u"Gefüllter Kreis"_s,
                               u"Gefülltes Quadrat"_s,
                               u"Gefüllte Raute"_s,
                               u"Gefülltes Dreieck, Spitze oben"_s,
                               u"Gefülltes Dreieck, Spitze unten"_s,
                               u"Dreidimensionaler Ball"_s,
                               u"Kein"_s};

/// Either separator is read, but for what may as well have grouped digits: "1.000" where the comma separates decimals.
std::optional<double> typedNumber(const QString& text) {
    const QString typed = text.trimmed();
    static const QRegularExpression groups(u"^[+-]?[1-9]\\d{0,2}([.,])\\d{3}$"_s);
    const QRegularExpressionMatch grouped = groups.match(typed);
    if (grouped.hasMatch() && grouped.captured(1) != NumberFormat::decimalSeparator())
        return std::nullopt;
    return dao::textToNumber(typed);
}

} // namespace

GraphicOptions::GraphicOptions(const ChartModel& chart, const ValueScale& shownScale, bool marks)
    : Titel(chart.caption), chkFromToAuto(chart.scale.automatic), Minimum(NumberFormat::plain(shownScale.minimum)),
      Maximum(NumberFormat::plain(shownScale.maximum)), Division(QString::number(shownScale.division)), chart_(chart),
      labels_(labelTableOf(chart)), marks_(marks), partsAtFirst_(shownScale.division),
      ownDivision_(chart.scale.automatic ? Division : QString()) {
    choose(0);
}

QStringList GraphicOptions::styleNames() const {
    QStringList names;
    if (lines())
        for (const QString& name : markerNames)
            names << TranslateText(name);
    else
        for (const QString& name : patternNames)
            names << TranslateText(name);
    return names;
}

QString GraphicOptions::noPattern() {
    return TranslateText(u"(kein Muster)"_s);
}

ChartModel GraphicOptions::preview() const {
    ChartModel chart = chart_;
    LabelTable chosen = labels_;
    chosen.Titel = Titel;
    QString fault;
    chosen.scale = scale(fault).value_or(chart_.scale);
    layOn(chosen, chart);
    return chart;
}

void GraphicOptions::choose(int item) {
    const int count = static_cast<int>(labels_.items.size());
    item_ = count == 0 ? -1 : std::clamp(item, 0, count - 1);
}

int GraphicOptions::style() const {
    const ItemStyle& style = current().style;
    if (lines())
        return style.number;
    return style.pattern ? (style.number + patternCount - 1) % patternCount : -1;
}

void GraphicOptions::changeStyle(const std::function<void(ItemStyle&, int)>& change) {
    for (int i = 0; i < static_cast<int>(labels_.items.size()); ++i)
        if (chkForAll || i == item_)
            change(labels_.items[static_cast<size_t>(i)].style, i);
}

/// The bars of a frequency are of one pattern, series of one each.
int GraphicOptions::ownPattern(int item) const {
    return itemsAreCategories(chart_) ? 1 : item % patternCount + 1;
}

void GraphicOptions::chooseStyle(int place) {
    changeStyle([&](ItemStyle& style, int) {
        style.number = lines() ? place : place + 1;
        style.pattern = !lines();
    });
}

void GraphicOptions::setPatternOrColor(bool pattern) {
    if (lines())
        return;
    changeStyle([&](ItemStyle& style, int item) {
        style.pattern = pattern;
        if (pattern && (style.number < 1 || style.number > patternCount))
            style.number = ownPattern(item);
    });
}

void GraphicOptions::setColor(QRgb color) {
    changeStyle([&](ItemStyle& style, int) {
        style.pattern = false;
        style.color = color;
    });
}

void GraphicOptions::setAutocolor(bool automatic, QRgb shown) {
    // The colour that one item has is none for all.
    if (automatic)
        changeStyle([](ItemStyle& style, int) { style.color.reset(); });
    else
        edited().style.color = shown;
}

void GraphicOptions::reset(const LabelTable& own) {
    for (size_t i = 0; i < std::min(labels_.items.size(), own.items.size()); ++i) {
        labels_.items[i].label = own.items[i].label;
        labels_.items[i].style = own.items[i].style;
    }
    Titel = own.Titel;
    chkFromToAuto = own.scale.automatic;
}

void GraphicOptions::setMissing(bool missing) {
    if (marks_)
        edited().missing = missing;
}

void GraphicOptions::changeLabel() {
    const std::optional<QString> label = ui::asker().inputBox(
        TranslateText(u"Geben Sie einen neuen Label ein:"_s) + u' ', TranslateText(u"Label ändern"_s), current().label);
    if (label && !label->isEmpty())
        edited().label = *label;
}

void GraphicOptions::divideAnew() {
    const std::optional<double> low = typedNumber(Minimum), high = typedNumber(Maximum);
    if (Division != ownDivision_ || !low || !high || *low >= *high)
        return;
    const double power = std::pow(10.0, std::floor(std::log10(*high - *low)));
    const auto isWhole = [](double number) { return std::abs(number - std::round(number)) < 1e-6; };
    int best = 0; // of none such, what there was: steps too close help nobody
    for (const double step : {0.1, 0.2, 0.5, 1.0, 2.0, 5.0}) {
        const double parts = (*high - *low) / (step * power);
        if (parts < 1 || parts > std::min(2 * partsAtFirst_, mostDivisions) || !isWhole(parts) ||
            !isWhole(*low / (step * power)))
            continue;
        const int whole = static_cast<int>(std::round(parts));
        if (best == 0 || std::abs(whole - partsAtFirst_) < std::abs(best - partsAtFirst_))
            best = whole;
    }
    Division = ownDivision_ = QString::number(best > 0 ? best : partsAtFirst_);
}

/// Nothing, with words, where what is typed is no axis.
std::optional<ValueScale> GraphicOptions::scale(QString& fault) const {
    ValueScale chosen;
    if (chkFromToAuto)
        return chosen;
    const std::optional<double> minimum = typedNumber(Minimum), maximum = typedNumber(Maximum),
                                parts = typedNumber(Division);
    if (!minimum || !maximum)
        fault = TranslateText(u"Bitte geben Sie als Minimum und Maximum der Achse je eine Zahl ein."_s);
    else if (*minimum >= *maximum)
        fault = TranslateText(u"Das Minimum der Achse muss kleiner sein als das Maximum."_s);
    else if (!parts || *parts < 1 || *parts > mostDivisions || *parts != std::floor(*parts))
        fault = TranslateText(u"Die Achse kann in 1 bis 50 Abschnitte geteilt werden."_s);
    if (!fault.isEmpty())
        return std::nullopt;
    chosen = {.automatic = false, .minimum = *minimum, .maximum = *maximum, .division = static_cast<int>(*parts)};
    return chosen;
}

std::optional<LabelTable> GraphicOptions::cmdOK(QString& fault) const {
    const std::optional<ValueScale> axis = scale(fault);
    if (!axis)
        return std::nullopt;
    LabelTable chosen = labels_;
    chosen.Titel = Titel;
    chosen.scale = *axis;
    return chosen;
}
