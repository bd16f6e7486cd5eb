#pragma once

#include "analysis/result/TableFacts.h"
#include "analysis/result/tableClick.h"
#include "catalogue/fileStamp.h"
#include "platform/dao/Database.h"
#include "tables/lineOrder.h"

#include <array>
#include <memory>
#include <optional>
#include <vector>

/// How a run ended.
enum class RunOutcome {
    NotRun,    ///< nothing was asked of the catalogue yet
    Computed,  ///< the tables are new
    Reused,    ///< the request is the one that the tables show
    Refused,   ///< a check or a failure ended it, and its message has been shown
    Cancelled, ///< by the user; what is shown is a part, or older
    Truncated  ///< more values than the table takes; its message has been shown, the table is incomplete
};

/// What a run handed to the engine, as it stood.
struct RunFacts {
    RunOutcome outcome = RunOutcome::NotRun;
    QStringList q;      ///< text of the stored query, one a round (a comparison has one round per entry)
    QStringList counts; ///< the count statement, likewise; behind it the one without its condition where that was asked
                        ///< too
};

/// A case table that a run has attached.
struct AttachedTable {
    QString table, study;
    QString home; ///< study whose case folder was searched
    QString file;
    FileStamp stamp; ///< of the file when it was attached

    /// True for the same table in the same file, whatever has been written to it.
    bool isSamePlace(const AttachedTable& other) const {
        return table == other.table && study == other.study && home == other.home && file == other.file;
    }
};

/// Where numbers and words of a table come from.
struct ResultPlace {
    QString catalogue, dataPath;
    qint16 language = 0;

    bool operator==(const ResultPlace&) const = default;
};
/// That of a table made now.
ResultPlace placeOf(const dao::DatabasePtr& catalogue, const Options& options);

/// What tables show beyond the text of their count statement: two requests may share that text and differ.
struct Computation {
    QString ResultCacheKey; ///< text of the request that the tables show; empty where nothing valid is shown
    QString q, study, variable, variable2, dtMissing, dtMissing2, statistics;
    int oldproc = 0; ///< run number of the weight kind
    bool IncludeMissingXTab = false;
    std::vector<AttachedTable> attached;
    ResultPlace place;
};

/// Where a table comes from that was stored, not made.
struct StoredOrigin {
    QString study, variable;
    QString choice; ///< the variable as "<id_Varname>: <label>"
    QString weight; ///< name of the weight variable; empty for none
    QString text;   ///< of the table, as the catalogue has it
};

/// What a run leaves: five tables, their title, what they stand on, how it ended.
struct TableResult {
    /// The table that is shown, and the views of a crosstab or comparison: column percent, row percent, total percent,
    /// absolute values.
    ResultTable mfgGrid, mfgGrid2, mfgGrid3, mfgGrid4, mfgGrid5;
    QString lblLabel;
    std::optional<TableFacts> facts;    ///< nothing without a table that was made
    std::optional<StoredOrigin> stored; ///< of a table that was stored: it has no facts, no shape and no marks
    /// Those of the table when it was ready; of one that was cut short those that it was to take.
    Marks marks;
    AnalysisRequest request; ///< as the run left it: a comparison leaves the filter of its last entry
    Computation computation;
    RunFacts run;
    bool views = false;   ///< cbValues is offered
    bool stopped = false; ///< the last run that got as far as the data was stopped
    /// Catalogue or case files were written while they were read: the numbers may be of both states.
    bool changedMeanwhile = false;
    /// The tables as they were made, while the user has them in another order.
    struct Made {
        std::array<ResultTable, 5> tables;
        std::vector<StatedCases> cases; ///< of the facts' origin
        std::vector<int> rows, columns; ///< for each place of the marked table the place of then
    };
    std::shared_ptr<const Made> made;
    /// How the catalogue's file lay for the fields of the request, with what the run itself has stored in it since.
    FileStamp catalogue;

    /// True if there is a table to be looked at.
    bool hasTable() const { return facts || stored; }
    /// The table shown and its views.
    std::array<ResultTable*, 5> tables() { return {&mfgGrid, &mfgGrid2, &mfgGrid3, &mfgGrid4, &mfgGrid5}; }
    /// The table that bears the marks: of a crosstab the absolute values, whatever view is shown.
    const ResultTable& marked() const { return mfgGrid.Tag == TableKind::Crosstab ? mfgGrid5 : mfgGrid; }
    /// What can be put into another order in the table in view; empty where nothing can, and in a table that is not
    /// whole.
    QStringList orderable(TableLines lines) const;
    /// Puts rows or columns of the table in view into another order, and those of its other views with them. What is
    /// cumulated is so in the new order; the table's notes say so.
    /// @param order for each place, from 0, the place that the line stands at now
    void order(TableLines lines, const std::vector<int>& order);
    /// With rows and columns as they were when the tables were made; marks are those of now.
    TableResult asMade() const;
    /// The table that bears the marks, likewise.
    ResultTable markedAsMade() const;
    /// For each row or column of data of the table that bears the marks the place that it was made at.
    std::vector<int> placesAsMade(TableLines lines) const;
    /// The marks that the table shows, by the places that its values were made in.
    Marks shownMarks() const;
    /// The marks that are to hold at a new calculation: what the user has clicked, else those that the run took.
    Marks marksInForce() const;
    /// True if the table that is shown takes clicks on marks: statistics have none, a crosstab only in absolute values.
    bool marksCanBeSet(int cbValues) const;
    /// What a selection means for the marks, and does it. @param cbValues the view that is shown
    ClickEffect click(const GridSelection& selection, int cbValues);
    /// Puts a view in place of the table that is shown. @param view as in cbValues; a comparison has 0 and 1
    void showView(int view);
    /// Empties the shown table: nothing valid is shown any more.
    void clear();
    /// Sentences on the numbers that belong below the table, in the language in force.
    QStringList notes() const;
};

/// How a result stands to what is asked for now.
TableState tableState(const TableResult& result, const AnalysisRequest& request, const Options& options,
                      const ResultPlace& place);
