#include "charts/BuildChart.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "platform/dao/Value.h"
#include "platform/ui/Asker.h"
#include "tables/Marks.h"
#include "tables/tableText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

enum class Entry { Run, Tab };

constexpr int patternsOfList = 14;
constexpr int symbolsOfList = 16; ///< with "none", the last
constexpr int noPlace = -1;

class ChartBuilder {
public:
    ChartBuilder(const ChartSource& source, const StartPrompt& prompt, Entry entry)
        : s_(source), table_(source.table), prompt_(prompt), entry_(entry) {}

    ChartModel build();

private:
    const ChartSource& s_;
    const ResultTable& table_;
    const StartPrompt& prompt_;
    Entry entry_;
    ChartModel chart_;
    bool aborted_ = false;

    void frequency();
    void crosstab();
    void comparison();
    /// Adds the points of all series. @param cellOf column and row of a point, by series and category
    template<class CellOf>
    void fill(CellOf&& cellOf);
    ChartPoint point(int column, int row);
    void style();

    std::vector<int> rows(int more = 0) const;
    std::vector<int> columns(int more = 0) const;
    std::vector<int> shownOf(const std::vector<int>& items, const QString& words, ItemsShown& shown) const;
    int startOf(int items, int most, const QString& words) const;
    const QString& cell(int column, int row) const { return table_.Cell(column, row); }
};

/// A text that takes its place though it is empty.
QString shownOr(const QString& text) {
    return text.isEmpty() ? u" "_s : text;
}

/// What a cell says in its view, without "%": the count, or the percentage on whichever side of the bracket the options
/// of the run have put it. Empty where the cell has none.
QString valueInCell(const ResultTable& table, const QString& cell, bool percent, const Options& options) {
    QString text = cell;
    if (table.Tag == TableKind::Crosstab && percent && options.IncludeNinXTabPercent) {
        const qsizetype bracket = text.indexOf(u'(');
        if (!options.IncludeNinXTabPercentNFirst)
            text = bracket < 0 ? text : text.left(bracket);
        else if (bracket >= 0)
            text = text.mid(bracket + 1).chopped(text.endsWith(u')') ? 1 : 0);
        else if (!options.IncludeMissingInPercentXTab || dao::leadingNumber(text, true) != 0)
            text.clear(); // a number of cases alone; of all cases 0 percent stands alone where there is no case
    }
    return text.remove(u'%').trimmed();
}

std::vector<int> countedItems(const Span& data, bool all, const std::function<bool(int)>& marked, int more) {
    std::vector<int> items;
    for (int index = data.first; index <= data.last; ++index)
        if (all || !marked(index))
            items.push_back(index);
    items.insert(items.end(), static_cast<size_t>(more), noPlace);
    return items;
}

std::vector<int> ChartBuilder::rows(int more) const {
    return countedItems(
        table_.shape.rows, s_.options.IncludeMissing, [this](int row) { return isMarkedRow(table_, row); }, more);
}

std::vector<int> ChartBuilder::columns(int more) const {
    return countedItems(
        table_.shape.columns, s_.options.IncludeMissing, [this](int column) { return isMarkedColumn(table_, column); },
        more);
}

/// The item that a chart with too many of them begins with, from 1 on.
int ChartBuilder::startOf(int items, int most, const QString& words) const {
    const auto within = [items](qint64 start) { return start > 0 && start <= items ? static_cast<int>(start) : 1; };
    if (entry_ == Entry::Run && s_.options.StartItem > 0)
        return within(s_.options.StartItem);
    if (!prompt_)
        return 1;
    const QString number = QString::number(most);
    const dao::Value answer(
        prompt_(TranslateText(u"Es sind mehr als"_s) + u' ' + number + u' ' + words +
                said(u" Die Grafik wird maximal %1 Werte darstellen. Bitte geben Sie den ersten Wert ein:"_s,
                     u" This graphic will show %1 items maximum. Please enter the start value:"_s)
                    .arg(number) +
                u" (1-"_s + QString::number(items) + u')'));
    try {
        return answer.isNumeric() ? within(answer.toInteger()) : 1;
    } catch (const dao::Error&) {
        return 1; // beyond all whole numbers
    }
}

std::vector<int> ChartBuilder::shownOf(const std::vector<int>& items, const QString& words, ItemsShown& shown) const {
    const int count = static_cast<int>(items.size()), most = std::max(1, s_.options.MaxItems);
    const int first = count <= most ? 1 : startOf(count, most, words);
    const auto begin = items.begin() + (first - 1);
    const std::vector<int> taken(begin, begin + std::min(most, count - first + 1));
    const auto places = [](const std::vector<int>& list) {
        return static_cast<int>(std::ranges::count_if(list, [](int index) { return index != noPlace; }));
    };
    shown = {first, places(taken), places(items)};
    return taken;
}

ChartPoint ChartBuilder::point(int column, int row) {
    if (column == noPlace || row == noPlace || aborted_)
        return {};
    const QString text = valueInCell(table_, cell(column, row), chart_.percent, s_.origin.options);
    if (text.isEmpty())
        return {};
    std::optional<double> value;
    const auto read = [&] { value = dao::Value(text).toDouble(); };
    if (entry_ == Entry::Run) {
        aborted_ = trapped(read) == Trap::Aborted;
    } else if (dao::Value(text).isNumeric()) {
        read();
    }
    return value ? ChartPoint{value, text} : ChartPoint();
}

