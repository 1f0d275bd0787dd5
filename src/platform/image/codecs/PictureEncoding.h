#pragma once

#include "platform/base/Result.h"
#include "platform/base/UIColor.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// How a picture is encoded, for formats that leave a choice.
struct EncodeOptions {
    /// JPEG: 0 (smallest) to 1 (best), clamped, not a number: 1. From 0.9 on colours are kept at full resolution, below
    /// at half.
    double quality = 1;
    /// Lies under translucent pixels where the format has no alpha (JPEG, BMP, the edges in a GIF). Its components are
    /// clamped to [0, 1], and where it is translucent itself it lies on white.
    UIColor background = UIColor::white();
    /// TIFF: R G B A whatever the picture has.
    bool alwaysRGBA = false;
    /// TIFF: an ICC profile of RGB that stands in the file in place of sRGB's; the picture's values are of it, and of
    /// the device as far as its layout says. Read during the call.
    std::span<const std::uint8_t> profile = {};
};

/// A file of the picture in a format that can be written, in 8-bit sRGB, with an embedded sRGB profile where the format
/// has a place for one. Pixels of any layout are converted; a mask becomes alpha; a grey picture stays grey where it
/// can. The same pixels give the same bytes. Usable from any thread.
///
/// PNG and TIFF (one page, LZW with differences) keep straight alpha, which is left out when every pixel is opaque; it
/// is looked for only where the picture's layout has alpha. JPEG is baseline. GIF has one frame: up to 256 colours
/// exactly as they are, for more a palette found for the picture, no dithering; pixels of less than half alpha are
/// clear. BMP has 24 bits a pixel.
///
/// A picture that is handed over, and that nobody else has, is let go of on the way, before the file takes its memory.
///
/// Fails with the given subject when the picture is empty, when it is larger than the format can state (JPEG 65500
/// pixels a side, GIF 65535, BMP 2 GB, TIFF 4 GB) and when memory is short.
Result<std::vector<std::uint8_t>> encodePicture(CGImage image, const PictureFormat& format, const std::string& subject,
                                                const EncodeOptions& options = {});

/// The same as PNG.
Result<std::vector<std::uint8_t>> encodePNG(CGImage image, const std::string& subject);

} // namespace lamina
