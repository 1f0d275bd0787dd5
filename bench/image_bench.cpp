#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/Resampling.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "support/Measuring.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstring>

// Drawing and resizing beside the time of copying a photo of 12 megapixels (48 MB), which is as fast as memory goes.

namespace {

using namespace lamina;
using namespace lamina::bench;

constexpr int kPhotoWidth = 4000;
constexpr int kPhotoHeight = 3000;

CGImage photo(int width, int height, CGImageAlphaInfo alpha = CGImageAlphaInfo::NoneSkipLast)
{
    return noisePicture(width, height, alpha);
}

void copyOneThread(benchmark::State& state)
{
    const CGImage source = photo(kPhotoWidth, kPhotoHeight);
    PixelBuffer target = PixelBuffer::zeroed(source.bytes().size());
    for (auto _ : state) {
        std::memcpy(target.data(), source.bytes().data(), source.bytes().size());
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
}

void copyAllCores(benchmark::State& state)
{
    const CGImage source = photo(kPhotoWidth, kPhotoHeight);
    PixelBuffer target = PixelBuffer::zeroed(source.bytes().size());
    for (auto _ : state) {
        parallelRows(0, kPhotoHeight, kPhotoWidth, [&](int begin, int end) {
            const std::size_t from = static_cast<std::size_t>(begin) * source.bytesPerRow();
            std::memcpy(target.data() + from, source.bytes().data() + from,
                        static_cast<std::size_t>(end - begin) * source.bytesPerRow());
        });
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
}

/// The plainest way to the mean of an area, one thread, 1125 x 844: what the resampler is compared with.
void areaLoop(benchmark::State& state)
{
    const CGImage source = photo(kPhotoWidth, kPhotoHeight);
    constexpr int kWidth = 1125;
    constexpr int kHeight = 844;
    PixelBuffer target = PixelBuffer::zeroed(std::size_t{4} * kWidth * kHeight);
    for (auto _ : state) {
        for (int y = 0; y < kHeight; ++y) {
            const int top = y * kPhotoHeight / kHeight;
            const int bottom = (y + 1) * kPhotoHeight / kHeight;
            for (int x = 0; x < kWidth; ++x) {
                const int left = x * kPhotoWidth / kWidth;
                const int right = (x + 1) * kPhotoWidth / kWidth;
                unsigned sums[4] = {};
                for (int j = top; j < bottom; ++j) {
                    const std::uint8_t* p = source.row(j) + 4 * left;
                    for (int i = left; i < right; ++i, p += 4) {
                        for (int c = 0; c < 4; ++c)
                            sums[c] += p[c];
                    }
                }
                const auto count = static_cast<unsigned>((bottom - top) * (right - left));
                for (int c = 0; c < 4; ++c)
                    target.data()[4 * (y * kWidth + x) + c] = static_cast<std::uint8_t>(sums[c] / count);
            }
        }
        benchmark::DoNotOptimize(target.data());
    }
}

void reduceTo(benchmark::State& state, CGImageAlphaInfo alpha, IntSize size)
{
    const CGImage source = photo(kPhotoWidth, kPhotoHeight, alpha);
    for (auto _ : state)
        benchmark::DoNotOptimize(resampled(source, size));
}

/// What a blend of two photos costs to flatten: both enlarged three times, half transparent, over white.
void twoPictures(benchmark::State& state)
{
    const UIImage first(photo(375, 375));
    const UIImage second(photo(375, 375));
    const CGRect square{0, 0, 375, 375};
    for (auto _ : state) {
        CGContext context = *CGContext::image(square.size, true, 3);
        context.setFillColor(UIColor::white());
        context.fillRect(square);
        context.setAlpha(0.5);
        drawInRect(second, context, square);
        drawInRect(first, context, square);
        benchmark::DoNotOptimize(context.makeImage());
    }
}

/// A zoomed crop: a part of the photo through a clip.
void reducedCrop(benchmark::State& state)
{
    const UIImage source(photo(3000, 2250));
    for (auto _ : state) {
        CGContext context = *CGContext::image({375, 375}, true, 1);
        drawInRect(source, context, {-62.5, 0, 500, 375});
        benchmark::DoNotOptimize(context.makeImage());
    }
}

void obliquePicture(benchmark::State& state)
{
    const UIImage source(photo(375, 375));
    for (auto _ : state) {
        CGContext context = *CGContext::image({375, 375}, true, 3);
        context.translateCTM(187, 187);
        context.rotateCTM(0.4);
        drawInRect(source, context, {-187, -187, 375, 375});
        benchmark::DoNotOptimize(context.makeImage());
    }
}

void turnUpright(benchmark::State& state)
{
    const UIImage source(photo(kPhotoWidth, kPhotoHeight), 1, UIImageOrientation::Right);
    for (auto _ : state)
        benchmark::DoNotOptimize(source.upright());
}

void shadowedSticker(benchmark::State& state)
{
    for (auto _ : state) {
        CGContext context = *CGContext::image({375, 375}, false, 3);
        context.setShadow({2, 2}, 6, UIColor::black());
        context.fillPath(UIBezierPath::withRoundedRect({50, 50, 200, 200}, 20));
        benchmark::DoNotOptimize(context.makeImage());
    }
}

constexpr auto kOpaque = CGImageAlphaInfo::NoneSkipLast;

BENCHMARK(copyOneThread)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(copyAllCores)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(areaLoop)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reduceTo, area1125x844, kOpaque, IntSize{1125, 844})->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reduceTo, areaStraight, CGImageAlphaInfo::Last, IntSize{1125, 844})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reduceTo, lanczos2800x2100, kOpaque, IntSize{2800, 2100})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(twoPictures)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(reducedCrop)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(obliquePicture)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(shadowedSticker)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(turnUpright)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
