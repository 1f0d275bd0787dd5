#pragma once

#include "platform/base/Result.h"
#include "platform/base/UIColor.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A picture as a file of its own. The file holds what is seen: pixels are turned upright and converted to sRGB, which
/// the file states where its format can. Files are written whole or not at all (see writeFileAtomically). The same
/// picture gives the same bytes. Everything here is usable from any thread.
namespace lamina {

/// The numbers of the formats that can be written.
enum ImageType : int {
    kImageTypePNG = 0,
    kImageTypeJPEG = 1,
    kImageTypeGIF = 2,
    kImageTypeBMP = 3,
    kImageTypeTIFF = 4,
};

/// The identifier of a type number; any other number gives PNG.
std::string_view utiForType(int type);

/// The usual extension of files of a type, without the full stop; nothing when the type isn't known. It knows the
/// formats above and the others that the application reads or writes.
std::optional<std::string> extensionForUTI(std::string_view uti);

/// How a picture is written.
struct ImageSavingOptions {
    /// Empty: PNG.
    std::string uti;
    /// JPEG only: 0 smallest to 1 best; outside it the nearer end, not a number: 1.
    double quality = 1;
    /// Lies under translucent pixels where the format has no alpha: JPEG, BMP, and the edges in a GIF (whose pixels are
    /// clear or not). White when there is none; where it is translucent itself it lies on white. PNG and TIFF keep
    /// their alpha.
    std::optional<UIColor> backgroundFillColor;
};

/// The bytes of the file. Fails, with the given subject, without a picture, for a type that can't be written, for sides
/// that the format can't state, and when memory is short.
Result<std::vector<std::uint8_t>> encodeImage(const UIImage& image, const ImageSavingOptions& options,
                                              const std::string& subject);

/// Writes the picture to `path`, whatever its extension. The error's subject is the path.
Outcome saveImage(const UIImage& image, const std::string& path, const ImageSavingOptions& options = {});

/// saveImage in best quality to a file's URL ("file:///home/...", percent-encoded). False on any failure, whose cause
/// is logged as a warning; also when the URL is empty or doesn't name a file here, and when its folder doesn't exist.
/// No identifier (an empty one) means PNG.
bool saveToURL(const UIImage& image, const std::string& url, std::string_view uti,
               const std::optional<UIColor>& backgroundFillColor);
/// By the type's number, see `utiForType`.
bool saveToURL(const UIImage& image, const std::string& url, int type,
               const std::optional<UIColor>& backgroundFillColor);
/// PNG.
bool saveToURL(const UIImage& image, const std::string& url);

/// The same for a path. An empty one gives false.
bool saveToPath(const UIImage& image, const std::string& path, std::string_view uti,
                const std::optional<UIColor>& backgroundFillColor);
bool saveToPath(const UIImage& image, const std::string& path, int type,
                const std::optional<UIColor>& backgroundFillColor);
bool saveToPath(const UIImage& image, const std::string& path);

} // namespace lamina
