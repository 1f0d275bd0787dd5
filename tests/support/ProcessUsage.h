#pragma once

#include <sys/resource.h>
#include <sys/time.h>

namespace lamina::test {

/// What a process has used by the time it is gone.
struct ProcessUsage {
    double processorSeconds = 0;
    long peakKilobytes = 0;
};

inline ProcessUsage usageOf(const rusage& usage)
{
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {seconds(usage.ru_utime) + seconds(usage.ru_stime), usage.ru_maxrss};
}

} // namespace lamina::test
