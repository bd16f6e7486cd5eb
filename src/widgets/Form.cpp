#include "widgets/Form.h"

#include "widgets/screenReader.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

std::vector<Form*>& openForms() {
    static std::vector<Form*> forms;
    return forms;
}

bool isRootOfForm(const QObject* object) {
    return std::ranges::any_of(openForms(), [&](const Form* form) { return &form->widget() == object; });
}

/// What a control is made of is its own affair.
bool isWhole(const QObject* object) {
    return qobject_cast<const QTabBar*>(object) || qobject_cast<const QComboBox*>(object);
}

/// Everything with a name below an object, the windows within it left out.
void collect(const QObject* parent, std::vector<QObject*>& found) {
    for (QObject* child : parent->children()) {
        if (isRootOfForm(child))
            continue;
        if (!child->objectName().isEmpty() && !child->objectName().startsWith(u"qt_"))
            found.push_back(child);
        if (!isWhole(child))
            collect(child, found);
    }
}

QString typeOf(const QObject* object) {
    const QVariant said = object->property("CtrlTyp");
    if (said.isValid())
        return said.toString();
    if (qobject_cast<const QMenu*>(object) || qobject_cast<const QAction*>(object))
        return u"Menu"_s;
    if (qobject_cast<const QRadioButton*>(object))
        return u"OptionButton"_s;
    if (qobject_cast<const QCheckBox*>(object))
        return u"CheckBox"_s;
    if (qobject_cast<const QLabel*>(object))
        return u"Label"_s;
    if (qobject_cast<const QAbstractButton*>(object))
        return u"CommandButton"_s;
    if (qobject_cast<const QLineEdit*>(object))
        return u"TextBox"_s;
    if (qobject_cast<const QTabWidget*>(object))
        return u"SSTab"_s;
    if (qobject_cast<const QTabBar*>(object))
        return u"TabStrip"_s;
    if (qobject_cast<const QGroupBox*>(object))
        return u"Frame"_s;
    if (qobject_cast<const QComboBox*>(object))
        return u"ComboBox"_s;
    return {};
}

/// Splits "name(3)" into name and index.
void takeApart(const QString& objectName, QString& name, std::optional<int>& index) {
    name = objectName;
    const qsizetype bracket = objectName.indexOf(u'(');
    if (bracket < 0 || !objectName.endsWith(u')'))
        return;
    bool isNumber = false;
    const int number = objectName.mid(bracket + 1, objectName.size() - bracket - 2).toInt(&isNumber);
    if (!isNumber)
        return;
    name = objectName.left(bracket);
    index = number;
}

const QTabBar* tabBarOf(const QObject* object) {
    if (const auto* tabs = qobject_cast<const QTabWidget*>(object))
        return tabs->tabBar();
    return qobject_cast<const QTabBar*>(object);
}

/// The items within a control that each have a text of their own.
void addItems(const QObject* object, const ControlText& place, std::vector<ControlText>& places) {
    if (const QTabBar* tabs = tabBarOf(object)) {
        for (int i = 0; i < tabs->count(); ++i) {
            places.push_back(place);
            places.back().index = i;
            places.back().text = tabs->tabText(i);
        }
    } else if (const auto* combo = qobject_cast<const QComboBox*>(object)) {
        for (int i = 0; i < combo->count(); ++i) {
            places.push_back(place);
            places.back().index = i;
            places.back().tag = combo->property("Tag").toString();
            places.back().text = combo->itemText(i);
        }
    }
}

QString captionOf(const QObject* object) {
    if (const auto* menu = qobject_cast<const QMenu*>(object))
        return menu->title();
    if (const auto* frame = qobject_cast<const QGroupBox*>(object))
        return frame->title();
    return object->property("text").toString();
}

void setCaption(QObject* object, const QString& text) {
    if (auto* menu = qobject_cast<QMenu*>(object))
        menu->setTitle(text);
    else if (auto* frame = qobject_cast<QGroupBox*>(object))
        frame->setTitle(text);
    else
        object->setProperty("text", text);
}

} // namespace

Form::Form(QWidget& root, const QString& windowName) : root_(root), name_(windowName) {
    speakToScreenReaders();
    root.setObjectName(windowName);
    openForms().push_back(this);
}

Form::~Form() {
    std::erase(openForms(), this);
}

const std::vector<Form*>& Form::open() {
    return openForms();
}

bool Form::isOpen(const ControlHost* form) {
    return std::ranges::find(openForms(), form) != openForms().end();
}

std::vector<QObject*> Form::namedObjects() const {
    std::vector<QObject*> found;
    collect(&root_, found);
    return found;
}

std::vector<ControlText> Form::controls() const {
    std::vector<ControlText> places;
    places.push_back({.type = u"Form"_s, .name = name_, .index = std::nullopt, .text = root_.windowTitle()});
    for (const QObject* object : namedObjects()) {
        ControlText place;
        place.type = typeOf(object);
        if (place.type.isEmpty())
            continue;
        takeApart(object->objectName(), place.name, place.index);
        if (tabBarOf(object) || qobject_cast<const QComboBox*>(object)) {
            addItems(object, place, places);
            continue;
        }
        place.text = captionOf(object);
        places.push_back(place);
        if (place.type == u"CommandButton") {
            place.property = u"ToolTipText"_s;
            place.text = object->property("toolTip").toString();
            places.push_back(place);
        }
    }
    return places;
}

void Form::setControlText(const ControlText& place, const QString& text) {
    if (place.type == u"Form") {
        root_.setWindowTitle(text);
        return;
    }
    // The index of an item is within its control; that of an array is part of the control's name.
    QObject* object = control(place.name, place.index);
    if (!object)
        object = control(place.name);
    if (!object)
        return;
    if (auto* tabs = qobject_cast<QTabWidget*>(object))
        tabs->setTabText(place.index.value_or(0), text);
    else if (auto* bar = qobject_cast<QTabBar*>(object))
        bar->setTabText(place.index.value_or(0), text);
    else if (auto* combo = qobject_cast<QComboBox*>(object))
        combo->setItemText(place.index.value_or(0), text);
    else if (place.property == u"ToolTipText")
        object->setProperty("toolTip", text);
    else
        setCaption(object, text);
}

QObject* Form::control(const QString& name, std::optional<int> index) const {
    const QString wanted = index ? arrayName(name, *index) : name;
    const std::vector<QObject*> all = namedObjects();
    const auto found = std::ranges::find_if(all, [&](const QObject* o) { return o->objectName() == wanted; });
    return found == all.end() ? nullptr : *found;
}
