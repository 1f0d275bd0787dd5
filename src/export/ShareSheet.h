#pragma once

#include "platform/image/pixels/UIImage.h"

#include <memory>
#include <string>

namespace lamina {

class UIActivityViewController;
class UIViewController;

/// Presents the system's share sheet with the file over the screen, on a later turn of the main queue, and gives the
/// sheet. Main thread.
std::shared_ptr<UIActivityViewController> presentShareSheet(const std::string& path, UIViewController& screen);
/// The same with a picture, whose file may come later: see UIActivityViewController.
std::shared_ptr<UIActivityViewController> presentShareSheet(const UIImage& image, UIViewController& screen);

} // namespace lamina
