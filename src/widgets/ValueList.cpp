#include "widgets/ValueList.h"

#include "app/globals.h"
#include "platform/dao/Value.h"
#include "platform/ui/Asker.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Form.h"
#include "widgets/emptyList.h"
#include "widgets/rowList.h"
#include "widgets/toolTips.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

// ---- the rows

void ValueListModel::setValues(const std::vector<DocumentedValue>& values) {
    beginResetModel();
    values_ = values;
    endResetModel();
}

QString ValueListModel::rowText(int row, const QString& parting) const {
    QStringList texts;
    for (int column = 0; column < columns; ++column)
        texts << index(row, column).data().toString();
    while (texts.last().isEmpty() && texts.size() > 1)
        texts.removeLast();
    return texts.join(parting);
}

int ValueListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(values_.size());
}

int ValueListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant ValueListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const DocumentedValue& value = values_[static_cast<size_t>(index.row())];
    const QString texts[] = {value.code, value.label, value.missing ? TranslateText(u"Missing"_s) : QString()};
    switch (role) {
    case Qt::DisplayRole:
        return texts[index.column()];
    case Qt::ToolTipRole:
        return plainToolTip(texts[index.column()]);
    case Qt::AccessibleTextRole:
        // Whoever goes from code to code hears what each stands for.
        return index.column() == Code ? rowText(index.row(), u", "_s) : texts[index.column()];
    case Qt::TextAlignmentRole:
        return QVariant(Qt::AlignVCenter |
                        (index.column() == Code && dao::textToNumber(value.code) ? Qt::AlignRight : Qt::AlignLeft));
    default:
        return {};
    }
}

// ---- the table

ValueTable::ValueTable(ValueListModel& model, QWidget* parent) : QTableView(parent), model_(model) {
    setModel(&model);
    showAsRows(*this);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    horizontalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(0);
    connect(&model, &ValueListModel::modelReset, this, &ValueTable::spanLabels);
    connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) {
        if (chosen && QGuiApplication::keyboardModifiers() == Qt::NoModifier)
            chosen(index.row());
    });
}

void ValueTable::fitColumns() {
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + qMax(4, fontMetrics().height() / 3));
    // Of many values the first and the last tell enough: they are in order.
    constexpr int measured = 500;
    const int count = model_.rowCount();
    const int air = fontMetrics().averageCharWidth() * 2;
    int code = 0;
    bool anyMissing = false;
    for (int row = 0; row < count; ++row) {
        const DocumentedValue& value = model_.values()[static_cast<size_t>(row)];
        anyMissing = anyMissing || value.missing;
        if (row < measured || row >= count - measured)
            code = std::max(code, fontMetrics().horizontalAdvance(value.code.left(100)));
    }
    const int room = viewport()->width();
    const int mark = anyMissing ? fontMetrics().horizontalAdvance(TranslateText(u"Missing"_s)) + air : 0;
    code = std::min(code + air, std::max(room * 2 / 5, air));
    horizontalHeader()->resizeSection(ValueListModel::Code, code);
    horizontalHeader()->resizeSection(ValueListModel::Missing, mark);
    horizontalHeader()->resizeSection(ValueListModel::Label, std::max(room - code - mark, air));
}

/// Labels of values that are not missing have the room of the mark, too: where it is narrow they would look alike.
void ValueTable::spanLabels() {
    clearSpans();
    const std::vector<DocumentedValue>& values = model_.values();
    if (std::ranges::none_of(values, &DocumentedValue::missing))
        return;
    for (size_t row = 0; row < values.size(); ++row)
        if (!values[row].missing)
            setSpan(static_cast<int>(row), ValueListModel::Label, 1, 2);
}

void ValueTable::setHint(const QString& hint) {
    hint_ = hint;
    viewport()->update();
}

