#include "analysis/frmSaveChart.h"

#include "app/globals.h"
#include "charts/chartFile.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "platform/system/NumberFormat.h"
#include "platform/ui/Asker.h"
#include "widgets/Desktop.h"
#include "widgets/okCancelRow.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

/// Reads either decimal separator.
class Millimetres : public QDoubleSpinBox {
public:
    using QDoubleSpinBox::QDoubleSpinBox;

protected:
    QValidator::State validate(QString& text, int& place) const override {
        text.replace(NumberFormat::decimalSeparator() == u',' ? u'.' : u',', NumberFormat::decimalSeparator());
        return QDoubleSpinBox::validate(text, place);
    }
};

template<class Number>
void addRow(QGridLayout& grid, int row, const QString& name, const QString& text, Number* number) {
    auto* label = new QLabel(text, number->parentWidget());
    label->setObjectName(u"lbl"_s + name);
    label->setBuddy(number);
    withOwnText(number, u"txt"_s + name);
    grid.addWidget(label, row, 0);
    grid.addWidget(number, row, 1);
}

} // namespace

frmSaveChart::frmSaveChart(const WindowChart::Picture& picture, QWidget* parent)
    : QDialog(parent), Form(*this, u"frmSaveChart"_s), picture_(picture) {
    setWindowTitle(u"Grafik speichern"_s);
    build();
    mdLanguage::SetCtrlProps(*this);
    txtWidth_->setFocus();
    txtWidth_->selectAll();
}

frmSaveChart::~frmSaveChart() = default;

void frmSaveChart::build() {
    auto* grid = new QGridLayout;
    const auto millimetres = [this](double value) {
        auto* number = new Millimetres(this);
        QLocale locale(NumberFormat::decimalSeparator() == u',' ? QLocale::German : QLocale::English);
        locale.setNumberOptions(QLocale::OmitGroupSeparator);
        number->setLocale(locale);
        number->setRange(1, 9999);
        number->setDecimals(1);
        number->setSuffix(u" mm"_s);
        number->setValue(value);
        return number;
    };
    txtWidth_ = millimetres(picture_.millimetres.width());
    txtHeight_ = millimetres(picture_.millimetres.height());
    txtDpi_ = new QSpinBox(this);
    txtDpi_->setRange(1, 9999);
    txtDpi_->setSuffix(u" dpi"_s);
    txtDpi_->setValue(picture_.dpi);
    addRow(*grid, 0, u"Width"_s, u"&Breite:"_s, txtWidth_);
    addRow(*grid, 1, u"Height"_s, u"&Höhe:"_s, txtHeight_);
    addRow(*grid, 2, u"Dpi"_s, u"&Auflösung:"_s, txtDpi_);
    auto* hint = new QLabel(u"Die Auflösung gilt für PNG und JPEG; SVG und PDF sind in jeder scharf."_s, this);
    hint->setObjectName(u"lblHint"_s);
    hint->setWordWrap(true);
    // Lines that are too short make so many that the rest is squeezed where the font is large.
    hint->setMinimumWidth(hint->fontMetrics().averageCharWidth() * 36);
    auto* rows = new QVBoxLayout(this);
    rows->addLayout(grid);
    rows->addWidget(hint);
    rows->addStretch();
    rows->addLayout(okCancelRow(this));
}

void frmSaveChart::cmdOK_Click() {
    trapped([this] {
        WindowChart::Picture picture = picture_;
        picture.millimetres = {txtWidth_->value(), txtHeight_->value()};
        picture.dpi = txtDpi_->value();
        const QString fault = chartSizeFault(picture.millimetres, picture.dpi);
        if (fault.isEmpty())
            answer_ = picture;
        else
            ui::asker().messageBox({.text = fault, .icon = ui::Icon::Exclamation});
    });
    if (answer_)
        cmdCancel_Click();
}

void frmSaveChart::cmdCancel_Click() {
    done(QDialog::Rejected);
    focusMainWindow();
}
