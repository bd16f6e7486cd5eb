#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <functional>

/// A command of vdx as a child process that reads survey files for a window: whatever a file does to it, the program
/// lives on, and it can be stopped at any moment.
class VdxProcess {
public:
    enum class Outcome { Done, Refused, Stopped, Crashed, NotStarted };
    struct End {
        Outcome outcome = Outcome::Done;
        QString words;     ///< what it said on standard error, or what happened to it, in the user's language
        QStringList facts; ///< what it printed, a line each
    };

    VdxProcess();
    /// Kills a child that still runs.
    ~VdxProcess();
    VdxProcess(const VdxProcess&) = delete;
    VdxProcess& operator=(const VdxProcess&) = delete;

    std::function<void(int percent)> onProgress;
    /// Called once for each start, from the event loop.
    std::function<void(const End&)> onEnd;

    /// Starts a command that knows --progress; messages come in the user's language.
    void start(const QStringList& arguments);
    /// Kills the child; what it has begun is cleared away by removeLeftovers().
    void stop();
    bool isRunning() const { return process_.state() != QProcess::NotRunning; }

    /// The program, which lies beside this one; empty if it doesn't.
    static QString program();
    /// In place of it, for tests.
    static QString programInTests;

private:
    QProcess process_;
    QByteArray pending_; ///< of standard error, without its end of line yet
    QStringList said_, printed_;
    bool stopped_ = false, ended_ = true;

    void readErrors();
    void takeLine(const QString& line);
    void end(Outcome outcome, const QString& words);
};
