#include "platform/ui/Asker.h"

#include "platform/ui/TerminalAsker.h"

namespace {
ui::Asker* askerInForce = nullptr;
}

ui::Answer ui::safeAnswer(Buttons buttons) {
    switch (buttons) {
    case Buttons::Ok:
        return Answer::Ok;
    case Buttons::OkCancel:
    case Buttons::YesNoCancel:
    case Buttons::RetryCancel:
        return Answer::Cancel;
    case Buttons::YesNo:
        return Answer::No;
    case Buttons::AbortRetryIgnore:
        return Answer::Abort;
    }
    return Answer::Cancel;
}

ui::Asker& ui::asker() {
    return askerInForce ? *askerInForce : terminalAsker();
}

ui::Asker* ui::setAsker(Asker* asker) {
    Asker* const before = askerInForce;
    askerInForce = asker;
    return before;
}