template<class CellOf>
void ChartBuilder::fill(CellOf&& cellOf) {
    for (const ChartItem& series : chart_.series) {
        std::vector<ChartPoint>& points = chart_.values.emplace_back();
        for (const ChartItem& category : chart_.categories) {
            const auto [column, row] = cellOf(series, category);
            points.push_back(point(column, row));
        }
    }
}

void ChartBuilder::frequency() {
    enum { Anzahl = 3, Prozent, GueltProzent };
    chart_.percent = !s_.options.TakeAbsolutValues;
    chart_.yTitle = TranslateText(chart_.percent ? u"Prozent"_s : u"Anzahl"_s);
    const QString words = TranslateText(u"Ausprägungen vorhanden."_s) + u' ';
    for (const int row : shownOf(rows(), words, chart_.rowsShown))
        chart_.categories.push_back({shownOr(cell(1, row)), cell(0, row), cell(0, row), row, isMarkedRow(table_, row)});
    chart_.series.resize(1);
    const int column = !chart_.percent ? Anzahl : s_.options.IncludeMissing ? Prozent : GueltProzent;
    fill([column](const ChartItem&, const ChartItem& category) { return std::pair(column, category.place); });
}

void ChartBuilder::crosstab() {
    chart_.legend = true;
    chart_.percent = s_.view != 0;
    chart_.yTitle = TranslateText(chart_.percent ? u"Prozent"_s : u"Fälle"_s);
    const int more = entry_ == Entry::Tab && chart_.percent && s_.origin.options.IncludeNinXTab ? 2 : 0;
    // With its two sums each axis of a crosstab has more than four lines as soon as it has a value, and whether a view
    // has lost them is none of its values' business.
    if (table_.shape.rows.count() == 0 || table_.shape.columns.count() == 0)
        return;
    const ChartItem nothing{u" "_s, u" "_s, {}};
    for (const int row : shownOf(rows(more), TranslateText(u"Zeilen vorhanden."_s) + u' ', chart_.rowsShown))
        chart_.series.push_back(row == noPlace ? nothing
                                               : ChartItem{shownOr(cell(0, row)), shownOr(cell(1, row)), cell(0, row),
                                                           row, isMarkedRow(table_, row)});
    for (const int column :
         shownOf(columns(more), u' ' + TranslateText(u"Spalten vorhanden."_s) + u' ', chart_.columnsShown))
        chart_.categories.push_back(column == noPlace
                                        ? nothing
                                        : ChartItem{shownOr(cell(column, 1)), shownOr(cell(column, 0)), cell(column, 0),
                                                    column, isMarkedColumn(table_, column)});
    fill([](const ChartItem& series, const ChartItem& category) { return std::pair(category.place, series.place); });
}

void ChartBuilder::comparison() {
    chart_.legend = true;
    chart_.percent = s_.view != 0;
    chart_.yTitle = TranslateText(chart_.percent ? u"Prozent"_s : u"Fälle"_s);
    chart_.chartType = s_.options.TrendGraphLine ? ChartType::Lines : ChartType::Bars;
    if (table_.shape.rows.count() == 0 || table_.shape.columns.count() == 0)
        return;
    for (const int row : shownOf(rows(), u' ' + TranslateText(u"Zeilen vorhanden."_s) + u' ', chart_.rowsShown))
        chart_.categories.push_back(
            {shownOr(cell(1, row)), shownOr(cell(0, row)), cell(0, row), row, isMarkedRow(table_, row)});
    for (const int column :
         shownOf(columns(), u' ' + TranslateText(u"Spalten vorhanden."_s) + u' ', chart_.columnsShown))
        chart_.series.push_back({cell(column, 0), {}, cell(column, 0), column});
    fill([](const ChartItem& series, const ChartItem& category) { return std::pair(series.place, category.place); });
}

/// The style of each series by its number; the bars of a frequency are of one.
void ChartBuilder::style() {
    chart_.color = s_.options.GraphColor;
    const bool lines = chart_.chartType == ChartType::Lines, one = chart_.kind == TableKind::Frequency;
    const int items = one ? chart_.categoryCount() : chart_.seriesCount();
    for (int item = 0; item < items; ++item) {
        const int number = one ? 1 : item + 1;
        ItemStyle style;
        style.pattern = !chart_.color && !lines;
        if (style.pattern)
            style.number = (number - 1) % patternsOfList + 1;
        else if (lines)
            style.number = chart_.color ? symbolsOfList - 1 : number % symbolsOfList;
        chart_.styles.push_back(style);
    }
}

ChartModel ChartBuilder::build() {
    chart_.kind = table_.Tag;
    chart_.caption = s_.caption;
    switch (table_.Tag) {
    case TableKind::Frequency:
        frequency();
        break;
    case TableKind::Crosstab:
        crosstab();
        break;
    case TableKind::Comparison:
        comparison();
        break;
    case TableKind::None:
    case TableKind::Descriptives:
        break;
    }
    if (chart_.percent)
        chart_.percentOf = percentWords(table_);
    style();
    if (entry_ == Entry::Run && chart_.categories.empty())
        chart_.caption.clear();
    return chart_;
}

} // namespace

QString askForStart(const QString& question) {
    return ui::asker().inputBox(question, TranslateText(u"Achtung"_s), u"1"_s).value_or(QString());
}

ChartModel BuildChart(const ChartSource& source, const StartPrompt& prompt) {
    return ChartBuilder(source, prompt, Entry::Run).build();
}

ChartModel BuildChartForTab(const ChartSource& source, const StartPrompt& prompt) {
    return ChartBuilder(source, prompt, Entry::Tab).build();
}
