#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/filters/analysis/GPUImageHistogramFilter.h"

#include <memory>

namespace lamina {

/// Spreads the values of a picture so that each range of them occurs about equally often: more contrast where most of
/// the picture is.
///
///   out(channel) = table(in(channel)),   out.a = in.a
///   table(v) = (c(v) - c0) / (n - c0)      c(v): points of value v or less, c0: those of the least value, n: all
///
/// cut to 0 to 1; the table of a picture of one value changes nothing. (Histogram equalisation: Gonzalez and Woods,
/// Digital Image Processing, chapter 3; with the darkest value on black.) The counts are those of
/// `GPUImageHistogramFilter`. Each channel that is counted has a table of its own, so that casts go with it; luminance
/// has one for all three, which keeps greys grey. Channels that are not counted stay.
class GPUImageHistogramEqualizationFilter : public GPUImageFilterGroup {
public:
    explicit GPUImageHistogramEqualizationFilter(GPUImageHistogramType type = kGPUImageHistogramRGB);
    static FilterDescription describe();

    /// As of `GPUImageHistogramFilter`.
    void setHistogramType(GPUImageHistogramType type) { m_histogram->setHistogramType(type); }
    GPUImageHistogramType histogramType() const { return m_histogram->histogramType(); }
    unsigned downsamplingFactor() const { return m_histogram->downsamplingFactor(); }
    void setDownsamplingFactor(unsigned factor) { m_histogram->setDownsamplingFactor(factor); }

private:
    std::shared_ptr<GPUImageHistogramFilter> m_histogram;
};

} // namespace lamina
