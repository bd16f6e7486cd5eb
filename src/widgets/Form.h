#pragma once

#include "language/CCtrl.h"

#include <QWidget>
#include <vector>

/// What every window of the program is besides a widget: a kind with a name, a tag, and controls whose texts come from
/// the text tables.
///
/// A control is known by its objectName; a member of a control array carries its index in it: "Option3(2)". The type
/// that the text tables name follows from the widget's class; a dynamic property "CtrlTyp" says it where that is not
/// enough (a tab widget as "TabStrip"), and an empty one leaves the control out. A combo box with a dynamic property
/// "Tag" of "user_defined" keeps its items.
class Form : public ControlHost {
public:
    /// @param root the window itself
    Form(QWidget& root, const QString& windowName);
    ~Form() override;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    QWidget& widget() const { return root_; }
    QString windowName() const override { return name_; }
    /// Number among the windows of its view or kind.
    QString Tag;
    /// Number of the view that it shows; 0 for a window of no view.
    virtual int viewNumber() const { return 0; }
    /// Options were applied: layout, fonts and what else follows from them.
    virtual void optionsApplied() {}

    std::vector<ControlText> controls() const override;
    void setControlText(const ControlText& control, const QString& text) override;

    /// Everything in the window that has a name; the windows within it left out.
    std::vector<QObject*> namedObjects() const;
    /// A control by its name and, in an array, its index; null if there is none.
    QObject* control(const QString& name, std::optional<int> index = std::nullopt) const;

    /// The windows that are loaded, hidden ones too, in the order of their opening.
    static const std::vector<Form*>& open();
    /// Whether a window that was among them still is.
    static bool isOpen(const ControlHost* form);

private:
    QWidget& root_;
    QString name_;
};

/// Names that the text tables use for the member `index` of an array.
inline QString arrayName(const QString& name, int index) {
    return name + QLatin1Char('(') + QString::number(index) + QLatin1Char(')');
}

/// Names a control whose texts are made at run time, and leaves it out of the text tables.
template<class Control>
Control* withOwnText(Control* control, const QString& name) {
    control->setObjectName(name);
    control->setProperty("CtrlTyp", QString());
    return control;
}
