#include "analysis/run/runTrap.h"

#include "config/Options.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>
#include <new>

using namespace Qt::StringLiterals;

namespace {

const QString disc = u"Bitte legen Sie die CD-ROM mit den Auswertungsdateien ein und klicken Sie 'OK'."_s;

const QString noDrive = u"Auf das Laufwerk mit den Auswertungsdateien konnte nicht zugegriffen werden."_s;
const QString writeProtected =
    u"Die Auswertungsdateien sind in einem schreibgeschützten Pfad, z.B. einer CD-ROM. "
    u"Ermöglichen Sie Schreibzugriff oder wählen Sie die Option 'Daten-Dateien auf CD-ROM' aus."_s;

/// A statement that fails a number of times, under a clock that moves half a second a pause.
struct Failing {
    int number;
    int times;
    int runs = 0;
    qint64 now = 1000;
    bool cancelled = false;
    bool dataOnCD = false;

    StepEnd run() {
        const RunClock clock{[this] { return now; }, [this] { now += 500; }};
        return runEngineStep(
            [this] {
                ++runs;
                if (times-- > 0)
                    throw dao::Error(number, u"failed"_s);
            },
            clock, [this] { return cancelled; }, dataOnCD);
    }
};

} // namespace

TEST(RunTrap, AsksForTheDiscAndRunsTheFailedStatementAgain) {
    const TestHome home;
    const std::vector<std::pair<int, QString>> titles{{3043, u"Datenträger- oder Laufwerksfehler"_s},
                                                      {52, u"Datei nicht gefunden"_s}};
    for (const auto& [number, title] : titles) {
        ScriptedAsker asker;
        asker.answer(ui::Answer::Ok).answer(ui::Answer::Cancel).answer(ui::Answer::Ok);
        Failing twice{number, 2}, once{number, 1};
        twice.dataOnCD = once.dataOnCD = true;
        EXPECT_EQ(twice.run(), StepEnd::Ended);
        EXPECT_EQ(twice.runs, 2);
        EXPECT_EQ(once.run(), StepEnd::Done);
        EXPECT_EQ(asker.texts(), QStringList(3, disc));
        EXPECT_EQ(asker.boxes[0].title, title);
    }
    for (const int number : {52, 3050, 3051}) {
        ScriptedAsker asker;
        Failing once{number, 1};
        EXPECT_EQ(once.run(), StepEnd::Ended);
        EXPECT_EQ(asker.lastText(), number == 52 ? noDrive : writeProtected);
        EXPECT_EQ(asker.boxes[0].title,
                  number == 52 ? u"Datei nicht gefunden"_s : u"Datei konnte nicht gesperrt werden"_s);
    }
}

TEST(RunTrap, TriesAnUnseenNameForFifteenSecondsByTheClock) {
    const TestHome home;
    ScriptedAsker asker;
    Failing soon{3078, 29};
    EXPECT_EQ(soon.run(), StepEnd::Done);
    EXPECT_TRUE(asker.boxes.empty());
    Failing never{3078, 1000};
    EXPECT_EQ(never.run(), StepEnd::Ended);
    EXPECT_EQ(never.now, 16000);
    EXPECT_EQ(asker.boxes.size(), 1u) << "the general handler has the last word";
    Failing given{3078, 1000};
    given.cancelled = true;
    EXPECT_EQ(given.run(), StepEnd::Cancelled);
    EXPECT_EQ(given.runs, 1);
}

TEST(RunTrap, EndsACancelledStatementWithoutAWordAndReportsTheRest) {
    const TestHome home;
    ScriptedAsker asker;
    Failing cancelled{3059, 1};
    cancelled.cancelled = true;
    EXPECT_EQ(cancelled.run(), StepEnd::Cancelled);
    EXPECT_TRUE(asker.boxes.empty());
    Failing syntax{3075, 1};
    EXPECT_EQ(syntax.run(), StepEnd::Ended);
    EXPECT_TRUE(asker.lastText().contains(u"(3075) failed"_s));
    // A failure that is none of the engine's ends the run as others do, and not the program.
    EXPECT_EQ(runEngineStep([] { throw std::bad_alloc(); }, RunClock::system(), [] { return false; }, false),
              StepEnd::Ended);
    EXPECT_TRUE(asker.lastText().contains(u"(7) Out of memory"_s));
}
