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

PromotionResult<UIImage> imageOf(NSURLTaskResult result, const std::string& url, const std::atomic<bool>& cancelled)
{
    if (result.error)
        return PromotionError{"NSURLErrorDomain", -1, result.error->message()};
    if (result.data) {
        const auto source = PhotoSource::fromBytes(*std::move(result.data), url);
        Result<UIImage> image =
            loadAssetPicture(source, {.asset = {}, .targetSize = {kShownSide, kShownSide}}, &cancelled);
        if (image)
            return *std::move(image);
    }
    return PromotionError{"ImageDownloaderError", -1, "Invalid image data"};
}

} // namespace

ImageDownload::ImageDownload(std::shared_ptr<NSURLConnection> load, std::shared_ptr<std::atomic<bool>> cancelled)
    : m_load(std::move(load))
    , m_cancelled(std::move(cancelled))
{
}

ImageDownload::~ImageDownload()
{
    *m_cancelled = true;
    m_load->cancel();
}

std::unique_ptr<ImageDownload> downloadImage(const std::string& url,
                                             std::function<void(PromotionResult<UIImage>)> completion)
{
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    auto finish = [url, cancelled, completion = std::move(completion)](NSURLTaskResult result) {
        PromotionResult<UIImage> image = imageOf(std::move(result), url, *cancelled);
        if (!*cancelled)
            completion(std::move(image));
    };
    return std::make_unique<ImageDownload>(
        NSURLSession::sharedSession().dataTask({.URL = url, .mostBytes = kMostBytes}, std::move(finish)), cancelled);
}

} // namespace lamina
