#include "app/walk/Walk.h"

namespace {

/// A person who looks for something, and for something else while the search goes on.
class SearchWalk : public Walk {
protected:
    /// From the list of the explorer in front to its question text, and back.
    bool questionIs(const QString& text, const QStringList& before) {
        return copies(text, [&] {
            screen->press(before);
            screen->press({u"Tab"_s, u"Tab"_s, u"ctrl+a"_s, u"ctrl+c"_s, u"shift+Tab"_s, u"shift+Tab"_s});
        });
    }
};

} // namespace

TEST_F(SearchWalk, HitsComeWhileAnotherWindowIsUsedAndF4GoesFromOneToTheNext) {
    if (const QStringList missing = Screen::missingPrograms(); !missing.isEmpty())
        GTEST_SKIP() << "not installed: " << missing.join(u", ").toStdString();
    begin();
    ASSERT_FALSE(HasFailure());
    screen->press({u"ctrl+shift+s"_s});
    ASSERT_TRUE(copies(u"LZUFR"_s, [&] {
        screen->press({u"alt+g"_s, u"ctrl+a"_s});
        screen->type(u"LZUFR"_s);
        screen->press({u"ctrl+a"_s, u"ctrl+c"_s});
    }));
    screen->press({u"Return"_s, u"ctrl+2"_s});
    // Whose next hit is the second of four, the wave of 2018; from there one back to that of 2014, which asked the
    // same.
    const QString question =
        u"Wie zufrieden sind Sie gegenwärtig, alles in allem, mit Ihrem Leben? 0 bedeutet ganz und "
        "gar unzufrieden, 10 ganz und gar zufrieden."_s;
    ASSERT_TRUE(questionIs(question, {u"F4"_s}));
    ASSERT_TRUE(take(u"search-hit"_s));
    screen->press({u"alt+F4"_s});
    EXPECT_TRUE(program.waitForFinished(10000));
    EXPECT_EQ(program.exitCode(), 0);
}
