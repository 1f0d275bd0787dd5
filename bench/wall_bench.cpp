// HEIC and TIFF of 12 megapixels read behind the wall, beside the same decoders in this process: the limit is 5 ms
// more. And what a first picture waits for, and somebody who cancels.

#include "platform/base/Causes.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/ImageSaving.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/codecs/decoder/BareDecoders_p.h"
#include "support/BenchPhotos.h"

#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

namespace {

using namespace lamina;

/// A file beside the photo, made once: under another name at first, since a run may be stopped meanwhile. Empty where
/// it can't be made.
template <typename Make>
std::string made(const char* extension, Make make)
{
    const std::string photo = bench::twelveMegapixelPhoto();
    std::string path = photo + extension;
    const std::string unfinished = photo + ".new" + extension;
    if (!std::filesystem::exists(path)) {
        if (!make(photo, unfinished))
            return {};
        std::filesystem::rename(unfinished, path);
    }
    return path;
}

/// By libheif's own program, where it is installed; the encoder's usual care would take half a minute.
std::string heic()
{
    return made(".heic", [](const std::string& photo, const std::string& path) {
        return std::system(
                   ("heif-enc -q 80 -p preset=ultrafast -o '" + path + "' '" + photo + "' >/dev/null 2>&1").c_str()) ==
               0;
    });
}

std::string tiff()
{
    return made(".tiff", [](const std::string& photo, const std::string& path) {
        const Result<UIImage> picture = loadPicture(photo);
        ImageSavingOptions options;
        options.uti = kUTTypeTIFF;
        return picture && saveImage(*picture, path, options);
    });
}

/// Touches every page, as whoever shows the picture will.
void look(const UIImage& picture)
{
    constexpr std::size_t kPage = 4096;
    const auto bytes = picture.cgImage().bytes();
    unsigned sum = 0;
    for (std::size_t at = 0; at < bytes.size(); at += kPage)
        sum += bytes[at];
    benchmark::DoNotOptimize(sum);
}

Result<UIImage> read(const PictureDecoder& decoder, const std::string& path, const std::atomic<bool>* cancelled)
{
    const auto source = openFileSource(path);
    if (!source)
        return source.error();
    return decoder.decode(**source, {.cancelled = cancelled});
}

void decode(benchmark::State& state, const PictureDecoder& decoder, std::string (*photo)())
{
    const std::string path = photo();
    Result<UIImage> picture = read(decoder, path, nullptr); // warms
    for (auto _ : state) {
        picture = UIImage(); // the last one is let go of, in the time that is measured
        picture = read(decoder, path, nullptr);
        if (!picture)
            return state.SkipWithError(picture.error().message().c_str());
        look(*picture);
    }
}
BENCHMARK_CAPTURE(decode, heicInProcess, kHEICDecoder, heic)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(decode, heicBehindWall, kWalledHEICDecoder, heic)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(decode, tiffInProcess, kTIFFDecoder, tiff)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(decode, tiffBehindWall, kWalledTIFFDecoder, tiff)->Unit(benchmark::kMillisecond)->UseRealTime();

/// From the moment of cancelling until the call returns; a new program is started for the next one, outside of the
/// time.
void cancel(benchmark::State& state)
{
    const std::string path = heic();
    for (auto _ : state) {
        std::atomic<bool> cancelled = false;
        std::chrono::steady_clock::time_point told;
        std::thread other([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(60));
            told = std::chrono::steady_clock::now();
            cancelled = true;
        });
        const Result<UIImage> picture = read(kWalledHEICDecoder, path, &cancelled);
        const auto returned = std::chrono::steady_clock::now();
        other.join();
        if (picture || picture.error().cause != cause::kCancelled)
            return state.SkipWithError(picture ? "it was faster than who cancels" : picture.error().message().c_str());
        state.SetIterationTime(std::chrono::duration<double>(returned - told).count());
    }
}
BENCHMARK(cancel)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(20);

/// A small picture for which the program must be started first: the one before was cancelled.
void first(benchmark::State& state)
{
    const std::string path = heic();
    const std::string small = LAMINA_TEST_DATA "/pictures/heic-420.heic";
    for (auto _ : state) {
        state.PauseTiming();
        std::atomic<bool> cancelled = false;
        std::thread other([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            cancelled = true;
        });
        const Result<UIImage> left = read(kWalledHEICDecoder, path, &cancelled);
        other.join();
        state.ResumeTiming();
        const Result<UIImage> picture = read(kWalledHEICDecoder, small, nullptr);
        if (!picture)
            return state.SkipWithError(picture.error().message().c_str());
    }
}
BENCHMARK(first)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(10);

} // namespace

BENCHMARK_MAIN();
