#include "analysis/BatchRun.h"

#include "analysis/AnalysisModel.h"
#include "analysis/request/Instruction.h"
#include "analysis/result/storedForm.h"
#include "analysis/result/titles.h"
#include "analysis/run/caseData.h"
#include "analysis/runRequest.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "charts/BuildChart.h"
#include "charts/chartFile.h"
#include "config/Options.h"
#include "diagnostics/GestureScope.h"
#include "diagnostics/engineWords.h"
#include "diagnostics/errors.h"
#include "platform/system/Paths.h"
#include "platform/ui/CollectingAsker.h"

#include <QDeadlineTimer>
#include <QScopedValueRollback>
#include <QThread>
#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

namespace {

/// How long a result may wait for others to be written with it, in milliseconds.
constexpr int writingInterval = 1000;
/// A file that is locked for a moment is tried again with the next result, and no more.
constexpr int mostFailedWritings = 2;
/// How long a writing waits for another process that has the file locked, in milliseconds.
constexpr int lockPatience = 5000;
constexpr int lockPause = 20;

const QString stoppedWords = u"Der Lauf wurde angehalten."_s;
const QString notComputed = u"Die Tabelle konnte nicht berechnet werden."_s;

/// True for a failure that comes of another process and passes by itself.
bool isOfLock(const dao::Error& error) {
    constexpr int cannotLock = 3050, lockedByOther = 3260;
    return error.number() == cannotLock || error.number() == lockedByOther;
}

QString lines(const QStringList& texts) {
    return texts.join(u'\n');
}

} // namespace

BatchRun::BatchRun(BatchRequest request) : request_(std::move(request)) {
    report_.kind = request_.kind;
    report_.study = request_.study;
    const QScopedValueRollback<bool> contents(gOptions.EnglishLanguage, request_.englishContents);
    editor_.open();
    editor_.StudyClick(request_.study);
}

BatchRun::~BatchRun() = default;

QString BatchRun::obstacle() {
    const dao::DatabasePtr catalogue = gDatabase.CurrentDatabase();
    if (!catalogue || editor_.request().dbcStudy.isEmpty())
        return request_.study + u' ' + TranslateText(u"nicht gefunden"_s);
    if (!editor_.canKeep())
        return TranslateText(u"Dieser Katalog hat keine Felder für Anweisungen, Tabellen und Grafiken."_s);
    bool writable = false;
    attempt([&] { writable = variableRow(request_.study, {}, {u"dt_Table"_s})->Updatable(); });
    if (catalogue->readOnly() || !writable)
        return TranslateText(u"Der Katalog ist schreibgeschützt; nichts könnte gespeichert werden."_s);
    if (request_.kind == BatchKind::Graphs && !jpegSupported())
        return TranslateText(u"Die Grafik kann nicht gespeichert werden."_s);
    if (!caseFolderOf(*catalogue, request_.study, gOptions.DataPath).isEmpty())
        return {};
    // Without an instruction no case is read.
    std::vector<KeptInstruction> all;
    attempt([&] { all = readInstructions(request_.study); });
    return std::ranges::all_of(all, [](const KeptInstruction& one) { return one.text.isEmpty(); })
               ? QString()
               : u"'"_s + Paths::join(gOptions.DataPath, request_.study + u".mdb"_s) + u"' "_s +
                     TranslateText(u"nicht gefunden."_s);
}

void BatchRun::stop() {
    atOnce_ = stopping_;
    stopping_ = true;
}

BatchReport BatchRun::run() {
    const AnalysisModel::RunApart running;
    const GestureScope gesture;
    ui::CollectingAsker said;
    said_ = &said;
    std::vector<KeptInstruction> all;
    if (!attempt([&] { all = readInstructions(request_.study); }))
        giveUp(lines(said.take()));
    int place = 0;
    for (const KeptInstruction& one : all) {
        if (stopping_ || givenUp_) {
            report_.notReached << one.variable;
            continue;
        }
        showProgress(one.variable, place++, static_cast<int>(all.size()));
        QElapsedTimer worked;
        worked.start();
        workOn(one.variable);
        writeWhenDue(worked.elapsed());
    }
    writeLast();
    said_ = nullptr;
    if (request_.progress)
        request_.progress({}, 0, 0);
    return std::move(report_);
}

void BatchRun::showProgress(const QString& variable, int done, int total) {
    if (request_.progress)
        request_.progress(
            TranslateText(request_.kind == BatchKind::Tables ? u"Tabelle erzeugen für:"_s : u"Grafik erzeugen für:"_s) +
                u' ' + variable,
            done, total);
    said_->eventTurn();
}

