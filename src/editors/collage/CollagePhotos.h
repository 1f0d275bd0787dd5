#pragma once

#include <cstddef>
#include <functional>

namespace lamina {

class UIViewController;

/// Tells that `count` photos, at least one, have no place in a collage; then `goOn` is called. Main thread.
void presentLeftOutOfCollage(UIViewController& screen, std::size_t count, std::function<void()> goOn);

} // namespace lamina
