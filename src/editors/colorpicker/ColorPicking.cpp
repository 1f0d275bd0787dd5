#include "editors/colorpicker/ColorPicking.h"

#include "editors/colorpicker/InfColorPickerController.h"

#include <utility>

namespace lamina {

bool pickColor(UIViewController& editor, const UIColor& source,
               std::weak_ptr<InfColorPickerControllerDelegate> delegate)
{
    if (editor.presentedViewController())
        return false;
    const auto picker = InfColorPickerController::colorPickerViewController();
    picker->setSourceColor(source);
    picker->setDelegate(std::move(delegate));
    picker->setModalPresentationStyle(UIModalPresentationStyle::FullScreen);
    picker->presentModallyOverViewController(editor);
    return true;
}

} // namespace lamina
