// A build is whole or leaves everything as it was, whatever goes wrong and whenever it ends.

#include "catalogue/ArchiveBuilder.h"
#include "catalogue/BuildFolder.h"
#include "catalogue/CatalogueImport.h"
#include "catalogue/ImportGuard.h"
#include "platform/dao/DBEngine.h"
#include "support/PrintQt.h"
#include "support/SurveyFileMaker.h"
#include "support/TestHome.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <csignal>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A folder with a survey file (V1, V2; two cases) and a description, and another one where the catalogue
/// goes.
class ArchiveFolder {
public:
    ArchiveFolder() {
        QDir(home_.path()).mkpath(u"in/karten"_s);
        QDir(home_.path()).mkpath(u"out"_s);
        SurveyFileMaker maker;
        maker.number("V1", "Eins");
        maker.number("V2", "Zwei");
        maker.write(in(u"a.sav"_s), {{1.0, 2.0}, {2.0, 2.0}});
        write(in(u"karten/a.png"_s), "picture");
    }

    QString in(const QString& name) const { return home_.path(u"in/"_s + name); }
    QString out(const QString& name) const { return home_.path(u"out/"_s + name); }

    static void write(const QString& path, const QByteArray& content) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    /// Builds with these members in the study QX1 and these in a category; the message of a refusal, else
    /// empty.
    QString build(const QByteArray& study = {}, const QByteArray& category = R"("name": "K")", bool replace = false,
                  const QByteArray& more = {}) {
        write(in(u"archive.json"_s),
              "{\"format\": 1, \"views\": [{\"table\": \"Study\", \"kind\": \"study\", \"name\": \"S\", "
              "\"entries\": [\n"
              "{\"study\": \"QX1\", \"file\": \"a.sav\"" +
                  study + "}]},\n{\"table\": \"Category\", \"kind\": \"category\", \"name\": \"K\", \"entries\": [{" +
                  category + "}]}]" + more + "}");
        try {
            report = buildArchive({out(u"cat.mdb"_s), in(u"archive.json"_s), replace, progress});
        } catch (const ImportError& error) {
            return error.text();
        }
        return {};
    }

