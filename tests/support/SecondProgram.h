#pragma once

#include "platform/dao/Functions.h"

#include <QByteArray>
#include <csignal>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

/// Another process with a connection of its own to a file. To be made before this process opens any: the locks of an
/// open file mean nothing in a child.
class SecondProgram {
public:
    explicit SecondProgram(const QString& path) {
        int ends[2] = {};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends), 0);
        here_ = ends[0];
        child_ = fork();
        if (child_ == 0) {
            close(ends[0]);
            serve(ends[1], path.toUtf8());
            _exit(0);
        }
        close(ends[1]);
    }
    ~SecondProgram() {
        close(here_); // it ends
        waitpid(child_, nullptr, 0);
    }
    SecondProgram(const SecondProgram&) = delete;
    SecondProgram& operator=(const SecondProgram&) = delete;

    /// Runs statements; a transaction that they leave open stays so. @return SQLite's result
    int tryRun(const QByteArray& sql) const {
        EXPECT_EQ(write(here_, sql.constData(), static_cast<size_t>(sql.size())), sql.size());
        int result = -1;
        EXPECT_EQ(read(here_, &result, sizeof result), static_cast<ssize_t>(sizeof result));
        return result;
    }
    void run(const QByteArray& sql) const { EXPECT_EQ(tryRun(sql), SQLITE_OK) << sql.constData(); }

private:
    int here_ = -1;
    pid_t child_ = 0;

    static void serve(int there, const QByteArray& path) {
        sqlite3* file = nullptr;
        QByteArray sql(64 * 1024, Qt::Uninitialized);
        for (ssize_t size = 0; (size = read(there, sql.data(), static_cast<size_t>(sql.size()))) > 0;) {
            if (file == nullptr) {
                sqlite3_open(path.constData(), &file);
                dao::registerFunctions(file);
            }
            const int result = sqlite3_exec(file, sql.first(size).constData(), nullptr, nullptr, nullptr);
            if (write(there, &result, sizeof result) != static_cast<ssize_t>(sizeof result))
                break;
        }
        sqlite3_close(file);
    }
};
