#include "analysis/result/vdxCommand.h"

#include "analysis/request/DescriptivesChoice.h"
#include "platform/system/NumberFormat.h"
#include "platform/system/Paths.h"
#include "tables/missing.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <set>

using namespace Qt::StringLiterals;

namespace {

constexpr int cumulatedColumn = 6;

QString option(const QString& name, const QString& value) {
    return u"--"_s + name + u'=' + value;
}

QString inDoubleQuotes(const QString& text) {
    return u'"' + QString(text).replace(u'"', u"\"\""_s) + u'"';
}

/// The words of --weight are no names; names are found whatever the case of their letters.
QString weightWord(WeightKind kind, const QString& variable) {
    switch (kind) {
    case WeightKind::noWeight:
        return {};
    case WeightKind::WeightRE:
        return u"re"_s;
    case WeightKind::WeightHH:
        return u"hh"_s;
    case WeightKind::WeightUser:
        break;
    }
    const bool word = variable == "re"_L1 || variable == "hh"_L1 || variable == "none"_L1;
    return word ? variable.toUpper() : variable;
}

QString definition(const QString& missing) {
    return missing.isEmpty() ? u"none"_s : missing;
}

class CommandWriter {
public:
    CommandWriter(const TableResult& result, int view) : result_(result), facts_(*result.facts), r_(facts_.request) {
        view_ = view;
    }

    /// @return false where the marks can't be named
    bool write() {
        switch (r_.mode) {
        case AnalysisMode::Frequency:
            command_ = u"frequency"_s;
            places_ = {r_.dbcStudy.value, r_.dbcVariable.value};
            cases();
            options_ << option(u"missing"_s, definition(r_.dtMissing));
            return marks(facts_.handRows, Marks::of(result_.marked()).rows, QString()) && cumulated();
        case AnalysisMode::Crosstab:
            return crosstab();
        case AnalysisMode::Descriptives:
            descriptives();
            return true;
        case AnalysisMode::Comparison:
            return comparison();
        }
        return false;
    }

    QString command_;
    QStringList places_, options_;

private:
    const TableResult& result_;
    const TableFacts& facts_;
    const AnalysisRequest& r_;
    int view_ = 0;

    void cases() {
        if (const QString weight = weightWord(r_.Option3, r_.weightVariable()); !weight.isEmpty())
            options_ << option(u"weight"_s, weight);
        if (r_.optFilter == FilterKind::FilterParts && !r_.dbcParts.isEmpty())
            options_ << option(u"part"_s, r_.dbcParts.value);
        if (const QString& filter = facts_.rounds.front().filter; !filter.isEmpty())
            options_ << option(u"filter"_s, filter);
    }

    /// Marks that differ from the definitions.
    bool marks(const ValueMarks& byHand, const AxisMarks& axis, const QString& suffix) {
        for (const ValueMark& mark : byHand) {
            if (axis.count(mark.null ? std::nullopt : std::optional(mark.value)) > 1)
                return false;
            options_ << option((mark.missing ? u"mark"_s : u"unmark"_s) + suffix, typedValue(mark.value, mark.null));
        }
        return true;
    }

    bool crosstab() {
        static const QString views[] = {u"absolute"_s, u"column"_s, u"row"_s, u"total"_s};
        command_ = u"crosstab"_s;
        places_ = {r_.dbcStudy.value, r_.dbcVariable.value, r_.dbcVariable2.value};
        cases();
        options_ << option(u"missing"_s, definition(r_.dtMissing)) << option(u"missing2"_s, definition(r_.dtMissing2));
        const bool flip = r_.flipInForce();
        if (flip)
            options_ << u"--flip"_s;
        options_ << option(u"show"_s, views[static_cast<size_t>(std::clamp(view_, 0, 3))]);
        const Marks all = Marks::of(result_.marked());
        return marks(flip ? facts_.handColumns : facts_.handRows, flip ? all.columns : all.rows, QString()) &&
               marks(flip ? facts_.handRows : facts_.handColumns, flip ? all.rows : all.columns, u"2"_s);
    }

