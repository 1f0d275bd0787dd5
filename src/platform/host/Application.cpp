#include "platform/host/Application.h"

#include "app/AppMenu.h"
#include "app/MainStoryboard.h"
#include "app/ViewController.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/host/ArtProvider.h"
#include "platform/host/QmlTypes.h"
#include "platform/host/ScreenItem.h"
#include "platform/host/ThumbnailProvider.h"
#include "platform/host/system/PictureClipboard.h"
#include "platform/host/system/SystemURLOpener.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/PhotoReceiver.h"
#include "platform/view/UIApplication.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"
#include "platform/view/UIWindow.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QScreen>
#include <utility>

namespace lamina {

namespace {

Application* g_current = nullptr;

/// Where there is room for both, the window opens wide; otherwise shaped like a phone.
constexpr QSize kWideWindow{1120, 760};
constexpr QSize kUprightWindow{400, 780};
constexpr QSize kSmallestWindow{320, 320};

PhotoReceiver* receiver(const UIWindow& window)
{
    auto* const top = dynamic_cast<PhotoReceiver*>(window.topViewController().get());
    return top && top->wantsPhotos() ? top : nullptr;
}

} // namespace

Application* Application::current()
{
    return g_current;
}

Application::Application(const LaunchOptions& options)
    : m_metrics(m_view)
    , m_focus(m_view)
    , m_picker(m_view, m_folder)
    , m_screens(std::make_shared<ScreenHost>())
    , m_bridge((g_current = this, *this))
{
    PresentationHost::setCurrent(m_screens);
    installSystemURLOpener();
    QObject::connect(m_screens.get(), &ScreenHost::presenting, &m_picker, &PickerPresenter::present);
    QObject::connect(&m_memory, &MemoryMonitor::lowMemory, &UIApplication::didReceiveMemoryWarning);
    m_picker.setStartFolder(options.photosFolder);

    m_view.setColor(QColor(0x12, 0x13, 0x16)); // the table, before the first frame is drawn
    m_view.setTitle(QStringLiteral("Lamina"));
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_view.setMinimumSize(kSmallestWindow);
    chooseSize(options.size);
    registerQmlTypes();
    installScreenAccessibility();
    m_view.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_view.engine()->addImageProvider(QStringLiteral("art"), new ArtProvider);
    m_view.engine()->addImageProvider(QStringLiteral("thumbnail"), new ThumbnailProvider);
    openFirstScreen(options);
    m_view.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Lamina/Main.qml")));
}

Application::~Application()
{
    m_view.setSource({}); // the views go before the screens that they show
    PresentationHost::setCurrent(nullptr);
    m_screens->window().setRootViewController(nullptr);
    // What is being saved is saved to the end; reading ends with the screens that wanted it.
    constexpr double kLeavingSeconds = 10;
    DispatchQueue::main().runUntilIdle(kLeavingSeconds);
    g_current = nullptr;
}

void Application::chooseSize(QSize wanted)
{
    m_sizeGiven = !wanted.isEmpty();
    if (!m_sizeGiven) {
        const QScreen* const display = QGuiApplication::primaryScreen();
        const QSize room = display ? display->availableSize() : kUprightWindow;
        const bool wide = room.width() > kWideWindow.width() && room.height() > kWideWindow.height();
        wanted = (wide ? kWideWindow : kUprightWindow).boundedTo(room);
    }
    m_view.resize(wanted);
}

void Application::openFirstScreen(const LaunchOptions& options)
{
    registerMainStoryboard();
    const auto home = UIStoryboard::named(kMainStoryboard)->instantiate<ViewController>(scene::kHome);
    m_screens->window().setRootViewController(UINavigationController::make(home));
    DispatchQueue::main().drain();

    std::vector<PhotoSource> photos;
    for (const std::string& file : options.files)
        photos.push_back(PhotoSource::fromFile(file));
    if (!photos.empty())
        home->receivePhotos(std::move(photos));
    else if (options.screen == "blend")
        home->BlendPhoto();
    else if (options.screen == "two" && home->collageAvailable())
        home->twoPhotoCollage();
    else if (options.screen == "three" && home->collageAvailable())
        home->threePhotoCollage();
}

void Application::show()
{
    // On phones the shell gives the window its size.
    const QScreen* const display = m_view.screen();
    if (!m_sizeGiven && display && display->availableSize().width() < kUprightWindow.width() + kSmallestWindow.width())
        m_view.showMaximized();
    else
        m_view.show();
}

void Application::showKeys()
{
    const std::shared_ptr<UIViewController> top = m_screens->window().topViewController();
    if (top && !m_screens->inTransition() && top->systemPresentation() == UISystemPresentation::None)
        presentAbout(*top, AboutViewController::Page::Keys);
}

bool Application::wantsPhotos(const QMimeData& offered) const
{
    return receiver(m_screens->window()) && offersPictures(offered);
}

bool Application::receivePhotos(const QMimeData& offered)
{
    PhotoReceiver* const taker = receiver(m_screens->window());
    if (!taker)
        return false;
    const auto pictures = picturesOf(offered);
    if (!pictures) {
        presentFailure(*m_screens->window().topViewController(), localizedString("Can’t open the photo"),
                       pictures.error());
        return false;
    }
    if (pictures->empty())
        return false;
    taker->receivePhotos(*pictures);
    return true;
}

} // namespace lamina
