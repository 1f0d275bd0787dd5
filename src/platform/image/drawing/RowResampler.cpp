#include "platform/image/drawing/RowResampler_p.h"

#include "platform/image/drawing/ResampleKernels_p.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace lamina {

namespace {

/// Source rows taken in one go by the vertical pass; more are summed up in several.
constexpr int kRowsAtOnce = 8;
/// More taps than this make the ring of narrowed rows larger than the caches.
constexpr int kLongestRing = 32;

} // namespace

RowResampler::RowResampler(SourcePixels source, AxisTable x, AxisTable y)
    : m_source(std::move(source))
    , m_x(std::move(x))
    , m_y(std::move(y))
    , m_copies(m_x.taps == 1 && m_y.taps == 1)
    , m_verticalFirst(choosesVerticalFirst())
    , m_sourceWidth(m_x.sourceEnd - m_x.sourceBegin)
{
}

bool RowResampler::choosesVerticalFirst() const
{
    // Counted for one output of a large picture: each order rounds in its own way, so a part must not choose another
    // one.
    const double loading = m_source.isDirect() ? 0 : 1;
    // The horizontal pass handles a pixel at a time, the vertical one whole rows: it costs about twice as much a tap.
    const double vertical = m_x.step * m_y.reach * (1 + loading) + 2 * m_x.reach;
    const double horizontal = m_y.step * m_x.step * (1 + loading) + 2 * m_y.step * m_x.reach + m_y.reach;
    return m_y.reach > kLongestRing || vertical <= horizontal;
}

std::size_t RowResampler::rowCost() const
{
    if (m_copies)
        return static_cast<std::size_t>(m_x.count());
    return static_cast<std::size_t>(m_sourceWidth) * static_cast<std::size_t>(m_y.taps) / 4 +
           static_cast<std::size_t>(m_x.count()) * static_cast<std::size_t>(m_x.taps);
}

RowResampler::Band::Band(const RowResampler& resampler)
    : m_resampler(resampler)
{
    const auto channels = static_cast<std::size_t>(resampler.m_source.channels());
    const std::size_t inBytes = static_cast<std::size_t>(resampler.m_sourceWidth) * channels;
    const std::size_t outBytes = static_cast<std::size_t>(resampler.m_x.count()) * channels;
    if (!resampler.m_source.isDirect())
        m_bytes.resize(inBytes * (resampler.m_verticalFirst && !resampler.m_copies ? kRowsAtOnce : 1));
    m_out.resize(outBytes);
    if (resampler.m_copies)
        return;
    m_floats.resize(std::max(inBytes, outBytes));
    if (resampler.m_verticalFirst) {
        m_ring.resize(outBytes);
        return;
    }
    const auto taps = static_cast<std::size_t>(resampler.m_y.taps);
    m_ring.resize(taps * outBytes);
    m_ringRows.assign(taps, -1);
    m_rows.resize(taps);
}

const std::uint8_t* RowResampler::Band::row(int y)
{
    const SourcePixels& source = m_resampler.m_source;
    const auto pixels = static_cast<std::size_t>(m_resampler.m_x.count());
    if (m_resampler.m_copies) {
        const std::uint8_t* copied = copiedRow(y);
        if (source.forcesOpaque() && copied != m_out.data()) {
            std::memcpy(m_out.data(), copied, m_out.size());
            copied = m_out.data();
        }
        if (source.forcesOpaque())
            kernels::setOpaque(m_out.data(), pixels);
        return copied;
    }
    if (m_resampler.m_verticalFirst)
        verticalFirst(y);
    else
        horizontalFirst(y);
    if (source.forcesOpaque())
        kernels::setOpaque(m_out.data(), pixels);
    else if (source.hasAlpha() && (m_resampler.m_x.overshoots || m_resampler.m_y.overshoots))
        kernels::cutToAlpha(m_out.data(), pixels);
    return m_out.data();
}

const std::uint8_t* RowResampler::Band::copiedRow(int y)
{
    const RowResampler& r = m_resampler;
    const std::uint8_t* in = r.m_source.row(r.m_x.sourceBegin, r.m_y.firstOf(y), r.m_sourceWidth, m_bytes.data());
    if (r.m_x.copies)
        return in;
    const int base = r.m_x.sourceBegin;
    std::uint8_t* out = m_out.data();
    if (r.m_source.channels() == 1) {
        for (const int first : r.m_x.first)
            *out++ = in[first - base];
    } else {
        for (const int first : r.m_x.first) {
            std::memcpy(out, in + 4 * static_cast<std::ptrdiff_t>(first - base), 4);
            out += 4;
        }
    }
    return m_out.data();
}

void RowResampler::Band::verticalFirst(int y)
{
    const RowResampler& r = m_resampler;
    const int channels = r.m_source.channels();
    const std::size_t samples = static_cast<std::size_t>(r.m_sourceWidth) * static_cast<std::size_t>(channels);
    const int top = r.m_y.firstOf(y);
    const float* weights = r.m_y.weightsOf(y);
    for (int t = 0; t < r.m_y.taps; t += kRowsAtOnce) {
        const int count = std::min(kRowsAtOnce, r.m_y.taps - t);
        const std::uint8_t* rows[kRowsAtOnce];
        std::uint8_t* scratch = m_bytes.data();
        for (int i = 0; i < count; ++i) {
            rows[i] = r.m_source.row(r.m_x.sourceBegin, top + t + i, r.m_sourceWidth, scratch);
            if (!r.m_source.isDirect())
                scratch += samples;
        }
        kernels::weighBytes(rows, weights + t, count, samples, t > 0, m_floats.data());
    }
    const auto narrow = channels == 4 ? kernels::weighPixels : kernels::weighSamples;
    narrow(m_floats.data(), r.m_x.sourceBegin, r.m_x.first.data(), r.m_x.weights.data(), r.m_x.taps, r.m_x.count(),
           m_ring.data());
    kernels::floatsToBytes(m_ring.data(), m_out.size(), m_out.data());
}

const float* RowResampler::Band::narrowedRow(int sourceRow)
{
    const RowResampler& r = m_resampler;
    const auto slot = static_cast<std::size_t>(sourceRow % r.m_y.taps);
    float* out = m_ring.data() + slot * m_out.size();
    if (m_ringRows[slot] == sourceRow)
        return out;
    m_ringRows[slot] = sourceRow;
    const int channels = r.m_source.channels();
    const std::uint8_t* in = r.m_source.row(r.m_x.sourceBegin, sourceRow, r.m_sourceWidth, m_bytes.data());
    const std::size_t samples = static_cast<std::size_t>(r.m_sourceWidth) * static_cast<std::size_t>(channels);
    if (r.m_x.copies) {
        kernels::bytesToFloats(in, samples, out);
        return out;
    }
    kernels::bytesToFloats(in, samples, m_floats.data());
    const auto narrow = channels == 4 ? kernels::weighPixels : kernels::weighSamples;
    narrow(m_floats.data(), r.m_x.sourceBegin, r.m_x.first.data(), r.m_x.weights.data(), r.m_x.taps, r.m_x.count(),
           out);
    return out;
}

void RowResampler::Band::horizontalFirst(int y)
{
    const RowResampler& r = m_resampler;
    const int top = r.m_y.firstOf(y);
    for (int t = 0; t < r.m_y.taps; ++t)
        m_rows[static_cast<std::size_t>(t)] = narrowedRow(top + t);
    kernels::weighFloats(m_rows.data(), r.m_y.weightsOf(y), r.m_y.taps, m_out.size(), m_out.data());
}

} // namespace lamina
