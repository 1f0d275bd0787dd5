#include "platform/image/drawing/GaussianBlur_p.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/ResampleKernels_p.h"
#include "platform/image/drawing/Resampling.h"
#include "platform/image/pixels/CGImage.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

// A separable convolution with the sampled Gaussian (R. C. Gonzalez, R. E. Woods, "Digital Image Processing"). Wide
// blurs go through a pyramid of one step: P. J. Burt, "Fast filter transforms for image processing", 1981; variances of
// convolutions add up.

namespace lamina {

namespace {

/// From here on a blur is made on a smaller picture.
constexpr double kWideSigma = 16;

std::vector<float> gaussianWeights(double sigma)
{
    const int reach = blurReach(sigma);
    std::vector<double> exact;
    exact.reserve(2 * static_cast<std::size_t>(reach) + 1);
    double sum = 0;
    for (int i = -reach; i <= reach; ++i) {
        exact.push_back(std::exp(-i * i / (2 * sigma * sigma)));
        sum += exact.back();
    }
    std::vector<float> weights;
    weights.reserve(exact.size());
    for (const double w : exact)
        weights.push_back(static_cast<float>(w / sum));
    return weights;
}

/// One row across: every tap is the same row, moved along by a pixel.
void blurRow(const std::uint8_t* padded, const std::vector<float>& weights, std::size_t width, float* out)
{
    std::vector<const std::uint8_t*> rows(weights.size());
    for (std::size_t t = 0; t < rows.size(); ++t)
        rows[t] = padded + t;
    kernels::weighBytes(rows.data(), weights.data(), static_cast<int>(rows.size()), width, false, out);
}

/// Wide blurs leave nothing fine behind: they are made on a picture `step` times smaller, so that the work stays the
/// same.
bool blurReduced(PixelBuffer& bytes, IntSize size, double sigma)
{
    const int step = blurStep(sigma);
    const IntSize small{(size.width + step - 1) / step, (size.height + step - 1) / step};
    const CGImageLayout layout = CGImageLayout::gray(small.width * step, small.height * step);
    PixelBuffer padded = PixelBuffer::zeroed(layout.byteCount());
    if (!padded)
        return false;
    const auto width = static_cast<std::size_t>(size.width);
    for (int y = 0; y < size.height; ++y)
        std::memcpy(padded.data() + static_cast<std::size_t>(y) * layout.bytesPerRow,
                    bytes.data() + static_cast<std::size_t>(y) * width, width);
    const CGImage reduced = resampled(CGImage::make(layout, std::move(padded)), small);
    PixelBuffer blurred = PixelBuffer::allocate(reduced.layout().byteCount());
    if (!reduced || !blurred)
        return false;
    std::memcpy(blurred.data(), reduced.row(0), reduced.layout().byteCount());
    // Variances add up, and the mean over `step` pixels has step²/12 of it.
    const double rest = std::sqrt(sigma * sigma - step * step / 12.0) / step;
    if (!blurGaussian(blurred, small, rest))
        return false;
    const CGImage enlarged =
        resampled(CGImage::make(reduced.layout(), std::move(blurred)), {small.width * step, small.height * step});
    if (!enlarged)
        return false;
    for (int y = 0; y < size.height; ++y)
        std::memcpy(bytes.data() + static_cast<std::size_t>(y) * width, enlarged.row(y), width);
    return true;
}

} // namespace

int blurReach(double sigma)
{
    const double used = sigma > 0 ? std::min(sigma, kLargestSigma) : 0;
    // Reducing takes a step, the smaller kernel is rounded up to one, and enlarging reaches two.
    const int step = blurStep(used);
    return static_cast<int>(std::ceil(3 * used)) + (step > 1 ? 4 * step : 0);
}

int blurStep(double sigma)
{
    constexpr double kReducedSigma = 8;
    const double used = std::min(sigma, kLargestSigma);
    return used > kWideSigma ? static_cast<int>(used / kReducedSigma) : 1;
}

bool blurGaussian(PixelBuffer& bytes, IntSize size, double sigma)
{
    constexpr double kNoBlur = 0.01;
    if (!(sigma > kNoBlur) || size.isEmpty())
        return true;
    if (sigma > kWideSigma)
        return blurReduced(bytes, size, std::min(sigma, kLargestSigma));
    const std::vector<float> weights = gaussianWeights(sigma);
    const int reach = blurReach(sigma);
    const auto width = static_cast<std::size_t>(size.width);
    const std::size_t area = width * static_cast<std::size_t>(size.height);
    PixelBuffer across = PixelBuffer::allocate(area * sizeof(float));
    if (!across)
        return false;
    const auto rowOf = [&](int y) {
        return reinterpret_cast<float*>(across.data()) + static_cast<std::size_t>(y) * width;
    };
    const std::size_t cost = width * weights.size() / 4;
    parallelRows(0, size.height, cost, [&](int begin, int end) {
        std::vector<std::uint8_t> padded(width + 2 * static_cast<std::size_t>(reach));
        for (int y = begin; y < end; ++y) {
            std::memcpy(padded.data() + reach, bytes.data() + static_cast<std::size_t>(y) * width, width);
            blurRow(padded.data(), weights, width, rowOf(y));
        }
    });
    parallelRows(0, size.height, cost, [&](int begin, int end) {
        std::vector<const float*> rows;
        for (int y = begin; y < end; ++y) {
            const int first = std::max(0, y - reach);
            const int last = std::min(size.height - 1, y + reach);
            rows.clear();
            for (int i = first; i <= last; ++i)
                rows.push_back(rowOf(i));
            kernels::weighFloats(rows.data(), weights.data() + (first - (y - reach)), static_cast<int>(rows.size()),
                                 width, bytes.data() + static_cast<std::size_t>(y) * width);
        }
    });
    return true;
}

} // namespace lamina
