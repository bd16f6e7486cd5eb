#pragma once

#include <QtGlobal>
#include <csignal>
#include <sys/resource.h>

/// Files of this process can't grow beyond a size while it lives: a disk that is full.
class FullDisk {
public:
    explicit FullDisk(qint64 bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit small{static_cast<rlim_t>(bytes), before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit before_{};
};
