// Decoding a phone's photo, at full size and as far reduced as a crop allows, beside the codec library alone.

#include "platform/image/codecs/PictureDecoding.h"
#include "support/BareDecode.h"
#include "support/BenchPhotos.h"

#include <benchmark/benchmark.h>
#include <string>
#include <vector>

namespace {

using namespace lamina;

void decode(benchmark::State& state)
{
    const std::string path = bench::twelveMegapixelPhoto();
    DecodeOptions options;
    options.shortSide = static_cast<int>(state.range(0));
    for (auto _ : state) {
        Result<UIImage> picture = loadPicture(path, options);
        benchmark::DoNotOptimize(picture);
    }
}
// 0: full size. 2250: what a crop square of 375 points zoomed by 6 needs. 375: a thumbnail.
BENCHMARK(decode)->Arg(0)->Arg(2250)->Arg(375)->ArgName("shortSide")->Unit(benchmark::kMillisecond)->UseRealTime();

/// The limit: libjpeg-turbo writing the same rows to memory that is there already, and nothing else.
void codecAlone(benchmark::State& state)
{
    const std::string path = bench::twelveMegapixelPhoto();
    std::vector<JSAMPLE> pixels;
    for (auto _ : state) {
        bench::bareDecode(path, pixels, static_cast<unsigned>(state.range(0)));
        benchmark::DoNotOptimize(pixels.data());
    }
}
BENCHMARK(codecAlone)->Arg(8)->Arg(6)->Arg(1)->ArgName("eighths")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
