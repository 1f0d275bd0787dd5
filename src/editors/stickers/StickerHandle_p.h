#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/view/UIImageView.h"

#include <functional>
#include <memory>

namespace lamina {

/// What a sticker's handle is for.
enum class StickerHandleKind { Close, Rotate, Resize };

/// A handle in its corner of a sticker: its picture is smaller than what a finger hits. `use` does what it is for
/// without a finger: with 0 as it is pressed (Close alone), with 1 and -1 for a step up and down (the others).
std::shared_ptr<UIImageView> makeStickerHandle(StickerHandleKind kind, const CGRect& frame,
                                               std::function<void(int steps)> use);

} // namespace lamina
