#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace lamina {

/// What a picture file says of itself before its pixels.
struct PictureFacts {
    /// Sides in pixels of the picture as shown, turned by its orientation.
    int width = 0;
    int height = 0;
    UIImageOrientation orientation = UIImageOrientation::Up;
    /// When the photo was taken by its EXIF block, in seconds since 1970 UTC: the time of the original, else that it
    /// was digitized, else that it was last changed. A time without its offset from UTC is one of this machine's time
    /// zone. Nothing without an EXIF block, or where that tells a date that there is not or that is older than 1900.
    std::optional<double> date;
};

/// Reads the facts of a file of a format that `loadPicture` knows, told by its first bytes. Reads 4 KB where all stands
/// together as most programs write it, some more where long segments stand in between, and 1 MB at most; nothing is
/// decoded. The sides are claims that no pixel has confirmed. An EXIF block that a PNG file has far behind its pixels
/// isn't looked for.
///
/// The error's subject is the path, its causes are those of `loadPicture`. Usable from any thread.
Result<PictureFacts> readPictureFacts(const std::string& path);
/// The same of a file in memory, which is called `subject`.
Result<PictureFacts> readPictureFacts(std::span<const std::uint8_t> bytes, const std::string& subject);

/// The small picture that a camera has put into the file: the EXIF block's (JPEG, PNG, WebP; mostly 160 × 120) or the
/// thumbnail item of HEIC and AVIF. It has the picture's orientation, and its shape to a pixel: the black bars beside a
/// picture of another shape are cut off.
///
/// It fails where there is none, where it is damaged, or where its shape says that it belongs to what the picture was
/// before it was edited. The error's subject is the path. Usable from any thread.
Result<UIImage> loadEmbeddedThumbnail(const std::string& path);

} // namespace lamina
