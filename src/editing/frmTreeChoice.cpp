#include "editing/frmTreeChoice.h"

#include "app/globals.h"
#include "language/mdLanguage.h"
#include "widgets/Icons.h"
#include "widgets/okCancelRow.h"
#include "widgets/toolTips.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// Such an entry leads to those below it and says why it cannot be chosen itself, so it is not disabled, but looks so.
class PaleWhereNotSelectable : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!(index.flags() & Qt::ItemIsSelectable))
            option->state &= ~QStyle::State_Enabled;
    }
};

} // namespace

frmTreeChoice::frmTreeChoice(const ui::TreeChoice& choice, QWidget* parent)
    : QDialog(parent), Form(*this, u"frmTreeChoice"_s), choice_(choice), entries_(new QStandardItemModel(this)),
      shown_(new QSortFilterProxyModel(this)) {
    setWindowTitle(choice.title);
    fill();
    build();
    mdLanguage::SetCtrlProps(*this);
    setWindowTitle(choice.title); // it says what is to be done with the entry
    refreshTitles();
    connectControls();
    narrow(QString());
    txtFind_->setFocus();
}

frmTreeChoice::~frmTreeChoice() = default;

std::optional<int> frmTreeChoice::ask(const ui::TreeChoice& choice) {
    frmTreeChoice window(choice, QApplication::activeWindow());
    return window.exec() == QDialog::Accepted ? window.chosen() : std::nullopt;
}

void frmTreeChoice::fill() {
    std::vector<QStandardItem*> items;
    for (const ui::TreeChoice::Entry& entry : choice_.entries) {
        auto* item = new QStandardItem(entry.text.simplified());
        item->setData(static_cast<int>(items.size()), Qt::UserRole);
        item->setEditable(false);
        item->setSelectable(entry.selectable);
        if (!entry.icon.isEmpty())
            item->setIcon(Icons::get(entry.icon));
        if (!entry.selectable) {
            item->setToolTip(plainToolTip(entry.why));
            item->setData(entry.why, Qt::AccessibleDescriptionRole);
        }
        QStandardItem* parent =
            entry.parent < 0 ? entries_->invisibleRootItem() : items[static_cast<size_t>(entry.parent)];
        parent->appendRow(item);
        items.push_back(item);
    }
    shown_->setRecursiveFilteringEnabled(true);
    shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    shown_->setSourceModel(entries_);
}

void frmTreeChoice::build() {
    auto* lblFind = new QLabel(u"&Eintrag suchen:"_s, this);
    lblFind->setObjectName(u"lblFind"_s);
    txtFind_ = withOwnText(new QLineEdit(this), u"txtFind"_s);
    txtFind_->setClearButtonEnabled(true);
    txtFind_->installEventFilter(this);
    lblFind->setBuddy(txtFind_);
    tvChoice_ = withOwnText(new QTreeView(this), u"tvChoice"_s);
    tvChoice_->setModel(shown_);
    tvChoice_->setHeaderHidden(true);
    tvChoice_->setUniformRowHeights(true);
    tvChoice_->setExpandsOnDoubleClick(false);
    tvChoice_->setItemDelegate(new PaleWhereNotSelectable(tvChoice_));
    lblWhy_ = withOwnText(new QLabel(this), u"lblWhy"_s);
    lblWhy_->setTextFormat(Qt::PlainText);
    lblWhy_->setWordWrap(true);
    // There from the beginning, so that nothing moves when it is needed.
    lblWhy_->setMinimumHeight(fontMetrics().lineSpacing() * 2);
    lblWhy_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* column = new QVBoxLayout(this);
    column->addWidget(lblFind);
    column->addWidget(txtFind_);
    column->addWidget(tvChoice_, 1);
    column->addWidget(lblWhy_);
    column->addLayout(okCancelRow(this));
    cmdOK_ = findChild<QPushButton*>(u"cmdOK"_s);
    resize(fontMetrics().averageCharWidth() * 70, fontMetrics().lineSpacing() * 30);
}

void frmTreeChoice::connectControls() {
    connect(txtFind_, &QLineEdit::textChanged, this, [this](const QString& text) { narrow(text); });
    connect(tvChoice_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { currentChanged(); });
    connect(tvChoice_, &QTreeView::doubleClicked, this, [this] { cmdOK_Click(); });
}

void frmTreeChoice::refreshTitles() {
    tvChoice_->setAccessibleName(TranslateText(u"Einträge"_s));
}

/// The line of the search is where one types; these keys go on to the tree from there.
bool frmTreeChoice::eventFilter(QObject* watched, QEvent* event) {
    if (watched == txtFind_ && event->type() == QEvent::KeyPress)
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            QApplication::sendEvent(tvChoice_, event);
            return true;
        default:
            break;
        }
    return QDialog::eventFilter(watched, event);
}

int frmTreeChoice::placeOf(const QModelIndex& index) const {
    return index.isValid() ? index.data(Qt::UserRole).toInt() : -1;
}

std::optional<int> frmTreeChoice::chosen() const {
    const int place = placeOf(tvChoice_->currentIndex());
    if (place < 0 || !choice_.entries[static_cast<size_t>(place)].selectable)
        return std::nullopt;
    return place;
}

void frmTreeChoice::goTo(const QModelIndex& index) {
    tvChoice_->setCurrentIndex(index);
    tvChoice_->scrollTo(index);
}

/// Shows the entries with a text and goes to the first of them; without a text all, at the one that was current.
void frmTreeChoice::narrow(const QString& text) {
    const int before = placeOf(tvChoice_->currentIndex());
    shown_->setFilterFixedString(text.trimmed());
    if (!text.trimmed().isEmpty()) {
        tvChoice_->expandAll();
        goTo(firstMatch({}, text.trimmed()));
    } else {
        const int place = before >= 0 ? before : choice_.current;
        const QModelIndexList found =
            shown_->match(shown_->index(0, 0), Qt::UserRole, place, 1, Qt::MatchExactly | Qt::MatchRecursive);
        tvChoice_->expandToDepth(0);
        if (!found.isEmpty())
            goTo(found.front());
    }
    currentChanged();
}

/// One that can be chosen, if there is one; an invalid index without any.
QModelIndex frmTreeChoice::firstMatch(const QModelIndex& parent, const QString& text) const {
    QModelIndex second;
    for (int row = 0; row < shown_->rowCount(parent); ++row) {
        const QModelIndex index = shown_->index(row, 0, parent);
        if (index.data().toString().contains(text, Qt::CaseInsensitive)) {
            if (index.flags() & Qt::ItemIsSelectable)
                return index;
            second = second.isValid() ? second : index;
        }
        const QModelIndex below = firstMatch(index, text);
        if (below.isValid() && (below.flags() & Qt::ItemIsSelectable))
            return below;
        second = second.isValid() ? second : below;
    }
    return second;
}

void frmTreeChoice::currentChanged() {
    const int place = placeOf(tvChoice_->currentIndex());
    const ui::TreeChoice::Entry* entry = place < 0 ? nullptr : &choice_.entries[static_cast<size_t>(place)];
    cmdOK_->setEnabled(entry && entry->selectable);
    if (entry)
        lblWhy_->setText(entry->selectable ? QString() : entry->why);
    else
        lblWhy_->setText(TranslateText(u"Kein Eintrag hat diesen Text."_s));
    tvChoice_->setAccessibleDescription(lblWhy_->text());
}

void frmTreeChoice::cmdOK_Click() {
    if (chosen())
        accept();
}

void frmTreeChoice::cmdCancel_Click() {
    reject();
}
