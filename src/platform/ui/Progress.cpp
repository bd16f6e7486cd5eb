#include "platform/ui/Progress.h"

#include "platform/ui/Asker.h"

#include <algorithm>

namespace {
constexpr int interval = 50; ///< milliseconds between two pictures
}

int ui::Progress::patience = 1000;

ui::Progress::Progress(Stop stop, std::function<int()> total) : stop_(stop), total_(std::move(total)) {
    begun_.start();
}

bool ui::Progress::next(const QString& text) {
    const int before = done_++;
    if (stopped_ || unseen_)
        return !stopped_;
    const qint64 now = begun_.elapsed();
    if (!view_) {
        if (now < patience)
            return true;
        view_ = asker().openProgress(stop_ == Stop::Allowed);
        unseen_ = !view_;
        if (unseen_)
            return true;
        parts_ = total_ ? total_() : 0;
    } else if (now - shown_ < interval && patience > 0) {
        return true;
    }
    stopped_ = !view_->show(text, std::min(before, parts_), parts_);
    shown_ = begun_.elapsed();
    return !stopped_;
}
