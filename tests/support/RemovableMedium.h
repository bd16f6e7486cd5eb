#pragma once

#include <QString>

/// A medium with files that can be taken out while the program has them open: its folder still lists them, but reading
/// fails as it does from a drive without its disc. One at a time; databases opened while it lives notice it.
class RemovableMedium {
public:
    explicit RemovableMedium(const QString& folder);
    ~RemovableMedium();
    RemovableMedium(const RemovableMedium&) = delete;
    RemovableMedium& operator=(const RemovableMedium&) = delete;

    static void takeOut();
    static void putIn();
};
