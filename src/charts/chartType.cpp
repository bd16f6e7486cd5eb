#include "charts/chartType.h"

#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// More than a page of type holds.
constexpr qsizetype longestText = 2000;
/// Millimetres that nobody sees: a width that comes from the text itself holds the text.
constexpr double tolerance = 0.001;

} // namespace

QFont chartFont(bool bold) {
    QFont font;
    font.setFamilies({u"Arial"_s, u"Liberation Sans"_s, u"Helvetica"_s, u"Arimo"_s});
    font.setStyleHint(QFont::SansSerif);
    // Hinting would give letters other widths at every resolution.
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setPixelSize(referencePixels);
    font.setBold(bold);
    return font;
}

Typesetter::Typesetter() : metrics_{QFontMetricsF(chartFont(false)), QFontMetricsF(chartFont(true))} {}

double Typesetter::width(const QString& text, double size, bool bold) {
    double& known = widths_[bold][text];
    if (known == 0 && !text.isEmpty())
        known = metrics_[bold].horizontalAdvance(text) / referencePixels;
    return known * size;
}

std::vector<TextLine> Typesetter::broken(const QString& text, double size, double width, bool bold, bool anywhere,
                                         int most) {
    QTextLayout layout(text, chartFont(bold));
    QTextOption option;
    option.setWrapMode(anywhere ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::WordWrap);
    layout.setTextOption(option);
    const double room = std::max(width + tolerance, 0.0) / size * referencePixels;
    std::vector<TextLine> lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        if (static_cast<int>(lines.size()) == most) {
            lines.clear();
            break;
        }
        line.setLineWidth(room);
        const double taken = line.naturalTextWidth();
        if (!anywhere && taken > room + 0.01) {
            lines.clear();
            break;
        }
        lines.push_back({text.mid(line.textStart(), line.textLength()).trimmed(), taken / referencePixels * size});
    }
    layout.endLayout();
    return lines;
}

std::vector<TextLine> Typesetter::wrapped(const QString& text, double size, double width, bool bold) {
    const double whole = this->width(text, size, bold);
    if (whole <= width + tolerance)
        return {{text, whole}};
    return broken(text, size, width, bold, true, -1);
}

std::vector<TextLine> Typesetter::wrappedAtWords(const QString& text, double size, double width, int most) {
    const double whole = this->width(text, size);
    if (whole <= width + tolerance)
        return {{text, whole}};
    if (whole > (width + tolerance) * most)
        return {};
    return broken(text, size, width, false, false, most);
}

QString Typesetter::shortened(const QString& text, double size, double width, bool bold) {
    if (this->width(text, size, bold) <= width + tolerance)
        return text;
    std::vector<qsizetype> ends;
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, text);
    while (letters.toNextBoundary() > 0)
        ends.push_back(letters.position());
    const auto cut = [&](qsizetype end) {
        QString start = text.left(end);
        while (!start.isEmpty() && start.back().isSpace())
            start.chop(1);
        return start + u'…';
    };
    const auto tooLong = std::partition_point(ends.begin(), ends.end(), [&](qsizetype end) {
        return metrics_[bold].horizontalAdvance(cut(end)) / referencePixels * size <= width;
    });
    return tooLong == ends.begin() ? u"…"_s : cut(*(tooLong - 1));
}

QString shownText(const QString& text) {
    QString shown;
    const QString start = text.left(4 * longestText).simplified();
    for (const char32_t sign : start.toUcs4()) {
        const bool control = QChar::category(sign) == QChar::Other_Control;
        if (!control && !QChar::isNonCharacter(sign))
            shown += QChar::fromUcs4(sign);
    }
    if (shown.size() > longestText) {
        shown.truncate(longestText);
        if (shown.back().isHighSurrogate())
            shown.chop(1);
        shown += u'…';
    }
    return shown;
}

bool isRightToLeft(const QString& text) {
    return text.isRightToLeft();
}
