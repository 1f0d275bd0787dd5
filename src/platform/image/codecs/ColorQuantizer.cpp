#include "platform/image/codecs/ColorQuantizer_p.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kMostExact = 256;
constexpr std::size_t kSlots = 1024; // a power of two, and never more than a quarter full
constexpr unsigned kCellBits = 6;
constexpr std::size_t kCells = std::size_t{1} << (3 * kCellBits);

std::uint32_t packed(const std::uint8_t* rgb)
{
    return static_cast<std::uint32_t>(rgb[0]) << 16 | static_cast<std::uint32_t>(rgb[1]) << 8 | rgb[2];
}

std::size_t cellOf(const std::uint8_t* rgb)
{
    constexpr unsigned kDropped = 8 - kCellBits;
    const auto part = [&](std::size_t c) { return static_cast<std::size_t>(rgb[c] >> kDropped); };
    return part(0) << (2 * kCellBits) | part(1) << kCellBits | part(2);
}

/// Count, sum and sum of squares along one axis.
struct Moments {
    double count = 0;
    double sum = 0;
    double squares = 0;
    /// Squared distances from the mean.
    double error() const { return count > 0 ? squares - sum * sum / count : 0; }
};

} // namespace

/// Cells [first, last) of those used, and the best cut through them.
struct ColorQuantizer::Box {
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t cut = 0;
    double gain = -1; ///< squared error that the cut saves; below zero when there is nothing to cut
};

ColorQuantizer::ColorQuantizer()
    : m_cells(kCells)
    , m_slots(kSlots)
{
}

void ColorQuantizer::add(std::span<const std::uint8_t> rgba)
{
    std::uint32_t last = std::numeric_limits<std::uint32_t>::max();
    for (std::size_t i = 0; i + 4 <= rgba.size(); i += 4) {
        const std::uint8_t* pixel = rgba.data() + i;
        if (isClear(pixel[3])) {
            m_sawClear = true;
            continue;
        }
        Cell& cell = m_cells[cellOf(pixel)];
        for (std::size_t c = 0; c < 3; ++c)
            cell.sums[c] += pixel[c];
        ++cell.count;
        const std::uint32_t color = packed(pixel);
        if (m_isExact && color != last)
            noteExact(color);
        last = color;
    }
}

/// Where the colour stands in the table, or the free slot where it belongs.
std::size_t ColorQuantizer::slotOf(std::uint32_t color) const
{
    constexpr std::uint32_t kSpread = 2654435769u; // 2^32 by the golden ratio: neighbours land far apart
    std::size_t slot = color * kSpread >> 22;
    while (m_slots[slot] != 0 && m_exact[m_slots[slot] - 1u] != color)
        slot = (slot + 1) % kSlots;
    return slot;
}

void ColorQuantizer::noteExact(std::uint32_t color)
{
    const std::size_t slot = slotOf(color);
    if (m_slots[slot] != 0)
        return;
    if (m_exact.size() == kMostExact) {
        m_isExact = false;
        return;
    }
    m_exact.push_back(color);
    m_slots[slot] = static_cast<std::uint16_t>(m_exact.size());
}

void ColorQuantizer::choose(std::size_t most)
{
    assert(most >= 1 && most <= kMostExact);
    m_isExact = m_isExact && m_exact.size() <= most;
    m_palette.clear();
    if (m_isExact) {
        for (const std::uint32_t color : m_exact)
            m_palette.push_back({static_cast<std::uint8_t>(color >> 16), static_cast<std::uint8_t>(color >> 8),
                                 static_cast<std::uint8_t>(color)});
        return;
    }
    m_used.clear();
    for (std::uint32_t cell = 0; cell < kCells; ++cell)
        if (m_cells[cell].count > 0)
            m_used.push_back(cell);
    for (const Box& box : cutBoxes(most))
        m_palette.push_back(meanOf(box));
    m_cellPlaces.assign(kCells, 0);
    for (const std::uint32_t cell : m_used)
        m_cellPlaces[cell] = nearest(m_cells[cell]);
}

