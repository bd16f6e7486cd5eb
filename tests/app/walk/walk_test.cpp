#include "app/walk/Walk.h"

#include "language/CSys.h"

#include <QImage>

namespace {

const QString questionGerman =
    u"Wie zufrieden sind Sie gegenwärtig, alles in allem, mit Ihrem Leben? 0 bedeutet ganz und gar "
    "unzufrieden, 10 ganz und gar zufrieden."_s;
const QString questionEnglish =
    u"All things considered, how satisfied are you with your life these days? 0 means completely "
    "dissatisfied, 10 completely satisfied."_s;

class BrowsingWalk : public Walk {
protected:
    /// From the list past the strip of facts to the question text, and back.
    void copyQuestion() {
        screen->press({u"Tab"_s, u"Tab"_s, u"ctrl+a"_s, u"ctrl+c"_s, u"shift+Tab"_s, u"shift+Tab"_s});
    }
    /// In a list: the row whose text begins so, and its question text.
    bool findsByTyping(const QString& variable, const QString& question) {
        return copies(question, [&] {
            screen->press({u"Home"_s});
            screen->type(variable);
            copyQuestion();
        });
    }
    void browse();
    void analyse();
    void chart();
    void documents();
    void leave();
};

void BrowsingWalk::browse() {
    // The explorer stands with the keyboard in its tree: the study, after the heading before it, then the list beyond
    // the filter line.
    screen->press({u"F7"_s, u"Home"_s, u"asterisk"_s});
    ASSERT_TRUE(copies(questionGerman, [&] {
        screen->press({u"Home"_s});
        screen->type(u"Wellen"_s);
        screen->press({u"Down"_s, u"Tab"_s, u"Tab"_s, u"Home"_s});
        screen->type(u"LZUFR"_s);
        copyQuestion();
        screen->press({u"shift+Tab"_s, u"shift+Tab"_s});
    }));
    screen->press({u"Tab"_s, u"Tab"_s, u"ctrl+shift+e"_s});
    ASSERT_TRUE(copies(questionEnglish, [&] { copyQuestion(); }));
    ASSERT_TRUE(take(u"3-studie"_s));
    // The filter narrows by the text of the question; down goes to the first row that is left.
    screen->press({u"ctrl+f"_s});
    screen->type(u"pay per year"_s);
    screen->press({u"Down"_s});
    ASSERT_TRUE(copies(u"How much would you be willing to pay per year to protect the environment?"_s,
                       [&] { copyQuestion(); }));
    ASSERT_TRUE(take(u"4-filter"_s));
    screen->press({u"ctrl+f"_s, u"Escape"_s, u"Tab"_s});
    ASSERT_TRUE(findsByTyping(u"LZUFR"_s, questionEnglish));
    // Past strip, text and values to where else the variable stands; from there to a window of another view, which has
    // a language of its own.
    screen->press(QStringList(4, u"Tab"_s) + QStringList{u"End"_s, u"Return"_s, u"Tab"_s, u"Tab"_s, u"F7"_s});
    ASSERT_TRUE(findsByTyping(u"LZUFR"_s, questionGerman));
    ASSERT_TRUE(take(u"5-sprung"_s));
}

void BrowsingWalk::analyse() {
    // Back to the study, and from its row to the table with weight and filter.
    screen->press({u"ctrl+F6"_s, u"ctrl+f"_s, u"Tab"_s});
    ASSERT_TRUE(findsByTyping(u"LZUFR"_s, questionEnglish));
    screen->press({u"ctrl+shift+a"_s, u"alt+r"_s});
    // Weighted counts of the cases over 29, rounded: 237.26 and 252.02 of 945.76 valid ones, as another program adds
    // them up.
    const auto isTable = [](const QString& text) {
        return text.startsWith(u"SV2018, LZUFR: Allgemeine Lebenszufriedenheit (N=946) (gewichtet nach GEWREP)"_s) &&
               text.contains(u"7\t\t\t237\t"_s) && text.contains(u"8\t\t\t252\t"_s);
    };
    ASSERT_TRUE(Screen::until([&] {
        // A choice by its letter shows itself pressed for a moment before it counts.
        QThread::msleep(250);
        screen->press({u"alt+i"_s});
        QThread::msleep(250);
        screen->press({u"Down"_s, u"Down"_s, u"space"_s, u"Tab"_s, u"ctrl+a"_s});
        screen->type(u"ALTERJ>29"_s);
        screen->press({u"Escape"_s});
        if (!take(u"6-anfrage"_s))
            return false;
        screen->press({u"alt+t"_s});
        // While the table is being computed nothing is copied; a box tells when it is.
        for (int i = 0; i < 8; ++i) {
            screen->press({u"ctrl+c"_s});
            QThread::msleep(250);
            if (screen->activeWindow() != mainWindow)
                break;
        }
        screen->press({u"Return"_s});
        if (soon([&] { return isTable(clipboard()->text()); }))
            return true;
        screen->press({u"ctrl+Prior"_s});
        return false;
    })) << clipboard()->text().toStdString();
    ASSERT_TRUE(Screen::until([&] { return screen->activeWindow() == mainWindow; })) << "the box about the copy goes";
    ASSERT_TRUE(clipboard()->html().contains(u"<table"_s));
    ASSERT_TRUE(take(u"7-tabelle"_s));
}

void BrowsingWalk::chart() {
    // The next tab; its picture on the clipboard, 180 x 110 mm at 300 dots to the inch, and as shapes.
    screen->press({u"ctrl+Next"_s});
    ASSERT_TRUE(Screen::until([&] {
        screen->press({u"ctrl+c"_s});
        return soon([&] { return screen->activeWindow() != mainWindow; });
    }));
    screen->press({u"Return"_s});
    ASSERT_TRUE(Screen::until([&] { return screen->activeWindow() == mainWindow && clipboard()->hasImage(); }));
    EXPECT_EQ(qvariant_cast<QImage>(clipboard()->imageData()).size(), QSize(2126, 1299));
    EXPECT_TRUE(clipboard()->hasFormat(u"image/svg+xml"_s));
    // Another title, and red bars by their parts: the dialog shows them while they are typed.
    screen->press({u"alt+r"_s});
    ASSERT_TRUE(screen->opens(u"Diagramm-Optionen"_s, mainWindow));
    screen->press({u"ctrl+a"_s});
    screen->type(u"Zufrieden 2018"_s);
    screen->press({u"alt+o"_s, u"ctrl+a"_s});
    screen->type(u"200"_s);
    ASSERT_TRUE(take(u"8-diagramm-optionen"_s));
    screen->press({u"Return"_s});
    ASSERT_TRUE(Screen::until([&] { return screen->activeWindow() == mainWindow; }));
    // As a file of a size that is typed.
    const QString file = home(u"bild.svg"_s);
    screen->press({u"alt+p"_s});
    ASSERT_TRUE(screen->opens(u"Grafik speichern"_s, mainWindow));
    const QString size = screen->activeWindow();
    screen->type(u"120"_s);
    screen->press({u"Return"_s});
    ASSERT_TRUE(screen->opens(u"Grafik speichern"_s, size));
    screen->press({u"ctrl+a"_s});
    screen->type(file);
    screen->press({u"Return"_s});
    ASSERT_TRUE(Screen::until([&] { return screen->activeWindow() == mainWindow && QFile::exists(file); }));
    QFile drawing(file);
    ASSERT_TRUE(drawing.open(QIODevice::ReadOnly));
    const QByteArray drawn = drawing.readAll();
    EXPECT_TRUE(drawn.contains("width=\"120mm\"") && drawn.contains("Zufrieden 2018"));
    ASSERT_TRUE(take(u"9-grafik"_s));
}

void BrowsingWalk::documents() {
    // The descriptions of the studies: the last one, copied.
    screen->press({u"ctrl+shift+1"_s});
    ASSERT_TRUE(Screen::until([&] {
        screen->press({u"alt+End"_s, u"ctrl+a"_s, u"ctrl+c"_s});
        return soon([&] { return clipboard()->text().startsWith(u"Dritte Welle. 1.200 mündliche Interviews"_s); });
    })) << clipboard()->text().toStdString();
    ASSERT_TRUE(take(u"10-beschreibung"_s));
    // Its questionnaire, by the menu, found by typing, in the desktop's application.
    ASSERT_TRUE(Screen::until([&] {
        screen->press({u"alt+a"_s, u"f"_s});
        return soon([&] { return screen->activeTitle() == u"Fragebogen"; });
    }));
    screen->type(u"2022"_s);
    ASSERT_TRUE(take(u"11-fragebogen"_s));
    screen->press({u"Return"_s});
    QFile told(home(u"reader.told"_s));
    ASSERT_TRUE(Screen::until([&] { return told.exists() && screen->activeWindow() == mainWindow; }));
    ASSERT_TRUE(told.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(told.readAll()), QStringLiteral(VARIDEX_SAMPLES "/fragebogen/SV2022.pdf"));
}

void BrowsingWalk::leave() {
    screen->press({u"ctrl+F6"_s, u"alt+o"_s, u"s"_s, u"e"_s});
    ASSERT_TRUE(optionsAreCalled(u"Options"_s, u"12-options"_s));
    ASSERT_TRUE(Screen::until([&] {
        screen->press({u"ctrl+q"_s});
        return program.state() == QProcess::NotRunning || program.waitForFinished(2000);
    }));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_FALSE(QFile::exists(home(u"Error.log"_s)));
    QFile settings(home(u"user.ini"_s));
    ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
    const QByteArray stored = settings.readAll();
    for (const char* line : {"MainLeft=1:", "MainWidth=1:", "EnglishLanguage=1:0"})
        ASSERT_TRUE(stored.contains(line)) << line << '\n' << stored.toStdString();
    CSys system;
    system.DatabaseName = home(u"Vx.mdb"_s);
    EXPECT_EQ(system.GetLanguage(), 1);
    EXPECT_EQ(system.GetFormStatus(), 0);
}

} // namespace

TEST_F(BrowsingWalk, APersonWithAKeyboardBrowsesAnalysesAndLeavesTheProgram) {
    if (const QStringList missing = Screen::missingPrograms(); !missing.isEmpty())
        GTEST_SKIP() << "not installed: " << missing.join(u", ").toStdString();
    begin();
    if (!HasFailure())
        browse();
    if (!HasFailure())
        analyse();
    if (!HasFailure())
        chart();
    if (!HasFailure())
        documents();
    if (!HasFailure())
        leave();
}
