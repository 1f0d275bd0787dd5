#include "platform/view/UIImagePickerController.h"

#include "platform/base/Localization.h"
#include "platform/base/Log.h"
#include "platform/photos/PhotoLoad.h"
#include "platform/view/FailureAlert.h"

#include <string>
#include <utility>

namespace lamina {

namespace {

std::function<bool()>& cameraAvailability()
{
    static auto* const isAvailable = new std::function<bool()>;
    return *isAvailable;
}

UIImagePickerController::CameraFactory& cameraFactory()
{
    static auto* const makeCamera = new UIImagePickerController::CameraFactory;
    return *makeCamera;
}

} // namespace

void UIImagePickerControllerDelegate::imagePickerControllerDidCancel(UIImagePickerController&) {}
void UIImagePickerControllerDelegate::imagePickerController(UIImagePickerController&, const UIImagePickerInfo&) {}

UIImagePickerController::UIImagePickerController() = default;
UIImagePickerController::~UIImagePickerController() = default;

bool UIImagePickerController::isSourceTypeAvailable(SourceType type)
{
    return type == SourceType::PhotoLibrary || (cameraAvailability() && cameraAvailability()());
}

void UIImagePickerController::setCameraAvailability(std::function<bool()> isAvailable)
{
    cameraAvailability() = std::move(isAvailable);
}

void UIImagePickerController::setCameraFactory(CameraFactory makeCamera)
{
    cameraFactory() = std::move(makeCamera);
}

UIImagePickerCamera* UIImagePickerController::camera()
{
    const bool wanted = m_sourceType == SourceType::Camera && !m_preselected && m_state == Choosing;
    if (!m_camera && wanted && cameraFactory()) {
        m_camera = cameraFactory()();
        m_camera->photoFailed = [this](const Error& error) {
            presentFailure(*this, localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t take the photo")), error);
        };
    }
    return m_camera.get();
}

std::shared_ptr<UIView> UIImagePickerController::canvasView()
{
    return camera() ? camera()->view() : nullptr;
}

void UIImagePickerController::viewWillAppear(bool animated)
{
    UIViewController::viewWillAppear(animated);
    if (m_state == Choosing && camera())
        camera()->start();
}

void UIImagePickerController::viewWillDisappear(bool animated)
{
    UIViewController::viewWillDisappear(animated);
    if (m_camera)
        m_camera->stop();
}

void UIImagePickerController::viewDidAppear(bool animated)
{
    UIViewController::viewDidAppear(animated);
    if (m_state != Choosing || camera())
        return;
    if (m_preselected)
        choose(std::move(*m_preselected));
    else if (!isSourceTypeAvailable(m_sourceType))
        giveUp(localizedString("Camera Unavailable"),
               {{}, QT_TRANSLATE_NOOP("Lamina", "Unable to find a camera on your device.")});
}

void UIImagePickerController::choose(PhotoSource photo)
{
    if (m_state != Choosing)
        return;
    m_state = Loading;
    m_photo = std::move(photo);
    m_load = std::make_unique<PhotoLoad>(m_photo, m_shortSide,
                                         [this](Result<UIImage> read) { photoArrived(std::move(read)); });
    emit stateChanged();
}

void UIImagePickerController::photoArrived(Result<UIImage> photo)
{
    if (!photo) {
        fail(photo.error());
        return;
    }
    const auto self = shared_from_this();
    const std::string damage = m_load->warning();
    finish();
    tell({*std::move(photo), m_photo.name, m_photo, damage});
}

void UIImagePickerController::usePhoto()
{
    const UIImagePickerPhoto photo = m_camera ? m_camera->photo() : UIImagePickerPhoto();
    if (m_state != Choosing || !photo.image)
        return;
    const auto self = shared_from_this();
    finish();
    tell({photo.image, photo.source.name, photo.source});
}

void UIImagePickerController::tell(const UIImagePickerInfo& info)
{
    if (const auto heard = delegate())
        heard->imagePickerController(*this, info);
    else
        leave();
}

void UIImagePickerController::cancel()
{
    if (m_state == Finished)
        return;
    const auto self = shared_from_this();
    finish();
    if (const auto heard = delegate())
        heard->imagePickerControllerDidCancel(*this);
    else
        leave();
}

void UIImagePickerController::leave()
{
    if (presentingViewController())
        dismiss(true);
}

void UIImagePickerController::fail(const Error& error)
{
    if (m_state != Finished)
        giveUp(localizedString("Can’t open the photo"), error);
}

void UIImagePickerController::giveUp(std::string title, const Error& error)
{
    const auto self = shared_from_this();
    finish();
    const auto presenter = presentingViewController();
    if (!presenter) {
        logWarning(error.message());
        return;
    }
    dismiss(true);
    presentFailure(*presenter, std::move(title), error);
}

void UIImagePickerController::finish()
{
    m_state = Finished;
    // The load may be the caller, whose completion goes on after this.
    if (m_load)
        m_load->cancel();
    if (m_camera)
        m_camera->stop();
    emit stateChanged();
}

} // namespace lamina
