#include "platform/view/CADisplayLink.h"

#include "platform/view/PresentationHost.h"

#include <utility>

namespace lamina {

CADisplayLink::CADisplayLink(std::function<void()> handler, double framesPerSecond)
    : m_handler(std::move(handler))
    , m_interval(1 / framesPerSecond)
{
}

void CADisplayLink::start()
{
    if (!isRunning() && PresentationHost::current()->showsFrames())
        scheduleNext();
}

void CADisplayLink::scheduleNext()
{
    m_timer = DispatchTimer(DispatchQueue::main(), m_interval, [this] {
        if (!PresentationHost::current()->showsFrames())
            return;                                      // whoever looked has gone
        scheduleNext();                                  // first, so that the handler can stop it
        const std::function<void()> handler = m_handler; // which may be destroyed by what it does
        handler();
    });
}

} // namespace lamina
