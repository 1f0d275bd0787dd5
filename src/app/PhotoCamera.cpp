#include "app/PhotoCamera.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUImageTarget.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/GPUImageView.h"
#include "platform/application/UIApplication.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIImagePickerController.h"
#include "platform/view/UIViewAutoresizing.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

namespace lamina {

namespace {

using Devices = std::vector<std::shared_ptr<AVCaptureDevice>>;

/// Not the main one, which would count as busy while somebody is patient. Never destroyed.
DispatchQueue& patienceQueue()
{
    static auto* const queue = new DispatchQueue("camera patience");
    return *queue;
}

UIViewAutoresizing allOfTheParent()
{
    return UIViewAutoresizing::FlexibleWidth | UIViewAutoresizing::FlexibleHeight;
}

/// The photo with its file. On the thread on which it was taken, since that takes its time.
Result<UIImagePickerPhoto> photoOf(Result<UIImage> still)
{
    if (!still)
        return still.error();
    const std::string name = localizedString(QT_TRANSLATE_NOOP("Lamina", "camera photo"));
    UIImage image = still->upright();
    Result<std::vector<std::uint8_t>> file = encodePicture(image.cgImage(), *pictureFormatForFileName("photo.jpg"),
                                                           name, {.quality = PhotoCamera::kQuality});
    if (!file)
        return file.error();
    return UIImagePickerPhoto{std::move(image), PhotoSource::fromBytes(*std::move(file), name)};
}

} // namespace

/// Tells of the first frame, and of each that is seen in another size than the one before. On the video processing
/// queue.
class PhotoCamera::FrameWatch : public GPUImageTarget {
public:
    using Seen = std::function<void(CGSize)>;
    explicit FrameWatch(Seen seen)
        : m_seen(std::move(seen))
    {
    }

    void newFrameReadyAtTime(const CMTime&, int) override
    {
        const CGSize size = sizeRotatedBy(m_rotation, m_size);
        if (std::exchange(m_told, size) != size)
            m_seen(size);
    }
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer>, int) override {}
    void setInputSize(CGSize size, int) override { m_size = size; }
    void setInputRotation(GPUImageRotationMode rotation, int) override { m_rotation = rotation; }

private:
    Seen m_seen;
    CGSize m_size;
    CGSize m_told;
    GPUImageRotationMode m_rotation = kGPUImageNoRotation;
};

PhotoCamera::PhotoCamera()
    : m_root(std::make_shared<UIView>(CGRect{0, 0, 360, 480}))
    , m_seen(GPUImageView::make())
    , m_still(std::make_shared<UIImageView>())
    , m_devicesObserver(kAVCaptureDevicesDidChangeNotification, [this] { devicesChanged(); })
{
    m_still->setContentMode(UIViewContentMode::ScaleAspectFit);
    m_still->setHidden(true);
    for (const std::shared_ptr<UIView>& layer : {std::shared_ptr<UIView>(m_seen), std::shared_ptr<UIView>(m_still)}) {
        layer->setFrame(m_root->bounds());
        layer->setAutoresizingMask(allOfTheParent());
        m_root->addSubview(layer);
    }
}

PhotoCamera::~PhotoCamera()
{
    letGo();
}

void PhotoCamera::show(const Shown& shown)
{
    if (m_shown == shown)
        return;
    m_shown = shown;
    emit changed();
}

void PhotoCamera::place(double width, double height)
{
    if (width <= 0 || height <= 0)
        return;
    m_root->setFrame({0, 0, width, height});
    followDevice();
}

/// The window turns with the device.
void PhotoCamera::followDevice()
{
    if (m_camera && std::exchange(m_held, UIDevice::orientation()) != UIDevice::orientation())
        m_camera->followDeviceOrientation();
}

void PhotoCamera::start()
{
    m_wanted = true;
    if (!m_camera && !m_photo.image)
        begin();
}

void PhotoCamera::stop()
{
    m_wanted = false;
    letGo();
    if (!m_photo.image)
        showStarting();
}

