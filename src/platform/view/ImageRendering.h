#pragma once

#include "platform/image/pixels/UIImage.h"

namespace lamina {

class UIView;
class UIScrollView;

/// The view with all that stands in it as a picture of its bounds' size at the main screen's scale; on black and
/// without alpha when the view says that it is opaque. The layer draws in the view's own coordinates: a view whose
/// bounds begin elsewhere than at (0, 0), such as one that was scrolled, is not moved into the picture's corner. Empty
/// when the bounds are, or memory is short. Main thread.
UIImage imageByRenderingView(const UIView& view);

/// What the scroll view shows now: as above, with the drawing moved up by the vertical content offset. The horizontal
/// one is not looked at: what was scrolled out on the left leaves its place empty, and as much is missing on the right.
UIImage imageByRenderingCurrentVisibleRect(const UIScrollView& scrollView);

} // namespace lamina
