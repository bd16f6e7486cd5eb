#include "widgets/screenReader.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QTextDocumentFragment>

namespace {

/// A drop-down list: its name is what it is for, its value what it shows.
class AccessibleComboBox : public QAccessibleWidget {
public:
    explicit AccessibleComboBox(QWidget* widget) : QAccessibleWidget(widget, QAccessible::ComboBox) {}

    int childCount() const override { return static_cast<int>(parts().size()); }
    QAccessibleInterface* child(int index) const override {
        return QAccessible::queryAccessibleInterface(parts().value(index));
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return static_cast<int>(parts().indexOf(child->object()));
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (QObject* part : parts())
            if (auto* widget = qobject_cast<QWidget*>(part);
                widget->isVisible() && widget->rect().contains(widget->mapFromGlobal(QPoint(x, y))))
                return QAccessible::queryAccessibleInterface(part);
        return nullptr;
    }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value)
            return box().currentText();
        const bool isNamed = kind == QAccessible::Name && !box().accessibleName().isEmpty();
        return isNamed ? box().accessibleName() : QAccessibleWidget::text(kind);
    }

    QStringList actionNames() const override { return {showMenuAction(), setFocusAction()}; }
    void doAction(const QString& action) override {
        if (action == showMenuAction() && box().isEnabled())
            box().view()->isVisible() ? box().hidePopup() : box().showPopup();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    QComboBox& box() const { return *static_cast<QComboBox*>(widget()); }
    /// The list and, if one can type, the line.
    QList<QObject*> parts() const {
        QList<QObject*> all = {box().view()};
        if (box().lineEdit())
            all << box().lineEdit();
        return all;
    }
};

QAccessibleInterface* comboBoxesByName(const QString& className, QObject* object) {
    auto* box = className == QLatin1String("QComboBox") ? qobject_cast<QComboBox*>(object) : nullptr;
    return box ? new AccessibleComboBox(box) : nullptr;
}

/// A tooltip serves as description where there is no other, and one may be written in markup.
class PlainDescriptions : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ToolTipChange)
            if (auto* widget = qobject_cast<QWidget*>(watched))
                describe(*widget);
        return false;
    }

private:
    static void describe(QWidget& widget) {
        constexpr const char* property = "descriptionOfToolTip";
        const QString before = widget.property(property).toString();
        if (widget.accessibleDescription() != before)
            return; // somebody has described it
        const QString tip = widget.toolTip();
        const QString plain = Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText() : QString();
        if (plain == before)
            return;
        widget.setProperty(property, plain);
        widget.setAccessibleDescription(plain);
    }
};

} // namespace

void speakToScreenReaders() {
    static const QObject* const once = [] {
        QAccessible::installFactory(comboBoxesByName);
        auto* descriptions = new PlainDescriptions(qApp);
        qApp->installEventFilter(descriptions);
        return descriptions;
    }();
    Q_UNUSED(once)
}
