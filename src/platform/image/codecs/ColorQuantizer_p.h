#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lamina {

/// Finds the palette for a picture, and each pixel's place in it.
///
/// A picture with few enough colours gets exactly those. Otherwise colours are gathered in cells of four levels a
/// channel, and boxes of cells are cut in two, always the box and the place where the squared error shrinks most (after
/// P. Heckbert, Color Image Quantization for Frame Buffer Display, 1982, with X. Wu's criterion for the cut); the
/// palette is the boxes' mean colours. Uses 10 MB. One thread at a time, `indexOf` from several.
class ColorQuantizer {
public:
    using Color = std::array<std::uint8_t, 3>;

    ColorQuantizer();

    /// First all pixels pass here, R G B A each; those of less than half alpha don't count.
    void add(std::span<const std::uint8_t> rgba);
    /// Whether a pixel was passed that did not count.
    bool sawClear() const { return m_sawClear; }

    /// Then the palette is made, of at most `most` colours (1 to 256).
    void choose(std::size_t most);
    /// Empty when no pixel counted.
    const std::vector<Color>& palette() const { return m_palette; }
    /// The place of a colour that was added.
    std::uint8_t indexOf(const std::uint8_t* rgb) const;

    static bool isClear(std::uint8_t alpha) { return alpha < 128; }

private:
    struct Cell {
        std::uint64_t sums[3]{};
        std::uint64_t count = 0;
        double mean(std::size_t axis) const { return static_cast<double>(sums[axis]) / static_cast<double>(count); }
    };
    struct Box;

    void noteExact(std::uint32_t color);
    std::size_t slotOf(std::uint32_t color) const;
    Box weighed(std::size_t first, std::size_t last);
    std::vector<Box> cutBoxes(std::size_t most);
    Color meanOf(const Box& box) const;
    std::uint8_t nearest(const Cell& cell) const;

    std::vector<Cell> m_cells;
    std::vector<std::uint32_t> m_used;      ///< cells that hold colours, those of a box side by side
    std::vector<std::uint8_t> m_cellPlaces; ///< per cell
    std::vector<std::uint32_t> m_exact;     ///< while there are at most 256
    std::vector<std::uint16_t> m_slots;     ///< hash table of places in m_exact, plus one
    std::vector<Color> m_palette;
    bool m_isExact = true;
    bool m_sawClear = false;
};

} // namespace lamina
