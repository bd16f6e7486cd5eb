#include "explorer/frmExplorer.h"

#include "explorer/iconNames.h"
#include "platform/ui/Asker.h"
#include "widgets/CatalogueTreeModel.h"
#include "widgets/Desktop.h"
#include "widgets/ElidedLabel.h"
#include "widgets/ExplorerPanel.h"
#include "widgets/FactsStrip.h"
#include "widgets/VariableListView.h"
#include "widgets/gestures.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

// Making the window's controls, and their texts in both languages.

using namespace Qt::StringLiterals;

namespace {

/// A control whose texts are made at run time.
template<class Control>
Control* ownText(Control* control, const QString& name) {
    control->setObjectName(name);
    control->setProperty("CtrlTyp", QString());
    return control;
}

QSplitter* splitter(const QString& name, Qt::Orientation orientation) {
    auto* bar = ownText(new QSplitter(orientation), name);
    bar->setChildrenCollapsible(false);
    return bar;
}

/// "Alle Studien (Originalsprache)", in the language of the labels, by the language of the contents.
QString allEntriesTitle(int view, bool english) {
    if (gLanguage == 0)
        return TranslateText(u"Alle "_s) + viewName(view) + (english ? u" (Englisch)"_s : u" (Originalsprache)"_s);
    return u"All "_s + viewName(view) + (english ? u" (English)"_s : u" (Original Language)"_s);
}

/// Share of the first part of a splitter, of a thousand.
int shareOf(const QSplitter& bar) {
    const QList<int> sizes = bar.sizes();
    const int all = sizes[0] + sizes[1];
    return all > 0 ? qBound(1, sizes[0] * 1000 / all, 999) : 500;
}

} // namespace

QSize frmExplorer::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 42};
}

void frmExplorer::buildControls() {
    imgSplitter_ = splitter(u"imgSplitter"_s, Qt::Horizontal);
    imgSplitter2_ = splitter(u"imgSplitter2"_s, Qt::Horizontal);
    imgSplitter3_ = splitter(u"imgSplitter3"_s, Qt::Vertical);
    imgSplitter_->addWidget(buildTreeSide());
    imgSplitter_->addWidget(buildListSide());

    // Beside each panel there is a place for what else is shown of its variable.
    QSplitter* placeA = splitter(u"imgSplitter4"_s, Qt::Horizontal);
    QSplitter* placeB = splitter(u"imgSplitter5"_s, Qt::Horizontal);
    panelA_ = new ExplorerPanel(QString());
    panelB_ = new ExplorerPanel(u"_B"_s);
    placeA->addWidget(panelA_);
    placeB->addWidget(panelB_);
    imgSplitter2_->addWidget(placeA);
    imgSplitter2_->addWidget(placeB);
    imgSplitter3_->addWidget(imgSplitter_);
    imgSplitter3_->addWidget(imgSplitter2_);

    auto* whole = new QVBoxLayout(this);
    whole->addWidget(imgSplitter3_);
}

QWidget* frmExplorer::buildTreeSide() {
    auto* side = new QWidget;
    // The beginnings of the entries are to be told apart in a narrow window too.
    side->setMinimumWidth(fontMetrics().averageCharWidth() * 16);
    lblTitle0_ = ownText(new QLabel, arrayName(u"lblTitle"_s, 0));
    lblTitle0_->setTextFormat(Qt::PlainText);
    lblTitle0_->setWordWrap(true);
    lblUnreached_ = ownText(new QLabel, u"lblUnreached"_s);
    lblUnreached_->setTextFormat(Qt::PlainText);
    lblUnreached_->setWordWrap(true);
    lblUnreached_->setMinimumWidth(1);
    lblUnreached_->setFrameShape(QFrame::StyledPanel);
    tvTreeView_ = ownText(new QTreeView, u"tvTreeView"_s);
    treeModel_ = new CatalogueTreeModel(model_.tree, tvTreeView_);
    tvTreeView_->setModel(treeModel_);
    tvTreeView_->setItemDelegate(new CatalogueNodeDelegate(tvTreeView_));
    tvTreeView_->setHeaderHidden(true);
    tvTreeView_->setUniformRowHeights(true);
    const int line = qMax(16, fontMetrics().height());
    tvTreeView_->setIconSize({line, line});
    tvTreeView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto* column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(lblTitle0_);
    column->addWidget(lblUnreached_);
    column->addWidget(tvTreeView_, 1);
    return side;
}

