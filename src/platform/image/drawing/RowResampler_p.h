#pragma once

#include "platform/image/drawing/AxisTable_p.h"
#include "platform/image/drawing/SourcePixels.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lamina {

/// A picture resized by one table for each axis, given out row by row: any rectangle of the result, in bands that
/// several threads work on, without the rest of it and without a copy of the picture.
class RowResampler {
public:
    /// The columns of `x` and the rows of `y`, which speak of the source's axes.
    RowResampler(SourcePixels source, AxisTable x, AxisTable y);

    /// The work of one thread: rows in any order, cheapest in rising order. Must not outlive the resampler.
    class Band {
    public:
        explicit Band(const RowResampler& resampler);
        /// Row y of the y table's range, with all pixels of the x table's; valid until the next call.
        const std::uint8_t* row(int y);

    private:
        const std::uint8_t* copiedRow(int y);
        void verticalFirst(int y);
        void horizontalFirst(int y);
        const float* narrowedRow(int sourceRow);

        const RowResampler& m_resampler;
        std::vector<std::uint8_t> m_bytes; ///< source rows that can't be read in place
        std::vector<float> m_floats;       ///< one row of source width
        std::vector<float> m_ring;         ///< rows of output width, by source row modulo the taps
        std::vector<int> m_ringRows;
        std::vector<const float*> m_rows;
        std::vector<std::uint8_t> m_out;
    };

    /// Cost of a row, in plain pixels, for sharing out the work.
    std::size_t rowCost() const;

private:
    bool choosesVerticalFirst() const;

    SourcePixels m_source;
    AxisTable m_x;
    AxisTable m_y;
    bool m_copies;
    bool m_verticalFirst;
    int m_sourceWidth; ///< samples a source row that are looked at
};

} // namespace lamina