void PhotoCamera::setInSight(bool inSight)
{
    if (std::exchange(m_inSight, inSight) == inSight)
        return;
    m_unseen = {};
    if (inSight && m_wanted)
        return start();
    if (!inSight)
        m_unseen = DispatchTimer(patienceQueue(), kUnseenPatience, [self = QPointer(this)] {
            DispatchQueue::main().async([self] {
                if (!self || self->m_inSight || !self->m_camera)
                    return;
                self->letGo();
                self->showStarting();
            });
        });
}

void PhotoCamera::begin()
{
    letGo();
    m_trouble = Trouble::None;
    m_photo = {};
    m_still->setHidden(true);
    m_still->setImage({});
    const auto answered = [this](bool granted) {
        if (granted)
            return open();
        fail(Trouble::Refused, localizedString("Allow camera access?"),
             localizedString("Need your permission to take a photo"));
    };
    if (AVCaptureDevice::videoAuthorizationStatus() == AVAuthorizationStatus::Authorized)
        return open();
    showStarting(localizedString(QT_TRANSLATE_NOOP("Lamina", "Your system asks whether Lamina may use the camera.")));
    AVCaptureDevice::requestVideoAccess(onMain(answered));
}

std::shared_ptr<AVCaptureDevice> PhotoCamera::wantedDevice() const
{
    if (auto device = AVCaptureDevice::deviceWithUniqueID(m_deviceID))
        return device;
    if (auto device = AVCaptureDevice::defaultVideoDevice(AVCaptureDevicePosition::Back))
        return device;
    return AVCaptureDevice::defaultVideoDevice();
}

void PhotoCamera::open()
{
    showStarting();
    const std::shared_ptr<AVCaptureDevice> device = wantedDevice();
    if (!device) {
        // Those who serve cameras have perhaps only just begun to look for them.
        waitFor(kDevicesPatience, [this] {
            fail(Trouble::NoDevice, localizedString("No camera"),
                 localizedString(QT_TRANSLATE_NOOP("Lamina", "Plug one in, and it goes on here.")));
        });
        return;
    }
    // The first use of the graph loads a driver; the screen is not to stand still meanwhile.
    runAsynchronouslyOnVideoProcessingQueue(
        [opened = onMain([this, device] { openDevice(device); }), expected = DispatchQueue::main().expectWork()] {
            GPUImageContext::useImageProcessingContext();
            opened();
        });
}

void PhotoCamera::openDevice(const std::shared_ptr<AVCaptureDevice>& device)
{
    auto camera = GPUImageStillCamera::make(kAVCaptureSessionPresetPhoto, device);
    if (!camera)
        return fail(Trouble::NotOpened, localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t open the camera")),
                    localizedText(QT_TRANSLATE_NOOP(
                                      "Lamina", "%1 Perhaps something else is using it. Close that, and try again."),
                                  {failureText(camera.error())}));
    m_camera = *std::move(camera);
    m_deviceID = device->uniqueID();
    m_held = UIDevice::orientation();
    m_camera->setHorizontallyMirrorFrontFacingCamera(true);
    m_camera->followDeviceOrientation();
    m_camera->setEndHandler(onMain([this](const Error& error) { cameraEnded(error); }));
    m_watch = std::make_shared<FrameWatch>(onMain([this](CGSize size) { frameSeen(size); }));
    addViews();
    m_camera->startCameraCapture();
    showStarting();
    waitFor(kFramePatience, [this, name = device->localizedName()] {
        cameraEnded({name, QT_TRANSLATE_NOOP("Lamina", "it gives no picture")});
    });
}

void PhotoCamera::addViews()
{
    m_camera->addTarget(m_seen);
    m_camera->addTarget(m_watch);
}

void PhotoCamera::frameSeen(CGSize size)
{
    if (!m_camera || (state() != Starting && state() != Live))
        return;
    m_patience = {};
    Shown now = m_shown;
    now.state = Live;
    now.size = size;
    now.title = now.message = {};
    show(now);
}

void PhotoCamera::cameraEnded(const Error& error)
{
    fail(Trouble::Ended, localizedString(QT_TRANSLATE_NOOP("Lamina", "The camera has stopped")),
         localizedText(QT_TRANSLATE_NOOP("Lamina", "%1 It goes on as soon as the camera is back."),
                       {failureText(error)}));
}

