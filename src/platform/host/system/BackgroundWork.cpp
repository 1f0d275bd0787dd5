#include "platform/host/system/BackgroundWork.h"

namespace lamina {

DispatchQueue& busQueue()
{
    static auto* const queue = new DispatchQueue("session bus");
    return *queue;
}

DispatchQueue& folderQueue()
{
    static auto* const queue = new DispatchQueue("folders");
    return *queue;
}

} // namespace lamina
