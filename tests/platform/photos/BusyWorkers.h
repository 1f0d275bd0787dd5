#pragma once

#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/photos/thumbnails/PictureWorkers.h"

#include <gtest/gtest.h>

namespace lamina::test {

/// The two threads for thumbnails, both busy until they are released. The first does what can't be stopped.
class BusyWorkers {
public:
    BusyWorkers()
    {
        DispatchSemaphore begun;
        for (DispatchSemaphore& gate : m_gates)
            PictureWorkers::shared().add(
                PictureWorkRank::Look,
                [&] {
                    begun.signal();
                    gate.wait(20);
                },
                &gate == m_gates ? PictureWorkKind::OneAtATime : PictureWorkKind::Ordinary);
        EXPECT_TRUE(begun.wait(20) && begun.wait(20));
    }
    ~BusyWorkers()
    {
        m_gates[0].signal();
        m_gates[1].signal();
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
    }
    /// Has the second thread do all that was asked for before.
    void runOne()
    {
        DispatchSemaphore done;
        PictureWorkers::shared().add(PictureWorkRank::Warm, [&] { done.signal(); });
        m_gates[1].signal();
        EXPECT_TRUE(done.wait(20));
    }

private:
    DispatchSemaphore m_gates[2];
};

} // namespace lamina::test
