#include "ImportFixture.h"
#include "catalogue/ImportGuard.h"
#include "catalogue/schema.h"
#include "platform/system/FileIdentity.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int caseCount = 3000;

void writeSurvey(const QString& path, double value) {
    SurveyFileMaker maker;
    for (const char* name : {"V1", "V2", "V3", "V4", "V5"})
        maker.number(name);
    maker.text("TEXT", 60);
    maker.write(path, caseCount, [&](int i) {
        return SurveyFileMaker::Row{value, i + 0.25, i + 0.5, double(i), double(i % 7), "some words to fill pages"};
    });
}

/// Imports in a process of its own. @return its id
template<class Prepare>
pid_t importInChild(const ImportRequest& request, Prepare&& prepare) {
    const pid_t child = fork();
    if (child != 0)
        return child;
    prepare();
    int code = 0;
    try {
        importSurvey(request);
    } catch (...) {
        code = 1;
    }
    _exit(code);
}

int waitFor(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

} // namespace

class ImportInterrupted : public ImportFixture {
protected:
    QString first = home.path(u"first.sav"_s), second = home.path(u"second.sav"_s);

    void SetUp() override {
        writeSurvey(first, 1);
        writeSurvey(second, 2);
    }

    QStringList content() {
        return rows(catalogue, u"SELECT id_StudyNo, dt_StudyTitle FROM tkey_Study ORDER BY id_StudyNo"_s) +
               rows(catalogue, u"SELECT fi_StudyNo, Count(*) AS N FROM tkey_Variable GROUP BY fi_StudyNo"_s);
    }
};

TEST_F(ImportInterrupted, AKillAtAnyMomentLeavesAllOrNothing) {
    ImportRequest base = request(first, u"QX1"_s);
    base.settings.title = u"A"_s;
    QElapsedTimer timer;
    timer.start();
    ASSERT_EQ(outcome(base), QString());
    const qint64 length = timer.nsecsElapsed() / 1000;
    ImportRequest replacing = request(second, u"QX1"_s);
    replacing.settings.replace = true;
    replacing.settings.title = u"B"_s;
    const ImportRequest adding = request(second, u"QX2"_s);
    ImportRequest making = request(second, u"QX3"_s);
    making.catalogue = home.path(u"new.mdb"_s);
    making.settings.dataFolder = home.path(u"data"_s);
    QDir().mkpath(making.settings.dataFolder);

    const auto before = folder();
    const QStringList contentBefore = content();
    std::mt19937 random(20'180'331);
    int unfinished = 0;
    for (int round = 0; round < 18; ++round) {
        const ImportRequest& wish = round % 3 == 0 ? replacing : round % 3 == 1 ? adding : making;
        const pid_t child = importInChild(wish, [] {});
        // Mostly while it is at work, in the last rounds around its end.
        const qint64 least = round < 14 ? 0 : length, most = round < 14 ? length : 2 * length;
        usleep(static_cast<useconds_t>(std::uniform_int_distribution(least, most)(random)));
        kill(child, SIGKILL);
        const bool finished = WIFEXITED(waitFor(child));

        removeLeftovers(wish.catalogue);
        const QString cases = wish.settings.dataFolder.isEmpty() ? home.path(wish.settings.study + u".mdb"_s)
                                                                 : home.path(u"data/QX3.mdb"_s);
        bool taken = false;
        if (&wish == &replacing)
            taken = content().contains(u"QX1|B"_s);
        else if (&wish == &adding)
            taken = content().contains(u"QX2|QX2"_s);
        else
            taken = QFile::exists(making.catalogue);
        EXPECT_TRUE(taken || !finished) << round;
        unfinished += !taken;
        if (taken || &wish == &replacing) {
            const double value = taken ? 2 : 1;
            EXPECT_EQ(
                rows(cases, u"SELECT Count(*) AS N, Min(V1) AS A, Max(V1) AS B FROM %1_1"_s.arg(wish.settings.study)),
                QStringList{u"%1|%2|%2"_s.arg(caseCount).arg(value)})
                << round;
        }
        if (!taken) {
            EXPECT_TRUE(folder() == before) << round << folder().keys().join(u' ').toStdString();
            EXPECT_EQ(QDir(making.settings.dataFolder).entryList(QDir::Files), QStringList()) << round;
            continue;
        }
        // Back to the beginning for the next round.
        for (const QString& name : folder().keys())
            QFile::remove(home.path(name));
        QFile::remove(home.path(u"data/QX3.mdb"_s));
        for (auto file = before.begin(); file != before.end(); ++file) {
            QFile copy(home.path(file.key()));
            ASSERT_TRUE(copy.open(QIODevice::WriteOnly));
            copy.write(file.value());
        }
        EXPECT_EQ(content(), contentBefore);
    }
    EXPECT_GT(unfinished, 3) << "the kills came too late to tell anything";
}

