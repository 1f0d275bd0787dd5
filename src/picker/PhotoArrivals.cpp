#include "picker/PhotoArrivals.h"

#include "platform/base/DispatchQueue.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureFacts.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PictureQueue.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kHead = 64; ///< bytes by which a format is told

Result<std::string> savedFile(const PhotoSource& photo)
{
    const std::span<const std::uint8_t> bytes(*photo.bytes);
    const PictureFormat* const format = pictureFormatForHead(bytes.first(std::min(bytes.size(), kHead)));
    if (!format)
        return Error{photo.name, cause::kNotAPicture};
    return saveToPhotoLibrary(bytes, '.' + std::string(format->extensions.front()));
}

/// A file of the photo that is a picture by its head.
Result<std::string> pictureFile(const PhotoSource& photo)
{
    if (photo.path.empty())
        return photo.bytes ? savedFile(photo) : Result<std::string>(Error{photo.name, cause::kNotAPicture});
    const Result<PictureFacts> facts = readPictureFacts(photo.path);
    if (!facts)
        return Error{photo.name, facts.error().cause};
    return photo.path;
}

} // namespace

void takeIntoLibrary(std::vector<PhotoSource> photos, std::function<void(const PhotoArrivals& arrivals)> handler)
{
    pictureQueue().async([photos = std::move(photos), handler = std::move(handler),
                          expected = DispatchQueue::main().expectWork()]() mutable {
        auto arrivals = std::make_shared<PhotoArrivals>();
        std::vector<std::string> files;
        for (const PhotoSource& photo : photos) {
            Result<std::string> file = pictureFile(photo);
            if (file)
                files.push_back(*std::move(file));
            else
                arrivals->refused.push_back(file.error());
        }
        PHPhotoLibrary::addFiles(std::move(files),
                                 [arrivals, handler = std::move(handler)](const std::vector<PHAsset>& assets) {
                                     arrivals->assets = assets;
                                     handler(*arrivals);
                                 });
    });
}

} // namespace lamina
