#pragma once

#include <csignal>

/// Ctrl+C and its like only ask for an end, as long as one of these lives: what has been begun is cleared away then.
class StopSignal {
public:
    StopSignal() : interrupt_(std::signal(SIGINT, ask)), terminate_(std::signal(SIGTERM, ask)) {}
    ~StopSignal() {
        std::signal(SIGINT, interrupt_);
        std::signal(SIGTERM, terminate_);
        asked_ = 0;
    }
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    bool wanted() const { return asked_ != 0; }

private:
    using Handler = void (*)(int);
    static inline volatile std::sig_atomic_t asked_ = 0;
    Handler interrupt_, terminate_;

    static void ask(int) { asked_ = 1; }
};
