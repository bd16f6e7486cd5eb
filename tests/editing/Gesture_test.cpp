#include "editing/Gesture.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "editing/CopyCommands.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using ui::Answer;
using Part = DragPlace::Part;
using Button = DragFollower::Button;
using Pointer = DragView::Pointer;

namespace {

constexpr int distance = 10;

/// Two windows on the categories and one on each other view of the standard example.
class Gestures : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    ExplorerModel studies, categories, alsoCategories, trends;
    Gesture gesture{distance};

    void SetUp() override {
        catalogue.fill();
        ASSERT_EQ(catalogue.open(), 1);
        gOptions.EditStudiesMode = true;
        studies.open(1);
        categories.open(2);
        alsoCategories.open(2);
        trends.open(3);
    }

    ExplorerModel& of(const QString& key) {
        return key.startsWith(u'A') ? studies : key.startsWith(u'B') ? categories : trends;
    }
    /// "B1" is a node, "B1:" the list of its variables with all selected, "B1:-" with none.
    DragPlace placeOf(const QString& what, ExplorerModel& model) {
        if (!what.contains(u':'))
            return {Part::Tree, &model, what, {}};
        model.select(what.section(u':', 0, 0), true);
        const int selected = what.endsWith(u'-') ? 0 : static_cast<int>(model.list.rows.size());
        return {Part::List, &model, {}, [selected] {
                    std::vector<int> rows;
                    for (int i = 0; i < selected; ++i)
                        rows.push_back(i);
                    return rows;
                }};
    }
    void begin(const DragPlace& from, Button button) {
        ASSERT_TRUE(gesture.press(from, button, {0, 0}));
        ASSERT_FALSE(gesture.move({distance - 1, 0}));
        ASSERT_TRUE(gesture.move({distance, 0}));
    }
};

