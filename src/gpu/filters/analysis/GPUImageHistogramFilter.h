#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/FilterResults.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/TypedValue.h"
#include "gpu/filters/analysis/FrameReading.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace lamina {

/// What is counted. Any other value counts as all three channels.
enum GPUImageHistogramType : std::uint8_t {
    kGPUImageHistogramRed,
    kGPUImageHistogramGreen,
    kGPUImageHistogramBlue,
    kGPUImageHistogramRGB,
    kGPUImageHistogramLuminance,
};

/// How many of the counted pixels have each value from 0 to 255.
struct GPUImageHistogram {
    using Bins = std::array<std::uint32_t, 256>;
    std::array<Bins, 3> channels{}; ///< red, green, blue; 0 throughout for one that is not counted
    Bins luminance{};
    std::uint32_t points = 0; ///< pixels that were counted: the sum of the bins of whatever is
};

/// How often each value occurs in a picture, as numbers and as a picture of 256 x 3 pixels.
///
/// Every `downsamplingFactor`-th pixel is counted, in the order of rows and from the first on, straight and as stored:
/// one that has the value v of a channel counts in the bin v. Luminance is 0.2125 red + 0.7154 green + 0.0721 blue
/// (Rec. ITU-R BT.709), rounded. The counting is done on the processor, since a framebuffer's channel ends at 255.
///
/// In the picture, column v of all three rows holds what is in bin v of each channel, as a share of the fullest bin;
/// channels that are not counted are 0, and luminance is in all three. Alpha is 1. It is what
/// `GPUImageHistogramGenerator` draws. Its size is fixed, whatever size is forced.
class GPUImageHistogramFilter : public GPUImageFilter {
public:
    explicit GPUImageHistogramFilter(GPUImageHistogramType type = kGPUImageHistogramRGB);
    static FilterDescription describe();

    static constexpr int kBins = 256;
    static constexpr int kRows = 3;

    /// From any thread; in force from the next frame.
    void setHistogramType(GPUImageHistogramType type) { m_type = type; }
    GPUImageHistogramType histogramType() const { return m_type; }
    /// 16 at first; 1 counts every pixel. 0 counts as 1.
    unsigned downsamplingFactor() const { return m_downsamplingFactor; }
    void setDownsamplingFactor(unsigned factor) { m_downsamplingFactor = factor > 0 ? factor : 1; }

    /// Gets the counts and the time of each frame, on the video processing queue, before the targets have it. They are
    /// good during the call. It must not wait for the main queue.
    using HistogramBlock = std::function<void(const GPUImageHistogram& histogram, CMTime time)>;
    /// From any thread; in force from the next frame.
    void setHistogramBlock(HistogramBlock block);

    CGSize outputFrameSize() const override { return {kBins, kRows}; }
    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override;
    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;

    /// The properties that a histogram has, of a class that hands them on.
    template <class Filter>
    static std::vector<FilterProperty> properties()
    {
        return {choiceProperty("histogramType", &Filter::setHistogramType, kTypes, kGPUImageHistogramRGB,
                               "What is counted"),
                filterProperty("downsamplingFactor", &Filter::setDownsamplingFactor, int{kStartDownsamplingFactor},
                               {1, 1024}, "pixels", "Every so many-th pixel is counted")};
    }

private:
    static constexpr int kStartDownsamplingFactor = 16;
    static constexpr ValueKind kTypes{
        ValueType::Choice, "choice", "red|green|blue|rgb|luminance", "red, green, blue, rgb or luminance", {}};

    static FilterReporting reporting();
    void count(std::span<const std::uint8_t> pixels);
    std::vector<std::uint8_t> picture() const;

    std::atomic<GPUImageHistogramType> m_type;
    std::atomic<unsigned> m_downsamplingFactor;
    FrameReading m_reading;
    GPUImageHistogram m_histogram;
    HistogramBlock m_histogramBlock;
};

} // namespace lamina
