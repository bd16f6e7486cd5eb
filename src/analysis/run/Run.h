#pragma once

#include "analysis/run/CreateSQL.h"
#include "analysis/run/statements.h"
#include "analysis/run/userFilter.h"

/// One run of a request: stores the query `q`, attaches the case tables, translates the filter, runs the count
/// statement, calls the table builder and composes the title.
///
/// Every step answers whether the run goes on; the step that ends it has shown its message and set the outcome.
class Run {
public:
    Run(const RunInput& input, TableResult before);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    TableResult run();

private:
    /// The working strings of one round.
    struct Round {
        QString study;
        QString weightVariable;
        QString qSql, nullSql;
        QString folder; ///< where the case files lie
        CountFacts facts;
        QString lostFilter;        ///< the end of the filter that counts for nothing
        bool missingRange = false; ///< the statement has a condition that leaves out a range
        CountStatement statement;
    };

    const RunInput& in_;
    Options options_;
    AnalysisRequest r_; ///< as it is now: the rounds of a comparison change its filter
    TableResult out_;
    dao::DatabasePtr db_;
    dao::RecordsetPtr studies_, variables_; ///< of the catalogue, once a round has asked for one
    dao::RecordsetPtr counts_, labels_;
    ResultPlace place_;
    Round round_;
    std::vector<AttachedTable> attached_;   ///< in all rounds
    std::ptrdiff_t roundAttached_ = 0;      ///< where those of this round begin
    std::vector<TableFacts::Round> rounds_; ///< that the table shows
    QString subject_;                       ///< what the table is of
    Marks taken_;                           ///< that the table takes, if they are set by hand
    std::vector<TableNote> notes_;          ///< on the numbers
    int number_ = 0;                        ///< of the round, from 1
    RunOutcome outcome_ = RunOutcome::Computed;
    bool computed_ = false;

    bool isComparison() const { return r_.mode == AnalysisMode::Comparison; }
    const ComparisonEntry& entry() const { return r_.lst_TrendVars[number_ - 1]; }
    int entryColumn() const { return number_ + 2; }
    bool cancelled() const { return in_.hooks.cancelled && in_.hooks.cancelled(); }

    const Options& titleOptions() const;
    bool step(const std::function<void()>& statement);
    bool turn();
    bool end(RunOutcome outcome);
    bool clearAndEnd();
    bool endWith(const QString& text);
    void finish();
    void saveDefinitions();

    // ---- rounds
    void prepareComparison();
    void prepareMarks();
    bool runRound();
    void buildStatement();
    bool askForMissing();
    bool isComparisonShown() const;
    bool isCurrent() const;
    bool needsComputation() const;
    bool openCounts();
    bool count(const QString& sql);
    bool countTextsBesideRange();
    bool storeStatistics();
    bool openLabels();

    // ---- cases: which ones, with what weight, from which files
    bool readRound();
    bool readComparisonRound();
    bool loadPartCriteria();
    bool tellWhatHasGone(bool studyFound);
    bool findCases();
    bool addWeightToQuery();
    std::optional<VariablePlace> findPlace(const QString& variable);
    bool storeQuery();
    bool attachTables();
    bool findFolder();
    bool attach(const QString& table, const QString& study);
    void noteRepeatedCases();
    bool warnOfUnweighted();
    bool translateUserFilter();
    std::optional<dao::Error> failureOf(const QString& condition, const ExtraJoins& joins) const;
    static bool isOfUnknownName(const dao::Error& error);
    bool isOfFilter(const dao::Error& error) const;
    void noteHopelessComparisons(bool noneCounted);
    bool refuseFilter(const dao::Error& error, const QString& statement);

    // ---- tables
    bool build();
    BuildOutcome buildTable();
    BuildOutcome buildFrequency();
    BuildOutcome buildCrosstab();
    BuildOutcome buildDescriptives();
    BuildOutcome buildComparison();
    bool turnAndAsk() const;
    std::function<bool()> turnNowAndThen() const;
    const Marks* marksToTake() const;
    void noteTable(bool complete);
    void writeComparisonHeader();
};