std::uint8_t ColorQuantizer::indexOf(const std::uint8_t* rgb) const
{
    if (!m_isExact)
        return m_cellPlaces[cellOf(rgb)];
    return static_cast<std::uint8_t>(m_slots[slotOf(packed(rgb))] - 1u);
}

/// Puts the box's cells in order along the axis of its largest error, and finds the cut.
ColorQuantizer::Box ColorQuantizer::weighed(std::size_t first, std::size_t last)
{
    Box box{first, last};
    std::array<Moments, 3> moments;
    for (std::size_t i = first; i < last; ++i) {
        const Cell& cell = m_cells[m_used[i]];
        const auto count = static_cast<double>(cell.count);
        for (std::size_t c = 0; c < 3; ++c) {
            const double mean = cell.mean(c);
            moments[c].count += count;
            moments[c].sum += count * mean;
            moments[c].squares += count * mean * mean;
        }
    }
    const auto widest = std::max_element(moments.begin(), moments.end(),
                                         [](const Moments& x, const Moments& y) { return x.error() < y.error(); });
    const auto axis = static_cast<std::size_t>(widest - moments.begin());
    const auto key = [&](std::uint32_t cell) { return std::pair(m_cells[cell].mean(axis), cell); };
    std::sort(m_used.begin() + static_cast<std::ptrdiff_t>(first), m_used.begin() + static_cast<std::ptrdiff_t>(last),
              [&](std::uint32_t x, std::uint32_t y) { return key(x) < key(y); });

    // The error that a cut saves: n1·n2/(n1 + n2)·(mean1 - mean2)², which needs no squares of large sums.
    const Moments whole = *widest;
    double count = 0;
    double sum = 0;
    for (std::size_t i = first; i + 1 < last; ++i) {
        const Cell& cell = m_cells[m_used[i]];
        count += static_cast<double>(cell.count);
        sum += static_cast<double>(cell.sums[axis]);
        const double rest = whole.count - count;
        const double distance = sum / count - (whole.sum - sum) / rest;
        const double gain = count * rest / whole.count * distance * distance;
        if (gain > box.gain) {
            box.gain = gain;
            box.cut = i + 1;
        }
    }
    return box;
}

std::vector<ColorQuantizer::Box> ColorQuantizer::cutBoxes(std::size_t most)
{
    std::vector<Box> boxes{weighed(0, m_used.size())};
    while (boxes.size() < most) {
        const auto worst =
            std::max_element(boxes.begin(), boxes.end(), [](const Box& x, const Box& y) { return x.gain < y.gain; });
        if (worst->gain < 0)
            break;
        const Box box = *worst;
        *worst = weighed(box.first, box.cut);
        boxes.push_back(weighed(box.cut, box.last));
    }
    return boxes;
}

ColorQuantizer::Color ColorQuantizer::meanOf(const Box& box) const
{
    Cell all;
    for (std::size_t i = box.first; i < box.last; ++i) {
        const Cell& cell = m_cells[m_used[i]];
        all.count += cell.count;
        for (std::size_t c = 0; c < 3; ++c)
            all.sums[c] += cell.sums[c];
    }
    Color color{};
    if (all.count == 0) // no box is empty; the division must not rest on that
        return color;
    for (std::size_t c = 0; c < 3; ++c)
        color[c] = static_cast<std::uint8_t>((all.sums[c] + all.count / 2) / all.count);
    return color;
}

/// A cell at the edge of its box may lie nearer to the colour of the next one.
std::uint8_t ColorQuantizer::nearest(const Cell& cell) const
{
    std::array<int, 3> wanted;
    for (std::size_t c = 0; c < 3; ++c)
        wanted[c] = static_cast<int>(std::lround(cell.mean(c)));
    const auto distance = [&](const Color& color) {
        const int r = color[0] - wanted[0];
        const int g = color[1] - wanted[1];
        const int b = color[2] - wanted[2];
        return r * r + g * g + b * b;
    };
    std::size_t best = 0;
    int least = std::numeric_limits<int>::max();
    for (std::size_t i = 0; i < m_palette.size(); ++i) {
        const int here = distance(m_palette[i]);
        if (here < least) {
            least = here;
            best = i;
        }
    }
    return static_cast<std::uint8_t>(best);
}

} // namespace lamina
