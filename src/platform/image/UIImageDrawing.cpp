#include "platform/image/CGContext.h"
#include "platform/image/UIImage.h"

namespace lamina {

void UIImage::drawInRect(CGContext& context, const CGRect& rect) const
{
    if (!m_image || rect.isEmpty())
        return;
    const IntSize shown = pixelSize();
    const CGAffineTransform stretch{rect.size.width / shown.width,   0,           0,
                                    rect.size.height / shown.height, rect.minX(), rect.minY()};
    context.drawImage(m_image, orientationTransform(m_orientation, m_image.size()).concatenating(stretch));
}

} // namespace lamina
