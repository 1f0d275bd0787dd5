#include "cli/PictureInput.h"

#include "platform/base/SideBySide.h"
#include "platform/files/FileCauses.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/photos/PhotoLoading.h"
#include "platform/photos/PhotoSource.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

constexpr const char* kStandardInput = "standard input";

// Standard input has no size to ask for; what no photo reaches is refused while it is read.
constexpr std::size_t kMaximumInput = std::size_t{256} << 20;

Result<std::vector<std::uint8_t>> readStandardInput()
{
    std::vector<std::uint8_t> bytes;
    std::size_t used = 0;
    for (;;) {
        if (used == bytes.size()) {
            if (used == kMaximumInput)
                return Error{kStandardInput, cause::kTooLarge};
            bytes.resize(used == 0 ? std::size_t{1} << 20 : used * 2);
        }
        const ssize_t got = ::read(STDIN_FILENO, bytes.data() + used, bytes.size() - used);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return Error{kStandardInput, readingFailure(errno)};
        if (got == 0)
            break;
        used += static_cast<std::size_t>(got);
    }
    bytes.resize(used);
    return bytes;
}

Result<PhotoSource> sourceOf(const std::string& path)
{
    if (path != "-")
        return PhotoSource{path, nullptr, path};
    Result<std::vector<std::uint8_t>> bytes = readStandardInput();
    if (!bytes)
        return bytes.error();
    return PhotoSource::fromBytes(std::move(*bytes), kStandardInput);
}

} // namespace

Result<UIImage> readPicture(const std::string& path, int shortSide)
{
    const Result<PhotoSource> source = sourceOf(path);
    if (!source)
        return source.error();
    DecodeOptions options;
    options.shortSide = shortSide;
    return loadUpright(*source, options);
}

Result<std::vector<UIImage>> readPictures(const std::vector<std::string>& paths, int shortSide)
{
    std::vector<UIImage> pictures;
    for (const std::string& path : paths) {
        Result<UIImage> picture = readPicture(path, shortSide);
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
    for (Result<UIImage>& picture :
         sideBySide(paths.size(), [&](std::size_t index) { return readPicture(paths[index], shortSides[index]); })) {
        if (!picture)
            return picture.error();
        pictures.push_back(*std::move(picture));
    }
    return pictures;
}

} // namespace lamina
