#include "widgets/ExplorerPanel.h"

#include "explorer/VariablePanel.h"
#include "explorer/iconNames.h"
#include "widgets/ElidedLabel.h"
#include "widgets/FactsStrip.h"
#include "widgets/Icons.h"
#include "widgets/ValueList.h"
#include "widgets/toolTips.h"
#include "widgets/twips.h"

#include <QKeyEvent>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSplitter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

ExplorerPanel::ExplorerPanel(const QString& suffix, QWidget* parent) : QWidget(parent) {
    const auto named = [&](auto* control, const QString& name) {
        control->setObjectName(name + suffix);
        control->setProperty("CtrlTyp", QString());
        return control;
    };
    fidName = named(new ElidedLabel(this), u"fidName"_s);
    txtQuestion = named(new QPlainTextEdit(this), u"txtQuestion"_s);
    values = new ValueList(suffix, this);
    sbStatusBarV = named(new FactsStrip(this), u"sbStatusBarV"_s);
    DBList1 = named(new QListWidget(this), u"DBList1"_s);
    txtQuestion->setReadOnly(true);
    txtQuestion->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtQuestion->setTabChangesFocus(true);
    txtQuestion->setUndoRedoEnabled(false);
    txtQuestion->setMinimumHeight(fontMetrics().height() * 2);
    splValues = named(new QSplitter(Qt::Horizontal, this), u"splValues"_s);
    splValues->setChildrenCollapsible(false);
    splValues->addWidget(txtQuestion);
    splValues->addWidget(values);
    DBList1->setUniformItemSizes(true);
    const int line = qMax(16, fontMetrics().height());
    DBList1->setIconSize({line, line});
    DBList1->installEventFilter(this);
    connect(DBList1, &QListWidget::itemDoubleClicked, this, [this] { jump(); });

    column_ = new QVBoxLayout(this);
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(qMax(3, fontMetrics().height() / 8));
    column_->addWidget(fidName);
    column_->addWidget(splValues, 1);
    column_->addWidget(sbStatusBarV);
    column_->addWidget(DBList1);
}

void ExplorerPanel::show(const VariablePanel& panel) {
    // Above nothing stands nothing, though the result set may wait for the next variable.
    fidName->setText(panel.isFilled() ? panel.fidName : QString());
    if (question_ != panel.question) {
        question_ = panel.question;
        const QTextCursor before = txtQuestion->textCursor();
        txtQuestion->setPlainText(panel.question);
        const int last = txtQuestion->document()->characterCount() - 1;
        QTextCursor cursor = txtQuestion->textCursor();
        cursor.setPosition(qMin(before.anchor(), last));
        cursor.setPosition(qMin(before.position(), last), QTextCursor::KeepAnchor);
        txtQuestion->setTextCursor(cursor);
        if (!cursor.hasSelection())
            txtQuestion->verticalScrollBar()->setValue(0); // a question is read from its first line
    }
    // What has no question leaves the room to the values.
    txtQuestion->setVisible(!panel.isFilled() || !panel.question.isEmpty());
    if (panel.isFilled())
        values->show(panel.values);
    else
        values->clear();
    for (const QString& key : factKeys.mid(switchCount)) {
        const VariablePanel::Fact fact = panel.fact(key);
        sbStatusBarV->setText(key, fact.text);
        // The place in the list explains itself; its tip is the window's own.
        if (key != u"Position")
            sbStatusBarV->setToolTipOf(key, fact.toolTip);
    }
}

void ExplorerPanel::showAssignments(const std::vector<Assignment>& assignments) {
    // The same list stays where its user is in it.
    const auto isShown = [&](size_t line) {
        const QListWidgetItem& item = *DBList1->item(static_cast<int>(line));
        return item.data(Qt::UserRole) == assignments[line].key && item.text() == assignments[line].text;
    };
    size_t same = 0;
    while (same < assignments.size() && static_cast<int>(same) < DBList1->count() && isShown(same))
        ++same;
    if (same == assignments.size() && static_cast<int>(same) == DBList1->count())
        return;
    DBList1->clear();
    for (const Assignment& assignment : assignments) {
        auto* item = new QListWidgetItem(Icons::withNumber(iconName(assignment.icon), viewOfKey(assignment.key)),
                                         assignment.text, DBList1);
        item->setData(Qt::UserRole, assignment.key);
    }
    nameAssignments();
}

void ExplorerPanel::nameAssignments() {
    for (int i = 0; i < DBList1->count(); ++i) {
        QListWidgetItem* item = DBList1->item(i);
        item->setToolTip(plainToolTip(viewName(viewOfKey(item->data(Qt::UserRole).toString()))));
    }
}

void ExplorerPanel::arrange(bool stripOnTop, bool assignments, int height) {
    column_->removeWidget(sbStatusBarV);
    column_->insertWidget(stripOnTop ? 1 : 2, sbStatusBarV);
    if (stripOnTop)
        sbStatusBarV->orderTabs(nullptr, {txtQuestion, values->table(), DBList1});
    else
        sbStatusBarV->orderTabs(values->table(), {DBList1});
    DBList1->setVisible(assignments);
    // A list too low for a single line is of no use.
    DBList1->setFixedHeight(qMax(twipsToPixels(*this, height), fontMetrics().height() + 2 * DBList1->frameWidth() + 8));
}

void ExplorerPanel::setQuestionFont(const QString& family) {
    questionFont_ = family;
    if (isVisible())
        applyQuestionFont();
}

/// Finding a font takes a noticeable part of a start, at which no panel is open.
void ExplorerPanel::applyQuestionFont() {
    QFont font;
    font.setFamily(questionFont_);
    txtQuestion->setFont(font);
}

void ExplorerPanel::showEvent(QShowEvent* event) {
    applyQuestionFont();
    QWidget::showEvent(event);
}

bool ExplorerPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == DBList1 && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            jump();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ExplorerPanel::jump() {
    if (const QListWidgetItem* item = DBList1->currentItem(); item && jumped)
        jumped(item->data(Qt::UserRole).toString());
}
