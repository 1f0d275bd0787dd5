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

void UIImagePickerController::viewDidAppear(bool animated)
{
    UIViewController::viewDidAppear(animated);
    if (m_state != Choosing)
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
    if (const auto heard = delegate())
        heard->imagePickerController(*this, {*std::move(photo), m_photo.name, m_photo, damage});
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
    emit stateChanged();
}

} // namespace lamina
