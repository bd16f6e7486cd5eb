#include "EditingWorld.h"
#include "catalogue/mdDataBase.h"
#include "editing/EditRun.h"
#include "support/SecondProgram.h"

#include <random>

using namespace Qt::StringLiterals;

namespace {

class Undo : public EditingWorld {};

TEST_F(Undo, LeadsEveryOperationBackAndForthInTheCatalogueAndInEveryWindow) {
    const QString first = digest();
    for (const Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        ASSERT_TRUE(operation.run());
        const QString after = digest();
        EXPECT_NE(after, first);
        EXPECT_EQ(differences(), QString());
        EXPECT_TRUE(history().canUndo());
        EXPECT_FALSE(history().canRedo());
        const QString name = history().undoName();
        EXPECT_FALSE(name.isEmpty());
        for (int times = 0; times < 2; ++times) {
            ASSERT_TRUE(history().undo());
            EXPECT_EQ(digest(), first);
            EXPECT_EQ(differences(), QString());
            EXPECT_FALSE(history().canUndo());
            EXPECT_EQ(history().redoName(), name);
            ASSERT_TRUE(history().redo());
            EXPECT_EQ(digest(), after);
            EXPECT_EQ(differences(), QString());
        }
        ASSERT_TRUE(history().undo());
    }
}

TEST_F(Undo, GoesStepByStepUntilSomethingNewIsDoneOrTheCatalogueCloses) {
    int heard = 0;
    history().onChange = [&] { ++heard; };
    const auto rename = [&](const QString& name) {
        asker.next = name;
        EXPECT_TRUE(categories.select(u"B50"_s) && renameEntry(categories));
    };
    const QString long_ = u"Ein\nsehr "_s + QString(200, u'x');
    rename(u"eins"_s);
    rename(u"zwei"_s);
    rename(long_);
    EXPECT_LE(history().undoName().size(), 80);
    EXPECT_FALSE(history().undoName().contains(u'\n'));
    EXPECT_TRUE(history().undo() && history().undo());
    EXPECT_EQ(categories.tree.find(u"B50"_s)->Text, u"eins"_s);
    EXPECT_TRUE(history().canUndo() && history().canRedo());
    rename(u"drei"_s);
    EXPECT_FALSE(history().canRedo());
    EXPECT_TRUE(history().undo());
    EXPECT_EQ(categories.tree.find(u"B50"_s)->Text, u"eins"_s);
    EXPECT_TRUE(history().undo());
    EXPECT_FALSE(history().canUndo());
    EXPECT_FALSE(history().undo());
    EXPECT_EQ(heard, 8);
    const size_t steps = 1;
    EXPECT_TRUE(history().redo());
    EXPECT_EQ(steps, history().canUndo() ? 1U : 0U);
    mdDataBase::CloseDataBase();
    EXPECT_FALSE(history().canUndo() || history().canRedo());
    ASSERT_EQ(catalogue.open(), 1);
    EXPECT_FALSE(history().canUndo() || history().canRedo());
}

TEST_F(Undo, LiesInAFileOnceItIsLarge) {
    const qint64 before = std::exchange(HistoryStore::mostInMemory, 1000);
    const QString first = digest();
    QStringList after;
    for (int i = 0; i < 12; ++i) {
        asker.next = QString(400, QChar(u'a' + i));
        ASSERT_TRUE(categories.select(u"B50"_s) && renameEntry(categories));
        after << digest();
        if (i == 8) {
            EXPECT_TRUE(history().undo() && history().undo()); // two that the next one replaces
            after.resize(7);
        }
    }
    EXPECT_FALSE(history().isInMemory());
    for (qsizetype i = after.size() - 1; i >= 0; --i) {
        EXPECT_EQ(digest(), after[i]);
        ASSERT_TRUE(history().undo());
    }
    EXPECT_EQ(digest(), first);
    for (const QString& one : after)
        EXPECT_TRUE(history().redo() && digest() == one);
    // No room for it is known before anything is in the catalogue.
    while (history().undo())
        ;
    history().clear();
    HistoryStore::mostInMemory = 10;
    const QByteArray folder = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/dev/null");
    ASSERT_TRUE(categories.select(u"B50"_s));
    EXPECT_FALSE(deleteEntry(categories));
    qputenv("TMPDIR", folder);
    EXPECT_EQ(asker.texts().filter(u"Not enough space"_s).size(), 1);
    EXPECT_EQ(digest(), first);
    EXPECT_EQ(differences(), QString());
    EXPECT_TRUE(deleteEntry(categories) && history().undo());
    HistoryStore::mostInMemory = before;
}

TEST_F(Undo, IsNotPromisedWhereATableHasNoKey) {
    asker.next = u"eins"_s;
    ASSERT_TRUE(categories.select(u"B50"_s) && renameEntry(categories));
    mdDataBase::CloseDataBase();
    const SecondProgram other(catalogue.path());
    other.run(
        "CREATE TABLE copy AS SELECT * FROM trel_VariableCategory; DROP TABLE trel_VariableCategory; ALTER TABLE copy "
        "RENAME TO trel_VariableCategory");
    ASSERT_EQ(catalogue.open(), 1);
    gOptions.EditStudiesMode = true;
    for (ExplorerModel* model : models())
        model->open(model->state.ltreetype);
    ASSERT_TRUE(renameEntry(categories) || (categories.select(u"B50"_s) && renameEntry(categories)));
    EXPECT_TRUE(history().canUndo());
    ASSERT_TRUE(categories.select(u"B57"_s) && deleteEntry(categories));
    EXPECT_EQ(asker.questions.filter(u"kann nicht rückgängig gemacht werden"_s).size(), 1);
    EXPECT_FALSE(history().canUndo());
    EXPECT_EQ(differences(), QString());
}

TEST_F(Undo, TakesBackAWalkOfTwoHundredEditsOverThreeWindowsAndDoesItAgain) {
    std::mt19937 random(20261125);
    const auto below = [&](size_t end) { return static_cast<size_t>(random() % std::max<size_t>(end, 1)); };
    const auto anyKey = [&](const ExplorerModel& model) {
        auto node = model.tree.nodes().begin();
        std::advance(node, static_cast<std::ptrdiff_t>(below(model.tree.nodes().size())));
        return node->Key;
    };
    const std::vector<bool (*)(ExplorerModel&)> onNode = {newEntry,        newEntry,     newEntry,   renameEntry,
                                                          editDescription, showPosition, deleteEntry};
    const QString first = digest();
    int edits = 0, steps = 0;
    history().onChange = [&] { ++steps; };
    for (int tries = 0; edits < 200 && tries < 2000; ++tries) {
        ExplorerModel& model = *models()[below(3)];
        const QString key = anyKey(model), target = anyKey(model);
        const TransferMode mode = below(2) == 0 ? TransferMode::Copy : TransferMode::Move;
        const size_t kind = below(onNode.size() + 3);
        bool done = false;
        if (kind < onNode.size() && (onNode[kind] != deleteEntry || model.tree.nodes().size() > 8)) {
            done = model.select(key, true) && onNode[kind](model);
        } else if (kind == onNode.size() && model.tree.nodes().size() < 60) {
            done = dropEntry(model, key, model, target, mode);
        } else {
            model.select(key, true);
            std::vector<int> rows;
            for (size_t row = 0; row < model.list.rows.size(); ++row)
                if (below(2) == 0)
                    rows.push_back(static_cast<int>(row));
            const QString to = anyKey(categories);
            done = kind == onNode.size() + 1 ? !rows.empty() && deleteRows(model, rows)
                                             : dropRows(model, key, rows, categories, to, mode);
        }
        edits += done ? 1 : 0;
        if (tries % 20 == 0) {
            EXPECT_EQ(differences(), QString()) << tries;
        }
    }
    EXPECT_EQ(edits, 200);
    const QString last = digest();
    const int count = steps;
    EXPECT_GT(count, 150); // some changed nothing
    for (int i = 0; i < count; ++i) {
        ASSERT_TRUE(history().undo()) << i << asker.lastText().toStdString();
        if (i % 20 == 0) {
            EXPECT_EQ(differences(), QString()) << i;
        }
    }
    EXPECT_FALSE(history().canUndo());
    EXPECT_EQ(digest(), first);
    EXPECT_EQ(differences(), QString());
    for (int i = 0; i < count; ++i) {
        ASSERT_TRUE(history().redo()) << i;
        if (i % 20 == 0) {
            EXPECT_EQ(differences(), QString()) << i;
        }
    }
    EXPECT_EQ(digest(), last);
    EXPECT_EQ(differences(), QString());
    EXPECT_EQ(integrity(), u"ok"_s);
}

} // namespace
