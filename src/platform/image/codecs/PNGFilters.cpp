#include "platform/image/codecs/PNGFilters.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace lamina {

namespace {

constexpr std::size_t kFront = 16;

struct Neighbours {
    const std::uint8_t* left;
    const std::uint8_t* above;
    const std::uint8_t* aboveLeft;
};

/// The predictors of ISO/IEC 15948 from the bytes to the left (a), above (b) and above to the left (c).
struct NoPrediction {
    static int of(int, int, int) { return 0; }
};
struct Sub {
    static int of(int a, int, int) { return a; }
};
struct Up {
    static int of(int, int b, int) { return b; }
};
struct Average {
    static int of(int a, int b, int) { return (a + b) >> 1; }
};
struct Paeth {
    static int of(int a, int b, int c)
    {
        const int toA = std::abs(b - c);
        const int toB = std::abs(a - c);
        const int toC = std::abs(a + b - 2 * c);
        const int bOrC = toB <= toC ? b : c;
        return toA <= toB && toA <= toC ? a : bOrC;
    }
};

/// Differences of a stretch and the sum of their magnitudes. Short stretches keep the sum in 16 bits, so that sixteen
/// lanes of it fit where four would.
template <class Predictor>
std::uint64_t filterRow(const std::uint8_t* __restrict row, const Neighbours& near, std::size_t count,
                        std::uint8_t* __restrict target)
{
    constexpr std::size_t kStretch = 256; // 256 · 128 fits 16 bits
    std::uint64_t sum = 0;
    for (std::size_t start = 0; start < count; start += kStretch) {
        const std::size_t end = std::min(count, start + kStretch);
        std::uint16_t part = 0;
        for (std::size_t i = start; i < end; ++i) {
            const auto a = static_cast<std::int16_t>(near.left[i]);
            const auto b = static_cast<std::int16_t>(near.above[i]);
            const auto c = static_cast<std::int16_t>(near.aboveLeft[i]);
            const auto difference = static_cast<std::uint8_t>(row[i] - Predictor::of(a, b, c));
            target[i] = difference;
            part = static_cast<std::uint16_t>(
                part + std::min<std::uint8_t>(difference, static_cast<std::uint8_t>(-difference)));
        }
        sum += part;
    }
    return sum;
}

} // namespace

PNGFilters::PNGFilters(std::size_t rowBytes, std::size_t pixelBytes)
    : m_rowBytes(rowBytes)
    , m_pixelBytes(pixelBytes)
    , m_row(kFront + rowBytes)
    , m_above(kFront + rowBytes)
{
    for (auto& candidate : m_candidates)
        candidate.resize(rowBytes);
}

std::uint8_t* PNGFilters::next()
{
    std::swap(m_row, m_above);
    return m_row.data() + kFront;
}

void PNGFilters::filter(std::uint8_t* target)
{
    const std::uint8_t* row = m_row.data() + kFront;
    const std::uint8_t* above = m_above.data() + kFront;
    const Neighbours near{row - m_pixelBytes, above, above - m_pixelBytes};
    const std::array<std::uint64_t, kFilters> sums{
        filterRow<NoPrediction>(row, near, m_rowBytes, m_candidates[0].data()),
        filterRow<Sub>(row, near, m_rowBytes, m_candidates[1].data()),
        filterRow<Up>(row, near, m_rowBytes, m_candidates[2].data()),
        filterRow<Average>(row, near, m_rowBytes, m_candidates[3].data()),
        filterRow<Paeth>(row, near, m_rowBytes, m_candidates[4].data())};
    const auto best = static_cast<std::size_t>(std::min_element(sums.begin(), sums.end()) - sums.begin());
    target[0] = static_cast<std::uint8_t>(best);
    std::memcpy(target + 1, m_candidates[best].data(), m_rowBytes);
}

} // namespace lamina
