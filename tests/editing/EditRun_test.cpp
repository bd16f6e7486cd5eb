#include "editing/EditRun.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "editing/History.h"
#include "explorer/ExplorerModel.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Edit : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    ExplorerModel model;
    PlannedEdit rename{u"Umbenennen"_s, {u"tkey_Category"_s}, {}, [this](CatalogueChanges& changes) {
                           gDatabase.CurrentDatabase()->Execute(
                               u"UPDATE tkey_Category SET dt_IndicatorName = 'Neu' WHERE id = 1"_s);
                           changes.push_back({.kind = CatalogueChange::Kind::Renamed,
                                              .view = 2,
                                              .key = u"B1"_s,
                                              .original = EntryText{.name = u"Neu"_s}});
                           return true;
                       }};

    void SetUp() override {
        catalogue.fill();
        ASSERT_EQ(catalogue.open(), 1);
        model.open(2);
    }

    QString inCatalogue() const {
        return gDatabase.CurrentDatabase()
            ->OpenRecordset(u"SELECT dt_IndicatorName FROM tkey_Category WHERE id = 1"_s)
            ->text(u"dt_IndicatorName"_s);
    }
};

TEST_F(Edit, IsInTheCatalogueAndInOpenExplorersOrInNeither) {
    const QString before = inCatalogue();
    PlannedEdit fails = rename, stops = rename, changed = rename;
    fails.write = [this](CatalogueChanges& changes) {
        rename.write(changes);
        gDatabase.CurrentDatabase()->Execute(u"UPDATE nowhere SET a = 1"_s);
        return true;
    };
    stops.write = [this](CatalogueChanges& changes) {
        rename.write(changes);
        return false;
    };
    changed.stillSo = [] { return false; };
    const struct {
        const PlannedEdit& edit;
        EditOutcome outcome;
        size_t boxes;
    } refused[] = {
        {fails, EditOutcome::Failed, 1}, {stops, EditOutcome::Stopped, 0}, {changed, EditOutcome::Changed, 1}};
    for (const auto& [edit, outcome, boxes] : refused) {
        asker.boxes.clear();
        EXPECT_EQ(perform(edit), outcome);
        EXPECT_EQ(asker.boxes.size(), boxes);
        EXPECT_EQ(inCatalogue(), before);
        EXPECT_EQ(model.tree.find(u"B1"_s)->Text, before);
    }
    EXPECT_EQ(perform(rename), EditOutcome::Done);
    EXPECT_EQ(inCatalogue(), u"Neu"_s);
    EXPECT_EQ(model.tree.find(u"B1"_s)->Text, u"Neu"_s);
    // Its progress gives event turns: nothing begins in one.
    PlannedEdit turns = rename;
    turns.write = [this](CatalogueChanges&) {
        EXPECT_EQ(perform(rename), EditOutcome::Stopped);
        EXPECT_FALSE(history().undo());
        return false;
    };
    EXPECT_EQ(perform(turns), EditOutcome::Stopped);
    EXPECT_EQ(inCatalogue(), u"Neu"_s);
    // What is written but not named could not be taken back with the rest.
    PlannedEdit incomplete = rename;
    incomplete.tables = {u"tkey_Study"_s};
    EXPECT_EQ(perform(incomplete), EditOutcome::Failed);
    EXPECT_TRUE(history().undo());
    EXPECT_EQ(inCatalogue(), before);
}

} // namespace
