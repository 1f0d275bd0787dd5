#pragma once

#include "platform/base/DispatchQueue.h"

#include <type_traits>

namespace lamina {

class GPUImageContext;

// All GL work of the graph runs on one serial queue, the video processing queue: the shared context's. Another context
// has a queue of its own. A thread that is on the queue in question already runs the block at once, inside the call, in
// the asynchronous forms too: code on the queue must not count on its block running later.
//
// A queue may wait for another one. What that one's block asks of the waiting queue in turn, directly or by way of
// further contexts, runs there at once, within the waiting block. Two queues whose blocks wait for each other without
// having been called by each other wait forever.
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

/// Whether the caller runs on the shared context's queue. Whatever touches the graph or framebuffer counts belongs
/// there.
bool isOnVideoProcessingQueue();
/// The context on whose queue the caller runs; null elsewhere. GL calls belong to such a queue.
GPUImageContext* contextOfCurrentQueue();

/// The value of `body`, run as by `runSynchronouslyOnVideoProcessingQueue`.
template <class Body>
std::invoke_result_t<Body&> valueFromVideoProcessingQueue(Body&& body)
{
    std::invoke_result_t<Body&> value{};
    runSynchronouslyOnVideoProcessingQueue([&] { value = body(); });
    return value;
}

} // namespace lamina
