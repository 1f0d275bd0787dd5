#include "platform/photos/PictureQueue.h"

#include "platform/photos/thumbnails/PictureWorkers.h"

#include <utility>

namespace lamina {

DispatchQueue& pictureQueue()
{
    static auto* const queue = new DispatchQueue("pictures");
    return *queue;
}

void runShortPictureWork(std::function<void()> work)
{
    PictureWorkers::shared().add(PictureWorkRank::Short, std::move(work));
}

} // namespace lamina
