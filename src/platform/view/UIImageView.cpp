#include "platform/view/UIImageView.h"

#include "platform/base/CGGeometry.h"

namespace lamina {

UIImageView::UIImageView(const CGRect& frame)
    : UIView(frame)
{
    setOpaque(false);
    setUserInteractionEnabled(false);
}

UIImageView::UIImageView(const UIImage& image)
    : UIImageView(image ? CGRect({0, 0}, image.size()) : CGRect())
{
    setImage(image);
}

} // namespace lamina
