#include "platform/image/drawing/UIImageDrawing.h"

#include "platform/base/CGAffineTransform.h"
#include "platform/image/pixels/CGImage.h"

namespace lamina {

void drawInRect(const UIImage& image, CGContext& context, const CGRect& rect)
{
    if (!image || rect.isEmpty())
        return;
    const IntSize shown = image.pixelSize();
    const CGImage& stored = image.cgImage();
    const CGAffineTransform stretch{rect.size.width / shown.width,   0,           0,
                                    rect.size.height / shown.height, rect.minX(), rect.minY()};
    context.drawImage(stored, orientationTransform(image.imageOrientation(), stored.size()).concatenating(stretch));
}

} // namespace lamina
