#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace lamina {

/// One drawing: where its verbs and numbers begin in the table. Sizes in points.
struct PictureRecord {
    std::string_view name;
    float width;
    float height;
    std::uint32_t firstVerb;
    std::uint32_t verbCount;
    std::uint32_t firstNumber;
};

/// All drawings, as tools/make_named_pictures.py writes them. A verb is a letter, and takes its numbers in turn:
///
///     P                  a new path
///     M x y   L x y      moves, draws a line
///     C x1 y1 x2 y2 x y  draws a cubic curve
///     Z                  closes
///     F, E r g b a       fills the path, by the non-zero or the even-odd rule
///     S r g b a w c j m o n d...
///                        strokes it: colour, width, end, join (in the order of UIBezierPath's enumerations), mitre
///                        limit, offset into the dashes, how many of them, and their lengths
///     G a   g            begins and ends what is seen through an alpha as one
struct PictureTable {
    std::span<const PictureRecord> records; ///< by their names' order
    std::string_view verbs;
    std::span<const float> numbers;
};

extern const PictureTable kPictureTable;

} // namespace lamina
