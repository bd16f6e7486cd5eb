#include "analysis/frmAuswertungCases.h"

#include "analysis/frmAuswertung.h"
#include "app/globals.h"
#include "diagnostics/errors.h"
#include "widgets/ChoicePicker.h"
#include "widgets/FilterLine.h"
#include "widgets/radioGroup.h"

#include <QEvent>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Milliseconds without a key after which what is typed is looked at.
constexpr int pauseOfTyping = 300;

} // namespace

frmAuswertungCases::frmAuswertungCases(frmAuswertung& window) : frmAuswertungPart(window) {
    fraWeight_ = buildWeight();
    fraFilter_ = buildFilter();
    connectWeight();
    connectFilter();
}

QGroupBox* frmAuswertungCases::buildWeight() {
    auto* frame = control<QGroupBox>(u"fraWeight"_s, u"Gewichtung"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    const std::array<QString, 4> texts{u"keine"_s, u"&Repräsentativgewicht"_s, u"Haushaltsgewi&cht"_s, QString()};
    for (size_t i = 0; i < texts.size(); ++i)
        Option3_[i] = control<QRadioButton>(arrayName(u"Option3"_s, static_cast<int>(i)), texts[i], frame);
    dt_WeightRE_ = factLabel(u"dt_WeightRE"_s, frame);
    dt_WeightHH_ = factLabel(u"dt_WeightHH"_s, frame);
    lblWeightUser_ = caption(u"lblWeightUser"_s, u"Ge&wichtungsvariable:"_s, ownWeight(), frame);
    dbcVarGewicht_1Uni_ = searchPicker(u"dbcVarGewicht_1Uni"_s, frame);
    dbcVarGewicht_1_ = picker(u"dbcVarGewicht_1"_s, frame);
    dbcVarGewicht_ = picker(u"dbcVarGewicht"_s, frame);
    const int indent = textIndent(*Option3_[0]);
    rows->addWidget(Option3_[0]);
    addRow(rows, {{Option3_[1], 0}, {dt_WeightRE_, 1}}, indent);
    addRow(rows, {{Option3_[2], 0}, {dt_WeightHH_, 1}}, indent);
    auto* own = new QHBoxLayout;
    own->setSpacing(0);
    own->addWidget(ownWeight());
    own->addWidget(lblWeightUser_, 1);
    rows->addLayout(own);
    auto* indented = new QVBoxLayout;
    indented->setContentsMargins(indent, 0, 0, 0);
    indented->addWidget(dbcVarGewicht_1Uni_);
    indented->addWidget(besideEachOther(dbcVarGewicht_1_, dbcVarGewicht_));
    rows->addLayout(indented);
    return frame;
}

QGroupBox* frmAuswertungCases::buildFilter() {
    auto* frame = control<QGroupBox>(u"fraFilter"_s, u"Filter"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    const std::array<QString, 3> texts{u"ke&iner"_s, u"Datensatz-Teile"_s, u"benut&zerdefiniert"_s};
    for (size_t i = 0; i < texts.size(); ++i)
        optFilter_[i] = control<QRadioButton>(arrayName(u"optFilter"_s, static_cast<int>(i)), texts[i], frame);
    dbcParts_ = picker(u"dbcParts"_s, frame);
    txtFilter_ = new FilterLine(u"txtFilter"_s, frame);
    lblFilterCheck_ = factLabel(u"lblFilterCheck"_s, frame);
    const int indent = textIndent(*optFilter_[0]);
    lblFilterCheck_->setIndent(indent);
    rows->addWidget(optFilter_[0]);
    addRow(rows, {{optFilter_[1], 0}, {dbcParts_, 1}}, indent);
    addRow(rows, {{optFilter_[2], 0}, {txtFilter_, 1}}, indent);
    rows->addWidget(lblFilterCheck_);
    captions_ = {optFilter_[1], optFilter_[2]};
    return frame;
}

void frmAuswertungCases::alignWeights() {
    giveSameWidth({Option3_[1], Option3_[2]});
    // Without a caption a button is lower than its neighbours.
    ownWeight()->setFixedSize(textIndent(*Option3_[0]), Option3_[0]->sizeHint().height());
}

void frmAuswertungCases::connectWeight() {
    for (size_t i = 0; i < Option3_.size(); ++i)
        connect(Option3_[i], &QRadioButton::clicked, this, [this, kind = static_cast<WeightKind>(i)] {
            act([&] {
                if (kind == WeightKind::WeightUser)
                    model_.edit().chooseUserWeight();
                else
                    model_.edit().chooseWeight(kind);
            });
        });
    for (ChoicePicker* picker : {dbcVarGewicht_, dbcVarGewicht_1_, dbcVarGewicht_1Uni_})
        picker->onChosen = [this](int index) {
            act([&] {
                model_.edit().chooseWeight(WeightKind::WeightUser,
                                           model_.edit().variables().at(static_cast<size_t>(index)).name);
            });
        };
    stopAtChosen(Option3_);
    lblWeightUser_->installEventFilter(this);
}

void frmAuswertungCases::connectFilter() {
    for (size_t i = 0; i < optFilter_.size(); ++i)
        connect(optFilter_[i], &QRadioButton::clicked, this, [this, kind = static_cast<FilterKind>(i)] {
            act([&] {
                if (model_.edit().chooseFilter(kind) && kind == FilterKind::FilterParts)
                    model_.comparison().ApplyComparisonEntryChange(true);
            });
        });
    stopAtChosen(optFilter_);
    ownFilter()->installEventFilter(this);
    dbcParts_->onChosen = [this](int index) {
        act([&] {
            if (model_.edit().choosePart(parts_.at(static_cast<size_t>(index)).value))
                model_.comparison().ApplyComparisonEntryChange(true);
        });
    };
    dbcParts_->onKey = [this](int key) {
        bool taken = false;
        // The platform's Delete is the key with code 46.
        act([&] { taken = key == Qt::Key_Delete && model_.edit().dbcParts_KeyDown(46); });
        return taken;
    };
    connect(txtFilter_, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (gBusy > 0)
            return;
        filterTyped_ = true;
        trapped([&] { model_.edit().typeFilterText(text); });
        txtFilter_->markSpot(0, 0);
        checkSoon_.start();
    });
    connect(txtFilter_, &QLineEdit::editingFinished, this, [this] {
        // Who turns to another window is not through with it.
        if (filterTyped_ && txtFilter_->isActiveWindow())
            finishTypingSoon();
        checkFilter();
    });
    checkSoon_.setSingleShot(true);
    checkSoon_.setInterval(pauseOfTyping);
    connect(&checkSoon_, &QTimer::timeout, this, [this] { checkFilter(); });
}

/// The caption of the fourth weight stands for the button beside it, and its letter goes on to the picker. Who chooses
/// a filter of his own by letter or click goes on to its line; arrow keys stay in the group.
bool frmAuswertungCases::eventFilter(QObject* watched, QEvent* event) {
    const bool released = event->type() == QEvent::MouseButtonRelease, byLetter = event->type() == QEvent::Shortcut;
    if (watched == lblWeightUser_ && (released || byLetter)) {
        ownWeight()->click();
        if (byLetter)
            dbcVarGewicht_1Uni_->setFocus(Qt::ShortcutFocusReason);
        return true;
    }
    if (watched == ownFilter() && byLetter) {
        ownFilter()->click();
        txtFilter_->setFocus();
        return true;
    }
    if (watched == ownFilter() && released && ownFilter()->isDown())
        QMetaObject::invokeMethod(
            txtFilter_, [this] { txtFilter_->setFocus(); }, Qt::QueuedConnection);
    return false;
}

void frmAuswertungCases::putIntoFilter(const QString& variable, const QString& value) {
    if (!txtFilter_->isEnabled())
        return;
    txtFilter_->setFocus();
    txtFilter_->putValue(variable, value);
}

void frmAuswertungCases::finishTyping() {
    dbcVarGewicht_1Uni_->finish();
    if (std::exchange(filterTyped_, false) && model_.request().optFilter == FilterKind::FilterUser)
        trapped([this] { model_.comparison().ApplyComparisonEntryChange(true); });
}

std::optional<frmAuswertungPart::Objection> frmAuswertungCases::objection() const {
    return objectionOf({dbcVarGewicht_1Uni_});
}

/// The kind of table decides which weights and parts there are.
bool frmAuswertungCases::concerns(RequestPart part) const {
    return part == RequestPart::Study || part == RequestPart::Mode || part == RequestPart::Weight ||
           part == RequestPart::Filter;
}

void frmAuswertungCases::showChanges(const Changes& changes) {
    if (changes.has(RequestPart::Study))
        showLists();
    showWeight();
    showFilter();
}

void frmAuswertungCases::showLists() {
    QStringList names, labels, parts;
    for (const StudyVariable& variable : model_.edit().variables()) {
        names << variable.name;
        labels << variable.label;
    }
    dbcVarGewicht_1_->setChoices(names);
    dbcVarGewicht_->setChoices(labels);
    dbcVarGewicht_1Uni_->setChoices(model_.edit().variableChoices());
    txtFilter_->setChoices(model_.edit().variableChoices());
    parts_ = model_.edit().parts();
    for (const BoundPicker& part : parts_)
        parts << part.text;
    dbcParts_->setChoices(parts);
}

void frmAuswertungCases::showWeight() {
    const AnalysisRequest& r = model_.request();
    const AnalysisView view = model_.view();
    for (size_t i = 0; i < Option3_.size(); ++i)
        Option3_[i]->setEnabled(view.Option3[i]);
    Option3_[static_cast<size_t>(r.Option3)]->setChecked(true);
    dt_WeightRE_->setText(r.dt_WeightRE);
    dt_WeightRE_->setVisible(view.dt_WeightRE);
    dt_WeightHH_->setText(r.dt_WeightHH);
    dt_WeightHH_->setVisible(view.dt_WeightHH);
    const int place = placeOf(model_.edit().variables(), r.dbcVarGewicht.value);
    for (ChoicePicker* picker : {dbcVarGewicht_1_, dbcVarGewicht_, dbcVarGewicht_1Uni_}) {
        picker->setEnabled(view.userWeight);
        picker->showChoice(place);
    }
}

void frmAuswertungCases::showFilter() {
    const AnalysisRequest& r = model_.request();
    const AnalysisView view = model_.view();
    for (size_t i = 0; i < optFilter_.size(); ++i)
        optFilter_[i]->setEnabled(view.optFilter[i]);
    optFilter_[static_cast<size_t>(r.optFilter)]->setChecked(true);
    dbcParts_->showChoice(placeOf(parts_, r.dbcParts.value));
    dbcParts_->setVisible(view.dbcPartsShown);
    dbcParts_->setEnabled(view.dbcPartsEnabled);
    txtFilter_->setEnabled(view.txtFilterEnabled);
    if (txtFilter_->text() != r.txtFilter)
        txtFilter_->setText(r.txtFilter);
    checkFilter();
}

/// Says what the run would refuse, and marks it.
void frmAuswertungCases::checkFilter() {
    checkSoon_.stop();
    const bool own = model_.request().optFilter == FilterKind::FilterUser && !txtFilter_->text().isEmpty();
    showFilterCheck(own ? model_.checkFilter(txtFilter_->text()) : FilterResult());
}

void frmAuswertungCases::showFilterCheck(const FilterResult& result) {
    const QString words = result.objection() + result.notice();
    txtFilter_->markSpot(static_cast<int>(result.position), words.isEmpty() ? 0 : static_cast<int>(result.length));
    // One line is kept for the words, so that nothing moves while one types.
    lblFilterCheck_->setText(words.isEmpty() ? u" "_s : words);
    txtFilter_->setAccessibleDescription(words);
}

void frmAuswertungCases::nameForReaders() {
    ownWeight()->setAccessibleName(TranslateText(u"eigene Gewichtungsvariable"_s));
    dbcVarGewicht_1_->setAccessibleName(TranslateText(u"Name der Gewichtungsvariable"_s));
    dbcVarGewicht_->setAccessibleName(TranslateText(u"Label der Gewichtungsvariable"_s));
    dbcVarGewicht_1Uni_->setAccessibleName(TranslateText(u"Gewichtungsvariable suchen"_s));
    dbcVarGewicht_1Uni_->setPrompt(TranslateText(u"Name oder Label eintippen"_s));
    dbcParts_->setAccessibleName(TranslateText(u"Datensatz-Teil"_s));
    txtFilter_->setAccessibleName(TranslateText(u"Filterbedingung"_s));
    txtFilter_->setPlaceholderText(TranslateText(u"z.B. V7=1 AND V8>2"_s));
}