QWidget* frmExplorer::buildListSide() {
    auto* side = new QWidget;
    lblTitle1_ = ownText(new ElidedLabel, arrayName(u"lblTitle"_s, 1));
    lblRowCount_ = ownText(new QLabel, u"lblRowCount"_s);
    txtQuickFilter_ = ownText(new QLineEdit, u"txtQuickFilter"_s);
    txtQuickFilter_->setClearButtonEnabled(true);
    txtQuickFilter_->installEventFilter(this);
    lvListView_ = ownText(new VariableListView(model_.list), u"lvListView"_s);
    lblTitle1_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* heading = new QHBoxLayout;
    heading->addWidget(lblTitle1_, 3);
    heading->addWidget(lblRowCount_);
    heading->addWidget(txtQuickFilter_, 4);
    auto* column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(heading);
    column->addWidget(lvListView_, 1);
    // Both titles stand on one line.
    lblTitle0_->setMinimumHeight(txtQuickFilter_->sizeHint().height());
    return side;
}

void frmExplorer::connectControls() {
    const auto nodeChosen = [this] {
        onGesture([this] {
            if (const QModelIndex node = tvTreeView_->currentIndex();
                node.isValid() && tvTreeView_->selectionModel()->isSelected(node))
                model_.select(CatalogueTreeModel::nodeOf(node)->Key);
        });
    };
    connect(tvTreeView_->selectionModel(), &QItemSelectionModel::selectionChanged, this, nodeChosen);
    connect(tvTreeView_, &QTreeView::clicked, this, nodeChosen);
    connect(lvListView_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { onGesture([this] { lvListView_ItemClick(true); }); });
    // A click on what is selected already counts too.
    const auto rowChosenAgain = [this] {
        onGesture([this] {
            if (!rowShown_)
                lvListView_ItemClick(true);
        });
    };
    connect(lvListView_, &QTableView::pressed, this, rowChosenAgain);
    lvListView_->chosenAgain = rowChosenAgain;
    lvListView_->opened = [this] { onGesture([this] { lvListView_DblClick(); }); };
    connect(lvListView_, &QTableView::doubleClicked, this, lvListView_->opened);
    lvListView_->headerChosen = [this](int column) { onGesture([&] { headerChosen(column); }); };
    connect(txtQuickFilter_, &QLineEdit::textChanged, this, [this] { onGesture([this] { filterChanged(); }); });
    for (ExplorerPanel* panel : {panelA_, panelB_}) {
        panel->sbStatusBarV->switched = [this, panel](const QString& key) {
            onGesture([&] { switchChosen(panel == panelB_, key); });
            showSwitches();
        };
        panel->jumped = [this](const QString& key) { onGesture([&] { MyDBList_DblClick(key); }); };
    }
    connect(imgSplitter_, &QSplitter::splitterMoved, this, [this] { layout_.tree = shareOf(*imgSplitter_); });
    connect(imgSplitter2_, &QSplitter::splitterMoved, this, [this] { layout_.panelA = shareOf(*imgSplitter2_); });
    connect(imgSplitter3_, &QSplitter::splitterMoved, this, [this] { layout_.list = shareOf(*imgSplitter3_); });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (!now || !isAncestorOf(now))
            return;
        place_ = now == tvTreeView_                             ? Place::Tree
                 : now == lvListView_ || now == txtQuickFilter_ ? Place::List
                                                                : Place::Elsewhere;
        // The texts are read before the first key needs them.
        if (now == txtQuickFilter_)
            onGesture([this] { model_.prepareFilter(); });
    });
}

