#include "app/walk/Walk.h"

#include "platform/dao/DBEngine.h"

namespace {

/// A person with a keyboard who changes a catalogue; what stands in it is read from its file, beside the program.
class EditingWalk : public Walk {
protected:
    /// Names of the entries of the view with the topics that hang below nothing.
    QStringList topics() const {
        const dao::DatabasePtr file =
            dao::DBEngine::instance().Workspaces(0).OpenDatabase(home(u"solvarden.mdb"_s), false, true);
        const dao::RecordsetPtr rows = file->OpenRecordset(
            u"SELECT dt_IndicatorName FROM tkey_Topic WHERE fid = 0 ORDER BY [order];"_s, dao::dbOpenSnapshot);
        QStringList names;
        for (; !rows->Eof(); rows->MoveNext())
            names << rows->text(u"dt_IndicatorName"_s);
        rows->Close();
        file->Close();
        return names;
    }
    bool becomes(const QStringList& names) const {
        return Screen::until([&] { return topics() == names; });
    }
    /// Presses keys until a dialog of that title is there.
    bool asks(const QStringList& keys, const QString& title) {
        return Screen::until([&] {
            screen->press(keys);
            return soon([&] { return screen->activeWindow() != mainWindow && screen->activeTitle() == title; });
        });
    }
    bool isBack() const {
        return Screen::until([&] { return screen->activeWindow() == mainWindow; });
    }
};

} // namespace

TEST_F(EditingWalk, KeysMakeRenameDeleteAndTakeBackAndInAFieldTheyAreTheFields) {
    if (const QStringList missing = Screen::missingPrograms(); !missing.isEmpty())
        GTEST_SKIP() << "not installed: " << missing.join(u", ").toStdString();
    begin();
    ASSERT_FALSE(HasFailure());
    const QStringList before = topics();
    ASSERT_GT(before.size(), 1);
    // The topics, and in them the filter line: a letter goes, nothing else, and no box comes.
    screen->press({u"ctrl+2"_s});
    ASSERT_TRUE(copies(u"ZUFR"_s, [&] {
        screen->press({u"ctrl+f"_s, u"ctrl+a"_s});
        screen->type(u"LZUFR"_s);
        screen->press({u"Home"_s, u"Delete"_s, u"ctrl+a"_s, u"ctrl+c"_s});
    }));
    screen->press({u"Delete"_s, u"Delete"_s, u"ctrl+z"_s, u"ctrl+a"_s, u"ctrl+x"_s});
    ASSERT_TRUE(copies(u"ZUFR"_s, [&] { screen->press({u"ctrl+v"_s, u"ctrl+a"_s, u"ctrl+c"_s}); }));
    screen->press({u"Escape"_s, u"shift+Tab"_s, u"Home"_s});
    EXPECT_EQ(screen->activeWindow(), mainWindow);
    EXPECT_EQ(topics(), before);

    ASSERT_TRUE(asks({u"ctrl+n"_s}, u"Neuer Eintrag"_s));
    screen->press({u"ctrl+a"_s});
    screen->type(u"Verkehr"_s);
    ASSERT_TRUE(asks({u"Return"_s}, u"Beschreibung eingeben für 'Verkehr'"_s));
    screen->type(u"Wege und Zeiten"_s);
    ASSERT_TRUE(take(u"13-beschreibung"_s));
    screen->press({u"ctrl+Return"_s});
    ASSERT_TRUE(isBack() && becomes(before + QStringList{u"Verkehr"_s}));

    ASSERT_TRUE(asks({u"F2"_s}, u"Umbenennen"_s));
    screen->press({u"ctrl+a"_s});
    screen->type(u"Mobil"_s);
    ASSERT_TRUE(asks({u"Return"_s}, u"Beschreibung eingeben für 'Mobil'"_s));
    screen->press({u"Escape"_s});
    ASSERT_TRUE(isBack() && becomes(before + QStringList{u"Mobil"_s}));

    ASSERT_TRUE(asks({u"Delete"_s}, u"Löschen"_s));
    ASSERT_TRUE(take(u"14-loeschen"_s));
    screen->press({u"Return"_s}); // the button that keeps it
    ASSERT_TRUE(isBack());
    EXPECT_EQ(topics().size(), before.size() + 1);
    ASSERT_TRUE(asks({u"Delete"_s}, u"Löschen"_s));
    screen->press({u"Left"_s, u"Return"_s});
    ASSERT_TRUE(isBack() && becomes(before));

    for (const QStringList& names : {before + QStringList{u"Mobil"_s}, before + QStringList{u"Verkehr"_s}, before}) {
        screen->press({u"ctrl+z"_s});
        ASSERT_TRUE(becomes(names)) << names.join(u' ').toStdString();
    }
    for (const QStringList& names : {before + QStringList{u"Verkehr"_s}, before + QStringList{u"Mobil"_s}, before}) {
        screen->press({u"ctrl+shift+z"_s});
        ASSERT_TRUE(becomes(names)) << names.join(u' ').toStdString();
    }
    ASSERT_TRUE(take(u"15-wiederholt"_s));
    ASSERT_TRUE(Screen::until([&] {
        screen->press({u"ctrl+q"_s});
        return program.state() == QProcess::NotRunning || program.waitForFinished(2000);
    }));
    EXPECT_FALSE(QFile::exists(home(u"Error.log"_s)));
}

TEST_F(EditingWalk, TheRightButtonMovesAnEntryFromOneWindowToAnother) {
    if (const QStringList missing = Screen::missingPrograms(); !missing.isEmpty())
        GTEST_SKIP() << "not installed: " << missing.join(u", ").toStdString();
    begin();
    ASSERT_FALSE(HasFailure());
    const QStringList before = topics();
    // Two windows on the topics, side by side: the first topic goes behind the last, below the other window's heading.
    screen->press({u"ctrl+2"_s, u"ctrl+2"_s, u"alt+f"_s, u"n"_s});
    // A window that is still being arranged is where the mouse doesn't find it: then once more, the other way round.
    ASSERT_TRUE(Screen::until([&] {
        screen->press({u"Escape"_s});
        const std::optional<QPoint> target = screen->selectedBy({u"Home"_s});
        screen->press({u"ctrl+shift+F6"_s});
        const std::optional<QPoint> source = screen->selectedBy({u"Home"_s, u"Down"_s});
        if (!target || !source || !take(u"20-nebeneinander"_s))
            return false;
        screen->dragRight(*source, *target, [&] { take(u"21-ziehen"_s); });
        return soon([&] { return screen->activeWindow() != mainWindow; });
    })) << "a question comes";
    ASSERT_TRUE(take(u"22-verschieben"_s));
    EXPECT_EQ(topics(), before);
    // A box that has just opened may not have the keyboard yet; in the tree behind it the key does nothing.
    EXPECT_TRUE(Screen::until([&] {
        screen->press({u"Return"_s});
        return soon([&] { return topics() == before.mid(1) + before.first(1); });
    })) << topics().join(u", "_s).toStdString();
    ASSERT_TRUE(isBack() && take(u"23-verschoben"_s));
    screen->press({u"ctrl+z"_s});
    EXPECT_TRUE(becomes(before));
}
