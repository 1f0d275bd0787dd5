#include "cli/operations/Operations.h"

#include "cli/common/PictureOutput.h"
#include "imageops/ImageFilters.h"
#include "imageops/ImageGeometry.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <limits>

namespace lamina {

namespace {

using Values = OperationValues;

/// The same kind, told in other words.
constexpr ValueKind told(ValueKind kind, std::string_view expected)
{
    kind.expected = expected;
    return kind;
}

constexpr ValueKind kWhole = told(kind::kInteger, "a whole number");
constexpr ValueKind kFlag = told(kind::kFlag, "0 or 1");
constexpr ValueKind kSize{ValueType::Size,
                          "size",
                          "WxH",
                          "two numbers above 0 with an x between",
                          {kAboveZero, std::numeric_limits<float>::max()}};
constexpr ValueKind kPicture{ValueType::File, "picture", "FILE", "a file", {}};

const OperationArgument kDegrees{"DEGREES", kind::kNumber, "angle, counter-clockwise; below 0 clockwise"};
const OperationArgument kRadians{"RADIANS", kind::kNumber, "angle, counter-clockwise; below 0 clockwise"};
const OperationArgument kTarget{"WxH", kSize, "size in points"};
const OperationArgument kBias{"BIAS", kWhole, "added to all channels of the result, alpha too; 255 is the whole range",
                              0};

std::string inPoints(CGSize size)
{
    std::array<char, 64> text;
    const int length = std::snprintf(text.data(), text.size(), "%.10g x %.10g points", size.width, size.height);
    return {text.data(), static_cast<std::size_t>(length)};
}

/// The library cuts at the edge; whoever wrote a size into a script wants to hear that there is less.
Outcome checkCrop(const UIImage& image, const Values& v)
{
    const CGSize own = image.size();
    const CGSize wanted = v.size(0);
    if (wanted.width <= own.width + kPixelNoise && wanted.height <= own.height + kPixelNoise)
        return success();
    return Error{"cropToSize", "reaches beyond the picture, which has " + inPoints(own)};
}

Outcome checkMask(const UIImage& image, const Values& v)
{
    const IntSize own = image.pixelSize();
    const IntSize other = v.pictures.at(0).pixelSize();
    if (own == other)
        return success();
    return Error{"maskWithImage", "FILE has " + sizeInPixels(other) + " and the picture " + sizeInPixels(own)};
}

std::vector<Operation> turns()
{
    return {
        {"rotateInDegrees",
         "Turns the picture about its centre; the result is the box around it, with clear corners",
         {kDegrees},
         "90",
         [](const UIImage& image, const Values& v) { return rotateInDegrees(image, v.number(0)); }},
        {"rotateInRadians",
         "The same in radians, after mirroring",
         {kRadians,
          {"MIRRORX", kFlag, "1: left and right change places", false},
          {"MIRRORY", kFlag, "1: top and bottom change places", false}},
         "0.5,1,0",
         [](const UIImage& image, const Values& v) {
             return rotateInRadians(image, v.number(0), v.flag(1), v.flag(2));
         }},
        {"horizontalFlip",
         "Left and right change places",
         {},
         "",
         [](const UIImage& image, const Values&) { return horizontalFlip(image); }},
        {"verticalFlip",
         "Top and bottom change places",
         {},
         "",
         [](const UIImage& image, const Values&) { return verticalFlip(image); }},
        {"rotateImagePixelsInDegrees",
         "Turns the pixels within their frame: the size stays, corners are cut off",
         {kDegrees},
         "10",
         [](const UIImage& image, const Values& v) { return rotateImagePixelsInDegrees(image, v.number(0)); }},
        {"rotateImagePixelsInRadians",
         "The same in radians",
         {kRadians},
         "0.2",
         [](const UIImage& image, const Values& v) { return rotateImagePixelsInRadians(image, v.number(0)); }},
    };
}

std::vector<Operation> framings()
{
    return {
        {"cropToSize",
         "Cuts a part out of the picture",
         {kTarget,
          {"MODE", kWhole,
           "anchor: 0 top left, 1 top, 2 top right, 3 bottom left, 4 bottom, 5 bottom right, 6 left, 7 right, 8 centre",
           0}},
         "100x50,8",
         [](const UIImage& image, const Values& v) { return cropToSize(image, v.size(0), v.whole(1)); },
         checkCrop},
        {"scaleByFactor",
         "Scales both sides by a factor",
         {{"FACTOR", kind::kPositive, "above 0; 1 keeps the size"}},
         "0.5",
         [](const UIImage& image, const Values& v) { return scaleByFactor(image, v.number(0)); },
         nullptr,
         [](CGSize own, const Values& v) { return scaledSize(own, v.number(0)); }},
        {"scaleToSize",
         "Scales by mode",
         {kTarget, {"MODE", kWhole, "0 fill, 1 fit, 2 cover", 0}},
         "100x100,1",
         [](const UIImage& image, const Values& v) { return scaleToSize(image, v.size(0), v.whole(1)); },
         nullptr,
         [](CGSize own, const Values& v) { return scaledSize(own, v.size(0), v.whole(1)); }},
        {"scaleToFillSize",
         "Stretches to exactly this size",
         {kTarget},
         "300x200",
         [](const UIImage& image, const Values& v) { return scaleToFillSize(image, v.size(0)); },
         nullptr,
         [](CGSize /*own*/, const Values& v) { return v.size(0); }},
        {"scaleToFitSize",
         "Keeps the aspect, wholly inside the size",
         {kTarget},
         "100x100",
         [](const UIImage& image, const Values& v) { return scaleToFitSize(image, v.size(0)); },
         nullptr,
         [](CGSize own, const Values& v) { return scaledSize(own, v.size(0), ScaleModeFit); }},
        {"scaleToCoverSize",
         "Keeps the aspect, covers the size",
         {kTarget},
         "100x100",
         [](const UIImage& image, const Values& v) { return scaleToCoverSize(image, v.size(0)); },
         nullptr,
         [](CGSize own, const Values& v) { return scaledSize(own, v.size(0), ScaleModeCover); }},
        {"maskWithImage",
         "The picture through a mask of its own pixel size: white shows, black hides",
         {{"FILE", kPicture, "the mask; - is standard input"}},
         "mask.png",
         [](const UIImage& image, const Values& v) { return maskWithImage(image, v.pictures.at(0)); },
         checkMask},
        {"reflectedImageWithHeight",
         "The strip that mirrors the picture below its bottom edge",
         {{"HEIGHT", kind::kCount, "in points"},
          {"FROM", kind::kNumber, "alpha at the top, 0 to 1"},
          {"TO", kind::kNumber, "alpha at the bottom, 0 to 1"}},
         "40,0.8,0.2",
         [](const UIImage& image, const Values& v) {
             return reflectedImageWithHeight(image, v.count(0), v.number(1), v.number(2));
         }},
    };
}

std::vector<Operation> tones()
{
    return {
        {"brightenWithValue",
         "Adds to red, green and blue",
         {{"VALUE", kind::kNumber, "-255 to 255; 0 changes nothing"}},
         "40",
         [](const UIImage& image, const Values& v) { return brightenWithValue(image, v.number(0)); }},
        {"contrastAdjustmentWithValue",
         "Spreads colours about the middle grey",
         {{"VALUE", kind::kNumber, "-255 to 255; 0 changes nothing"}},
         "40",
         [](const UIImage& image, const Values& v) { return contrastAdjustmentWithValue(image, v.number(0)); }},
        {"gammaCorrectionWithValue",
         "Raises colours to a power",
         {{"EXPONENT", kind::kNumber, "below 1 brightens, above 1 darkens"}},
         "0.8",
         [](const UIImage& image, const Values& v) { return gammaCorrectionWithValue(image, v.number(0)); }},
        {"invert", "The negative", {}, "", [](const UIImage& image, const Values&) { return invert(image); }},
        {"opacity",
         "Multiplies alpha",
         {{"ALPHA", kind::kNumber, "0 clear to 1 unchanged"}},
         "0.5",
         [](const UIImage& image, const Values& v) { return opacity(image, v.number(0)); }},
        {"grayscale", "Shades of grey", {}, "", [](const UIImage& image, const Values&) { return grayscale(image); }},
        {"sepia", "Brown tones", {}, "", [](const UIImage& image, const Values&) { return sepia(image); }},
        {"autoEnhance",
         "Gives the picture back: there are no automatic adjustments",
         {},
         "",
         [](const UIImage& image, const Values&) { return autoEnhance(image); }},
        {"redEyeCorrection",
         "Gives the picture back, as autoEnhance",
         {},
         "",
         [](const UIImage& image, const Values&) { return redEyeCorrection(image); }},
    };
}

std::vector<Operation> convolutions()
{
    return {
        {"edgeDetectionWithBias",
         "White edges on black",
         {{"BIAS", kWhole, "plays no part", 0}},
         "0",
         [](const UIImage& image, const Values& v) { return edgeDetectionWithBias(image, v.whole(0)); }},
        {"embossWithBias",
         "Relief, lit from the bottom right",
         {kBias},
         "0",
         [](const UIImage& image, const Values& v) { return embossWithBias(image, v.whole(0)); }},
        {"sharpenWithBias",
         "Sharpens",
         {kBias},
         "0",
         [](const UIImage& image, const Values& v) { return sharpenWithBias(image, v.whole(0)); }},
        {"unsharpenWithBias",
         "Sharpens softly",
         {kBias},
         "0",
         [](const UIImage& image, const Values& v) { return unsharpenWithBias(image, v.whole(0)); }},
        {"gaussianBlurWithBias",
         "Softens over 5 x 5 pixels",
         {kBias},
         "0",
         [](const UIImage& image, const Values& v) { return gaussianBlurWithBias(image, v.whole(0)); }},
    };
}

} // namespace

std::span<const Operation> operations()
{
    static const std::vector<Operation> table = [] {
        std::vector<Operation> all;
        for (const auto& family : {turns(), framings(), tones(), convolutions()})
            all.insert(all.end(), family.begin(), family.end());
        return all;
    }();
    return table;
}

} // namespace lamina
