#include "app/frmSplash.h"

#include "app/frmStatus.h"
#include "app/globals.h"
#include "config/CProfile.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/ui/Asker.h"
#include "widgets/Icons.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// A label whose text is the same in every language.
QLabel* fixedLabel(const QString& name, const QString& text, double size, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setProperty("CtrlTyp", QString());
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * size);
    font.setBold(size > 1.5);
    label->setFont(font);
    return label;
}

QPushButton* languageButton(int language, const QString& caption, const QString& tooltip, QWidget* parent) {
    auto* button = new QPushButton(Icons::get(language == 0 ? u"502"_s : u"503"_s), caption, parent);
    button->setObjectName(arrayName(u"cmdLanguage"_s, language));
    button->setToolTip(tooltip);
    const int height = button->fontMetrics().height();
    button->setIconSize(QSize(3 * height, 2 * height));
    button->setMinimumSize(height * 9, height * 3);
    return button;
}

} // namespace

frmSplash::frmSplash() : Form(*this, u"frmSplash"_s), chkSys_(new QCheckBox(this)) {
    setWindowTitle(ApplicationInfo::title);
    setWindowIcon(Icons::get(u"varidex"_s));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    const int unit = fontMetrics().height();

    auto* picture = new QLabel(this);
    picture->setPixmap(Icons::get(u"varidex"_s).pixmap(QSize(unit * 4, unit * 4), devicePixelRatioF()));
    auto* names = new QVBoxLayout;
    names->setSpacing(unit / 4);
    names->addWidget(fixedLabel(u"lblProductName"_s, ApplicationInfo::productName, 2.2, this));
    names->addWidget(fixedLabel(
        u"lblVersion"_s, u"Version %1.%2"_s.arg(ApplicationInfo::majorVersion).arg(ApplicationInfo::minorVersion), 1.0,
        this));
    names->addWidget(fixedLabel(u"lblCompany"_s, ApplicationInfo::companyName, 1.0, this));
    QLabel* platform = fixedLabel(u"lblPlatform"_s, QString(), 1.0, this);
    platform->hide();
    auto* head = new QHBoxLayout;
    head->setSpacing(unit * 3 / 2);
    head->addWidget(picture);
    head->addLayout(names, 1);

    QLabel* warning =
        fixedLabel(u"lblWarning"_s, u"Bitte wählen Sie eine Sprache\r\nPlease select a language"_s, 1.0, this);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(unit);
    buttons->addWidget(languageButton(0, u"&Deutsch"_s, u"Sprachauswahl: Deutsch"_s, this));
    buttons->addWidget(languageButton(1, u"&English"_s, u"Sprachauswahl: Englisch"_s, this));
    for (const int language : {0, 1})
        connect(qobject_cast<QPushButton*>(buttons->itemAt(language)->widget()), &QPushButton::clicked, this,
                [this, language] { trapped([&] { cmdLanguage_Click(language); }); });
    // Whoever sees this has not chosen a language yet.
    chkSys_->setText(u"Begrüßungsdialog beim Start anzeigen\nShow this window at start"_s);
    withOwnText(chkSys_, u"chkSys"_s);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(unit * 2, unit * 2, unit * 2, unit * 3 / 2);
    all->setSpacing(unit);
    all->addLayout(head);
    all->addSpacing(unit / 2);
    all->addWidget(warning);
    all->addLayout(buttons);
    all->addWidget(chkSys_);
    mdLanguage::SetCtrlProps(*this);
    // It comes by itself at the very first start, and later only where it was asked for.
    chkSys_->setChecked(storedSetting(SettingsKeys::startWindow, u"0"_s).toString() == u"1");
    // Whoever sees it is to choose; the language in force is the nearest choice.
    QWidget* choices[] = {buttons->itemAt(0)->widget(), buttons->itemAt(1)->widget()};
    setTabOrder(choices[0], choices[1]);
    setTabOrder(choices[1], chkSys_);
    choices[gLanguage == 0 ? 0 : 1]->setFocus();
    adjustSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

frmSplash::~frmSplash() = default;

void frmSplash::showModal() {
    frmSplash().exec();
}

void frmSplash::cmdLanguage_Click(int language) {
    hide();
    gLanguage = static_cast<qint16>(language);
    frmStatus::showWait();
    const bool again = chkSys_->isChecked();
    mdLanguage::SaveSysSettings(static_cast<qint16>(language), again ? 1 : 0);
    CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, SettingsKeys::startWindow,
                                again ? u"1"_s : u"0"_s);
    accept();
}

void frmSplash::keyPressEvent(QKeyEvent* event) {
    event->accept();
}

void frmSplash::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        ui::asker().setPointer(ui::Pointer::Default);
}
