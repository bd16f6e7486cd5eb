#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

/// Permissions do not bind root; for as long as this lives, the process is nobody in particular.
class AsNobody {
public:
    AsNobody() : root_(geteuid() == 0 && seteuid(65534) == 0) {}
    ~AsNobody() { EXPECT_TRUE(!root_ || seteuid(0) == 0); }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

private:
    bool root_;
};
