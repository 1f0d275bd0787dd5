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
    const auto done = std::make_shared<DispatchSemaphore>(); // the queue may come to it much later
    busQueue().async([done] { done->signal(); });
    (void)done->wait(kMostSeconds);
}

DispatchQueue& folderQueue()
{
    static auto* const queue = new DispatchQueue("folders");
    return *queue;
}

} // namespace lamina
