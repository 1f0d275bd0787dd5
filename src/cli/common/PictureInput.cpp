#include "cli/common/PictureInput.h"

#include "cli/common/Messages.h"
#include "cli/common/StandardInput.h"
#include "platform/base/SideBySide.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureFacts.h"
#include "platform/photos/PhotoLoading.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace lamina {

namespace {

// Standard input has no size to ask for; what no photo reaches is refused while it is read.
constexpr std::size_t kMaximumInput = std::size_t{256} << 20;

} // namespace

Result<PhotoSource> pictureSource(const std::string& path)
{
    if (path != "-")
        return PhotoSource{path, nullptr, path};
    Result<std::vector<std::uint8_t>> bytes = readStandardInput(kMaximumInput);
    if (!bytes)
        return bytes.error();
    return PhotoSource::fromBytes(std::move(*bytes), kStandardInput);
}

std::optional<IntSize> claimedSides(const PhotoSource& source)
{
    const Result<PictureFacts> facts = photoFacts(source);
    return facts ? std::optional(IntSize{facts->width, facts->height}) : std::nullopt;
}

namespace {

/// A picture, and what is to be said of it although it could be read: nothing where the cause is empty.
struct ToldPicture {
    Result<UIImage> picture;
    Error warning;
};

ToldPicture readSilently(const std::string& path, int shortSide, std::size_t memoryLimit)
{
    const Result<PhotoSource> source = pictureSource(path);
    if (!source)
        return {source.error(), {}};
    Error warning{source->name, {}};
    Result<UIImage> picture =
        loadUpright(*source, {.shortSide = shortSide, .memoryLimit = memoryLimit, .warning = &warning.cause});
    return {std::move(picture), std::move(warning)};
}

/// The picture, once its warning has been printed.
Result<UIImage> told(ToldPicture read)
{
    if (!read.warning.cause.empty())
        warn(read.warning);
    return std::move(read.picture);
}

} // namespace

Result<UIImage> readPicture(const std::string& path, int shortSide, std::size_t memoryLimit)
{
    return told(readSilently(path, shortSide, memoryLimit));
}

Result<std::vector<UIImage>> readPictures(const std::vector<std::string>& paths, int shortSide, std::size_t memoryLimit)
{
    std::vector<UIImage> pictures;
    for (const std::string& path : paths) {
        Result<UIImage> picture = readPicture(path, shortSide, memoryLimit);
        if (!picture)
            return picture.error();
        pictures.push_back(*std::move(picture));
    }
    return pictures;
}

Result<std::vector<UIImage>> readPicturesAtOnce(const std::vector<std::string>& paths,
                                                const std::vector<int>& shortSides)
{
    std::vector<UIImage> pictures;
    for (ToldPicture& read : sideBySide(paths.size(), [&](std::size_t index) {
             return readSilently(paths[index], shortSides[index], DecodeOptions().memoryLimit);
         })) {
        Result<UIImage> picture = told(std::move(read));
        if (!picture)
            return picture.error();
        pictures.push_back(*std::move(picture));
    }
    return pictures;
}

} // namespace lamina
