#include "editing/EditRun.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "diagnostics/errors.h"
#include "editing/History.h"
#include "explorer/ExplorerModel.h"
#include "platform/dao/Transaction.h"
#include "platform/ui/Asker.h"

#include <QScopedValueRollback>
#include <set>

using namespace Qt::StringLiterals;

namespace {

/// What can't be taken back is done only if the user knows. @return false if it is not to be done
bool confirmed(const QStringList& unrecordable) {
    return unrecordable.isEmpty() ||
           ui::asker().messageBox(
               {.text = TranslateText(u"Das kann nicht rückgängig gemacht werden, und auch nichts von dem, was vorher "
                                      "geändert wurde: Die Tabelle \"%1\" hat keinen Schlüssel, der jede Zeile "
                                      "bezeichnet."_s)
                            .arg(unrecordable.first()),
                .icon = ui::Icon::Exclamation,
                .buttons = ui::Buttons::OkCancel,
                .defaultButton = ui::Answer::Cancel}) == ui::Answer::Ok;
}

/// A table that was written but not named could not be taken back with the rest.
void requireComplete(const dao::ChangeRecorder& recorder) {
    if (const QStringList missed = recorder.missed(); !missed.isEmpty())
        throw dao::Error(51, u"Internal error (the edit writes "_s + missed.join(u", "_s) + u')');
}

} // namespace

EditOutcome perform(const PlannedEdit& edit) {
    if (history().isWriting || !mayEdit())
        return EditOutcome::Stopped;
    const QScopedValueRollback writing(history().isWriting, true);
    const dao::DatabasePtr catalogue = gDatabase.CurrentDatabase();
    QStringList unrecordable;
    if (!attempt([&] { unrecordable = catalogue->unrecordable(edit.tables); }))
        return EditOutcome::Failed;
    if (!confirmed(unrecordable))
        return EditOutcome::Stopped;
    const BusyScope busy;
    CatalogueChanges changes;
    History::Step step;
    EditOutcome outcome = EditOutcome::Failed;
    attempt([&] {
        dao::Transaction transaction;
        const std::unique_ptr<dao::ChangeRecorder> recorder = catalogue->record(edit.tables);
        if (edit.stillSo && !edit.stillSo()) {
            outcome = EditOutcome::Changed;
        } else if (!edit.write(changes)) {
            outcome = EditOutcome::Stopped;
        } else {
            requireComplete(*recorder);
            if (unrecordable.isEmpty())
                step = history().keep(*recorder, edit.name);
            transaction.commit();
            outcome = EditOutcome::Done;
        }
    });
    if (outcome == EditOutcome::Done) {
        if (unrecordable.isEmpty())
            history().add(std::move(step));
        else
            history().clear();
        attempt([&] { announce(changes); }); // what cannot be shown is written all the same
    } else if (outcome == EditOutcome::Changed) {
        ui::asker().messageBox({.text = TranslateText(u"Der Eintrag wurde inzwischen von einem anderen Programm "
                                                      "geändert. Es wurde nichts geschrieben."_s),
                                .icon = ui::Icon::Exclamation});
        refreshExplorers();
    }
    return outcome;
}

QString whyNotEditable() {
    const dao::DatabasePtr catalogue = gDatabase.CurrentDatabase();
    if (!catalogue || !catalogue->isOpen())
        return TranslateText(u"Es ist keine Datenbank geöffnet."_s);
    return catalogue->readOnly() ? TranslateText(u"Die Datenbank ist schreibgeschützt."_s) : QString();
}

bool mayEdit() {
    const QString why = whyNotEditable();
    if (!why.isEmpty())
        ui::asker().messageBox({.text = why, .icon = ui::Icon::Exclamation});
    return why.isEmpty();
}

void refreshExplorers() {
    std::set<int> views;
    for (const ExplorerModel* model : ExplorerModel::open())
        views.insert(model->state.ltreetype);
    CatalogueChanges changes;
    for (const int view : views) {
        changes.push_back({.kind = CatalogueChange::Kind::Ordered, .view = view});
        changes.push_back({.kind = CatalogueChange::Kind::Rows, .view = view});
    }
    announce(changes);
}
