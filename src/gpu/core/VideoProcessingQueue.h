#pragma once

#include "platform/base/DispatchQueue.h"

#include <type_traits>

namespace lamina {

class GPUImageContext;

// All GL work runs on one serial queue, the video processing queue. A thread that is on it already runs the block at
// once, inside the call, in the asynchronous forms too: code on the queue must not count on its block running later.
//
// What runs on the queue must not wait for the main queue: main waits for this one all the time. Debug builds assert
// it.

/// Runs the block on the shared context's queue and waits for its end.
void runSynchronouslyOnVideoProcessingQueue(const DispatchQueue::Block& block);
/// Hands the block to the shared context's queue.
void runAsynchronouslyOnVideoProcessingQueue(DispatchQueue::Block block);
/// Runs the block on the queue of `context` and waits for its end.
void runSynchronouslyOnContextQueue(GPUImageContext& context, const DispatchQueue::Block& block);
/// Hands the block to the queue of `context`.
void runAsynchronouslyOnContextQueue(GPUImageContext& context, DispatchQueue::Block block);

/// Whether the caller runs on a video processing queue. GL calls, and whatever touches framebuffer counts, belong
/// there.
bool isOnVideoProcessingQueue();

/// The value of `body`, run as by `runSynchronouslyOnVideoProcessingQueue`.
template <class Body>
std::invoke_result_t<Body&> valueFromVideoProcessingQueue(Body&& body)
{
    std::invoke_result_t<Body&> value{};
    runSynchronouslyOnVideoProcessingQueue([&] { value = body(); });
    return value;
}

} // namespace lamina
