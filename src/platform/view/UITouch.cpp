#include "platform/view/UITouch.h"

#include "platform/view/UIView.h"

namespace lamina {

CGPoint UITouch::locationInView(const UIView* inView) const
{
    return inView ? inView->convertPointFromView(location, nullptr) : location;
}

void UITouch::cancelInView()
{
    if (!reachesView)
        return;
    reachesView = false;
    if (const auto touched = view.lock())
        touched->touchesCancelled({this});
}

} // namespace lamina
