#pragma once

#include "CommandRunner.h"

#include <sched.h>

namespace lamina::test {

/// Numbers are written with commas for as long as it lives; it fails the running test where that can't be had. The
/// locale is made for it.
class GermanLocale {
public:
    GermanLocale();
    ~GermanLocale();
    GermanLocale(const GermanLocale&) = delete;
    GermanLocale& operator=(const GermanLocale&) = delete;

private:
    TemporaryFolder m_folder;
};

/// Leaves one processor to this thread, and to those that it starts, for as long as it lives.
class OneProcessor {
public:
    OneProcessor();
    ~OneProcessor();
    OneProcessor(const OneProcessor&) = delete;
    OneProcessor& operator=(const OneProcessor&) = delete;

private:
    cpu_set_t m_before{};
};

} // namespace lamina::test
