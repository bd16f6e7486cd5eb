#include "app/frmStartPage.h"

#include "app/globals.h"
#include "platform/system/Paths.h"
#include "widgets/Form.h"
#include "widgets/Icons.h"
#include "widgets/PageArea.h"
#include "widgets/toolTips.h"

#include <QCommandLinkButton>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// So many characters of a path fit; what is cut stands in the tooltip.
constexpr int pathCharacters = 70;

/// A command link that shows that it has the keyboard, and takes Enter; by itself it shows the mouse alone and takes
/// Enter only in a dialog.
class WayButton : public QCommandLinkButton {
public:
    using QCommandLinkButton::QCommandLinkButton;

protected:
    void paintEvent(QPaintEvent* event) override {
        QCommandLinkButton::paintEvent(event);
        if (!hasFocus())
            return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 3, 3);
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            click();
        else
            QCommandLinkButton::keyPressEvent(event);
    }
};

} // namespace

frmStartPage::frmStartPage(std::function<void(const QString&)> perform, QWidget* parent)
    : QWidget(parent), perform_(std::move(perform)) {
    setObjectName(u"startPage"_s);
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    const int unit = fontMetrics().height();
    column->setContentsMargins(unit * 2, unit * 2, unit * 2, unit * 2);
    column->setSpacing(unit / 4);
    lblWelcome_ = withOwnText(new QLabel(page), u"lblStartWelcome"_s);
    QFont large = lblWelcome_->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    lblWelcome_->setFont(large);
    column->addStretch();
    column->addWidget(lblWelcome_);
    column->addSpacing(unit);
    cmdOpen_ = way(*column, u"cmdStartOpen"_s, u"open"_s, u"mnFileOpen"_s);
    cmdImport_ = way(*column, u"cmdStartImport"_s, u"import"_s, u"mnuFileImport"_s);
    cmdSample_ = way(*column, u"cmdStartSample"_s, u"catalogue"_s, u"sample"_s);
    column->addSpacing(unit);
    lblRecent_ = withOwnText(new QLabel(page), u"lblStartRecent"_s);
    QFont bold = lblRecent_->font();
    bold.setBold(true);
    lblRecent_->setFont(bold);
    column->addWidget(lblRecent_);
    recent_ = new QVBoxLayout;
    recent_->setSpacing(column->spacing());
    column->addLayout(recent_);
    column->addStretch();
    page->setFixedWidth(fontMetrics().averageCharWidth() * (pathCharacters + 24));
    auto* centred = new QWidget(this);
    auto* row = new QHBoxLayout(centred);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch();
    row->addWidget(page);
    row->addStretch();
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(new PageArea(centred));
}

QCommandLinkButton* frmStartPage::way(QVBoxLayout& column, const QString& name, const QString& icon,
                                      const QString& command) {
    auto* button = withOwnText<QCommandLinkButton>(new WayButton(this), name);
    const int size = fontMetrics().height() * 3 / 2;
    button->setIcon(Icons::get(icon));
    button->setIconSize(QSize(size, size));
    connect(button, &QCommandLinkButton::clicked, this, [this, command] {
        // The page goes while its catalogue opens; the click is over by then.
        QTimer::singleShot(0, this, [this, command] { perform_(command); });
    });
    column.addWidget(button);
    return button;
}

void frmStartPage::say(QCommandLinkButton& button, const QString& caption, const QString& description) {
    button.setText(caption);
    button.setDescription(description);
    button.setAccessibleDescription(description);
}

void frmStartPage::showWays(const Ways& ways) {
    lblWelcome_->setText(TranslateText(u"Willkommen bei Varidex"_s));
    lblRecent_->setText(TranslateText(u"Zuletzt geöffnet"_s));
    say(*cmdOpen_, TranslateText(u"Da&tenbank öffnen..."_s),
        TranslateText(u"einen Katalog von Studien, der auf diesem Rechner liegt"_s));
    say(*cmdImport_, TranslateText(u"&Umfragedatei importieren..."_s),
        ways.canImport ? TranslateText(u"eine Datei von SPSS oder Stata, in einen neuen oder vorhandenen Katalog"_s)
                       : TranslateText(u"Das Programm vdx, das sie liest, liegt nicht neben diesem."_s));
    cmdImport_->setEnabled(ways.canImport);
    say(*cmdSample_, TranslateText(u"Bei&spielarchiv öffnen"_s),
        !ways.hasSample      ? TranslateText(u"Es liegt nicht bei diesem Programm."_s)
        : ways.sampleIsBuilt ? TranslateText(u"erfundene Umfragen zum Ausprobieren"_s)
                             : TranslateText(u"erfundene Umfragen zum Ausprobieren; beim ersten Mal wird daraus ein "
                                             u"Katalog gebaut"_s));
    cmdSample_->setEnabled(ways.hasSample && (ways.sampleIsBuilt || ways.canImport));
    showRecent(ways.recent);
}

void frmStartPage::showRecent(const std::vector<Recent>& files) {
    lblRecent_->setVisible(!files.empty());
    firstThere_ = nullptr;
    while (const std::unique_ptr<QLayoutItem> item{recent_->takeAt(0)})
        delete item->widget();
    for (int i = 1; i <= static_cast<int>(files.size()); ++i) {
        const auto& [path, isGone] = files[static_cast<size_t>(i) - 1];
        QCommandLinkButton& button = *way(*recent_, arrayName(u"cmdStartRecent"_s, i),
                                          isGone ? u"warning"_s : u"catalogue"_s, arrayName(u"mnuFileMRU"_s, i));
        const QString file = Paths::native(path);
        const int room = fontMetrics().averageCharWidth() * pathCharacters;
        const QString folder = fontMetrics().elidedText(Paths::folderOf(file), Qt::ElideMiddle, room);
        const QString name = fontMetrics().elidedText(Paths::fileOf(file), Qt::ElideMiddle, room);
        say(button, u'&' + QString::number(i) + u"  "_s + QString(name).replace(u'&', u"&&"_s),
            isGone ? folder + u" ("_s + TranslateText(u"nicht mehr da"_s) + u')' : folder);
        button.setToolTip(asToolTip(file));
        if (!firstThere_ && !isGone)
            firstThere_ = &button;
    }
}

void frmStartPage::takeFocus() {
    (firstThere_ ? firstThere_ : cmdOpen_)->setFocus();
}
