#include "EditingWorld.h"
#include "catalogue/mdDataBase.h"

#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <csignal>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A process that copies a large part of the catalogue.
class Copying {
public:
    template<class Copy>
    explicit Copying(Copy&& copy) {
        EXPECT_EQ(pipe(ends_), 0);
        child_ = fork();
        if (child_ == 0)
            copy([this] { return write(ends_[1], "x", 1) == 1; });
        close(ends_[1]);
        char ready = 0;
        EXPECT_EQ(read(ends_[0], &ready, 1), 1);
        begun_.start();
    }
    /// Ends it at a moment after it has begun. @return true if it had not come to its end
    bool kill(int microseconds) {
        usleep(static_cast<useconds_t>(microseconds));
        ::kill(child_, SIGKILL);
        return wait() != 0;
    }
    /// Waits for its end. @return its status
    int wait() {
        int status = 0;
        waitpid(child_, &status, 0);
        lasted_ = static_cast<int>(begun_.nsecsElapsed() / 1000);
        close(ends_[0]);
        return status;
    }
    int microseconds() const { return lasted_; }

private:
    int ends_[2] = {};
    pid_t child_ = 0;
    int lasted_ = 0;
    QElapsedTimer begun_;
};

class EditKills : public EditingWorld {
protected:
    void SetUp() override {
        catalogue.fill();
        catalogue.together([&] {
            for (int i = 0; i < 60; ++i) {
                catalogue.addCategory(u"Category"_s, 100 + i, i == 0 ? 0 : 100 + i / 4, i, u"Eintrag %1"_s.arg(i));
                for (const char* const name : {"V5", "V6", "V7", "V8", "V9"})
                    catalogue.addAssignment(u"Category"_s, 100 + i, u"QX1919"_s, QString::fromLatin1(name));
            }
        });
    }
    /// In a process of its own.
    [[noreturn]] void copy(const std::function<bool()>& ready) {
        const bool opened = catalogue.open() == 1;
        categories.open(2);
        const bool done =
            opened && ready() && dropEntry(categories, u"B100"_s, categories, u"B2"_s, TransferMode::Copy);
        _exit(done ? 0 : 1);
    }
};

TEST_F(EditKills, AtAnyMomentLeaveABulkCopyWholeOrUndone) {
    const auto started = [this](const auto& ready) { copy(ready); };
    QFile file(catalogue.path());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    file.close();
    const auto restore = [&] {
        QFile again(catalogue.path());
        return again.open(QIODevice::WriteOnly | QIODevice::Truncate) && again.write(bytes) == bytes.size();
    };
    const QString before = digest();
    Copying whole(started);
    ASSERT_EQ(whole.wait(), 0);
    const QString after = digest();
    ASSERT_NE(after, before);
    ASSERT_TRUE(restore());
    std::mt19937 random(14);
    // Moments up to a time that follows how fast the machine is meanwhile, so that about as many come too late as not.
    int killed = 0, undone = 0, latest = whole.microseconds();
    for (int times = 0; times < 200; ++times) {
        Copying one(started);
        const bool inTime = one.kill(static_cast<int>(random() % static_cast<unsigned>(latest)));
        killed += inTime ? 1 : 0;
        latest = std::max(1000, inTime ? latest + latest / 16 : latest - latest / 16);
        const QString now = digest();
        ASSERT_EQ(integrity(), u"ok"_s);
        ASSERT_TRUE(now == before || now == after) << now.toStdString();
        undone += now == before ? 1 : 0;
        if (now == after) {
            ASSERT_TRUE(restore());
        }
    }
    EXPECT_GT(killed, 50);
    EXPECT_GT(undone, 50);
    ASSERT_EQ(Copying(started).wait(), 0); // nothing is in the way of the next
}

} // namespace