void PhotoCamera::takePhoto()
{
    if (state() != Live)
        return;
    Shown now = m_shown;
    now.state = Taking;
    show(now);
    followDevice();
    // Stands in the graph for this one frame alone: what is only looked at needs no copy.
    const auto still = std::make_shared<GPUImageFilter>();
    m_camera->addTarget(still);
    const auto taken = onMain([this](const Result<UIImagePickerPhoto>& photo) { photoTaken(photo); });
    m_camera->capturePhotoAsImageProcessedUpToFilter(
        still, UIImageOrientation::Up, [taken, expected = DispatchQueue::main().expectWork()](Result<UIImage> image) {
            taken(photoOf(std::move(image)));
        });
}

void PhotoCamera::photoTaken(const Result<UIImagePickerPhoto>& photo)
{
    if (state() != Taking)
        return;
    if (!photo) {
        // The camera goes on, but without what was put into its graph.
        const Error error = photo.error();
        m_camera->removeAllTargets();
        addViews();
        Shown now = m_shown;
        now.state = Live;
        show(now);
        if (photoFailed)
            photoFailed(error);
        return;
    }
    letGo();
    m_photo = *photo;
    m_still->setImage(m_photo.image);
    m_still->setHidden(false);
    Shown now = m_shown;
    now.state = Taken;
    now.size = m_photo.image.size();
    show(now);
}

void PhotoCamera::retake()
{
    if (state() == Taken)
        begin();
}

void PhotoCamera::tryAgain()
{
    if (state() == Failed)
        begin();
}

void PhotoCamera::switchCamera()
{
    const Devices devices = AVCaptureDevice::devices();
    if (state() == Taking || state() == Taken || devices.size() < 2)
        return;
    const auto present = std::ranges::find(devices, m_deviceID, &AVCaptureDevice::uniqueID);
    const auto next =
        present == devices.end() || std::next(present) == devices.end() ? devices.begin() : std::next(present);
    m_deviceID = (*next)->uniqueID();
    begin();
}

void PhotoCamera::openSettings()
{
    UIApplication::shared().openURL(UIApplicationOpenSettingsURLString);
}

void PhotoCamera::devicesChanged()
{
    Shown now = m_shown;
    now.canSwitch = AVCaptureDevice::devices().size() > 1;
    show(now);
    if (!m_wanted || !m_inSight || m_camera || m_photo.image)
        return;
    const bool allowed = AVCaptureDevice::videoAuthorizationStatus() == AVAuthorizationStatus::Authorized;
    const bool isBack = m_trouble == Trouble::Ended && AVCaptureDevice::deviceWithUniqueID(m_deviceID);
    const bool hasCome = m_trouble == Trouble::NoDevice || (state() == Starting && m_patience.isPending());
    if (allowed && (isBack || m_trouble == Trouble::Refused || (hasCome && wantedDevice())))
        begin();
}

/// What was under way has no say any more.
void PhotoCamera::letGo()
{
    ++m_attempt;
    m_patience = {};
    if (!m_camera)
        return;
    m_camera->setEndHandler({});
    m_camera->stopCameraCapture();
    m_camera->removeAllTargets();
    m_camera->removeInputsAndOutputs();
    m_camera.reset();
}

void PhotoCamera::showStarting(std::string message)
{
    const auto device = m_camera ? m_camera->inputCamera() : nullptr;
    show({.state = Starting,
          .size = m_shown.size,
          .canSwitch = AVCaptureDevice::devices().size() > 1,
          .deviceName = device ? device->localizedName() : m_shown.deviceName,
          .message = std::move(message)});
}

void PhotoCamera::fail(Trouble trouble, std::string title, std::string message)
{
    letGo();
    m_trouble = trouble;
    show({.state = Failed,
          .size = m_shown.size,
          .canSwitch = AVCaptureDevice::devices().size() > 1,
          .deviceName = m_shown.deviceName,
          .title = std::move(title),
          .message = std::move(message),
          .canTryAgain = trouble != Trouble::NoDevice,
          .refused = trouble == Trouble::Refused});
}

void PhotoCamera::waitFor(double seconds, std::function<void()> tooLong)
{
    m_patience = DispatchTimer(patienceQueue(), seconds, onMain(std::move(tooLong)));
}

void installPhotoCamera()
{
    UIImagePickerController::setCameraFactory([] { return std::make_unique<PhotoCamera>(); });
}

} // namespace lamina
