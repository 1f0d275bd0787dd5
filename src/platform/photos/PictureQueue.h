#pragma once

#include "platform/base/DispatchQueue.h"

#include <functional>

namespace lamina {

/// The one queue on which photos are read and pictures written, one after another: decoders and encoders split their
/// work over the cores themselves, and memory for many large pictures at once would be worse than waiting. Never
/// destroyed. Who submits here holds `DispatchQueue::main().expectWork()` until the answer is there, so that leaving
/// waits for it. Usable from any thread.
DispatchQueue& pictureQueue();

/// Runs short work with pictures, such as a thumbnail, that must not wait behind a large photo in the queue above: two
/// at a time, begun in the order of these calls, so that what it takes of memory stays bounded too. The main queue
/// counts as busy until it has ended. `work` runs and is destroyed on a thread of its own, must not throw, and must not
/// wait for the main thread. Usable from any thread.
void runShortPictureWork(std::function<void()> work);

} // namespace lamina
