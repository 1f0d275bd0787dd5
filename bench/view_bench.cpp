// Flattening a blend and repainting it while a photo is dragged, beside a plain loop that does the same work: what the
// tree of layers costs above the pixels.

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/UIImageView.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

using namespace lamina;

constexpr int kSide = 375;
constexpr int kScale = 3;
constexpr int kPixels = kSide * kScale;
constexpr CGRect kSquare{0, 0, kSide, kSide};

CGImage photo(unsigned seed, int width = kSide, int height = kSide)
{
    const CGImageLayout layout = CGImageLayout::rgba(width, height, CGImageAlphaInfo::NoneSkipLast);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    std::uint32_t state = seed;
    for (std::size_t i = 0; i < layout.byteCount(); ++i) {
        state = state * 1664525u + 1013904223u;
        buffer.data()[i] = static_cast<std::uint8_t>(state >> 24);
    }
    return CGImage::make(layout, std::move(buffer));
}

/// White paper that clips, and two photos of which half is seen through, as the blend editor stacks them.
std::shared_ptr<UIView> blend()
{
    auto paper = std::make_shared<UIImageView>(kSquare);
    paper->setBackgroundColor(UIColor::white());
    paper->setClipsToBounds(true);
    for (const unsigned seed : {1u, 2u}) {
        auto view = std::make_shared<UIImageView>(UIImage(photo(seed)));
        view->setContentMode(UIViewContentMode::ScaleAspectFill);
        view->setAlpha(0.5);
        paper->addSubview(view);
    }
    return paper;
}

void flatten(benchmark::State& state)
{
    WorkerPool::shared().setConcurrency(static_cast<unsigned>(state.range(0)));
    const auto root = blend();
    for (auto _ : state) {
        CGContext context = *CGContext::image(kSquare.size, true, kScale);
        root->layer().renderInContext(context);
        benchmark::DoNotOptimize(context.makeImage());
    }
    WorkerPool::shared().setConcurrency(0);
}

/// Position and weights of the cubic convolution for one device column or row.
struct Taps {
    int first;
    float weights[4];
};

std::vector<Taps> tapsOfAxis()
{
    std::vector<Taps> all;
    for (int i = 0; i < kPixels; ++i) {
        const double centre = (i + 0.5) / kScale - 0.5;
        const int left = static_cast<int>(std::floor(centre)) - 1;
        Taps taps{std::clamp(left, 0, kSide - 4), {}};
        for (int t = left; t < left + 4; ++t) {
            const double d = std::abs(t - centre);
            const double w = d < 1 ? (1.5 * d - 2.5) * d * d + 1 : ((-0.5 * d + 2.5) * d - 4) * d + 2;
            taps.weights[std::clamp(t, taps.first, taps.first + 3) - taps.first] += static_cast<float>(w);
        }
        all.push_back(taps);
    }
    return all;
}

constexpr int kRowSamples = 4 * kPixels;

void widen(const std::uint8_t* row, const std::vector<Taps>& taps, float* out)
{
    for (const Taps& tap : taps) {
        const std::uint8_t* in = row + 4 * tap.first;
        for (int c = 0; c < 4; ++c)
            *out++ = in[c] * tap.weights[0] + in[4 + c] * tap.weights[1] + in[8 + c] * tap.weights[2] +
                     in[12 + c] * tap.weights[3];
    }
}

/// One photo over rows of the target: each source row is widened once into a ring of four, which make a target row.
void addPhoto(const CGImage& image, const std::vector<Taps>& taps, int begin, int end, std::uint8_t* target)
{
    std::vector<float> ring(std::size_t{4} * kRowSamples);
    const auto ringRow = [&](int y) { return ring.data() + static_cast<std::size_t>(y % 4) * kRowSamples; };
    int next = taps[static_cast<std::size_t>(begin)].first;
    for (int y = begin; y < end; ++y) {
        const Taps& tap = taps[static_cast<std::size_t>(y)];
        for (; next < tap.first + 4; ++next)
            widen(image.row(next), taps, ringRow(next));
        const float* const in[] = {ringRow(tap.first), ringRow(tap.first + 1), ringRow(tap.first + 2),
                                   ringRow(tap.first + 3)};
        std::uint8_t* out = target + static_cast<std::size_t>(y) * kRowSamples;
        for (int i = 0; i < kRowSamples; ++i) {
            const float sum = in[0][i] * tap.weights[0] + in[1][i] * tap.weights[1] + in[2][i] * tap.weights[2] +
                              in[3][i] * tap.weights[3];
            const int value = std::clamp(static_cast<int>(sum + 0.5F), 0, 255);
            out[i] = static_cast<std::uint8_t>((value + out[i] + 1) / 2);
        }
    }
}

