#include "platform/host/system/PictureTypes.h"

#include <algorithm>
#include <array>

namespace lamina {

namespace {

using namespace std::string_view_literals;

constexpr std::array kExtensions = {
    "jpg"sv, "jpeg"sv, "jpe"sv, "jfif"sv, "png"sv, "webp"sv, "heic"sv, "heif"sv,
    "hif"sv, "avif"sv, "tif"sv, "tiff"sv, "gif"sv, "bmp"sv,  "dib"sv,
};

constexpr char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalIgnoringCase(std::string_view x, std::string_view y)
{
    return std::equal(x.begin(), x.end(), y.begin(), y.end(), [](char a, char b) { return lowered(a) == lowered(b); });
}

} // namespace

const QStringList& pictureMimeTypes()
{
    static const QStringList types = {
        QStringLiteral("image/jpeg"), QStringLiteral("image/png"),  QStringLiteral("image/webp"),
        QStringLiteral("image/heif"), QStringLiteral("image/heic"), QStringLiteral("image/avif"),
        QStringLiteral("image/tiff"), QStringLiteral("image/gif"),  QStringLiteral("image/bmp"),
    };
    return types;
}

bool hasPictureExtension(std::string_view name)
{
    const std::size_t dot = name.find_last_of('.');
    if (dot == std::string_view::npos)
        return false;
    const std::string_view extension = name.substr(dot + 1);
    return std::any_of(kExtensions.begin(), kExtensions.end(),
                       [&](std::string_view known) { return equalIgnoringCase(extension, known); });
}

} // namespace lamina
