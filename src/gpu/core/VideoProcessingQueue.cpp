#include "gpu/core/VideoProcessingQueue.h"

#include "gpu/core/GPUImageContext.h"

#include <utility>

namespace lamina {

bool isOnVideoProcessingQueue()
{
    return DispatchQueue::currentSpecific(GPUImageContext::contextKey()) != nullptr;
}

void runSynchronouslyOnVideoProcessingQueue(const DispatchQueue::Block& block)
{
    runSynchronouslyOnContextQueue(GPUImageContext::sharedImageProcessingContext(), block);
}

void runAsynchronouslyOnVideoProcessingQueue(DispatchQueue::Block block)
{
    runAsynchronouslyOnContextQueue(GPUImageContext::sharedImageProcessingContext(), std::move(block));
}

void runSynchronouslyOnContextQueue(GPUImageContext& context, const DispatchQueue::Block& block)
{
    if (isOnVideoProcessingQueue())
        block();
    else
        context.contextQueue().sync(block);
}

void runAsynchronouslyOnContextQueue(GPUImageContext& context, DispatchQueue::Block block)
{
    if (isOnVideoProcessingQueue())
        block();
    else
        context.contextQueue().async(std::move(block));
}

} // namespace lamina
