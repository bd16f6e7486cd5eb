#include "language/mdLanguage.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "language/CCtrl.h"
#include "language/CSys.h"
#include "language/CText.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

void (*mdLanguage::showStartWindow)() = nullptr;

namespace {

CSys systemSettings() {
    CSys settings;
    settings.DatabaseName = SystemTable::path();
    return settings;
}

/// Shows what an object has to say if it failed. @return false after a failure
bool showFailure(const ObjectStatus& object, const QString& title) {
    if (object.Status() == 0)
        return true;
    ui::asker().messageBox({object.ErrorMessage(), title, ui::Icon::Critical, ui::Buttons::Ok});
    return false;
}

bool showFailureWithPointer(const ObjectStatus& object, const QString& title) {
    if (object.Status() != 0)
        ui::asker().setPointer(ui::Pointer::Default);
    return showFailure(object, title);
}

/// Runs the steps of a procedure under the trap that all of these have.
template<class Steps>
void guarded(const QString& procedure, Steps&& steps) {
    try {
        steps();
    } catch (const std::exception& failure) {
        ReportProcedureError(asError(failure), procedure);
    }
}

} // namespace

QString TranslateText(const QString& text) {
    QString translated = text;
    if (gLanguage != 0) {
        // Reported under another procedure's name, as it always was.
        guarded(u"StartProgram"_s, [&] { translated = gTextObject.TLE(text); });
    }
    return translated;
}

void mdLanguage::LoadTextTable() {
    guarded(u"LoadTextTable"_s, [] {
        gTextObject.DatabaseName = SystemTable::path();
        gTextObject.LoadTextTable();
        showFailure(gTextObject, u"CTextObject"_s);
    });
    ui::asker().setPointer(ui::Pointer::Default);
}

void mdLanguage::StartProgram() {
    qint16 showForm = 1;
    guarded(u"StartProgram"_s, [&] {
        gLanguage = 0;
        gErrHandler.Destination = Paths::join(Paths::applicationFolder(), u"Error.log"_s);
        gErrHandler.AppTitle = ApplicationInfo::title;
        CSys settings = systemSettings();
        showForm = settings.GetFormStatus();
        gLanguage = settings.GetLanguage();
        showFailure(settings, u"SysObject"_s);
    });
    if (showForm == 1 && showStartWindow)
        showStartWindow();
}

void mdLanguage::SaveSysSettings(qint16 language, qint16 showForm) {
    guarded(u"SaveSysSettings"_s, [&] {
        CSys settings = systemSettings();
        settings.SetFormStatus(showForm);
        settings.SetLanguage(language);
        // The title names the text object although this is another; so it stands.
        showFailureWithPointer(settings, u"CTextObject"_s);
    });
    gLanguage = language;
}

void mdLanguage::SetLanguage(qint16 language) {
    guarded(u"SetLanguage"_s, [&] {
        ui::asker().setPointer(ui::Pointer::Wait);
        CSys settings = systemSettings();
        settings.SetLanguage(language);
        if (showFailureWithPointer(settings, u"SysObject"_s))
            gLanguage = language;
        ui::asker().setPointer(ui::Pointer::Default);
    });
}

void mdLanguage::SetFormStatus(qint16 showForm) {
    guarded(u"SetFormStatus"_s, [&] {
        ui::asker().setPointer(ui::Pointer::Wait);
        CSys settings = systemSettings();
        settings.SetFormStatus(showForm);
        showFailureWithPointer(settings, u"SysObject"_s);
        ui::asker().setPointer(ui::Pointer::Default);
    });
}

qint16 mdLanguage::GetFormStatus() {
    qint16 showForm = 1;
    guarded(u"GetFormStatus"_s, [&] {
        CSys settings = systemSettings();
        showForm = settings.GetFormStatus();
        showFailureWithPointer(settings, u"SysObject"_s);
    });
    return showForm;
}

void mdLanguage::SetCtrlProps(ControlHost& window) {
    guarded(u"SetCtrlProps"_s, [&] {
        CCtrl texts;
        texts.DatabaseName = SystemTable::path();
        texts.setCurrentForm(&window);
        texts.SetControlProps();
        showFailure(texts, u"CCtrlObject"_s);
    });
    ui::asker().setPointer(ui::Pointer::Default);
}

void mdLanguage::RefreshForms(const std::vector<ControlHost*>& windows, bool (*isOpen)(const ControlHost*)) {
    ui::asker().setPointer(ui::Pointer::Wait);
    for (ControlHost* window : windows) {
        if (isOpen && !isOpen(window))
            continue;
        SetCtrlProps(*window);
        if (!isOpen || isOpen(window))
            window->refreshTitles();
    }
    ui::asker().setPointer(ui::Pointer::Default);
}
