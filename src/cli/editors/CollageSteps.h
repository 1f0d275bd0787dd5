#pragma once

#include "cli/common/StepOption.h"
#include "cli/editors/EditorSteps.h"
#include "platform/base/UIColor.h"

#include <optional>
#include <span>
#include <string>
#include <variant>

namespace lamina {

// What is done to a collage, beside what is done in any editor. Photos are those that are in the slots by then; a step
// for a photo first chooses its slot, unless it is chosen already.

/// Another layout, which puts all slots back to their photos.
struct LayoutStep {
    int frame = 0;
};
/// A photo is turned behind its slot, as fingers do.
struct RotateStep {
    int photo = 1;
    double degrees = 0; ///< clockwise
};
/// A look of the filter panel.
struct FilterStep {
    int photo = 1;
    int tag = 0;
};
/// The colour behind a photo.
struct BackgroundStep {
    int photo = 1;
    UIColor color;
};
/// Two photos change places.
struct SwapStep {
    int one = 1;
    int other = 2;
};
/// The line around the canvas, and the colour of all lines.
struct BorderStep {
    double width = 0;
    std::optional<UIColor> color; ///< none: it stays
};
/// All photos are as they came into their slots.
struct ResetStep {};

using CollageStep = std::variant<LayoutStep, MoveStep, ZoomStep, RotateStep, SubToolStep, FilterStep, SliderStep,
                                 BackgroundStep, StickerStep, SwapStep, BorderStep, ResetStep>;

/// All options that stand for steps, in the order in which help lists them.
std::span<const StepOption<CollageStep>> collageStepOptions();

/// "2000 Diagonal; 2001 ..." of the layouts for so many photos.
std::string collageLayoutNames(int photos);
/// The words for filters and effects, for help.
std::string collageFilterWords();
/// See collageFilterWords.
std::string collageEffectWords();

/// Why the step can't be done to a collage of so many photos; success: it can.
Outcome checkStep(const CollageStep& step, int photos);

} // namespace lamina
