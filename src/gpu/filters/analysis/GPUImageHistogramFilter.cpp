#include "gpu/filters/analysis/GPUImageHistogramFilter.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <algorithm>
#include <memory>
#include <string>

namespace lamina {

namespace {

/// The channels that a type counts; luminance is none of them.
bool counts(GPUImageHistogramType type, std::size_t channel)
{
    return type == channel || type == kGPUImageHistogramRGB || type > kGPUImageHistogramLuminance;
}

/// By whole numbers: the same on every processor.
std::size_t luminanceOf(const std::uint8_t* pixel)
{
    return (2125U * pixel[0] + 7154U * pixel[1] + 721U * pixel[2] + 5000U) / 10000U;
}

std::uint32_t fullest(const GPUImageHistogram::Bins& bins)
{
    return *std::ranges::max_element(bins);
}

FilterResultValues reported(const GPUImageHistogram::Bins& bins)
{
    return fullest(bins) > 0 ? FilterResultValues(bins.begin(), bins.end()) : FilterResultValues();
}

} // namespace

GPUImageHistogramFilter::GPUImageHistogramFilter(GPUImageHistogramType type)
    : m_type(type)
    , m_downsamplingFactor(kStartDownsamplingFactor)
{
}

void GPUImageHistogramFilter::setHistogramBlock(HistogramBlock block)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_histogramBlock.swap(block); });
}

void GPUImageHistogramFilter::count(std::span<const std::uint8_t> pixels)
{
    m_histogram = {};
    const GPUImageHistogramType type = m_type;
    const std::size_t step = std::size_t{4} * m_downsamplingFactor;
    for (std::size_t i = 0; i < pixels.size(); i += step) {
        const std::uint8_t* pixel = &pixels[i];
        for (std::size_t channel = 0; channel < 3; ++channel)
            m_histogram.channels[channel][pixel[channel]] += counts(type, channel) ? 1 : 0;
        m_histogram.luminance[luminanceOf(pixel)] += type == kGPUImageHistogramLuminance ? 1 : 0;
        ++m_histogram.points;
    }
}

/// R G B A bytes of one row.
std::vector<std::uint8_t> GPUImageHistogramFilter::picture() const
{
    const auto& [red, green, blue] = m_histogram.channels;
    const GPUImageHistogram::Bins& light = m_histogram.luminance;
    const std::uint64_t most = std::max({fullest(red), fullest(green), fullest(blue), fullest(light), 1U});
    const auto share = [&](std::uint32_t bin) { return static_cast<std::uint8_t>((bin * 255ULL + most / 2) / most); };
    std::vector<std::uint8_t> bytes;
    for (std::size_t v = 0; v < kBins; ++v) {
        for (const GPUImageHistogram::Bins* bins : {&red, &green, &blue})
            bytes.push_back(share((*bins)[v] + light[v]));
        bytes.push_back(255);
    }
    return bytes;
}

void GPUImageHistogramFilter::renderToTextureWithVertices(const QuadCoordinates& vertices,
                                                          const QuadCoordinates& textureCoordinates)
{
    if (preventRendering() || !canRender()) {
        dropFrame();
        return;
    }
    // What comes in may be a texture only, which can't be read.
    const std::shared_ptr<GPUImageFramebuffer> copy = drawPasses(vertices, textureCoordinates);
    count(m_reading.read(*copy));
    copy->unlock();
    m_outputFramebuffer = beginOutput({}, outputFrameSize());
    const std::vector<std::uint8_t> row = picture();
    for (int y = 0; y < kRows; ++y)
        uploadTexturePart(*m_outputFramebuffer, 0, y, {.bytes = row.data(), .size = {kBins, 1}});
    holdForCapture(*m_outputFramebuffer);
    signalCapture();
}

void GPUImageHistogramFilter::newFrameReadyAtTime(const CMTime& frameTime, int)
{
    renderToTextureWithVertices(kGPUImageQuadVertices, textureCoordinatesForRotation(m_inputRotation));
    if (framebufferForOutput() && m_histogramBlock && !preventRendering())
        m_histogramBlock(m_histogram, frameTime);
    informTargetsAboutNewFrameAtTime(frameTime);
}

FilterReporting GPUImageHistogramFilter::reporting()
{
    const auto bins = [](const char* name) {
        return FilterResult{
            name, {}, true, "pixels", "Pixels of each value from 0 to 255; none where it isn't counted"};
    };
    return filterReporting<GPUImageHistogramFilter>(
        {{"points", {}, false, "pixels", "How many pixels were counted"},
         bins("red"),
         bins("green"),
         bins("blue"),
         bins("luminance")},
        [](GPUImageHistogramFilter& filter, const FilterReportBlock& block) {
            filter.setHistogramBlock([block](const GPUImageHistogram& histogram, CMTime) {
                const auto& [red, green, blue] = histogram.channels;
                block({{static_cast<double>(histogram.points)},
                       reported(red),
                       reported(green),
                       reported(blue),
                       reported(histogram.luminance)});
            });
        });
}

FilterDescription GPUImageHistogramFilter::describe()
{
    using Self = GPUImageHistogramFilter;
    FilterDescription description =
        filterDescription<Self>("GPUImageHistogramFilter", "detection", 1,
                                "How often each value occurs, as numbers and as a row of 256 bins", properties<Self>());
    description.reporting = reporting();
    return description;
}

} // namespace lamina
