#pragma once

#include "platform/base/DispatchQueue.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <functional>

namespace lamina::test {

/// Runs Qt's events and the main queue until `done`; false when that took too long.
inline bool runUntil(const std::function<bool()>& done, int milliseconds = 20'000)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents();
        DispatchQueue::main().runTurn();
        QThread::msleep(1);
    }
    return true;
}

/// Runs them for a while in which nothing should happen.
inline void runFor(int milliseconds)
{
    (void)runUntil([] { return false; }, milliseconds);
}

} // namespace lamina::test
