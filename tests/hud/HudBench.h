#pragma once

#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/view/HeadlessHost.h"

#include <cmath>
#include <gtest/gtest.h>
#include <memory>

namespace lamina::test {

/// A host that shows everything, and a clock that moves when it is told to.
class HudBench : public testing::Test {
protected:
    class WatchedHost : public HeadlessHost {
        bool showsMotion() const override { return true; }
        bool showsFrames() const override { return true; }
    };

    HudBench()
    {
        Clock::setShared(clock);
        PresentationHost::setCurrent(std::make_shared<WatchedHost>());
    }
    ~HudBench() override
    {
        PresentationHost::setCurrent(nullptr);
        pass(1);
        Clock::setShared(nullptr);
    }
    void pass(double seconds)
    {
        constexpr double kStep = 0.01;
        DispatchQueue::main().drain();
        for (auto left = std::lround(seconds / kStep); left > 0; --left) {
            clock->advance(kStep);
            DispatchQueue::main().drain();
        }
    }

    const std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
};

} // namespace lamina::test
