// Decoding a phone's photo, at full size and as far reduced as a crop allows, beside the codec library alone; how soon
// reading ends once it is cancelled; and pictures a pixel wide.

#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/pixels/UprightPicture.h"
#include "support/BareDecode.h"
#include "support/BenchPhotos.h"

#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>
#include <webp/encode.h>

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

using Bytes = std::vector<std::uint8_t>;

Bytes webP(const CGImage& image)
{
    WebPConfig config;
    WebPPicture picture;
    WebPMemoryWriter writer;
    if (!WebPConfigPreset(&config, WEBP_PRESET_PHOTO, 75) || !WebPPictureInit(&picture))
        return {};
    config.method = 0;
    WebPMemoryWriterInit(&writer);
    picture.width = image.width();
    picture.height = image.height();
    picture.writer = WebPMemoryWrite;
    picture.custom_ptr = &writer;
    WebPPictureImportRGBX(&picture, image.row(0), static_cast<int>(image.bytesPerRow()));
    WebPEncode(&config, &picture);
    Bytes bytes(writer.mem, writer.mem + writer.size);
    WebPPictureFree(&picture);
    WebPMemoryWriterClear(&writer);
    return bytes;
}

/// The photo of 100 megapixels in a format, encoded once for all the times at which it is cancelled.
const Bytes& largeFile(std::string_view format)
{
    static std::map<std::string, Bytes, std::less<>> files;
    if (const auto found = files.find(format); found != files.end())
        return found->second;
    files.clear(); // one at a time: some are hundreds of megabytes
    const CGImage photo = loadPicture(bench::hundredMegapixelPhoto(), {.memoryLimit = std::size_t{1} << 30})->cgImage();
    const std::string name(format);
    return files[name] =
               name == "webp" ? webP(photo) : *encodePicture(photo, *pictureFormatForFileName("photo." + name), name);
}

/// From the flag to the return, at the given hundredths of the time that reading and turning take.
void cancel(benchmark::State& state, std::string_view format)
{
    using Steady = std::chrono::steady_clock;
    const Bytes& file = largeFile(format);
    const auto read = [&](std::atomic<bool>& cancelled) {
        const auto picture =
            decodePicture(file, "photo", {.cancelled = &cancelled, .memoryLimit = std::size_t{2} << 30});
        return picture && upright(UIImage(picture->cgImage(), 1, UIImageOrientation::Right), &cancelled);
    };
    std::atomic<bool> cancelled = false;
    const Steady::time_point start = Steady::now();
    if (!read(cancelled))
        return state.SkipWithError("not read");
    const auto moment = (Steady::now() - start) * state.range(0) / 100;
    for (auto _ : state) {
        cancelled = false;
        Steady::time_point told;
        std::thread other([&] {
            std::this_thread::sleep_for(moment);
            told = Steady::now();
            cancelled = true;
        });
        const bool whole = read(cancelled);
        const Steady::time_point end = Steady::now();
        other.join();
        state.SetIterationTime(whole ? 0 : std::chrono::duration<double>(end - told).count());
    }
}

/// Rows or columns of one pixel.
void thin(benchmark::State& state, std::string_view format)
{
    constexpr int kLong = 262'144;
    const bool tall = state.range(0) != 0;
    const auto layout = CGImageLayout::rgba(tall ? 1 : kLong, tall ? kLong : 1, CGImageAlphaInfo::NoneSkipLast);
    const CGImage picture = CGImage::make(layout, PixelBuffer::allocate(layout.byteCount()));
    const Bytes file = *encodePicture(picture, *pictureFormatForFileName("thin." + std::string(format)), "thin");
    for (auto _ : state) {
        Result<UIImage> read = decodePicture(file, "thin");
        benchmark::DoNotOptimize(read);
    }
}

const bool registered = [] {
    for (const char* format : {"jpg", "png", "webp", "gif", "bmp", "tif"}) {
        auto* row = benchmark::RegisterBenchmark(("cancel/" + std::string(format)).c_str(), cancel, format);
        row->Arg(5)->Arg(40)->Arg(80)->Arg(95)->ArgName("percent")->Iterations(2);
        row->Unit(benchmark::kMillisecond)->UseManualTime();
    }
    for (const char* format : {"png", "bmp", "tif"}) {
        auto* row = benchmark::RegisterBenchmark(("thin/" + std::string(format)).c_str(), thin, format);
        row->Arg(0)->Arg(1)->ArgName("tall")->Unit(benchmark::kMillisecond)->UseRealTime();
    }
    return true;
}();

} // namespace

BENCHMARK_MAIN();