/// The limit: the same enlargement and mixture in plain loops on two threads, into memory that is new each time as the
/// picture's is.
void plainLoop(benchmark::State& state)
{
    const CGImage photos[] = {photo(1), photo(2)};
    const std::vector<Taps> taps = tapsOfAxis();
    for (auto _ : state) {
        PixelBuffer target = PixelBuffer::allocate(std::size_t{4} * kPixels * kPixels);
        const auto half = [&](int begin, int end) {
            std::memset(target.data() + std::size_t{4} * kPixels * static_cast<std::size_t>(begin), 255,
                        std::size_t{4} * kPixels * static_cast<std::size_t>(end - begin));
            for (const CGImage& image : photos)
                addPhoto(image, taps, begin, end, target.data());
        };
        WorkerPool::shared().parallelFor(0, kPixels, (kPixels + 1) / 2, half);
        benchmark::DoNotOptimize(target.data());
    }
}

/// Memory alone: the bytes of the flattened picture.
void copy(benchmark::State& state)
{
    const std::vector<std::uint8_t> source(std::size_t{4} * kPixels * kPixels, 7);
    std::vector<std::uint8_t> target(source.size());
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), source.size());
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
}

/// A frame of a drag: the upper photo goes on by a point, and what changed is painted again.
void dragFrame(benchmark::State& state)
{
    const auto root = blend();
    UIView& dragged = *root->subviews().back();
    CanvasRenderer canvas(root, kScale);
    canvas.render();
    double step = 1;
    for (auto _ : state) {
        dragged.setTransform(dragged.transform().translated(step, 0));
        benchmark::DoNotOptimize(canvas.render());
        if (std::abs(dragged.transform().tx) >= 100)
            step = -step;
    }
}

/// A frame in which a small sticker goes on by a point above the photos.
void dragSticker(benchmark::State& state)
{
    const auto root = blend();
    const auto sticker = std::make_shared<UIImageView>(CGRect(100, 100, 60, 60));
    sticker->setImage(UIImage(photo(3)));
    root->addSubview(sticker);
    CanvasRenderer canvas(root, kScale);
    canvas.render();
    double step = 1;
    for (auto _ : state) {
        sticker->setTransform(sticker->transform().translated(step, 0));
        benchmark::DoNotOptimize(canvas.render());
        if (std::abs(sticker->transform().tx) >= 90)
            step = -step;
    }
}

/// A frame in which a photo of 12 megapixels turns by a little, while it moves (1) and as it would be at rest (0). The
/// limit for the first: 16 ms on two cores.
void turnFrame(benchmark::State& state)
{
    const auto root = std::make_shared<UIView>(kSquare);
    const auto turned = std::make_shared<UIImageView>(kSquare);
    turned->setContentMode(UIViewContentMode::ScaleAspectFit);
    turned->setImage(UIImage(photo(4, 4000, 3000)));
    root->addSubview(turned);
    CanvasRenderer canvas(root, kScale);
    canvas.setMoving(state.range(0) == 1);
    canvas.render();
    for (auto _ : state) {
        turned->setTransform(turned->transform().rotated(0.01));
        benchmark::DoNotOptimize(canvas.render());
    }
}

BENCHMARK(flatten)->Arg(1)->Arg(2)->ArgName("threads")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(plainLoop)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(copy)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(dragFrame)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(turnFrame)->Arg(0)->Arg(1)->ArgName("moving")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(dragSticker)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
