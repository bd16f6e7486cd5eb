#include "analysis/run/runTrap.h"

#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

#include <QThread>
#include <chrono>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

enum ErrorNumber {
    BadFileName = 52,
    DiscError = 3043,
    CannotLock = 3050,
    CannotOpen = 3051,
    Cancelled = 3059,
    UnknownName = 3078
};
constexpr qint64 retryMilliseconds = 15000;

const QString insertDisc = u"Bitte legen Sie die CD-ROM mit den Auswertungsdateien ein und klicken Sie 'OK'."_s;

// clang-format off
const QString writeProtected = u"Die Auswertungsdateien sind in einem schreibgeschützten Pfad, z.B. einer CD-ROM. Ermöglichen Sie Schreibzugriff oder wählen Sie die Option 'Daten-Dateien auf CD-ROM' aus."_s;
// clang-format on

bool ask(const QString& text, const QString& title, ui::Buttons buttons) {
    const ui::Answer answer =
        ui::asker().messageBox({TranslateText(text), TranslateText(title), ui::Icon::Exclamation, buttons});
    return buttons == ui::Buttons::OkCancel && answer == ui::Answer::Ok;
}

/// Shows the message for a failure. @return true to run the statement again
bool asksForRetry(const dao::Error& error, bool dataOnCD) {
    switch (error.number()) {
    case DiscError:
        return ask(insertDisc, u"Datenträger- oder Laufwerksfehler"_s, ui::Buttons::OkCancel);
    case BadFileName:
        if (dataOnCD)
            return ask(insertDisc, u"Datei nicht gefunden"_s, ui::Buttons::OkCancel);
        return ask(u"Auf das Laufwerk mit den Auswertungsdateien konnte nicht zugegriffen werden."_s,
                   u"Datei nicht gefunden"_s, ui::Buttons::Ok);
    case CannotLock:
    case CannotOpen:
        if (!dataOnCD)
            return ask(writeProtected, u"Datei konnte nicht gesperrt werden"_s, ui::Buttons::Ok);
        break;
    default:
        break;
    }
    reportError(error);
    return false;
}

} // namespace

RunClock RunClock::system() {
    return {[]() -> qint64 {
                using std::chrono::steady_clock;
                return std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch())
                    .count();
            },
            [] {
                ui::asker().eventTurn();
                QThread::msleep(20);
            }};
}

bool isRunTrapCase(const dao::Error& error, bool dataOnCD) {
    switch (error.number()) {
    case BadFileName:
    case DiscError:
    case UnknownName:
    case Cancelled:
        return true;
    case CannotLock:
    case CannotOpen:
        return !dataOnCD;
    default:
        return false;
    }
}

StepEnd runEngineStep(const std::function<void()>& step, const RunClock& clock, const std::function<bool()>& cancelled,
                      bool dataOnCD) {
    std::optional<qint64> firstMiss;
    for (;;) {
        try {
            step();
            return StepEnd::Done;
        } catch (const std::exception& failure) {
            const dao::Error error = asError(failure);
            if (error.number() == Cancelled && cancelled())
                return StepEnd::Cancelled;
            if (error.number() == UnknownName) {
                if (!firstMiss)
                    firstMiss = clock.milliseconds();
                if (clock.milliseconds() - *firstMiss < retryMilliseconds) {
                    clock.pause();
                    if (cancelled())
                        return StepEnd::Cancelled;
                    continue;
                }
            }
            if (!asksForRetry(error, dataOnCD))
                return StepEnd::Ended;
        }
    }
}
