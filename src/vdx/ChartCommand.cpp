#include "analysis/result/provenance.h"
#include "app/globals.h"
#include "charts/BuildChart.h"
#include "charts/chartFile.h"
#include "config/Options.h"
#include "vdx/Command.h"
#include "vdx/TypedComparison.h"
#include "vdx/shownViews.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// vdx chart: the chart of a frequency, a crosstab or a comparison as a file.
class ChartCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    CLI::App* command_ = nullptr;
    StudyRequest request_;
    TypedComparison comparison_;
    std::string variable_, variable2_, show_, out_, size_, title_;
    bool flip_ = false, bw_ = false;
    int dpi_ = standardPictureDpi;
    AnalysisMode mode_ = AnalysisMode::Frequency;
    QSizeF millimetres_ = defaultChartSize;

    void readRequest();
    void refuse(const std::vector<std::string>& options, const QString& words) const;
    int view() const;
    void readPicture();
    std::optional<TableResult> table(Session& session) const;
    std::optional<TableResult> comparison(Session& session) const;
    ChartModel chartOf(TableResult& result) const;
};

CLI::App* ChartCommand::declare(CLI::App& program) {
    command_ = program.add_subcommand(
        "chart", "The chart of a frequency table, a crosstab or a comparison, as SVG, PNG, JPEG or PDF");
    request_.declarePlaces(*command_, false);
    command_->add_option("VARIABLE", variable_, "the variable; of a crosstab that in the rows");
    command_->add_option("VARIABLE2", variable2_, "of a crosstab: the variable in the columns");
    comparison_.declare(*command_);
    command_->add_option("--out", out_, "the file, of the kind that its ending names: .svg, .png, .jpg or .pdf")
        ->required()
        ->type_name("FILE");
    command_->add_option("--size", size_, "width and height in millimetres (default: 180x110)")->type_name("WxH");
    command_->add_option("--dpi", dpi_, "pixels per inch of a PNG or JPEG (default: 300)")->type_name("N");
    command_->add_flag("--bw", bw_, "black and white: patterns and markers in place of colours");
    command_->add_option("--title", title_, "title of the chart in place of the table's; \"\" for none");
    command_
        ->add_option("--show", show_,
                     "absolute or percent of a frequency; absolute, column, row or total of a crosstab; absolute or "
                     "column of a comparison (default: absolute)")
        ->check(CLI::IsMember({"absolute", "percent", "column", "row", "total"}))
        ->type_name("VALUES");
    request_.declareOptions(*command_);
    request_.declareSecond(*command_);
    request_.declareAllMarks(*command_);
    command_->add_flag("--flip", flip_, "exchange rows and columns of a crosstab, in creation mode");
    return command_;
}

/// What is of another kind of request would be left out without a word.
void ChartCommand::refuse(const std::vector<std::string>& options, const QString& words) const {
    for (const std::string& option : options)
        if (command_->get_option(option)->count() > 0)
            throw UsageError{QString::fromStdString(option) + words};
}

/// @throws UsageError for what makes no request
void ChartCommand::readRequest() {
    const bool study = !request_.study().empty(), entries = comparison_.hasEntries(), name = comparison_.hasName();
    if (study + entries + name != 1 || (study && variable_.empty()))
        throw UsageError{said(u"gebraucht wird eines davon: STUDY und VARIABLE, --entry, --load"_s,
                              u"one of these is needed: STUDY and VARIABLE, --entry, --load"_s)};
    const std::vector<std::string> ofCrosstab{"--missing2", "--mark2", "--unmark2", "--flip"};
    if (!study) {
        mode_ = AnalysisMode::Comparison;
        const QString none = said(u" gibt es bei einem Vergleich nicht"_s, u" is nothing that a comparison has"_s);
        refuse({"--weight", "--filter", "--part", "--missing", "--cumulated"}, none);
        refuse(ofCrosstab, none);
        comparison_.read();
    } else if (variable2_.empty()) {
        mode_ = AnalysisMode::Frequency;
        refuse(ofCrosstab, said(u" braucht eine zweite Variable"_s, u" needs a second variable"_s));
    } else {
        mode_ = AnalysisMode::Crosstab;
        refuse({"--cumulated"}, said(u" gibt es nur bei einer Variablen"_s, u" is for one variable only"_s));
    }
    const size_t views = mode_ == AnalysisMode::Crosstab ? 4 : mode_ == AnalysisMode::Comparison ? 2 : 1;
    const bool percent = mode_ == AnalysisMode::Frequency && show_ == "percent";
    if (!show_.empty() && !percent &&
        std::find(viewNames.begin(), viewNames.begin() + views, show_) == viewNames.begin() + views)
        throw UsageError{
            said(u"--show %1 gibt es bei diesem Diagramm nicht"_s, u"--show %1 is nothing that this chart has"_s)
                .arg(QString::fromStdString(show_))};
}

/// As in cbValues.
int ChartCommand::view() const {
    const auto named = std::ranges::find(viewNames, show_);
    return named == viewNames.end() ? 0 : static_cast<int>(named - viewNames.begin());
}

