#pragma once

#include "export/functions/ExportWork.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace lamina {

/// TIFF files: without state, usable from any thread.
class TiffFunction {
public:
    /// The one instance; never destroyed.
    static const TiffFunction& shared();

    /// The picture, upright, as a TIFF file: 8-bit R G B A with straight alpha, LZW, with the profile of the picture's
    /// own RGB, else as sRGB with its profile.
    Result<std::vector<std::uint8_t>> tiffData(const UIImage& image) const;

    /// Hears the path of the file, or why there is none.
    using Completion = std::function<void(const Result<std::string>& url)>;

    /// Writes the picture under a new name into the folder for temporary files, where it stays for a day or more, and
    /// puts the very bytes into the photo library. The completion is called once: before this returns where no file
    /// could be written, else on the library's queue. Nothing stays behind on failure.
    void saveImageAsTiff(const UIImage& image, Completion completion) const;
};

/// The work behind the type TIFF: as `saveImageAsTiff` does, or, with a chosen place, a file there and none in the
/// photo library. The result carries the picture as it came.
Result<ExportedFile> exportTIFF(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                                const ExportWatch& watch);

} // namespace lamina
