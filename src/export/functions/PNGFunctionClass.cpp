#include "export/functions/PNGFunctionClass.h"

#include "export/functions/ExportPlaces.h"
#include "export/functions/ExportSteps_p.h"
#include "export/functions/ImageHelpers.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelConversion.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// What goes into the file; empty when memory is short.
UIImage picturePNG(const UIImage& picture, const ExportOptions& options)
{
    const CGSize wanted = exportedSize(picture, options);
    const UIImage resized = scaleImageToFit(picture, wanted.width, wanted.height);
    if (!resized)
        return {};
    const PNGFunctionClass& png = PNGFunctionClass::shared();
    if (options.transparency)
        return png.flattenTransparent(resized);
    return png.addBackground(resized, UIColor::white(), resized.size().width, resized.size().height);
}

/// Writes the picture as BASE.png and gives the path. The picture is let go of on the way.
Result<std::string> saveImageToDocuments(UIImage image, const std::string& baseName, const ExportPlace& place,
                                         const ExportWatch& watch)
{
    Result<std::string> path = exportPath(place, baseName + ".png");
    if (!path)
        return path;
    CGImage pixels = image.cgImage();
    image = {};
    const Result<std::vector<std::uint8_t>> file = encodePNG(std::move(pixels), *path);
    if (!file)
        return file.error();
    if (const Outcome written = writeExport(*path, *file, watch, "Error saving image: "); !written)
        return written.error();
    return path;
}

} // namespace

const PNGFunctionClass& PNGFunctionClass::shared()
{
    static const PNGFunctionClass function;
    return function;
}

UIImage PNGFunctionClass::addBackground(const UIImage& image, const UIColor& color, double width, double height) const
{
    const CGSize own = image.size();
    const CGRect middle{{(width - own.width) * 0.5, (height - own.height) * 0.5}, own};
    const UIImage laid = redrawn(image, {width, height}, middle, color);
    return laid ? laid : image;
}

UIImage PNGFunctionClass::flattenTransparent(const UIImage& image) const
{
    const CGSize size = image.size();
    const UIImage drawn = redrawn(image, size, {{0, 0}, size}, UIColor::clear());
    const CGImage straight = convertedToSRGB(drawn.cgImage());
    return straight ? UIImage(straight) : image;
}

Result<ExportedFile> exportPNG(const ExportSource& source, const ExportOptions& options, const ExportPlace& place,
                               const ExportWatch& watch)
{
    if (const Outcome ready = readyToExport(source, watch); !ready)
        return ready.error();
    UIImage flat = picturePNG(source.picture, options);
    if (!flat)
        return Error{{}, cause::kNoMemory};
    if (watch.isCancelled())
        return cancelledExport();
    const Result<std::string> path = saveImageToDocuments(std::move(flat), "default", place, watch);
    if (!path)
        return path.error();
    return ExportedFile{source.picture, *path, {}};
}

} // namespace lamina
