#include "app/IncomingRequests.h"

#include "app/AboutViewController.h"
#include "app/FirstScreen.h"
#include "app/ImagePIckingViewController.h"
#include "app/LiveViewController.h"
#include "app/ViewController.h"
#include "editors/common/EditorViewController.h"
#include "hud/ProgressOverlay.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/base/Localization.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/AfterTransitions.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/PhotoReceiver.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIWindow.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kMostWaiting = 16;

bool asksForFrontOnly(const ApplicationRequest& request)
{
    return request.action.empty() && request.photos.empty() && !request.leftOut;
}

std::vector<PhotoSource> photosOf(const ApplicationRequest& request)
{
    std::vector<PhotoSource> photos;
    for (const std::string& path : request.photos)
        photos.push_back(PhotoSource::fromFile(path));
    return photos;
}

/// Whether nothing is lost when it is left.
bool isWithoutWork(UIViewController& screen)
{
    if (auto* const chooser = dynamic_cast<ImagePIckingViewController*>(&screen))
        return chooser->step() == 1 && chooser->wantsPhotos();
    if (auto* const picker = dynamic_cast<YMSPhotoPickerViewController*>(&screen))
        return picker->selectedPhotos().empty();
    if (auto* const live = dynamic_cast<LiveViewController*>(&screen))
        return !live->isRecording();
    return dynamic_cast<ViewController*>(&screen) || dynamic_cast<AboutViewController*>(&screen);
}

bool areWithoutWork(const UIWindow& window)
{
    for (auto screen = window.rootViewController(); screen; screen = screen->presentedViewController()) {
        const auto stack = std::dynamic_pointer_cast<UINavigationController>(screen);
        if (stack ? !std::ranges::all_of(stack->viewControllers(), [](auto& step) { return isWithoutWork(*step); })
                  : !isWithoutWork(*screen))
            return false;
    }
    return true;
}

/// Whether it is what the entry leads to.
bool isScreenOf(const std::string& action, UIViewController& screen)
{
    const auto* const picker = dynamic_cast<YMSPhotoPickerViewController*>(&screen);
    return (action == "blend" && dynamic_cast<ImagePIckingViewController*>(&screen)) ||
           (action == "two" && picker && picker->numberOfPhotoToSelect == 2) ||
           (action == "three" && picker && picker->numberOfPhotoToSelect == 3);
}

/// The screen as the one that waits for such photos; null: it doesn't. To the live screen a photo is no movie, and what
/// an editor holds is not touched unasked.
PhotoReceiver* receiverOf(const ApplicationRequest& request, UIViewController& screen)
{
    if (dynamic_cast<EditorViewController*>(&screen) || dynamic_cast<LiveViewController*>(&screen))
        return nullptr;
    if (!request.action.empty() && !isScreenOf(request.action, screen))
        return nullptr;
    auto* const receiver = dynamic_cast<PhotoReceiver*>(&screen);
    return receiver && receiver->wantsPhotos() ? receiver : nullptr;
}

std::string questionOf(const ApplicationRequest& request)
{
    if (request.action == "blend")
        return localizedString(QT_TRANSLATE_NOOP("Lamina", "Begin a blend?"));
    if (!request.action.empty())
        return localizedString(QT_TRANSLATE_NOOP("Lamina", "Begin a collage?"));
    return request.photos.size() == 1 ? localizedString(QT_TRANSLATE_NOOP("Lamina", "Open the photo?"))
                                      : localizedString(QT_TRANSLATE_NOOP("Lamina", "Open the photos?"));
}

} // namespace

/// What is asked about. It goes with the alert; without an answer the request waits again.
class IncomingRequests::Question {
public:
    Question(IncomingRequests& owner, ApplicationRequest request)
        : m_owner(owner)
        , m_alive(owner.m_alive)
        , m_request(std::move(request))
    {
    }
    ~Question()
    {
        answer([this](const ApplicationRequest& request) { m_owner.putBack(request); });
    }
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;

    void answer(const std::function<void(const ApplicationRequest& request)>& doIt)
    {
        const std::optional<ApplicationRequest> request = std::exchange(m_request, {});
        if (request && m_alive.lock())
            doIt(*request);
    }

private:
    IncomingRequests& m_owner; ///< while m_alive
    std::weak_ptr<void> m_alive;
    std::optional<ApplicationRequest> m_request; ///< none: it is answered
};

IncomingRequests::IncomingRequests(UIWindow& window, WindowOpener opener)
    : m_window(window)
    , m_opener(std::move(opener))
    , m_alive(std::make_shared<int>())
{
}

