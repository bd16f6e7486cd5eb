#pragma once

#include <cstdio>
#include <unistd.h>

/// Memory of this process that is in use now, in KiB, the shared libraries' included; 0 where the system does not say.
inline long residentMemory() {
    long all = 0;
    long resident = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &all, &resident) != 2)
            resident = 0;
        std::fclose(file);
    }
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}
