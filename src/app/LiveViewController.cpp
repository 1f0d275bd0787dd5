#include "app/LiveViewController.h"

#include "app/HomeArt.h"
#include "app/LiveCamera.h"
#include "app/LiveMovie.h"
#include "gpu/endpoints/GPUImageView.h"
#include "platform/application/UIApplication.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/image/drawing/SquareCrop.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/capture/CaptureService.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIDocumentPickerViewController.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UILongPressGestureRecognizer.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <utility>

// The source of the live screen, and when it runs.

namespace lamina {

namespace {

/// Cameras are found in the background; until then nobody is told that there are none.
constexpr double kPatience = 1.5;
/// Pixels of the picture that thumbnails are made of.
constexpr double kThumbnailSource = 320;
constexpr double kPressDuration = 0.25;
/// Around a picture that doesn't fill its place.
constexpr float kGround[] = {0x12 / 255.0F, 0x13 / 255.0F, 0x16 / 255.0F};

std::shared_ptr<GPUImageView> makeView(double side)
{
    auto view = GPUImageView::make({0, 0, side, side});
    view->setFillMode(GPUImageFillMode::PreserveAspectRatioAndFill);
    view->setBackgroundColorRed(kGround[0], kGround[1], kGround[2], 1);
    view->setUserInteractionEnabled(false);
    return view;
}

} // namespace

LiveViewController::LiveViewController()
    : m_frames(std::make_shared<LiveFrames>())
    , m_chain(std::make_shared<LiveChain>(m_frames))
    , m_sliders(liveSliders(m_filters.look))
{
    connect(&m_row.thumbnails(), &QAbstractItemModel::dataChanged, this, &LiveViewController::lookPictureChanged);
}

LiveViewController::~LiveViewController()
{
    m_clip.reset();
    if (m_source)
        m_source->stop();
    m_frames->setFrameHandler({});
}

std::weak_ptr<LiveViewController> LiveViewController::weakSelf()
{
    return std::static_pointer_cast<LiveViewController>(shared_from_this());
}

LiveCamera* LiveViewController::camera() const
{
    return dynamic_cast<LiveCamera*>(m_source.get());
}

LiveMovie* LiveViewController::movie() const
{
    return dynamic_cast<LiveMovie*>(m_source.get());
}

void LiveViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    const double side = UIScreen::main().bounds.width;
    m_canvas = std::make_shared<UIView>(CGRect{0, 0, side, side});
    m_canvas->setClipsToBounds(true);
    m_nowView = makeView(side);
    m_beforeView = makeView(side);
    m_beforeView->setEnabled(false);
    m_beforeClip = std::make_shared<UIView>();
    m_beforeClip->setClipsToBounds(true);
    m_beforeClip->setUserInteractionEnabled(false);
    m_beforeClip->addSubview(m_beforeView);
    m_canvas->addSubview(m_nowView);
    m_canvas->addSubview(m_beforeClip);
    layOutBefore();
    const auto press = std::make_shared<UILongPressGestureRecognizer>();
    press->setMinimumPressDuration(kPressDuration);
    press->addTarget(weakSelf(), [this](UIGestureRecognizer& gesture) { this->press(gesture); });
    m_canvas->addGestureRecognizer(press);

    m_chain->addBefore(m_beforeView);
    m_chain->addAfter(m_nowView);
    m_chain->apply(m_filters, false);
    m_frames->setFrameHandler([weak = weakSelf()](CGSize size) {
        DispatchQueue::main().async([weak, size] {
            if (const auto self = weak.lock())
                self->frameCame(size);
        });
    });
    m_devices = NotificationCenter::defaultCenter().addObserver(kAVCaptureDevicesDidChangeNotification,
                                                                [weak = weakSelf()](const Notification&) {
                                                                    DispatchQueue::main().async([weak] {
                                                                        if (const auto self = weak.lock())
                                                                            self->camerasChanged();
                                                                    });
                                                                });
    if (m_firstMovie.empty())
        useCamera();
    else
        openMovie(m_firstMovie);
}

std::shared_ptr<UIView> LiveViewController::canvasView()
{
    view();
    return m_canvas;
}

void LiveViewController::viewDidAppear(bool animated)
{
    UIViewController::viewDidAppear(animated);
    update();
}

