#include "diagnostics/errors.h"

#include "diagnostics/GestureScope.h"
#include "platform/dao/DBEngine.h"
#include "platform/ui/Asker.h"

#include <new>
#include <system_error>

using namespace Qt::StringLiterals;

QString lastDbErrorText() {
    const dao::Errors& errors = dao::DBEngine::instance().errors();
    QString text;
    for (int i = 0; i < errors.Count(); ++i)
        text += errors.Item(i).description + u"\r\n"_s + errors.Item(i).source;
    return text;
}

void reportError(const dao::Error& error) {
    if (dao::DBEngine::instance().errors().Count() > 0)
        gErrHandler.HandleDBError(lastDbErrorText(), GestureScope::tells(error, gErrHandler.current()));
    else
        reportProgramError(error);
}

void reportProgramError(const dao::Error& error) {
    gErrHandler.HandleError(error.number(), error.description(), GestureScope::tells(error, gErrHandler.current()));
}

dao::Error asError(const std::exception& failure) {
    if (const auto* known = dynamic_cast<const dao::Error*>(&failure))
        return *known;
    dao::errorList().clear();
    if (dynamic_cast<const std::bad_alloc*>(&failure))
        return {7, u"Out of memory"_s};
    const QString cause = u" ("_s + QString::fromLocal8Bit(failure.what()) + u')';
    if (dynamic_cast<const std::system_error*>(&failure))
        return {75, u"Path/File access error"_s + cause};
    return {51, u"Internal error"_s + cause};
}

bool standardErrorBox(const dao::Error& error, Trap& outcome) {
    if (GestureScope::hasTold(error)) {
        outcome = GestureScope::goesOnWithout(error) ? Trap::Ignored : Trap::Aborted;
        if (outcome == Trap::Aborted)
            ui::asker().setPointer(ui::Pointer::Default);
        return false;
    }
    GestureScope::tells(error, QString());
    const ui::Answer answer =
        ui::asker().messageBox({QString::number(error.number()) + u"\r\n"_s + error.description(),
                                TranslateText(u"Fehler"_s), ui::Icon::None, ui::Buttons::AbortRetryIgnore});
    if (answer == ui::Answer::Retry) {
        GestureScope::startAnew();
        return true;
    }
    outcome = answer == ui::Answer::Ignore ? Trap::Ignored : Trap::Aborted;
    if (outcome == Trap::Aborted)
        ui::asker().setPointer(ui::Pointer::Default);
    else
        GestureScope::goOnWithout(error);
    return false;
}

QString procedureErrorText(const dao::Error& error, const QString& procedure) {
    return said(u"Fehler bei: "_s, u"Error at: "_s) + procedure + u"\r\n"_s +
           said(u"Fehlernummer: "_s, u"ErrorNumber: "_s) + QString::number(error.number()) + u"\r\n"_s +
           said(u"Fehlerbezeichnung:"_s, u"ErrorDescription:"_s) + u"\r\n"_s + error.description();
}

void ReportProcedureError(const dao::Error& error, const QString& procedure) {
    ui::asker().messageBox({procedureErrorText(error, procedure), said(u"VB-Laufzeitfehler"_s, u"VB-RuntimeError"_s),
                            ui::Icon::Critical, ui::Buttons::Ok});
}
