#include "CameraShots.h"

#include "FedCamera.h"
#include "Shooter.h"

#include "app/PhotoCamera.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/base/CGGeometry.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/photos/PhotoLoading.h"
#include "platform/view/UIImagePickerController.h"

#include <memory>
#include <vector>

namespace lamina::test {

namespace {

using State = PhotoCamera::State;

/// A sample as a phone held upright sees it, or as a computer's camera does.
CGImage view(bool upright)
{
    const char* const file = upright ? LAMINA_SAMPLES "/aurora-lake.jpg" : LAMINA_SAMPLES "/dawn-ridge.jpg";
    const auto photo = loadUpright(PhotoSource::fromFile(file), {});
    return photo ? photo->cgImage() : CGImage();
}

class CameraShooter {
public:
    CameraShooter(const LaunchOptions& options, const QString& prefix)
        : m_shooter(options, prefix)
        , m_picture(view(options.size.height() > options.size.width()))
    {
        for (const auto& camera : {m_camera, m_other})
            camera->modes = {{m_picture.size(), 1, 30}};
        m_camera->name = "Integrated Camera";
        m_other->name = "USB Camera";
        AVCaptureDevice::setSource({[this] { return m_status; },
                                    [this](const auto& handler) {
                                        if (m_status != AVAuthorizationStatus::NotDetermined)
                                            handler(false);
                                    },
                                    [this](AVTrackMediaType) { return m_there; }});
        UIImagePickerController::setCameraAvailability([] { return true; });
        AVCaptureDevice::devicesDidChange();
    }
    ~CameraShooter() { AVCaptureDevice::setSource({}); }
    CameraShooter(const CameraShooter&) = delete;
    CameraShooter& operator=(const CameraShooter&) = delete;

    void shootAll()
    {
        m_shooter.shoot("chooser-camera");
        const auto chooser = m_shooter.driver().top<ImagePIckingViewController>();
        if (!chooser)
            return;
        m_status = AVAuthorizationStatus::NotDetermined;
        open(*chooser, State::Starting, "camera-asking");
        m_status = AVAuthorizationStatus::Denied;
        open(*chooser, State::Failed, "camera-refused");
        m_status = AVAuthorizationStatus::Authorized;
        const auto all = std::exchange(m_there, {});
        open(*chooser, State::Failed, "camera-none");
        m_there = all;
        m_camera->opens = false;
        open(*chooser, State::Failed, "camera-in-use");
        m_camera->opens = true;
        const FedCamera feeding(m_camera, m_picture);
        open(*chooser, State::Live, nullptr);
        waitForPicture();
        m_shooter.shoot("camera-live");
        m_shooter.driver().press(Qt::Key_Tab);
        m_shooter.shoot("camera-focus");
        camera()->takePhoto();
        waitFor(State::Taken);
        m_shooter.shoot("camera-taken");
        m_shooter.driver().press(Qt::Key_Escape);
        waitFor(State::Live);
        m_camera->end({m_camera->name, "it was unplugged"});
        waitFor(State::Failed);
        m_shooter.shoot("camera-unplugged");
        leave();
    }

private:
    PhotoCamera* camera()
    {
        const auto picker = m_shooter.driver().top<UIImagePickerController>();
        return picker ? dynamic_cast<PhotoCamera*>(picker->camera()) : nullptr;
    }
    void waitFor(State state)
    {
        WindowDriver::waitUntil([&] { return camera() && camera()->state() == state; }, 20);
        m_shooter.driver().settle();
    }
    void waitForPicture()
    {
        WindowDriver::waitUntil(
            [&] {
                const CanvasItem* const canvas = m_shooter.driver().canvas();
                const QImage& image = canvas ? canvas->shownImage() : QImage();
                return !image.isNull() && image.pixelColor(image.width() / 2, image.height() / 2).lightness() > 10;
            },
            10);
    }
    void leave()
    {
        m_shooter.driver().press(Qt::Key_Escape);
        m_shooter.driver().waitFor<ImagePIckingViewController>();
    }
    /// In that state; a name has it drawn and left.
    void open(ImagePIckingViewController& chooser, State state, const char* name)
    {
        chooser.galleryButton();
        waitFor(state);
        if (!name)
            return;
        m_shooter.shoot(name);
        leave();
    }

    Shooter m_shooter;
    CGImage m_picture;
    std::shared_ptr<StandInCamera> m_camera = std::make_shared<StandInCamera>();
    std::shared_ptr<StandInCamera> m_other = std::make_shared<StandInCamera>();
    std::vector<std::shared_ptr<AVCaptureDevice>> m_there{m_camera, m_other};
    AVAuthorizationStatus m_status = AVAuthorizationStatus::Authorized;
};

} // namespace

void shootCamera(const LaunchOptions& options, const QString& prefix)
{
    LaunchOptions chooser = options;
    chooser.screen = "blend";
    CameraShooter(chooser, prefix).shootAll();
}

} // namespace lamina::test
