#include "app/MainWindow.h"

#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "editing/frmDocument.h"
#include "explorer/frmExplorer.h"
#include "platform/dao/DBEngine.h"
#include "widgets/ContextMenu.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QStatusBar>
#include <QTreeView>

namespace {

/// The frame window with an explorer of a view in front, and the keyboard where a test wants it.
class EditingKeys : public MainWindow {
protected:
    frmExplorer* explorer = nullptr;
    int studyView = 0, topicView = 0;

    void openWith(bool editStudies) {
        openWithArchive();
        gOptions.EditStudiesMode = editStudies;
        main->optionsApplied();
        for (int view = gCatalogueOptions.NumberOfFrmExplorers; view > 0; --view)
            (gViews.at(view, ViewTable::Type) == u"1" ? studyView : topicView) = view;
        main->activateWindow();
    }
    void show(int view, const QString& place) {
        unloadChildWindows();
        main->mnuViewExplorers_Click(view);
        explorer = dynamic_cast<frmExplorer*>(main->activeForm());
        ASSERT_TRUE(explorer);
        const auto& nodes = explorer->model().tree.nodes();
        explorer->showNode(nodes.back().Key);
        for (const CatalogueNode& node : nodes)
            if (explorer->model().list.rows.empty())
                explorer->showNode(node.Key);
        explorer->setPanels(1);
        auto* list = qobject_cast<QAbstractItemView*>(in(u"lvListView"_s));
        for (int row = 0; row < 20 && !in(u"txtQuestion"_s)->isVisible(); ++row)
            list->setCurrentIndex(list->model()->index(row, 0));
        in(place)->setFocus();
        EXPECT_TRUE(in(place)->hasFocus()) << qPrintable(place);
    }
    QWidget* in(const QString& place) const { return explorer->findChild<QWidget*>(place); }
    QString enabledOf(const QStringList& names) const {
        QStringList found;
        for (const QString& name : names)
            if (enabled(name))
                found << name;
        return found.join(u' ');
    }
};

} // namespace

TEST_F(EditingKeys, EntriesAreRightAtTheMomentTheKeyboardIsSomewhereElse) {
    openWith(true);
    show(topicView, u"tvTreeView"_s);
    const QStringList entries = {u"mnuNeueKategorie"_s, u"mnuKategorieUmbenennen"_s, u"mnuLöschen"_s};
    for (const auto& [place, expected] :
         {std::pair{u"lvListView"_s, u"mnuNeueKategorie mnuLöschen"_s},
          std::pair{u"txtQuickFilter"_s, u"mnuNeueKategorie"_s}, std::pair{u"txtQuestion"_s, u"mnuNeueKategorie"_s},
          std::pair{u"tvTreeView"_s, entries.join(u' ')}, std::pair{u"DBList1"_s, u"mnuNeueKategorie"_s}}) {
        in(place)->setFocus();
        EXPECT_EQ(enabledOf(entries), expected) << qPrintable(place);
    }
    in(u"tvTreeView"_s)->setFocus();
    main->mnuViewExplorers_Click(studyView);
    EXPECT_EQ(enabledOf(entries), entries.join(u' '));
    gOptions.EditStudiesMode = false;
    main->optionsApplied();
    EXPECT_EQ(enabledOf(entries), QString());
    EXPECT_TRUE(action(entries[0])->toolTip().contains(u"EditStudiesMode"_s));
    main->activate(*explorer);
    EXPECT_EQ(enabledOf(entries), entries.join(u' ')) << "categories do not wait for the mode";
    EXPECT_EQ(action(entries[0])->toolTip(), u"Neuen Eintrag"_s);
    addChild(u"eins"_s);
    EXPECT_EQ(enabledOf(entries), QString());
}

