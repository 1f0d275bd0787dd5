#include "platform/photos/Thumbnail.h"

#include "platform/image/drawing/Resampling.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/photos/PhotoLoading.h"

#include <algorithm>

namespace lamina {

Result<UIImage> loadThumbnail(const std::string& path, int side, const std::atomic<bool>* cancelled)
{
    if (side <= 0)
        return Error{path, "a thumbnail has no size below one pixel"};
    const Result<UIImage> picture = loadAsStored({path, nullptr, path}, {.shortSide = side, .cancelled = cancelled});
    if (!picture)
        return picture;
    // The small square is turned, not the picture: a middle square is the same before and after.
    const CGImage& stored = picture->cgImage();
    const int edge = std::min(stored.width(), stored.height());
    const CGImage square = stored.subImage({(stored.width() - edge) / 2, (stored.height() - edge) / 2, edge, edge});
    const int shown = std::min(side, edge);
    const UIImage thumbnail(resampled(square, {shown, shown}), 1, picture->imageOrientation());
    return madeOrNoMemory(thumbnail.upright(), path);
}

} // namespace lamina
