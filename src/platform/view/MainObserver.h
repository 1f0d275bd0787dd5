#pragma once

#include "platform/base/DispatchQueue.h"
#include "platform/base/NotificationCenter.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <string>
#include <utility>

namespace lamina {

/// Hears of a notification that may be posted on any thread: `handler` runs on a later turn of the main queue, as long
/// as the object is there. From the main thread.
[[nodiscard]] inline NotificationObserver observeOnMain(std::string name, QObject& object,
                                                        std::function<void()> handler)
{
    return NotificationCenter::defaultCenter().addObserver(
        std::move(name), [object = QPointer(&object), handler = std::move(handler)](const Notification&) {
            DispatchQueue::main().async([object, handler] {
                if (object)
                    handler();
            });
        });
}

} // namespace lamina
