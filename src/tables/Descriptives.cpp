#include "tables/Descriptives.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "tables/labels.h"
#include "tables/mdStats.h"

#include <algorithm>
#include <map>
#include <optional>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

constexpr int titleColumn = 1;
constexpr int valueColumn = 2;
constexpr int valueWidth = 1500;

/// A value of the group variable: Null, then numbers, then texts as the engine orders them.
struct GroupKey {
    std::variant<std::monostate, double, QString> content;

    bool operator<(const GroupKey& other) const {
        if (content.index() != other.content.index())
            return content.index() < other.content.index();
        if (const auto* number = std::get_if<double>(&content))
            return *number < std::get<double>(other.content);
        if (const auto* text = std::get_if<QString>(&content))
            return dao::compareTexts(*text, std::get<QString>(other.content)) < 0;
        return false;
    }
};

/// The cases of one row of the table, or of the whole table without groups.
struct Block {
    QString group;
    mdStats::Cases cases;
    std::optional<mdStats::Cases> counted; ///< what "Count" counts, where that is not `cases`
    dao::Value value{};                    ///< of the group
};

/// A number for each title that is shown; nothing where a cell stays empty.
using Results = std::array<QList<std::optional<double>>, statisticCount>;

class DescriptivesBuilder {
public:
    DescriptivesBuilder(ResultTable& table, const DescriptivesInput& input)
        : table_(table), in_(input), definition_(input.missingText), every_(QString()),
          groupMissing_(definitionOrNone(input.groupMissing)), digits_(input.digits.split(u';')),
          all_(false, definition_) {}

    BuildOutcome build();

private:
    ResultTable& table_;
    const DescriptivesInput& in_;
    MissingDefinition definition_, every_, groupMissing_;
    QStringList digits_;
    bool numeric_ = false, grouped_ = false, aborted_ = false;
    std::map<GroupKey, Block> blocks_;
    mdStats::Cases all_; ///< of all groups, for the mode
    std::optional<std::optional<double>> mode_;
    std::optional<dao::Error> failure_; ///< the last one reported in the current block
    QStringList told_;                  ///< titles of the block's failures

    bool chosen(Statistic statistic) const { return in_.selection[static_cast<size_t>(statistic)]; }
    bool anyOf(std::initializer_list<Statistic> statistics) const;
    void prepare();
    void prepareGroups();
    void read(dao::Recordset& rows, bool forCount);
    GroupKey keyOf(const dao::Value& group) const;
    Block* blockOf(const dao::Value& group, bool create);
    template<class Step>
    std::optional<double> compute(Statistic statistic, const QString& group, Step&& step, qsizetype title = 0);
    Results results(Block& block);
    Results computed(Block& block);
    void tellBlanks(const QString& group, const Results& found);
    void moments(Block& block, Results& found);
    void positions(Block& block, Results& found);
    std::optional<double> modeOfAll();
    void writeRows(Block& block);
    void writeGroup(Block& block, int row);
    void noteGroup(const dao::Value& value, int row);
    void writeValue(int column, int row, Statistic statistic, const Block& block, qsizetype title,
                    const std::optional<double>& value);
    QString formatted(double value, Statistic statistic) const;
    BuildOutcome finish();
    void noteShape();
};

template<class Action>
void forEachStatistic(const StatisticSelection& selection, Action&& action) {
    for (size_t i = 0; i < selection.size(); ++i)
        if (selection[i])
            action(static_cast<Statistic>(i));
}

bool DescriptivesBuilder::anyOf(std::initializer_list<Statistic> statistics) const {
    for (const Statistic statistic : statistics)
        if (chosen(statistic))
            return true;
    return false;
}

void DescriptivesBuilder::prepare() {
    constexpr std::array<int, 3> widths{500, 2000, 2000};
    table_.Clear();
    table_.Tag = TableKind::Descriptives;
    table_.setRows(1);
    table_.setCols(static_cast<int>(widths.size()));
    table_.FixedRows = 1;
    table_.FixedCols = 1;
    for (int column = 0; column < table_.Cols(); ++column) {
        table_.setColWidth(column, widths[static_cast<size_t>(column)]);
        table_.setColAlignment(column, 0);
    }
    table_.setCell(titleColumn, 0, TranslateText(u"Statistik"_s));
    table_.setCell(valueColumn, 0, TranslateText(u"Wert"_s));
    numeric_ = isStatisticField(in_.stat.Fields()[static_cast<size_t>(in_.stat.indexOf(u"VAR"_s))]);
    grouped_ = in_.stat2.hasField(u"VAR2"_s);
    if (grouped_)
        prepareGroups();
}

