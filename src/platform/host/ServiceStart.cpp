#include "platform/host/ServiceStart.h"

#include "platform/application/ApplicationRequest.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/ExceptionCause.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/base/StandardStreams.h"
#include "platform/host/ApplicationLife.h"
#include "platform/host/CommandLine.h"
#include "platform/host/MainLoop.h"
#include "platform/host/services/ApplicationService.h"
#include "platform/host/services/SessionName.h"
#include "platform/host/system/TerminationSignals.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace lamina {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kIdleTime = 10s;
/// While it is needed: how often that is looked at, for an hour in all.
constexpr std::chrono::milliseconds kLookTime = 1min;
constexpr int kMostLooks = 60;
constexpr std::chrono::milliseconds kLastMoment = 500ms;
/// It was the bus that has started this process.
constexpr auto kPatience = 25s;

/// So long after the last call it calls `release`, so that nothing new comes, and a moment later, in which what had
/// come is done, it ends the event loop. While `isNeeded` it waits on, though not for ever: the end of what it is
/// needed for may never be told. What else wakes the loop, such as the window system, does not keep it.
class IdleEnd {
public:
    IdleEnd(std::function<bool()> isNeeded, std::function<void()> release)
        : m_isNeeded(std::move(isNeeded))
        , m_release(std::move(release))
    {
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { end(); });
        restart();
    }

    /// Somebody has called.
    void restart()
    {
        m_looks = 0;
        m_timer.start(m_release ? kIdleTime : kLastMoment);
    }

private:
    void end()
    {
        if (!m_release)
            return QCoreApplication::quit();
        if (m_looks++ < kMostLooks && m_isNeeded())
            return m_timer.start(kLookTime);
        std::exchange(m_release, {})();
        restart();
    }

    std::function<bool()> m_isNeeded;
    std::function<void()> m_release;
    int m_looks = 0; ///< since the last call
    QTimer m_timer;
};

LaunchOptions optionsFor(const ApplicationRequest& request)
{
    LaunchOptions options;
    if (!request.action.empty())
        options.screen = request.action;
    options.files = request.photos;
    return options;
}

class ServiceRun {
public:
    ServiceRun(SessionName& name, ApplicationService& service, const std::shared_ptr<ApplicationLife>& life,
               const WindowMaker& makeWindow)
        : m_name(name)
        , m_service(service)
        , m_makeWindow(makeWindow)
        , m_life(life)
    {
        m_service.setHandler([this](const ApplicationRequest& request) { return take(request); });
        m_life->exportTo(m_name);
        QObject::connect(&m_life->notifications(), &DesktopNotifications::opened, &m_service,
                         [this](const QString& token) {
                             (void)take({{}, {}, token.toStdString()});
                         });
        QObject::connect(&m_life->messages(), &UnifiedPush::wasCalled, &m_service, [this] { stay(); });
    }

    ~ServiceRun() { leaveBus(m_name, m_service); }
    ServiceRun(const ServiceRun&) = delete;
    ServiceRun& operator=(const ServiceRun&) = delete;

    int run()
    {
        m_life->launch();
        m_name.begin();
        switch (m_name.waitFor(kPatience)) {
        case SessionName::State::Owned:
            break;
        case SessionName::State::Taken:
            return exitcode::kGood; // that process is called in this one's place
        case SessionName::State::Asking:
        case SessionName::State::NoBus:
            writeMessage("lamina-app: --dbus-service: there is no session bus\n");
            return exitcode::kFailed;
        }
        m_life->beginWithoutWindow();
        m_idle.emplace([this] { return m_life->hasSomethingShown(); }, [this] { m_name.release(); });
        return QCoreApplication::exec();
    }

private:
    void stay()
    {
        if (m_idle)
            m_idle->restart();
    }

    Outcome take(const ApplicationRequest& request)
    {
        stay();
        if (m_window)
            return m_window->perform(request);
        if (!m_makeWindow)
            return Error{{}, "there is no display to open a window on"};
        // The caller need not wait until the window stands.
        DispatchQueue::main().async([this, request] { m_window ? (void)m_window->perform(request) : open(request); });
        return success();
    }

    /// Without its window the process would be in the way of the next call, for which the bus starts another.
    void open(const ApplicationRequest& request)
    {
        LaunchOptions options = optionsFor(request);
        options.life = m_life;
        try {
            m_window = m_makeWindow(options);
            m_window->show();
        } catch (...) {
            logError("the window can't be opened: " + causeOfException());
            return QCoreApplication::exit(exitcode::kFailed);
        }
        m_idle.reset();
        (void)m_window->perform({{}, {}, request.activationToken, request.leftOut}); // the rest it has begun with
    }

    SessionName& m_name;
    ApplicationService& m_service;
    const WindowMaker& m_makeWindow;
    const TerminationSignals m_termination;
    MainLoop m_loop;
    const std::shared_ptr<ApplicationLife> m_life;
    std::unique_ptr<Application> m_window;
    std::optional<IdleEnd> m_idle; ///< until there is a window
};

} // namespace

int runAsService(SessionName& name, ApplicationService& service, const std::shared_ptr<ApplicationLife>& life,
                 const WindowMaker& makeWindow)
{
    return ServiceRun(name, service, life, makeWindow).run();
}

void leaveBus(SessionName& name, ApplicationService& service)
{
    service.setHandler([](const ApplicationRequest&) -> Outcome { return Error{{}, "the application is leaving"}; });
    name.release();
    QCoreApplication::sendPostedEvents();
}

} // namespace lamina
