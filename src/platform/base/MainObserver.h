#pragma once

#include "platform/base/DispatchQueue.h"
#include "platform/base/NotificationCenter.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace lamina {

/// Hears on the main thread of a notification that may be posted on any: the handler runs on a later turn of the main
/// queue, and never once this has been destroyed. Made and destroyed on the main thread.
class MainObserver {
public:
    MainObserver(std::string name, std::function<void()> handler)
        : m_handler(std::make_shared<std::function<void()>>(std::move(handler)))
        , m_observer(NotificationCenter::defaultCenter().addObserver(
              std::move(name), [weak = std::weak_ptr(m_handler)](const Notification&) {
                  DispatchQueue::main().async([weak] {
                      if (const auto alive = weak.lock())
                          (*alive)();
                  });
              }))
    {
    }

private:
    std::shared_ptr<std::function<void()>> m_handler;
    NotificationObserver m_observer;
};

} // namespace lamina
