#include "printing/PageFrame.h"

#include "printing/fonts.h"
#include "printing/look.h"
#include "printing/words.h"

#include <QLocale>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString joined(const QString& first, const QString& second) {
    return first.isEmpty() || second.isEmpty() ? first + second : first + u"   ·   "_s + second;
}

QString dateText(const QDate& date, int language) {
    return language == 2 ? QLocale(QLocale::English).toString(date, u"d MMMM yyyy"_s) : date.toString(u"dd.MM.yyyy"_s);
}

} // namespace

PageFrame::PageFrame(const PageSetup& setup) : setup_(setup), area_(setup.textArea()) {
    const bool foot =
        (setup.datePlace >= 4 && setup.datePlace <= 6) || (setup.pageNumberPlace >= 4 && setup.pageNumberPlace <= 6);
    body_ = area_.adjusted(0, line() + 1.1 * look::em(setup), 0, foot ? -line() - 0.7 * look::em(setup) : 0);
}

QFont PageFrame::font() const {
    return reportFont(setup_.fontFamily, look::noteSize(setup_));
}

double PageFrame::line() const {
    return 1.25 * font().pixelSize();
}

QString PageFrame::fixedText(int place, int number) const {
    const QString date = setup_.datePlace == place ? dateText(setup_.date, setup_.language) : QString();
    const QString page =
        setup_.pageNumberPlace == place ? reportWord(u"Seite %1"_s, setup_.language).arg(number) : QString();
    return joined(date, page);
}

void PageFrame::placeLine(ReportPage& page, const QString (&texts)[3], double y) const {
    const QFont type = font();
    const double whole = area_.width(), gap = 1.5 * look::em(setup_);
    const double middle = texts[1].isEmpty() ? 0 : std::min(textWidth(texts[1], type), whole / 2);
    // What stands in the middle stays there whatever is beside it.
    const double side = middle > 0 ? (whole - middle) / 2 - gap : whole;
    const double right = std::min(textWidth(texts[2], type), middle > 0 ? side : whole * 0.6);
    const double left = middle > 0 || right == 0 ? side : whole - right - gap;
    const auto put = [&](const QString& text, double x, double width, Qt::Alignment alignment) {
        if (text.isEmpty() || width <= 0)
            return;
        const SetText set = setLine(text, type, width + 1);
        const double dx = alignment & Qt::AlignRight     ? width - set.width
                          : alignment & Qt::AlignHCenter ? (width - set.width) / 2
                                                         : 0;
        set.place(page, {area_.left() + x + dx, y}, look::quietColor);
    };
    put(texts[0], 0, left, Qt::AlignLeft);
    put(texts[1], (whole - middle) / 2, middle, Qt::AlignHCenter);
    put(texts[2], whole - right, right, Qt::AlignRight);
}

void PageFrame::place(ReportPage& page, const RunningHead& head) const {
    const QString top[3] = {joined(fixedText(1, head.number), printableLine(head.chapter)), fixedText(2, head.number),
                            joined(printableLine(head.range), fixedText(3, head.number))};
    const QString bottom[3] = {fixedText(4, head.number), fixedText(5, head.number), fixedText(6, head.number)};
    placeLine(page, top, area_.top());
    placeLine(page, bottom, area_.bottom() - line());
    if (!(top[0] + top[1] + top[2]).isEmpty()) {
        const double y = area_.top() + line() + 0.15 * look::em(setup_);
        page.pieces.emplace_back(
            ReportPage::Rule{{area_.left(), y, area_.right(), y}, look::hairline, look::ruleColor});
    }
}
