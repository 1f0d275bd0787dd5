#include "platform/host/ScreenHost.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/view/UIImagePickerController.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"

#include <QFile>
#include <QTimer>

#include <cmath>
#include <functional>
#include <memory>
#include <utility>

namespace lamina {

namespace {

using Kind = PresentationTransition::Kind;

constexpr const char* kModule = ":/qt/qml/Lamina/";

/// A screen that was made by hand goes by the scene of its class.
const UIStoryboardScene* sceneOf(const UIViewController& controller)
{
    if (controller.scene())
        return controller.scene();
    const UIStoryboard::Scenes& scenes = UIStoryboard::named(kMainStoryboard)->scenes();
    const auto found = scenes.find(controller.className().toStdString());
    return found == scenes.end() ? nullptr : found->second.get();
}

/// A picker that is the screen of a camera.
bool takesPhotos(UIViewController& controller)
{
    return controller.systemPresentation() == UISystemPresentation::ImagePicker &&
           static_cast<UIImagePickerController&>(controller).takesPhotos();
}

/// The layout of a screen, a file of the module; empty: it has none.
QString layoutOf(UIViewController& controller)
{
    switch (controller.systemPresentation()) {
    case UISystemPresentation::Alert:
        return QStringLiteral("AlertScreen.qml");
    case UISystemPresentation::ImagePicker:
        return takesPhotos(controller) ? QStringLiteral("CameraScreen.qml") : QStringLiteral("PickerScreen.qml");
    case UISystemPresentation::DocumentPicker:
        return QStringLiteral("DocumentPickerScreen.qml");
    case UISystemPresentation::Activity:
        return QStringLiteral("ActivityScreen.qml");
    case UISystemPresentation::None:
        break;
    }
    const UIStoryboardScene* const scene = sceneOf(controller);
    return scene ? QString::fromStdString(scene->qmlFile) : QString();
}

QUrl layoutURLOf(UIViewController& controller)
{
    QString file = layoutOf(controller);
    if (file.isEmpty() || !QFile::exists(kModule + file)) {
        logError(controller.className().toStdString() + " has no layout called '" + file.toStdString() + "'");
        file = QStringLiteral("MissingScreen.qml");
    }
    return QUrl(QStringLiteral("qrc") + kModule + file);
}

/// The system's own pickers are windows of their own: ours stays in sight behind them.
bool isPicker(UIViewController* controller)
{
    return controller && !takesPhotos(*controller) &&
           (controller->systemPresentation() == UISystemPresentation::ImagePicker ||
            controller->systemPresentation() == UISystemPresentation::DocumentPicker);
}

bool showsThrough(UIViewController& controller)
{
    const UIModalPresentationStyle style = controller.modalPresentationStyle();
    return style == UIModalPresentationStyle::OverFullScreen || style == UIModalPresentationStyle::OverCurrentContext ||
           isPicker(&controller);
}

/// What lies over one screen, and not over all of them, is a sheet.
bool isSheet(const UIViewController* controller)
{
    return controller && controller->modalPresentationStyle() == UIModalPresentationStyle::OverCurrentContext;
}

} // namespace

ScreenHost::ScreenHost() = default;

std::vector<ScreenModel::Row> ScreenHost::wantedScreens() const
{
    std::vector<ScreenModel::Row> rows;
    const auto add = [&rows](const std::shared_ptr<UIViewController>& screen, bool overlay, ScreenRow::Motion motion) {
        rows.push_back({screen, layoutURLOf(*screen), overlay, motion});
    };
    bool presented = false;
    for (auto screen = m_window.rootViewController(); screen; screen = screen->presentedViewController()) {
        const bool overlay = presented && showsThrough(*screen);
        if (const auto stack = std::dynamic_pointer_cast<UINavigationController>(screen))
            for (const auto& step : stack->viewControllers())
                add(step, overlay, step == stack->viewControllers().front() ? ScreenRow::Fade : ScreenRow::Slide);
        else
            add(screen, overlay, overlay && isSheet(screen.get()) ? ScreenRow::Rise : ScreenRow::Fade);
        presented = true;
    }
    return rows;
}

/// Milliseconds. A picker has nothing of its own to show, so nobody waits for it to come or go.
int ScreenHost::durationOf(const PresentationTransition& transition) const
{
    const bool slides = transition.kind == Kind::Push || transition.kind == Kind::Pop;
    UIViewController* const moved = transition.kind == Kind::Present   ? transition.to.get()
                                    : transition.kind == Kind::Dismiss ? transition.from.get()
                                                                       : nullptr;
    if (transition.duration <= 0 || isPicker(moved))
        return 0;
    const double seconds = slides ? m_durations.slide : isSheet(moved) ? m_durations.sheet : m_durations.fade;
    return static_cast<int>(std::lround(seconds * 1000));
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
        emit transitionEnded();
    };
    if (duration == 0)
        DispatchQueue::main().async(end);
    else
        QTimer::singleShot(duration, this, end);
}

} // namespace lamina
