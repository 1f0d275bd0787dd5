#include "platform/image/codecs/RowCollector_p.h"

#include <algorithm>
#include <cstddef>

namespace lamina {

namespace {

// Sums of 255 · 255 · factor² must fit 32 bits.
constexpr int kLargestFactor = 255;

constexpr std::int64_t divideUp(std::int64_t value, int divisor)
{
    return (value + divisor - 1) / divisor;
}

} // namespace

int reductionFactor(std::int64_t width, std::int64_t height, int shortSide)
{
    if (shortSide <= 0)
        return 1;
    // Rounded down, so that the shorter side never falls below what was asked for.
    const std::int64_t factor = std::min(width, height) / shortSide;
    return static_cast<int>(std::clamp<std::int64_t>(factor, 1, kLargestFactor));
}

std::uint64_t collectorBytes(std::int64_t width, std::int64_t height, int factor)
{
    const auto pixels =
        static_cast<std::uint64_t>(divideUp(width, factor)) * static_cast<std::uint64_t>(divideUp(height, factor));
    const std::uint64_t rows = factor == 1 ? 0 : static_cast<std::uint64_t>(width) * (4 + 16);
    return 4 * pixels + rows;
}

RowCollector::RowCollector(int width, int height, int factor, bool translucent, const DecodeOptions& options)
    : m_width(width)
    , m_height(height)
    , m_factor(factor)
    , m_translucent(translucent)
    , m_builder(static_cast<int>(divideUp(width, factor)), static_cast<int>(divideUp(height, factor)), options)
{
    if (m_factor > 1 && m_builder) {
        m_full.resize(4 * static_cast<std::size_t>(width));
        m_sums.resize(4 * static_cast<std::size_t>(m_builder.width()));
    }
}

void RowCollector::advance()
{
    if (m_factor > 1) {
        accumulate();
        if ((m_row + 1) % m_factor == 0 || m_row + 1 == m_height)
            flush();
    }
    ++m_row;
}

void RowCollector::accumulate()
{
    const std::uint8_t* pixel = m_full.data();
    std::uint32_t* sum = m_sums.data();
    for (int left = m_width; left > 0; left -= m_factor, sum += 4) {
        for (int i = std::min(left, m_factor); i > 0; --i, pixel += 4) {
            const std::uint32_t alpha = m_translucent ? pixel[3] : 255;
            for (int c = 0; c < 3; ++c)
                sum[c] += pixel[c] * alpha;
            sum[3] += alpha;
        }
    }
}

void RowCollector::flush()
{
    std::uint8_t* out = m_builder.row(m_row / m_factor);
    const auto rows = static_cast<std::uint32_t>(m_row % m_factor + 1);
    std::uint32_t* sum = m_sums.data();
    for (int left = m_width; left > 0; left -= m_factor, sum += 4, out += 4) {
        const std::uint32_t pixels = rows * static_cast<std::uint32_t>(std::min(left, m_factor));
        const std::uint32_t alpha = sum[3];
        for (int c = 0; c < 3; ++c)
            out[c] = alpha == 0 ? std::uint8_t{0} : static_cast<std::uint8_t>((sum[c] + alpha / 2) / alpha);
        out[3] = static_cast<std::uint8_t>((alpha + pixels / 2) / pixels);
    }
    std::fill(m_sums.begin(), m_sums.end(), 0u);
}

Result<UIImage> RowCollector::finish(std::span<const std::uint8_t> iccProfile, UIImageOrientation orientation) &&
{
    if (m_translucent)
        return std::move(m_builder).finish(true, iccProfile, orientation);
    return std::move(m_builder).finishOpaque(iccProfile, orientation);
}

} // namespace lamina