/// One column for the group and one a statistic in place of the two.
void DescriptivesBuilder::prepareGroups() {
    table_.setCell(0, 0, in_.groupVariable);
    table_.setCols(1);
    forEachStatistic(in_.selection, [&](Statistic statistic) {
        for (const QString& title : titlesOf(statistic)) {
            const int column = table_.Cols();
            table_.setCols(column + 1);
            table_.setColWidth(column, valueWidth);
            table_.setCell(column, 0, title);
        }
    });
}

GroupKey DescriptivesBuilder::keyOf(const dao::Value& group) const {
    if (group.isNull())
        return {};
    const bool number = group.kind() == dao::Value::Kind::Integer || group.kind() == dao::Value::Kind::Double;
    return number ? GroupKey{group.toDouble()} : GroupKey{group.toText()};
}

/// @return null for a group that is not there and not to be made
Block* DescriptivesBuilder::blockOf(const dao::Value& group, bool create) {
    GroupKey key = keyOf(group);
    auto found = blocks_.find(key);
    if (found == blocks_.end() && create)
        found = blocks_.emplace(std::move(key), Block{group.toText(), {in_.weighted, definition_}, {}, group}).first;
    return found == blocks_.end() ? nullptr : &found->second;
}

/// One pass for all statistics of all groups. A group that is Null equals nothing, so it has no cases.
void DescriptivesBuilder::read(dao::Recordset& rows, bool forCount) {
    const int value = rows.indexOf(u"VAR"_s);
    const int weight = in_.weighted ? rows.indexOf(u"W2"_s) : -1;
    const int group = grouped_ ? rows.indexOf(u"VAR2"_s) : -1;
    const dao::Value none;
    const bool forMode = grouped_ && !forCount && numeric_ && chosen(Statistic::Mode);
    Block* block = grouped_ ? nullptr : blockOf(none, true);
    if (numeric_ && !forCount && block)
        block->cases.reserve(rows.RecordCount());
    if (forMode)
        all_.reserve(rows.RecordCount());
    for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
        const dao::Value x = numeric_ && !forCount ? rows.value(value) : none;
        const dao::Value w = in_.weighted ? rows.value(weight) : none;
        if (forMode && (!in_.weighted || !w.isNull()))
            all_.add(x, none);
        if (grouped_) {
            const dao::Value by = rows.value(group);
            block = blockOf(by, !forCount);
            if (by.isNull() || !block)
                continue;
        }
        if (!forCount) {
            block->cases.add(x, w);
            continue;
        }
        if (!block->counted)
            block->counted.emplace(in_.weighted, every_);
        block->counted->add(none, w);
    }
}

/// Computes one statistic. @return nothing where it cannot be computed and the run goes on without
template<class Step>
std::optional<double> DescriptivesBuilder::compute(Statistic statistic, const QString& group, Step&& step,
                                                   qsizetype title) {
    std::optional<double> result;
    if (aborted_)
        return result;
    aborted_ = !computeOrTell(
        bool(in_.onFailure), [&] { result = step(); },
        [&](const dao::Error& error) {
            const QString name = titlesOf(statistic).at(title);
            in_.onFailure(group.isEmpty() ? name : group + u", "_s + name, error);
            failure_ = error;
            told_ << name;
        });
    return result;
}

/// One failure may keep other statistics from being computed: each that stays empty for it is reported too.
void DescriptivesBuilder::tellBlanks(const QString& group, const Results& found) {
    if (!failure_)
        return;
    forEachStatistic(in_.selection, [&](Statistic statistic) {
        const QStringList& titles = titlesOf(statistic);
        for (qsizetype i = 0; i < titles.size(); ++i)
            if (!found[static_cast<size_t>(statistic)].value(i) && !told_.contains(titles[i]))
                in_.onFailure(group.isEmpty() ? titles[i] : group + u", "_s + titles[i], *failure_);
    });
}

Results DescriptivesBuilder::results(Block& block) {
    failure_.reset();
    told_.clear();
    const Results found = computed(block);
    tellBlanks(block.group, found);
    return found;
}

