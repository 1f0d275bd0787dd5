#include "promotion/ImageDownloader.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/net/NSURLSession.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/PhotoSource.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace lamina {

namespace {

constexpr std::int64_t kMostBytes = std::int64_t{16} << 20;

/// Pixels: the side of a large window's picture at two pixels a point, or a phone's at three and more.
constexpr double kShownSide = 1600;

PromotionResult<UIImage> imageOf(NSURLTaskResult result, const std::string& url)
{
    if (result.error)
        return PromotionError{"NSURLErrorDomain", -1, result.error->message()};
    if (result.data) {
        const auto source = PhotoSource::fromBytes(*std::move(result.data), url);
        Result<UIImage> image =
            loadAssetPicture(source, {.asset = {}, .targetSize = {kShownSide, kShownSide}}, nullptr);
        if (image)
            return *std::move(image);
    }
    return PromotionError{"ImageDownloaderError", -1, "Invalid image data"};
}

} // namespace

std::shared_ptr<NSURLConnection> downloadImage(const std::string& url,
                                               std::function<void(PromotionResult<UIImage>)> completion)
{
    return NSURLSession::sharedSession().dataTask({.URL = url, .mostBytes = kMostBytes},
                                                  [url, completion = std::move(completion)](NSURLTaskResult result) {
                                                      completion(imageOf(std::move(result), url));
                                                  });
}

} // namespace lamina
