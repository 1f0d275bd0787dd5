#pragma once

#include "platform/base/Result.h"

#include <array>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// A text set in one line, and the part of its font that it needs. Measures are in thousandths of the font's size.
struct FontSubset {
    struct Glyph {
        unsigned number = 0; ///< the same in the font and in its part
        double advance = 0;  ///< to the next one, as the text is set
        double offset = 0;   ///< by which it stands to the right of where it would
    };

    std::vector<Glyph> line;               ///< from left to right
    std::map<unsigned, double> widths;     ///< by glyph, as the font has them
    std::map<unsigned, std::string> texts; ///< by glyph: what it stands for, in UTF-8
    std::string program;                   ///< a TrueType file
    std::string name;                      ///< of the font's part: six letters for what it holds, and the font's own
    std::array<double, 4> box{};           ///< left, bottom, right and top of all letters
    double ascent = 0;
    double descent = 0; ///< below zero
    double capHeight = 0;
};

/// The error has no subject.
Result<FontSubset> subsetFont(std::span<const std::uint8_t> font, const std::string& text);

} // namespace lamina
