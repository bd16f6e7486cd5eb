#include "VdxRunner.h"

#include "analysis/AnalysisModel.h"
#include "analysis/request/DescriptivesChoice.h"
#include "analysis/result/vdxCommand.h"
#include "app/globals.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "language/mdLanguage.h"
#include "platform/system/NumberFormat.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "tables/tableText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Tables of the window's model, and what vdx makes of the line that the window would copy, split by the shell itself.
class CopiedCommand : public testing::Test {
protected:
    VdxHome home_;
    TestCatalogue made_{home_.path(u"Daten \"für\" O'Neil $HOME"_s), u"Katalog & `x`.mdb"_s};
    ScriptedAsker asker_;
    std::unique_ptr<AnalysisModel> model_;

    CopiedCommand() {
        made_.fill();
        made_.together([this] {
            made_.addStudy(u"QX3"_s, u"Erhebung 3"_s,
                           {{"dt_Year", u"2003"_s},
                            {"dt_WeightHH", u"W"_s},
                            {"dt_query", u"SELECT QX3_1.dt_CaseID AS ID, QX3_1.V2 AS SE FROM QX3_1;"_s}});
            const auto variable = [this](const QString& name, const QString& missing) {
                made_.addVariable(u"QX3"_s, name, u"QX3_1"_s,
                                  {{"dt_VarLabel", u"Text zu "_s + name}, {"dt_Missing", missing}});
            };
            for (const auto& [name, missing] : {std::pair(u"V1"_s, u"-9;-8;98"_s),
                                                {u"V2"_s, u"9"_s},
                                                {u"V4"_s, u"90 thru 99"_s},
                                                {u"weight"_s, QString()},
                                                {u"T"_s, QString()},
                                                {u"W"_s, QString()}})
                variable(name, missing);
            for (const auto& [code, label] : {std::pair(u"1"_s, u"ja, \"sehr\""_s),
                                              {u"2"_s, u"nein; $x"_s},
                                              {u"98"_s, u"weiß nicht"_s},
                                              {u"-9"_s, u"keine Angabe"_s}})
                made_.addValue(u"QX3"_s, u"V1"_s, code, label);
            for (const auto& [code, label] : {std::pair(u"1"_s, u"Männer"_s), {u"2"_s, u"Frauen"_s}, {u"9"_s, u"?"_s}})
                made_.addValue(u"QX3"_s, u"V2"_s, code, label);
            made_.add(u"tkey_Parts"_s, {{"id_Part", 2},
                                        {"fi_StudyNo", u"QX3"_s},
                                        {"dt_PartName", u"Teil B"_s},
                                        {"dt_SelectionVariable", u"V2"_s},
                                        {"dt_SelectionCriteria", u"2"_s},
                                        {"dt_SeparateAnalysisOnly", true}});
        });
        std::vector<std::vector<dao::Value>> cases;
        const dao::Value none, v1[] = {1, 2, 98, -9, 3, 1, none}, v2[] = {1, 2, 9, 1, none}, v4[] = {0.5, 12, 95, 7.25};
        const QString texts[] = {u"a"_s, u"SYSMIS"_s, QString(u""_s), u"ä 'b'"_s};
        for (size_t i = 0; i < 60; ++i)
            cases.push_back({v1[i % 7], v2[i % 5], v4[i % 4], static_cast<int>(i % 3),
                             i % 11 == 0 ? none : dao::Value(texts[i % 4]), 0.25 * static_cast<double>(1 + i % 6)});
        const auto field = [](const QString& name, int type = dao::dbDouble) {
            return dao::TableDef::CreateField(name, type);
        };
        made_.addCases(u"QX3"_s, u"QX3_1"_s,
                       {field(u"V1"_s), field(u"V2"_s), field(u"V4"_s), field(u"weight"_s), field(u"T"_s, dao::dbText),
                        field(u"W"_s)},
                       cases);
        made_.open();
        mdLanguage::LoadTextTable();
    }

    struct Copied {
        QString what, line;
        std::vector<QStringList> cells;
    };
    std::vector<Copied> copied_;

