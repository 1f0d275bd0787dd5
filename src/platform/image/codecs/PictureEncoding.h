#pragma once

#include "platform/base/Result.h"
#include "platform/base/UIColor.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// A PNG file of the picture, with an embedded sRGB profile. Pixels of any layout are converted to 8-bit sRGB with
/// straight alpha; alpha is left out when every pixel is opaque. A grey picture stays grey. The same pixels give the
/// same bytes. Fails with the given subject when the picture is empty or memory is short. Usable from any thread.
Result<std::vector<std::uint8_t>> encodePNG(const CGImage& image, const std::string& subject);

/// The other formats, on the same terms: 8-bit sRGB, an embedded profile where the format has a place for one, a grey
/// picture stays grey where it can, the same pixels give the same bytes. `background` lies under translucent pixels
/// where the format has no alpha; its components are clamped to [0, 1], and where it is translucent itself it lies on
/// white. A picture with longer sides than the format can state is an error too.
///
/// JPEG: `quality` from 0 (smallest) to 1 (best), clamped, not a number: 1. From 0.9 on colours are kept at full
/// resolution, below at half. At most 65500 pixels a side.
Result<std::vector<std::uint8_t>> encodeJPEG(const CGImage& image, double quality, const UIColor& background,
                                             const std::string& subject);

/// GIF, one frame: up to 256 colours exactly as they are, for more a palette found for the picture; no dithering.
/// Pixels of less than half alpha are clear, the others lie on the background. At most 65535 pixels a side.
Result<std::vector<std::uint8_t>> encodeGIF(const CGImage& image, const UIColor& background,
                                            const std::string& subject);

/// BMP of 24 bits a pixel, whose header states sRGB. At most 2 GB.
Result<std::vector<std::uint8_t>> encodeBMP(const CGImage& image, const UIColor& background,
                                            const std::string& subject);

/// TIFF of one page, LZW with differences, straight alpha unless every pixel is opaque. At most 4 GB of pixels.
Result<std::vector<std::uint8_t>> encodeTIFF(const CGImage& image, const std::string& subject);

} // namespace lamina
