#include "widgets/notBuilt.h"

#include "app/globals.h"
#include "widgets/Form.h"

#include <QAction>
#include <QMap>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

/// By window, the controls without a function yet.
const QMap<QString, QStringList> controlsNotBuilt = {
    {u"frmMain"_s,
     {u"mnuFragebogenansicht"_s, u"mnuSPSSAnsicht"_s, u"mnuFilePrint"_s, u"mnuEditCut"_s, u"mnuEditPaste"_s, u"mnuLöschen"_s,
      u"mnuSuchen"_s, u"mnuWeitersuchen"_s, u"mnuErweiterteSuche"_s, u"mnuNeueKategorie"_s, u"mnuKategorieUmbenennen"_s,
      u"mnuBeschreibungBearbeiten"_s, u"mnuEditShowPosition"_s, u"mnuViewGraphicOptions"_s, u"mnuDBBeschreibung"_s,
      u"mnuViewDescriptions"_s, u"DBD"_s, u"DESC1"_s, u"DESC2"_s, u"DESC3"_s, u"DESC4"_s, u"DESC5"_s, u"DESC6"_s, u"DESC7"_s,
      u"DESC8"_s, u"DESC9"_s, u"F"_s, u"SPSS"_s, u"D"_s, u"E"_s, u"SCON"_s}},
    {u"frmAuswertung"_s,
     {u"cmdPreview"_s, u"cmdPrint"_s, u"chkPreserveLayout"_s, u"cbValuesInstruct"_s}},
};

} // namespace

void applyNotBuilt(Form& form) {
    const QStringList names = controlsNotBuilt.value(form.windowName());
    const QString reason = TranslateText(u"In dieser Version noch nicht enthalten."_s);
    // A control that shows nothing but a picture still says what it is for.
    const auto tooltip = [&](const QObject* object) {
        const QString own = object->property("ownToolTip").toString();
        return own.isEmpty() ? reason : own + u'\n' + reason;
    };
    const auto isNamed = [&](const QObject* object) {
        const QString name = object->objectName();
        const qsizetype bracket = name.indexOf(u'(');
        return names.contains(bracket < 0 ? name : name.left(bracket));
    };
    for (QAction* action : form.widget().findChildren<QAction*>())
        if (isNamed(action)) {
            action->setEnabled(false);
            action->setToolTip(tooltip(action));
        }
    for (QWidget* widget : form.widget().findChildren<QWidget*>())
        if (isNamed(widget)) {
            widget->setEnabled(false);
            widget->setToolTip(tooltip(widget));
        }
}
