#pragma once

#include "editors/colorpicker/HSBColor.h"

#include "platform/image/pixels/CGImage.h"

#include <array>
#include <cstddef>
#include <cstdint>

// Pictures of ranges of colours: 256 columns of four bytes each, blue, green, red and one that nothing reads.

namespace lamina {

/// One of the three values that make an HSBColor, by its place there.
enum class HSBComponent { Hue = 0, Saturation = 1, Brightness = 2 };

inline constexpr int kColorImageWidth = 256;
inline constexpr int kColorSquareHeight = 256;
inline constexpr std::size_t kColorImageRowBytes = kColorImageWidth * 4;

/// How such a picture of that many rows lies in memory.
CGImageLayout colorImageLayout(int height);

/// One row: `component` runs from 0 to 1, the two others are those of `base`. Empty when memory is short.
/// From any thread.
CGImage hsbSweepImage(HSBComponent component, const HSBColor& base);

using ColorSquarePixels = std::array<std::uint32_t, static_cast<std::size_t>(kColorImageWidth) * kColorSquareHeight>;

/// All colours of a hue in [0, 1]: saturation from 0 at the left, full brightness at the top. In integers that come
/// within 2/255 of the colour; full brightness is (255 · 255) >> 8 = 254. From any thread.
void fillColorSquare(float hue, ColorSquarePixels& pixels);

} // namespace lamina
