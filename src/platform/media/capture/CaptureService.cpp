#include "platform/media/capture/CaptureService.h"

#include "platform/base/DispatchQueue.h"
#include "platform/media/capture/CaptureDevice_p.h"
#include "platform/media/capture/CaptureModule_p.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

// Until it is tried again; each time twice as long.
constexpr double kFirstPause = 0.25;
constexpr double kLongestPause = 8;

} // namespace

/// All but what the mutex guards belongs to the queue, on which connections come and go.
struct CaptureService::State {
    DispatchQueue queue{"capture"};
    std::shared_ptr<CaptureConnection> connection;
    double pause = kFirstPause;

    mutable std::mutex mutex; ///< for what follows
    std::condition_variable changed;
    int run = 0; ///< tells what was started before from what runs now; 0: nothing was started
    int runs = 0;
    bool isListed = false;
    std::optional<Error> error;
    std::vector<std::shared_ptr<CaptureDevice>> devices;
    std::vector<std::weak_ptr<CaptureDevice>> known; ///< those that have gone and may come back as well

    bool isCurrent(int which) const
    {
        const std::scoped_lock lock(mutex);
        return run == which;
    }
    void connect(int which, int descriptor);
    void lose(int which, bool canReturn);
    void retryLater(int which);
    void fail(int which, const Error& why);
    bool take(int which, std::vector<CaptureNode> nodes);
    std::shared_ptr<CaptureDevice> deviceOf(const CaptureNode& node,
                                            const std::vector<std::shared_ptr<CaptureDevice>>& taken);
    void forgetDevices();
};

/// Under the mutex.
void CaptureService::State::forgetDevices()
{
    for (const auto& device : devices)
        device->setGone();
    devices.clear();
    isListed = false;
}

void CaptureService::State::connect(int which, int descriptor)
{
    if (!isCurrent(which)) {
        if (descriptor >= 0)
            ::close(descriptor);
        return;
    }
    const auto module = captureModule();
    if (!module) {
        if (descriptor >= 0)
            ::close(descriptor);
        return fail(which, module.error());
    }
    const bool canReturn = descriptor < 0;
    auto made = (*module)->connect(
        descriptor, {[this, which](std::vector<CaptureNode> nodes) {
                         queue.async([this, which, nodes = std::move(nodes)]() mutable {
                             if (take(which, std::move(nodes)))
                                 AVCaptureDevice::devicesDidChange();
                         });
                     },
                     [this, which, canReturn] { queue.async([this, which, canReturn] { lose(which, canReturn); }); }});
    if (!made) {
        fail(which, made.error());
        if (canReturn)
            retryLater(which);
        return;
    }
    // It ends its thread when it goes, which whoever lets go of it last may be running on.
    connection = std::shared_ptr<CaptureConnection>(
        std::move(*made).release(), [this](CaptureConnection* last) { queue.async([last] { delete last; }); });
}

void CaptureService::State::retryLater(int which)
{
    queue.after(pause, [this, which] { connect(which, -1); });
    pause = std::min(2 * pause, kLongestPause);
}

void CaptureService::State::fail(int which, const Error& why)
{
    {
        const std::scoped_lock lock(mutex);
        if (run != which)
            return;
        const bool isNews = !error || error->cause != why.cause || !devices.empty();
        error = why;
        forgetDevices();
        if (!isNews)
            return;
    }
    changed.notify_all();
    AVCaptureDevice::devicesDidChange();
}

void CaptureService::State::lose(int which, bool canReturn)
{
    if (!isCurrent(which))
        return;
    connection.reset();
    fail(which, Error{{}, "the camera service stopped"});
    if (canReturn)
        retryLater(which);
}

/// Under the mutex: the one that is this node, or was before it came back, and isn't one of those; else a new one.
std::shared_ptr<CaptureDevice> CaptureService::State::deviceOf(const CaptureNode& node,
                                                               const std::vector<std::shared_ptr<CaptureDevice>>& taken)
{
    std::shared_ptr<CaptureDevice> formerly;
    for (const auto& each : known) {
        const auto device = each.lock();
        if (!device || device->uniqueID() != node.uniqueID || device->mediaType() != node.type ||
            std::ranges::find(taken, device) != taken.end())
            continue;
        if (device->connection() && device->node().id == node.id)
            return device;
        if (!device->connection())
            formerly = device;
    }
    if (!formerly) {
        formerly = std::make_shared<CaptureDevice>(node);
        std::erase_if(known, [](const auto& each) { return each.expired(); });
        known.push_back(formerly);
    }
    return formerly;
}

/// Whether that is what runs.
bool CaptureService::State::take(int which, std::vector<CaptureNode> nodes)
{
    {
        const std::scoped_lock lock(mutex);
        if (run != which || !connection)
            return false;
        for (const auto& device : devices) {
            const CaptureNode before = device->node();
            if (std::ranges::none_of(nodes, [&](const CaptureNode& node) {
                    return node.id == before.id && node.uniqueID == before.uniqueID;
                }))
                device->setGone();
        }
        std::vector<std::shared_ptr<CaptureDevice>> now;
        for (CaptureNode& node : nodes) {
            now.push_back(deviceOf(node, now));
            now.back()->update(std::move(node), connection);
        }
        devices = std::move(now);
        error.reset();
        isListed = true;
    }
    pause = kFirstPause;
    changed.notify_all();
    return true;
}

CaptureService::CaptureService()
    : m_state(new State)
{
}

CaptureService& CaptureService::shared()
{
    static auto* const only = new CaptureService;
    return *only;
}

void CaptureService::start(int descriptor)
{
    int which = 0;
    {
        const std::scoped_lock lock(m_state->mutex);
        which = m_state->run = ++m_state->runs;
        m_state->error.reset();
        m_state->forgetDevices();
    }
    m_state->queue.async([state = m_state, which, descriptor] {
        state->connection.reset();
        state->pause = kFirstPause;
        state->connect(which, descriptor);
    });
}

bool CaptureService::isStarted() const
{
    const std::scoped_lock lock(m_state->mutex);
    return m_state->run != 0;
}

void CaptureService::stop()
{
    {
        const std::scoped_lock lock(m_state->mutex);
        if (std::exchange(m_state->run, 0) == 0)
            return;
        m_state->error.reset();
        m_state->forgetDevices();
    }
    m_state->changed.notify_all();
    m_state->queue.async([state = m_state] {
        state->connection.reset();
        AVCaptureDevice::devicesDidChange();
    });
}

std::vector<std::shared_ptr<AVCaptureDevice>> CaptureService::devices(AVTrackMediaType type) const
{
    const std::scoped_lock lock(m_state->mutex);
    std::vector<std::shared_ptr<AVCaptureDevice>> found;
    for (const auto& device : m_state->devices) {
        if (device->mediaType() == type)
            found.push_back(device);
    }
    return found;
}

bool CaptureService::waitUntilListed(double seconds)
{
    std::unique_lock lock(m_state->mutex);
    m_state->changed.wait_for(lock, std::chrono::duration<double>(seconds),
                              [&] { return m_state->isListed || m_state->error || m_state->run == 0; });
    return m_state->isListed;
}

std::optional<Error> CaptureService::error() const
{
    const std::scoped_lock lock(m_state->mutex);
    return m_state->error;
}

AVCaptureDevice::Source CaptureService::openSource()
{
    return {[] { return AVAuthorizationStatus::Authorized; },
            {},
            [](AVTrackMediaType type) {
                CaptureService& service = shared();
                if (!service.isStarted())
                    service.start();
                return service.devices(type);
            }};
}

} // namespace lamina
