#include "platform/photos/PictureQueue.h"

#include <QThreadPool>

#include <utility>

namespace lamina {

namespace {

constexpr int kShortWorkThreads = 2;

/// Never destroyed, as the queue is not: pictures may still be on their way when the process ends.
QThreadPool& shortWorkPool()
{
    static auto* const pool = [] {
        auto* const made = new QThreadPool;
        made->setMaxThreadCount(kShortWorkThreads);
        return made;
    }();
    return *pool;
}

} // namespace

DispatchQueue& pictureQueue()
{
    static auto* const queue = new DispatchQueue("pictures");
    return *queue;
}

void runShortPictureWork(std::function<void()> work)
{
    shortWorkPool().start([work = std::move(work), expected = DispatchQueue::main().expectWork()]() mutable {
        work();
        work = {}; // before the expectation ends with this block
    });
}

} // namespace lamina
