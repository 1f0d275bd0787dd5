#pragma once

#include "platform/base/DispatchQueue.h"

#include <QPointer>

#include <functional>
#include <utility>

namespace lamina {

/// For waits on the session bus. Never destroyed.
DispatchQueue& busQueue();
/// Waits until what that has now is done, for two seconds at most, and not again while it hangs: a connection that is
/// just being made is not to be overtaken by Qt's own end, but a bus that hangs keeps nobody from leaving. Main thread.
void awaitBusQueue();
/// For looking through folders, which can take long on slow disks. Never destroyed.
DispatchQueue& folderQueue();

/// Runs `work` on `queue` and hands its value to `done` on the main queue, unless `context` is gone by then. Until that
/// has happened the main queue does not count as idle. Called on the main thread.
template <class Value>
void inBackground(DispatchQueue& queue, QObject* context, std::function<Value()> work, std::function<void(Value)> done)
{
    queue.async([context = QPointer<QObject>(context), work = std::move(work), done = std::move(done),
                 expected = DispatchQueue::main().expectWork()]() mutable {
        DispatchQueue::main().async([context, value = work(), done = std::move(done)]() mutable {
            if (context)
                done(std::move(value));
        });
        expected.reset();
    });
}

} // namespace lamina