/// All results of one block. Without a valid case only "Count" has one.
Results DescriptivesBuilder::computed(Block& block) {
    using enum Statistic;
    Results found;
    const auto put = [&](Statistic statistic, const std::optional<double>& value) {
        found[static_cast<size_t>(statistic)] = {value};
    };
    mdStats::Cases& cases = block.cases;
    if (chosen(Count))
        put(Count, compute(Count, block.group, [&] { return (block.counted ? *block.counted : cases).count(); }));
    if (!numeric_ || !cases.anyRow())
        return found;
    std::optional<double> minimum, maximum;
    if (anyOf({Minimum, Range}))
        put(Minimum, minimum = compute(Minimum, block.group, [&] { return cases.minimum(); }));
    if (anyOf({Maximum, Range}))
        put(Maximum, maximum = compute(Maximum, block.group, [&] { return cases.maximum(); }));
    if (minimum && maximum)
        put(Range, *maximum - *minimum);
    const std::optional<double> validN = compute(ValidN, block.group, [&] { return cases.validN(); });
    if (!validN || !(*validN > 0)) {
        Results counted;
        counted[static_cast<size_t>(Count)] = found[static_cast<size_t>(Count)];
        return counted;
    }
    put(ValidN, validN);
    moments(block, found);
    positions(block, found);
    return found;
}

void DescriptivesBuilder::moments(Block& block, Results& found) {
    using enum Statistic;
    const auto put = [&](Statistic statistic, const std::optional<double>& value) {
        found[static_cast<size_t>(statistic)] = {value};
    };
    mdStats::Cases& cases = block.cases;
    std::optional<double> mean;
    if (anyOf({ArithmeticMean, StandardDeviation, Variance, Skewness, Kurtosis}))
        put(ArithmeticMean, mean = compute(ArithmeticMean, block.group, [&] { return cases.mean(); }));
    if (mean && anyOf({StandardDeviation, Variance})) {
        const auto deviation = compute(chosen(StandardDeviation) ? StandardDeviation : Variance, block.group,
                                       [&] { return cases.stdDev(*mean); });
        put(StandardDeviation, deviation);
        if (deviation)
            put(Variance, *deviation * *deviation);
    }
    if (chosen(Sum))
        put(Sum, compute(Sum, block.group, [&] { return cases.sum(); }));
    if (mean && chosen(Skewness))
        put(Skewness, compute(Skewness, block.group, [&] { return cases.skewness(*mean); }));
    if (mean && chosen(Kurtosis))
        put(Kurtosis, compute(Kurtosis, block.group, [&] { return cases.kurtosis(*mean); }));
}

void DescriptivesBuilder::positions(Block& block, Results& found) {
    using enum Statistic;
    mdStats::Cases& cases = block.cases;
    if (chosen(Mode))
        found[static_cast<size_t>(Mode)] = {
            grouped_ ? modeOfAll() : compute(Mode, block.group, [&] { return cases.mode().value_or(0); })};
    if (!anyOf({Median, Percentiles}))
        return;
    const auto median = compute(
        chosen(Median) ? Median : Percentiles, block.group, [&] { return cases.median(); }, chosen(Median) ? 0 : 1);
    found[static_cast<size_t>(Median)] = {median};
    if (!chosen(Percentiles))
        return;
    const auto lower = compute(
        Percentiles, block.group, [&] { return cases.percentile25(); }, 0);
    const auto upper = compute(
        Percentiles, block.group, [&] { return cases.percentile75(); }, 2);
    found[static_cast<size_t>(Percentiles)] = {lower, median, upper};
}

/// The mode is asked of all cases, whatever the group: one answer for all rows.
std::optional<double> DescriptivesBuilder::modeOfAll() {
    if (!mode_)
        mode_ = compute(Statistic::Mode, QString(), [&] { return all_.mode().value_or(0); });
    return *mode_;
}

QString DescriptivesBuilder::formatted(double value, Statistic statistic) const {
    const auto index = static_cast<qsizetype>(statistic);
    const QString text = index < digits_.size() ? digits_[index].trimmed() : QString();
    const double digits = text.isEmpty() ? 0 : dao::Value(text).toDouble();
    return mdStats::FormatStat(value, static_cast<int>(std::clamp(digits, -1.0, 100.0)));
}

void DescriptivesBuilder::writeValue(int column, int row, Statistic statistic, const Block& block, qsizetype title,
                                     const std::optional<double>& value) {
    table_.setCellAlignment(column, row, ResultTable::RightTop);
    if (!value)
        return;
    compute(
        statistic, block.group,
        [&] {
            table_.setCell(column, row, formatted(*value, statistic));
            return *value;
        },
        title);
}

