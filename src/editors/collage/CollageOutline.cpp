#include "editors/collage/CreateCollageViewController.h"

#include "editors/frames/Frames.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <algorithm>

namespace lamina {

QVariantList CreateCollageViewController::slotOutline() const
{
    const CollageComposition& now = composition();
    const FrameShape shape = frameShape(now.layout, now.side, now.screenHeight);
    QVariantList paths;
    for (auto slot = std::ranges::find(shape.order, now.current); slot != shape.order.end(); ++slot) {
        UIBezierPath path = shape.outlines[*slot];
        path.applyTransform(CGAffineTransform::scaling(1 / now.side, 1 / now.side));
        paths.append(QVariant::fromValue(path));
    }
    return paths;
}

} // namespace lamina
