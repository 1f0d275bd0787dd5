#pragma once

#include "cli/common/StepOption.h"
#include "cli/editors/EditorSteps.h"

#include <span>
#include <variant>

namespace lamina {

/// What is done to a blend between the crops and the finish. The second photo alone is moved and zoomed.
using BlendStep = std::variant<MoveStep, ZoomStep, SubToolStep, SliderStep, StickerStep>;

/// All options that stand for steps, in the order in which help lists them.
std::span<const StepOption<BlendStep>> blendStepOptions();

} // namespace lamina
