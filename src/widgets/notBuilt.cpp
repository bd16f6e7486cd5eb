#include "widgets/notBuilt.h"

#include "app/globals.h"
#include "widgets/Form.h"
#include "widgets/toolTips.h"

#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

/// By window, the controls without a function yet.
const QHash<QString, QSet<QString>> controlsNotBuilt = {
};

} // namespace

bool isNotBuilt(const QString& window, const QString& control) {
    const qsizetype bracket = control.indexOf(u'(');
    return controlsNotBuilt.value(window).contains(bracket < 0 ? control : control.left(bracket));
}

void applyNotBuilt(Form& form) {
    if (!controlsNotBuilt.contains(form.windowName()))
        return;
    const QString reason = TranslateText(u"In dieser Version noch nicht enthalten."_s);
    for (QObject* object : form.namedObjects()) {
        if (!isNotBuilt(form.windowName(), object->objectName()))
            continue;
        // A control that shows only a picture still says what it is for.
        const QString own = object->property("ownToolTip").toString();
        object->setProperty("enabled", false);
        object->setProperty("toolTip", own.isEmpty() ? reason : asToolTip(own + u'\n' + reason));
    }
}