void ValueTable::copySelected() const {
    QModelIndexList rows = selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QStringList lines;
    for (const QModelIndex& row : rows)
        lines << model_.rowText(row.row(), u"\t"_s);
    if (lines.size() == model_.rowCount() && !facts.isEmpty())
        lines << facts;
    if (!lines.isEmpty())
        ui::asker().setClipboard(lines.join(u"\r\n"_s), QString());
}

/// Copying here is meant for the list, whatever the window around it copies.
bool ValueTable::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        event->accept();
        return true;
    }
    return QTableView::event(event);
}

/// A text that is seen as a whole needs no tooltip.
bool ValueTable::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const QModelIndex cell = indexAt(static_cast<QHelpEvent*>(event)->pos());
        if (cell.isValid() && sizeHintForIndex(cell).width() <= visualRect(cell).width()) {
            QToolTip::hideText();
            return true;
        }
    }
    return QTableView::viewportEvent(event);
}

void ValueTable::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (event->matches(QKeySequence::Copy))
        copySelected();
    else if (chosen && currentIndex().isValid() &&
             (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space))
        chosen(currentIndex().row());
    else
        QTableView::keyPressEvent(event);
}

/// Rows are what the keys go through.
QModelIndex ValueTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    if (action == MoveHome || action == MoveEnd)
        return model_.index(action == MoveHome ? 0 : model_.rowCount() - 1, ValueListModel::Code);
    return QTableView::moveCursor(action, modifiers);
}

void ValueTable::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (model_.rowCount() == 0)
        paintHint(*this, hint_);
}

void ValueTable::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    fitColumns();
}

void ValueTable::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitColumns();
}

// ---- list and facts

ValueList::ValueList(const QString& suffix, QWidget* parent) : QWidget(parent) {
    table_ = withOwnText(new ValueTable(model_, this), u"lvValues"_s + suffix);
    setMinimumHeight(fontMetrics().height() * 2);
    table_->chosen = [this](int row) {
        if (onChosen)
            onChosen(model_.values()[static_cast<size_t>(row)].code);
    };
    facts_ = withOwnText(new ElidedLabel(this), u"lblValues"_s + suffix);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(qMax(3, fontMetrics().height() / 8));
    column->addWidget(table_, 1);
    column->addWidget(facts_);
    refreshTexts();
}

void ValueList::show(const VariableValues& values) {
    if (!std::exchange(empty_, false) && values_ == values)
        return;
    values_ = values;
    model_.setValues(values.values);
    table_->scrollToTop();
    refreshTexts();
}

void ValueList::clear() {
    empty_ = true;
    values_ = {};
    model_.setValues({});
    refreshTexts();
}

void ValueList::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    showFacts();
}

/// Where there is room for little, it is for the values.
void ValueList::showFacts() {
    facts_->setVisible(!facts_->text().isEmpty() && height() >= fontMetrics().height() * 4);
}

QString ValueList::factsText() const {
    QStringList lines;
    if (values_.cut)
        lines << TranslateText(u"Gezeigt werden die ersten %1 Werte."_s).arg(VariableValues::most);
    if (!values_.missing.trimmed().isEmpty())
        lines << TranslateText(u"Missing-Definition:"_s) + u' ' + values_.missing +
                     (values_.missingIsClear ? QString() : u" ("_s + TranslateText(u"nicht lesbar"_s) + u')');
    else if (!empty_)
        lines << TranslateText(u"Keine Missing-Definition"_s);
    if (!values_.format.trimmed().isEmpty())
        lines << TranslateText(u"Format:"_s) + u' ' + values_.format;
    return lines.join(u" · "_s);
}

void ValueList::refreshTexts() {
    table_->facts = factsText();
    facts_->setText(table_->facts);
    facts_->setToolTip(plainToolTip(table_->facts));
    showFacts();
    table_->setAccessibleName(TranslateText(u"Werte der Variable"_s));
    table_->setAccessibleDescription(facts_->text());
    table_->setHint(empty_ ? QString() : TranslateText(u"Zu dieser Variable sind keine Werte dokumentiert."_s));
    table_->fitColumns();
}
