#include "explorer/PanelPages.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/StudyRows.h"
#include "charts/StoredGraph.h"
#include "diagnostics/errors.h"
#include "explorer/showCardFile.h"
#include "platform/ui/Asker.h"
#include "tables/StoredTable.h"

#include <QDateTime>
#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A file as it is now: another one of the same name is read again.
QString stampOf(const QString& file) {
    const QFileInfo info(file);
    return u"%1|%2|%3"_s.arg(file).arg(info.size()).arg(info.lastModified().toMSecsSinceEpoch());
}

} // namespace

/// The names of the second panel's procedures end in a 2.
QString PanelPages::label(const QString& procedure) const {
    return u"[frmExplorer."_s + procedure + (place_ == VariablePanel::Place::B ? u"2]"_s : u"]"_s);
}

/// Every page reads all of the variable's row: what an older catalogue lacks counts as Null.
PanelPages::Row PanelPages::readRow(bool silent) const {
    Row found;
    CDaoPersistance persistance;
    const QString statement = u"Select * FROM tkey_Variable Where fi_StudyNo = "_s + quoted(study_) +
                              u" And id_VarName = "_s + quoted(variable_);
    // As of one moment: a title never stands over another picture that is written meanwhile.
    const dao::RecordsetPtr row = persistance.GetRecordset(gDatabase.CurrentDatabase(), statement, dao::dbOpenSnapshot,
                                                           [silent](const dao::Error&) { return silent; });
    if (!row || row->Eof())
        return found;
    const std::pair<QString, QString*> columns[] = {
        {english_ ? u"dt_FileNameEnShowCard"_s : u"dt_FileNameShowCard"_s, &found.card},
        {u"dt_Table"_s, &found.table},
        {u"dt_TableLayout"_s, &found.tableLayout},
        {u"dt_Graph"_s, &found.graph},
        {u"dt_GraphLayout"_s, &found.graphLayout}};
    for (const auto& [name, text] : columns)
        if (row->hasField(name))
            *text = row->text(name);
    row->Close();
    return found;
}

void PanelPages::fill(const QString& study, const QString& variable, bool english) {
    study_ = study;
    variable_ = variable;
    english_ = english;
    stale_ = !inSight_;
    // What can't be read leaves nothing of another variable.
    if (stale_ || !attempt([this] { show(readRow()); }))
        clear();
}

void PanelPages::empty() {
    study_.clear();
    variable_.clear();
    stale_ = false;
    clear();
}

void PanelPages::setInSight(bool inSight) {
    if (inSight == inSight_)
        return;
    inSight_ = inSight;
    stale_ = hasVariable();
    if (!inSight)
        clear();
}

void PanelPages::catchUp() {
    if (stale_ && inSight_)
        fill(study_, variable_, english_);
}

bool PanelPages::refresh() {
    if (!inSight_ || stale_ || !hasVariable())
        return false;
    Row now;
    try {
        now = readRow(true);
    } catch (const std::exception&) {
        return false;
    }
    const bool sameFile = page_ != ShowCard || now.card.isEmpty() ||
                          stampOf(showCardFile(gDatabase.Database(), now.card)) == pictureFile_;
    if (now == row_ && sameFile)
        return false;
    attempt([&] { show(now); });
    return true;
}

void PanelPages::clear() {
    enabled_ = {};
    row_ = {};
    tag_.clear();
    title_.clear();
    explanation_.clear();
    table_.reset();
    viewWords_.clear();
    fault_ = PictureFault::None;
    picture_ = {};
    pictureFile_.clear();
}

/// The picture is kept if the show card is the same: that of one variable is often that of the next.
void PanelPages::show(const Row& row) {
    ScaledPicture before = std::move(picture_);
    const QString fileBefore = pictureFile_;
    clear();
    row_ = row;
    enabled_ = {!row.card.isEmpty(), !row.table.isEmpty(), !row.graph.isEmpty()};
    if (!isEnabled(page_))
        return;
    if (page_ == ShowCard) {
        picture_ = std::move(before);
        pictureFile_ = fileBefore;
        showCard(row.card);
    } else if (page_ == Table) {
        showTable(row);
    } else {
        showGraph(row);
    }
}

void PanelPages::showCard(const QString& name) {
    tag_ = showCardPath(gDatabase.Database(), name);
    const ProcedureScope scope(label(u"FillSC"_s));
    if (tag_.isEmpty())
        takePicture({});
    else
        attempt([&] { FillSC(showCardFile(gDatabase.Database(), name)); });
}

void PanelPages::FillSC(const QString& file) {
    const QString stamp = stampOf(file);
    if (stamp == pictureFile_ && !picture_.isNull())
        return;
    picture_ = {}; // before the next one: two large ones need not fit into the memory
    takePicture(file.isEmpty() ? Picture{{}, PictureFault::Missing} : readPictureFile(file));
    pictureFile_ = stamp;
}

void PanelPages::takePicture(const Picture& picture) {
    pictureFile_.clear();
    fault_ = picture.fault;
    picture_ = ScaledPicture(picture.image);
    view.picture = picture_.size();
}

void PanelPages::showTable(const Row& row) {
    tag_ = u"Table"_s;
    std::optional<StoredTable> stored = readStoredTable(row.table, row.tableLayout);
    if (!stored) {
        fault_ = PictureFault::Damaged;
        // Who steps through a list with the keys isn't stopped at the same one each time.
        if (!told_.contains(row.table)) {
            told_.insert(row.table);
            ui::asker().messageBox({.text = TranslateText(storedFailure)});
        }
        return;
    }
    title_ = stored->title;
    fixHeads(*stored); // the marks stay in view with the codes here
    viewWords_ = storedViewWords(*stored);
    table_ = std::move(stored->table);
}

QString PanelPages::lblTableValues() const {
    return viewWords_.isEmpty() ? QString() : TranslateText(viewWords_);
}

void PanelPages::showGraph(const Row& row) {
    tag_ = u"Graph"_s;
    const StoredGraph beside = readGraphLayout(row.graphLayout);
    title_ = beside.title;
    explanation_ = beside.explanation;
    const std::optional<QByteArray> bytes = bytesOf(row.graph);
    takePicture(bytes ? readPicture(*bytes) : Picture{{}, PictureFault::Damaged});
}
