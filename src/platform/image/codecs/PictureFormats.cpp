#include "platform/image/codecs/PictureFormats.h"

#include "platform/files/ASCIICase.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureEncoder_p.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lamina {

namespace {

constexpr std::string_view kPNGExtensions[] = {"png"};
constexpr std::string_view kPNGTypes[] = {"image/png"};
constexpr std::string_view kJPEGExtensions[] = {"jpg", "jpeg"};
constexpr std::string_view kOtherJPEGExtensions[] = {"jpe", "jfif"};
constexpr std::string_view kJPEGTypes[] = {"image/jpeg"};
constexpr std::string_view kWebPExtensions[] = {"webp"};
constexpr std::string_view kWebPTypes[] = {"image/webp"};
constexpr std::string_view kTIFFExtensions[] = {"tif", "tiff"};
constexpr std::string_view kTIFFTypes[] = {"image/tiff"};
constexpr std::string_view kBMPExtensions[] = {"bmp"};
constexpr std::string_view kOtherBMPExtensions[] = {"dib"};
constexpr std::string_view kBMPTypes[] = {"image/bmp"};
constexpr std::string_view kGIFExtensions[] = {"gif"};
constexpr std::string_view kGIFTypes[] = {"image/gif"};
constexpr std::string_view kHEICExtensions[] = {"heic", "heif", "hif", "avif"};
constexpr std::string_view kHEICTypes[] = {"image/heif", "image/heic", "image/avif"};

constexpr std::array kFormats{
    PictureFormat{"PNG", kUTTypePNG, "png", kPNGExtensions, {}, kPNGTypes, true, &kPNGDecoder, &kPNGEncoder},
    PictureFormat{"JPEG", kUTTypeJPEG, "jpeg", kJPEGExtensions, kOtherJPEGExtensions, kJPEGTypes, true, &kJPEGDecoder,
                  &kJPEGEncoder},
    PictureFormat{
        "WebP", "org.webmproject.webp", "webp", kWebPExtensions, {}, kWebPTypes, true, &kWebPDecoder, nullptr},
    PictureFormat{
        "TIFF", kUTTypeTIFF, "tiff", kTIFFExtensions, {}, kTIFFTypes, true, &kWalledTIFFDecoder, &kTIFFEncoder},
    PictureFormat{"BMP", kUTTypeBMP, "bmp", kBMPExtensions, kOtherBMPExtensions, kBMPTypes, true, &kBMPDecoder,
                  &kBMPEncoder},
    PictureFormat{"GIF", kUTTypeGIF, "gif", kGIFExtensions, {}, kGIFTypes, false, &kGIFDecoder, &kGIFEncoder},
    PictureFormat{"HEIC", "public.heic", "heic", kHEICExtensions, {}, kHEICTypes, false, &kWalledHEICDecoder, nullptr},
};

template <class Condition>
const PictureFormat* firstFormat(Condition condition)
{
    const auto found = std::ranges::find_if(kFormats, condition);
    return found == kFormats.end() ? nullptr : &*found;
}

bool hasExtension(std::span<const std::string_view> known, std::string_view extension)
{
    return std::ranges::any_of(known, [&](std::string_view one) { return equalIgnoringCase(one, extension); });
}

} // namespace

std::span<const PictureFormat> pictureFormats()
{
    return kFormats;
}

const PictureFormat* pictureFormatForUTI(std::string_view uti)
{
    return firstFormat([&](const PictureFormat& format) { return format.uti == uti; });
}

const PictureFormat* pictureFormatForFileName(std::string_view name)
{
    name = name.substr(name.find_last_of('/') + 1);
    const std::size_t dot = name.find_last_of('.');
    if (dot == std::string_view::npos ||
        dot == 0) // what begins with its only full stop is hidden, and has no extension
        return nullptr;
    const std::string_view extension = name.substr(dot + 1);
    return firstFormat([&](const PictureFormat& format) {
        return hasExtension(format.extensions, extension) || hasExtension(format.otherExtensions, extension);
    });
}

const PictureFormat* pictureFormatForHead(std::span<const std::uint8_t> head)
{
    return firstFormat([&](const PictureFormat& format) { return format.decoder && format.decoder->recognizes(head); });
}

} // namespace lamina
