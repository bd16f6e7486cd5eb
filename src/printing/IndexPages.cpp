#include "printing/IndexPages.h"

#include "printing/fonts.h"
#include "printing/look.h"
#include "printing/words.h"

#include <QHash>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int leastForIndex = 50;

/// What tells variables of one name apart: the number of the nearest chapter that has one, else the outermost chapter.
QString studyOf(const std::vector<QString>& names, const std::vector<QString>& titles, int level) {
    for (int i = level - 1; i >= 0; --i)
        if (!names[static_cast<size_t>(i)].isEmpty())
            return names[static_cast<size_t>(i)];
    return titles.empty() ? QString() : titles.front();
}

qsizetype digitsAt(const QString& text, qsizetype start) {
    qsizetype end = start;
    while (end < text.size() && text[end] >= u'0' && text[end] <= u'9')
        ++end;
    return end;
}

} // namespace

bool namesInOrder(const QString& first, const QString& second) {
    const QString a = first.toCaseFolded(), b = second.toCaseFolded();
    qsizetype i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        const qsizetype iEnd = digitsAt(a, i), jEnd = digitsAt(b, j);
        if (iEnd > i && jEnd > j) {
            const auto bare = [](const QString& text, qsizetype from, qsizetype to) {
                while (from + 1 < to && text[from] == u'0')
                    ++from;
                return QStringView(text).mid(from, to - from);
            };
            const QStringView x = bare(a, i, iEnd), y = bare(b, j, jEnd);
            if (x.size() != y.size())
                return x.size() < y.size();
            if (x != y)
                return x < y;
            i = iEnd;
            j = jEnd;
        } else if (a[i] != b[j]) {
            return a[i] < b[j];
        } else {
            ++i;
            ++j;
        }
    }
    if (i < a.size() || j < b.size())
        return i >= a.size();
    return first < second;
}

IndexPages::IndexPages(const ReportOutline& outline, const PageSetup& setup, const QRectF& body)
    : setup_(setup), body_(body) {
    if (outline.variables() < leastForIndex)
        return;
    std::vector<QString> names, titles; // of the chapters around, by level
    QHash<QString, int> times;
    for (size_t i = 0; i < outline.entries.size(); ++i) {
        const ReportEntry& entry = outline.entries[i];
        const size_t level = static_cast<size_t>(std::clamp(entry.level, 0, 500));
        if (entry.kind == ReportEntry::Kind::Chapter) {
            names.resize(level);
            titles.resize(level);
            names.push_back(entry.name);
            titles.push_back(entry.title);
        } else if (entry.kind == ReportEntry::Kind::Variable) {
            const int above = static_cast<int>(std::min(level, names.size()));
            rows_.push_back({static_cast<int>(i), printableLine(entry.name), studyOf(names, titles, above)});
            ++times[rows_.back().name.toCaseFolded()];
        }
    }
    for (Row& row : rows_)
        row.study = times[row.name.toCaseFolded()] > 1 ? printableLine(row.study) : QString();
    std::ranges::stable_sort(rows_, [](const Row& a, const Row& b) {
        const bool sameName = a.name.compare(b.name, Qt::CaseInsensitive) == 0;
        return sameName ? namesInOrder(a.study, b.study) : namesInOrder(a.name, b.name);
    });
    chooseColumns();
    onOthers_ = static_cast<size_t>(std::max(1.0, std::floor(body.height() / line())));
    onFirst_ = static_cast<size_t>(std::max(1.0, std::floor((body.height() - 3.2 * look::em(setup)) / line())));
    const size_t columns = static_cast<size_t>(columns_), first = onFirst_ * columns, others = onOthers_ * columns;
    pages_ = 1;
    if (rows_.size() > first)
        pages_ += static_cast<int>((rows_.size() - first + others - 1) / others);
}

/// At least three wherever names have room in them.
void IndexPages::chooseColumns() {
    const QFont font = reportFont(setup_.fontFamily, look::smaller(setup_, 0.9));
    const double em = look::em(setup_);
    double widest = 0;
    for (const Row& row : rows_)
        widest = std::max(widest, textWidth(row.name, font));
    const double needed = std::min(widest, 18 * em) + 2.5 * em, gap = 2 * em;
    const auto most = [&](double column) { return static_cast<int>((body_.width() + gap) / (column + gap)); };
    columns_ = std::clamp(most(needed), 1, std::max(3, most(13 * em)));
}

double IndexPages::line() const {
    return 1.25 * twipsPerPoint * look::smaller(setup_, 0.9);
}

std::pair<size_t, size_t> IndexPages::rowsOf(int index) const {
    const size_t columns = static_cast<size_t>(columns_);
    const size_t from = index == 0 ? 0 : (onFirst_ + static_cast<size_t>(index - 1) * onOthers_) * columns;
    return {from, std::min(rows_.size(), from + (index == 0 ? onFirst_ : onOthers_) * columns)};
}

QString IndexPages::range(int index) const {
    const auto [from, to] = rowsOf(index);
    return rows_[from].name + u" – "_s + rows_[to - 1].name;
}

void IndexPages::placeRow(ReportPage& page, const Row& row, const QRectF& place, const NumberOfEntry& number) const {
    const QFont font = reportFont(setup_.fontFamily, look::smaller(setup_, 0.9));
    const double gap = 0.5 * look::em(setup_);
    const SetText set = setText(number(row.entry), font, 0);
    const double room = place.width() - std::max(set.width, 1.5 * look::em(setup_)) - gap;
    const SetText name = setLine(row.name, font, row.study.isEmpty() ? room : room * 0.75);
    name.place(page, place.topLeft());
    if (!row.study.isEmpty())
        setLine(row.study, font, room - name.width - gap)
            .place(page, place.topLeft() + QPointF(name.width + gap, 0), look::quietColor);
    set.place(page, place.topLeft() + QPointF(place.width() - set.width, 0));
    page.links.push_back({place, row.entry});
}

void IndexPages::place(ReportPage& page, int index, const NumberOfEntry& number) const {
    double top = body_.top();
    if (index == 0) {
        const QFont font = reportFont(setup_.fontFamily, setup_.fontSize * 1.6, true);
        setLine(reportWord(u"Verzeichnis der Variablen"_s, setup_.language), font, body_.width())
            .place(page, body_.topLeft());
        top += 3.2 * look::em(setup_);
    }
    const auto [from, to] = rowsOf(index);
    const size_t columns = static_cast<size_t>(columns_);
    // The last page's columns are of one length.
    const size_t rows = (to - from + columns - 1) / columns;
    const double gap = 2 * look::em(setup_), width = (body_.width() + gap) / columns_ - gap;
    for (size_t i = from; i < to; ++i) {
        const size_t column = (i - from) / rows, row = (i - from) % rows;
        const QPointF corner(body_.left() + static_cast<double>(column) * (width + gap),
                             top + static_cast<double>(row) * line());
        placeRow(page, rows_[i], {corner, QSizeF(width, line())}, number);
    }
    for (size_t column = 1; column < columns; ++column) {
        const double x = body_.left() + static_cast<double>(column) * (width + gap) - gap / 2;
        page.pieces.emplace_back(
            ReportPage::Rule{{x, top, x, top + static_cast<double>(rows) * line()}, look::hairline, look::ruleColor});
    }
}
