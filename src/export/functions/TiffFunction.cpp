#include "export/functions/TiffFunction.h"

#include "export/functions/ExportPlaces.h"
#include "export/functions/ExportSteps_p.h"
#include "platform/base/Causes.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/files/FileCauses.h"
#include "platform/files/PrivateFolder.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/pixels/CGColorSpace.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHAssetCreationRequest.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <QUuid>

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

namespace lamina {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr const char* kComplaint = "Error saving image as TIFF: ";

/// In a place that is chosen, else among the temporary files.
Result<std::string> tiffPath(const ExportPlace& place)
{
    const std::string name = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString() + ".tiff";
    if (place.isChosen())
        return exportPath(place, name);
    const Result<std::string> folder = temporaryFolder();
    return folder ? exportPath({}, *folder, name) : folder;
}

Result<std::string> writeTIFF(const UIImage& image, const ExportPlace& place, const ExportWatch& watch)
{
    Result<std::string> path = tiffPath(place);
    if (!path)
        return path;
    const Result<Bytes> data = TiffFunction::shared().tiffData(image);
    if (!data)
        return Error{*path, data.error().cause};
    if (const Outcome written = writeExport(*path, *data, watch, kComplaint); !written)
        return written.error();
    return path;
}

/// Puts the file into the photo library, and takes it away where that fails.
void addToLibrary(const std::string& path, TiffFunction::Completion completion)
{
    const auto identifier = std::make_shared<std::string>();
    PHPhotoLibrary::performChanges(
        [path, identifier] {
            PHAssetCreationRequest* const request = PHAssetCreationRequest::creationRequestForAsset();
            request->addResource(PHAssetResourceType::Photo, path);
            *identifier = request->placeholderForCreatedAsset().localIdentifier;
        },
        [path, identifier, completion = std::move(completion)](const Outcome& outcome) {
            if (outcome && !fetchAssetsWithLocalIdentifiers({*identifier}).empty())
                return completion(path);
            std::error_code ignored;
            std::filesystem::remove(path, ignored);
            completion(outcome ? Error{path, cause::kNoSuchFile} : outcome.error());
        });
}

/// The picture's own RGB as the device's, so that nothing is converted; any other is left for conversion.
CGImage inOwnRGB(const CGImage& image)
{
    CGImageLayout layout = image.layout();
    layout.colorSpace = CGColorSpace::deviceRGB();
    const auto owner = std::make_shared<const CGImage>(image);
    return CGImage::make(layout, {owner, image.bytes().data()}, image.bytes().size());
}

} // namespace

const TiffFunction& TiffFunction::shared()
{
    static const TiffFunction function;
    return function;
}

Result<Bytes> TiffFunction::tiffData(const UIImage& image) const
{
    const UIImage upright = image.upright();
    if (image && !upright)
        return Error{{}, cause::kNoMemory};
    const CGImage& pixels = upright.cgImage();
    EncodeOptions options{.alwaysRGBA = true};
    const CGColorSpace& colors = pixels.colorSpace();
    const bool hasProfile = colors.model() == CGColorSpace::Model::RGB && !colors.iccProfile().empty();
    const bool keepsColors = hasProfile && !pixels.mask();
    if (keepsColors)
        options.profile = colors.iccProfile();
    return encodePicture(keepsColors ? inOwnRGB(pixels) : pixels, *pictureFormatForUTI(kUTTypeTIFF), {}, options);
}

void TiffFunction::saveImageAsTiff(const UIImage& image, Completion completion) const
{
    const Result<std::string> path = writeTIFF(image, {}, {});
    if (path)
        addToLibrary(*path, std::move(completion));
    else
        completion(path);
}

Result<ExportedFile> exportTIFF(const ExportSource& source, const ExportOptions&, const ExportPlace& place,
                                const ExportWatch& watch)
{
    if (const Outcome ready = readyToExport(source, watch); !ready)
        return ready.error();
    Result<std::string> path = writeTIFF(source.picture, place, watch);
    if (!path)
        return path.error();
    if (!place.isChosen()) {
        DispatchSemaphore done;
        addToLibrary(*path, [&](const Result<std::string>& url) {
            path = url;
            done.signal();
        });
        done.wait();
        if (!path)
            return path.error();
    }
    return ExportedFile{source.picture, *path, {}};
}

} // namespace lamina
