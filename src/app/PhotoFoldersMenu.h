#pragma once

#include "platform/view/UIViewController.h"

namespace lamina {

/// Shows the folders that the user has added to the photo library, over a screen: another one can be added, each can be
/// taken out again. Main thread.
void presentPhotoFolders(UIViewController& over);

} // namespace lamina
