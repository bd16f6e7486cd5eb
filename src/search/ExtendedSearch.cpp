#include "search/ExtendedSearch.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/StudyRows.h"
#include "diagnostics/errors.h"
#include "explorer/EntryColumns.h"
#include "explorer/iconNames.h"
#include "explorer/missingFolder.h"
#include "search/cleanedText.h"

#include <QElapsedTimer>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int sliceMilliseconds = 10;
constexpr int cancelled = 3059;

/// While it lives, statements give their turns to a function; true ends them.
class StatementTurns {
public:
    explicit StatementTurns(std::function<bool()> turn) { dao::DBEngine::instance().setProgress(std::move(turn)); }
    ~StatementTurns() { dao::DBEngine::instance().setProgress({}); }
    StatementTurns(const StatementTurns&) = delete;
    StatementTurns& operator=(const StatementTurns&) = delete;
};

/// True where the words of the statement are at fault, and not a file, a lock or the room there is.
bool isRefusal(const dao::Error& error) {
    constexpr int numbers[] = {93, 3061, 3070, 3075, 3077, 3079, 3085, 3464};
    return std::ranges::find(numbers, error.number()) != std::end(numbers);
}

} // namespace

ExtendedSearch::~ExtendedSearch() {
    abandon();
}

void ExtendedSearch::begin(const SearchRequest& request) {
    abandon();
    request_ = request;
    passes_ = searchPasses(request);
    pass_ = 0;
    catalogue_ = gDatabase.CurrentDatabase();
    hits_.clear();
    ways_.emplace(request.english);
    studies_.clear();
    status_.clear();
    hint_.clear();
    bContinueSearch_ = true;
    state_ = State::Running;
}

void ExtendedSearch::abandon() {
    if (isRunning())
        end(State::Stopped);
}

bool ExtendedSearch::goOn() {
    if (!isRunning())
        return false;
    const ProcedureScope scope(u"[frmFind.cmd_Find_Click]"_s);
    try {
        work();
    } catch (const std::exception& failure) {
        fail(asError(failure));
    }
    return isRunning();
}

void ExtendedSearch::work() {
    // Another catalogue knows nothing of this search.
    const dao::DatabasePtr catalogue = catalogue_.lock();
    if (!bContinueSearch_ || !catalogue || catalogue != gDatabase.CurrentDatabase() || !catalogue->isOpen()) {
        end(State::Stopped);
        return;
    }
    if (pass_ == passes_.size()) {
        end(State::Done);
        return;
    }
    if (!rows_)
        open();
    QElapsedTimer slice;
    slice.start();
    while (rows_ && !rows_->Eof() && slice.elapsed() < sliceMilliseconds) {
        takeRow();
        rows_->MoveNext();
        if (!bContinueSearch_) {
            end(State::Stopped);
            return;
        }
    }
    if (rows_ && rows_->Eof())
        endPass();
}

void ExtendedSearch::open() {
    const StatementTurns turns([this] {
        if (onStatement)
            onStatement();
        return !bContinueSearch_;
    });
    const QStringList& columns = passes_[pass_].columns;
    rows_ = run(passes_[pass_].statement, columns);
    texts_.clear();
    for (const QString& column : columns.mid(2))
        texts_.push_back(rows_->indexOf(column));
}

/// Failures are thrown, whatever they are: there is one place that reports them.
dao::RecordsetPtr ExtendedSearch::run(const QString& statement, const QStringList& columns) {
    return CDaoPersistance().GetRecordset(
        catalogue_.lock(), statement, dao::dbOpenDynaset,
        [&](const dao::Error& error) {
            if (error.number() != cancelled && !isMissingFolder(error))
                CDaoPersistance::logStatement(statement);
            return true;
        },
        columns);
}

void ExtendedSearch::takeRow() {
    const SearchPass& pass = passes_[pass_];
    if (pass.kind == SearchPass::Kind::Variables) {
        takeVariable();
        return;
    }
    const QString key = rows_->value(0).toText();
    const bool description = pass.kind == SearchPass::Kind::Descriptions;
    hits_.add(description ? HitList::Kind::Description : HitList::Kind::Name, pass.view, key,
              cleanedText(rows_->value(1).toText()), hits_.addWay(ways_->way(pass.view, key, description)));
}

void ExtendedSearch::takeVariable() {
    const QString number = rows_->value(0).toText(), name = rows_->value(1).toText();
    QString text = cleanedText(number) + u", "_s + cleanedText(name);
    for (const int column : texts_)
        text += u", "_s + cleanedText(rows_->value(column).toText());
    const Study study = studyOf(number);
    hits_.add(HitList::Kind::Variable, study.view, variableId(name, number), text, study.way);
}

/// The first study view that holds a study, asked for once.
ExtendedSearch::Study ExtendedSearch::studyOf(const QString& number) {
    if (const auto known = studies_.constFind(number); known != studies_.constEnd())
        return *known;
    Study study{0, -1};
    for (int view = 1; view <= gCatalogueOptions.NumberOfFrmExplorers && study.view == 0; ++view)
        if (isStudyView(view)) {
            const dao::RecordsetPtr found = run(u"SELECT * FROM tkey_"_s + gViews.at(view, ViewTable::Table) +
                                                    u" WHERE id_StudyNo="_s + quoted(number) + u';',
                                                {u"id_StudyNo"_s});
            if (found->RecordCount() > 0)
                study = {view, hits_.addWay(ways_->way(view, number, true))};
        }
    studies_.insert(number, study);
    return study;
}

void ExtendedSearch::endPass() {
    const SearchPass& pass = passes_[pass_];
    if (!status_.isEmpty())
        status_ += u", "_s;
    status_ += QString::number(rows_->RecordCount()) + u" in "_s +
               (pass.view > 0 ? viewName(pass.view) : TranslateText(u"Variablen"_s)) + u' ';
    rows_->Close();
    rows_.reset();
    if (++pass_ == passes_.size())
        end(State::Done);
}

void ExtendedSearch::end(State state) {
    state_ = state;
    if (state == State::Stopped)
        status_ += TranslateText(u"(abgebrochen)"_s);
    if (rows_)
        rows_->Close();
    rows_.reset();
    passes_.clear();
    studies_.clear();
    ways_.reset();
}

void ExtendedSearch::fail(const dao::Error& error) {
    if (error.number() == cancelled && !bContinueSearch_) {
        end(State::Stopped);
        return;
    }
    end(State::Failed);
    if (isRefusal(error))
        hint_ = refusalHint(request_);
    status_ += TranslateText(u"(nicht zu Ende geführt)"_s) + (hint_.isEmpty() ? QString() : u' ' + hint_);
    if (!reportMissingFolder(error))
        reportError(error);
}
