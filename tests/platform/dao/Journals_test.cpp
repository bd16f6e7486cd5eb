#include "platform/dao/EngineFixture.h"
#include "platform/dao/Journals.h"
#include "support/KillingFiles.h"

#include <QDir>
#include <QFile>
#include <QtEndian>
#include <functional>
#include <random>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Two files that were changed in one commit, from 1 to 2, by a process that was killed in it; in a folder that is not
/// called any more what it was called then. In "begun" the commit's own file is still there, in "done" it is gone.
class JournalsTest : public EngineTest {
protected:
    QString place; ///< folder of the case at hand

    void SetUp() override {
        auto* const steps =
            static_cast<int*>(mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
        killAt(1'000'000, *steps);
        // The last three steps remove the commit's own file and the two journals.
        const int all = *steps;
        for (const auto& [name, step] : {std::pair(u"begun"_s, all - 3), {u"done"_s, all - 2}}) {
            QDir(path(u"origin"_s)).removeRecursively();
            *steps = 0;
            killAt(step, *steps);
            ASSERT_TRUE(QDir().rename(path(u"origin"_s), path(name)));
        }
        munmap(steps, sizeof(int));
        write(path(u"victim.txt"_s), "precious");
    }

    void killAt(int step, int& steps) const {
        QDir().mkpath(path(u"origin"_s));
        const QByteArray main = path(u"origin/main.mdb"_s).toUtf8(), cases = path(u"origin/cases.mdb"_s).toUtf8();
        for (const QByteArray& file : {main, cases}) {
            sqlite3* made = nullptr;
            sqlite3_open(file.constData(), &made);
            sqlite3_exec(made, "CREATE TABLE t (v INTEGER); INSERT INTO t VALUES (1)", nullptr, nullptr, nullptr);
            sqlite3_close(made);
        }
        const pid_t child = fork();
        if (child == 0) {
            KillingFiles::install(step, steps);
            sqlite3* handle = nullptr;
            sqlite3_open(main.constData(), &handle);
            const QByteArray sql =
                "ATTACH '" + cases + "' AS c; BEGIN; UPDATE t SET v = 2; UPDATE c.t SET v = 2; COMMIT";
            _exit(sqlite3_exec(handle, sql.constData(), nullptr, nullptr, nullptr));
        }
        int status = 0;
        waitpid(child, &status, 0);
    }

    static void write(const QString& file, const QByteArray& content) {
        QFile to(file);
        ASSERT_TRUE(to.open(QIODevice::WriteOnly));
        to.write(content);
    }
    static QByteArray contentOf(const QString& file) {
        QFile from(file);
        return from.open(QIODevice::ReadOnly) ? from.readAll() : QByteArray();
    }

    /// Begins a case with a copy of "begun" or "done".
    void take(const QString& state) {
        place = path(u"case"_s);
        QDir(place).removeRecursively();
        QDir().mkpath(place);
        for (const QString& name : QDir(path(state)).entryList(QDir::Files))
            ASSERT_TRUE(QFile::copy(path(state) + u'/' + name, place + u'/' + name));
    }
    QString in(const QString& name) const { return place + u'/' + name; }
    QString superJournal() const { return in(QDir(place).entryList({u"*-mj*"_s}).value(0)); }
    void removeSuperJournal() const { ASSERT_TRUE(QFile::remove(superJournal())); }

    /// The record with which a journal names a super-journal, in the file format's own terms.
    static QByteArray record(const QByteArray& name) {
        const auto number = [](quint32 value) {
            QByteArray bytes(4, '\0');
            qToBigEndian(value, bytes.data());
            return bytes;
        };
        quint32 sum = 0;
        for (const char byte : name)
            sum += static_cast<quint32>(byte);
        return number(0x40000000 / 4096 + 1) + name + number(static_cast<quint32>(name.size())) + number(sum) +
               QByteArray::fromHex("d9d505f920a163d7");
    }
    /// Makes a journal name another file.
    void name(const QString& journal, const QByteArray& superJournal) const {
        const QByteArray content = contentOf(journal);
        const auto length = qFromBigEndian<quint32>(content.constData() + content.size() - 16);
        write(journal, content.chopped(20 + length) + record(superJournal));
    }

    /// What the main file and the other one, reached as a link, hold; of what is refused, the error's number.
    QString found(QString* words = nullptr) {
        QString values;
        dao::DatabasePtr database;
        const auto note = [&](const std::function<QString()>& read) {
            try {
                values += (values.isEmpty() ? QString() : u" "_s) + read();
            } catch (const dao::Error& error) {
                values += (values.isEmpty() ? u"!"_s : u" !"_s) + QString::number(error.number());
                if (words != nullptr)
                    *words = error.description();
            }
        };
        note([&] {
            database = workspace().OpenDatabase(in(u"main.mdb"_s), false, true);
            return rows(*database, u"SELECT v FROM t"_s);
        });
        note([&] {
            if (!database)
                return rows(*workspace().OpenDatabase(in(u"cases.mdb"_s)), u"SELECT v FROM t"_s);
            addLink(*database, u"c"_s, in(u"cases.mdb"_s), u"t"_s);
            return rows(*database, u"SELECT v FROM c"_s);
        });
        if (database)
            database->Close();
        EXPECT_EQ(contentOf(path(u"victim.txt"_s)), "precious");
        return values;
    }
};

} // namespace

