// The sliders of "Levels" with the gamma of the middle one; t^(1 / gamma) is how displays' gamma is written.

#include "gpu/filters/color/GPUImageLevelsFilter.h"
#include "gpu/kernels/ColorKernels.h"

#include "gpu/filters/color/ColorShaders.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>

namespace lamina {

namespace {

constexpr const char* kUniforms = R"(
uniform vec3 levelMinimum;
uniform vec3 levelMiddle;
uniform vec3 levelMaximum;
uniform vec3 minOutput;
uniform vec3 maxOutput;
)";

// Tiny ones stand for divisors that are not above 0. A step this narrow swallows what drivers make of equal numbers.
constexpr const char* kStatements = R"(
    vec3 above = max(color.rgb - levelMinimum, 0.0);
    vec3 share = min(above / max(levelMaximum - levelMinimum, 0.0001), 1.0);
    vec3 curved = power(share, 1.0 / max(levelMiddle, 0.0001));
    gl_FragColor = vec4(mix(minOutput, maxOutput, curved), color.a);
)";

} // namespace

GPUImageLevelsFilter::GPUImageLevelsFilter()
    : GPUImageFilter(colorShader(kUniforms, kStatements))
{
    setMin(0, 1, 1, 0, 1);
}

FilterDescription GPUImageLevelsFilter::describe()
{
    using Self = GPUImageLevelsFilter;
    const auto levels = [](const std::string& keyword, auto setter, const std::string& channel) {
        return filterOperation(keyword + ":gamma:max:minOut:maxOut:", setter,
                               "Levels of " + channel + ": black and white point with the gamma between, then what " +
                                   "they become, all from 0 to 1 but for the gamma",
                               0.0F, 1.0F, 1.0F, 0.0F, 1.0F);
    };
    return filterDescription<Self>(
        "GPUImageLevelsFilter", "colour", 1, "Sets black point, middle and white point of each channel", {},
        {levels("setMin", &Self::setMin, "all channels"), levels("setRedMin", &Self::setRedMin, "red"),
         levels("setGreenMin", &Self::setGreenMin, "green"), levels("setBlueMin", &Self::setBlueMin, "blue")});
}

void GPUImageLevelsFilter::setMin(float min, float gamma, float max, float minOut, float maxOut)
{
    for (const Channel channel : {&GPUVector3::one, &GPUVector3::two, &GPUVector3::three})
        setChannel(channel, min, gamma, max, minOut, maxOut);
    sendLevels();
}

void GPUImageLevelsFilter::setRedMin(float min, float gamma, float max, float minOut, float maxOut)
{
    setChannel(&GPUVector3::one, min, gamma, max, minOut, maxOut);
    sendLevels();
}

void GPUImageLevelsFilter::setGreenMin(float min, float gamma, float max, float minOut, float maxOut)
{
    setChannel(&GPUVector3::two, min, gamma, max, minOut, maxOut);
    sendLevels();
}

void GPUImageLevelsFilter::setBlueMin(float min, float gamma, float max, float minOut, float maxOut)
{
    setChannel(&GPUVector3::three, min, gamma, max, minOut, maxOut);
    sendLevels();
}

void GPUImageLevelsFilter::setChannel(Channel channel, float min, float gamma, float max, float minOut, float maxOut)
{
    m_levels.min.*channel = min;
    m_levels.gamma.*channel = gamma;
    m_levels.max.*channel = max;
    m_levels.minOut.*channel = minOut;
    m_levels.maxOut.*channel = maxOut;
}

void GPUImageLevelsFilter::sendLevels()
{
    setFloatVec3(m_levels.min, "levelMinimum");
    setFloatVec3(m_levels.gamma, "levelMiddle");
    setFloatVec3(m_levels.max, "levelMaximum");
    setFloatVec3(m_levels.minOut, "minOutput");
    setFloatVec3(m_levels.maxOut, "maxOutput");
}

FilterKernel GPUImageLevelsFilter::kernel() const
{
    const std::span<const float> minimum = uniformValues("levelMinimum");
    const std::span<const float> middle = uniformValues("levelMiddle");
    const std::span<const float> maximum = uniformValues("levelMaximum");
    const std::span<const float> least = uniformValues("minOutput");
    const std::span<const float> most = uniformValues("maxOutput");
    std::array<kernels::ChannelTable, 3> tables{};
    for (std::size_t c = 0; c < tables.size(); ++c) {
        for (const std::span<const float> levels : {minimum, middle, maximum, least, most}) {
            if (levels.empty() || !std::isfinite(levels[c]))
                return {};
        }
        tables[c] = kernels::channelTable([&](float value) {
            const float above = std::max(value - minimum[c], 0.0F);
            const float share = std::min(above / std::max(maximum[c] - minimum[c], 0.0001F), 1.0F);
            const float curved = share > 0 ? std::pow(share, 1 / std::max(middle[c], 0.0001F)) : 0.0F;
            return least[c] + (most[c] - least[c]) * curved;
        });
    }
    return kernels::tableKernel(tables);
}

} // namespace lamina
