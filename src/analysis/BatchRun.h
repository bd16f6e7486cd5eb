#pragma once

#include "analysis/BatchReport.h"
#include "analysis/request/RequestEditor.h"
#include "analysis/request/variableFields.h"
#include "analysis/result/TableResult.h"
#include "tables/TableBuilder.h"

#include <QElapsedTimer>
#include <functional>
#include <optional>

namespace ui {
class CollectingAsker;
}

/// What is asked of a batch.
struct BatchRequest {
    BatchKind kind = BatchKind::Tables;
    QString study = QString();
    bool preserveLayout = false;  ///< widths, heights and alignments of the kept table are laid on the new one
    bool chkFlipXtab = false;     ///< for instructions that don't say
    bool englishContents = false; ///< language of labels and titles
    TextWidth textWidth = estimatedTextWidth;
    std::optional<int> minutes = {}; ///< how long a table may take; nothing: as long as it likes
    /// Each statement as it is handed over; see RunHooks.
    std::function<void(const QString& name, const QString& statement)> onStatement = {};
    /// What is done now, and how far the batch is: for a status bar.
    std::function<void(const QString& text, int done, int total)> progress = {};
};

/// Runs the instructions of all variables of a study in creation mode and keeps with each its table, or its chart.
///
/// A variable without an instruction loses what it has of the kind; one whose run does not come to its end keeps it.
/// A graph needs a QGuiApplication. No box opens: what is said goes to the report. Results are written, each whole, as
/// soon as the last writing lies a second back. Nothing of a window's request is touched.
class BatchRun {
public:
    explicit BatchRun(BatchRequest request);
    ~BatchRun();
    BatchRun(const BatchRun&) = delete;
    BatchRun& operator=(const BatchRun&) = delete;

    /// What would fail for every variable, in words: to be said before the batch begins. Empty if nothing would.
    QString obstacle();
    BatchReport run();
    /// The first call ends the batch after the variable that is being worked on, the second one its run at once.
    void stop();
    bool stops() const { return stopping_; }

private:
    /// What is to be written of a variable, and what it is for the report.
    struct Pending {
        VariableFields fields;
        QString remarks; ///< what was said while it was made
        bool deletes = false;
    };

    BatchRequest request_;
    RequestEditor editor_;
    BatchReport report_;
    ui::CollectingAsker* said_ = nullptr; ///< while the batch runs
    std::vector<Pending> pending_;
    QElapsedTimer sinceWriting_;
    int failedWritings_ = 0;
    bool stopping_ = false, atOnce_ = false, givenUp_ = false;

    void workOn(const QString& variable);
    void prepare();
    QString make(const QString& variable, const QString& instruction, EntryFields& values);
    TableResult runTable();
    QString makeTable(TableResult& result, EntryFields& values);
    QString makeGraph(const TableResult& result, EntryFields& values);
    EntryFields emptied() const;
    bool hasKept() const;
    QString keptLayout(const QString& variable);
    void showProgress(const QString& variable, int done, int total);
    void fail(const QString& variable, const QString& reason);
    void writeWhenDue(qint64 next);
    bool write();
    std::optional<dao::Error> tryWriting(QStringList& gone);
    void writeLast();
    void giveUp(const QString& reason);
};
