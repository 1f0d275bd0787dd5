#pragma once

#include "editors/common/EditorSlider.h"
#include "editors/stickers/StickerCatalogue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"

#include <optional>
#include <string>
#include <string_view>

namespace lamina {

// What is done in any editor, as values, and how each is written on a command line. Lengths are points of the canvas;
// photos are counted from 1. The cause of an error is a sentence that holds the value.

/// A photo moves, as two points of a finger's way are apart.
struct MoveStep {
    int photo = 1;
    CGPoint translation;
};
/// A photo grows about its centre.
struct ZoomStep {
    int photo = 1;
    double factor = 1;
};
/// A turn or a flip of a photo's pixels.
struct SubToolStep {
    int photo = 1;
    std::string_view tool; ///< its identifier in the editor's strip of sub-tools
};
/// A slider is set; what it works from is the editor's affair.
struct SliderStep {
    int photo = 1;  ///< 0: it belongs to none
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

/// "2:left": what is told for one photo.
struct ForPhoto {
    int photo = 1;
    std::string rest;
};

/// That something else was expected: "expected WHAT, not 'TEXT'".
Error expectedValue(const std::string& what, const std::string& text);

/// Nothing where no number from 1 to `photos`, at most 9, and a colon come first.
std::optional<ForPhoto> parsePhoto(const std::string& text, int photos);
/// "1 or 2", "1 to 3".
std::string photoNumbers(int photos);

/// DX,DY, in points.
Result<CGPoint> parseMovement(const std::string& text);
/// A factor above 0.
Result<double> parseZoomFactor(const std::string& text);
/// N:ONE or N:OTHER, two of an editor's sub-tools.
Result<SubToolStep> parseSubTool(const std::string& text, int photos, std::string_view one, std::string_view other);
/// N:V, with the slider's range; `example` is of a right value.
Result<SliderStep> parseSlider(const std::string& text, int photos, const EditorSlider& slider,
                               const std::string& example);
/// NAME@CX,CY[,W,H[,DEGREES]].
Result<StickerStep> parseSticker(const std::string& text);

/// How stickers are written, and what about them is told in help.
inline constexpr const char* kStickerSyntax = "NAME@CX,CY[,W,H[,DEGREES]]";
inline constexpr const char* kAboutStickers =
    "Lay a sticker on top, its centre at CX,CY, W x H points with its margin of 18 [200,200], turned clockwise; "
    "lamina stickers lists the names";

/// What was read for one kind of step, as a step of an editor's own set.
template <class Step, class Kind>
Result<Step> asStep(const Result<Kind>& read)
{
    return read ? Result<Step>(Step(*read)) : Result<Step>(read.error());
}

} // namespace lamina
