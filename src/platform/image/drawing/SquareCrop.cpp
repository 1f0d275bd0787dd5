#include "platform/image/drawing/SquareCrop.h"

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIImageDrawing.h"

#include <cmath>
#include <optional>

namespace lamina {

UIImage squareImageFromImage(const UIImage& image, double edge)
{
    if (!image || !(edge > 0) || !std::isfinite(edge))
        return {};
    const CGSize size = image.size();
    const bool wide = size.width > size.height;
    const double scale = edge / (wide ? size.height : size.width);
    const CGPoint origin = wide ? CGPoint{(size.width - size.height) * -0.5, 0} //
                                : CGPoint{0, (size.height - size.width) * -0.5};
    std::optional<CGContext> context = CGContext::image({edge, edge}, true, 0);
    if (!context)
        return {};
    context->scaleCTM(scale, scale);
    drawInRect(image, *context, {origin, size});
    return context->makeUIImage();
}

} // namespace lamina
