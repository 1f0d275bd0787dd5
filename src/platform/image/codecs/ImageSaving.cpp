#include "platform/image/codecs/ImageSaving.h"

#include "platform/base/Causes.h"
#include "platform/base/Log.h"
#include "platform/files/FileURL.h"
#include "platform/files/FileWriting.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFormats.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace lamina {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::array<std::string_view, 5> kTypes{kUTTypePNG, kUTTypeJPEG, kUTTypeGIF, kUTTypeBMP, kUTTypeTIFF};

/// Types that are no pictures of ours, but that the application writes.
struct OtherType {
    std::string_view uti;
    std::string_view extension; ///< the first of those that the type declares
};
constexpr OtherType kOtherTypes[] = {
    {"com.adobe.pdf", "pdf"},
    {"public.svg-image", "svg"},
    {"public.mpeg-4", "mp4"},
};

bool succeeded(const Outcome& outcome)
{
    if (!outcome)
        logWarning(outcome.error().subject + ": " + outcome.error().cause);
    return outcome.ok();
}

} // namespace

std::string_view utiForType(int type)
{
    const bool known = type >= 0 && static_cast<std::size_t>(type) < kTypes.size();
    return known ? kTypes[static_cast<std::size_t>(type)] : kUTTypePNG;
}

std::optional<std::string> extensionForUTI(std::string_view uti)
{
    if (const PictureFormat* format = pictureFormatForUTI(uti))
        return std::string(format->preferredExtension);
    for (const OtherType& known : kOtherTypes)
        if (known.uti == uti)
            return std::string(known.extension);
    return std::nullopt;
}

Result<Bytes> encodeImage(const UIImage& image, const ImageSavingOptions& options, const std::string& subject)
{
    const std::string_view uti = options.uti.empty() ? kUTTypePNG : std::string_view(options.uti);
    const PictureFormat* format = pictureFormatForUTI(uti);
    if (!format || !format->encoder)
        return Error{subject, "pictures of the type \"" + std::string(uti) + "\" can't be written"};
    const UIImage upright = image.upright();
    if (image && !upright)
        return Error{subject, cause::kNoMemory};
    const UIColor background = options.backgroundFillColor.value_or(UIColor::white());
    return encodePicture(upright.cgImage(), *format, subject, {options.quality, background});
}

Outcome saveImage(const UIImage& image, const std::string& path, const ImageSavingOptions& options)
{
    const Result<Bytes> file = encodeImage(image, options, path);
    if (!file)
        return file.error();
    return writeFileAtomically(path, *file);
}

bool saveToURL(const UIImage& image, const std::string& url, std::string_view uti,
               const std::optional<UIColor>& backgroundFillColor)
{
    const Result<std::string> path = pathOfFileURL(url);
    if (!path)
        return succeeded(path.error());
    return saveToPath(image, *path, uti, backgroundFillColor);
}

bool saveToURL(const UIImage& image, const std::string& url, int type,
               const std::optional<UIColor>& backgroundFillColor)
{
    return saveToURL(image, url, utiForType(type), backgroundFillColor);
}

bool saveToURL(const UIImage& image, const std::string& url)
{
    return saveToURL(image, url, kUTTypePNG, std::nullopt);
}

bool saveToPath(const UIImage& image, const std::string& path, std::string_view uti,
                const std::optional<UIColor>& backgroundFillColor)
{
    return succeeded(saveImage(image, path, {std::string(uti), 1.0, backgroundFillColor}));
}

bool saveToPath(const UIImage& image, const std::string& path, int type,
                const std::optional<UIColor>& backgroundFillColor)
{
    return saveToPath(image, path, utiForType(type), backgroundFillColor);
}

bool saveToPath(const UIImage& image, const std::string& path)
{
    return saveToPath(image, path, kUTTypePNG, std::nullopt);
}

} // namespace lamina