namespace {
QString onlyNumeric() {
    return TranslateText(u"Descriptives nur für numerische Felder"_s);
}
} // namespace

/// Without groups: one row a title.
void DescriptivesBuilder::writeRows(Block& block) {
    const Results found = results(block);
    const auto newRow = [this] {
        table_.setRows(table_.Rows() + 1);
        return table_.Rows() - 1;
    };
    forEachStatistic(in_.selection, [&](Statistic statistic) {
        if (aborted_ || (!numeric_ && statistic != Statistic::Count))
            return;
        const auto& values = found[static_cast<size_t>(statistic)];
        const QStringList& titles = titlesOf(statistic);
        for (qsizetype i = 0; i < titles.size(); ++i) {
            const int row = newRow();
            table_.setCell(titleColumn, row, titles[i]);
            writeValue(valueColumn, row, statistic, block, i, values.value(i));
        }
    });
    if (!numeric_)
        table_.setCell(valueColumn, newRow(), onlyNumeric());
}

/// With groups: one row a group.
void DescriptivesBuilder::writeGroup(Block& block, int row) {
    table_.setCell(0, row, block.group);
    const Results found = results(block);
    int column = 1;
    forEachStatistic(in_.selection, [&](Statistic statistic) {
        const auto& values = found[static_cast<size_t>(statistic)];
        for (qsizetype i = 0; i < titlesOf(statistic).size(); ++i)
            writeValue(column++, row, statistic, block, i, values.value(i));
    });
    if (!numeric_ && block.cases.anyRow())
        table_.setCell(0, row, onlyNumeric());
    else
        noteGroup(block.value, row);
}

/// The label is looked for as that of a value in the other tables; a text that is no number has none of its own.
void DescriptivesBuilder::noteGroup(const dao::Value& value, int row) {
    RowGroup group{.row = row,
                   .label = value.isNull() ? u"SYSMIS"_s : QString(),
                   .missing = value.isNull() || (value.isNumeric() && groupMissing_.contains(value.toDouble()))};
    if (in_.groupLabels && (value.isNull() || value.isNumeric()))
        attempt([&] { group.label = labelOf(*in_.groupLabels, value).value_or(group.label); });
    table_.groups.push_back(group);
}

BuildOutcome DescriptivesBuilder::build() {
    prepare();
    if (in_.stat.Bof() && in_.stat.Eof())
        return BuildOutcome::Empty;
    read(in_.stat, false);
    if (&in_.stat2 != &in_.stat)
        read(in_.stat2, true);
    for (auto& [key, block] : blocks_) {
        if (grouped_) {
            table_.setRows(table_.Rows() + 1);
            writeGroup(block, table_.Rows() - 1);
        } else {
            writeRows(block);
        }
        if (aborted_)
            return BuildOutcome::Aborted;
    }
    return finish();
}

BuildOutcome DescriptivesBuilder::finish() {
    if (!in_.CommaInPercent)
        table_.exchangeSeparators(1, 1);
    for (int column = 1; column < table_.Cols(); ++column)
        table_.setColAlignment(column,
                               column == titleColumn && !grouped_ ? ResultTable::LeftCenter : ResultTable::RightTop);
    noteShape();
    return in_.cancelled && in_.cancelled() ? BuildOutcome::Cancelled : BuildOutcome::Complete;
}

/// By groups each has its own number of cases; a table of "Count" alone says it itself.
void DescriptivesBuilder::noteShape() {
    const int last = table_.Rows() - 1;
    table_.shape = {.rows = {1, last}, .columns = {grouped_ ? 1 : +valueColumn, table_.Cols() - 1}};
    if (grouped_ || last < 2)
        return;
    StatedCases cases;
    for (int row = 1; row <= last; ++row) {
        if (table_.Cell(titleColumn, row) == titlesOf(Statistic::Count).first())
            cases.all = table_.Cell(valueColumn, row);
        else if (table_.Cell(titleColumn, row) == titlesOf(Statistic::ValidN).first())
            cases.valid = table_.Cell(valueColumn, row);
    }
    table_.shape.cases = {cases};
}

} // namespace

BuildOutcome BuildDescriptivesTable(ResultTable& table, const DescriptivesInput& input) {
    BuildOutcome outcome = BuildOutcome::Aborted;
    trapped([&] {
        outcome = BuildOutcome::Aborted;
        outcome = DescriptivesBuilder(table, input).build();
    });
    return outcome;
}
