#include "EditingWorld.h"
#include "editing/EditRun.h"

using namespace Qt::StringLiterals;

namespace {

class EditFailures : public EditingWorld {
protected:
    /// Runs something with each of its steps on the files failing in turn, and then without a failure.
    void failEach(const std::function<bool()>& run, const QString& before, bool forGood) {
        for (int step = 0; step < 500; ++step) {
            asker.boxes.clear();
            FailingFiles::fail(step, forGood, FailingFiles::Steps::All);
            const bool done = run();
            if (!FailingFiles::mend()) {
                EXPECT_TRUE(done);
                EXPECT_GT(step, 5);
                return;
            }
            SCOPED_TRACE("step " + std::to_string(step));
            EXPECT_EQ(integrity(), u"ok"_s);
            EXPECT_EQ(differences(), QString());
            ASSERT_FALSE(done);
            EXPECT_EQ(digest(), before);
            ASSERT_EQ(asker.texts().filter(u"Fehler"_s).size(), 1) << asker.texts().join(u'\n').toStdString();
        }
        FAIL() << "it never ends";
    }
};

TEST_F(EditFailures, AtAnyStepLeaveEverythingAsItWasAndTheNextEditSucceeds) {
    const QString first = digest();
    bool forGood = false;
    for (const Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        forGood = !forGood;
        failEach(operation.run, first, forGood);
        const QString after = digest();
        EXPECT_NE(after, first);
        failEach([] { return history().undo(); }, after, forGood);
        EXPECT_EQ(digest(), first);
        failEach([] { return history().redo(); }, first, !forGood);
        EXPECT_EQ(digest(), after);
        ASSERT_TRUE(history().undo());
    }
}

} // namespace
