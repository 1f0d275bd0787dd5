#pragma once

#include "platform/base/DispatchQueue.h"
#include "platform/photos/PictureQueue.h"
#include "platform/view/UIViewController.h"

#include <functional>
#include <memory>
#include <utility>

namespace lamina {

/// Runs `work` among the pictures' other work, and then `done` with what it gave on the main thread, as long as the
/// screen is there. The main queue counts as busy until then. From the main thread.
template <class Value>
void inBackground(const std::weak_ptr<UIViewController>& screen, std::function<Value()> work,
                  std::function<void(Value)> done)
{
    pictureQueue().async(
        [screen, work = std::move(work), done = std::move(done), expected = DispatchQueue::main().expectWork()] {
            DispatchQueue::main().async([screen, value = work(), done, expected]() mutable {
                if (const auto alive = screen.lock())
                    done(std::move(value));
            });
        });
}

} // namespace lamina
