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

const std::vector<Typesetter::Piece>& Typesetter::pieces(const QString& text, bool bold) {
    const auto known = pieces_[bold].constFind(text);
    if (known != pieces_[bold].cend())
        return *known;
    std::vector<Piece> found;
    QTextBoundaryFinder ends(QTextBoundaryFinder::Line, text);
    qsizetype start = 0;
    for (qsizetype end = ends.toNextBoundary(); end > 0; end = ends.toNextBoundary()) {
        const QString piece = text.mid(start, end - start);
        const double bare = this->width(piece.trimmed(), 1, bold);
        found.push_back({end, bare, piece.back().isSpace() ? this->width(piece, 1, bold) : bare});
        start = end;
    }
    return *pieces_[bold].insert(text, std::move(found));
}

std::vector<TextLine> Typesetter::filled(const QString& text, double size, double width, bool bold, size_t most) {
    const double room = (width + tolerance) / size;
    std::vector<TextLine> lines;
    qsizetype start = 0, end = 0;
    double before = 0, taken = 0; // of the line that is being filled: with the blanks at its end, and without
    const auto endLine = [&] { lines.push_back({text.mid(start, end - start).trimmed(), taken * size}); };
    for (const Piece& piece : pieces(text, bold)) {
        if (piece.width > room)
            return {};
        if (end > start && before + piece.width > room) {
            endLine();
            start = end;
            before = 0;
        }
        taken = before + piece.width;
        before += piece.withBlanks;
        end = piece.end;
        if (lines.size() >= most)
            return {};
    }
    endLine();
    return lines;
}

std::vector<TextLine> Typesetter::brokenAnywhere(const QString& text, double size, double width, bool bold) {
    QTextLayout layout(text, chartFont(bold));
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    std::vector<TextLine> lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(width + tolerance, 0.0) / size * referencePixels);
        const double taken = line.naturalTextWidth() / referencePixels * size;
        lines.push_back({text.mid(line.textStart(), line.textLength()).trimmed(), taken});
    }
    layout.endLayout();
    return lines;
}

std::vector<TextLine> Typesetter::wrapped(const QString& text, double size, double width, bool bold) {
    const double whole = this->width(text, size, bold);
    if (whole <= width + tolerance)
        return {{text, whole}};
    std::vector<TextLine> lines = filled(text, size, width, bold, static_cast<size_t>(text.size()));
    return lines.empty() ? brokenAnywhere(text, size, width, bold) : lines;
}

std::vector<TextLine> Typesetter::wrappedAtWords(const QString& text, double size, double width, int most) {
    const double whole = this->width(text, size);
    if (whole <= width + tolerance)
        return {{text, whole}};
    if (whole > (width + tolerance) * most)
        return {};
    return filled(text, size, width, false, static_cast<size_t>(most));
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
    const auto plain = [](QChar sign) { return sign > u' ' && sign < u'\x7f'; };
    if (text.size() <= longestText && std::all_of(text.begin(), text.end(), plain))
        return text; // as every value is
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
