#include "analysis/keptBoxes.h"

#include "app/globals.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

void tellFailure(const QString& reason) {
    ui::asker().messageBox({.text = TranslateText(u"Fehler"_s), .icon = ui::Icon::Exclamation, .details = reason});
}

bool agreed(const QString& question) {
    return ui::asker().messageBox({.text = TranslateText(question),
                                   .icon = ui::Icon::Question,
                                   .buttons = ui::Buttons::OkCancel,
                                   .defaultButton = ui::Answer::Cancel}) == ui::Answer::Ok;
}
