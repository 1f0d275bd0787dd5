#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/UIImage.h"

#include <string_view>

namespace lamina {

/// The application's own drawings by their names, "Reset1", "SCREENbg" or a sticker's: the one way from a name to a
/// picture. They are outlines, so that they are sharp at every size; a name is that of its file below assets/icons,
/// assets/art or assets/stickers. All from any thread.
///
/// What was drawn last is kept, by name, size and scale, up to some megabytes, and let go when memory is short
/// (`UIApplicationDidReceiveMemoryWarningNotification`): asking twice is cheap, and gives pictures that share their
/// bytes.

/// The drawing fitted into `size` points and centred there, clear beside it, at `scale` pixels a point (0: the main
/// screen's): a picture of that size and scale, RGBA premultiplied. Empty when no drawing has that name (which is
/// logged), the size is empty, or memory is short.
UIImage imageNamed(std::string_view name, CGSize size, double scale = 0);

/// The drawing at its own size and the main screen's scale.
UIImage imageNamed(std::string_view name);

/// Draws the outlines themselves fitted into `rect` of user space, whose y runs down, and centred there: for what is
/// turned, or part of another picture. A name that no drawing has is logged.
void drawImageNamed(std::string_view name, CGContext& context, const CGRect& rect);

/// The drawing's own size in points; empty when there is none of that name, which tells whether there is one.
CGSize sizeOfImageNamed(std::string_view name);

} // namespace lamina
