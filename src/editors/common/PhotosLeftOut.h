#pragma once

#include <functional>
#include <string>

namespace lamina {

class UIViewController;

/// Tells in an alert that some photos have no place, by a message in the user's language; then `goOn` is called. Main
/// thread.
void presentTooManyPhotos(UIViewController& screen, std::string message, std::function<void()> goOn);

} // namespace lamina