    RequestEditor& edit() { return model_->edit(); }
    void begin(AnalysisMode mode, const QString& variable = u"V1"_s, const QString& second = {}) {
        model_ = std::make_unique<AnalysisModel>();
        model_->open();
        edit().StudyClick(u"QX3"_s);
        edit().chooseMode(mode);
        edit().chooseVariable(variable);
        if (!second.isEmpty())
            edit().chooseVariable2(second);
        edit().change(RequestPart::Mode, [&](AnalysisRequest& r) { r.chkDescGroup = !second.isEmpty(); });
    }
    void option(bool Options::*option) { gOptions.*option = !(gOptions.*option); }
    void run() { ASSERT_EQ(model_->changeTab(1), RunOutcome::Computed) << asker_.lastText().toStdString(); }
    int find(const QString& value, bool inColumns) const {
        const ResultTable& table = model_->result().mfgGrid;
        const Span span = inColumns ? table.shape.columns : table.shape.rows;
        for (int i = span.first; i <= span.last; ++i)
            if ((inColumns ? table.Cell(i, 0) : table.Cell(0, i)) == value)
                return i;
        ADD_FAILURE() << "no value " << value.toStdString();
        return -1;
    }
    /// Marks as by clicks, and computes anew.
    void mark(const QStringList& rows, const QStringList& columns = {}) {
        for (const QString& value : rows)
            model_->mfgGrid_Click({find(value, false), find(value, false), markColumn, markColumn});
        for (const QString& value : columns)
            model_->mfgGrid_Click({markRow, markRow, find(value, true), find(value, true)});
        model_->computeAnew();
    }
    void entry(const QString& study, const QString& variable, const QString& filter = {}, const QString& weight = {}) {
        edit().StudyClick(study);
        edit().chooseVariable(variable);
        edit().chooseFilter(FilterKind::noFilter);
        if (!filter.isEmpty())
            edit().chooseFilterText(filter);
        if (!weight.isEmpty())
            edit().chooseWeight(WeightKind::WeightUser, weight);
        ASSERT_TRUE(model_->comparison().cmd_AddTrend());
    }
    /// What the button puts into the clipboard; the options are those of a fresh program again.
    void copy(const QString& what) {
        const TableResult& result = model_->result();
        const std::optional<QString> line = model_->command();
        ASSERT_TRUE(line && result.facts && result.facts->complete) << what.toStdString();
        copied_.push_back({what, *line, tableRows(result.mfgGrid)});
        EXPECT_GT(result.mfgGrid.Rows(), 1) << what.toStdString();
        const QString folder = gOptions.DataPath;
        gOptions = Options();
        gOptions.DataPath = folder;
        gOptions.AskMissing = false;
        gLanguage = 0;
        NumberFormat::setDecimalSeparator(u',');
    }
    static QStringList splitByTheShell(const QString& line) {
        QProcess shell;
        shell.start(u"/bin/sh"_s, {u"-c"_s, u"vdx() { printf '%s\\000' \"$@\"; }; "_s + line});
        EXPECT_TRUE(shell.waitForFinished());
        QStringList words = QString::fromUtf8(shell.readAllStandardOutput()).split(QChar(u'\0'));
        words.removeLast();
        return words;
    }
    void frequencies();
    void crosstabs();
    void statistics();
    void comparisons();
};

void CopiedCommand::frequencies() {
    const auto begins = [this](const QString& variable = u"V1"_s) { begin(AnalysisMode::Frequency, variable); };
    begins();
    run();
    copy(u"negative codes"_s);
    mark({u"1"_s});
    copy(u"marked"_s);
    mark({u"2"_s});
    copy(u"marked in two steps, of which each leaves its cumulated percent"_s);
    begins();
    run();
    mark({u"98"_s, QString(), u"-9"_s});
    copy(u"valid by hand, system-missing too"_s);
    mark({u"98"_s});
    copy(u"marked again"_s);
    begins();
    edit().chooseWeight(WeightKind::WeightHH);
    edit().chooseFilterText(u"V2=1 AND (weight>0 OR V4=7,25)"_s);
    option(&Options::CumulatedPercent);
    option(&Options::SeparateValidCases);
    option(&Options::IncludeMissing);
    run();
    copy(u"weight, filter and options"_s);
    begins(u"T"_s);
    edit().chooseWeight(WeightKind::WeightUser, u"weight"_s);
    edit().chooseFilterText(u"NOT T='a' OR [weight] IN (1, 2)"_s);
    run();
    mark({u"SYSMIS"_s, u"ä 'b'"_s});
    copy(u"texts"_s);
    begins(u"V4"_s);
    edit().choosePart(u"2"_s);
    option(&Options::CommaInPercent);
    run();
    mark({u"7,25"_s});
    copy(u"part, decimals, the other separator"_s);
    NumberFormat::setDecimalSeparator(u'.');
    gLanguage = 1;
    gOptions.EnglishLanguage = true;
    begins();
    edit().StudyClick(u"QX1919"_s);
    edit().chooseVariable(u"V5"_s);
    run();
    copy(u"in English"_s);
}

