#include "gpu/filters/analysis/GPUImageHistogramEqualizationFilter.h"

#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/sources/GPUImageRawDataInput.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace lamina {

namespace {

constexpr const char* kMappingFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;

uniform highp sampler2D inputImageTexture;
uniform highp sampler2D inputImageTexture2;

vec3 entryFor(float value)
{
    return texture2D(inputImageTexture2, vec2((value * 255.0 + 0.5) / 256.0, 0.5)).rgb;
}

void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
    gl_FragColor = vec4(entryFor(color.r).r, entryFor(color.g).g, entryFor(color.b).b, color.a);
}
)";

using Entries = std::array<std::uint8_t, 256>;
/// 256 pixels of blue, green, red, alpha.
using Table = std::array<std::uint8_t, std::size_t{256} * 4>;

/// What the table makes of each value; each value itself where nothing or only one was counted.
Entries entriesOf(const GPUImageHistogram::Bins& bins, std::uint32_t points)
{
    const auto least = std::ranges::find_if(bins, [](std::uint32_t bin) { return bin > 0; });
    const double below = least == bins.end() ? points : *least;
    Entries entries{};
    double sum = 0;
    for (std::size_t v = 0; v < entries.size(); ++v) {
        sum += bins[v];
        const double share = points > below ? (sum - below) / (points - below) : static_cast<double>(v) / 255;
        entries[v] = static_cast<std::uint8_t>(std::max(0.0, share) * 255 + 0.5);
    }
    return entries;
}

Table tableOf(const GPUImageHistogram& histogram)
{
    Table table{};
    for (std::size_t channel = 0; channel < 3; ++channel) {
        GPUImageHistogram::Bins bins = histogram.channels[channel];
        for (std::size_t v = 0; v < bins.size(); ++v)
            bins[v] += histogram.luminance[v]; // one of them is empty
        const Entries entries = entriesOf(bins, histogram.points);
        for (std::size_t v = 0; v < entries.size(); ++v)
            table[4 * v + 2 - channel] = entries[v];
    }
    return table;
}

} // namespace

GPUImageHistogramEqualizationFilter::GPUImageHistogramEqualizationFilter(GPUImageHistogramType type)
    : m_histogram(std::make_shared<GPUImageHistogramFilter>(type))
{
    const auto mapping = std::make_shared<GPUImageTwoInputFilter>(kMappingFragmentShader);
    const auto source = std::make_shared<GPUImageRawDataInput>(tableOf({}), CGSize{256, 1});
    source->addTarget(mapping, 1);
    m_histogram->setHistogramBlock([source](const GPUImageHistogram& histogram, CMTime time) {
        if (const Outcome uploaded = source->uploadBytes(tableOf(histogram)); !uploaded)
            logError(uploaded.error().message());
        source->processDataForTimestamp(time);
    });
    addFilter(m_histogram);
    addFilter(mapping);
    setInitialFilters({m_histogram, mapping}); // in this order: the table is there when the frame is drawn
    setTerminalFilter(mapping);
}

FilterDescription GPUImageHistogramEqualizationFilter::describe()
{
    using Self = GPUImageHistogramEqualizationFilter;
    return filterDescription<Self>("GPUImageHistogramEqualizationFilter", "colour", 1,
                                   "Spreads values so that all occur about equally often",
                                   GPUImageHistogramFilter::properties<Self>());
}

} // namespace lamina