void frmExplorer::addShortcuts() {
    const auto add = [this](QKeyCombination keys, const std::function<void()>& action) {
        connect(new QShortcut(QKeySequence(keys), this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
                &QShortcut::activated, this, action);
    };
    const std::pair<QKeyCombination, QString> switches[] = {{Qt::CTRL | Qt::SHIFT | Qt::Key_E, u"english"_s},
                                                            {Qt::CTRL | Qt::SHIFT | Qt::Key_F, u"fixed"_s},
                                                            {Qt::CTRL | Qt::SHIFT | Qt::Key_L, u"list"_s},
                                                            {Qt::ALT | Qt::Key_Home, u"first"_s},
                                                            {Qt::ALT | Qt::Key_Up, u"back"_s},
                                                            {Qt::ALT | Qt::Key_Down, u"next"_s},
                                                            {Qt::ALT | Qt::Key_End, u"last"_s}};
    for (const auto& [keys, key] : switches)
        add(keys, [this, key] {
            const bool inB = panelB_->isAncestorOf(focusWidget());
            onGesture([&] { switchChosen(inB, key); });
        });
    add(Qt::CTRL | Qt::Key_K, [this] {
        txtQuickFilter_->setFocus();
        txtQuickFilter_->selectAll();
    });
}

bool frmExplorer::eventFilter(QObject* watched, QEvent* event) {
    if (watched != txtQuickFilter_ || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Escape:
        txtQuickFilter_->clear();
        return true;
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        lvListView_->setFocus();
        if (lvListView_->firstSelectedPlace() < 0 && !model_.list.shown.empty())
            lvListView_->selectOnly(0);
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

// ---- texts

void frmExplorer::refreshTitles() {
    const int view = viewNumber();
    lblTitle0_->setText(allEntriesTitle(view, model_.state.bELTree));
    setWindowTitle(viewName(view) + u' ' + Tag);
    model_.tree.setRootText(viewName(view));
    treeModel_->rootChanged();

    tvTreeView_->setAccessibleName(lblTitle0_->text());
    lvListView_->setAccessibleName(TranslateText(u"Variablen"_s));
    txtQuickFilter_->setPlaceholderText(TranslateText(u"Name, Label oder Fragetext enthält …"_s));
    txtQuickFilter_->setAccessibleName(TranslateText(u"Schnellfilter der Variablenliste"_s));
    txtQuickFilter_->setToolTip(txtQuickFilter_->accessibleName() +
                                u" (%1)"_s.arg(QKeySequence(Qt::CTRL | Qt::Key_K).toString(QKeySequence::NativeText)));
    for (ExplorerPanel* panel : {panelA_, panelB_}) {
        panel->txtQuestion->setAccessibleName(TranslateText(u"Fragetext"_s));
        panel->DBList1->setAccessibleName(TranslateText(u"Zuordnungen der Variablen"_s));
        panel->nameAssignments();
    }
    showRowCount();
    reportUnreached();
    // Facts carry their names in the language of the labels.
    if (model_.panelA.refill(model_.state))
        panelA_->show(model_.panelA);
    if (model_.panelB.refill(model_.state))
        panelB_->show(model_.panelB);
}

std::vector<ControlText> frmExplorer::controls() const {
    std::vector<ControlText> places = Form::controls();
    for (size_t i = 0; i < model_.list.columns.size(); ++i) {
        const ListColumn& column = model_.list.columns[i];
        places.push_back({.type = u"ListView"_s,
                          .name = u"lvListView"_s,
                          .index = static_cast<int>(i) + 1,
                          .key = column.Key,
                          .text = column.Heading});
    }
    for (const ExplorerPanel* panel : {panelA_, panelB_})
        for (const QString& key : panel->sbStatusBarV->keys())
            places.push_back({.type = u"Statusbar"_s,
                              .name = panel->sbStatusBarV->objectName(),
                              .index = static_cast<int>(factKeys.indexOf(key)) + 1,
                              .property = u"ToolTipText"_s,
                              .key = key,
                              .text = panel->sbStatusBarV->toolTipOf(key)});
    return places;
}

void frmExplorer::setControlText(const ControlText& place, const QString& text) {
    if (place.type == u"ListView") {
        if (const int column = model_.list.columnOf(place.key); column >= 0)
            model_.list.columns[static_cast<size_t>(column)].Heading = text;
        lvListView_->headingsChanged();
    } else if (place.type == u"Statusbar") {
        (place.name == panelA_->sbStatusBarV->objectName() ? panelA_ : panelB_)
            ->sbStatusBarV->setToolTipOf(place.key, text);
    } else {
        Form::setControlText(place, text);
    }
}
