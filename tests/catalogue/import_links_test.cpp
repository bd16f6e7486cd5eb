#include "ImportFixture.h"
#include "app/globals.h"
#include "catalogue/BuildFolder.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/ImportGuard.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// Links and other people's files that stand where the importer keeps or clears away its own.
class ImportLinks : public ImportFixture {
protected:
    QString stranger = home.path(u"stranger/thesis.mdb"_s), survey = home.path(u"survey.sav"_s);

    void SetUp() override {
        QDir().mkpath(home.path(u"stranger"_s));
        write(stranger, "years of work");
        SurveyFileMaker maker;
        maker.number("V1");
        maker.write(survey, {{1.0}});
    }
    /// Runs something in a process of its own, which it has to kill.
    template<class Step>
    static void killed(Step&& step) {
        const pid_t child = fork();
        if (child == 0) {
            step();
            _exit(1);
        }
        waitpid(child, nullptr, 0);
    }
    static void write(const QString& path, const QByteArray& content) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QStringList strangers() const {
        QFile file(stranger);
        const QString content = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        return QDir(home.path(u"stranger"_s)).entryList(QDir::Files | QDir::Hidden) << content;
    }
};

TEST_F(ImportLinks, AreNeverWrittenOrDeletedThrough) {
    const QStringList before = strangers();
    const QString cases = home.path(u"QX1.mdb"_s), note = catalogue + u"-import"_s,
                  buildFolder = home.path(u".my.mdb.vdx-build"_s), nowhere = home.path(u"stranger/none.mdb"_s);
    enum Noted { Nothing, Made, Blank }; // by a killed run, as what became of the case file
    struct Case {
        QString link, target;
        Noted noted;
        QString words; ///< of the refusal; empty: the import goes well
    };
    const Case rows[] = {
        {note, stranger, Nothing, u"my.mdb-import"_s},        {note, nowhere, Nothing, u"my.mdb-import"_s},
        {catalogue, nowhere, Nothing, u"my.mdb"_s},           {cases, nowhere, Nothing, u"zeigt ins Leere"_s},
        {cases, stranger, Blank, u"QX1.mdb ist schon da"_s},  {cases, stranger, Made, u"QX1.mdb ist schon da"_s},
        {buildFolder, home.path(u"stranger"_s), Nothing, {}},
    };
    for (const Case& row : rows) {
        SCOPED_TRACE((row.link + u" -> "_s + row.target).toStdString() + std::to_string(row.noted));
        if (row.noted == Blank)
            write(cases, {});
        if (row.noted != Nothing)
            killed([&] {
                ImportGuard guard(catalogue);
                guard.willWrite(cases);
                raise(SIGKILL);
            });
        QFile::remove(cases);
        ASSERT_TRUE(QFile::link(row.target, row.link));
        removeLeftovers(catalogue);
        const QString words = outcome(request(survey, u"QX1"_s));
        EXPECT_TRUE(row.words.isEmpty() ? words.isEmpty() : words.contains(row.words)) << words.toStdString();
        EXPECT_EQ(strangers(), before);
        EXPECT_EQ(QFile::symLinkTarget(row.link), row.target);
        for (const QString& path : {cases, catalogue, note, buildFolder})
            QFile::remove(path);
    }
}

TEST_F(ImportLinks, ABuildTakesNoFolderOfSomebodyElses) {
    const QStringList before = strangers();
    const QString buildFolder = home.path(u".my.mdb.vdx-build"_s);
    ASSERT_TRUE(QFile::link(home.path(u"stranger"_s), buildFolder));
    EXPECT_THROW(archive::BuildFolder{catalogue}, ImportError);
    archive::finishInterruptedBuild(catalogue);
    EXPECT_EQ(strangers(), before);
}

