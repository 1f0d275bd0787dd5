#include "platform/host/GuardedApplication.h"

#include "platform/base/BlockFailures.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/ExceptionCause.h"
#include "platform/base/Localization.h"
#include "platform/base/Log.h"
#include "platform/host/Application.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIAlertController.h"

#include <atomic>
#include <memory>

namespace lamina {

namespace {

std::atomic<bool> g_isTelling{false}; // an alert is on its way, or up
using Telling = std::shared_ptr<void>;

/// Not before what goes on has ended: an alert that fails is not told of by the next one, and so on without end.
void stopTelling(void*) noexcept
{
    try {
        DispatchQueue::main().async([] { g_isTelling = false; });
    } catch (...) {
        g_isTelling = false;
    }
}

/// The alert keeps `telling` as long as it is there.
void present(const std::string& cause, const Telling& telling)
{
    Application* const application = Application::current();
    const auto top = application ? application->screens().window().topViewController() : nullptr;
    if (!top)
        return;
    presentOverTop(*top, UIAlertController::make(localizedString(QT_TRANSLATE_NOOP("Lamina", "That didn’t work")),
                                                 failureText({{}, cause}),
                                                 {{localizedString("OK"), UIAlertActionStyle::Default, [telling] {}}}));
}

void tell(const std::string& cause) noexcept
{
    if (g_isTelling.exchange(true))
        return;
    try {
        const Telling telling(&g_isTelling, stopTelling);
        DispatchQueue::main().async([cause, telling] { present(cause, telling); });
    } catch (...) {
        logError("nor could it be told: " + causeOfException());
    }
}

} // namespace

GuardedApplication::GuardedApplication(int& argc, char** argv)
    : QGuiApplication(argc, argv)
{
    setBlockFailureHandler(tell);
}

GuardedApplication::~GuardedApplication()
{
    setBlockFailureHandler({});
}

bool GuardedApplication::notify(QObject* receiver, QEvent* event)
{
    try {
        return QGuiApplication::notify(receiver, event);
    } catch (...) {
        const std::string cause = causeOfException();
        logError("an event threw: " + cause);
        tell(cause);
        return true;
    }
}

} // namespace lamina