Outcome IncomingRequests::take(ApplicationRequest request)
{
    if (asksForFrontOnly(request))
        return success();
    if (m_waiting.size() == kMostWaiting)
        return Error{{}, "too many requests are waiting"};
    m_waiting.push_back(std::move(request));
    lookAgain();
    return success();
}

void IncomingRequests::lookAgain()
{
    if (m_waiting.empty() || std::exchange(m_looksSoon, true))
        return;
    afterTransitions([this, alive = std::weak_ptr(m_alive)] {
        if (alive.lock())
            look();
    });
}

/// One request at a time: what it leads to is to stand before the next one is looked at.
void IncomingRequests::look()
{
    m_looksSoon = false;
    if (m_waiting.empty() || !heed(m_waiting.front()))
        return;
    if (!m_waiting.front().leftOut)
        m_waiting.pop_front();
    else if (m_waiting.front().leftOut.reset(); asksForFrontOnly(m_waiting.front()))
        m_waiting.pop_front();
    lookAgain();
}

void IncomingRequests::putBack(ApplicationRequest request)
{
    m_waiting.push_front(std::move(request));
    lookAgain();
}

/// False when it has to wait.
bool IncomingRequests::heed(const ApplicationRequest& request)
{
    const std::shared_ptr<UIViewController> top = m_window.topViewController();
    if (!top || top->systemPresentation() != UISystemPresentation::None || ProgressOverlay::shared().isBlocking())
        return false;
    if (request.leftOut) {
        presentFailure(*top, localizedString("Can’t open the photo"), *request.leftOut);
        return true;
    }
    if (request.photos.empty() && isScreenOf(request.action, *top))
        return true;
    if (auto* const atHome = dynamic_cast<ViewController*>(top.get()); atHome && !atHome->wantsPhotos())
        return false; // it reads photos, or a work
    if (PhotoReceiver* const receiver = request.photos.empty() ? nullptr : receiverOf(request, *top))
        receiver->receivePhotos(photosOf(request));
    else if (areWithoutWork(m_window))
        beginAtHome(request);
    else
        ask(*top, request);
    return true;
}

std::shared_ptr<ViewController> IncomingRequests::home() const
{
    const auto stack = std::dynamic_pointer_cast<UINavigationController>(m_window.rootViewController());
    return stack && !stack->viewControllers().empty()
               ? std::dynamic_pointer_cast<ViewController>(stack->viewControllers().front())
               : nullptr;
}

void IncomingRequests::beginAtHome(const ApplicationRequest& request)
{
    const std::shared_ptr<ViewController> first = home();
    if (!first)
        return;
    if (m_window.rootViewController()->presentedViewController())
        m_window.rootViewController()->dismiss(false);
    if (first->navigationController()->viewControllers().size() > 1)
        first->navigationController()->popToRootViewController(false);
    openFirstScreen(*first, request.action, photosOf(request));
}

void IncomingRequests::ask(UIViewController& top, const ApplicationRequest& request)
{
    const auto question = std::make_shared<Question>(*this, request);
    const auto answer = [question](std::function<void(const ApplicationRequest&)> doIt) {
        return [question, doIt = std::move(doIt)] { question->answer(doIt); };
    };
    const auto alert = UIAlertController::make(
        questionOf(request), localizedString(QT_TRANSLATE_NOOP("Lamina", "What you are working on stays open.")), {});
    if (request.action.empty() && dynamic_cast<EditorViewController*>(&top) && dynamic_cast<PhotoReceiver*>(&top))
        alert->addAction({localizedString(QT_TRANSLATE_NOOP("Lamina", "Use in this work")), UIAlertActionStyle::Default,
                          answer([this, editor = top.weak_from_this()](auto& asked) { useIn(editor, asked); })});
    alert->addAction({localizedString(QT_TRANSLATE_NOOP("Lamina", "Open a new window")), UIAlertActionStyle::Default,
                      answer([this](auto& asked) { openWindow(asked); })});
    alert->addAction({localizedString("Cancel"), UIAlertActionStyle::Cancel, answer([](auto&) {})});
    top.present(alert, true);
}

/// An editor that is busy just now is asked for again.
void IncomingRequests::useIn(const std::weak_ptr<UIViewController>& editor, const ApplicationRequest& request)
{
    const std::shared_ptr<UIViewController> still = editor.lock();
    auto* const receiver = dynamic_cast<PhotoReceiver*>(still.get());
    if (receiver && still == m_window.topViewController() && receiver->wantsPhotos())
        return receiver->receivePhotos(photosOf(request));
    putBack(request);
}

void IncomingRequests::openWindow(const ApplicationRequest& request)
{
    const Outcome opened = m_opener(request);
    const std::shared_ptr<UIViewController> top = m_window.topViewController();
    if (!opened && top)
        presentFailure(*top, localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t open a window")), opened.error());
}

} // namespace lamina