/// Nothing that another variable has left in the request counts for the next one.
void BatchRun::prepare() {
    editor_.chooseMode(AnalysisMode::Frequency);
    editor_.change(RequestPart::Mode, [this](AnalysisRequest& request) {
        request.bCreationMode = true;
        request.chkFlipXtab = request_.chkFlipXtab;
        request.dtDesc.clear();
        request.dtDescDigits.clear();
        request.bUserMissing = false;
    });
}

void BatchRun::workOn(const QString& variable) {
    GestureScope::startAnew(); // what failed for one variable is said of the next one too
    said_->take();
    prepare();
    if (!editor_.chooseVariable(variable)) {
        fail(variable, TranslateText(u"Variable nicht gefunden"_s));
        return;
    }
    // What somebody else has stored since the batch began is not deleted for want of an instruction that is there now.
    QString instruction;
    if (!attempt([&] { instruction = textsOf(request_.study, variable, {u"dt_Instruction"_s})[0]; })) {
        fail(variable, lines(said_->take()));
        return;
    }
    EntryFields values;
    if (instruction.isEmpty()) {
        if (hasKept())
            pending_.push_back({{variable, emptied()}, {}, true});
        return;
    }
    QString reason = TranslateText(notComputed);
    trapped([&] { reason = make(variable, instruction, values); });
    QStringList words = said_->take();
    if (!reason.isEmpty()) {
        // Why there was no run has been said; what else stands in the way has not.
        if (words.isEmpty() || reason != TranslateText(notComputed))
            words << reason;
        fail(variable, lines(words));
        return;
    }
    const bool deletes = values.empty();
    if (deletes && !hasKept())
        report_.withoutChart << variable;
    else
        pending_.push_back({{variable, deletes ? emptied() : std::move(values)}, lines(words), deletes});
}

/// Makes what is to be kept with a variable. @return why it can't be made, in words
QString BatchRun::make(const QString& variable, const QString& instruction, EntryFields& values) {
    if (QString lack = loadInstruction(editor_, Instruction::read(instruction)); !lack.isEmpty())
        return lack;
    // Nobody sees that a filter has got lost with the end of its text, and that all cases would be counted.
    if (editor_.request().optFilter == FilterKind::FilterUser && editor_.request().txtFilter.trimmed().isEmpty())
        return TranslateText(u"Der Filter ist leer."_s);
    TableResult result = runTable();
    switch (result.run.outcome) {
    case RunOutcome::Computed:
        break;
    case RunOutcome::Cancelled:
        return stopping_ ? TranslateText(stoppedWords)
                         : TranslateText(u"Die Berechnung dauert zu lange und wurde abgebrochen."_s);
    default:
        return TranslateText(notComputed);
    }
    if (!result.facts || !result.facts->complete || result.facts->request.dbcVariable.value != variable)
        return TranslateText(u"Die Tabelle ist unvollständig."_s);
    for (const QString& note : result.notes())
        ui::asker().messageBox({.text = note});
    if (result.mfgGrid.Tag == TableKind::Crosstab)
        result.showView(editor_.request().cbValuesInstruct);
    return request_.kind == BatchKind::Tables ? makeTable(result, values) : makeGraph(result, values);
}

TableResult BatchRun::runTable() {
    RunHooks hooks;
    const QDeadlineTimer end = request_.minutes ? QDeadlineTimer(std::chrono::minutes{*request_.minutes})
                                                : QDeadlineTimer(QDeadlineTimer::Forever);
    hooks.cancelled = [this, end] { return atOnce_ || end.hasExpired(); };
    hooks.textWidth = request_.textWidth;
    hooks.onStatement = request_.onStatement;
    hooks.acceptsLost = [](const QString& lost) {
        ui::asker().messageBox({.text = TranslateText(u"Das Ende des Filters zählt nicht:"_s) + u' ' + lost});
        return false;
    };
    hooks.onStatisticFailure = [](const QString& place, const dao::Error& error) {
        ui::asker().messageBox({.text = said(u"%1 ist nicht zu berechnen (%2), die Zelle bleibt leer."_s,
                                             u"%1 cannot be computed (%2), its cell stays empty."_s)
                                            .arg(place, error.description())});
    };
    return runRequest(editor_, gOptions, hooks, {});
}

QString BatchRun::makeTable(TableResult& result, EntryFields& values) {
    if (request_.preserveLayout)
        if (const QString layout = keptLayout(editor_.request().dbcVariable.value); !layout.isEmpty())
            layLayoutOn(result.mfgGrid, layout);
    const QString text = BuildTableString(storedTableOf(result, editor_.request().cbValuesInstruct));
    if (text == storedFailure)
        return TranslateText(u"Die Tabelle kann nicht gespeichert werden."_s);
    values = {{u"dt_Table"_s, text}, {u"dt_TableLayout"_s, BuildTableLayoutString(result.mfgGrid)}};
    return {};
}

