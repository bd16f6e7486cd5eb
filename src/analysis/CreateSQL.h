#pragma once

#include "analysis/AnalysisModel.h"
#include "analysis/statements.h"
#include "analysis/userFilter.h"

/// One run of a request: stores the query `q`, attaches the case tables, translates the filter, runs the
/// count statement, calls the table builder and composes the title.
///
/// Every step answers whether the run goes on; the step that ends it has shown its words and set the outcome.
class CreateSQL {
public:
    explicit CreateSQL(AnalysisModel& model);
    ~CreateSQL();
    CreateSQL(const CreateSQL&) = delete;
    CreateSQL& operator=(const CreateSQL&) = delete;

    RunOutcome run();

private:
    /// The working strings of one round.
    struct Round {
        QString study;
        QString weightVariable;
        QString qSql, nullSql;
        QString folder; ///< where the case files lie
        CountFacts facts;
        bool missingRange = false; ///< the statement has a condition that leaves out a range
        CountStatement statement;
    };

    AnalysisModel& m_;
    AnalysisRequest& r_;
    dao::DatabasePtr db_;
    dao::RecordsetPtr studies_, variables_; ///< of the catalogue, once a round has asked for one
    Round round_;
    std::vector<AttachedTable> attached_;   ///< in all rounds
    std::ptrdiff_t roundAttached_ = 0;      ///< where those of this round begin
    std::vector<TableFacts::Round> rounds_; ///< that the table shows
    bool marksKept_ = false;                ///< a comparison keeps the rows and marks of the one before
    int number_ = 0;                        ///< of the round, from 1
    RunOutcome outcome_ = RunOutcome::Computed;
    bool computed_ = false;

    bool isComparison() const { return r_.mode == AnalysisMode::Comparison; }
    const ComparisonEntry& entry() const { return r_.lst_TrendVars[number_ - 1]; }

    const Options& titleOptions() const;
    bool step(const std::function<void()>& statement);
    bool turn();
    bool end(RunOutcome outcome);
    bool clearAndEnd();
    bool endWith(const QString& text);

    void prepareComparison();
    bool runRound();
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
    bool warnOfUnweighted();
    bool translateUserFilter();
    void buildStatement();
    bool askForMissing();
    AnalysisModel::Computation computation() const;
    bool isComparisonShown() const;
    bool isCurrent() const;
    bool isSameVariable() const;
    bool needsComputation() const;
    bool openCounts();
    bool count(const QString& sql);
    bool countTextsBesideRange();
    bool storeStatistics();
    bool openLabels();
    bool build();
    void noteRound(bool complete);
    void writeComparisonHeader();
};
