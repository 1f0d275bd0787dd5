#include "gpu/kernels/ColorKernels.h"

#include "platform/base/WorkerPool.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "gpu/kernels/ColorKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "gpu/kernels/PixelLanes_p.h"

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// One channel of the result. The weights are for bytes: the last of them is 255 times what it is for shares.
HWY_INLINE hn::Vec<Floats> weighed(const ColorWeights& weights, const Color& color)
{
    auto sum = hn::Add(hn::Mul(color.red, hn::Set(Floats(), weights[0])), hn::Set(Floats(), weights[4]));
    sum = hn::Add(sum, hn::Mul(color.green, hn::Set(Floats(), weights[1])));
    return hn::Add(sum, hn::Mul(color.blue, hn::Set(Floats(), weights[2])));
}

HWY_INLINE hn::Vec<Floats> weighedWithAlpha(const ColorWeights& weights, const Color& color)
{
    return hn::Add(weighed(weights, color), hn::Mul(color.alpha, hn::Set(Floats(), weights[3])));
}

void MatrixRow(const std::uint8_t* in, std::size_t pixels, const ColorMatrix& matrix, std::uint8_t* out)
{
    forPixels(pixels, [&](std::size_t at, auto lanes) HWY_ATTR {
        const Color color = loadColor(in + at, lanes);
        storeColor({weighedWithAlpha(matrix[0], color), weighedWithAlpha(matrix[1], color),
                    weighedWithAlpha(matrix[2], color), weighedWithAlpha(matrix[3], color)},
                   out + at, lanes);
    });
}

/// The same where alpha stays and weighs nothing.
void ColorMatrixRow(const std::uint8_t* in, std::size_t pixels, const ColorMatrix& matrix, std::uint8_t* out)
{
    forPixels(pixels, [&](std::size_t at, auto lanes) HWY_ATTR {
        const auto rgba = loadRGBA(in + at, lanes);
        const Color color = colorOf(rgba);
        storeWithAlphaOf(rgba, weighed(matrix[0], color), weighed(matrix[1], color), weighed(matrix[2], color),
                         out + at, lanes);
    });
}

void TintRow(const std::uint8_t* in, std::size_t pixels, const LuminanceTint& tint, std::uint8_t* out)
{
    const auto one = hn::Set(Floats(), 1.0F);
    const auto byte = hn::Set(Floats(), 1.0F / 255);
    const auto tinted = [&](hn::Vec<Floats> own, hn::Vec<Floats> luminance, float color) HWY_ATTR {
        const auto dark = hn::Mul(hn::Add(luminance, luminance), hn::Set(Floats(), color));
        const auto rest = hn::Sub(one, luminance);
        const auto bright = hn::Sub(one, hn::Mul(hn::Add(rest, rest), hn::Set(Floats(), 1 - color)));
        const auto mixed = hn::IfThenElse(hn::Lt(luminance, hn::Set(Floats(), 0.5F)), dark, bright);
        return hn::Add(hn::Mul(own, hn::Set(Floats(), 1 - tint.intensity)),
                       hn::Mul(mixed, hn::Set(Floats(), 255 * tint.intensity)));
    };
    forPixels(pixels, [&](std::size_t at, auto lanes) HWY_ATTR {
        const auto rgba = loadRGBA(in + at, lanes);
        const Color color = colorOf(rgba);
        const auto luminance = hn::Mul(weighed({0.2125F, 0.7154F, 0.0721F, 0, 0}, color), byte);
        storeWithAlphaOf(rgba, tinted(color.red, luminance, tint.color[0]),
                         tinted(color.green, luminance, tint.color[1]), tinted(color.blue, luminance, tint.color[2]),
                         out + at, lanes);
    });
}

