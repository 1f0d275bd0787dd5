#pragma once

#include "platform/base/CGGeometry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// A line of text in black, in the letters of Liberation Sans Bold: one line from the rectangle's top left corner, cut
/// off at its edges.
struct PDFText {
    std::string text; ///< UTF-8; what is none of it is shown as replaced
    CGRect rect;
    double size = 12; ///< points
};

/// The printing condition that a document's inks are meant for (ISO 15930-1: output intent).
struct PDFOutputIntent {
    std::string condition;                     ///< its name in the registry, "FOGRA39"
    std::string registry;                      ///< the registry's address
    std::string info;                          ///< the condition in words
    std::vector<std::uint8_t> deflatedProfile; ///< the condition's ICC profile, as a zlib stream
};

/// What the one page of a document shows, in this order: a picture, marks, a text. Points, y down. A plain value.
struct PDFPage {
    CGSize size;
    CGRect picture;            ///< where the picture lies, stretched
    std::vector<CGRect> marks; ///< rectangles, their outlines black and a point wide
    std::optional<PDFText> text;
    std::optional<CGRect> trim;            ///< where the page is cut, which is where bleed ends too
    std::string title;                     ///< UTF-8
    std::optional<PDFOutputIntent> intent; ///< makes the document a PDF/X-1a:2001; the picture must be in inks
};

} // namespace lamina
