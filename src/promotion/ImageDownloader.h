#pragma once

#include "export/PromotionStep.h"
#include "platform/image/pixels/UIImage.h"

#include <functional>
#include <memory>
#include <string>

namespace lamina {

class NSURLConnection;

/// Loads a picture, upright and no larger than a window shows it, and tells it or the error on the URL session's queue,
/// once. The file may have 16 MB and a picture within the bounds of `loadPicture`; what is none, or is cut, is an error
/// of domain "ImageDownloaderError". Not a word after `cancel` of what is returned, which need not be kept. From any
/// thread.
std::shared_ptr<NSURLConnection> downloadImage(const std::string& url,
                                               std::function<void(PromotionResult<UIImage>)> completion);

} // namespace lamina
