#include "widgets/faultMark.h"

#include "widgets/Icons.h"

#include <QAction>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

/// The ground of a field with some red in it: text reads as well on it as on the field's own, light or dark.
QColor faultGround(const QPalette& palette) {
    constexpr double share = 0.18;
    const QColor own = palette.color(QPalette::Base), red(220, 40, 40);
    const auto mixed = [](int a, int b) { return qRound(a + (b - a) * share); };
    return {mixed(own.red(), red.red()), mixed(own.green(), red.green()), mixed(own.blue(), red.blue())};
}

} // namespace

void markFault(QLineEdit& field, bool wrong) {
    auto* sign = field.findChild<QAction*>(u"faultSign"_s);
    if (!wrong) {
        delete sign;
        field.setPalette({});
        return;
    }
    QPalette palette;
    palette.setColor(QPalette::Base, faultGround(palette));
    field.setPalette(palette);
    if (sign)
        return;
    sign = field.addAction(Icons::get(u"warning"_s), QLineEdit::TrailingPosition);
    sign->setObjectName(u"faultSign"_s);
    sign->setProperty("CtrlTyp", QString());
}
