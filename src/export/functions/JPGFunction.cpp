#include "export/functions/JPGFunction.h"

#include "export/functions/ExportPlaces.h"
#include "export/functions/ExportSteps_p.h"
#include "export/functions/ImageHelpers.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/image/codecs/ImageSaving.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// Where the bytes go; empty where they stay in memory.
Result<std::string> chosenPath(const ExportPlace& place)
{
    return place.isChosen() ? exportPath(place, "default.jpg") : Result<std::string>(std::string());
}

/// The picture that the bytes show, at its new size; empty when memory is short.
Result<UIImage> recompressed(std::span<const std::uint8_t> bytes, CGSize size, const std::string& subject,
                             const ExportWatch& watch)
{
    // What was in memory as a picture may be so again.
    const DecodeOptions decoding{.cancelled = watch.cancelled, .memoryLimit = std::numeric_limits<std::size_t>::max()};
    const Result<UIImage> decoded = decodePicture(bytes, subject, decoding);
    return decoded ? scaleImageToFit(*decoded, size.width, size.height) : decoded;
}

} // namespace

Result<ExportedFile> exportJPG(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                               const ExportWatch& watch)
{
    if (const Outcome ready = readyToExport(source, watch); !ready)
        return ready.error();
    const Result<std::string> path = chosenPath(place);
    if (!path)
        return path.error();
    const ImageSavingOptions saving{std::string(kUTTypeJPEG), options.quality, std::nullopt};
    Result<std::vector<std::uint8_t>> file = encodeImage(source.picture, saving, *path);
    if (!file)
        return file.error();
    if (watch.isCancelled())
        return cancelledExport();
    const Result<UIImage> picture = recompressed(*file, exportedSize(source.picture, options), *path, watch);
    if (!picture)
        return picture.error();
    if (!*picture)
        return Error{*path, cause::kNoMemory};
    if (picture->pixelSize() != source.picture.pixelSize()) {
        file = encodeImage(*picture, saving, *path);
        if (!file)
            return file.error();
    }
    if (watch.isCancelled())
        return cancelledExport();
    if (!path->empty())
        if (const Outcome written = writeExport(*path, *file, watch, "Error saving image: "); !written)
            return written.error();
    return ExportedFile{*picture, *path, std::move(*file)};
}

} // namespace lamina
