#include "platform/image/codecs/PictureDecoding.h"

#include "platform/base/Causes.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureFormats.h"

#include <array>
#include <cstddef>
#include <new>

namespace lamina {

namespace {

// What any file may ask for: memory for pixels, and work, in bytes of the whole picture as RGBA. Going through that
// many takes a second or so in every format.
constexpr std::uint64_t kMemoryOfAnyFile = std::uint64_t{256} << 20;
constexpr std::uint64_t kWorkOfAnyFile = std::uint64_t{512} << 20;
// What is more must be carried by the file: a clear sky as JPEG keeps 1/250 of its pixels' bytes and can't keep less
// than 1/1365. Only pages of one bit a pixel can be next to nothing, as fax coding has a bit for a white row; they are
// soon gone through, and all that is asked for them counts as a part of it.
constexpr std::uint64_t kBelievableCompression = 4096;
constexpr std::uint64_t kBilevelPart = 8;

Error tooLarge(std::int64_t width, std::int64_t height)
{
    return {{},
            std::string(cause::kTooLarge) + " (" + std::to_string(width) + " x " + std::to_string(height) + " pixels)"};
}

Result<UIImage> decode(ByteSource& source, const DecodeOptions& options)
{
    const Result<const PictureDecoder*> decoder = decoderFor(source);
    if (!decoder)
        return decoder.error();
    try {
        Result<UIImage> picture = (*decoder)->decode(source, options);
        return picture && !*picture ? Error{{}, cause::kNoMemory} : picture;
    } catch (const std::bad_alloc&) {
        return Error{{}, cause::kNoMemory};
    }
}

Result<UIImage> withSubject(Result<UIImage> picture, const std::string& subject)
{
    return picture ? picture : Error{subject, picture.error().cause};
}

} // namespace

Result<const PictureDecoder*> decoderFor(ByteSource& source)
{
    if (source.size() == 0)
        return Error{{}, "the file is empty"};
    std::array<std::uint8_t, kHeadSize> head;
    const std::size_t known = source.read(0, head);
    const PictureFormat* format = pictureFormatForHead(std::span(head).first(known));
    return format ? Result<const PictureDecoder*>(format->decoder) : Error{{}, cause::kNotAPicture};
}

Outcome checkClaim(std::int64_t width, std::int64_t height, std::uint64_t heldBytes, std::uint64_t fileBytes,
                   const DecodeOptions& options, PixelKind kind)
{
    if (width <= 0 || height <= 0)
        return Error{{}, cause::kDamaged};
    if (width > kMaximumClaimedSide || height > kMaximumClaimedSide || height > kMaximumClaimedPixels / width ||
        heldBytes > options.memoryLimit)
        return tooLarge(width, height);
    const auto isCarried = [&](std::uint64_t bytes) { return bytes / kBelievableCompression <= fileBytes; };
    const std::uint64_t part = kind == PixelKind::Bilevel ? kBilevelPart : 1;
    const std::uint64_t memory = heldBytes / part;
    const std::uint64_t work = 4 * static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) / part;
    if ((memory > kMemoryOfAnyFile && !isCarried(memory)) || (work > kWorkOfAnyFile && !isCarried(work)))
        return tooLarge(width, height);
    return success();
}

bool isRefusedForMemory(const Error& error)
{
    return error.cause.starts_with(cause::kTooLarge);
}

Result<UIImage> loadPicture(const std::string& path, const DecodeOptions& options)
{
    const auto source = openFileSource(path);
    return source ? withSubject(decode(**source, options), path) : source.error();
}

Result<UIImage> decodePicture(std::span<const std::uint8_t> bytes, const std::string& subject,
                              const DecodeOptions& options)
{
    return withSubject(decode(*memorySource(bytes), options), subject);
}

} // namespace lamina