    void descriptives() {
        command_ = u"descriptives"_s;
        places_ = {r_.dbcStudy.value, r_.dbcVariable.value};
        cases();
        // Where all values count the run has emptied the working definition.
        options_ << option(u"missing"_s,
                           definition(facts_.origin.options.IncludeMissingDesc ? r_.dtMissing : r_.sMissing));
        if (r_.chkDescGroup && !r_.dbcVariable2.isEmpty())
            options_ << option(u"by"_s, r_.dbcVariable2.value) << option(u"missing2"_s, definition(r_.dtMissing2));
        const DescriptivesChoice choice = DescriptivesChoice::of(r_, facts_.origin.options);
        QStringList names;
        for (size_t i = 0; i < statisticCount; ++i)
            if (choice.chkDescriptives[i])
                names << (static_cast<Statistic>(i) == Statistic::Percentiles
                              ? u"Quartiles"_s
                              : titlesOf(static_cast<Statistic>(i)).first());
        options_ << option(u"statistics"_s, names.isEmpty() ? u"none"_s : names.join(u','));
        static const QRegularExpression usual(u"^(\\d|1[0-5])$"_s);
        const bool typed =
            std::ranges::all_of(choice.cmbDigits, [](const QString& d) { return usual.match(d).hasMatch(); });
        const bool same = std::set<QString>(choice.cmbDigits.begin(), choice.cmbDigits.end()).size() == 1;
        if (!typed)
            options_ << option(u"set"_s, u"DescriptivesDigits="_s + choice.dtDescDigits());
        else
            options_ << option(u"digits"_s, same ? choice.cmbDigits[0] : choice.dtDescDigits());
    }

    bool comparison() {
        command_ = u"compare"_s;
        if (!r_.txtTitle.isEmpty())
            options_ << option(u"title"_s, r_.txtTitle);
        for (qsizetype i = 0; i < r_.lst_TrendVars.size(); ++i)
            options_ << option(u"entry"_s, typedEntry(r_.lst_TrendVars[i], facts_.rounds[static_cast<size_t>(i)]));
        if (view_ == 1)
            options_ << u"--show=column"_s;
        return marks(facts_.handRows, Marks::of(result_.marked()).rows, QString());
    }

    static QString typedEntry(const ComparisonEntry& entry, const TableFacts::Round& round) {
        static const QRegularExpression ambiguous(u"^\\s|^\"|\\s$|(?:^|\\s)(?:weight|filter|part|missing)\\s*="_s);
        const auto name = [](const QString& text) {
            return text.contains(u' ') || text.startsWith(u'"') ? inDoubleQuotes(text) : text;
        };
        QString text = name(entry.at(ComparisonEntry::Study)) + u' ' + name(entry.at(ComparisonEntry::Variable));
        const auto add = [&](const QString& key, const QString& value) {
            text += u' ' + key + u'=' + (ambiguous.match(value).hasMatch() ? inDoubleQuotes(value) : value);
        };
        const QString& info = entry.at(ComparisonEntry::WeightInfo);
        const QString& weight = entry.at(ComparisonEntry::Weight);
        if (!weight.isEmpty())
            add(u"weight"_s, weightWord(info == "RE"_L1   ? WeightKind::WeightRE
                                        : info == "HH"_L1 ? WeightKind::WeightHH
                                                          : WeightKind::WeightUser,
                                        weight));
        const QString& kind = entry.at(ComparisonEntry::FilterInfo);
        if (!kind.isEmpty() && kind != "user"_L1)
            add(u"part"_s, kind);
        else if (!round.filter.isEmpty())
            add(u"filter"_s, round.filter);
        add(u"missing"_s, definition(entry.at(ComparisonEntry::Missing)));
        return text;
    }

    /// A row that is marked keeps the cumulated percent that it had in the table before: it is named where it is not
    /// the one that the definition alone gives.
    bool cumulated() {
        const ResultTable& table = result_.mfgGrid;
        if (result_.marks.by != Marks::By::Hand || table.Cols() <= cumulatedColumn)
            return true;
        const AxisMarks axis = Marks::of(table).rows;
        const QStringList byDefinition = cumulatedByDefinition(axis);
        for (qsizetype i = 0; i < byDefinition.size(); ++i) {
            const AxisMarks::Value& value = axis.values()[static_cast<size_t>(i)];
            const QString kept = value.cumulated ? NumberFormat::fixed(*value.cumulated, 1) : QString();
            if (!value.missing() || kept == byDefinition[i])
                continue;
            if (axis.count(value.null ? std::nullopt : std::optional(value.value)) > 1)
                return false;
            options_ << option(u"cumulated"_s, typedValue(value.value, value.null) + u'=' + kept);
        }
        return true;
    }

