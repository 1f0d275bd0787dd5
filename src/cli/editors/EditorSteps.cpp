#include "cli/editors/EditorSteps.h"

#include "cli/common/Messages.h"
#include "cli/editors/StickerNames.h"
#include "editors/stickers/IQStickerView.h"
#include "gpu/core/TypedValue.h"

#include <cstddef>
#include <variant>
#include <vector>

namespace lamina {

namespace {

constexpr ValueRange kStickerSides{IQStickerView::kLeastSide, IQStickerView::kLargestSide};

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

} // namespace

Error expectedValue(const std::string& what, const std::string& text)
{
    return {text, "expected " + what + ", not '" + beginning(text) + "'"};
}

std::optional<ForPhoto> parsePhoto(const std::string& text, int photos)
{
    if (text.size() < 2 || text[1] != ':' || text[0] < '1' || text[0] > '0' + photos)
        return std::nullopt;
    return ForPhoto{text[0] - '0', text.substr(2)};
}

std::string photoNumbers(int photos)
{
    return std::string("1 ").append(photos == 2 ? "or " : "to ").append(std::to_string(photos));
}

Result<CGPoint> parseMovement(const std::string& text)
{
    const Result<TypedValue> by = parseValue(text, kind::kPoint);
    if (!by)
        return expectedValue("DX,DY in points, as in 20,-10", text);
    return std::get<CGPoint>(*by);
}

Result<double> parseZoomFactor(const std::string& text)
{
    const Result<double> factor = parseNumber(text, {kAboveZero});
    return factor ? factor : expectedValue("a factor above 0, as in 1.5", text);
}

Result<SubToolStep> parseSubTool(const std::string& text, int photos, std::string_view one, std::string_view other)
{
    const std::optional<ForPhoto> step = parsePhoto(text, photos);
    for (const std::string_view tool : {one, other})
        if (step && step->rest == tool)
            return SubToolStep{step->photo, tool};
    return expectedValue(std::string("N:").append(one).append(" or N:").append(other) + " with a photo " +
                             photoNumbers(photos) + ", as in 2:" + std::string(one),
                         text);
}

Result<SliderStep> parseSlider(const std::string& text, int photos, const EditorSlider& slider,
                               const std::string& example)
{
    const ValueRange range{slider.minimum, slider.maximum};
    if (const std::optional<ForPhoto> step = parsePhoto(text, photos))
        if (const Result<double> value = parseNumber(step->rest, range))
            return SliderStep{step->photo, slider.tag, *value};
    return expectedValue("N:V with a photo " + photoNumbers(photos) + " and a value from " + formatRange(range) +
                             ", as in " + example,
                         text);
}

Result<StickerStep> parseSticker(const std::string& text)
{
    const std::size_t at = text.find('@');
    const std::optional<std::vector<double>> place =
        at == std::string::npos ? std::nullopt : parsePlace(std::string_view(text).substr(at + 1));
    if (!place)
        return expectedValue(std::string(kStickerSyntax) + " with sides from " + formatRange(kStickerSides) +
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
    return step;
}

} // namespace lamina
