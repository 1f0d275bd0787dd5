#include "platform/view/ImageRendering.h"

#include "platform/image/drawing/CGContext.h"
#include "platform/view/UIScrollView.h"

namespace lamina {

namespace {

/// The layer's own coordinates, moved by `offset` points, on a surface of the bounds' size.
UIImage rendered(const UIView& view, CGPoint offset)
{
    constexpr double kMainScreen = 0;
    std::optional<CGContext> context = CGContext::image(view.bounds().size, view.isOpaque(), kMainScreen);
    if (!context)
        return {};
    context->translateCTM(offset.x, offset.y);
    view.layer().renderInContext(*context);
    return context->makeUIImage();
}

} // namespace

UIImage imageByRenderingView(const UIView& view)
{
    return rendered(view, {0, 0});
}

UIImage imageByRenderingCurrentVisibleRect(const UIScrollView& scrollView)
{
    return rendered(scrollView, {0, -scrollView.contentOffset().y});
}

} // namespace lamina
