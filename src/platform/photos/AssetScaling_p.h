#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/PHImageRequestOptions.h"

#include <optional>

/// How large the picture of a request becomes. Sizes are in pixels, of pictures as shown. Everything here is usable
/// from any thread.
namespace lamina {

/// The request's target in whole pixels; nothing when all pixels are wanted.
std::optional<CGSize> wholeTarget(const AssetPictureRequest& request);

/// The picture's size when it fits or covers the target. The side that decides is the target's to the last bit, and
/// the other never falls short of a target that is to be covered.
CGSize scaledSize(CGSize picture, CGSize target, PHImageContentMode mode);

/// The fewest pixels that the decoder must leave on the shorter side for the target.
int decodedShortSide(const AssetPictureRequest& request, CGSize target);

/// Whether a picture of this size holds all that the request can show: nothing has to be enlarged.
bool isEnoughFor(const AssetPictureRequest& request, IntSize picture);

/// What shows through where a picture is translucent.
enum class Ground { None, White };

/// The picture as the request wants it, upright; itself where it would have to be enlarged and that is not wanted or
/// would take more than the request's memory. Empty when memory is short.
UIImage sizedForRequest(const UIImage& picture, const AssetPictureRequest& request, Ground ground = Ground::None);

/// The picture drawn anew at `size`, upright; its own upright pixels where these are of that size and have no ground to
/// lie on. Empty when memory is short.
UIImage redrawn(const UIImage& picture, CGSize size, Ground ground = Ground::None);

} // namespace lamina
