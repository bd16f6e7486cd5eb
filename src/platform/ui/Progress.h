#pragma once

#include <QElapsedTimer>
#include <QString>
#include <functional>
#include <memory>

namespace ui {

/// What a user sees of a step that takes long, for as long as it lives.
class ProgressView {
public:
    virtual ~ProgressView() = default;
    /// Shows how far the step is, and gives an event turn. @param total 0 if the length is not known
    /// @return false once the user wants the step to end
    virtual bool show(const QString& text, int done, int total) = 0;
};

/// A step that may take long. Nothing is shown of it until it has lasted a second; then the asker shows a progress
/// window, with a way to stop it if it may be stopped.
class Progress {
public:
    enum class Stop { No, Allowed };

    /// @param total tells the number of parts, 0 if that is not known; asked only once something is to be shown
    Progress(Stop stop, std::function<int()> total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Another part begins. @return false from the moment on at which the user has stopped the step
    bool next(const QString& text);
    bool stopped() const { return stopped_; }

    /// How long a step may take unseen, in milliseconds.
    static int patience;

private:
    Stop stop_;
    std::function<int()> total_;
    std::unique_ptr<ProgressView> view_;
    QElapsedTimer begun_;
    qint64 shown_ = 0;
    int parts_ = 0, done_ = 0;
    bool unseen_ = false, stopped_ = false;
};

} // namespace ui
