#include "platform/photos/DesktopThumbnail_p.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/files/FileURL.h"
#include "platform/files/PrivateFolder.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/photos/AssetScaling_p.h"
#include "platform/photos/thumbnails/PNGTexts.h"

#include <QCryptographicHash>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>

namespace lamina {

namespace {

struct SizeFolder {
    const char* name;
    double longSide; ///< the most that its pictures have
};

constexpr SizeFolder kSizes[] = {{"normal", 128}, {"large", 256}, {"x-large", 512}, {"xx-large", 1024}};

std::string fileName(const std::string& url)
{
    const QByteArray bytes = QByteArray::fromStdString(url);
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex().toStdString() + ".png";
}

/// The whole seconds of the file's time, as the text that a thumbnail states.
std::string secondsOf(const FileStamp& file)
{
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    const std::int64_t seconds = file.modified / kNanoseconds - (file.modified % kNanoseconds < 0 ? 1 : 0);
    return std::to_string(seconds);
}

bool states(const PNGTexts& png, const char* keyword, const std::string& value)
{
    const auto found = png.texts.find(keyword);
    return found != png.texts.end() && found->second == value;
}

} // namespace

std::string desktopThumbnailFolder()
{
    const std::string own = cacheFolder();
    return own.empty() ? own : (std::filesystem::path(own).parent_path() / "thumbnails").string();
}

UIImage loadDesktopThumbnail(const std::string& folder, const FileStamp& file, const AssetPictureRequest& request)
{
    const std::optional<CGSize> target = wholeTarget(request);
    if (folder.empty() || !target)
        return {};
    const std::string url = fileURLOfPath(request.asset.path);
    const std::string name = fileName(url);
    for (const SizeFolder& size : kSizes) {
        if (size.longSide < std::max(target->width, target->height))
            continue;
        const std::string path = folder + '/' + size.name + '/' + name;
        const std::optional<PNGTexts> png = readPNGTexts(path);
        if (!png || !isEnoughFor(request, png->size) || !states(*png, "Thumb::URI", url) ||
            !states(*png, "Thumb::MTime", secondsOf(file)))
            continue;
        const Result<UIImage> thumbnail =
            loadPicture(path, {.cancelled = nullptr, .memoryLimit = std::size_t{16} << 20});
        if (thumbnail && isEnoughFor(request, thumbnail->pixelSize()))
            return *thumbnail;
    }
    return {};
}

} // namespace lamina
