#include "explorer/frmExplorer.h"

#include "app/globals.h"
#include "explorer/frmExplorerList.h"
#include "explorer/frmExplorerTree.h"
#include "explorer/iconNames.h"
#include "widgets/ContextMenu.h"
#include "widgets/Desktop.h"
#include "widgets/ExplorerPages.h"
#include "widgets/ExplorerPanel.h"
#include "widgets/FactsStrip.h"
#include "widgets/MouseDrag.h"
#include "widgets/ValueList.h"
#include "widgets/VariableListView.h"
#include "widgets/gestures.h"

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

// Making the window's controls, and their texts in both languages.

using namespace Qt::StringLiterals;

namespace {

QSplitter* splitter(const QString& name, Qt::Orientation orientation) {
    auto* bar = withOwnText(new QSplitter(orientation), name);
    bar->setChildrenCollapsible(false);
    return bar;
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
    imgSplitter_->addWidget(tree_ = new frmExplorerTree(model_));
    imgSplitter_->addWidget(list_ = new frmExplorerList(model_));
    // Both titles stand on one line.
    tree_->setTitleHeight(list_->filter()->sizeHint().height());

    // Beside each panel there is a place for what else is shown of its variable.
    imgSplitter4_ = splitter(u"imgSplitter4"_s, Qt::Horizontal);
    imgSplitter5_ = splitter(u"imgSplitter5"_s, Qt::Horizontal);
    imgSplitter4_->addWidget(panelA_ = new ExplorerPanel(QString()));
    imgSplitter4_->addWidget(pagesA_ = new ExplorerPages(model_.pagesA, QString()));
    imgSplitter5_->addWidget(panelB_ = new ExplorerPanel(u"_B"_s));
    imgSplitter5_->addWidget(pagesB_ = new ExplorerPages(model_.pagesB, u"2"_s));
    imgSplitter2_->addWidget(imgSplitter4_);
    imgSplitter2_->addWidget(imgSplitter5_);
    imgSplitter3_->addWidget(imgSplitter_);
    imgSplitter3_->addWidget(imgSplitter2_);

    auto* whole = new QVBoxLayout(this);
    whole->addWidget(imgSplitter3_);
}

void frmExplorer::connectControls() {
    tree_->onChosen = [this](const QString& key) { model_.select(key); };
    list_->onSelected = [this] {
        lvListView_ItemClick(true);
        openPanelsSoon();
    };
    list_->onChosenAgain = [this] {
        if (!rowShown_)
            lvListView_ItemClick(true);
        openPanelsSoon();
    };
    openPanels_.setSingleShot(true);
    connect(&openPanels_, &QTimer::timeout, this, [this] { openPanelsNow(); });
    list_->onOpened = [this] { lvListView_DblClick(); };
    for (ExplorerPanel* panel : {panelA_, panelB_}) {
        panel->sbStatusBarV->switched = [this, panel](const QString& key) {
            onGesture([&] { switchChosen(panel == panelB_, key); });
            showSwitches();
        };
        connect(panel->splValues, &QSplitter::splitterMoved, this,
                [this, panel] { layout_.question = shareOf(*panel->splValues); });
        panel->jumped = [this](const QString& key) { onGesture([&] { MyDBList_DblClick(key); }); };
    }
    connect(imgSplitter_, &QSplitter::splitterMoved, this, [this] { layout_.tree = shareOf(*imgSplitter_); });
    connect(imgSplitter2_, &QSplitter::splitterMoved, this, [this] {
        layout_.panelA = shareOf(*imgSplitter2_);
        roomChanged();
    });
    connect(imgSplitter3_, &QSplitter::splitterMoved, this, [this] { layout_.list = shareOf(*imgSplitter3_); });
    connect(imgSplitter4_, &QSplitter::splitterMoved, this, [this] { layout_.besideA = shareOf(*imgSplitter4_); });
    connect(imgSplitter5_, &QSplitter::splitterMoved, this, [this] { layout_.besideB = shareOf(*imgSplitter5_); });
    pagesA_->turned = [this](int page) { pageTurned(false, page); };
    pagesB_->turned = [this](int page) { pageTurned(true, page); };
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (!now || !isAncestorOf(now))
            return;
        place_ = now == tree_->view()                             ? Place::Tree
                 : now == list_->view() || now == list_->filter() ? Place::List
                                                                  : Place::Elsewhere;
        desktop().panelsChanged(); // the frame's entries follow the keyboard
        // The texts are read before the first key needs them.
        if (now == list_->filter())
            onGesture([this] {
                const BusyScope reading; // of a large view it takes a while, with event turns
                model_.prepareFilter();
            });
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
    toFilter_ = withOwnText(new QAction(this), u"mnuToFilter"_s);
    toFilter_->setShortcuts({Qt::CTRL | Qt::Key_F, Qt::CTRL | Qt::Key_K});
    toFilter_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(toFilter_, &QAction::triggered, this, [this] { list_->focusFilter(); });
    addAction(toFilter_);
}

void frmExplorer::addContextMenus() {
    const QStringList panels = {u"mnu1VarWindow"_s, u"mnu2VarWindow"_s};
    const QStringList start = {u"mnuAuswertungsansicht"_s, QString()};
    const QStringList places = {
        QString(), u"mnuEditCopyTo"_s, u"mnuEditMoveTo"_s,     u"mnuEditCopyHere"_s, u"mnuEditMoveHere"_s,
        QString(), u"mnuSuchen"_s,     u"mnuErweiterteSuche"_s};
    const QStringList print = {QString(), u"mnuFilePrint"_s, u"mnuFilePreview"_s};
    new MouseDrag(*tree_->view(), DragPlace::Part::Tree, model_);
    new MouseDrag(*list_->view(), DragPlace::Part::List, model_, [this] { return selectedRows(); });
    new ContextMenu(*tree_->view(), [=, this](QMenu& menu) {
        ContextMenu::addCommands(menu, start +
                                           QStringList{u"mnuNeueKategorie"_s, u"mnuKategorieUmbenennen"_s,
                                                       u"mnuBeschreibungBearbeiten"_s, u"mnuEditShowPosition"_s,
                                                       u"mnuLöschen"_s, QString(), u"mnuEditCopy"_s} +
                                           places.mid(1));
        menu.addAction(toFilter_);
        ContextMenu::addCommands(menu, QStringList{QString()} + panels + print);
    });
    new ContextMenu(*list_->view(), [=, this](QMenu& menu) {
        ContextMenu::addCommands(menu, start + QStringList{u"mnuLöschen"_s} + places);
        menu.addAction(toFilter_);
        ContextMenu::addCommands(menu, QStringList{QString()} + panels + QStringList{u"mnuVVEL"_s, u"mnuChangeFont"_s} +
                                           print);
    });
}

// ---- texts

void frmExplorer::refreshTitles() {
    setWindowTitle(viewName(viewNumber()) + u' ' + Tag);
    toFilter_->setText(TranslateText(u"&Zum Schnellfilter"_s));
    tree_->refreshTitles();
    list_->refreshTitles();
    for (ExplorerPanel* panel : {panelA_, panelB_}) {
        panel->txtQuestion->setAccessibleName(TranslateText(u"Fragetext"_s));
        panel->DBList1->setAccessibleName(TranslateText(u"Zuordnungen der Variablen"_s));
        panel->nameAssignments();
        panel->values->refreshTexts();
    }
    pagesA_->refreshTexts();
    pagesB_->refreshTexts();
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
        list_->view()->headingsChanged();
    } else if (place.type == u"Statusbar") {
        (place.name == panelA_->sbStatusBarV->objectName() ? panelA_ : panelB_)
            ->sbStatusBarV->setToolTipOf(place.key, text);
    } else {
        Form::setControlText(place, text);
    }
}
