#include "imageops/ImageFilters.h"
#include "imageops/ImageGeometry.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "support/Measuring.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <vector>

// Operations on a photo of 12 megapixels (48 MB), each beside the time of copying the same bytes on all cores: "copies"
// is the ratio to a copy into memory that is there already, and "limit" what it may be. "new_copies" is the ratio to a
// copy into memory fresh from the system, which is what a new picture costs at the least; the two tell how much of an
// operation's time is memory being handed out. The picture is noise, so that neither caches nor branches find a
// pattern. At the size of a phone's canvas the limit is one in milliseconds.

namespace {

using namespace lamina;
using namespace lamina::bench;

constexpr IntSize kPhoto{4000, 3000};
constexpr IntSize kCanvas{1125, 1125};
constexpr auto kOpaque = CGImageAlphaInfo::NoneSkipLast;
constexpr auto kTranslucent = CGImageAlphaInfo::Last;

const UIImage& noise(IntSize size, CGImageAlphaInfo alpha)
{
    struct Made {
        IntSize size;
        CGImageAlphaInfo alpha;
        UIImage image;
    };
    static std::vector<Made> made;
    const auto found = std::ranges::find_if(made, [&](const Made& m) { return m.size == size && m.alpha == alpha; });
    if (found != made.end())
        return found->image;
    made.reserve(8);
    return made.emplace_back(Made{size, alpha, UIImage(noisePicture(size.width, size.height, alpha))}).image;
}

void copyAllCores(const CGImage& source, std::uint8_t* target)
{
    WorkerPool::shared().parallelFor(0, source.height(), 16, [&](int begin, int end) {
        const std::size_t from = static_cast<std::size_t>(begin) * source.bytesPerRow();
        std::memcpy(target + from, source.row(begin), static_cast<std::size_t>(end - begin) * source.bytesPerRow());
    });
    benchmark::DoNotOptimize(target);
    benchmark::ClobberMemory();
}

/// The buffers of pictures are kept for reuse; this memory comes from the system, as theirs does the first time.
void copyIntoNewMemory(const CGImage& source)
{
    constexpr std::size_t kHugePage = std::size_t{2} << 20;
    const std::size_t size = (source.bytes().size() + kHugePage - 1) / kHugePage * kHugePage;
    void* const memory = std::aligned_alloc(kHugePage, size);
    ::madvise(memory, size, MADV_HUGEPAGE);
    copyAllCores(source, static_cast<std::uint8_t*>(memory));
    std::free(memory);
}

void copyOfThePhoto(benchmark::State& state)
{
    const CGImage& source = noise(kPhoto, kOpaque).cgImage();
    PixelBuffer target = PixelBuffer::zeroed(source.bytes().size());
    for (auto _ : state)
        copyAllCores(source, target.data());
}

using Operation = UIImage (*)(const UIImage&);

struct Case {
    const char* name;
    Operation operation;
    double limit; ///< in copies, 0: none is set
};

/// Both copies are timed between the operations, so that all see the same machine.
void onThePhoto(benchmark::State& state, Operation operation, CGImageAlphaInfo alpha, double limit)
{
    const UIImage& image = noise(kPhoto, alpha);
    PixelBuffer target = PixelBuffer::zeroed(image.cgImage().bytes().size());
    std::vector<double> copies;
    std::vector<double> newCopies;
    std::vector<double> times;
    for (auto _ : state) {
        copies.push_back(seconds([&] { copyAllCores(image.cgImage(), target.data()); }));
        newCopies.push_back(seconds([&] { copyIntoNewMemory(image.cgImage()); }));
        UIImage result;
        times.push_back(seconds([&] { result = operation(image); }));
        if (!result) {
            state.SkipWithError("gave no picture");
            break;
        }
        benchmark::DoNotOptimize(result);
        state.SetIterationTime(times.back());
    }
    if (times.empty())
        return;
    state.counters["copies"] = median(times) / median(copies);
    state.counters["new_copies"] = median(times) / median(newCopies);
    state.counters["limit"] = limit;
}

void onTheCanvas(benchmark::State& state, Operation operation)
{
    const UIImage& image = noise(kCanvas, kOpaque);
    for (auto _ : state)
        benchmark::DoNotOptimize(operation(image));
    state.counters["limit_ms"] = 2;
}

constexpr std::array kCases{
    Case{"contrast", [](const UIImage& i) { return contrastAdjustmentWithValue(i, 40); }, 1.5},
    Case{"brighten", [](const UIImage& i) { return brightenWithValue(i, 40); }, 1.5},
    Case{"invert", [](const UIImage& i) { return invert(i); }, 1.5},
    Case{"gamma", [](const UIImage& i) { return gammaCorrectionWithValue(i, 0.8F); }, 4},
    Case{"sepia", [](const UIImage& i) { return sepia(i); }, 0},
    Case{"opacity", [](const UIImage& i) { return opacity(i, 0.5F); }, 0},
    Case{"grayscale", [](const UIImage& i) { return grayscale(i); }, 0},
    Case{"edges3x3", [](const UIImage& i) { return edgeDetectionWithBias(i, 0); }, 3},
    Case{"emboss3x3", [](const UIImage& i) { return embossWithBias(i, 40); }, 3},
    Case{"sharpen3x3", [](const UIImage& i) { return sharpenWithBias(i, 0); }, 3},
    Case{"unsharpen3x3", [](const UIImage& i) { return unsharpenWithBias(i, 0); }, 3},
    Case{"blur5x5", [](const UIImage& i) { return gaussianBlurWithBias(i, 0); }, 5},
    Case{"quarterTurn", [](const UIImage& i) { return rotateInDegrees(i, 90); }, 3},
    Case{"turnBy30", [](const UIImage& i) { return rotateInDegrees(i, 30); }, 0},
    Case{"turnInPlaceBy30", [](const UIImage& i) { return rotateImagePixelsInDegrees(i, 30); }, 0},
    Case{"horizontalFlip", [](const UIImage& i) { return horizontalFlip(i); }, 1.5},
    Case{"verticalFlip", [](const UIImage& i) { return verticalFlip(i); }, 1.5},
    Case{"fitTo1125",
         [](const UIImage& i) {
             return scaleToFitSize(i, {1125, 1125});
         },
         5},
};

void registerAll()
{
    const auto timed = [](benchmark::internal::Benchmark* benchmark) {
        benchmark->Unit(benchmark::kMillisecond)->MinTime(0.3);
    };
    timed(benchmark::RegisterBenchmark("copyOfThePhoto", copyOfThePhoto)->UseRealTime());
    for (const Case& c : kCases) {
        for (const auto alpha : {kOpaque, kTranslucent}) {
            const std::string name = std::string(alpha == kOpaque ? "opaque/" : "translucent/") + c.name;
            timed(benchmark::RegisterBenchmark(name.c_str(), onThePhoto, c.operation, alpha, c.limit)->UseManualTime());
        }
    }
    for (const std::size_t slider : {std::size_t{0}, std::size_t{8}}) {
        const std::string name = std::string("canvas/") + kCases[slider].name;
        timed(benchmark::RegisterBenchmark(name.c_str(), onTheCanvas, kCases[slider].operation)->UseRealTime());
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