TEST_F(ImportInterrupted, AFullDiskLeavesEverythingAsItWas) {
    ASSERT_EQ(outcome(request(first, u"QX1"_s)), QString());
    const auto before = folder();
    for (const bool replace : {true, false})
        for (const rlim_t limit : {20'000, 60'000, 120'000}) {
            ImportRequest wish = request(second, replace ? u"QX1"_s : u"QX2"_s);
            wish.settings.replace = replace;
            const int status = waitFor(importInChild(wish, [limit] {
                // A file may grow no further; the writer gets the error that a full medium gives.
                signal(SIGXFSZ, SIG_IGN);
                const rlimit most{limit, limit};
                setrlimit(RLIMIT_FSIZE, &most);
            }));
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << limit;
            // The limit may have kept it from writing the old pages back.
            removeLeftovers(catalogue);
            EXPECT_TRUE(folder() == before) << limit << folder().keys().join(u' ').toStdString();
        }
}

// The first thing written beside a new catalogue is the note of the import itself.
TEST_F(ImportInterrupted, ADiskWithoutAnyRoomIsNamedAndKeepsNoNote) {
    const auto before = folder();
    rlimit usual{};
    getrlimit(RLIMIT_FSIZE, &usual);
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    const rlimit none{0, usual.rlim_max};
    setrlimit(RLIMIT_FSIZE, &none);
    const QString words = outcome(request(second, u"QX2"_s));
    setrlimit(RLIMIT_FSIZE, &usual);
    signal(SIGXFSZ, handler);
    EXPECT_TRUE(words.endsWith(u"(%1)"_s.arg(QString::fromLocal8Bit(strerror(EFBIG))))) << words.toStdString();
    EXPECT_TRUE(folder() == before) << folder().keys().join(u' ').toStdString();
}

// A kill between the commit and the tidying up, and a file without content that somebody put there.
TEST_F(ImportInterrupted, EmptiedFilesGoAndBlankOnesStay) {
    const QString emptied = home.path(u"QX1-2.mdb"_s), blank = home.path(u"QX3.mdb"_s);
    ASSERT_EQ(outcome(request(first, u"QX1"_s)), QString());
    const dao::DatabasePtr made = dao::DBEngine::instance().Workspaces(0).CreateDatabase(emptied);
    made->Close();
    QFile empty(blank);
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    empty.close();
    const pid_t child = fork();
    if (child == 0) {
        ImportGuard guard(catalogue);
        guard.willWrite(emptied);
        guard.removeIfEmpty(emptied);
        guard.removeIfEmpty(home.path(u"QX1.mdb"_s)); // not committed: its table is still there
        guard.willWrite(blank);
        const dao::DatabasePtr opened = dao::DBEngine::instance().OpenDatabase(catalogue);
        const auto begun = opened->openCompanion(blank);
        dao::DBEngine::instance().Workspaces(0).BeginTrans();
        begun->createTable(*schema::definition(*opened, schema::cases(u"QX3_1"_s, {})));
        raise(SIGKILL);
    }
    EXPECT_TRUE(WIFSIGNALED(waitFor(child)));
    removeLeftovers(catalogue);
    EXPECT_FALSE(QFile::exists(emptied));
    EXPECT_TRUE(QFile::exists(blank));
    EXPECT_EQ(QFile(blank).size(), 0);
    EXPECT_EQ(rows(home.path(u"QX1.mdb"_s), u"SELECT Count(*) AS N FROM QX1_1"_s),
              QStringList{QString::number(caseCount)});
}

// Whatever comes between the commit and the end of the run: what is committed is nobody's rest.
TEST_F(ImportInterrupted, ACommittedFileThatBeganBlankKeepsItsCases) {
    ASSERT_EQ(outcome(request(first, u"QX1"_s)), QString());
    for (const bool isKilled : {true, false}) {
        const QString blank = home.path(isKilled ? u"QX3.mdb"_s : u"QX4.mdb"_s);
        QFile empty(blank);
        ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
        empty.close();
        const pid_t child = fork();
        if (child == 0) {
            std::optional<ImportGuard> guard(std::in_place, catalogue);
            guard->willWrite(blank);
            const dao::DatabasePtr opened = dao::DBEngine::instance().OpenDatabase(catalogue);
            auto companion = opened->openCompanion(blank);
            dao::DBEngine::instance().Workspaces(0).BeginTrans();
            companion->createTable(*schema::definition(*opened, schema::cases(u"t"_s, {})));
            auto appender = companion->openAppender(u"t"_s, {u"dt_CaseID"_s});
            appender->setNumber(0, 7);
            appender->appendRow();
            appender.reset();
            dao::DBEngine::instance().Workspaces(0).CommitTrans();
            if (isKilled)
                raise(SIGKILL);
            companion.reset();
            opened->Close();
            guard.reset(); // as in a run that fails now
            _exit(0);
        }
        EXPECT_EQ(WIFSIGNALED(waitFor(child)), isKilled);
        removeLeftovers(catalogue);
        EXPECT_EQ(rows(blank, u"SELECT dt_CaseID FROM t"_s), QStringList{u"7"_s}) << isKilled;
        EXPECT_FALSE(QFile::exists(catalogue + u"-import"_s));
    }
}

// What was damaged before cannot be rolled back, and needs not be.
TEST_F(ImportInterrupted, AFailureBlocksNoOtherStudy) {
    ASSERT_EQ(outcome(request(first, u"QX1"_s)), QString());
    ASSERT_TRUE(QFile::resize(home.path(u"QX1.mdb"_s), 100'000));
    QDir().mkpath(home.path(u"A5.mdb"_s));
    for (const QString& study : {u"QX1"_s, u"A5"_s}) {
        ImportRequest wish = request(second, study);
        wish.settings.replace = true;
        EXPECT_NE(outcome(wish), QString()) << study.toStdString();
        EXPECT_FALSE(QFile::exists(catalogue + u"-import"_s)) << study.toStdString();
        EXPECT_EQ(outcome(request(second, u"B"_s + study)), QString());
    }
}

// A path starts in the catalogue's folder; one that leads out of it is noted as it is, too.
TEST_F(ImportInterrupted, TheNoteTellsWhatBecomesOfWhichFile) {
    const QString blank = home.path(u"blank.mdb"_s), there = home.path(u"there.mdb"_s), link = home.path(u"link.mdb"_s);
    QDir().mkpath(home.path(u"cat"_s));
    QFile(blank).open(QIODevice::WriteOnly);
    writeSurvey(there, 1);
    QFile::link(there, link);
    const QString folder = home.path(u"cat"_s), main = home.path(u"cat/my.mdb"_s);
    ImportGuard guard(main);
    for (const QString& path : {main, blank, there, link})
        guard.willWrite(path);
    guard.willWrite(blank); // once is enough
    guard.removeIfEmpty(there);
    QStringList expected{u"note "_s + fileIdentity(main + u"-import"_s) + u' ' + fileIdentity(folder),
                         u"made %1 my.mdb"_s.arg(fileIdentity(folder))};
    const auto outside = [&](const QString& mark, const QString& path) {
        expected << u"%1 %2 ../%3"_s.arg(mark, fileIdentity(path), QFileInfo(path).fileName())
                 << u"%1 %2 %3"_s.arg(mark, fileIdentity(path), path);
    };
    outside(u"blank"_s, blank);
    outside(u"touched"_s, there);
    outside(u"touched"_s, link);
    outside(u"made"_s, there);
    QFile note(main + u"-import"_s);
    ASSERT_TRUE(note.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(note.readAll()).replace(u'\t', u' ').trimmed().split(u'\n'), expected);
    guard.done();
    EXPECT_FALSE(note.exists());
}

TEST_F(ImportInterrupted, ALineThatIsNotAboutTheVeryFileMovesNothing) {
    ASSERT_EQ(outcome(request(first, u"QX1"_s)), QString());
    const QString name = u"made.mdb"_s, victim = home.path(name), text = home.path(u"my.txt"_s);
    const QString link = home.path(u"link.mdb"_s), cases = home.path(u"QX1.mdb"_s);
    struct Case {
        QString mark, identity, path, goes;
    };
    const auto make = [&] {
        dao::DBEngine::instance().Workspaces(0).CreateDatabase(victim)->Close(); // without a table
    };
    make();
    ASSERT_TRUE(QFile::copy(victim, text) && QFile::copy(victim, home.path(u"other.mdb"_s)));
    QFile::link(home.path(u"other.mdb"_s), link);
    const QString own = fileIdentity(victim), folderOwn = fileIdentity(home.path());
    const std::vector<Case> lines{
        {u"made"_s, own, name, name},
        {u"made"_s, own, u"../%1/%2"_s.arg(QDir(home.path()).dirName(), name), name},
        {u"made"_s, own, victim, name},
        {u"made"_s, folderOwn, name, name},
        {u"made"_s, u"1.2.3"_s, name, {}},
        {u"made"_s, QString(), name, {}},
        {u"blank"_s, folderOwn, name, {}},
        {u"touched"_s, own, name, {}},
        {u"gone"_s, own, name, {}},
        {u"made"_s, own, u"elsewhere/"_s + name, {}},
        {u"made"_s, fileIdentity(text), u"my.txt"_s, {}},
        {u"made"_s, fileIdentity(link), u"link.mdb"_s, {}},
        {u"made"_s, fileIdentity(cases), u"QX1.mdb"_s, {}},
        {u"blank"_s, fileIdentity(cases), u"QX1.mdb"_s, {}},
    };
    for (const Case& line : lines)
        for (const bool isForeign : {false, true}) {
            QFile note(catalogue + u"-import"_s);
            ASSERT_TRUE(note.open(QIODevice::WriteOnly));
            const QString noted = isForeign ? u"4.5.6"_s : fileIdentity(note.fileName());
            const QString identity = line.identity == own ? fileIdentity(victim) : line.identity;
            note.write(u"note\t%1\t%2\n%3\t%4\t%5\n"_s.arg(noted, folderOwn, line.mark, identity, line.path).toUtf8());
            note.close();
            auto expected = folder();
            if (!isForeign) {
                expected.remove(u"my.mdb-import"_s);
                expected.remove(line.goes);
            }
            removeLeftovers(catalogue);
            auto left = folder();
            EXPECT_EQ(left.keys(), expected.keys()) << isForeign << (line.mark + u' ' + line.path).toStdString();
            EXPECT_TRUE(left == expected);
            if (!QFile::exists(victim))
                make();
            QFile::remove(note.fileName());
        }
}

TEST_F(ImportInterrupted, OneImportAtATime) {
    ASSERT_EQ(outcome(request(first, u"QX1"_s)), QString());
    ImportGuard guard(catalogue);
    EXPECT_TRUE(outcome(request(second, u"QX2"_s)).contains(u"my.mdb"_s));
    guard.done();
}

TEST_F(ImportInterrupted, ANoteThatIsAPipeIsNamedAndLeftAlone) {
    ASSERT_EQ(outcome(request(first, u"QX1"_s)), QString());
    const QString note = catalogue + u"-import"_s;
    ASSERT_EQ(mkfifo(note.toUtf8().constData(), 0600), 0);
    testing::internal::CaptureStderr();
    removeLeftovers(catalogue);
    const QString words = outcome(request(second, u"QX2"_s));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(words.startsWith(note + u": "_s)) << words.toStdString();
    EXPECT_TRUE(QFileInfo::exists(note));
}
