#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lamina {

/// Turns rows of a PNG into differences, which compress better. Of the five filters of the format each row takes the
/// one whose differences, as signed bytes, have the smallest sum of magnitudes; on a tie the simpler one.
///
/// One object serves one thread. Rows are given in `next()`, from top to bottom.
class PNGFilters {
public:
    /// `rowBytes`: bytes of a row's pixels. `pixelBytes`: 1 to 4.
    PNGFilters(std::size_t rowBytes, std::size_t pixelBytes);

    /// Where to write the pixels of the next row. What was there becomes the row above; zeros at first.
    std::uint8_t* next();
    /// The row in `next()` as the filter's number and the differences: rowBytes + 1 bytes.
    void filter(std::uint8_t* target);

private:
    static constexpr std::size_t kFilters = 5;

    std::size_t m_rowBytes;
    std::size_t m_pixelBytes;
    /// Each with zeros in front, which stand for the pixel left of the first.
    std::vector<std::uint8_t> m_row;
    std::vector<std::uint8_t> m_above;
    std::array<std::vector<std::uint8_t>, kFilters> m_candidates;
};

} // namespace lamina
