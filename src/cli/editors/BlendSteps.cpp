#include "cli/editors/BlendSteps.h"

#include "editors/blend/BlendTools.h"
#include "editors/common/EditorSlider.h"
#include "editors/common/PictureTools.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"

#include <array>
#include <string>
#include <string_view>

namespace lamina {

namespace {

constexpr int kPhotos = 2;

Result<BlendStep> parseMove(const std::string& text)
{
    const Result<CGPoint> by = parseMovement(text);
    return by ? Result<BlendStep>(MoveStep{kPhotos, *by}) : by.error();
}

Result<BlendStep> parseZoom(const std::string& text)
{
    const Result<double> factor = parseZoomFactor(text);
    return factor ? Result<BlendStep>(ZoomStep{kPhotos, *factor}) : factor.error();
}

Result<BlendStep> subTool(const std::string& text, std::string_view one, std::string_view other)
{
    return asStep<BlendStep>(parseSubTool(text, kPhotos, one, other));
}

Result<BlendStep> slider(const std::string& text, int tag, const std::string& example)
{
    return asStep<BlendStep>(parseSlider(text, kPhotos, *findSlider(kBlendSliders, tag), example));
}

constexpr std::array<StepOption<BlendStep>, 8> kOptions{{
    {"--move", "DX,DY", "Move the second photo by points, inside its zoom", parseMove},
    {"--zoom", "S", "Zoom the second photo about its centre", parseZoom},
    {"--turn", "N:left|right", "Turn photo N (1 or 2) by a quarter, inside its place",
     [](const std::string& text) { return subTool(text, picturetool::kLeft, picturetool::kRight); }},
    {"--flip", "N:horizontal|vertical", "Mirror photo N from left to right, or upside down",
     [](const std::string& text) { return subTool(text, picturetool::kHorizontal, picturetool::kVertical); }},
    {"--contrast", "N:V", "Contrast of photo N, -200 to 200",
     [](const std::string& text) { return slider(text, blendslider::kContrast, "2:40"); }},
    {"--brightness", "N:V", "Brightness of photo N, -200 to 200",
     [](const std::string& text) { return slider(text, blendslider::kBrightness, "2:40"); }},
    {"--opacity", "N:V", "Opacity of photo N, 0.1 to 1; both begin with 0.5",
     [](const std::string& text) { return slider(text, blendslider::kOpacity, "2:0.7"); }},
    {"--sticker", kStickerSyntax, kAboutStickers,
     [](const std::string& text) { return asStep<BlendStep>(parseSticker(text)); }},
}};

} // namespace

std::span<const StepOption<BlendStep>> blendStepOptions()
{
    return kOptions;
}

} // namespace lamina
