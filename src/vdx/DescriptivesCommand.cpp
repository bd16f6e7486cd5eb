#include "analysis/request/DescriptivesChoice.h"
#include "config/Options.h"
#include "vdx/Command.h"
#include "vdx/StudyRequest.h"

#include "app/globals.h"

using namespace Qt::StringLiterals;

namespace {

/// vdx descriptives: statistics of one variable or more, perhaps by groups of another.
class DescriptivesCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    StudyRequest request_;
    std::vector<std::string> variables_;
    std::string by_, statistics_, digits_;

    DescriptivesChoice choice() const;
};

CLI::App* DescriptivesCommand::declare(CLI::App& program) {
    CLI::App* command = program.add_subcommand("descriptives", "Descriptive statistics of variables of a study");
    request_.declarePlaces(*command);
    command->add_option("VARIABLE", variables_, "one variable or more")->required();
    request_.declareOptions(*command);
    request_.declareSecond(*command);
    command->add_option("--by", by_, "a row for each group of this variable")->type_name("VARIABLE");
    command
        ->add_option("--statistics", statistics_,
                     "all, none, or some of Count, Minimum, Maximum, ArithmeticMean, StandardDeviation, ValidN, Range, "
                     "Sum, Variance, "
                     "Skewness, Kurtosis, Mode, Median, Quartiles, parted by commas (default: the first six)")
        ->type_name("NAMES");
    command
        ->add_option("--digits", digits_,
                     "decimals of all statistics, or of each in the order above, parted by \";\" (default: 2)")
        ->type_name("N");
    return command;
}

/// The statistic of a name: its title, or its caption in the dialog, without regard to case and blanks.
std::optional<size_t> statisticOf(const QString& name) {
    const auto plain = [](const QString& text) { return text.simplified().remove(u' ').toCaseFolded(); };
    for (size_t i = 0; i < statisticCount; ++i)
        if (plain(titlesOf(static_cast<Statistic>(i)).first()) == plain(name) ||
            plain(DescriptivesChoice::captions()[i]) == plain(name))
            return i;
    return std::nullopt;
}

StatisticSelection selectionFrom(const QString& names) {
    StatisticSelection selection{};
    if (names.compare(u"none"_s, Qt::CaseInsensitive) == 0)
        return selection;
    if (names.compare(u"all"_s, Qt::CaseInsensitive) == 0) {
        selection.fill(true);
        return selection;
    }
    for (const QString& name : names.split(u',')) {
        const std::optional<size_t> statistic = statisticOf(name);
        if (!statistic)
            throw UsageError{said(u"--statistics %1: Eine Statistik dieses Namens gibt es nicht"_s,
                                  u"--statistics %1: there is no statistic of that name"_s)
                                 .arg(name)};
        selection[*statistic] = true;
    }
    return selection;
}

std::array<QString, statisticCount> digitsFrom(const QString& text) {
    constexpr int most = 15;
    std::array<QString, statisticCount> digits;
    digits.fill(u"0"_s);
    QStringList numbers = text.split(u';');
    if (numbers.last().isEmpty())
        numbers.removeLast();
    if (numbers.size() == 1)
        numbers = QStringList(static_cast<qsizetype>(statisticCount), numbers.first());
    bool good = !numbers.isEmpty() && numbers.size() <= static_cast<qsizetype>(statisticCount);
    for (qsizetype i = 0; good && i < numbers.size(); ++i) {
        const int number = numbers[i].toInt(&good);
        good = good && number >= 0 && number <= most;
        digits[static_cast<size_t>(i)] = QString::number(number);
    }
    if (!good)
        throw UsageError{said(u"--digits %1: eine Zahl von 0 bis 15, oder bis zu 14 solche mit \";\" dazwischen"_s,
                              u"--digits %1: a number from 0 to 15, or up to 14 of them parted by \";\""_s)
                             .arg(text)};
    return digits;
}

DescriptivesChoice DescriptivesCommand::choice() const {
    DescriptivesChoice choice = DescriptivesChoice::defaults(gOptions);
    if (!statistics_.empty())
        choice.chkDescriptives = selectionFrom(QString::fromStdString(statistics_));
    if (!digits_.empty())
        choice.cmbDigits = digitsFrom(QString::fromStdString(digits_));
    return choice;
}

int DescriptivesCommand::run(Session& session) {
    const DescriptivesChoice chosen = choice();
    RequestEditor editor;
    if (!request_.prepare(session, editor, AnalysisMode::Descriptives))
        return 1;
    if (!by_.empty() && !request_.chooseVariable(session, editor, by_, true))
        return 1;
    editor.change(RequestPart::Mode, [this](AnalysisRequest& r) { r.chkDescGroup = !by_.empty(); });
    return request_.run(session, editor, variables_, [&] {
        chosen.applyTo(editor);
        return true;
    });
}

} // namespace

std::unique_ptr<Command> makeDescriptivesCommand() {
    return std::make_unique<DescriptivesCommand>();
}
