#include "editing/frmDocumentPicker.h"

#include "diagnostics/errors.h"
#include "explorer/frmExplorer.h"
#include "language/mdLanguage.h"
#include "platform/dao/TextOrder.h"
#include "widgets/Desktop.h"
#include "widgets/emptyList.h"
#include "widgets/okCancelRow.h"
#include "widgets/oneLine.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Says so where there is nothing to choose.
class DocumentLines : public QListWidget {
public:
    using QListWidget::QListWidget;
    QString hint;

protected:
    void paintEvent(QPaintEvent* event) override {
        QListWidget::paintEvent(event);
        if (!currentItem())
            paintHint(*this, hint);
    }
};

/// The study that the user is at: that of the selected row, or of the tree's node.
QString studyInFocus(const frmExplorer& explorer) {
    const ExplorerModel& model = explorer.model();
    if (explorer.place() == frmExplorer::Place::List) {
        const std::vector<int> rows = explorer.selectedRows();
        return rows.empty() ? QString() : model.list.rows[static_cast<size_t>(rows.front())].cell(1);
    }
    const CatalogueNode* node = model.selectedNode();
    const bool study =
        explorer.place() == frmExplorer::Place::Tree && model.state.bIsStudy && node && node != model.tree.root();
    return study ? node->Key.mid(1) : QString();
}

bool isMoving(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

} // namespace

frmDocumentPicker::frmDocumentPicker(const QString& windowName, DocumentList::Kind kind, QWidget* parent)
    : QDialog(parent), Form(*this, windowName), list_(kind) {
    const BusyScope building;
    buildControls();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
    list_.fill();
    for (const DocumentList::Line& line : list_.lines())
        lstAuswahl_->addItem(inOneLine(line.text));
    lstAuswahl_->setCurrentRow(list_.lines().empty() ? -1 : 0);
    lstAuswahl_->setFocus();
}

frmDocumentPicker::~frmDocumentPicker() = default;

void frmDocumentPicker::buildControls() {
    txtFilter_ = withOwnText(new QLineEdit(this), u"txtFilter"_s);
    txtFilter_->setClearButtonEnabled(true);
    txtFilter_->installEventFilter(this);
    connect(txtFilter_, &QLineEdit::textChanged, this, [this](const QString& words) { narrow(words); });
    lstAuswahl_ = withOwnText(new DocumentLines(this), u"lstAuswahl"_s);
    lstAuswahl_->setUniformItemSizes(true);
    lstAuswahl_->setTextElideMode(Qt::ElideMiddle); // parts differ at the end
    lstAuswahl_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lstAuswahl_->installEventFilter(this);
    connect(lstAuswahl_, &QListWidget::itemDoubleClicked, this, [this] {
        GestureScope::startAnew();
        cmdOK_Click();
    });
    auto* column = new QVBoxLayout(this);
    column->addWidget(txtFilter_);
    column->addWidget(lstAuswahl_, 1);
    column->addLayout(okCancelRow(this));
}

/// What is typed in the list goes into the line above it, and the keys that move there go on moving in the list.
bool frmDocumentPicker::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool writes = !key->text().isEmpty() && key->text().front().isPrint() &&
                        !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    QWidget* other = nullptr;
    if (watched == lstAuswahl_ && (writes || key->key() == Qt::Key_Backspace)) {
        other = txtFilter_;
        txtFilter_->setFocus();
        txtFilter_->end(false);
    } else if (watched == txtFilter_ && isMoving(key->key())) {
        other = lstAuswahl_;
    }
    if (!other)
        return QDialog::eventFilter(watched, event);
    QApplication::sendEvent(other, event);
    return true;
}

void frmDocumentPicker::narrow(const QString& words) {
    const QStringList wanted = dao::foldedText(words).split(u' ', Qt::SkipEmptyParts);
    int first = -1;
    for (int i = 0; i < lstAuswahl_->count(); ++i) {
        const QString text = dao::foldedText(lstAuswahl_->item(i)->text());
        const bool fits = std::ranges::all_of(wanted, [&](const QString& word) { return text.contains(word); });
        lstAuswahl_->item(i)->setHidden(!fits);
        if (fits && first < 0)
            first = i;
    }
    QListWidgetItem* current = lstAuswahl_->currentItem();
    if (!current || current->isHidden())
        lstAuswahl_->setCurrentRow(first);
    if ((current = lstAuswahl_->currentItem()))
        lstAuswahl_->scrollToItem(current);
    lstAuswahl_->viewport()->update();
}

void frmDocumentPicker::goTo(const QString& study) {
    const int line = list_.lineOf(study);
    if (line < 0)
        return;
    lstAuswahl_->setCurrentRow(line);
    lstAuswahl_->scrollToItem(lstAuswahl_->item(line), QAbstractItemView::PositionAtTop);
}

void frmDocumentPicker::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // Only now the list has its height.
    if (QListWidgetItem* current = lstAuswahl_->currentItem())
        lstAuswahl_->scrollToItem(current, QAbstractItemView::PositionAtTop);
}

void frmDocumentPicker::run(const frmExplorer* active) {
    if (active)
        goTo(studyInFocus(*active));
    exec();
}

void frmDocumentPicker::cmdOK_Click() {
    bool done = false;
    trapped([&] { done = list_.open(lstAuswahl_->currentRow()); });
    if (done)
        cmdCancel_Click();
}

void frmDocumentPicker::cmdCancel_Click() {
    done(QDialog::Rejected);
    focusMainWindow();
}

void frmDocumentPicker::refreshTitles() {
    txtFilter_->setPlaceholderText(TranslateText(u"Nummer oder Titel enthält …"_s));
    txtFilter_->setAccessibleName(TranslateText(u"Nummer oder Titel enthält …"_s));
    lstAuswahl_->setAccessibleName(TranslateText(u"Studien"_s));
    static_cast<DocumentLines*>(lstAuswahl_)->hint = TranslateText(u"Keine Studie gefunden."_s);
}

QSize frmDocumentPicker::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 24};
}