void CopiedCommand::crosstabs() {
    const auto begins = [this] { begin(AnalysisMode::Crosstab, u"V1"_s, u"V2"_s); };
    begins();
    run();
    copy(u"absolute"_s);
    for (const int view : {1, 2, 3}) {
        begins();
        run();
        model_->chooseValues(view);
        copy(u"percentages"_s);
    }
    begins();
    run();
    mark({u"1"_s}, {u"2"_s});
    model_->chooseValues(1);
    copy(u"marked on both axes"_s);
    begins();
    option(&Options::IncludeMissingXTab);
    run();
    mark({u"98"_s}, {u"9"_s});
    copy(u"missing values shown, some valid by hand"_s);
    begins();
    gOptions.IncludeMissingXTab = true;
    run();
    mark({u"98"_s, u"2"_s});
    gOptions.IncludeMissingXTab = false;
    model_->computeAnew();
    copy(u"valid by hand and no longer shown by the option"_s);
    begins();
    edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.chkFlipXtab = r.bCreationMode = true; });
    run();
    mark({u"1"_s}, {u"2"_s});
    copy(u"exchanged"_s);
    begins();
    edit().chooseWeight(WeightKind::WeightUser, u"W"_s);
    edit().chooseFilterText(u"weight=1"_s);
    for (bool Options::*one : {&Options::IncludeNinXTab, &Options::IncludeNinXTabPercent, &Options::NoRowLabels,
                               &Options::ShowPercentSign, &Options::ShowValidSums})
        option(one);
    run();
    model_->chooseValues(2);
    copy(u"weight, filter and options"_s);
    begin(AnalysisMode::Crosstab, u"T"_s, u"V4"_s);
    option(&Options::IncludeMissingInPercentXTab);
    run();
    mark({u"SYSMIS"_s}, {u"12"_s});
    model_->chooseValues(3);
    copy(u"texts by decimals"_s);
}

void CopiedCommand::statistics() {
    begin(AnalysisMode::Descriptives);
    run();
    copy(u"as it comes"_s);
    begin(AnalysisMode::Descriptives, u"V4"_s, u"V2"_s);
    DescriptivesChoice all = DescriptivesChoice::defaults(gOptions);
    all.chkDescriptives.fill(true);
    all.cmbDigits[3] = u"5"_s;
    all.applyTo(edit());
    run();
    copy(u"all of them by groups"_s);
    begin(AnalysisMode::Descriptives);
    option(&Options::IncludeMissingDesc);
    edit().chooseWeight(WeightKind::WeightHH);
    run();
    copy(u"all values, weighted"_s);
    begin(AnalysisMode::Descriptives);
    gOptions.AskMissing = true;
    RunHooks hooks;
    hooks.askMissing = [](const QString&) { return MissingAnswer{u"1 thru 2, 98"_s, true}; };
    model_->setHooks(hooks);
    run();
    copy(u"missing values of the dialog"_s);
    begin(AnalysisMode::Descriptives, u"V4"_s);
    gOptions.AskMissing = true;
    hooks.askMissing = [](const QString&) { return MissingAnswer{QString(), false}; };
    model_->setHooks(hooks);
    DescriptivesChoice few = DescriptivesChoice::defaults(gOptions);
    few.chkDescriptives = {};
    few.chkDescriptives[static_cast<size_t>(Statistic::Percentiles)] = true;
    few.cmbDigits.fill(u"3"_s);
    few.applyTo(edit());
    run();
    copy(u"none missing, quartiles"_s);
}

void CopiedCommand::comparisons() {
    begin(AnalysisMode::Comparison);
    entry(u"QX1919"_s, u"V5"_s);
    entry(u"QX2020"_s, u"V5"_s);
    run();
    copy(u"two studies"_s);
    begin(AnalysisMode::Comparison);
    model_->comparison().setTitle(u"Wie \"zufrieden\"? $5 für O'Neil"_s);
    entry(u"QX3"_s, u"V1"_s, u"weight=1 AND V2=1"_s, u"weight"_s);
    entry(u"QX3"_s, u"V1"_s);
    for (bool Options::*one : {&Options::HeaderYear, &Options::HeaderValAddVar, &Options::HeaderAddFilter})
        option(one);
    run();
    mark({u"1"_s, u"98"_s});
    model_->chooseValues(1);
    copy(u"a filter that reads like an entry's words, marks, percentages"_s);
    begin(AnalysisMode::Comparison);
    entry(u"QX3"_s, u"V1"_s, u"T='SYSMIS' AND weight IN (1,2)"_s);
    edit().choosePart(u"2"_s);
    ASSERT_TRUE(model_->comparison().cmd_AddTrend());
    edit().change(RequestPart::Entries, [](AnalysisRequest& r) {
        r.lst_TrendVars[0].column[ComparisonEntry::Missing] = u"2;3"_s; // as a comparison kept long ago
    });
    run();
    copy(u"a part, and a definition of long ago"_s);
}

} // namespace

