#include "gpu/filters/color/GPUImageHSBFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lamina {

namespace {

constexpr GPUVector3 kHueLuminance{0.3F, 0.59F, 0.11F};
constexpr GPUVector3 kLuminance{0.2125F, 0.7154F, 0.0721F};

constexpr GPUVector3 sum(const GPUVector3& x, const GPUVector3& y)
{
    return {x.one + y.one, x.two + y.two, x.three + y.three};
}

constexpr GPUVector3 scaled(const GPUVector3& vector, float factor)
{
    return {vector.one * factor, vector.two * factor, vector.three * factor};
}

/// Every row the weights, and `matrix`, less what it does to luminance, in addition.
constexpr GPUMatrix3x3 keepingLuminance(const GPUVector3& weights, const GPUMatrix3x3& matrix)
{
    const GPUVector3 luminance =
        sum(sum(scaled(matrix.one, weights.one), scaled(matrix.two, weights.two)), scaled(matrix.three, weights.three));
    const GPUVector3 kept = sum(weights, scaled(luminance, -1));
    return {sum(matrix.one, kept), sum(matrix.two, kept), sum(matrix.three, kept)};
}

/// Far beyond what cuts every colour to 0 or 1, and far from what overflows when operations follow each other.
constexpr float bounded(float value)
{
    constexpr float kMost = 10000;
    return std::clamp(value, -kMost, kMost);
}

/// A row of `matrix` seen through the rows of another matrix, of which it is a mixture.
constexpr GPUVector4 mixture(const GPUVector3& row, const GPUMatrix4x4& of)
{
    const auto channel = [&](float GPUVector4::*place) {
        return bounded(row.one * (of.one.*place) + row.two * (of.two.*place) + row.three * (of.three.*place));
    };
    return {channel(&GPUVector4::one), channel(&GPUVector4::two), channel(&GPUVector4::three),
            channel(&GPUVector4::four)};
}

constexpr GPUMatrix3x3 diagonal(float value)
{
    return {{value, 0, 0}, {0, value, 0}, {0, 0, value}};
}

} // namespace

GPUImageHSBFilter::GPUImageHSBFilter()
{
    reset();
}

FilterDescription GPUImageHSBFilter::describe()
{
    using Self = GPUImageHSBFilter;
    return filterDescription<Self>(
        "GPUImageHSBFilter", "colour", 1, "Hue, saturation and brightness, one after the other",
        {filterProperty("intensity", &Self::setIntensity, 1.0F, {0, 1}, "", "Share of the changed colour")},
        {filterOperation("rotateHue:", &Self::rotateHue, "Turns every hue by so many degrees, from red to green", 0.0F),
         filterOperation("adjustSaturation:", &Self::adjustSaturation, "Strength of colours: 0 is grey, 2 twice", 1.0F),
         filterOperation("adjustBrightness:", &Self::adjustBrightness, "Factor of red, green and blue", 1.0F),
         filterOperation("reset", &Self::reset, "Takes back the operations before it")});
}

void GPUImageHSBFilter::reset()
{
    setColorMatrix(GPUMatrix4x4::identity());
}

void GPUImageHSBFilter::rotateHue(float degrees)
{
    const double angle = std::fmod(degrees, 360.0F) * std::numbers::pi / 180;
    const auto c = static_cast<float>(std::cos(angle));
    const auto s = static_cast<float>(std::sin(angle) / std::numbers::sqrt3);
    applyMatrix(keepingLuminance(kHueLuminance, {{c, -s, s}, {s, c, -s}, {-s, s, c}}));
}

void GPUImageHSBFilter::adjustSaturation(float factor)
{
    applyMatrix(keepingLuminance(kLuminance, diagonal(bounded(factor))));
}

void GPUImageHSBFilter::adjustBrightness(float factor)
{
    applyMatrix(diagonal(bounded(factor)));
}

void GPUImageHSBFilter::applyMatrix(const GPUMatrix3x3& matrix)
{
    const GPUMatrix4x4 before = colorMatrix();
    setColorMatrix(
        {mixture(matrix.one, before), mixture(matrix.two, before), mixture(matrix.three, before), before.four});
}

} // namespace lamina