TEST_F(JournalsTest, ACommitOfSeveralFilesIsAllOrNothingWhereverItsFolderLies) {
    take(u"begun"_s);
    EXPECT_EQ(found(), u"1 1"_s);
    EXPECT_EQ(QDir(place).entryList(QDir::Files), (QStringList{u"cases.mdb"_s, u"main.mdb"_s}));
    take(u"done"_s);
    EXPECT_EQ(found(), u"2 2"_s);
    EXPECT_EQ(QDir(place).entryList(QDir::Files), (QStringList{u"cases.mdb"_s, u"main.mdb"_s}));

    // The other file first, and in a folder of its own that was moved by itself.
    take(u"begun"_s);
    EXPECT_EQ(rows(*workspace().OpenDatabase(in(u"cases.mdb"_s)), u"SELECT v FROM t"_s), u"1"_s);
    EXPECT_EQ(found(), u"1 1"_s);
    for (const QString& state : {u"begun"_s, u"done"_s}) {
        take(state);
        QDir(path(u"apart"_s)).removeRecursively();
        QDir().mkpath(path(u"apart"_s));
        for (const QString& name : {u"cases.mdb"_s, u"cases.mdb-journal"_s})
            ASSERT_TRUE(QFile::rename(in(name), path(u"apart/"_s) + name));
        EXPECT_EQ(errorOf([&] { workspace().OpenDatabase(path(u"apart/cases.mdb"_s)); }), 3049);
        const dao::DatabasePtr database = workspace().OpenDatabase(in(u"main.mdb"_s));
        addLink(*database, u"c"_s, path(u"apart/cases.mdb"_s), u"t"_s);
        if (state == u"done"_s) { // which a copy that was made before the change was taken back would look like too
            EXPECT_EQ(errorOf([&] { rows(*database, u"SELECT v FROM c"_s); }), 3049);
            dao::settleJournals(dao::DatabaseLocation::find(path(u"apart/cases.mdb"_s)),
                                {.mainFolder = place, .isOriginal = true});
        }
        EXPECT_EQ(rows(*database, u"SELECT t.v, c.v FROM t, c"_s), state == u"begun"_s ? u"1,1"_s : u"2,2"_s);
        database->Close();
    }
}

TEST_F(JournalsTest, AJournalThatNoCommitCanHaveLeftIsRefusedInWords) {
    const QString victim = path(u"victim.txt"_s);
    const auto pipe = [this](const QString& name) {
        QFile::remove(in(name));
        ASSERT_EQ(mkfifo(in(name).toUtf8().constData(), 0600), 0);
    };
    struct Case {
        const char* title;
        std::function<void()> prepare;
        QString found, words;
    };
    const std::vector<Case> cases{
        {"another file", [&] { name(in(u"main.mdb-journal"_s), victim.toUtf8()); }, u"!3049 2"_s, u"victim.txt"_s},
        {"another file, of the linked one", [&] { name(in(u"cases.mdb-journal"_s), victim.toUtf8()); }, u"2 !3049"_s,
         u"victim.txt"_s},
        {"another file behind one that is right",
         [&] {
             take(u"begun"_s);
             const QByteArray genuine = (path(u"origin/"_s) + QFileInfo(superJournal()).fileName()).toUtf8();
             name(in(u"main.mdb-journal"_s), victim.toUtf8());
             write(in(u"main.mdb-journal"_s), contentOf(in(u"main.mdb-journal"_s)) + record(genuine));
         },
         u"!3049 1"_s, u"victim.txt"_s},
        {"one that is right, many times over",
         [&] {
             take(u"begun"_s);
             const QByteArray genuine = (path(u"origin/"_s) + QFileInfo(superJournal()).fileName()).toUtf8();
             write(in(u"main.mdb-journal"_s), contentOf(in(u"main.mdb-journal"_s)) + record(genuine).repeated(20));
         },
         u"!3049 1"_s, u"and another one"_s},
        {"a name without a folder", [&] { name(in(u"main.mdb-journal"_s), "main.mdb-mj0123AB9CD"); }, u"!3049 2"_s,
         u"main.mdb-mj0123AB9CD"_s},
        {"a main file that is nowhere", [&] { name(in(u"main.mdb-journal"_s), "/nowhere/x.mdb-mj0123AB9CD"); },
         u"!3049 2"_s, u"x.mdb', which does not lie here"_s},
        {"a pipe", [&] { pipe(u"main.mdb-journal"_s); }, u"!3049 2"_s, u"main.mdb-journal"_s},
        {"a pipe, of the linked one", [&] { pipe(u"cases.mdb-journal"_s); }, u"2 !3049"_s, u"cases.mdb-journal"_s},
        {"a log that is a pipe", [&] { pipe(u"main.mdb-wal"_s); }, u"!3049 2"_s, u"main.mdb-wal"_s},
        {"a link",
         [&] {
             QFile::remove(in(u"main.mdb-journal"_s));
             QFile::link(victim, in(u"main.mdb-journal"_s));
         },
         u"!3049 2"_s, u"main.mdb-journal"_s},
        {"a folder",
         [&] {
             QFile::remove(in(u"main.mdb-journal"_s));
             QDir().mkdir(in(u"main.mdb-journal"_s));
         },
         u"!3049 2"_s, u"main.mdb-journal"_s},
    };
    for (const Case& one : cases) {
        take(u"done"_s);
        one.prepare();
        QString words;
        EXPECT_EQ(found(&words), one.found) << one.title;
        EXPECT_TRUE(words.contains(one.words)) << one.title << ": " << words.toStdString();
    }
}