TEST_F(Gestures, EachDropHasItsRefusalOrItsQuestion) {
    const QString variablesToStudies = u"Variablen können nicht in Studien verschoben werden"_s;
    const auto question = [](const QString& from, const QString& to, const QString& what) {
        return u"Möchten Sie die ausgewählten Variablen aus '%1' in '%2' %3?"_s.arg(from, to, what);
    };
    enum Mode { Edits, Reads };
    const struct {
        QString from, to;
        Button button;
        Pointer pointer;
        QString said; ///< empty where nothing is
        Mode mode = Edits;
    } drops[] = {
        // variables
        {u"B1:"_s, u"B2"_s, Button::Left, Pointer::Copy, question(u"Einstellungen"_s, u"Demographie"_s, u"kopieren"_s)},
        {u"B1:"_s, u"B2"_s, Button::Right, Pointer::Move,
         question(u"Einstellungen"_s, u"Demographie"_s, u"verschieben"_s)},
        {u"B1:-"_s, u"C1:"_s, Button::Right, Pointer::Move,
         question(u"Einstellungen"_s, u"Zufriedenheit"_s, u"verschieben"_s)},
        {u"AQX2020:"_s, u"B2"_s, Button::Right, Pointer::Copy,
         question(u"Erhebung 2020"_s, u"Demographie"_s, u"kopieren"_s)},
        {u"AQX2020:"_s, u"B2"_s, Button::Right, Pointer::Copy,
         question(u"Erhebung 2020"_s, u"Demographie"_s, u"kopieren"_s), Reads},
        {u"B1:"_s, u"AQX2020"_s, Button::Left, Pointer::No, variablesToStudies},
        {u"B1:"_s, u"AQX2020:"_s, Button::Left, Pointer::No, variablesToStudies, Reads},
        {u"AQX2020:"_s, u"AQX2020"_s, Button::Left, Pointer::No, variablesToStudies},
        {u"B1:"_s, u"B1"_s, Button::Right, Pointer::No, {}},
        {u"B1:-"_s, u"B1"_s, Button::Right, Pointer::No, {}},
        // the same number in another view is another entry
        {u"B1:"_s, u"C1"_s, Button::Left, Pointer::Copy,
         question(u"Einstellungen"_s, u"Zufriedenheit"_s, u"kopieren"_s)},
        // entries on nodes
        {u"B1"_s, u"B2"_s, Button::Right, Pointer::Move,
         question(u"Einstellungen"_s, u"Demographie"_s, u"verschieben"_s)},
        {u"B1"_s, u"C0"_s, Button::Left, Pointer::Copy, question(u"Einstellungen"_s, u"Trends"_s, u"kopieren"_s)},
        {u"B1"_s, u"B1"_s, Button::Left, Pointer::No, u"Kategorie kann nicht in sich selbst kopiert werden!"_s},
        {u"B1"_s, u"B3"_s, Button::Right, Pointer::No, u"Kategorie kann nicht in sich selbst kopiert werden!"_s},
        {u"AG001"_s, u"AQX1919"_s, Button::Right, Pointer::No, u"Studie kann nicht in sich selbst kopiert werden!"_s},
        {u"B1"_s, u"AG001"_s, Button::Left, Pointer::No,
         u"Kategorien/Trends können nicht in Studien verschoben werden"_s},
        {u"AG001"_s, u"B1"_s, Button::Left, Pointer::No,
         u"Studien können nicht in Kategorien/Trends verschoben werden"_s},
        {u"AQX2020"_s, u"AG001"_s, Button::Right, Pointer::Move,
         question(u"Erhebung 2020"_s, u"Gruppe"_s, u"verschieben"_s)},
        {u"AQX2020"_s, u"AG001"_s, Button::Right, Pointer::No,
         u"Studien lassen sich nur ändern, wenn die Option EditStudiesMode gesetzt ist."_s, Reads},
        {u"B3"_s, u"C1"_s, Button::Right, Pointer::Move, question(u"Vertrauen"_s, u"Zufriedenheit"_s, u"verschieben"_s),
         Reads},
        // entries on lists
        {u"B1"_s, u"AQX2020:"_s, Button::Left, Pointer::No, u"Kategorien können nicht in Studien verschoben werden"_s},
        {u"C1"_s, u"AQX2020:"_s, Button::Left, Pointer::No, u"Trends können nicht in Studien verschoben werden"_s},
        {u"AG001"_s, u"B1:"_s, Button::Left, Pointer::No, u"Studien können nicht verschoben werden"_s},
        {u"B1"_s, u"B3:"_s, Button::Left, Pointer::No, u"Kategorien kann nicht in sich selbst kopiert werden!"_s},
        {u"B1"_s, u"B2:"_s, Button::Left, Pointer::Copy, question(u"Einstellungen"_s, u"Demographie"_s, u"kopieren"_s)},
        // beside everything
        {u"B1"_s, u"B"_s, Button::Left, Pointer::Copy, {}},
    };
    for (const auto& [from, to, button, pointer, said, mode] : drops) {
        SCOPED_TRACE(qPrintable(from + u" on "_s + to));
        gOptions.EditStudiesMode = mode == Edits;
        ExplorerModel& target = to.startsWith(u'B') && !from.startsWith(u"B1:"_s) ? alsoCategories : of(to);
        DragPlace place = placeOf(from, of(from));
        begin(place, button);
        DragPlace on = to.size() == 1 ? DragPlace{Part::Tree, &target, {}, {}} : DragPlace();
        if (to.size() > 1) // a target in the window of the source must not select anew
            on = to.contains(u':') ? placeOf(to, target) : DragPlace{Part::Tree, &target, to, {}};
        const DragView view = gesture.hover(on, 0, false, 0);
        EXPECT_EQ(view.pointer, pointer);
        EXPECT_EQ(view.marksTarget, pointer != Pointer::No && to.size() > 1);
        asker.boxes.clear();
        const bool asks = said.endsWith(u'?');
        if (asks)
            asker.answer(Answer::Cancel);
        EXPECT_TRUE(gesture.release(on));
        EXPECT_EQ(asker.texts(), said.isEmpty() ? QStringList() : QStringList{said});
        EXPECT_FALSE(gesture.isDragging());
    }
}

TEST_F(Gestures, RefusalsAndQuestionsHaveTheirEnglishWords) {
    gLanguage = 1;
    const DropSource variables = *DropSource::rows((categories.select(u"B1"_s), categories), {});
    asker.answer(Answer::Cancel);
    drop(variables, DropTarget::in(trends, u"C1"_s, false), TransferMode::Move);
    EXPECT_EQ(asker.lastText(),
              u"Do you want to move the selected variables from 'Einstellungen' to 'Zufriedenheit'?"_s);
    drop(*DropSource::entry(categories.tree, u"B1"_s, false), DropTarget::in(studies, u"AQX2020"_s, true),
         TransferMode::Copy);
    EXPECT_EQ(asker.lastText(), u"Categories cannot be moved to studies"_s);
    gLanguage = 0;
}

