#include "cli/editors/CollageSteps.h"

#include "cli/common/Messages.h"
#include "cli/common/NearestName.h"
#include "editors/collage/CollageEffects.h"
#include "editors/collage/CollageFilters.h"
#include "editors/colorpicker/ColorHexText.h"
#include "editors/common/EditorSlider.h"
#include "editors/common/PictureTools.h"
#include "editors/frames/Frames.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <string_view>
#include <vector>

namespace lamina {

namespace {

constexpr int kPhotos = 3;

std::string ofPhoto(const std::string& what, const std::string& example)
{
    return what + " with a photo " + photoNumbers(kPhotos) + ", as in " + example;
}

/// "N:VALUE", whose value `parse` reads and `make` makes a step of with the photo's number; anything else was expected
/// as `what` says.
template <class Parse, class Make>
Result<CollageStep> forPhoto(const std::string& text, const std::string& what, Parse parse, Make make)
{
    if (const std::optional<ForPhoto> step = parsePhoto(text, kPhotos))
        if (const auto value = parse(step->rest))
            return CollageStep(make(step->photo, *value));
    return expectedValue(what, text);
}

/// A whole number; nothing for any other text.
std::optional<int> wholeNumber(std::string_view text)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

Result<CollageStep> parseLayout(const std::string& text)
{
    const std::optional<int> frame = wholeNumber(text);
    if (!frame || !isFrame(*frame))
        return expectedValue("a layout, 2000 to 2007 for two photos or 3000 to 3009 for three", text);
    return CollageStep(LayoutStep{*frame});
}

Result<CollageStep> parseMove(const std::string& text)
{
    return forPhoto(text, ofPhoto("N:DX,DY in points", "2:20,-10"), parseMovement, [](int photo, CGPoint by) {
        return MoveStep{photo, by};
    });
}

Result<CollageStep> parseZoom(const std::string& text)
{
    return forPhoto(text, ofPhoto("N:S, a factor above 0", "2:1.5"), parseZoomFactor, [](int photo, double factor) {
        return ZoomStep{photo, factor};
    });
}

Result<CollageStep> parseRotation(const std::string& text)
{
    return forPhoto(
        text, ofPhoto("N:DEG", "2:-15"), [](const std::string& degrees) { return parseNumber(degrees); },
        [](int photo, double degrees) {
            return RotateStep{photo, degrees};
        });
}

Result<CollageStep> subTool(const std::string& text, std::string_view one, std::string_view other)
{
    return asStep<CollageStep>(parseSubTool(text, kPhotos, one, other));
}

unsigned char lower(unsigned char letter)
{
    return static_cast<unsigned char>(std::tolower(letter));
}

bool isSameWord(std::string_view one, std::string_view other)
{
    return std::ranges::equal(one, other, {}, lower, lower);
}

std::vector<std::string_view> filterWords()
{
    std::vector<std::string_view> words;
    for (const CollageFilter& filter : collageFilters())
        words.emplace_back(filter.name);
    return words;
}

std::vector<std::string_view> effectWords()
{
    std::vector<std::string_view> words;
    for (const EditorSlider& slider : kCollageSliders)
        if (isCollageEffect(slider.tag))
            words.emplace_back(slider.label);
    return words;
}

/// By its tag or its word, in which case does not count; null: there is none.
const CollageFilter* filterCalled(const std::string& text)
{
    if (const std::optional<int> tag = wholeNumber(text))
        return findCollageFilter(*tag);
    const auto filters = collageFilters();
    const auto found =
        std::ranges::find_if(filters, [&](const CollageFilter& filter) { return isSameWord(filter.name, text); });
    return found == filters.end() ? nullptr : &*found;
}

Result<CollageStep> parseFilter(const std::string& text)
{
    const std::optional<ForPhoto> step = parsePhoto(text, kPhotos);
    if (!step)
        return expectedValue(ofPhoto("N:TAG", "2:sepia"), text);
    if (const CollageFilter* const filter = filterCalled(step->rest))
        return CollageStep(FilterStep{step->photo, filter->tag});
    return Error{text, "there is no filter '" + beginning(step->rest) + "'; " + didYouMean(step->rest, filterWords())};
}

Result<CollageStep> parseEffect(const std::string& text)
{
    const std::optional<ForPhoto> step = parsePhoto(text, kPhotos);
    const std::size_t sign = step ? step->rest.find('=') : std::string::npos;
    if (sign == std::string::npos)
        return expectedValue(ofPhoto("N:NAME=V", "2:contrast=40"), text);
    const std::string name = step->rest.substr(0, sign);
    const auto slider = std::ranges::find_if(kCollageSliders, [&](const EditorSlider& known) {
        return isCollageEffect(known.tag) && isSameWord(known.label, name);
    });
    if (slider == kCollageSliders.end())
        return Error{text, "there is no effect '" + beginning(name) + "'; " + didYouMean(name, effectWords())};
    const ValueRange range{slider->minimum, slider->maximum};
    const Result<double> value = parseNumber(step->rest.substr(sign + 1), range);
    if (!value)
        return expectedValue(std::string(slider->label) + " from " + formatRange(range), text);
    return CollageStep(SliderStep{step->photo, slider->tag, *value});
}

Result<CollageStep> parseOpacity(const std::string& text)
{
    return asStep<CollageStep>(
        parseSlider(text, kPhotos, *findSlider(kCollageSliders, collageslider::kOpacity), "2:0.7"));
}

/// "#RRGGBB", and nothing shorter or without its sign.
std::optional<UIColor> parseColor(std::string_view text)
{
    constexpr std::size_t kLength = 7;
    return text.size() == kLength && text.front() == '#' ? colorFromHexText(text) : std::nullopt;
}

Result<CollageStep> parseBackground(const std::string& text)
{
    return forPhoto(text, ofPhoto("N:#RRGGBB", "'2:#d81159'"), parseColor, [](int photo, const UIColor& color) {
        return BackgroundStep{photo, color};
    });
}

Result<CollageStep> parseSwap(const std::string& text)
{
    const std::optional<ForPhoto> one = parsePhoto(text, kPhotos);
    const std::optional<ForPhoto> other = one ? parsePhoto(one->rest + ':', kPhotos) : std::nullopt;
    if (!other || !other->rest.empty() || one->photo == other->photo)
        return expectedValue(std::string("N:M, two photos ") + photoNumbers(kPhotos) + ", as in 1:2", text);
    return CollageStep(SwapStep{one->photo, other->photo});
}

ValueRange rangeOf(int slider)
{
    const EditorSlider& told = *findSlider(kCollageSliders, slider);
    return {told.minimum, told.maximum};
}

Result<CollageStep> parseBorder(const std::string& text)
{
    const ValueRange range = rangeOf(collageslider::kBorderWidth);
    const std::size_t comma = std::min(text.find(','), text.size());
    const Result<double> width = parseNumber(std::string_view(text).substr(0, comma), range);
    const std::optional<UIColor> color =
        comma < text.size() ? parseColor(std::string_view(text).substr(comma + 1)) : std::nullopt;
    if (!width || (comma < text.size() && !color))
        return expectedValue("W[,#RRGGBB] in points from " + formatRange(range) + ", as in '4,#ffffff'", text);
    return CollageStep(BorderStep{*width, color});
}

Result<CollageStep> parseGap(const std::string& text)
{
    const ValueRange range = rangeOf(collageslider::kGap);
    const Result<double> width = parseNumber(text, range);
    if (!width)
        return expectedValue("W in points from " + formatRange(range) + ", as in 4", text);
    return CollageStep(SliderStep{0, collageslider::kGap, *width});
}

constexpr std::array<StepOption<CollageStep>, 15> kOptions{{
    {"--layout", "NUMBER", "Lay the photos out so; what was done to them before is gone [2000, 3000]", parseLayout},
    {"--move", "N:DX,DY", "Move photo N (1 to 3) by points, behind its slot", parseMove},
    {"--zoom", "N:S", "Zoom photo N about its centre", parseZoom},
    {"--rotate", "N:DEG", "Turn photo N about its centre, clockwise", parseRotation},
    {"--turn", "N:left|right", "Turn the pixels of photo N by a quarter",
     [](const std::string& text) { return subTool(text, picturetool::kLeft, picturetool::kRight); }},
    {"--flip", "N:horizontal|vertical", "Mirror photo N from left to right, or upside down",
     [](const std::string& text) { return subTool(text, picturetool::kHorizontal, picturetool::kVertical); }},
    {"--filter", "N:TAG", "Put photo N through a filter, 500 to 513 or its word", parseFilter},
    {"--effect", "N:NAME=V", "Set an effect of photo N", parseEffect},
    {"--opacity", "N:V", "Opacity of photo N, 0 to 1", parseOpacity},
    {"--background", "N:#RRGGBB", "The colour behind photo N", parseBackground},
    {"--sticker", kStickerSyntax, kAboutStickers,
     [](const std::string& text) { return asStep<CollageStep>(parseSticker(text)); }},
    {"--swap", "N:M", "Let two photos change places", parseSwap},
    {"--border", "W[,#RRGGBB]", "A line of W points around the collage, and the colour of all lines", parseBorder},
    {"--gap", "W", "Lines of W points along the layout's edges", parseGap},
    {"--reset", "", "Take turns, flips, filters and effects back from all photos",
     [](const std::string&) { return Result<CollageStep>(ResetStep{}); }},
}};

std::string joined(const std::vector<std::string_view>& words)
{
    std::string list;
    for (const std::string_view& word : words)
        list.append(list.empty() ? "" : ", ").append(word);
    return list;
}

/// The largest number of a photo that the step names, 0 for none.
struct LargestPhoto {
    int operator()(const SwapStep& step) const { return std::max(step.one, step.other); }
    template <class Step>
    int operator()(const Step& step) const
    {
        if constexpr (requires { step.photo; })
            return step.photo;
        else
            return 0;
    }
};

} // namespace

std::span<const StepOption<CollageStep>> collageStepOptions()
{
    return kOptions;
}

std::string collageLayoutNames(int photos)
{
    const int first = photos == 2 ? kTwoFrames : kThreeFrames;
    const int count = photos == 2 ? kTwoFramesCount : kThreeFramesCount;
    std::string list;
    for (int frame = first; frame < first + count; ++frame)
        list.append(frame == first ? "" : "; ").append(std::to_string(frame)).append(" ").append(frameName(frame));
    return list;
}

std::string collageFilterWords()
{
    return joined(filterWords());
}

std::string collageEffectWords()
{
    return joined(effectWords());
}

Outcome checkStep(const CollageStep& step, int photos)
{
    const auto* const layout = std::get_if<LayoutStep>(&step);
    if (layout && static_cast<int>(photosOf(layout->frame)) != photos)
        return Error{{},
                     "layout " + std::to_string(layout->frame) + " is for " +
                         (photos == 2 ? "three photos, two were given" : "two photos, three were given")};
    if (const int photo = std::visit(LargestPhoto{}, step); photo > photos)
        return Error{{}, "there is no photo " + std::to_string(photo) + ": two were given"};
    return success();
}

} // namespace lamina
