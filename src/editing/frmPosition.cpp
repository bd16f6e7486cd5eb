#include "editing/frmPosition.h"

#include "app/globals.h"
#include "language/mdLanguage.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

int frmPosition::repeatTime = 1728;

frmPosition::frmPosition(const ui::LineOrder& order, QWidget* parent)
    : QDialog(parent), Form(*this, u"frmPosition"_s), lstPosition_(new QListWidget(this)), repeat_(new QTimer(this)) {
    setWindowTitle(u"Position einstellen"_s);
    build(order);
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
    lstPosition_->setFocus();
}

frmPosition::~frmPosition() = default;

std::optional<std::vector<int>> frmPosition::ask(const ui::LineOrder& order) {
    frmPosition window(order, QApplication::activeWindow());
    if (window.exec() != QDialog::Accepted)
        return std::nullopt;
    return window.places();
}

void frmPosition::build(const ui::LineOrder& order) {
    withOwnText(lstPosition_, u"lstPosition"_s);
    lstPosition_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (int place = 0; place < static_cast<int>(order.lines.size()); ++place) {
        // A name with line breaks takes one line as every other.
        auto* item = new QListWidgetItem(order.lines[place].simplified(), lstPosition_);
        item->setData(Qt::UserRole, place);
    }
    lstPosition_->setCurrentRow(order.current);
    auto* cmdUp = moveButton(u"cmdUp"_s, u"Nach &oben"_s, Qt::Key_Up, &frmPosition::cmdUp_Click);
    auto* cmdDown = moveButton(u"cmdDown"_s, u"Nach &unten"_s, Qt::Key_Down, &frmPosition::cmdDown_Click);
    auto* cmd_OK = new QPushButton(u"OK"_s, this);
    cmd_OK->setObjectName(u"cmd_OK"_s);
    cmd_OK->setDefault(true);
    auto* cmd_Cancel = new QPushButton(u"Abbrechen"_s, this);
    cmd_Cancel->setObjectName(u"cmd_Cancel"_s);
    connect(cmd_OK, &QPushButton::clicked, this, [this] { cmd_OK_Click(); });
    connect(cmd_Cancel, &QPushButton::clicked, this, [this] { cmd_Cancel_Click(); });
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(cmdUp);
    buttons->addWidget(cmdDown);
    buttons->addStretch();
    buttons->addWidget(cmd_OK);
    buttons->addWidget(cmd_Cancel);
    auto* row = new QHBoxLayout(this);
    row->addWidget(lstPosition_, 1);
    row->addLayout(buttons);
    resize(fontMetrics().averageCharWidth() * 70, fontMetrics().lineSpacing() * 22);
}

/// It steps when it is pressed, and again as long as it is held.
QAbstractButton* frmPosition::moveButton(const QString& name, const QString& text, int key,
                                         void (frmPosition::*step)()) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    button->setToolTip(u" "_s); // in the text tables
    button->setAutoDefault(false);
    const auto move = [this, step] { (this->*step)(); };
    connect(button, &QPushButton::pressed, this, [this, move] {
        move();
        repeat_->disconnect();
        connect(repeat_, &QTimer::timeout, this, move);
        repeat_->start(repeatTime);
    });
    connect(button, &QPushButton::released, repeat_, &QTimer::stop);
    connect(new QShortcut(QKeySequence(Qt::ALT | key), this), &QShortcut::activated, this, move);
    return button;
}

void frmPosition::refreshTitles() {
    lstPosition_->setAccessibleName(windowTitle());
}

void frmPosition::cmdUp_Click() {
    moveTo(lstPosition_->currentRow() - 1);
}

void frmPosition::cmdDown_Click() {
    moveTo(lstPosition_->currentRow() + 1);
}

void frmPosition::moveTo(int row) {
    if (lstPosition_->currentRow() < 0 || row < 0 || row >= lstPosition_->count())
        return;
    lstPosition_->insertItem(row, lstPosition_->takeItem(lstPosition_->currentRow()));
    lstPosition_->setCurrentRow(row);
}

std::vector<int> frmPosition::places() const {
    std::vector<int> places;
    for (int row = 0; row < lstPosition_->count(); ++row)
        places.push_back(lstPosition_->item(row)->data(Qt::UserRole).toInt());
    return places;
}

void frmPosition::cmd_OK_Click() {
    accept();
}

void frmPosition::cmd_Cancel_Click() {
    reject();
}
