#include "platform/host/ScreenHost.h"

#include "platform/base/DispatchQueue.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIImagePickerController.h"
#include "platform/view/UINavigationController.h"

#include <QTimer>

#include <cmath>
#include <utility>

namespace lamina {

namespace {

using Kind = PresentationTransition::Kind;

/// Where the views of a screen are written down.
QUrl viewOf(const UIViewController& controller)
{
    static constexpr struct {
        const char* screen;
        const char* view;
    } kNamedOtherwise[] = {
        {"ViewController", "HomeScreen"},
        {"UIAlertController", "AlertScreen"},
        {"UIImagePickerController", "PickerScreen"},
    };
    QString name = controller.className();
    for (const auto& known : kNamedOtherwise)
        if (name == QLatin1String(known.screen))
            return QUrl(QStringLiteral("qrc:/qt/qml/Lamina/%1.qml").arg(QLatin1String(known.view)));
    name.chop(static_cast<int>(qstrlen("ViewController")));
    return QUrl(QStringLiteral("qrc:/qt/qml/Lamina/%1Screen.qml").arg(name));
}

/// The system's own picker is a window of its own: ours stays in sight behind it.
bool showsThrough(const UIViewController& controller)
{
    const UIModalPresentationStyle style = controller.modalPresentationStyle();
    return style == UIModalPresentationStyle::OverFullScreen || style == UIModalPresentationStyle::OverCurrentContext ||
           dynamic_cast<const UIImagePickerController*>(&controller) != nullptr;
}

} // namespace

ScreenHost::ScreenHost() = default;

std::vector<ScreenModel::Row> ScreenHost::wantedScreens() const
{
    std::vector<ScreenModel::Row> rows;
    const auto add = [&rows](const std::shared_ptr<UIViewController>& screen, bool overlay,
                             ScreenModel::Motion motion) {
        rows.push_back({screen, viewOf(*screen), overlay, motion});
    };
    bool presented = false;
    for (auto screen = m_window.rootViewController(); screen; screen = screen->presentedViewController()) {
        const bool overlay = presented && showsThrough(*screen);
        if (const auto stack = std::dynamic_pointer_cast<UINavigationController>(screen))
            for (const auto& step : stack->viewControllers())
                add(step, overlay, step == stack->viewControllers().front() ? ScreenModel::Fade : ScreenModel::Slide);
        else
            add(screen, overlay, ScreenModel::Fade);
        presented = true;
    }
    return rows;
}

/// Milliseconds. A picker has nothing of its own to show, so nobody waits for it to come or go.
int ScreenHost::durationOf(const PresentationTransition& transition) const
{
    const auto isPicker = [](const std::shared_ptr<UIViewController>& screen) {
        return dynamic_cast<const UIImagePickerController*>(screen.get()) != nullptr;
    };
    const bool slides = transition.kind == Kind::Push || transition.kind == Kind::Pop;
    const bool picks = (transition.kind == Kind::Present && isPicker(transition.to)) ||
                       (transition.kind == Kind::Dismiss && isPicker(transition.from));
    if (transition.duration <= 0 || picks)
        return 0;
    return static_cast<int>(std::lround((slides ? m_durations.slide : m_durations.fade) * 1000));
}

void ScreenHost::startTransition(const PresentationTransition& transition, std::function<void()> finished)
{
    if (transition.kind == Kind::Present && transition.to)
        emit presenting(transition.to.get());
    const int duration = durationOf(transition);
    emit transitionStarted(duration);
    m_inTransition = true;
    m_screens.setScreens(wantedScreens());
    m_screens.settle();
    const auto end = [this, finished = std::move(finished)] {
        m_inTransition = false;
        m_screens.removeLeaving();
        finished();
    };
    if (duration == 0)
        DispatchQueue::main().async(end);
    else
        QTimer::singleShot(duration, this, end);
}

} // namespace lamina
