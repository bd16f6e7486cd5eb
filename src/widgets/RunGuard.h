#pragma once

class QWidget;

/// Closing while an analysis runs: nothing may go away under it.
namespace RunGuard {

/// If a run goes on: stops it, closes the window once it has ended, and answers true; the caller ignores its close event
/// then. Answers false at once without a run.
bool closeAfterRun(QWidget& window);

} // namespace RunGuard
