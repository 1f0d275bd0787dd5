#include "export/LibrarySaving_p.h"

#include "platform/base/DispatchQueue.h"
#include "platform/files/FileReading.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PictureQueue.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// The file's bytes, which are seen to be a picture: what a person finds in the library can be opened.
Result<std::vector<std::uint8_t>> pictureFile(const std::string& path)
{
    constexpr std::size_t kMost = std::size_t{1} << 30;
    Result<std::vector<std::uint8_t>> bytes = readSmallFile(path, kMost);
    if (!bytes)
        return bytes;
    DecodeOptions options;
    options.memoryLimit = kMost;
    const Result<UIImage> picture = decodePicture(*bytes, path, options);
    if (!picture)
        return picture.error();
    return bytes;
}

void storePictureFile(const std::string& path, PhotoSavedHandler handler)
{
    pictureQueue().async([path, handler = std::move(handler), expected = DispatchQueue::main().expectWork()] {
        Result<std::vector<std::uint8_t>> bytes = pictureFile(path);
        if (bytes)
            saveToPhotosAlbum(*std::move(bytes), ".png", handler);
        else
            DispatchQueue::main().async([handler, error = bytes.error(), expected] { handler(error); });
    });
}

Result<std::vector<std::uint8_t>> jpegOf(const SaveModelDetails& details, const std::string& subject)
{
    if (details.bytes)
        return *details.bytes;
    return encodePicture(details.shareimage.upright().cgImage(), *pictureFormatForUTI(kUTTypeJPEG), subject,
                         {.quality = details.quality});
}

void storeJPEG(const SaveModelDetails& details, PhotoSavedHandler handler)
{
    if (details.bytes)
        return saveToPhotosAlbum(*details.bytes, ".jpg", std::move(handler));
    pictureQueue().async([details, handler = std::move(handler), expected = DispatchQueue::main().expectWork()] {
        auto bytes = jpegOf(details, {});
        if (bytes)
            saveToPhotosAlbum(*std::move(bytes), ".jpg", handler);
        else
            DispatchQueue::main().async([handler, error = bytes.error(), expected] { handler(error); });
    });
}

} // namespace

void storeInLibrary(const SaveModelDetails& details, PhotoSavedHandler handler)
{
    switch (details.saveType) {
    case SavingtypeMethod::jpg:
        return storeJPEG(details, std::move(handler));
    case SavingtypeMethod::png:
        return storePictureFile(details.sharedURL, std::move(handler));
    case SavingtypeMethod::mp4:
        return UISaveVideoAtPathToSavedPhotosAlbum(details.sharedURL, std::move(handler));
    default:
        break;
    }
}

Outcome storeAtPlace(const SaveModelDetails& details, const UIDocumentPlace& place)
{
    if (!details.sharedURL.empty())
        return copyFileToPlace(details.sharedURL, place);
    const Result<std::vector<std::uint8_t>> bytes = jpegOf(details, place.path);
    if (!bytes)
        return bytes.error();
    return writeFileAtPlace(place, *bytes);
}

} // namespace lamina