// A folder that was copied, or that came from somebody, may hold the notes of a killed run, or what looks like them.
TEST_F(ImportLinks, NotesFromElsewhereMoveAndDeleteNothing) {
    const QString own = home.path(u"own/"_s), came = home.path(u"came/"_s), build = u".my.mdb.vdx-build/"_s;
    QDir().mkpath(own);
    for (const QString& name : {u"my.mdb"_s, u"thesis.mdb"_s, u"thesis.docx"_s, u".bashrc"_s})
        write(own + name, "own");
    killed([&] {
        ImportGuard guard(own + u"my.mdb"_s);
        guard.willWrite(own + u"QX1.mdb"_s);
        write(own + u"QX1.mdb"_s, {});
        archive::BuildFolder folder(own + u"my.mdb"_s);
        for (const QString& name : {u"my.mdb"_s, u".bashrc"_s})
            write(folder.files() + u'/' + name, "new");
        folder.settle({u"thesis.mdb"_s});
        raise(SIGKILL);
    });
    const auto all = [](const QString& folder) {
        QMap<QString, QByteArray> files;
        QDirIterator below(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (below.hasNext()) {
            QFile file(below.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            files.insert(file.fileName().mid(folder.size()), file.readAll());
        }
        return files;
    };
    const QMap<QString, QByteArray> left = all(own);
    ASSERT_TRUE(left.contains(build + u"ready"_s) && left.contains(u"my.mdb-import"_s));
    const QByteArray byHand = "made\t" + (own + u"QX1.mdb"_s).toUtf8() + "\n";
    const std::pair<QByteArray, QByteArray> notes[] = {
        {left[u"my.mdb-import"_s], left[build + u"ready"_s]},
        {byHand, "thesis.docx\nthesis.mdb"},
        {{}, "thesis.docx"},
    };
    for (const auto& [note, ready] : notes) {
        QDir(came).removeRecursively();
        QDir().mkpath(came + build + u"new"_s);
        for (auto file = left.begin(); file != left.end(); ++file)
            write(came + file.key(), file.value());
        write(came + u"my.mdb-import"_s, note);
        write(came + build + u"ready"_s, ready);
        QMap<QString, QByteArray> before = all(came);
        removeLeftovers(came + u"my.mdb"_s);
        archive::finishInterruptedBuild(came + u"my.mdb"_s);
        EXPECT_THROW(archive::BuildFolder{came + u"my.mdb"_s}, ImportError);
        if (note.isEmpty()) // of a run that was killed before it wrote anything
            before.remove(u"my.mdb-import"_s);
        EXPECT_EQ(all(came), before) << ready.constData();
        EXPECT_EQ(all(own), left) << "a copy works on the files that it was copied from";
    }
    // Where they were written they hold, but to look at a catalogue moves no file either.
    EXPECT_THROW(removeLeftovers(own + u"my.mdb"_s), ImportError);
    EXPECT_EQ(all(own)[u"thesis.mdb"_s], QByteArray("own"));
    EXPECT_FALSE(QFile::exists(own + u"QX1.mdb"_s));
    { const ImportGuard finishing(own + u"my.mdb"_s); }
    EXPECT_EQ(all(own),
              (QMap<QString, QByteArray>{{u".bashrc"_s, "new"}, {u"my.mdb"_s, "new"}, {u"thesis.docx"_s, "own"}}));
}

TEST_F(ImportLinks, ACatalogueReachedThroughALinkKeepsItsFilesBesideItself) {
    const QString link = home.path(u"stranger/link.mdb"_s);
    ASSERT_EQ(outcome(request(survey, u"QX1"_s)), QString());
    ASSERT_TRUE(QFile::link(catalogue, link));
    ImportRequest wish = request(survey, u"QX2"_s);
    wish.catalogue = link;
    EXPECT_EQ(outcome(wish), QString());
    EXPECT_TRUE(QFile::exists(home.path(u"QX2.mdb"_s)));
    EXPECT_FALSE(QFile::exists(home.path(u"stranger/QX2.mdb"_s)));
    gDatabase.setDatabase(link);
    gDatabase.OpenQXDatabase();
    ASSERT_EQ(gDatabase.State(), 1);
    EXPECT_EQ(QFileInfo(gDatabase.CurrentDatabase()->Name()).absolutePath(), home.path());
    gDatabase.CloseDatabase();
}