    /// Every file below the target folder with its content.
    std::map<QString, QByteArray> target() const {
        std::map<QString, QByteArray> files;
        QDirIterator all(home_.path(u"out"_s), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (all.hasNext()) {
            QFile file(all.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            files[QDir(home_.path(u"out"_s)).relativeFilePath(file.fileName())] = file.readAll();
        }
        return files;
    }
    QString names() const {
        QStringList all;
        for (const auto& [name, content] : target())
            all << name;
        return all.join(u' ');
    }

    BuildReport report;
    std::function<bool(double)> progress;

private:
    TestHome home_;
};

struct Fault {
    const char* name;
    QByteArray study, category;
    const char16_t* message;
};

class BuildRefused : public testing::TestWithParam<Fault> {};

} // namespace

TEST_P(BuildRefused, WithThePlaceAndNothingLeftBehind) {
    ArchiveFolder folder;
    EXPECT_EQ(folder.build(GetParam().study, GetParam().category), QString::fromUtf16(GetParam().message));
    EXPECT_EQ(folder.names(), QString());
}

INSTANTIATE_TEST_SUITE_P(
    All, BuildRefused,
    testing::Values(
        Fault{"variable_text", R"(, "variables": {"V9": {}})", "",
              u"archive.json, Zeile 2 (views[0].entries[0].variables.V9): die Studie 'QX1' hat keine "
              u"Variable 'V9'"},
        Fault{"variable_of_a_part", R"(, "parts": [{"number": "A", "variable": "V9"}])", "",
              u"archive.json, Zeile 2 (views[0].entries[0].parts[0].variable): die Studie 'QX1' hat keine "
              u"Variable 'V9'"},
        Fault{"number_to_be_encoded", R"(, "encode": ["V2"])", "",
              u"archive.json, Zeile 2 (views[0].entries[0].encode): In Zahlen umsetzen, V2: Die Variable ist in der "
              u"Datei kein Text"},
        Fault{"variable_of_a_table", R"(, "tables": [{"variables": ["V9"]}])", "",
              u"archive.json, Zeile 2 (views[0].entries[0]): Variable V9 gibt es in der Datei nicht"},
        Fault{"weight", R"(, "weightRE": "V9")", "",
              u"archive.json, Zeile 2 (views[0].entries[0]): Gewicht V9: Die Datei hat keine solche Variable"},
        Fault{"pattern", "", R"("variables": ["V1", "QX2:V*"])",
              u"archive.json, Zeile 3 (views[1].entries[0].variables[1]): keine Variable passt zu 'QX2:V*'"},
        Fault{"query_without_id", R"(, "query": "SELECT QX1_1.V1 AS SE FROM QX1_1;")", "",
              u"archive.json, Zeile 2 (views[0].entries[0].query): die Abfrage liefert keine Spalte ID"},
        Fault{
            "query_without_selection",
            R"(, "query": "SELECT QX1_1.dt_CaseID AS ID FROM QX1_1;", "parts": [{"number": "A", "variable": "V1", "criterion": "1", "separateAnalysis": true}])",
            "", u"archive.json, Zeile 2 (views[0].entries[0].query): die Abfrage liefert keine Spalte SE"},
        Fault{"parts_without_query",
              R"(, "parts": [{"number": "A", "variable": "V1", "criterion": "1", "separateAnalysis": true}])", "",
              u"archive.json, Zeile 2 (views[0].entries[0]): Teile mit 'separateAnalysis' brauchen eine "
              u"'query', die eine Spalte SE liefert"}),
    [](const auto& fault) { return std::string(fault.param.name); });

TEST(Build, RefusesWhatIsNotThereOrIsThereAlready) {
    ArchiveFolder folder;
    // The engine's words follow the place.
    EXPECT_TRUE(folder.build(R"(, "query": "SELECT dt_CaseID AS ID, V9 AS SE FROM QX1_1;")")
                    .startsWith(u"archive.json, Zeile 2 (views[0].entries[0].query): "_s));
    QFile::rename(folder.in(u"a.sav"_s), folder.in(u"b.sav"_s));
    EXPECT_EQ(folder.build(), u"archive.json, Zeile 2 (views[0].entries[0].file): die Datei '%1' ist nicht da"_s.arg(
                                  folder.in(u"a.sav"_s)));
    QFile::rename(folder.in(u"b.sav"_s), folder.in(u"a.sav"_s));

    // A file left by an older archive would be taken for the table's own file.
    for (const QString& name : {u"QX1.mdb"_s, u"QX1-2.mdb"_s, u"cat.mdb"_s, u"karten/a.png"_s}) {
        QDir().mkpath(folder.out(u"karten"_s));
        ArchiveFolder::write(folder.out(name), "old");
        const auto before = folder.target();
        EXPECT_EQ(folder.build(R"(, "variables": {"V1": {"showCard": "karten/a.png"}})"),
                  u"'%1' ist schon da; mit --replace wird es ersetzt."_s.arg(folder.out(name)));
        EXPECT_EQ(folder.target(), before);
        QFile::remove(folder.out(name));
    }

    ArchiveFolder::write(folder.out(u"cat.mdb"_s), "a letter to my aunt");
    const auto before = folder.target();
    EXPECT_ANY_THROW({
        if (!folder.build({}, R"("name": "K")", true).isEmpty())
            throw std::runtime_error("refused");
    });
    EXPECT_EQ(folder.target(), before);
}

TEST(Build, WarnsOfAQueryThatCannotBeWeighted) {
    ArchiveFolder folder;
    EXPECT_EQ(folder.build(R"(, "query": "SELECT dt_CaseID AS ID FROM QX1_1 WHERE V1 = 1;")"), QString());
    EXPECT_EQ(folder.report.warnings,
              QStringList{
                  u"archive.json, Zeile 2 (views[0].entries[0].query): WHERE: ein Gewicht lässt sich nicht anfügen"_s});
}

TEST(Build, ReportsDocumentsThatTheOpenersWouldMiss) {
    ArchiveFolder folder;
    ArchiveFolder::write(folder.in(u"karten/QX1A.pdf"_s), "pdf");
    EXPECT_EQ(folder.build(R"(, "parts": [{"number": "A"}, {"number": "B"}])", R"("name": "K")", false,
                           R"(, "questionnaires": "karten", "dataSets": "karten")"),
              QString());
    EXPECT_EQ(folder.report.warnings,
              (QStringList{u"archive.json, Zeile 2 (views[0].entries[0]): der Fragebogen 'QX1B.pdf' ist nicht da"_s,
                           u"archive.json, Zeile 2 (views[0].entries[0]): der Datensatz 'QX1.sav' ist nicht da"_s}));
}

TEST(Build, ReplacesAsAWholeOrNotAtAll) {
    ArchiveFolder folder;
    ASSERT_EQ(
        folder.build(
            R"(, "tables": [{"variables": ["V2"], "ownFile": true}], "variables": {"V1": {"showCard": "karten/a.png"}})"),
        QString());
    EXPECT_EQ(folder.names(), u"QX1-2.mdb QX1.mdb cat.mdb karten/a.png"_s);
    const auto before = folder.target();

    EXPECT_FALSE(folder.build({}, R"("variables": ["V9"])", true).isEmpty());
    EXPECT_EQ(folder.target(), before);

    folder.progress = [](double) { return false; };
    EXPECT_FALSE(folder.build({}, R"("name": "K")", true).isEmpty());
    EXPECT_EQ(folder.target(), before);
    folder.progress = {};

    // A folder where a case file should go: the move fails in its middle and is taken back.
    QFile::remove(folder.out(u"QX1-2.mdb"_s));
    QDir().mkpath(folder.out(u"QX1-2.mdb/x"_s));
    const auto blocked = folder.target();
    EXPECT_FALSE(
        folder.build(R"(, "tables": [{"variables": ["V2"], "ownFile": true}])", R"("name": "K")", true).isEmpty());
    EXPECT_EQ(folder.target(), blocked);
    QDir(folder.out(u"QX1-2.mdb"_s)).removeRecursively();
    ArchiveFolder::write(folder.out(u"QX1-2.mdb"_s), before.at(u"QX1-2.mdb"_s));

    // The new archive has one table; the second one's file would be taken for it if it stayed.
    EXPECT_EQ(folder.build({}, R"("name": "K", "variables": ["V?"])", true), QString());
    EXPECT_EQ(folder.names(), u"QX1.mdb cat.mdb karten/a.png"_s);
    EXPECT_EQ(folder.report.assignments, 2);
    const dao::DatabasePtr catalogue = dao::DBEngine::instance().OpenDatabase(folder.out(u"cat.mdb"_s));
    EXPECT_EQ(catalogue->OpenRecordset(u"tkey_Variable"_s)->RecordCount(), 2);
    // Nothing of the trial of queries or of the place where it was built stays behind.
    for (int i = 0; i < catalogue->TableDefs().Count(); ++i)
        EXPECT_EQ(catalogue->TableDefs().Item(i)->Connect(), QString());
    catalogue->Close();
}

namespace {
int deletionsToLive = -1; ///< files that this process may delete before it is killed; -1: any number
}

/// Stands before the system's own in this program.
extern "C" int unlink(const char* path) noexcept {
    if (deletionsToLive >= 0 && deletionsToLive-- == 0)
        raise(SIGKILL);
    return static_cast<int>(syscall(SYS_unlink, path));
}

namespace {

/// What a killed build leaves: its folder, at a certain step.
class KilledBuild : public testing::Test {
protected:
    ArchiveFolder folder_;
    QString inFolder(const QString& name) const { return folder_.out(u".cat.mdb.vdx-build/"_s + name); }
    void kill(bool settled) {
        for (const QString& name : {u"cat.mdb"_s, u"QX1.mdb"_s, u"QX1-2.mdb"_s})
            ArchiveFolder::write(folder_.out(name), "old");
        const pid_t child = fork();
        if (child == 0) {
            const ImportGuard guard(folder_.out(u"cat.mdb"_s));
            archive::BuildFolder build(folder_.out(u"cat.mdb"_s));
            for (const QString& name : {u"cat.mdb"_s, u"QX1.mdb"_s})
                ArchiveFolder::write(inFolder(u"new/"_s + name), "new");
            if (settled)
                build.settle({u"QX1-2.mdb"_s});
            raise(SIGKILL);
        }
        waitpid(child, nullptr, 0);
        QDir().mkpath(inFolder(u"old"_s));
    }
    void putInPlace() const {
        for (const QString& name : {u"cat.mdb"_s, u"QX1.mdb"_s, u"QX1-2.mdb"_s})
            QFile::rename(folder_.out(name), inFolder(u"old/"_s + name));
        for (const QString& name : {u"QX1.mdb"_s, u"cat.mdb"_s})
            QFile::rename(inFolder(u"new/"_s + name), folder_.out(name));
    }
    /// What the next build or import does first.
    void next() const { const ImportGuard guard(folder_.out(u"cat.mdb"_s)); }
};

const std::map<QString, QByteArray> oldFiles{{u"cat.mdb"_s, "old"}, {u"QX1.mdb"_s, "old"}, {u"QX1-2.mdb"_s, "old"}};
const std::map<QString, QByteArray> newFiles{{u"cat.mdb"_s, "new"}, {u"QX1.mdb"_s, "new"}};

} // namespace

TEST_F(KilledBuild, BeforeItHadEverythingLeavesTheOldArchive) {
    kill(false);
    next();
    EXPECT_EQ(folder_.target(), oldFiles);
}

TEST_F(KilledBuild, WhileMovingIsFinished) {
    kill(true);
    // A journal of the old catalogue would be played back into the new one.
    ArchiveFolder::write(folder_.out(u"cat.mdb-journal"_s), "old");
    // What came later is nobody's to move.
    ArchiveFolder::write(inFolder(u"new/later.mdb"_s), "later");
    next();
    EXPECT_EQ(folder_.target(), newFiles);
}

TEST_F(KilledBuild, HalfWayIsFinished) {
    kill(true);
    QFile::rename(folder_.out(u"cat.mdb"_s), inFolder(u"old/cat.mdb"_s));
    QFile::rename(folder_.out(u"QX1.mdb"_s), inFolder(u"old/QX1.mdb"_s));
    QFile::rename(inFolder(u"new/QX1.mdb"_s), folder_.out(u"QX1.mdb"_s));
    next();
    // The second table's file went with the old archive; the first one's is the new one already.
    EXPECT_EQ(folder_.target(), newFiles);
}

TEST_F(KilledBuild, WithEverythingInPlaceOnlyNeedsItsFolderRemovedHoweverOftenThatIsKilled) {
    bool finished = false;
    for (int deletions = 0; !finished && deletions < 20; ++deletions) {
        SCOPED_TRACE(deletions);
        kill(true);
        putInPlace();
        const pid_t child = fork();
        if (child == 0) {
            deletionsToLive = deletions;
            next();
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        finished = WIFEXITED(status);
        next();
        EXPECT_NO_THROW(archive::BuildFolder(folder_.out(u"cat.mdb"_s)));
        EXPECT_EQ(folder_.target(), newFiles);
    }
    EXPECT_TRUE(finished);
}

// Somebody who only looks removes what was built in vain, and reports what waits to be finished.
TEST_F(KilledBuild, IsClearedAwayByReadingUnlessItWaitsForItsMove) {
    kill(false);
    removeLeftovers(folder_.out(u"cat.mdb"_s));
    EXPECT_EQ(folder_.target(), oldFiles);
    kill(true);
    EXPECT_THROW(removeLeftovers(folder_.out(u"cat.mdb"_s)), ImportError);
    EXPECT_TRUE(QFile::exists(inFolder(u"new/cat.mdb"_s)));
}

TEST_F(KilledBuild, ANoteThatIsAPipeIsNobodysAndKeepsNobodyWaiting) {
    for (const QString& name : {u"owner"_s, u"ready"_s}) {
        kill(true);
        QFile::remove(inFolder(name));
        ASSERT_EQ(mkfifo(inFolder(name).toUtf8().constData(), 0600), 0);
        const pid_t child = fork();
        if (child == 0) {
            alarm(10);
            next();
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status)) << name.toStdString();
        QDir(inFolder({})).removeRecursively();
        EXPECT_EQ(folder_.target(), oldFiles);
    }
}
