#include "charts/palette.h"

#include "charts/patterns.h"

#include <array>

QRgb seriesColor(int series) {
    static constexpr std::array<QRgb, seriesColors> colors = {
        0xff0072b2, 0xffe69f00, 0xff882255, 0xff66bbaa, 0xffb8460e, 0xffcc99dd, 0xff442299,
        0xff99bb66, 0xff772277, 0xff9988ff, 0xff996644, 0xffee7733, 0xff224411, 0xffbb5577,
        0xff990022, 0xff996699, 0xff88aaff, 0xff6655cc, 0xffff5577, 0xff445511};
    return colors[static_cast<size_t>(series) % colors.size()];
}

DrawnStyle drawnStyle(const ChartModel& model, int item) {
    const bool frequency = model.kind == TableKind::Frequency;
    const bool given = item >= 0 && item < static_cast<int>(model.styles.size());
    const ItemStyle style = given ? model.styles[static_cast<size_t>(item)] : ItemStyle{false, 15, {}};
    DrawnStyle drawn;
    if (model.chartType == ChartType::Lines) {
        drawn.symbol = style.number < 0 ? 15 : style.number % 16;
        drawn.color = style.color.value_or(model.color ? seriesColor(item) : inkColor) | 0xff000000;
        return drawn;
    }
    const int ownPattern = style.pattern ? style.number : frequency ? 1 : item + 1;
    if (style.pattern || (!model.color && !style.color))
        drawn.pattern = (std::max(ownPattern, 1) - 1) % patternCount + 1;
    drawn.color = style.color.value_or(seriesColor(frequency ? 0 : item)) | 0xff000000;
    return drawn;
}
