#pragma once

#include "platform/image/pixels/UIImage.h"

namespace lamina {

class UIView;
class UIScrollView;

/// The one way from a view to a picture: the view with all that stands in it, of its bounds' size at `scale` pixels a
/// point (0: the main screen's).
///
/// The picture has no alpha when the view says that it is opaque (it is drawn on black then), and when the view's own
/// background covers every pixel anyway: an opaque colour over square corners and whole pixels, without mask or
/// transparency. So nobody needs to look through the pixels to find that out. What may show through and is not opaque
/// must say so (`setOpaque(false)`; views other than image views are opaque by default).
///
/// The layer draws in the view's own coordinates: a view whose bounds begin elsewhere than at (0, 0), such as one that
/// was scrolled, is not moved into the picture's corner. Nothing is changed in the view. Empty when the bounds are, or
/// memory is short. Main thread.
UIImage imageByRenderingView(const UIView& view, double scale = 0);

/// What the scroll view shows now: as above at the main screen's scale, with the drawing moved up by the vertical
/// content offset. The horizontal one is not looked at: what was scrolled out on the left leaves its place empty, and
/// as much is missing on the right.
UIImage imageByRenderingCurrentVisibleRect(const UIScrollView& scrollView);

} // namespace lamina
