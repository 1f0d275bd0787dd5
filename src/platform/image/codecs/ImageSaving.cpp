#include "platform/image/codecs/ImageSaving.h"

#include "platform/base/Causes.h"
#include "platform/base/Log.h"
#include "platform/files/FileWriting.h"
#include "platform/image/codecs/PictureEncoding.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace lamina {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::array<std::string_view, 5> kTypes{kUTTypePNG, kUTTypeJPEG, kUTTypeGIF, kUTTypeBMP, kUTTypeTIFF};

struct Extension {
    std::string_view uti;
    std::string_view extension; ///< the first of those that the type declares
};
constexpr Extension kExtensions[] = {
    {kUTTypePNG, "png"},
    {kUTTypeJPEG, "jpeg"},
    {kUTTypeGIF, "gif"},
    {kUTTypeBMP, "bmp"},
    {kUTTypeTIFF, "tiff"},
    {"public.heic", "heic"},
    {"org.webmproject.webp", "webp"},
    {"com.adobe.pdf", "pdf"},
    {"public.svg-image", "svg"},
    {"public.mpeg-4", "mp4"},
};

std::optional<std::uint8_t> hexDigit(char digit)
{
    if (digit >= '0' && digit <= '9')
        return static_cast<std::uint8_t>(digit - '0');
    const char lower = static_cast<char>(digit | 0x20);
    if (lower >= 'a' && lower <= 'f')
        return static_cast<std::uint8_t>(lower - 'a' + 10);
    return std::nullopt;
}

/// A percent sign that no two digits follow stands for itself.
std::string percentDecoded(std::string_view text)
{
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            const auto high = hexDigit(text[i + 1]);
            const auto low = hexDigit(text[i + 2]);
            if (high && low) {
                decoded.push_back(static_cast<char>(*high << 4 | *low));
                i += 2;
                continue;
            }
        }
        decoded.push_back(text[i]);
    }
    return decoded;
}

/// Takes `prefix`, in any case, from the beginning of the text.
bool take(std::string_view& text, std::string_view prefix)
{
    const auto same = [](char x, char y) { return std::tolower(static_cast<unsigned char>(x)) == y; };
    if (text.size() < prefix.size() || !std::equal(prefix.begin(), prefix.end(), text.begin(),
                                                   [&](char wanted, char given) { return same(given, wanted); }))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

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
    for (const Extension& known : kExtensions)
        if (known.uti == uti)
            return std::string(known.extension);
    return std::nullopt;
}

Result<Bytes> encodeImage(const UIImage& image, const ImageSavingOptions& options, const std::string& subject)
{
    const std::string_view uti = options.uti.empty() ? kUTTypePNG : std::string_view(options.uti);
    if (std::find(kTypes.begin(), kTypes.end(), uti) == kTypes.end())
        return Error{subject, "pictures of the type \"" + std::string(uti) + "\" can't be written"};
    if (!image)
        return Error{subject, "there is no picture"};
    const UIImage upright = image.upright();
    if (!upright)
        return Error{subject, cause::kNoMemory};
    const CGImage& pixels = upright.cgImage();
    const UIColor background = options.backgroundFillColor.value_or(UIColor::white());
    if (uti == kUTTypeJPEG)
        return encodeJPEG(pixels, options.quality, background, subject);
    if (uti == kUTTypeGIF)
        return encodeGIF(pixels, background, subject);
    if (uti == kUTTypeBMP)
        return encodeBMP(pixels, background, subject);
    if (uti == kUTTypeTIFF)
        return encodeTIFF(pixels, subject);
    return encodePNG(pixels, subject);
}

Outcome saveImage(const UIImage& image, const std::string& path, const ImageSavingOptions& options)
{
    const Result<Bytes> file = encodeImage(image, options, path);
    if (!file)
        return file.error();
    return writeFileAtomically(path, *file);
}

std::optional<std::string> pathOfFileURL(std::string_view url)
{
    if (!take(url, "file:"))
        return std::nullopt;
    if (take(url, "//"))
        take(url, "localhost");
    url = url.substr(0, url.find_first_of("?#"));
    std::string path = percentDecoded(url);
    if (path.empty() || path.front() != '/' || path.find('\0') != std::string::npos)
        return std::nullopt;
    return path;
}

bool saveToURL(const UIImage& image, const std::string& url, std::string_view uti,
               const std::optional<UIColor>& backgroundFillColor)
{
    const std::optional<std::string> path = pathOfFileURL(url);
    if (!path)
        return succeeded(Error{url, "this is not the address of a file on this machine"});
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
