#include "editingPictures.h"

#include "app/frmMain.h"
#include "config/Options.h"
#include "editing/CopyCommands.h"
#include "editing/Entries.h"
#include "editing/frmDocument.h"
#include "editing/frmEdit.h"
#include "editing/frmPosition.h"
#include "editing/frmTreeChoice.h"
#include "widgets/QtAsker.h"
#include "widgets/dragPointers.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTextEdit>

using namespace Qt::StringLiterals;

void EditingWalk::targets() {
    frmMain window;
    window.load();
    window.show();
    window.resize(1280, 800);
    settle();
    window.perform(u"mnuViewExplorers(2)"_s);
    settle();
    frmExplorer& categories = explorer();
    const CatalogueNode* root = categories.model().tree.root();
    if (!root || root->Children.empty())
        throw std::runtime_error("no category");
    categories.showNode(root->Children.front()->Key);
    settle();
    QtAsker dialogs;
    dialogs.treeChooser = frmTreeChoice::ask;
    ui::Asker* const before = ui::setAsker(&dialogs);
    modal(u"copy-to"_s, [&] { copyTo(categories.model()); });
    ui::setAsker(before);
    dragPointers();
}

/// The pointers of a drag on the grounds that they are seen on.
void EditingWalk::dragPointers() {
    using Pointer = DragView::Pointer;
    QWidget ground;
    QHBoxLayout row(&ground);
    for (const bool variables : {false, true})
        for (const Pointer pointer : {Pointer::Copy, Pointer::Move, Pointer::No}) {
            auto* label = new QLabel(&ground);
            label->setPixmap(dragPointer(pointer, variables, ground).pixmap());
            row.addWidget(label);
        }
    ground.show();
    take(ground, u"drag-pointers"_s);
}

void EditingWalk::documents() {
    frmMain window;
    window.load();
    window.show();
    window.resize(1280, 800);
    settle();
    frmExplorer& first = explorer();
    first.showNode(u"ASV2018"_s);
    settle();
    modal(u"questionnaires"_s, [&] { window.perform(u"F"_s); });
    modal(u"datasets"_s, [&] { window.perform(u"SPSS"_s); });
    window.perform(u"DESC1"_s);
    settle();
    auto* document = dynamic_cast<frmDocument*>(desktop().activeForm());
    if (!document || !document->showEntry(u"SV2018"_s))
        throw std::runtime_error("no description in front");
    take(window, u"document"_s);
    press(*document->textEdit(), Qt::Key_F, {}, Qt::ControlModifier);
    in<QLineEdit>(*document, u"txtSuchen"_s).setText(u"2018"_s);
    press(in<QLineEdit>(*document, u"txtSuchen"_s), Qt::Key_Return);
    take(window, u"document-find"_s);
    window.perform(u"DBD"_s);
    take(window, u"document-catalogue"_s);
}

void EditingWalk::entries() {
    QtAsker asker;
    asker.textEditor = frmEdit::ask;
    asker.lineOrderer = frmPosition::ask;
    ui::Asker* walk = ui::setAsker(&asker);
    gOptions.EditStudiesMode = true;
    ExplorerModel model;
    model.open(1);
    model.select(u"ASV2018"_s);
    modal(u"edit"_s, [&] { editDescription(model); });
    modal(u"position"_s, [&] { showPosition(model); });
    modal(u"entry"_s, [&] { newEntry(model); });
    modal(u"entry-delete"_s, [&] { deleteEntry(model); });
    modal(u"entry-kind"_s, [&] {
        // It is left by its buttons only; the walk's way out counts as "No".
        asker.messageBox({.text = TranslateText(u"Wählen Sie 'ja', wenn es eine Studie und keine Gruppe ist:"_s),
                          .title = TranslateText(u"Neue Studie"_s),
                          .icon = ui::Icon::Question,
                          .buttons = ui::Buttons::YesNo,
                          .mustAnswer = true});
    });
    ui::setAsker(walk);
}

void EditingWalk::takePopup(const QString& name) {
    QWidget* menu = QApplication::activePopupWidget();
    if (!menu)
        throw std::runtime_error("no menu opened");
    take(*menu, name);
    menu->close();
    settle();
}

void EditingWalk::menus() {
    frmMain window;
    window.load();
    window.show();
    window.resize(1280, 800);
    window.activateWindow();
    auto* edit = window.findChild<QMenu*>(u"mnuEdit"_s);
    for (const auto& [view, mode, name] :
         {std::tuple{2, true, u"menu-edit"_s}, std::tuple{1, false, u"menu-edit-off"_s}}) {
        gOptions.EditStudiesMode = mode;
        window.mnuViewExplorers_Click(view);
        settle();
        explorer().showNode(explorer().model().tree.nodes().back().Key);
        edit->popup(window.mapToGlobal(QPoint(0, 0)));
        takePopup(name);
        for (const auto& [place, ending] :
             {std::pair{u"tvTreeView"_s, u"-tree"_s}, std::pair{u"lvListView"_s, u"-list"_s}}) {
            auto& list = in<QAbstractItemView>(explorer(), place);
            list.setFocus();
            press(list, Qt::Key_Menu);
            takePopup(name + ending);
        }
    }
}
