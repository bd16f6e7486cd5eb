#include "charts/frmGraphicOptions.h"

#include "app/globals.h"
#include "charts/ChartLayout.h"
#include "charts/palette.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "platform/ui/Asker.h"
#include "widgets/ChartView.h"
#include "widgets/Desktop.h"
#include "widgets/okCancelRow.h"
#include "widgets/toolTips.h"

#include <QCheckBox>
#include <QColor>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSpinBox>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The axis as a chart has it, and as it is drawn where that is left to the chart.
ValueScale scaleOf(const ChartModel& chart, const QSizeF& millimetres) {
    if (!chart.scale.automatic)
        return chart.scale;
    const ChartLayout layout = layOut(chart, millimetres, ChartParts::Plot);
    return {true, layout.axisMinimum, layout.axisMaximum, layout.axisDivision};
}

QLabel* caption(const QString& name, const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setBuddy(buddy);
    return label;
}

QLineEdit* line(const QString& name, const QString& text, QWidget* parent) {
    auto* edit = withOwnText(new QLineEdit(text, parent), name);
    edit->setCursorPosition(0);
    return edit;
}

/// As wide as the dialog has room for, however long its texts are.
QComboBox* list(const QString& name, int characters, QWidget* parent) {
    auto* box = withOwnText(new QComboBox(parent), name);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(characters);
    return box;
}

template<class Button>
Button* button(const QString& name, const QString& text, QWidget* parent) {
    auto* made = new Button(text, parent);
    made->setObjectName(name);
    return made;
}

} // namespace

frmGraphicOptions::frmGraphicOptions(const ChartModel& chart, const LabelTable& own, const QSizeF& millimetres,
                                     bool marks, QWidget* parent)
    : QDialog(parent), Form(*this, u"frmGraphicOptions"_s), options_(chart, scaleOf(chart, millimetres), marks),
      before_(options_.labels().items), own_(own), millimetres_(millimetres) {
    setWindowTitle(u"Diagramm-Optionen"_s);
    build();
    connectItem();
    connectAxis();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
    fillLists();
    showItem();
    showPreview();
    Titel_->setFocus();
    // Left to itself a window takes two thirds of a screen at most, and on a small one the preview would pay for it.
    resize(sizeHint().boundedTo(screen()->availableSize() * 0.95));
}

frmGraphicOptions::~frmGraphicOptions() = default;

void frmGraphicOptions::build() {
    Titel_ = line(u"Titel"_s, options_.Titel, this);
    auto* title = new QHBoxLayout;
    title->addWidget(caption(u"lblTitel"_s, u"&Titel:"_s, Titel_, this));
    title->addWidget(Titel_, 1);
    auto* settings = new QVBoxLayout;
    settings->addWidget(buildItem());
    settings->addWidget(buildLook());
    settings->addWidget(buildAxis());
    settings->addStretch();
    BspChart1_ = withOwnText(new ChartView(u"BspChart1"_s, this), u"BspChart1"_s);
    auto* columns = new QHBoxLayout;
    columns->addLayout(settings);
    columns->addWidget(BspChart1_, 1);
    auto* rows = new QVBoxLayout(this);
    rows->addLayout(title);
    rows->addLayout(columns, 1);
    auto* cmdReset = button<QPushButton>(u"cmdReset"_s, u"&Zurücksetzen"_s, this);
    cmdReset->setAutoDefault(false);
    connect(cmdReset, &QPushButton::clicked, this, [this] {
        change([this] {
            options_.reset(own_);
            Titel_->setText(options_.Titel);
            fillLists();
        });
    });
    QHBoxLayout* buttons = okCancelRow(this);
    buttons->insertWidget(0, cmdReset);
    rows->addLayout(buttons);
}

QGroupBox* frmGraphicOptions::buildItem() {
    auto* frame = button<QGroupBox>(u"fraSerie"_s, u"Wert oder Reihe"_s, this);
    cmbSerie_ = list(u"cmbSerie"_s, 8, frame);
    cmbSerie2_ = list(u"cmbSerie2"_s, 22, frame);
    cmdChangeLabel_ = button<QPushButton>(u"cmdChangeLabel"_s, u"&Label ändern..."_s, frame);
    missing_ = button<QCheckBox>(u"missing"_s, u"Missin&g"_s, frame);
    auto* grid = new QGridLayout(frame);
    grid->addWidget(caption(u"lblSerie"_s, u"&Code und Label:"_s, cmbSerie_, frame), 0, 0, 1, 2);
    grid->addWidget(cmbSerie_, 1, 0);
    grid->addWidget(cmbSerie2_, 1, 1);
    grid->addWidget(cmdChangeLabel_, 2, 1);
    grid->addWidget(missing_, 2, 0);
    grid->setColumnStretch(1, 1);
    return frame;
}

