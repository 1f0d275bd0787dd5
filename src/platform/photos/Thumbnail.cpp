#include "platform/photos/Thumbnail.h"

#include "platform/image/pixels/CGImage.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/AssetThumbnails_p.h"

#include <algorithm>

namespace lamina {

Result<UIImage> loadThumbnail(const std::string& path, int side, const std::atomic<bool>* cancelled)
{
    if (side <= 0 || side > kLargestThumbnailSide)
        return Error{path, "a thumbnail has no such size"};
    const double length = side;
    const AssetPictureRequest request{
        {.localIdentifier = {}, .path = path}, {length, length}, PHImageContentMode::AspectFill};
    const Result<UIImage> picture = AssetThumbnails::shared().load(request, cancelled);
    if (!picture)
        return picture;
    const CGImage& whole = picture->cgImage();
    const int edge = std::min({whole.width(), whole.height(), side});
    return UIImage(whole.subImage({(whole.width() - edge) / 2, (whole.height() - edge) / 2, edge, edge}));
}

} // namespace lamina
