#include "hud/MBBackgroundView.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"

namespace lamina {

MBBackgroundView::MBBackgroundView(const CGRect& frame)
    : UIView(frame)
{
    setClipsToBounds(true);
    setBackgroundColor(m_color);
}

void MBBackgroundView::setStyle(MBProgressHUDBackgroundStyle style)
{
    m_style = style;
    setBackgroundColor(m_color);
}

void MBBackgroundView::setColor(const UIColor& color)
{
    m_color = color;
    setBackgroundColor(color);
}

} // namespace lamina
