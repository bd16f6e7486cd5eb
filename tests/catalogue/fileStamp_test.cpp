#include "catalogue/fileStamp.h"

#include "platform/dao/DBEngine.h"
#include "support/TestHome.h"

#include <QFile>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

class FileStampTest : public testing::Test {
protected:
    TestHome home;
    QString path = home.path(u"a.mdb"_s);
    sqlite3* other = nullptr; ///< another program's connection

    void SetUp() override {
        sqlite3_open(path.toUtf8().constData(), &other);
        run("CREATE TABLE t (x); INSERT INTO t VALUES (1), (2)");
    }
    void TearDown() override { sqlite3_close(other); }
    void run(const char* sql) { ASSERT_EQ(sqlite3_exec(other, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql; }
    /// Puts the time of the last change back, so that only the content can tell.
    void setTimes(const timespec& modified) {
        const timespec times[] = {modified, modified};
        ASSERT_EQ(utimensat(AT_FDCWD, path.toUtf8().constData(), times, 0), 0);
    }
};

} // namespace

TEST_F(FileStampTest, ACommitShowsAndAReadDoesNot) {
    const FileStamp before = fileStamp(path);
    struct stat found {};
    stat(path.toUtf8().constData(), &found);
    EXPECT_EQ(before.size, found.st_size);
    EXPECT_EQ(before.inode, found.st_ino);
    run("SELECT sum(x) FROM t");
    const dao::DatabasePtr reader = dao::DBEngine::instance().OpenDatabase(path);
    EXPECT_EQ(reader->OpenRecordset(u"SELECT Sum(x) AS s FROM t"_s)->text(u"s"_s), u"3"_s);
    reader->Close();
    EXPECT_EQ(fileStamp(path), before);

    run("BEGIN; UPDATE t SET x = 5");
    EXPECT_TRUE(fileStamp(path).journal);
    run("COMMIT");
    EXPECT_FALSE(fileStamp(path).journal);
    EXPECT_EQ(fileStamp(path).size, before.size);
    setTimes(found.st_mtim);
    EXPECT_EQ(fileStamp(path).modified, before.modified);
    EXPECT_EQ(fileStamp(path).changes, before.changes + 1);
    EXPECT_NE(fileStamp(path), before);

    run("PRAGMA journal_mode=WAL");
    const FileStamp logged = fileStamp(path);
    run("UPDATE t SET x = 6");
    EXPECT_NE(fileStamp(path), logged);
}

TEST_F(FileStampTest, AnotherFileInItsPlaceShowsAndNoFileHasAStampToo) {
    const FileStamp before = fileStamp(path);
    ASSERT_TRUE(QFile::copy(path, home.path(u"b.mdb"_s)));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(fileStamp(path), FileStamp());
    ASSERT_TRUE(QFile::rename(home.path(u"b.mdb"_s), path));
    EXPECT_NE(fileStamp(path), before);
    // A pipe would keep whoever opens it waiting.
    const QString pipe = home.path(u"pipe.mdb"_s);
    ASSERT_EQ(mkfifo(pipe.toUtf8().constData(), 0600), 0);
    EXPECT_EQ(fileStamp(pipe).changes, 0U);
}

// The system drops all locks of a process on a file when any of its descriptors is closed.
TEST_F(FileStampTest, ALookDropsNoLockOfThisProcess) {
    run("BEGIN IMMEDIATE");
    fileStamp(path);
    const pid_t child = fork();
    if (child == 0) {
        // Asked of the system: what SQLite knows of its locks the child has got along with the memory.
        struct flock lock {};
        lock.l_type = F_WRLCK;
        lock.l_whence = SEEK_SET;
        lock.l_start = 0x40000001; // the byte that a writer reserves
        lock.l_len = 1;
        const int file = open(path.toUtf8().constData(), O_RDWR);
        _exit(fcntl(file, F_GETLK, &lock) == 0 && lock.l_type == F_WRLCK ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    run("ROLLBACK");
}