/// @throws UsageError for a file that is no picture, or a size that no picture has
void ChartCommand::readPicture() {
    const QString ending = QFileInfo(QString::fromStdString(out_)).suffix().toLower();
    if (!QStringList{u"svg"_s, u"png"_s, u"jpg"_s, u"jpeg"_s, u"pdf"_s}.contains(ending))
        throw UsageError{said(u"--out %1: der Name muss auf .svg, .png, .jpg oder .pdf enden"_s,
                              u"--out %1: the name has to end in .svg, .png, .jpg or .pdf"_s)
                             .arg(QString::fromStdString(out_))};
    if (!size_.empty()) {
        static const QRegularExpression form(u"^(\\d+(?:[.,]\\d+)?)[xX\u00d7](\\d+(?:[.,]\\d+)?)$"_s);
        const QRegularExpressionMatch match = form.match(QString::fromStdString(size_));
        if (!match.hasMatch())
            throw UsageError{said(u"--size %1: erwartet wird BREITExHÖHE in Millimetern, etwa 180x110"_s,
                                  u"--size %1: expected is WIDTHxHEIGHT in millimetres, such as 180x110"_s)
                                 .arg(QString::fromStdString(size_))};
        const auto number = [&](int group) { return match.captured(group).replace(u',', u'.').toDouble(); };
        millimetres_ = {number(1), number(2)};
    }
    // What is drawn in lines has no pixels that could be too many.
    const bool lines = ending == u"svg" || ending == u"pdf";
    constexpr int ofAnySize = 72;
    if (const QString fault = chartSizeFault(millimetres_, lines ? ofAnySize : dpi_); !fault.isEmpty())
        throw UsageError{fault};
}

std::optional<TableResult> ChartCommand::comparison(Session& session) const {
    const RunOptions& runs = request_.runs();
    chooseDataFolder(runs.data);
    if (!session.open(QString::fromStdString(request_.catalogue())))
        return std::nullopt;
    RequestEditor editor;
    ComparisonList list(editor);
    editor.open();
    editor.chooseMode(mode_);
    if (!comparison_.choose(session, editor, list))
        return std::nullopt;
    return runMarked(session, editor, statementHooks(session, runs.sql), runs.minutes, request_.marks());
}

std::optional<TableResult> ChartCommand::table(Session& session) const {
    if (mode_ == AnalysisMode::Comparison)
        return comparison(session);
    RequestEditor editor;
    const auto choose = [&] {
        return mode_ == AnalysisMode::Crosstab ? request_.chooseCrosstab(session, editor, variable_, variable2_, flip_)
                                               : request_.chooseVariable(session, editor, variable_);
    };
    if (!request_.prepare(session, editor, mode_) || !choose())
        return std::nullopt;
    return request_.runOnce(session, editor);
}

ChartModel ChartCommand::chartOf(TableResult& result) const {
    QString caption = result.lblLabel;
    if (mode_ == AnalysisMode::Crosstab)
        caption = showCrosstabView(result, view());
    else if (mode_ == AnalysisMode::Comparison)
        result.showView(view());
    else if (!show_.empty())
        gOptions.TakeAbsolutValues = show_ == "absolute";
    if (bw_)
        gOptions.GraphColor = false;
    ChartModel chart = BuildChart({.table = result.mfgGrid,
                                   .caption = caption,
                                   .view = view(),
                                   .origin = result.facts->origin,
                                   .options = gOptions},
                                  StartPrompt());
    if (command_->get_option("--title")->count() > 0)
        chart.caption = QString::fromStdString(title_);
    return chart;
}

bool hasValues(const ChartModel& chart) {
    return std::ranges::any_of(chart.values, [](const std::vector<ChartPoint>& series) {
        return std::ranges::any_of(series, [](const ChartPoint& point) { return point.value.has_value(); });
    });
}

int ChartCommand::run(Session& session) {
    readRequest();
    readPicture();
    std::optional<TableResult> result = table(session);
    if (!result || session.failed() || result->run.outcome != RunOutcome::Computed)
        return 1;
    const ChartModel chart = chartOf(*result);
    if (session.failed())
        return 1;
    if (!hasValues(chart)) {
        session.say(said(u"Die Tabelle hat keinen Wert, den ein Diagramm zeigt: %1"_s,
                         u"The table has no value that a chart shows: %1"_s)
                        .arg(result->lblLabel));
        return 1;
    }
    if (const QString fault = saveChart(chart, QString::fromStdString(out_), millimetres_, dpi_); !fault.isEmpty()) {
        session.say(QString::fromStdString(out_) + u": "_s + fault);
        return 1;
    }
    QStringList lines = provenanceLines(*result);
    if (!chart.caption.isEmpty())
        lines.prepend(chart.caption);
    session.printer().printLines(lines);
    return 0;
}

} // namespace

std::unique_ptr<Command> makeChartCommand() {
    return std::make_unique<ChartCommand>();
}