void LiveViewController::viewWillDisappear(bool animated)
{
    UIViewController::viewWillDisappear(animated);
    update();
}

void LiveViewController::setWindowShown(bool shown)
{
    if (std::exchange(m_windowShown, shown) != shown)
        update();
}

QString LiveViewController::sourceName() const
{
    return movie() ? QStringLiteral("movie") : QStringLiteral("camera");
}

bool LiveViewController::canSwitchCamera() const
{
    return !movie() && LiveCamera::hasAnother();
}

void LiveViewController::useCamera()
{
    if (camera())
        return;
    ++m_opening;
    setSource(std::make_shared<LiveCamera>(m_frames), localizedString(QT_TRANSLATE_NOOP("Lamina", "Camera")));
}

void LiveViewController::switchCamera()
{
    if (!camera() || !LiveCamera::hasAnother())
        return;
    endClip();
    m_source->stop();
    camera()->chooseAnother();
    m_thumbnailsDue = true;
    tryAgain();
}

void LiveViewController::openMovie(const std::string& path)
{
    LiveMovie::open(path, [weak = weakSelf(), path, opening = ++m_opening](const auto& asset) {
        const auto self = weak.lock();
        if (!self || self->m_opening != opening)
            return;
        if (asset)
            return self->setSource(std::make_shared<LiveMovie>(self->m_frames, *asset),
                                   std::filesystem::path(path).stem().string());
        presentFailure(*self, localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t open the movie")), asset.error());
        if (!self->m_source)
            self->useCamera();
    });
}

void LiveViewController::chooseMovie()
{
    if (presentedViewController())
        return;
    present(
        UIDocumentPickerViewController::makeForMovie([weak = weakSelf()](const std::optional<UIDocumentPlace>& place) {
            const auto self = weak.lock();
            if (self && place)
                self->openMovie(place->path);
        }),
        true);
}

void LiveViewController::receivePhotos(std::vector<PhotoSource> photos)
{
    if (photos.front().path.empty())
        presentFailure(*this, localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t open the movie")),
                       {photos.front().name, QT_TRANSLATE_NOOP("Lamina", "this is no movie")});
    else
        openMovie(photos.front().path);
}

void LiveViewController::setSource(std::shared_ptr<LiveSource> source, const std::string& name)
{
    endClip();
    if (m_source)
        m_source->stop();
    m_source = std::move(source);
    m_source->setEndHandler([weak = weakSelf(), which = m_source.get()](const Error& error) {
        const auto self = weak.lock();
        if (!self || self->m_source.get() != which)
            return;
        self->endClip();
        self->stopFor(error);
    });
    m_paused = false;
    m_thumbnailsDue = true;
    setTitle(name);
    clearTrouble();
    emit sourceChanged();
    emit timeChanged();
    update();
    tellRun();
}

bool LiveViewController::shouldRun() const
{
    return m_source && isAppearing() && m_windowShown && !m_paused && !m_error;
}

/// Lets the source run or stand still as is due now.
void LiveViewController::update()
{
    if (!m_source)
        return;
    const bool should = shouldRun() && (!camera() || mayUseCamera());
    m_frames->setShut(!should);
    if (m_clip && camera())
        m_clip->setPaused(!should);
    if (should && !m_source->isRunning()) {
        const bool waits = camera() && !AVCaptureDevice::defaultVideoDevice();
        if (waits)
            return waitForCamera();
        setState(Starting);
        if (const Outcome started = m_source->start(); !started)
            stopFor(started.error());
        emit sourceChanged();
    } else if (!should && m_source->isRunning() &&
               (!m_frames->isExpecting() || !isAppearing() || !m_windowShown || m_error)) {
        m_source->stop();
        m_frames->pushAgain(); // filters may have changed since it came
    }
    emit runChanged();
}

bool LiveViewController::mayUseCamera()
{
    switch (AVCaptureDevice::videoAuthorizationStatus()) {
    case AVAuthorizationStatus::Authorized:
        return true;
    case AVAuthorizationStatus::NotDetermined:
        if (std::exchange(m_asking, true))
            return false;
        setState(Starting);
        AVCaptureDevice::requestVideoAccess([weak = weakSelf()](bool) {
            DispatchQueue::main().async([weak] {
                const auto self = weak.lock();
                if (!self)
                    return;
                self->m_asking = false;
                if (AVCaptureDevice::videoAuthorizationStatus() != AVAuthorizationStatus::NotDetermined)
                    self->update();
            });
        });
        return false;
    case AVAuthorizationStatus::Restricted:
    case AVAuthorizationStatus::Denied:
        stopFor({{}, QT_TRANSLATE_NOOP("Lamina", "Lamina may not use the camera")}, true);
        return false;
    }
    return false;
}

void LiveViewController::waitForCamera()
{
    if (m_patience.isPending())
        return;
    setState(Starting);
    m_patience = DispatchTimer(DispatchQueue::main(), kPatience, [this] {
        if (shouldRun() && camera() && !m_source->isRunning())
            stopFor(CaptureService::shared().error().value_or(
                Error{{}, QT_TRANSLATE_NOOP("Lamina", "there is no camera")}));
    });
}

/// A camera that has come, or that may be used now, is waited for no longer.
void LiveViewController::camerasChanged()
{
    emit sourceChanged();
    if (!camera() || (!m_error && !m_patience.isPending()) || !AVCaptureDevice::defaultVideoDevice())
        return;
    clearTrouble();
    update();
    tellRun();
}

void LiveViewController::stopFor(const Error& error, bool denied)
{
    m_source->stop();
    m_error = error;
    m_denied = denied;
    m_patience.cancel();
    if (m_row.thumbnails().count() == 0)
        m_row.fill(squareImageFromImage(homeArt(2), kThumbnailSource / UIScreen::main().scale), {});
    setState(Stopped);
    tellRun();
}

void LiveViewController::clearTrouble()
{
    m_patience.cancel();
    m_error.reset();
    m_denied = false;
    setState(Starting);
}

void LiveViewController::tryAgain()
{
    m_paused = false;
    clearTrouble();
    update();
    tellRun();
}

QString LiveViewController::trouble() const
{
    if (!m_error)
        return {};
    QString text = QString::fromStdString(failureText(*m_error));
    if (m_error->subject.empty() && !text.isEmpty())
        text = text.front().toUpper() + text.mid(1) + QLatin1Char('.'); // a cause alone is no sentence yet
    return text;
}

void LiveViewController::openSettings()
{
    UIApplication::shared().openURL(UIApplicationOpenSettingsURLString);
}

void LiveViewController::setState(State state)
{
    m_state = state;
    emit stateChanged();
}

void LiveViewController::tellRun()
{
    emit runChanged();
    emit toolsChanged();
}

/// The first frame of a stretch, or one of another size.
void LiveViewController::frameCame(CGSize size)
{
    if (m_error)
        return;
    if (m_state != Live)
        setState(Live);
    const double aspect = size.height > 0 ? size.width / size.height : 0;
    if (!m_takesStill && aspect != m_aspect) { // a still may have another shape than what is seen
        m_aspect = aspect;
        emit aspectChanged();
    }
    if (std::exchange(m_thumbnailsDue, false))
        refreshThumbnails();
    emit timeChanged();
    update(); // one that was only to show a frame stands still again
}

void LiveViewController::refreshThumbnails()
{
    m_chain->takeSource({kThumbnailSource, kThumbnailSource}, [weak = weakSelf()](const UIImage& picture) {
        DispatchQueue::main().async([weak, picture] {
            const auto self = weak.lock();
            if (!self || !picture)
                return;
            const CGSize size = picture.size();
            self->m_row.fill(squareImageFromImage(picture, std::min(size.width, size.height)), {});
        });
    });
}

bool LiveViewController::isTicking() const
{
    return m_source && m_source->isRunning() && (m_clip || movie());
}

void LiveViewController::tick()
{
    emit timeChanged();
    if (m_clip)
        emit toolsChanged(); // the clip's label tells its time
}

double LiveViewController::position() const
{
    return movie() ? movie()->position() : 0;
}

double LiveViewController::duration() const
{
    return movie() ? movie()->duration() : 0;
}

void LiveViewController::togglePaused()
{
    if (!m_source || m_error)
        return;
    m_paused = !m_paused;
    update();
    tellRun();
    emit timeChanged();
}

void LiveViewController::seek(double seconds)
{
    if (!movie() || m_error)
        return;
    movie()->seek(seconds);
    update();
    emit timeChanged();
}

void LiveViewController::back()
{
    endClip();
    dismiss(true);
}

} // namespace lamina
