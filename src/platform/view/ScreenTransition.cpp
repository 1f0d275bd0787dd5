#include "platform/view/ScreenTransition_p.h"

#include "platform/base/DispatchQueue.h"
#include "platform/view/AfterTransitions.h"
#include "platform/view/UINavigationController.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace lamina {

/// The transitions that wait and the one under way.
class ScreenTransition::Queue {
public:
    static Queue& instance()
    {
        static auto* const queue = new Queue;
        return *queue;
    }

    void submit(ScreenTransition transition)
    {
        m_waiting.push_back(std::move(transition));
        schedule();
    }

    void whenIdle(std::function<void()> work)
    {
        DispatchQueue::main().async([this, work = std::move(work)] {
            if (!m_busy)
                return work();
            m_whenIdle.push_back(work);
        });
    }

    void finishForLostHost()
    {
        if (m_current)
            DispatchQueue::main().async([this, number = m_number] { finish(number); });
    }

private:
    void schedule()
    {
        if (m_busy || m_waiting.empty())
            return;
        m_busy = true;
        DispatchQueue::main().async([this] { start(); });
    }

    void start()
    {
        m_current = std::move(m_waiting.front());
        m_waiting.pop_front();
        const std::uint64_t number = ++m_number;
        m_current->begin();
        if (!m_current->shown.from && !m_current->shown.to)
            return finish(number);
        m_starting = true;
        PresentationHost::current()->startTransition(m_current->shown, [this, number] {
            // A host that is done at once must not have the completion run inside its own call.
            if (m_starting)
                DispatchQueue::main().async([this, number] { finish(number); });
            else
                finish(number);
        });
        m_starting = false;
    }

    /// Finishes transition `number`, once: a host may be late, or tell twice.
    void finish(std::uint64_t number)
    {
        if (!m_current || number != m_number)
            return;
        ScreenTransition transition = std::move(*m_current);
        m_current.reset();
        m_busy = false;
        schedule(); // first, so that a completion may pump the main queue and wait for the next transition
        for (auto& work : std::exchange(m_whenIdle, {}))
            whenIdle(std::move(work));
        transition.end();
        if (transition.completion)
            std::exchange(transition.completion, {})();
    }

    std::deque<ScreenTransition> m_waiting;
    std::deque<std::function<void()>> m_whenIdle;
    std::optional<ScreenTransition> m_current;
    std::uint64_t m_number = 0;
    bool m_busy = false; ///< one is under way, or about to start
    bool m_starting = false;
};

void ScreenTransition::submit(ScreenTransition transition)
{
    Queue::instance().submit(std::move(transition));
}

void ScreenTransition::submitCompletion(std::function<void()> completion)
{
    ScreenTransition transition;
    transition.completion = std::move(completion);
    submit(std::move(transition));
}

void afterTransitions(std::function<void()> work)
{
    ScreenTransition::Queue::instance().whenIdle(std::move(work));
}

void ScreenTransition::finishForLostHost()
{
    Queue::instance().finishForLostHost();
}

void ScreenTransition::begin()
{
    if (stack) {
        const auto former = std::exchange(stack->m_shown, arriving.empty() ? nullptr : arriving.front());
        leaving.clear();
        if (former && former != stack->m_shown)
            leaving.push_back(former);
        if (!stack->isAppearing()) { // nobody sees it; whoever shows the stack later shows its top screen
            arriving.clear();
            shown.from = shown.to = nullptr;
        }
    }
    std::erase_if(leaving, [this](const auto& screen) { return !beginDisappearing(*screen, animated()); });
    std::erase_if(arriving, [this](const auto& screen) { return !beginAppearing(*screen, animated()); });
}

void ScreenTransition::end()
{
    const auto settleArriving = [this] {
        for (const auto& screen : arriving)
            endAppearing(*screen, animated());
    };
    if (arrivingSettleFirst)
        settleArriving();
    for (const auto& screen : leaving)
        endDisappearing(*screen, animated());
    if (!arrivingSettleFirst)
        settleArriving();
}

bool ScreenTransition::beginAppearing(UIViewController& screen, bool animated)
{
    if (screen.isAppearing())
        return false;
    screen.m_appearance = UIViewController::Appearance::Appearing;
    screen.view(); // a screen that appears has its view
    screen.viewWillAppear(animated);
    screen.layoutInWindow();
    return true;
}

bool ScreenTransition::beginDisappearing(UIViewController& screen, bool animated)
{
    if (!screen.isAppearing())
        return false;
    screen.m_appearance = UIViewController::Appearance::Disappearing;
    screen.viewWillDisappear(animated);
    return true;
}

void ScreenTransition::endAppearing(UIViewController& screen, bool animated)
{
    if (screen.m_appearance != UIViewController::Appearance::Appearing)
        return;
    screen.m_appearance = UIViewController::Appearance::Appeared;
    screen.viewDidAppear(animated);
}

void ScreenTransition::endDisappearing(UIViewController& screen, bool animated)
{
    if (screen.m_appearance != UIViewController::Appearance::Disappearing)
        return;
    screen.m_appearance = UIViewController::Appearance::Disappeared;
    screen.viewDidDisappear(animated);
}

} // namespace lamina
