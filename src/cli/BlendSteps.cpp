#include "cli/BlendSteps.h"

#include "cli/Messages.h"
#include "cli/StickerNames.h"
#include "editors/blend/BlendTools.h"
#include "editors/common/EditorSlider.h"
#include "editors/common/PictureTools.h"
#include "editors/stickers/IQStickerView.h"
#include "gpu/core/TypedValue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace lamina {

namespace {

constexpr ValueRange kStickerSides{IQStickerView::kLeastSide, IQStickerView::kLargestSide};

Error expected(const std::string& what, const std::string& text)
{
    return {text, "expected " + what + ", not '" + beginning(text) + "'"};
}

/// "2:left".
struct ForPhoto {
    int photo;
    std::string rest;
};

std::optional<ForPhoto> parsePhoto(const std::string& text)
{
    if (text.starts_with("1:") || text.starts_with("2:"))
        return ForPhoto{text.front() - '0', text.substr(2)};
    return std::nullopt;
}

Result<BlendStep> parseMove(const std::string& text)
{
    const Result<TypedValue> by = parseValue(text, kind::kPoint);
    if (!by)
        return expected("DX,DY in points, as in 20,-10", text);
    return BlendStep(MoveStep{std::get<CGPoint>(*by)});
}

Result<BlendStep> parseZoom(const std::string& text)
{
    const Result<double> factor = parseNumber(text, {kAboveZero});
    if (!factor)
        return expected("a factor above 0, as in 1.5", text);
    return BlendStep(ZoomStep{*factor});
}

/// One of two sub-tools.
Result<BlendStep> parseSubTool(const std::string& text, std::string_view one, std::string_view other)
{
    const std::optional<ForPhoto> step = parsePhoto(text);
    for (const std::string_view tool : {one, other})
        if (step && step->rest == tool)
            return BlendStep(SubToolStep{step->photo, tool});
    return expected(std::string("N:").append(one).append(" or N:").append(other) +
                        " with a photo 1 or 2, as in 2:" + std::string(one),
                    text);
}

Result<BlendStep> parseSlider(const std::string& text, int slider, const std::string& example)
{
    const EditorSlider& told = *findSlider(kBlendSliders, slider);
    const ValueRange range{told.minimum, told.maximum};
    const std::optional<ForPhoto> step = parsePhoto(text);
    if (step)
        if (const Result<double> value = parseNumber(step->rest, range))
            return BlendStep(SliderStep{step->photo, slider, *value});
    return expected("N:V with a photo 1 or 2 and a value from " + formatRange(range) + ", as in " + example, text);
}

/// The numbers of "CX,CY[,W,H[,DEGREES]]"; nothing where they are not understood.
std::optional<std::vector<double>> parsePlace(std::string_view text)
{
    std::vector<double> numbers;
    for (const std::string_view field : fieldsOf(text, ',')) {
        const bool isSide = numbers.size() == 2 || numbers.size() == 3;
        const Result<double> number = parseNumber(field, isSide ? kStickerSides : ValueRange{});
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
    }
    const bool isWhole = numbers.size() == 2 || numbers.size() == 4 || numbers.size() == 5;
    return isWhole ? std::optional(numbers) : std::nullopt;
}

Result<BlendStep> parseSticker(const std::string& text)
{
    const std::size_t at = text.find('@');
    const std::optional<std::vector<double>> place =
        at == std::string::npos ? std::nullopt : parsePlace(std::string_view(text).substr(at + 1));
    if (!place)
        return expected("NAME@CX,CY[,W,H[,DEGREES]] with sides from " + formatRange(kStickerSides) +
                            ", as in sun@280,90,140,140,15",
                        text);
    const Result<const StickerEntry*> sticker = stickerNamed(text.substr(0, at));
    if (!sticker)
        return sticker.error();
    StickerStep step{*sticker, {(*place)[0], (*place)[1]}};
    if (place->size() > 2)
        step.size = {(*place)[2], (*place)[3]};
    if (place->size() > 4)
        step.degrees = (*place)[4];
    return BlendStep(step);
}

constexpr std::array<BlendStepOption, 8> kOptions{{
    {"--move", "DX,DY", "Move the second photo by points, inside its zoom", parseMove},
    {"--zoom", "S", "Zoom the second photo about its centre", parseZoom},
    {"--turn", "N:left|right", "Turn photo N (1 or 2) by a quarter, inside its place",
     [](const std::string& text) { return parseSubTool(text, picturetool::kLeft, picturetool::kRight); }},
    {"--flip", "N:horizontal|vertical", "Mirror photo N from left to right, or upside down",
     [](const std::string& text) { return parseSubTool(text, picturetool::kHorizontal, picturetool::kVertical); }},
    {"--contrast", "N:V", "Contrast of photo N, -200 to 200",
     [](const std::string& text) { return parseSlider(text, blendslider::kContrast, "2:40"); }},
    {"--brightness", "N:V", "Brightness of photo N, -200 to 200",
     [](const std::string& text) { return parseSlider(text, blendslider::kBrightness, "2:40"); }},
    {"--opacity", "N:V", "Opacity of photo N, 0.1 to 1; both begin with 0.5",
     [](const std::string& text) { return parseSlider(text, blendslider::kOpacity, "2:0.7"); }},
    {"--sticker", "NAME@CX,CY[,W,H[,DEGREES]]",
     "Lay a sticker on top, its centre at CX,CY, W x H points with its margin of 18 [200,200], turned clockwise; "
     "lamina stickers lists the names",
     parseSticker},
}};

} // namespace

std::span<const BlendStepOption> blendStepOptions()
{
    return kOptions;
}

} // namespace lamina
