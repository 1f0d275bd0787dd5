#include "platform/image/codecs/PictureDecoding.h"

#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureFormat_p.h"

#include <array>
#include <new>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kHeadSize = 64;

const PictureFormat* formatOf(std::span<const std::uint8_t> head)
{
    for (const PictureFormat* format :
         {&kJPEGFormat, &kPNGFormat, &kWebPFormat, &kHEICFormat, &kTIFFFormat, &kGIFFormat, &kBMPFormat})
        if (format->recognizes(head))
            return format;
    return nullptr;
}

Result<UIImage> decode(ByteSource& source, const std::string& subject, const DecodeOptions& options)
{
    if (source.size() == 0)
        return Error{subject, "the file is empty"};
    std::array<std::uint8_t, kHeadSize> head;
    const std::size_t known = source.read(0, head);
    const PictureFormat* format = formatOf(std::span(head).first(known));
    if (!format)
        return Error{subject, "not a picture"};
    try {
        Decoded decoded = format->decode(source, options);
        if (auto* picture = std::get_if<UIImage>(&decoded))
            return *picture ? Result<UIImage>(std::move(*picture)) : Error{subject, cause::kNoMemory};
        return Error{subject, std::move(std::get<std::string>(decoded))};
    } catch (const std::bad_alloc&) {
        return Error{subject, cause::kNoMemory};
    }
}

} // namespace

Result<UIImage> loadPicture(const std::string& path, const DecodeOptions& options)
{
    const auto source = openFileSource(path);
    if (!source)
        return source.error();
    return decode(**source, path, options);
}

Result<UIImage> decodePicture(std::span<const std::uint8_t> bytes, const std::string& subject,
                              const DecodeOptions& options)
{
    const auto source = memorySource(bytes);
    return decode(*source, subject, options);
}

} // namespace lamina
