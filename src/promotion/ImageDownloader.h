#pragma once

#include "export/PromotionStep.h"
#include "platform/image/pixels/UIImage.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace lamina {

class NSURLConnection;

/// A picture on its way, for as long as somebody holds it.
class ImageDownload {
public:
    ImageDownload(std::shared_ptr<NSURLConnection> load, std::shared_ptr<std::atomic<bool>> cancelled);
    /// Ends it soon; waits for nobody.
    ~ImageDownload();
    ImageDownload(const ImageDownload&) = delete;
    ImageDownload& operator=(const ImageDownload&) = delete;

private:
    std::shared_ptr<NSURLConnection> m_load;
    std::shared_ptr<std::atomic<bool>> m_cancelled; ///< the decoding that follows
};

/// Loads a picture, upright and no larger than a window shows it, and tells it or the error on the URL session's queue,
/// once. The file may have 16 MB and a picture within the bounds of `loadPicture`; what is none, or is cut, is an error
/// of domain "ImageDownloaderError". Not a word when what is returned goes before. From any thread.
std::unique_ptr<ImageDownload> downloadImage(const std::string& url,
                                             std::function<void(PromotionResult<UIImage>)> completion);

} // namespace lamina