TEST_F(CopiedCommand, ofThirtyRequestsOfAllModesGivesTheSameCells) {
    gOptions.AskMissing = false;
    frequencies();
    crosstabs();
    statistics();
    comparisons();
    begin(AnalysisMode::Frequency);
    asker_.answer(ui::Answer::Yes);
    edit().chooseFilterText(u"V2=1 AND V4<90 x"_s);
    run();
    copy(u"a filter of which an end counts for nothing"_s);
    begin(AnalysisMode::Crosstab, u"V4"_s, u"weight"_s);
    run();
    model_->chooseValues(1);
    copy(u"a range"_s);
    begin(AnalysisMode::Descriptives, u"T"_s, u"V1"_s);
    run();
    copy(u"statistics of texts"_s);
    EXPECT_GE(copied_.size(), 30u);
    model_.reset();
    mdDataBase::CloseDataBase();

    for (const Copied& one : copied_) {
        SCOPED_TRACE(one.what.toStdString() + "\n" + one.line.toStdString());
        const VdxResult result = runVdx(splitByTheShell(one.line + u" --format json"_s));
        EXPECT_EQ(result.status, 0) << result.err.toStdString();
        std::vector<QStringList> cells;
        const QJsonObject object = QJsonDocument::fromJson(result.out.toUtf8()).object();
        for (const QJsonValue& row : object[u"cells"_s].toArray())
            cells.push_back(row.toVariant().toStringList());
        EXPECT_EQ(cells, one.cells);
        EXPECT_FALSE(object[u"facts"_s][u"options"_s].isUndefined());
    }
}

TEST_F(CopiedCommand, aLineIsTakenByTheShellAsItStands) {
    const QStringList words{u"frequency"_s,
                            u"/tmp/a b/ü'\"$x`y`.mdb"_s,
                            u"--filter=V1='x y' AND V2<>\"$A\""_s,
                            u"--title=*? !\\"_s,
                            u"--missing=-9;-8"_s,
                            u"--mark="_s,
                            u"a\nb"_s,
                            u"~"_s,
                            u"--set=A=1"_s};
    EXPECT_EQ(splitByTheShell(shellLine(words)), words);
}

TEST_F(CopiedCommand, isNoneForAnEntryThatTheCatalogueNoLongerHas) {
    for (const auto column : {ComparisonEntry::Year, ComparisonEntry::Field, ComparisonEntry::WeightInfo}) {
        begin(AnalysisMode::Comparison);
        entry(u"QX3"_s, u"V1"_s);
        edit().change(RequestPart::Entries, [&](AnalysisRequest& r) {
            r.lst_TrendVars[0].column[ComparisonEntry::Weight] = u"weight"_s;
            r.lst_TrendVars[0].column[column] = column == ComparisonEntry::Year    ? u"1888"_s
                                                : column == ComparisonEntry::Field ? u"V2"_s
                                                                                   : u"HH"_s;
        });
        run();
        EXPECT_EQ(model_->command(), std::nullopt) << int(column);
    }
}

TEST_F(CopiedCommand, aMarkOnAValueThatIsNotThereIsRefused) {
    mdDataBase::CloseDataBase();
    const QStringList places{made_.path(), u"QX3"_s, u"V1"_s};
    const auto run = [&](const QStringList& options) {
        return runVdx(QStringList{u"frequency"_s} + places + options +
                      QStringList{u"--data"_s, made_.dataFolder(), u"--language"_s, u"de"_s});
    };
    EXPECT_EQ(run({u"--mark=3"_s, u"--unmark=SYSMIS"_s}).status, 0);
    const VdxResult wrong = run({u"--mark=33"_s});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_EQ(wrong.out, QString());
    EXPECT_TRUE(wrong.err.contains(u"--mark 33: Die Tabelle hat keinen solchen Wert."_s)) << wrong.err.toStdString();
    EXPECT_EQ(run({u"--cumulated=3=viel"_s}).status, 2);
    EXPECT_EQ(run({u"--mark=3"_s, u"--unmark=3"_s}).status, 2);
}