TEST_F(JournalsTest, ACommitsOwnFileThatIsNoneIsLeftAloneAndWhatItListsElsewhereToo) {
    take(u"begun"_s);
    const QString own = superJournal();
    removeSuperJournal();
    ASSERT_EQ(mkfifo(own.toUtf8().constData(), 0600), 0);
    EXPECT_EQ(found(), u"1 1"_s) << "a pipe, which is not read";
    EXPECT_TRUE(QFileInfo::exists(own));

    take(u"begun"_s);
    write(superJournal(), "notes of somebody");
    EXPECT_EQ(found(), u"1 1"_s);
    EXPECT_EQ(contentOf(superJournal()), "notes of somebody");

    // Not even a journal, if it does not name this commit itself.
    take(u"begun"_s);
    const QByteArray other = "a journal of something else";
    write(path(u"other.mdb"_s), "a file");
    write(path(u"other.mdb-journal"_s), other);
    write(superJournal(), contentOf(superJournal()) + path(u"other.mdb-journal"_s).toUtf8() + '\0');
    EXPECT_EQ(found(), u"1 1"_s);
    EXPECT_EQ(contentOf(path(u"other.mdb-journal"_s)), other);
}

TEST_F(JournalsTest, TheJournalOfSomebodyWhoIsWritingIsLeftAlone) {
    take(u"done"_s);
    const QByteArray journal = contentOf(in(u"main.mdb-journal"_s));
    QFile::remove(in(u"main.mdb-journal"_s));
    sqlite3* writer = nullptr;
    sqlite3_open(in(u"main.mdb"_s).toUtf8().constData(), &writer);
    sqlite3_exec(writer, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    write(in(u"main.mdb-journal"_s), journal);
    EXPECT_EQ(found(), u"2 2"_s);
    EXPECT_EQ(contentOf(in(u"main.mdb-journal"_s)), journal);
    sqlite3_exec(writer, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(writer);
    EXPECT_EQ(found(), u"2 2"_s);
    EXPECT_FALSE(QFile::exists(in(u"main.mdb-journal"_s)));
}

TEST_F(JournalsTest, WhateverAJournalSaysTheDataComesOldOrNewOrIsRefused) {
    std::mt19937 random(20'261'125);
    const auto below = [&](qsizetype end) { return std::uniform_int_distribution<qsizetype>(0, end - 1)(random); };
    const QByteArray names[] = {path(u"victim.txt"_s).toUtf8(),
                                in(u"main.mdb"_s).toUtf8(),
                                "/etc/passwd",
                                "main.mdb",
                                path(u"victim.mdb-mj0123AB9CD"_s).toUtf8(),
                                QByteArray(600, 'x'),
                                "/"};
    QMap<QString, int> outcomes;
    for (int round = 0; round < 60; ++round) {
        take(round % 2 == 0 ? u"begun"_s : u"done"_s);
        const QString journal = in(round % 3 == 0 ? u"cases.mdb-journal"_s : u"main.mdb-journal"_s);
        QByteArray content = contentOf(journal);
        switch (below(5)) {
        case 0: // the record at the end: a name, its length, its sum, the mark
            for (int i = 0; i < 3; ++i)
                content[content.size() - 1 - below(60)] = static_cast<char>(below(256));
            write(journal, content);
            break;
        case 1:
            name(journal, names[below(std::size(names))]);
            break;
        case 2: // cut off
            write(journal, content.first(below(content.size())));
            break;
        case 3: // one commit's journal at another's file, or more behind it
            write(journal, contentOf(in(u"cases.mdb-journal"_s)) + QByteArray(below(3) * 512, '\0'));
            break;
        default: // the list of the journals
            if (const QString own = superJournal(); QFileInfo(own).isFile())
                write(own, names[below(std::size(names))] + '\0' + contentOf(own).first(below(40)));
        }
        const QString values = found();
        for (const QString& value : values.split(u' '))
            EXPECT_TRUE(value == u"1"_s || value == u"2"_s || value.startsWith(u'!')) << round << values.toStdString();
        ++outcomes[values];
    }
    EXPECT_GT(outcomes[u"1 1"_s], 5);
    EXPECT_GT(outcomes[u"2 2"_s], 5);
    EXPECT_GT(outcomes.size(), 4);
}
