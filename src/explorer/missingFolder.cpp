#include "explorer/missingFolder.h"

#include "app/globals.h"
#include "config/Options.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

bool isMissingFolder(const dao::Error& error) {
    return error.number() == 3044;
}

bool reportMissingFolder(const dao::Error& error) {
    if (!isMissingFolder(error))
        return false;
    ui::asker().messageBox({.text = TranslateText(u"Pfad zur Datenbank"_s) + u' ' + gOptions.DatabasePath + u'\\' +
                                    gOptions.DatabaseName + u' ' + TranslateText(u"nicht gefunden!"_s) + u"\r\n"_s +
                                    TranslateText(u"Geben Sie in den Optionen den korrekten Pfad an."_s),
                            .icon = ui::Icon::Exclamation});
    return true;
}
