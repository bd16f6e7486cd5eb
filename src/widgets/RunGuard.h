#pragma once

#include <functional>
#include <vector>

class QWidget;

/// Closing while an analysis runs: nothing may go away under it, and nothing else may ask the engine.
namespace RunGuard {

/// If a run goes on: stops it, closes the window once it has ended, and answers true; the caller ignores its close
/// event then. Answers false at once without a run.
bool closeAfterRun(QWidget& window);

bool running();

/// A run for as long as it lives: busy, and known to the desktop. The turns that the run gives to events paint and take
/// requests to close; mouse and keys reach only the controls named, menus, the frames of windows and a modal box.
/// Escape stops it.
class Scope {
public:
    /// @param stop ends the run at its next turn
    /// @param controls what the user may go on using
    Scope(std::function<void()> stop, std::vector<QWidget*> controls);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
};

} // namespace RunGuard
