#pragma once

#include "editors/stickers/StickerCatalogue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"

#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace lamina {

// What is done to a blend between the crops and the finish, as values, and how each is written on a command line.
// Lengths are points of the canvas; photos are counted from 1.

/// The second photo moves, as two points of a finger's way are apart, inside the zoom that it has by then.
struct MoveStep {
    CGPoint translation;
};
/// The second photo grows about its centre.
struct ZoomStep {
    double factor = 1;
};
/// A turn or a flip of a photo's pixels.
struct SubToolStep {
    int photo = 2;
    std::string_view tool; ///< its identifier in the editor's strip of sub-tools
};
/// A slider is set; what it works from is the editor's affair.
struct SliderStep {
    int photo = 2;
    int slider = 0; ///< its tag in the editor
    double value = 0;
};
/// A sticker is added above all there is.
struct StickerStep {
    const StickerEntry* sticker = nullptr;
    CGPoint centre;
    CGSize size{200, 200}; ///< with the margin around the picture, in which handles stand on a screen
    double degrees = 0;    ///< clockwise
};
using BlendStep = std::variant<MoveStep, ZoomStep, SubToolStep, SliderStep, StickerStep>;

/// An option that stands for a step.
struct BlendStepOption {
    const char* name;   ///< "--move"
    const char* syntax; ///< of its value, for help
    const char* about;
    /// The step that a value stands for; the cause of the error is a sentence that holds the value.
    Result<BlendStep> (*parse)(const std::string& text);
};

/// All of them, in the order in which help lists them.
std::span<const BlendStepOption> blendStepOptions();

} // namespace lamina