TEST_F(EditingKeys, OnAMediumThatCannotBeWrittenTheEntriesAreOffAndSayWhy) {
    openWith(true);
    const QString path = gDatabase.Database();
    unloadChildWindows();
    gDatabase.CloseDatabase();
    gDatabase.setDatabase(path);
    gDatabase.OpenQXDatabase(true);
    ASSERT_TRUE(gDatabase.CurrentDatabase()->readOnly());
    for (const auto& [language, reason] : {std::pair{u"mnLngG"_s, u"Die Datenbank ist schreibgeschützt."_s},
                                           std::pair{u"mnLngE"_s, u"The database is write-protected."_s}}) {
        main->perform(language);
        show(topicView, u"tvTreeView"_s);
        for (const QString& name : {u"mnuNeueKategorie"_s, u"mnuLöschen"_s, u"mnuEditShowPosition"_s}) {
            EXPECT_FALSE(enabled(name));
            EXPECT_EQ(action(name)->toolTip(), reason);
            EXPECT_EQ(action(name)->statusTip(), reason);
        }
        main->statusBar()->clearMessage();
        QTest::keyClick(in(u"tvTreeView"_s), Qt::Key_F2);
        EXPECT_EQ(main->statusBar()->currentMessage(), reason) << "a key that does nothing says why";
    }
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(EditingKeys, ADeleteInTheFilterLineTakesALetterAndNothingOfTheCatalogue) {
    openWith(true);
    for (const int view : {studyView, topicView}) {
        show(view, u"txtQuickFilter"_s);
        auto* line = qobject_cast<QLineEdit*>(in(u"txtQuickFilter"_s));
        const size_t nodes = explorer->model().tree.nodes().size();
        QTest::keyClicks(line, u"ab"_s);
        line->home(false);
        for (int i = 0; i < 3; ++i) // once more than there are letters
            QTest::keyClick(line, Qt::Key_Delete);
        EXPECT_EQ(line->text(), QString());
        EXPECT_EQ(explorer->model().tree.nodes().size(), nodes);
        EXPECT_TRUE(asker.boxes.empty());
    }
}

TEST_F(EditingKeys, DescriptionsOpenByMenuAndButtonTheirOwnView) {
    openWith(false);
    unloadChildWindows();
    const auto opens = [&](int view) {
        const auto* document = dynamic_cast<frmDocument*>(main->activeForm());
        return document && document->viewNumber() == view && enabled(u"mnuChangeFont"_s);
    };
    press(u"DBD"_s);
    EXPECT_TRUE(opens(0));
    main->perform(u"mnuDBBeschreibung"_s);
    EXPECT_TRUE(opens(0));
    int button = 0;
    for (int view = 1; view <= gCatalogueOptions.NumberOfFrmExplorers; ++view) {
        if (gViews.at(view, ViewTable::DescName).isEmpty())
            continue;
        press(u"DESC"_s + QString::number(++button));
        EXPECT_TRUE(opens(view)) << view;
        unloadChildWindows();
        QTest::keyClick(main.get(), static_cast<Qt::Key>(Qt::Key_0 + view), Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_TRUE(opens(view)) << view;
    }
    EXPECT_GT(button, 0);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(EditingKeys, KeysMakeRenameDeleteAndTakeBackAnEntryAndTheKeyboardStaysInTheTree) {
    openWith(true);
    show(topicView, u"lvListView"_s);
    const auto& tree = explorer->model().tree;
    const auto texts = [&] {
        QStringList all;
        for (const CatalogueNode& node : tree.nodes())
            all << node.Text;
        return all;
    };
    const QStringList before = texts();
    const auto selected = [&] {
        return explorer->model().selectedNode() ? explorer->model().selectedNode()->Text : u"-"_s;
    };
    const auto presses = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        EXPECT_TRUE(in(u"tvTreeView"_s)->hasFocus()) << key;
    };
    const QString parent = selected();
    asker.input(u"A & B"_s).edited(u"Was darunter steht."_s);
    presses(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(selected(), u"A & B"_s);
    EXPECT_EQ(explorer->model().selectedNode()->Parent->Text, parent);
    EXPECT_TRUE(action(u"mnuEditUndo"_s)->text().contains(u"A && B"_s)) << qPrintable(action(u"mnuEditUndo"_s)->text());
    asker.input(u"C"_s).edited(std::nullopt);
    presses(Qt::Key_F2);
    EXPECT_EQ(selected(), u"C"_s);
    asker.edited(u"anders"_s);
    presses(Qt::Key_F2, Qt::ShiftModifier);
    EXPECT_EQ(asker.editors.back().second, u"Was darunter steht."_s);
    asker.answer(ui::Answer::Ok);
    presses(Qt::Key_Delete);
    EXPECT_EQ(selected(), parent) << "it was the only one below";
    EXPECT_EQ(texts(), before);
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(enabled(u"mnuEditUndo"_s));
        presses(Qt::Key_Z, Qt::ControlModifier);
    }
    EXPECT_FALSE(enabled(u"mnuEditUndo"_s));
    EXPECT_EQ(action(u"mnuEditUndo"_s)->text(), u"Rü&ckgängig"_s);
    EXPECT_EQ(texts(), before);
    presses(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(texts().contains(u"A & B"_s));
    main->perform(u"mnLngE"_s);
    EXPECT_TRUE(action(u"mnuEditRedo"_s)->text().startsWith(u"&Redo: "_s))
        << qPrintable(action(u"mnuEditRedo"_s)->text());
    asker.answer(ui::Answer::Yes);
    main->perform(u"mnFileClose"_s);
    EXPECT_FALSE(enabled(u"mnuEditUndo"_s) || enabled(u"mnuEditRedo"_s)) << "the history ends with the catalogue";
}

TEST_F(EditingKeys, DelInAStudyViewThatStaysAsItIsSaysSoAndOnlyWhereItWouldDelete) {
    openWith(false);
    show(studyView, u"tvTreeView"_s);
    for (const auto& [place, told] : {std::pair{u"tvTreeView"_s, 1},
                                      {u"lvListView"_s, 2},
                                      {u"txtQuestion"_s, 2},
                                      {u"txtQuickFilter"_s, 2},
                                      {u"DBList1"_s, 2}}) {
        in(place)->setFocus();
        EXPECT_TRUE(in(place)->hasFocus()) << qPrintable(place);
        QTest::keyClick(in(place), Qt::Key_Delete);
        EXPECT_EQ(asker.boxes.size(), told) << qPrintable(place);
    }
    EXPECT_EQ(asker.texts().value(1), u"Studien und deren Variablen können nicht gelöscht werden"_s);
}

TEST_F(EditingKeys, SearchesByMenuKeyAndButtonAndInItsFieldsNoKeyEdits) {
    openWith(true);
    show(topicView, u"tvTreeView"_s);
    const QString first = explorer->model().tree.root()->Key;
    explorer->showNode(first);
    asker.input(u"person"_s);
    main->perform(u"mnuSuchen"_s);
    const QString found = explorer->model().state.selectedKey;
    EXPECT_NE(found, first);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F3);
    EXPECT_NE(explorer->model().state.selectedKey, found);
    EXPECT_TRUE(in(u"tvTreeView"_s)->hasFocus());
    const size_t nodes = explorer->model().tree.nodes().size();

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    const Form* find = main->activeForm();
    ASSERT_EQ(find->windowName(), u"frmFind"_s);
    for (const QString& name : {u"mnuLöschen"_s, u"mnuNeueKategorie"_s, u"mnuEditCopyTo"_s, u"mnuWeitersuchen"_s})
        EXPECT_FALSE(enabled(name)) << qPrintable(name);
    EXPECT_TRUE(enabled(u"mnuErweiterteSuche"_s));
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_F2})
        QTest::keyClick(QApplication::focusWidget(), key);
    EXPECT_EQ(explorer->model().tree.nodes().size(), nodes);
    main->activate(*explorer);
    press(u"E"_s);
    EXPECT_EQ(main->activeForm(), find) << "there is one";
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(EditingKeys, AContextMenuHasTheEntriesForItsPlaceEachWithItsOwnMnemonic) {
    openWith(true);
    for (const QString& language : {u"mnLngE"_s, u"mnLngG"_s}) {
        main->perform(language);
        for (const auto& [place, entries] :
             {std::pair{u"tvTreeView"_s,
                        QStringList{u"mnuNeueKategorie"_s, u"mnuKategorieUmbenennen"_s, u"mnuBeschreibungBearbeiten"_s,
                                    u"mnuEditShowPosition"_s, u"mnuLöschen"_s, u"mnuEditCopy"_s, u"mnuEditCopyTo"_s,
                                    u"mnuEditMoveTo"_s, u"mnuEditCopyHere"_s, u"mnuEditMoveHere"_s}},
              std::pair{u"lvListView"_s, QStringList{u"mnuLöschen"_s, u"mnuEditCopyTo"_s, u"mnuEditMoveTo"_s,
                                                     u"mnuEditCopyHere"_s, u"mnuEditMoveHere"_s}}}) {
            show(topicView, place);
            QTest::keyClick(in(place), Qt::Key_Menu);
            auto* menu = in(place)->findChild<QMenu*>(u"mnuContext"_s);
            ASSERT_TRUE(menu);
            QStringList offered;
            QString letters;
            for (const QAction* entry : menu->actions()) {
                offered << entry->objectName();
                const QString letter = QKeySequence::mnemonic(entry->text()).toString();
                EXPECT_TRUE(letter.isEmpty() || !letters.contains(letter))
                    << qPrintable(entry->text() + u" in "_s + place);
                letters += letter;
            }
            for (const QString& entry : entries)
                EXPECT_TRUE(offered.contains(entry)) << qPrintable(entry + u" in "_s + place);
            menu->close();
            settle();
        }
    }
    EXPECT_FALSE(enabled(u"mnuEditCopyHere"_s)) << "nothing was copied";
    show(topicView, u"tvTreeView"_s);
    QTest::keyClick(in(u"tvTreeView"_s), Qt::Key_C, Qt::ControlModifier);
    explorer->showNode(explorer->model().tree.root()->Key);
    ContextMenu::addCommands(*new QMenu(explorer), {u"mnuEditCopyHere"_s});
    EXPECT_TRUE(enabled(u"mnuEditCopyHere"_s));
    EXPECT_EQ(asker.clipboardText, QString()) << "the entry is remembered, and no text copied";
}
