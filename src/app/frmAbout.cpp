#include "app/frmAbout.h"

#include "app/globals.h"
#include "language/mdLanguage.h"
#include "platform/dao/DBEngine.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"
#include "widgets/Icons.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSysInfo>
#include <QVBoxLayout>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

QString version() {
    return u"%1.%2.%3"_s.arg(ApplicationInfo::majorVersion)
        .arg(ApplicationInfo::minorVersion)
        .arg(ApplicationInfo::revision);
}

template<class Control>
Control* named(Control* control, const QString& name) {
    control->setObjectName(name);
    return control;
}

} // namespace

frmAbout::frmAbout(QWidget* parent)
    : QDialog(parent), Form(*this, u"frmAbout"_s), txtSysInfo_(named(new QPlainTextEdit(this), u"txtSysInfo"_s)),
      cmdCopy_(named(new QPushButton(Icons::get(u"copy"_s), u"&Kopieren"_s, this), u"cmdCopy"_s)) {
    setWindowTitle(u"Info über Varidex"_s);
    const int unit = fontMetrics().height();
    auto* picture = new QLabel(this);
    picture->setPixmap(Icons::get(u"varidex"_s).pixmap(QSize(unit * 4, unit * 4), devicePixelRatioF()));
    auto* title = named(new QLabel(ApplicationInfo::title, this), u"lblTitle"_s);
    title->setProperty("CtrlTyp", QString());
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    large.setBold(true);
    title->setFont(large);
    auto* number =
        named(new QLabel(u"Version "_s + version() + u"  ·  "_s + ApplicationInfo::companyName, this), u"lblVersion"_s);
    number->setProperty("CtrlTyp", QString());
    auto* description =
        named(new QLabel(u"Kataloge sozialwissenschaftlicher Umfragen: nachschlagen, auszählen, vergleichen."_s, this),
              u"lblDescription"_s);
    description->setWordWrap(true);
    description->setMinimumWidth(description->fontMetrics().averageCharWidth() * 45);

    auto* names = new QVBoxLayout;
    names->setSpacing(unit / 3);
    names->addWidget(title);
    names->addWidget(number);
    names->addWidget(description);
    names->addStretch();
    auto* head = new QHBoxLayout;
    head->setSpacing(unit * 3 / 2);
    head->addWidget(picture, 0, Qt::AlignTop);
    head->addLayout(names, 1);

    txtSysInfo_->setReadOnly(true);
    txtSysInfo_->setTabChangesFocus(true);
    txtSysInfo_->setMinimumHeight(unit * 10);
    txtSysInfo_->hide();
    cmdCopy_->hide();
    auto* cmdSysInfo = named(new QPushButton(u"&Systeminfo..."_s, this), u"cmdSysInfo"_s);
    auto* cmdOK = named(new QPushButton(u"OK"_s, this), u"cmdOK"_s);
    cmdOK->setDefault(true);
    connect(cmdSysInfo, &QPushButton::clicked, this, [this, cmdSysInfo] {
        cmdSysInfo->setEnabled(false);
        showInformation();
    });
    connect(cmdCopy_, &QPushButton::clicked, this, [] { ui::asker().setClipboard(systemInformation(), QString()); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { accept(); });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdSysInfo);
    buttons->addWidget(cmdCopy_);
    buttons->addStretch();
    buttons->addWidget(cmdOK);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(unit * 3 / 2, unit * 3 / 2, unit * 3 / 2, unit);
    all->setSpacing(unit);
    all->addLayout(head);
    all->addWidget(txtSysInfo_, 1);
    all->addLayout(buttons);
    cmdOK->setFocus();
    mdLanguage::SetCtrlProps(*this);
    txtSysInfo_->setAccessibleName(cmdSysInfo->text().remove(u'&'));
}

frmAbout::~frmAbout() = default;

void frmAbout::showInfo(QWidget* parent) {
    std::optional<frmAbout> window;
    {
        const BusyScope building;
        window.emplace(parent);
    }
    window->exec();
}

void frmAbout::showInformation() {
    txtSysInfo_->setPlainText(systemInformation());
    txtSysInfo_->show();
    cmdCopy_->show();
    txtSysInfo_->setFocus();
    resize(sizeHint());
}

QString frmAbout::systemInformation() {
    QStringList lines = {ApplicationInfo::title + u' ' + version(), u"Qt "_s + QString::fromLatin1(qVersion()),
                         u"SQLite "_s + dao::DBEngine::storeVersion(),
                         QSysInfo::prettyProductName() + u" ("_s + QSysInfo::kernelType() + u' ' +
                             QSysInfo::kernelVersion() + u", "_s + QSysInfo::currentCpuArchitecture() + u')',
                         QGuiApplication::platformName() + u", "_s + QLocale().name()};
    for (const QScreen* screen : QGuiApplication::screens())
        lines << u"%1 x %2, %3 dpi, x %4"_s.arg(screen->size().width())
                     .arg(screen->size().height())
                     .arg(qRound(screen->logicalDotsPerInch()))
                     .arg(screen->devicePixelRatio());
    lines << Paths::native(Paths::applicationFolder());
    return lines.join(u'\n');
}
