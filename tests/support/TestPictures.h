#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <array>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <vector>

// The pictures that tests make, the ways to read a picture's pixels, and how two pictures are compared.

namespace lamina::test {

/// The four bytes of a pixel in the order in which memory keeps them: R G B A where a picture says nothing else.
using Rgba = std::array<std::uint8_t, 4>;
using PixelFunction = std::function<Rgba(int x, int y)>;

// Layouts beside `CGImageLayout::rgba` and `CGImageLayout::gray`.

/// Four bytes a pixel in the order that `info` tells, in rows that are 12 bytes longer than their pixels.
CGImageLayout paddedLayout(int width, int height, CGBitmapInfo info);
inline CGImageLayout paddedLayout(int width, int height, CGImageAlphaInfo alpha)
{
    return paddedLayout(width, height, bitmapInfo(alpha));
}
/// Any layout, in rows of the fewest whole bytes.
CGImageLayout packedLayout(IntSize size, CGBitmapInfo info, int bitsPerComponent, int bitsPerPixel,
                           const CGColorSpace& space = CGColorSpace::deviceRGB());

// Pictures.

/// The bytes as they are, rows and their padding; missing ones are 0. Fails the running test when the layout is not
/// possible.
CGImage pictureFromBytes(const CGImageLayout& layout, std::span<const std::uint8_t> bytes);

/// A picture of any layout of four bytes a pixel, each asked for by its place as memory keeps it; padding is 0xAB.
CGImage makePicture(const CGImageLayout& layout, const PixelFunction& pixel);
/// A picture of skip-last (`alpha` false) or straight-alpha pixels, in rows without padding.
CGImage makePicture(int width, int height, const PixelFunction& pixel, bool alpha = false);

/// A picture of one byte a pixel: a grey, or an alpha-only one.
CGImage bytePicture(int width, int height, const std::function<int(int x, int y)>& value,
                    const CGColorSpace& space = CGColorSpace::deviceGray());

/// One colour everywhere; straight alpha unless told otherwise.
CGImage solidPicture(int width, int height, Rgba color, CGImageAlphaInfo alpha = CGImageAlphaInfo::Last);

/// A ramp that any honest interpolation keeps: red grows to the right, green downwards, both over the whole range; blue
/// fixed.
CGImage rampPicture(int width, int height, std::uint8_t blue);

/// A chart without any symmetry: up to 19 × 20 pixels each has a colour of its own, translucent ones where the layout
/// keeps alpha (premultiplied where it is). Four bytes a pixel.
CGImage chartPicture(const CGImageLayout& layout);
CGImage chartPicture(int width, int height, CGImageAlphaInfo alpha = CGImageAlphaInfo::Last);

/// Random bytes, the same for a seed at every call. Premultiplied pixels are sound ones; a skipped byte is 255. Four
/// bytes a pixel.
CGImage noisePicture(const CGImageLayout& layout, unsigned seed = 1);
CGImage noisePicture(int width, int height, CGImageAlphaInfo alpha, unsigned seed = 1);

// Pixels read.

/// The four bytes at a place of a picture of four bytes a pixel, in memory's order. All 0, and the running test fails,
/// outside the picture.
Rgba pixelAt(const CGImage& image, int x, int y);
/// The byte at a place of a picture of one byte a pixel.
int byteAt(const CGImage& image, int x, int y);
/// All pixels of a picture of four bytes a pixel, row by row from the top.
std::vector<Rgba> pixelsOf(const CGImage& image);
/// All bytes of all pixels, without the padding of rows: what "the same picture" means.
std::vector<std::uint8_t> bytesOf(const CGImage& image);
/// One component of a picture of four bytes a pixel (0 the first in memory), or the bytes of one of one byte: rows from
/// the top, to be compared with a literal grid.
std::vector<std::vector<int>> componentGrid(const CGImage& image, int component = 0);

// Comparisons.

/// The largest difference of any component of two pixels.
int difference(const Rgba& x, const Rgba& y);
/// The pixel is there and no component is off by more than `tolerance`.
testing::AssertionResult pixelMatches(const CGImage& image, int x, int y, const Rgba& wanted, int tolerance = 0);
/// Both are pictures of one size and of equally many whole bytes a pixel, and no byte is off by more than `tolerance`.
/// The failure tells how many pixels are, and the worst of them.
testing::AssertionResult imagesMatch(const CGImage& got, const CGImage& wanted, int tolerance = 0);
/// The same with the picture that stands as `tests/golden/NAME.png`. The failure leaves what came in the folder for
/// temporary files and says where; with LAMINA_UPDATE_GOLDEN in the environment the file is written instead.
testing::AssertionResult matchesGolden(const CGImage& got, const std::string& name, int tolerance = 0);

// Files.

/// The picture as a PNG file.
void writePng(const std::string& path, const CGImage& image);

/// The bytes of a JPEG whose data are damaged at their end, so that all of it is shown.
std::string damagedPhoto();

/// The shown pixels of a file; fails the running test and gives an empty picture when it can't be read.
CGImage readPictureFile(const std::string& path);

} // namespace lamina::test
