#include "platform/host/system/BackgroundWork.h"

#include "platform/base/DispatchSemaphore.h"

#include <memory>

namespace lamina {

DispatchQueue& busQueue()
{
    static auto* const queue = new DispatchQueue("session bus");
    return *queue;
}

void awaitBusQueue()
{
    constexpr double kMostSeconds = 2;
    static std::shared_ptr<DispatchSemaphore> outstanding; // on the main thread
    if (outstanding && !outstanding->wait(0))
        return; // it still hangs where it hung

    const auto done = std::make_shared<DispatchSemaphore>(); // the queue may come to it much later
    busQueue().async([done] { done->signal(); });
    outstanding = done->wait(kMostSeconds) ? nullptr : done;
}

DispatchQueue& folderQueue()
{
    static auto* const queue = new DispatchQueue("folders");
    return *queue;
}

} // namespace lamina
