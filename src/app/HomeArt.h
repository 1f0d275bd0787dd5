#pragma once

#include "platform/image/pixels/UIImage.h"

#include <cstddef>

namespace lamina {

/// What lies on the home screen's print for a collage of so many photos, 2 or 3: scenes of ours in the first frame that
/// such a collage has, on the main screen as it is now; clear where the paper is to be seen. Empty for another number.
UIImage homeArt(std::size_t photos);

} // namespace lamina