TEST_F(Gestures, AClosedNodeOpensAndAnEdgeScrollsAfterTheirTime) {
    begin({Part::Tree, &categories, u"B2"_s, {}}, Button::Left);
    const DragPlace closed{Part::Tree, &categories, u"B1"_s, {}}, other{Part::Tree, &categories, u"B3"_s, {}};
    EXPECT_TRUE(gesture.hover(closed, 0, true, 1000).open.isEmpty());
    EXPECT_TRUE(gesture.hover(closed, 0, true, 1690).open.isEmpty());
    EXPECT_TRUE(gesture.hover(other, 0, false, 1695).open.isEmpty());
    EXPECT_TRUE(gesture.hover(closed, 0, true, 1699).open.isEmpty()); // begins anew
    EXPECT_EQ(gesture.hover(closed, 0, true, 2399).open, u"B1"_s);
    EXPECT_EQ(gesture.hover(closed, 1, true, 2400).scroll, 1);
    EXPECT_EQ(gesture.hover(closed, 1, true, 2450).scroll, 0);
    EXPECT_EQ(gesture.hover(closed, -1, true, 2500).scroll, -1);
    gesture.cancel();
    EXPECT_FALSE(gesture.release(closed));
}

TEST_F(Gestures, TheClipboardHoldsAnEntryByItsKeyWhereverTheMouseGoesDown) {
    categories.select(u"B3"_s);
    rememberSource(categories);
    EXPECT_EQ(MoveOrCopyMode, u"Copy"_s);
    EXPECT_EQ(ClipboardKind, u"Kategorie"_s);
    categories.select(u"B2"_s);
    gesture.press({Part::Tree, &categories, u"B2"_s, {}}, Button::Left, {});
    EXPECT_EQ(SourceNode.key(), u"B2"_s);
    EXPECT_EQ(whyNotHere(categories), QString());
    studies.select(u"AG001"_s);
    EXPECT_EQ(whyNotHere(studies), u"Kategorien/Trends können nicht in Studien verschoben werden"_s);
    asker.answer(Answer::Ok);
    EXPECT_TRUE(moveHere(categories));
    EXPECT_EQ(categories.tree.find(u"B3"_s)->Parent->Key, u"B2"_s);
    EXPECT_EQ(alsoCategories.tree.find(u"B3"_s)->Parent->Key, u"B2"_s);
    gDatabase.CurrentDatabase()->Execute(u"DELETE FROM tkey_Category WHERE id = 3"_s);
    announce({{.kind = CatalogueChange::Kind::Removed, .view = 2, .key = u"B3"_s}});
    EXPECT_EQ(whyNotHere(categories), u"Den kopierten Eintrag gibt es nicht mehr."_s);
}

TEST_F(Gestures, ByKeyboardTheTargetIsChosenFromTheTreesOfAllViews) {
    categories.select(u"B1"_s);
    asker.fromTree(u"Zufriedenheit"_s).answer(Answer::Ok);
    EXPECT_TRUE(copyTo(categories));
    EXPECT_TRUE(trends.tree.find(u"C2"_s));
    ASSERT_EQ(asker.trees.size(), 1u);
    QStringList entries;
    for (const ui::TreeChoice::Entry& entry : asker.trees[0].entries)
        entries << u"%1 %2 %3"_s.arg(entry.parent).arg(entry.text, entry.why);
    const QString itself = u"Kategorie kann nicht in sich selbst kopiert werden!"_s;
    EXPECT_EQ(entries, (QStringList{u"-1 Kategorien "_s, u"0 Demographie "_s, u"0 Einstellungen "_s + itself,
                                    u"2 Vertrauen "_s + itself,
                                    u"-1 Studien Kategorien/Trends können nicht in Studien verschoben werden"_s,
                                    u"-1 Trends "_s, u"5 Zufriedenheit "_s}));
    EXPECT_EQ(asker.trees[0].current, 0); // the nearest above that can be chosen
    asker.fromTree(QString());
    EXPECT_FALSE(moveTo(categories, {0}));
    EXPECT_EQ(asker.trees[1].title, u"Verschieben nach"_s);
    EXPECT_EQ(asker.trees[1].entries[2].why, u"Von hier stammen die Variablen."_s);
}

} // namespace
