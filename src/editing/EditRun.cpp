#include "editing/EditRun.h"

#include "catalogue/CDaoDatabase.h"
#include "diagnostics/errors.h"
#include "platform/dao/Transaction.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

EditOutcome perform(const PlannedEdit& edit) {
    CatalogueChanges changes;
    EditOutcome outcome = EditOutcome::Failed;
    attempt([&] {
        dao::Transaction transaction;
        if (edit.stillSo && !edit.stillSo()) {
            outcome = EditOutcome::Changed;
        } else if (!edit.write(changes)) {
            outcome = EditOutcome::Stopped;
        } else {
            transaction.commit();
            outcome = EditOutcome::Done;
        }
    });
    if (outcome == EditOutcome::Done)
        announce(changes);
    else if (outcome == EditOutcome::Changed)
        ui::asker().messageBox({.text = TranslateText(u"Der Eintrag wurde inzwischen von einem anderen Programm "
                                                      "geändert. Es wurde nichts geschrieben."_s),
                                .icon = ui::Icon::Exclamation});
    return outcome;
}
