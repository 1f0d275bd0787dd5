#include "platform/image/drawing/AxisTable_p.h"

#include "platform/image/drawing/DeviceBounds_p.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

// The kernels: R. G. Keys, "Cubic convolution interpolation for digital image processing", IEEE Transactions on
// Acoustics, Speech and Signal Processing 29, 1981, with a = -1/2; C. E. Duchon, "Lanczos filtering in one and two
// dimensions", Journal of Applied Meteorology 18, 1979, with three lobes.

namespace lamina {

namespace {

/// The weights of one output before all are brought to the same number of taps.
struct Span {
    int first = 0;
    int count = 0;
};

double keys(double x)
{
    const double d = std::abs(x);
    if (d < 1)
        return (1.5 * d - 2.5) * d * d + 1;
    return d < 2 ? ((-0.5 * d + 2.5) * d - 4) * d + 2 : 0;
}

double lanczos3(double x)
{
    const double d = std::abs(x);
    if (d < 1e-9)
        return 1;
    if (d >= 3)
        return 0;
    const double angle = std::numbers::pi * d;
    return 3 * std::sin(angle) * std::sin(angle / 3) / (angle * angle);
}

class Builder {
public:
    explicit Builder(const AxisMapping& mapping)
        : m_mapping(mapping)
    {
    }

    void nearest(int output) { whole(static_cast<int>(std::floor(inside(sourceOf(output + 0.5))))); }

    void area(int output)
    {
        const double a = inside(sourceOf(output));
        const double b = inside(sourceOf(output + 1.0));
        const double low = std::min(a, b);
        const double high = std::max(a, b);
        const int first = std::min(static_cast<int>(low), m_mapping.sourceLength - 1);
        const int last = std::min(static_cast<int>(std::ceil(high)), m_mapping.sourceLength);
        if (high - low < 1e-9) {
            whole(first);
            return;
        }
        const std::size_t start = m_weights.size();
        for (int i = first; i < last; ++i)
            m_weights.push_back(std::min(high, i + 1.0) - std::max(low, static_cast<double>(i)));
        finish(first, start);
    }

    /// `kernel` is nothing beyond `radius`; both in units of `step` source samples.
    template <class Kernel>
    void convolution(int output, double radius, double step, Kernel kernel)
    {
        // Taps at the very end of the kernel weigh nothing: left out, also where rounding puts them just inside.
        const double reach = radius * step * (1 - 1e-9);
        const double length = m_mapping.sourceLength;
        const double centre = std::clamp(sourceOf(output + 0.5), -1.0, length + 1);
        const int low = static_cast<int>(std::ceil(centre - reach - 0.5));
        const int high = static_cast<int>(std::floor(centre + reach - 0.5));
        const int first = std::clamp(low, 0, m_mapping.sourceLength - 1);
        const int last = std::clamp(high, 0, m_mapping.sourceLength - 1);
        const std::size_t start = m_weights.size();
        m_weights.resize(start + static_cast<std::size_t>(last - first + 1), 0.0);
        for (int i = low; i <= high; ++i) {
            const int sample = std::clamp(i, first, last);
            m_weights[start + static_cast<std::size_t>(sample - first)] += kernel((i + 0.5 - centre) / step);
        }
        finish(first, start);
    }

    void pack(AxisTable& table) const
    {
        table.taps = 1;
        for (const Span& span : m_spans)
            table.taps = std::max(table.taps, span.count);
        const auto taps = static_cast<std::size_t>(table.taps);
        table.first.reserve(m_spans.size());
        table.weights.assign(m_spans.size() * taps, 0.0F);
        table.sourceBegin = m_mapping.sourceLength;
        std::size_t read = 0;
        for (std::size_t i = 0; i < m_spans.size(); ++i) {
            const Span& span = m_spans[i];
            const int first = std::min(span.first, m_mapping.sourceLength - table.taps);
            const std::size_t lead = i * taps + static_cast<std::size_t>(span.first - first);
            for (std::size_t k = 0; k < static_cast<std::size_t>(span.count); ++k)
                table.weights[lead + k] = static_cast<float>(m_weights[read++]);
            table.first.push_back(first);
            table.sourceBegin = std::min(table.sourceBegin, first);
            table.sourceEnd = std::max(table.sourceEnd, first + table.taps);
        }
    }

private:
    double sourceOf(double device) const { return (device - m_mapping.offset) / m_mapping.scale; }

    double inside(double source) const
    {
        // The last sample is inside, its far edge too: spans end there.
        return std::clamp(source, 0.0, static_cast<double>(m_mapping.sourceLength));
    }

    void whole(int sample)
    {
        m_weights.push_back(1);
        m_spans.push_back({std::min(sample, m_mapping.sourceLength - 1), 1});
    }

    void finish(int first, std::size_t start)
    {
        double sum = 0;
        for (std::size_t i = start; i < m_weights.size(); ++i)
            sum += m_weights[i];
        for (std::size_t i = start; i < m_weights.size(); ++i)
            m_weights[i] /= sum;
        m_spans.push_back({first, static_cast<int>(m_weights.size() - start)});
    }

    AxisMapping m_mapping;
    std::vector<Span> m_spans;
    std::vector<double> m_weights;
};

bool movesWholePixels(const AxisMapping& mapping)
{
    const double drift = std::abs(std::abs(mapping.scale) - 1) * mapping.sourceLength;
    return drift < kSamePlace && std::abs(mapping.offset - std::round(mapping.offset)) < kSamePlace;
}

} // namespace

AxisTable makeAxisTable(const AxisMapping& mapping, int begin, int end, ResampleFilter filter)
{
    AxisTable table;
    table.begin = begin;
    table.end = end;
    const double scale = std::abs(mapping.scale);
    const bool moves = movesWholePixels(mapping);
    table.step = 1 / scale;
    const bool takesArea = filter == ResampleFilter::Area || scale <= 0.5;
    table.reach = moves || filter == ResampleFilter::Nearest ? 1 : takesArea ? 1 / scale : scale >= 1 ? 4 : 6 / scale;
    Builder builder(mapping);
    for (int i = begin; i < end; ++i) {
        if (moves || filter == ResampleFilter::Nearest)
            builder.nearest(i);
        else if (takesArea)
            builder.area(i);
        else if (scale < 1)
            builder.convolution(i, 3, 1 / scale, lanczos3);
        else
            builder.convolution(i, 2, 1, keys);
    }
    builder.pack(table);
    table.overshoots = !moves && filter == ResampleFilter::Best && !takesArea;
    table.copies = table.taps == 1;
    for (int i = 0; i < table.count() && table.copies; ++i)
        table.copies = table.first[static_cast<unsigned>(i)] == table.first[0] + i;
    return table;
}

} // namespace lamina