QGroupBox* frmGraphicOptions::buildLook() {
    auto* frame = button<QGroupBox>(u"fraLook"_s, u"Darstellung"_s, this);
    PatternOrColor_ = {button<QRadioButton>(arrayName(u"PatternOrColor"_s, 0), u"&Farbe"_s, frame),
                       button<QRadioButton>(arrayName(u"PatternOrColor"_s, 1), u"M&uster"_s, frame)};
    cmbPattern_ = list(u"cmbPattern"_s, 24, frame);
    lblPattern_ = withOwnText(new QLabel(frame), u"lblPattern"_s);
    lblPattern_->setBuddy(cmbPattern_);
    cmd_Color_ = button<QPushButton>(u"cmd_Color"_s, u"Fa&rbe wählen..."_s, frame);
    autocolor_ = button<QCheckBox>(u"autocolor"_s, u"Farbe automatisc&h"_s, frame);
    auto* grid = new QGridLayout(frame);
    auto* kinds = new QHBoxLayout;
    kinds->addWidget(PatternOrColor_[0]);
    kinds->addWidget(PatternOrColor_[1]);
    kinds->addStretch();
    grid->addLayout(kinds, 0, 0, 1, 2);
    grid->addWidget(autocolor_, 1, 0);
    grid->addWidget(cmd_Color_, 1, 1);
    auto* parts = new QHBoxLayout;
    const std::pair<QString, QString> names[] = {
        {u"colorred"_s, u"R&ot:"_s}, {u"colorgreen"_s, u"Grü&n:"_s}, {u"colorblue"_s, u"&Blau:"_s}};
    for (size_t i = 0; i < color_.size(); ++i) {
        color_[i] = withOwnText(new QSpinBox(frame), names[i].first);
        color_[i]->setRange(0, 255);
        parts->addWidget(caption(u"lbl"_s + names[i].first, names[i].second, color_[i], frame));
        parts->addWidget(color_[i], 1);
    }
    grid->addLayout(parts, 2, 0, 1, 2);
    grid->addWidget(lblPattern_, 3, 0);
    grid->addWidget(cmbPattern_, 3, 1);
    chkForAll_ = button<QCheckBox>(u"chkForAll"_s, u"für all&e zugleich"_s, frame);
    grid->addWidget(chkForAll_, 4, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    return frame;
}

QGroupBox* frmGraphicOptions::buildAxis() {
    auto* frame = button<QGroupBox>(u"fraScale"_s, u"Werteachse"_s, this);
    chkFromToAuto_ = button<QCheckBox>(u"chkFromToAuto"_s, u"&automatisch"_s, frame);
    // In the order of the eye, which is that of the tab key; two to a line spare height on small screens.
    Division_ = line(u"Division"_s, options_.Division, frame);
    Minimum_ = line(u"Minimum"_s, options_.Minimum, frame);
    Maximum_ = line(u"Maximum"_s, options_.Maximum, frame);
    auto* grid = new QGridLayout(frame);
    grid->addWidget(chkFromToAuto_, 0, 0, 1, 2);
    grid->addWidget(caption(u"lblDivision"_s, u"Ab&schnitte:"_s, Division_, frame), 0, 2);
    grid->addWidget(Division_, 0, 3);
    grid->addWidget(caption(u"lblMinimum"_s, u"M&inimum:"_s, Minimum_, frame), 1, 0);
    grid->addWidget(Minimum_, 1, 1);
    grid->addWidget(caption(u"lblMaximum"_s, u"Ma&ximum:"_s, Maximum_, frame), 1, 2);
    grid->addWidget(Maximum_, 1, 3);
    return frame;
}

/// A change by hand: controls and preview follow.
template<class Step>
void frmGraphicOptions::change(Step&& step) {
    if (showing_)
        return;
    trapped(step);
    showItem();
    showPreview();
}

void frmGraphicOptions::connectItem() {
    for (QComboBox* box : {cmbSerie_, cmbSerie2_})
        connect(box, &QComboBox::activated, this, [this](int item) { choose(item); });
    BspChart1_->onChosen = [this](int series, int category) {
        choose(std::max(0, itemsAreCategories(options_.preview()) ? category : series));
    };
    connect(cmdChangeLabel_, &QPushButton::clicked, this, [this] {
        change([this] {
            options_.changeLabel();
            fillLists();
        });
    });
    connect(missing_, &QCheckBox::clicked, this, [this](bool on) { change([&] { options_.setMissing(on); }); });
    for (size_t i = 0; i < 2; ++i)
        connect(PatternOrColor_[i], &QRadioButton::clicked, this,
                [this, i] { change([&] { options_.setPatternOrColor(i == 1); }); });
    connect(cmbPattern_, &QComboBox::activated, this, [this](int place) {
        if (place < options_.styleNames().size())
            change([&] { options_.chooseStyle(place); });
    });
    connect(chkForAll_, &QCheckBox::clicked, this, [this](bool on) { options_.chkForAll = on; });
    connect(autocolor_, &QCheckBox::clicked, this,
            [this](bool on) { change([&] { options_.setAutocolor(on, shownColor()); }); });
    for (QSpinBox* part : color_)
        connect(part, &QSpinBox::valueChanged, this, [this] {
            change([this] {
                options_.setColor(QColor(color_[0]->value(), color_[1]->value(), color_[2]->value()).rgb());
            });
        });
    connect(cmd_Color_, &QPushButton::clicked, this, [this] {
        change([this] {
            if (const auto rgb = ui::asker().chooseColor(TranslateText(u"Farbe wählen"_s), shownColor() & RGB_MASK))
                options_.setColor(qRgb(0, 0, 0) | *rgb);
        });
    });
}

void frmGraphicOptions::connectAxis() {
    connect(Titel_, &QLineEdit::textChanged, this, [this](const QString& text) {
        options_.Titel = text;
        showPreview();
    });
    connect(chkFromToAuto_, &QCheckBox::clicked, this,
            [this](bool on) { change([&] { options_.chkFromToAuto = on; }); });
    const std::pair<QLineEdit*, QString GraphicOptions::*> lines[] = {{Minimum_, &GraphicOptions::Minimum},
                                                                      {Maximum_, &GraphicOptions::Maximum},
                                                                      {Division_, &GraphicOptions::Division}};
    for (const auto& [edit, field] : lines)
        connect(edit, &QLineEdit::textChanged, this, [this, field = field](const QString& text) {
            if (options_.*field == text)
                return;
            options_.*field = text;
            if (field != &GraphicOptions::Division) {
                options_.divideAnew();
                Division_->setText(options_.Division);
            }
            showPreview();
        });
}

void frmGraphicOptions::choose(int item) {
    change([&] { options_.choose(item); });
}

void frmGraphicOptions::fillLists() {
    cmbSerie_->clear();
    cmbSerie2_->clear();
    for (const LabelItem& item : options_.labels().items) {
        cmbSerie_->addItem(item.code);
        cmbSerie2_->addItem(item.label);
    }
    cmbPattern_->clear();
    cmbPattern_->addItems(options_.styleNames());
    // Behind the patterns, so that their places are their numbers'; only an item without one shows it.
    if (!options_.lines())
        cmbPattern_->addItem(GraphicOptions::noPattern());
}

QRgb frmGraphicOptions::shownColor() const {
    return drawnStyle(options_.preview(), options_.item()).color;
}

void frmGraphicOptions::showItem() {
    const QScopedValueRollback<bool> showing(showing_, true);
    chkFromToAuto_->setChecked(options_.chkFromToAuto);
    for (QLineEdit* edit : {Minimum_, Maximum_, Division_})
        edit->setEnabled(!options_.chkFromToAuto);
    if (options_.item() < 0)
        return paleCaptions();
    const LabelItem& item = options_.current();
    const bool lines = options_.lines(), pattern = item.style.pattern && !lines;
    cmbSerie_->setCurrentIndex(options_.item());
    cmbSerie2_->setCurrentIndex(options_.item());
    cmbSerie2_->setToolTip(plainToolTip(item.label));
    missing_->setChecked(item.missing);
    missing_->setEnabled(options_.marksOffered());
    PatternOrColor_[pattern ? 1 : 0]->setChecked(true);
    for (QRadioButton* kind : PatternOrColor_)
        kind->setVisible(!lines);
    cmbPattern_->setCurrentIndex(options_.style() < 0 ? cmbPattern_->count() - 1 : options_.style());
    cmbPattern_->setEnabled(lines || pattern);
    autocolor_->setChecked(!item.style.color);
    autocolor_->setEnabled(!pattern);
    cmd_Color_->setEnabled(!pattern);
    const QColor color = QColor::fromRgb(shownColor());
    const int parts[] = {color.red(), color.green(), color.blue()};
    for (size_t i = 0; i < color_.size(); ++i) {
        color_[i]->setValue(parts[i]);
        color_[i]->setEnabled(!pattern);
    }
    paleCaptions();
}

/// A caption looks like what it names.
void frmGraphicOptions::paleCaptions() {
    for (QLabel* label : findChildren<QLabel*>())
        if (const QWidget* named = label->buddy())
            label->setEnabled(named->isEnabled());
}

void frmGraphicOptions::showPreview() {
    BspChart1_->showChart(options_.preview(), millimetres_, ChartParts::Whole);
}

void frmGraphicOptions::refreshTitles() {
    lblPattern_->setText(TranslateText(options_.lines() ? u"Symbol:"_s : u"Muster:"_s));
    BspChart1_->setAccessibleName(TranslateText(u"Vorschau der Grafik"_s));
    cmbSerie2_->setAccessibleName(TranslateText(u"Label"_s));
    missing_->setToolTip(options_.marksOffered()
                             ? QString()
                             : TranslateText(u"Nur bei Häufigkeiten und bei Kreuztabellen in absoluten Werten."_s));
}

bool frmGraphicOptions::marksChanged() const {
    return answer_ && !std::ranges::equal(answer_->items, before_, {}, &LabelItem::missing, &LabelItem::missing);
}

void frmGraphicOptions::cmdOK_Click() {
    trapped([&] {
        QString fault;
        answer_ = options_.cmdOK(fault);
        if (!answer_)
            ui::asker().messageBox({.text = fault, .icon = ui::Icon::Exclamation});
    });
    if (answer_)
        cmdCancel_Click();
}

void frmGraphicOptions::cmdCancel_Click() {
    done(QDialog::Rejected);
    focusMainWindow();
}