void AlphaBlendRow(const std::uint8_t* base, const std::uint8_t* overlay, std::size_t pixels, float share,
                   std::uint8_t* out)
{
    const auto byteShare = hn::Set(Floats(), share / 255);
    forPixels(pixels, [&](std::size_t at, auto lanes) HWY_ATTR {
        const auto rgba = loadRGBA(base + at, lanes);
        const Color below = colorOf(rgba);
        const Color above = loadColor(overlay + at, lanes);
        const auto part = hn::Mul(above.alpha, byteShare);
        const auto mixed = [&](hn::Vec<Floats> from, hn::Vec<Floats> to)
                               HWY_ATTR { return hn::Add(from, hn::Mul(hn::Sub(to, from), part)); };
        storeWithAlphaOf(rgba, mixed(below.red, above.red), mixed(below.green, above.green),
                         mixed(below.blue, above.blue), out + at, lanes);
    });
}

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina::kernels {

HWY_EXPORT(MatrixRow);
HWY_EXPORT(ColorMatrixRow);
HWY_EXPORT(TintRow);
HWY_EXPORT(AlphaBlendRow);

namespace {

/// `row(first, count, y)` for all rows, on all cores.
template <class Row>
void forRows(const KernelFrame& frame, const Row& row)
{
    const auto width = static_cast<std::size_t>(frame.first.size.width);
    parallelRows(0, frame.first.size.height, width, [&](int first, int last) {
        for (int y = first; y < last; ++y)
            row(y, width);
    });
}

bool areNumbers(const ColorMatrix& matrix)
{
    return std::ranges::all_of(matrix, [](const ColorWeights& weights) {
        return std::ranges::all_of(weights, [](float weight) { return std::isfinite(weight); });
    });
}

/// For bytes instead of shares.
ColorMatrix forBytes(ColorMatrix matrix)
{
    for (ColorWeights& weights : matrix)
        weights[4] *= 255;
    return matrix;
}

bool leavesAlphaOut(const ColorMatrix& matrix)
{
    return matrix[0][3] == 0 && matrix[1][3] == 0 && matrix[2][3] == 0 && matrix[3] == kSameColors[3];
}

} // namespace

FilterKernel matrixKernel(const ColorMatrix& matrix)
{
    if (!areNumbers(matrix))
        return {};
    return {[bytes = forBytes(matrix)](const KernelFrame& frame) {
        const bool onlyColors = leavesAlphaOut(bytes);
        forRows(frame, [&](int y, std::size_t width) {
            if (onlyColors)
                HWY_DYNAMIC_DISPATCH(ColorMatrixRow)(frame.first.row(y), width, bytes, frame.outputRow(y));
            else
                HWY_DYNAMIC_DISPATCH(MatrixRow)(frame.first.row(y), width, bytes, frame.outputRow(y));
        });
        return true;
    }};
}

FilterKernel matrixKernel(std::function<ColorMatrix(float place)> matrixAt)
{
    if (!areNumbers(matrixAt(0)) || !areNumbers(matrixAt(1)))
        return {};
    return {[matrixAt = std::move(matrixAt)](const KernelFrame& frame) {
        const auto height = static_cast<float>(frame.first.size.height);
        forRows(frame, [&](int y, std::size_t width) {
            const ColorMatrix bytes = forBytes(matrixAt((static_cast<float>(y) + 0.5F) / height));
            HWY_DYNAMIC_DISPATCH(MatrixRow)(frame.first.row(y), width, bytes, frame.outputRow(y));
        });
        return true;
    }};
}

FilterKernel tableKernel(const std::array<ChannelTable, 3>& tables)
{
    return {[kept = std::make_shared<const std::array<ChannelTable, 3>>(tables)](const KernelFrame& frame) {
        const auto& [red, green, blue] = *kept;
        forRows(frame, [&, &red = red, &green = green, &blue = blue](int y, std::size_t width) {
            const std::uint8_t* in = frame.first.row(y);
            std::uint8_t* out = frame.outputRow(y);
            for (std::size_t i = 0; i < 4 * width; i += 4) {
                out[i] = red[in[i]];
                out[i + 1] = green[in[i + 1]];
                out[i + 2] = blue[in[i + 2]];
                out[i + 3] = in[i + 3];
            }
        });
        return true;
    }};
}

ChannelTable channelTable(const std::function<float(float)>& formula)
{
    ChannelTable table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const float value = std::clamp(formula(static_cast<float>(i) / 255.0F), 0.0F, 1.0F);
        table[i] = static_cast<std::uint8_t>(std::lround(value * 255));
    }
    return table;
}

FilterKernel luminanceTintKernel(const LuminanceTint& tint)
{
    const auto isNumber = [](float value) { return std::isfinite(value); };
    if (!isNumber(tint.intensity) || !std::ranges::all_of(tint.color, isNumber))
        return {};
    return {[tint](const KernelFrame& frame) {
        forRows(frame, [&](int y, std::size_t width) {
            HWY_DYNAMIC_DISPATCH(TintRow)(frame.first.row(y), width, tint, frame.outputRow(y));
        });
        return true;
    }};
}

FilterKernel alphaBlendKernel(float share)
{
    if (!std::isfinite(share))
        return {};
    return {[share](const KernelFrame& frame) {
        forRows(frame, [&](int y, std::size_t width) {
            HWY_DYNAMIC_DISPATCH(AlphaBlendRow)
            (frame.first.row(y), frame.second.row(y), width, share, frame.outputRow(y));
        });
        return true;
    }};
}

} // namespace lamina::kernels

#endif
