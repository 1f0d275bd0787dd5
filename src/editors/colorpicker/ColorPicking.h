#pragma once

#include "editors/colorpicker/InfColorPickerControllerDelegate.h"
#include "platform/base/UIColor.h"

#include <memory>

namespace lamina {

class UIViewController;

/// Asks for a colour over an editor, on the whole of its screen, beginning with `source`; `delegate` hears of the
/// answer, and dismisses the editor's screen above it. Nothing while something lies over the editor: false. Main
/// thread.
bool pickColor(UIViewController& editor, const UIColor& source,
               std::weak_ptr<InfColorPickerControllerDelegate> delegate);

} // namespace lamina
