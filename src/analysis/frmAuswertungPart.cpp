#include "analysis/frmAuswertungPart.h"

#include "analysis/frmAuswertung.h"
#include "widgets/ChoicePicker.h"
#include "widgets/FlowLayout.h"

#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

frmAuswertungPart::frmAuswertungPart(frmAuswertung& window) : window_(window), model_(window.model()) {
    listener_ = model_.edit().listen([this](RequestPart part) {
        if (part == RequestPart::Opened || concerns(part))
            changes_.add(part);
    });
}

frmAuswertungPart::~frmAuswertungPart() {
    model_.edit().forget(listener_);
}

void frmAuswertungPart::show() {
    if (changes_.any())
        showChanges(std::exchange(changes_, {}));
}

void frmAuswertungPart::showAll() {
    changes_.add(RequestPart::Opened);
    show();
}

void frmAuswertungPart::act(const Step& step) {
    touch();
    window_.act(step);
}

void frmAuswertungPart::run(const Step& step) {
    touch();
    window_.run(step);
}

void frmAuswertungPart::finishTypingSoon() {
    touch();
    QMetaObject::invokeMethod(
        this, [this] { window_.act([] {}); }, Qt::QueuedConnection);
}

QLabel* frmAuswertungPart::factLabel(const QString& name, QWidget* parent) {
    auto* label = withOwnText(new QLabel(parent), name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel* frmAuswertungPart::caption(const QString& name, const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = control<QLabel>(name, text, parent);
    label->setBuddy(buddy);
    return label;
}

QComboBox* frmAuswertungPart::valuesPicker(const QString& name, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    box->addItems({u"absolute Werte"_s, u"Spaltenprozente"_s, u"Zeilenprozente"_s, u"Gesamtprozente"_s});
    return box;
}

ChoicePicker* frmAuswertungPart::picker(const QString& name, QWidget* parent) {
    return new ChoicePicker(name, ChoicePicker::Kind::Plain, parent);
}

ChoicePicker* frmAuswertungPart::searchPicker(const QString& name, QWidget* parent) {
    auto* picker = new ChoicePicker(name, ChoicePicker::Kind::Searched, parent);
    picker->onLeft = [this] { finishTypingSoon(); };
    return picker;
}

std::optional<frmAuswertungPart::Objection>
frmAuswertungPart::objectionOf(std::initializer_list<ChoicePicker*> pickers) {
    for (ChoicePicker* picker : pickers)
        if (const QString words = picker->objection(); !words.isEmpty())
            return Objection{picker, picker->accessibleName() + u": "_s + words};
    return std::nullopt;
}

void frmAuswertungPart::addRow(QVBoxLayout* rows, std::initializer_list<InRow> widgets, int hanging) {
    auto* row = new FlowLayout;
    row->hanging = hanging;
    for (const InRow& one : widgets)
        row->add(one.widget, one.stretch);
    rows->addLayout(row);
}

QWidget* frmAuswertungPart::besideEachOther(ChoicePicker* name, ChoicePicker* title) {
    auto* both = new QWidget(name->parentWidget());
    auto* row = new FlowLayout(both);
    row->add(name, 1);
    row->add(title, 3);
    return both;
}

int frmAuswertungPart::textIndent(const QRadioButton& button) {
    const QStyle* style = button.style();
    return style->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, &button) +
           style->pixelMetric(QStyle::PM_RadioButtonLabelSpacing, nullptr, &button);
}

int frmAuswertungPart::placeOf(const std::vector<BoundPicker>& list, const QString& value) {
    const auto found = std::ranges::find(list, value, &BoundPicker::value);
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

int frmAuswertungPart::placeOf(const std::vector<StudyVariable>& list, const QString& name) {
    const auto found = std::ranges::find(list, name, &StudyVariable::name);
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

void giveSameWidth(const QList<QWidget*>& captions) {
    int widest = 0;
    for (QWidget* one : captions) {
        one->setMinimumWidth(0);
        widest = std::max(widest, one->sizeHint().width());
    }
    for (QWidget* one : captions)
        one->setMinimumWidth(widest);
}
