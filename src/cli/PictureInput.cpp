#include "cli/PictureInput.h"

#include "platform/files/FileCauses.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/photos/PhotoLoading.h"
#include "platform/photos/PhotoSource.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <future>
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

Result<std::vector<UIImage>> readPictures(const std::vector<std::string>& paths, int shortSide, ReadingOrder order)
{
    // What is deferred is read by the caller when its turn comes; the first one always is.
    std::vector<std::future<Result<UIImage>>> readers;
    for (const std::string& path : paths) {
        const bool elsewhere = order == ReadingOrder::AtOnce && !readers.empty();
        const std::launch policy = elsewhere ? std::launch::async : std::launch::deferred;
        readers.push_back(std::async(policy, readPicture, path, shortSide));
    }
    std::vector<UIImage> pictures;
    for (auto& reader : readers) {
        Result<UIImage> picture = reader.get();
        if (!picture)
            return picture.error();
        pictures.push_back(std::move(*picture));
    }
    return pictures;
}

} // namespace lamina