/// What is shown of a table that has no chart is none either: nothing is left of an older one.
QString BatchRun::makeGraph(const TableResult& result, EntryFields& values) {
    // Whoever turns to the chart reads the title of the view, in which percentages have no N.
    AnalysisRequest shown = editor_.request();
    shown.cbValues = shown.cbValuesInstruct;
    const ChartModel chart = BuildChartForTab({.table = result.mfgGrid,
                                               .caption = resultTitle(shown, result.mfgGrid, gOptions),
                                               .view = shown.cbValues,
                                               .origin = result.facts->origin,
                                               .options = gOptions},
                                              {});
    if (chart.isEmpty())
        return {};
    const StoredGraph graph = storedGraphOf(chart);
    if (graph.jpeg.isEmpty())
        return TranslateText(u"Die Grafik kann nicht gespeichert werden."_s);
    values = {{u"dt_Graph"_s, memoOf(graph.jpeg)}, {u"dt_GraphLayout"_s, BuildGraphString(graph)}};
    return {};
}

/// The layout of the table that the variable has; empty without a table.
QString BatchRun::keptLayout(const QString& variable) {
    const dao::RecordsetPtr row = variableRow(request_.study, variable, {u"dt_Table"_s, u"dt_TableLayout"_s});
    return row->Eof() || row->text(u"dt_Table"_s).isEmpty() ? QString() : row->text(u"dt_TableLayout"_s);
}

bool BatchRun::hasKept() const {
    return request_.kind == BatchKind::Tables ? editor_.kept().table : editor_.kept().graph;
}

EntryFields BatchRun::emptied() const {
    if (request_.kind == BatchKind::Tables)
        return {{u"dt_Table"_s, {}}, {u"dt_TableLayout"_s, {}}};
    return {{u"dt_Graph"_s, {}}, {u"dt_GraphLayout"_s, {}}};
}

void BatchRun::fail(const QString& variable, const QString& reason) {
    report_.failed.push_back({variable, reason});
}

/// @param next how long the next variable may take, during which nothing can be written
void BatchRun::writeWhenDue(qint64 next) {
    if (!sinceWriting_.isValid() || sinceWriting_.elapsed() + next >= writingInterval)
        write();
}

/// Writes what is pending, and waits for a while for another process that keeps it from doing so.
/// @param gone the variables that the study has no more @return the failure in the end
std::optional<dao::Error> BatchRun::tryWriting(QStringList& gone) {
    std::vector<VariableFields> rows;
    for (const Pending& one : pending_)
        rows.push_back(one.fields);
    const QDeadlineTimer patience(lockPatience);
    for (;;) {
        std::optional<dao::Error> fault;
        editor_.besideFields([&] {
            try {
                gone = writeVariableFields(request_.study, rows);
            } catch (const std::exception& failure) {
                fault = asError(failure);
            }
        });
        if (!fault || !isOfLock(*fault) || patience.hasExpired() || atOnce_)
            return fault;
        said_->eventTurn();
        QThread::msleep(lockPause);
    }
}

/// Writes what is pending. @return false after a failure; it is all pending still
bool BatchRun::write() {
    if (pending_.empty())
        return true;
    const ProcedureScope scope(u"[frmAuswertung.BatchRun]"_s);
    QStringList gone;
    const std::optional<dao::Error> fault = tryWriting(gone);
    sinceWriting_.start();
    if (fault) {
        reportError(*fault);
        if (++failedWritings_ >= mostFailedWritings)
            giveUp(engineWords(*fault));
        return false;
    }
    failedWritings_ = 0;
    for (const Pending& one : pending_) {
        const QString& variable = one.fields.variable;
        if (gone.contains(variable)) {
            fail(variable, TranslateText(u"Variable nicht gefunden"_s));
            continue;
        }
        (one.deletes ? report_.deleted : report_.done) << variable;
        if (!one.remarks.isEmpty())
            report_.remarks.push_back({variable, one.remarks});
    }
    pending_.clear();
    return true;
}

/// What could not be written is not kept: the catalogue has what it had.
void BatchRun::giveUp(const QString& reason) {
    givenUp_ = true;
    report_.ended = reason;
    for (const Pending& one : pending_)
        fail(one.fields.variable, reason);
    pending_.clear();
}

void BatchRun::writeLast() {
    while (!pending_.empty() && !write())
        continue;
}
