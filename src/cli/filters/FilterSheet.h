#pragma once

#include "cli/filters/FilterListing.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <vector>

namespace lamina {

/// The longer side of a picture on a sheet, in pixels.
inline constexpr int kSheetPictureSide = 320;

/// What each filter of the families makes of a photo, in rows under the families' names: its name and its sample
/// settings stand below; the first is the photo itself. Filters work on the photo reduced to the size in which it is
/// shown. `overlay` lies above it where a filter takes two pictures; without one that is a disc of many colours with a
/// soft edge. A look-up filter gets a built-in table, one of cells a diagram, and
/// a generator no picture. In place of what can't be drawn stands
/// the cause.
Result<UIImage> filterSheet(const std::vector<FilterFamily>& families, const UIImage& photo, const UIImage& overlay);

} // namespace lamina
