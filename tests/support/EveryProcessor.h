#pragma once

#include "platform/base/WorkerPool.h"

#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <hwy/targets.h>
#include <iostream>
#include <string>

namespace lamina::test {

/// Calls `check(what)` on every kind of lanes that the processor has, saying which, and on several numbers of threads.
inline void onEveryProcessor(const std::function<void(const std::string&)>& check)
{
    std::string names;
    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
        names += std::string(" ") + hwy::TargetName(target);
        check(hwy::TargetName(target));
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    std::cout << "Compared with the plain loop:" << names << '\n';
    EXPECT_FALSE(names.empty());
    for (const unsigned threads : {1u, 3u}) {
        WorkerPool::shared().setConcurrency(threads);
        check(std::to_string(threads) + " threads");
    }
    WorkerPool::shared().setConcurrency(0);
}

} // namespace lamina::test
