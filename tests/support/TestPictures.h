#pragma once

#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace lamina::test {

using Rgba = std::array<std::uint8_t, 4>;

/// A picture of skip-last (`alpha` false) or straight-alpha pixels, each asked for by its place.
CGImage makePicture(int width, int height, const std::function<Rgba(int x, int y)>& pixel, bool alpha = false);

/// A ramp that any honest interpolation keeps: red grows to the right, green downwards, both over the whole range; blue
/// fixed.
CGImage rampPicture(int width, int height, std::uint8_t blue);

/// The four components at a place of a picture of four bytes a pixel in R G B A order.
Rgba pixelAt(const CGImage& image, int x, int y);

/// The picture as a PNG file.
void writePng(const std::string& path, const CGImage& image);

/// The shown pixels of a file; fails the running test and gives an empty picture when it can't be read.
CGImage readPictureFile(const std::string& path);

/// The largest difference of any component of two pixels.
int difference(const Rgba& x, const Rgba& y);

} // namespace lamina::test
