#include "platform/host/Application.h"

#include "app/AppDelegate.h"
#include "app/AppMenu.h"
#include "app/FirstScreen.h"
#include "app/MainStoryboard.h"
#include "app/PhotoCamera.h"
#include "app/PhotoFolders.h"
#include "app/ViewController.h"
#include "editors/common/KeptWork.h"
#include "hud/ProgressOverlay.h"
#include "platform/application/UIApplication.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/base/Log.h"
#include "platform/base/NotificationCenter.h"
#include "platform/files/FileURL.h"
#include "platform/files/PrivateFolder.h"
#include "platform/host/ArtProvider.h"
#include "platform/host/QmlTypes.h"
#include "platform/host/ScreenItem.h"
#include "platform/host/ThumbnailProvider.h"
#include "platform/host/WindowActivation.h"
#include "platform/host/system/PictureClipboard.h"
#include "platform/host/system/SystemURLOpener.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/photos/PhotoSource.h"
#include "platform/text/TextLayout.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/PhotoReceiver.h"
#include "platform/view/UIImagePickerController.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"
#include "platform/view/UIWindow.h"
#include "promotion/PromotionInstallation.h"

#include <QGuiApplication>
#include <QProcess>
#include <QQmlEngine>

#include <utility>

namespace lamina {

namespace {

Application* g_current = nullptr;

void keepWorks()
{
    const std::string state = stateFolder();
    if (state.empty())
        logWarning("there is no folder in which work could be kept: neither XDG_STATE_HOME nor HOME is set");
    setKeptWorksFolder(state.empty() ? state : state + "/kept");
}

/// The session ends: it may leave no time for more.
void keepWorkNow()
{
    constexpr double kSeconds = 2;
    UIApplication::shared().willTerminate();
    DispatchQueue::main().runUntilIdle(kSeconds);
}

/// A process of its own, beside this one.
Outcome openAnotherWindow(const ApplicationRequest& request)
{
    QStringList arguments{QStringLiteral("--new-window")};
    if (!request.action.empty())
        arguments << QStringLiteral("--screen") << QString::fromStdString(request.action);
    arguments << QStringLiteral("--");
    for (const std::string& photo : request.photos)
        arguments << QString::fromStdString(fileURLOfPath(photo)); // the name may be no text
    if (QProcess::startDetached(QCoreApplication::applicationFilePath(), arguments))
        return success();
    return Error{"lamina-app", "can't be started"};
}

/// Whether it is one of ours in the window, and no dialog of the system's.
bool isScreen(UIViewController& controller)
{
    auto* const picker = dynamic_cast<UIImagePickerController*>(&controller);
    return picker ? picker->takesPhotos() : controller.systemPresentation() == UISystemPresentation::None;
}

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
    : m_loop(MainLoop::current() ? std::nullopt : std::optional<MainLoop>(std::in_place))
    , m_metrics(m_view)
    , m_placement(m_view, options.size)
    , m_focus(m_view)
    , m_pointer(m_view)
    , m_picker(m_view, m_folder)
    , m_activities(m_view)
    , m_documents(m_view, m_folder)
    , m_screens(std::make_shared<ScreenHost>())
    , m_life(options.life ? options.life : std::make_shared<ApplicationLife>())
    , m_bridge((g_current = this, *this))
    , m_requests(m_screens->window(), openAnotherWindow)
{
    PresentationHost::setCurrent(m_screens);
    setSystemFontFamily(QGuiApplication::font().family().toStdString());
    installSystemURLOpener();
    QObject::connect(m_screens.get(), &ScreenHost::presenting, &m_picker, &PickerPresenter::present);
    QObject::connect(m_screens.get(), &ScreenHost::presenting, &m_activities, &ActivityPresenter::present);
    QObject::connect(m_screens.get(), &ScreenHost::presenting, &m_documents, &DocumentPresenter::present);
    installPhotoCamera();
    installPromotion(QGuiApplication::applicationDisplayName().toStdString());
    // Cameras are looked for once there is something to see.
    QObject::connect(&m_view, &QQuickWindow::frameSwapped, &m_cameras, &CameraPortal::begin,
                     static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    QObject::connect(&m_memory, &MemoryMonitor::lowMemory, &UIApplication::didReceiveMemoryWarning);
    QObject::connect(&m_metrics, &ScreenMetrics::sizeChanged, m_screens.get(), [this](QSizeF size) {
        m_screens->window().setSize({size.width(), size.height()});
    });
    m_picker.setStartFolder(options.photosFolders.empty() ? std::string() : options.photosFolders.front());

    m_view.setColor(QColor(0x12, 0x13, 0x16)); // the table, before the first frame is drawn
    m_view.setTitle(QStringLiteral("Lamina"));
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_metrics.update(); // the first screen is laid out before the window is shown
    registerQmlTypes();
    installScreenAccessibility();
    m_view.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_view.engine()->addImageProvider(QStringLiteral("art"), new ArtProvider);
    m_view.engine()->addImageProvider(QStringLiteral("thumbnail"), new ThumbnailProvider);
    keepWorks();
    openPhotoFolders(options.photosFolders);
    beginLife();
    QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, &m_view, [] { keepWorkNow(); });
    openHome(options);
    listenToRequests();
    m_view.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Lamina/Main.qml")));
}

Application::~Application()
{
    m_life->end();
    m_view.setSource({}); // the views go before the screens that they show
    PresentationHost::setCurrent(nullptr);
    m_screens->window().setRootViewController(nullptr);
    // What is being saved is saved to the end; reading ends with the screens that wanted it.
    constexpr double kLeavingSeconds = 10;
    DispatchQueue::main().runUntilIdle(kLeavingSeconds);
    m_life->delegate().setWindow(nullptr);
    g_current = nullptr;
}

/// The window stands for the application: in front it is active, and a notification that is opened brings it there.
void Application::beginLife()
{
    m_life->delegate().setWindow({m_screens, &m_screens->window()});
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &m_view, [](Qt::ApplicationState state) {
        UIApplication::shared().setActive(state == Qt::ApplicationActive);
        if (state == Qt::ApplicationActive)
            PHPhotoLibrary::rescan(); // who was elsewhere has perhaps put photos where nobody tells of them
    });
    QObject::connect(&m_life->notifications(), &DesktopNotifications::opened, &m_view,
                     [this](const QString& activationToken) { bringToFront(activationToken); });
    QObject::connect(
        &m_view, &QQuickWindow::frameSwapped, &m_view, [this] { m_life->begin(); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    m_life->launch();
}

void Application::openHome(const LaunchOptions& options)
{
    registerMainStoryboard();
    const auto home = UIStoryboard::named(kMainStoryboard)->instantiate<ViewController>(scene::kHome);
    m_screens->window().setRootViewController(UINavigationController::make(home));
    DispatchQueue::main().drain();

    std::vector<PhotoSource> photos;
    for (const std::string& file : options.files)
        photos.push_back(PhotoSource::fromFile(file));
    openFirstScreen(*home, options.screen, std::move(photos));
}

/// What makes a request wait ends with one of these.
void Application::listenToRequests()
{
    const auto look = [this] { m_requests.lookAgain(); };
    QObject::connect(m_screens.get(), &ScreenHost::transitionEnded, &m_view, look);
    QObject::connect(&ProgressOverlay::shared(), &ProgressOverlay::changed, &m_view, look);
}

void Application::show()
{
    m_placement.show();
}

void Application::bringToFront(const QString& activationToken)
{
    m_view.setWindowStates(m_view.windowStates() & ~Qt::WindowMinimized);
    activateWindow(m_view, activationToken.toStdString());
}

Outcome Application::perform(const ApplicationRequest& request)
{
    if (!m_view.isVisible())
        return Error{{}, "the window is closed"};
    bringToFront(QString::fromStdString(request.activationToken));
    return m_requests.take(request);
}

void Application::showKeys()
{
    const std::shared_ptr<UIViewController> top = m_screens->window().topViewController();
    if (top && !m_screens->inTransition() && isScreen(*top))
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