    QStringList cumulatedByDefinition(const AxisMarks& axis) const {
        const ResultTable& table = result_.mfgGrid;
        const MissingDefinition missing = definitionOrNone(r_.dtMissing);
        const auto countOf = [&](size_t i) {
            return dao::leadingNumber(table.Cell(markColumn + 1, table.shape.rows.first + static_cast<int>(i)), true);
        };
        const auto valid = [&](size_t i) {
            const AxisMarks::Value& value = axis.values()[i];
            const dao::Value shown(value.value);
            return !value.null && !(shown.isNumeric() && missing.contains(shown.toDouble()));
        };
        double all = 0, sum = 0;
        for (size_t i = 0; i < axis.values().size(); ++i)
            all += valid(i) ? countOf(i) : 0;
        QStringList texts;
        for (size_t i = 0; i < axis.values().size(); ++i) {
            sum += valid(i) ? countOf(i) : 0;
            texts << (valid(i) && all != 0 ? NumberFormat::fixed(sum / all * 100.0, 1) : QString());
        }
        return texts;
    }
};

/// Characters that mean nothing to a shell.
QString shellQuoted(const QString& text) {
    static const QRegularExpression plain(u"^[A-Za-z0-9_./:,+@%-][A-Za-z0-9_./:,+@%=-]*$"_s);
    return plain.match(text).hasMatch() ? text : u'\'' + QString(text).replace(u"'"_s, u"'\\''"_s) + u'\'';
}

} // namespace

std::optional<QStringList> vdxArguments(const TableResult& result, int view, bool englishContents) {
    if (!result.facts || !result.facts->complete || result.facts->rounds.empty())
        return std::nullopt;
    CommandWriter writer(result, view);
    if (!writer.write())
        return std::nullopt;
    const Options& options = result.facts->origin.options;
    const ResultPlace& place = result.computation.place;
    QStringList arguments{writer.command_};
    const QStringList places =
        QStringList{QFileInfo(Paths::onDisk(place.catalogue)).absoluteFilePath()} + writer.places_;
    // A name that begins like an option stands behind all of them.
    const bool last = std::ranges::any_of(places, [](const QString& p) { return p.startsWith(u'-'); });
    if (!last)
        arguments << places;
    arguments << writer.options_;
    for (const OptionDescriptor* differing : differingOptions(result.facts->request.mode, options))
        arguments << option(u"set"_s, differing->key.toString() + u'=' + optionText(options, *differing, false));
    if (!options.DataPath.isEmpty() && QFileInfo(Paths::onDisk(options.DataPath)).isDir())
        arguments << option(u"data"_s, options.DataPath);
    arguments << option(u"language"_s, place.language == 0 ? u"de"_s : u"en"_s)
              << option(u"contents"_s, englishContents ? u"english"_s : u"original"_s)
              << option(u"decimal"_s, NumberFormat::decimalSeparator() == u',' ? u"comma"_s : u"point"_s);
    if (last)
        arguments << u"--"_s << places;
    return arguments;
}

QString typedValue(const QString& value, bool null) {
    if (null)
        return u"SYSMIS"_s;
    const bool other =
        value.isEmpty() || value.startsWith(u'"') || value.compare(u"SYSMIS"_s, Qt::CaseInsensitive) == 0;
    return other ? inDoubleQuotes(value) : value;
}

QString shellLine(const QStringList& arguments) {
    static const QRegularExpression nameOfOption(u"^--[a-z0-9]+="_s);
    QStringList words{u"vdx"_s};
    for (const QString& argument : arguments) {
        const qsizetype key = nameOfOption.match(argument).capturedLength();
        words << argument.left(key) + shellQuoted(argument.mid(key));
    }
    return words.join(u' ');
}
