#include "hud/SVProgressHUD.h"

#include "hud/ProgressOverlay.h"
#include "platform/base/DispatchQueue.h"

#include <deque>
#include <mutex>
#include <utility>

namespace lamina {

namespace {

using Call = std::function<void(ProgressOverlay&)>;

/// Calls from all threads, in their order.
struct Calls {
    std::mutex mutex;
    std::deque<Call> waiting;
    bool running = false;

    static Calls& all()
    {
        static auto* const calls = new Calls;
        return *calls;
    }

    /// Empty: there is none, and nobody runs them any more.
    Call takeNext()
    {
        const std::lock_guard lock(mutex);
        running = !waiting.empty();
        if (!running)
            return {};
        Call next = std::move(waiting.front());
        waiting.pop_front();
        return next;
    }

    /// On the main thread. What a call leads to that calls again runs after it.
    void run()
    {
        {
            const std::lock_guard lock(mutex);
            if (running)
                return;
            running = true;
        }
        while (const Call call = takeNext())
            call(ProgressOverlay::shared());
    }
};

/// At once on the main thread, after those that wait.
void onMain(Call call)
{
    {
        const std::lock_guard lock(Calls::all().mutex);
        Calls::all().waiting.push_back(std::move(call));
    }
    if (DispatchQueue::main().isCurrent())
        Calls::all().run();
    else
        DispatchQueue::main().async([] { Calls::all().run(); });
}

} // namespace

void SVProgressHUD::setDefaultStyle(int)
{
    // There is one look: light.
}

void SVProgressHUD::setDefaultAnimationType(int type)
{
    onMain([type](ProgressOverlay& overlay) { overlay.setDefaultAnimationType(type); });
}

void SVProgressHUD::setDefaultMaskType(int type)
{
    onMain([type](ProgressOverlay& overlay) { overlay.setDefaultMaskType(type); });
}

void SVProgressHUD::showWithStatus(const std::string& status)
{
    onMain([status](ProgressOverlay& overlay) { overlay.showWithStatus(status); });
}

void SVProgressHUD::setProgress(double progress)
{
    onMain([progress](ProgressOverlay& overlay) { overlay.setProgress(progress); });
}

void SVProgressHUD::setCancelAction(std::function<void()> cancel)
{
    onMain([cancel = std::move(cancel)](ProgressOverlay& overlay) { overlay.setCancelAction(cancel); });
}

void SVProgressHUD::showFailure(const Error& error, std::function<void()> closed, const std::string& actionTitle,
                                std::function<void()> action)
{
    onMain([=](ProgressOverlay& overlay) { overlay.showFailure(error, closed, actionTitle, action); });
}

void SVProgressHUD::dismiss()
{
    onMain([](ProgressOverlay& overlay) { overlay.dismiss(); });
}

} // namespace lamina
