#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/text/UIFont.h"

#include <limits>
#include <string>

namespace lamina {

/// Where lines stand between both sides. Natural: where the paragraph's own writing begins.
enum class NSTextAlignment { Natural, Left, Center, Right };

/// What becomes of text that doesn't fit: lines are broken between words (within one that is too long for a line), and
/// what the last line can't hold gives way to "…" at its end, its head or its middle. The latter two are for one line.
enum class NSLineBreakMode { TruncatingTail, TruncatingHead, TruncatingMiddle };

/// How a text is to be set. A plain value.
struct TextStyle {
    UIFont font;
    NSTextAlignment alignment = NSTextAlignment::Natural;
    NSLineBreakMode lineBreakMode = NSLineBreakMode::TruncatingTail;
    int numberOfLines = 1; ///< at most; 0: as many as it takes

    friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

/// A text set in lines: its measure, and its letters as outlines, which are the same at every scale: nothing is fitted
/// to pixels, so that what is measured once holds wherever it is drawn.
struct TextLayout {
    /// Of the lines, in points: as wide as the widest one, as high as the fonts say. Empty without text.
    CGSize size;
    /// The letters, to be filled by the non-zero rule. The first line's top is at y 0; lines are aligned between x 0
    /// and the width that was asked for (the measured one where there was none).
    UIBezierPath outlines;
    int lineCount = 0;
    bool truncated = false;
};

/// Sets `text` (UTF-8; what is none of it is shown as replaced) in lines of at most `width` points, which may be
/// infinite. Writing from right to left, joined and combining letters come out as they should, and letters that the
/// font lacks from other fonts of the system; those that none has are boxes, and those that exist only as coloured
/// pictures are left out.
///
/// The libraries for it are loaded with the first text. Where they, or all fonts, are missing the layout is empty,
/// which is logged once. Any thread.
TextLayout layoutText(const std::string& text, const TextStyle& style,
                      double width = std::numeric_limits<double>::infinity());

/// The family that fonts without one mean; empty, the default: the system's own sans-serif. For whoever knows what the
/// desktop uses; to be set before the first text is laid out.
void setSystemFontFamily(const std::string& family);

} // namespace lamina
