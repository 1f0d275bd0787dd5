#include "platform/view/UIImagePickerCamera.h"

namespace lamina {

UIImagePickerCamera::UIImagePickerCamera() = default;
UIImagePickerCamera::~UIImagePickerCamera() = default;

void UIImagePickerCamera::show(const Shown& shown)
{
    if (m_shown == shown)
        return;
    m_shown = shown;
    emit changed();
}

} // namespace lamina
