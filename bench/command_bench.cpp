// The whole process as a shell sees it: time from start to end, and the most memory it held.

#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "support/BareDecode.h"
#include "support/BareExports.h"
#include "support/BenchPhotos.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

extern char** environ;

namespace {

/// Runs the command once; returns its peak memory in kilobytes. Ends the program when the command fails.
long runOnce(const std::vector<std::string>& arguments)
{
    std::vector<char*> argv{const_cast<char*>(LAMINA_COMMAND)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    if (::posix_spawn(&child, LAMINA_COMMAND, &files, nullptr, argv.data(), environ) != 0)
        std::abort();
    posix_spawn_file_actions_destroy(&files);
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        std::abort();
    return usage.ru_maxrss;
}

void measure(benchmark::State& state, const std::vector<std::string>& arguments)
{
    long peak = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        peak = std::max(peak, runOnce(arguments));
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    state.counters["peak_MB"] = static_cast<double>(peak) / 1024;
}

void version(benchmark::State& state)
{
    measure(state, {"--version"});
}
BENCHMARK(version)->UseManualTime()->Unit(benchmark::kMillisecond);

void blendTwelveMegapixels(benchmark::State& state)
{
    const std::string first = lamina::bench::twelveMegapixelPhoto(0);
    const std::string second = lamina::bench::twelveMegapixelPhoto(1);
    measure(state, {"blend", first, second, "-o", "-"});
}
BENCHMARK(blendTwelveMegapixels)->UseManualTime()->Unit(benchmark::kMillisecond);

// ---- a collage of three photos ----

constexpr int kCollageSide = 1125; // pixels: 375 points at three pixels each

const std::vector<std::string>& threePhotos()
{
    static const std::vector<std::string> photos{lamina::bench::twelveMegapixelPhoto(0),
                                                 lamina::bench::twelveMegapixelPhoto(1),
                                                 lamina::bench::twelveMegapixelPhoto(0)};
    return photos;
}

/// Limits: 1.5 times the parts below, and 150 MB.
void collageTwelveMegapixels(benchmark::State& state)
{
    std::vector<std::string> arguments{"collage"};
    arguments.insert(arguments.end(), threePhotos().begin(), threePhotos().end());
    arguments.insert(arguments.end(), {"-o", "-"});
    measure(state, arguments);
    state.counters["limit_MB"] = 150;
}
BENCHMARK(collageTwelveMegapixels)->UseManualTime()->Unit(benchmark::kMillisecond);

/// The middle of a decoded photo, on a strip of the canvas.
void layStrip(const std::vector<JSAMPLE>& photo, int index, std::uint8_t* canvas)
{
    const int width = static_cast<int>(photo.size()) / 4 / kCollageSide;
    const int left = (width - kCollageSide) / 2;
    const int first = kCollageSide * index / 3;
    const int end = kCollageSide * (index + 1) / 3;
    for (int y = 0; y < kCollageSide; ++y) {
        const JSAMPLE* const row = photo.data() + 4 * (std::ptrdiff_t{y} * width + left);
        std::uint8_t* const out = canvas + 4 * (std::ptrdiff_t{y} * kCollageSide);
        for (int x = 4 * first; x < 4 * end; ++x)
            out[x] = row[x];
    }
}

/// What the work can't cost less than in a process that runs already: libjpeg-turbo reducing to three eighths (which is
/// its area mean, 1125 rows) on a thread a photo, the three strips, and our filter of rows with libdeflate.
void collageParts(benchmark::State& state)
{
    std::array<std::vector<JSAMPLE>, 3> photos;
    const lamina::CGImageLayout layout =
        lamina::CGImageLayout::rgba(kCollageSide, kCollageSide, lamina::CGImageAlphaInfo::Last);
    constexpr unsigned kEighths = 3;
    for (auto _ : state) {
        {
            std::vector<std::jthread> readers;
            for (std::size_t i = 0; i < photos.size(); ++i)
                readers.emplace_back([&, i] { lamina::bench::bareDecode(threePhotos()[i], photos[i], kEighths); });
        }
        lamina::PixelBuffer canvas = lamina::PixelBuffer::zeroed(layout.byteCount());
        for (std::size_t i = 0; i < photos.size(); ++i)
            layStrip(photos[i], static_cast<int>(i), canvas.data());
        benchmark::DoNotOptimize(lamina::bench::filterAndDeflate(lamina::CGImage::make(layout, std::move(canvas))));
    }
}
BENCHMARK(collageParts)->UseRealTime()->Unit(benchmark::kMillisecond);

// ---- one photo through an operation, a filter, five filters ----

/// Beside the memory that it may take.
void measureWithin(benchmark::State& state, const std::vector<std::string>& arguments, double limit)
{
    measure(state, arguments);
    state.counters["limit_MB"] = limit / (1024 * 1024);
}

constexpr double kOperationMemory = 1e9;
constexpr double kDrawingMemory = 1.6e9;

void opHundredMegapixels(benchmark::State& state)
{
    measureWithin(state, {"op", "rotateInDegrees=180", "-i", lamina::bench::hundredMegapixelPhoto(), "-o", "-"},
                  kOperationMemory);
}
BENCHMARK(opHundredMegapixels)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);

void filterHundredMegapixels(benchmark::State& state)
{
    measureWithin(state, {"filter", "GPUImageSepiaFilter", "-i", lamina::bench::hundredMegapixelPhoto(), "-o", "-"},
                  kDrawingMemory);
}
BENCHMARK(filterHundredMegapixels)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);

/// Five that hold the most between them. That they end at all, however long they take, is a part of what is shown: run
/// it on one core, and busy.
void chainOfFive(benchmark::State& state, const std::string& photo)
{
    const std::filesystem::path chain = std::filesystem::temp_directory_path() / "lamina-bench-chain.json";
    std::ofstream(chain) << R"({"Filters": [{"FilterName": "GPUImageSepiaFilter"},
        {"FilterName": "GPUImageGaussianBlurFilter"}, {"FilterName": "GPUImageUnsharpMaskFilter"},
        {"FilterName": "GPUImageColorInvertFilter"}, {"FilterName": "GPUImageSobelEdgeDetectionFilter"}]})";
    measureWithin(state, {"filter", "--pipeline", chain.string(), "-i", photo, "-o", "-"}, kDrawingMemory);
    std::filesystem::remove(chain);
}
void chainTwentyFourMegapixels(benchmark::State& state)
{
    chainOfFive(state, lamina::bench::twentyFourMegapixelPhoto());
}
BENCHMARK(chainTwentyFourMegapixels)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
void chainHundredMegapixels(benchmark::State& state)
{
    chainOfFive(state, lamina::bench::hundredMegapixelPhoto());
}
BENCHMARK(chainHundredMegapixels)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);

struct Export {
    const char* name;
    std::vector<std::string> arguments;
};

const std::vector<Export>& exports()
{
    static const std::vector<Export> all{
        {"jpg", {"jpg"}},
        {"png", {"png"}},
        {"pdf-standard", {"pdf-standard"}},
        {"pdf-print", {"pdf-print"}},
        {"pdf-print-cmyk", {"pdf-print", "--profile", "cmyk", "--crop-marks", "--notes"}},
        {"svg", {"svg"}},
        {"mp4", {"mp4"}},
        {"tiff", {"tiff"}},
    };
    return all;
}

/// An export of a photo, with the memory that it may take.
void exportPhoto(benchmark::State& state, const Export& one, const std::string& photo, double limit)
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "lamina-bench-exports";
    std::filesystem::create_directories(folder);
    std::vector<std::string> arguments{"export"};
    arguments.insert(arguments.end(), one.arguments.begin(), one.arguments.end());
    arguments.insert(arguments.end(), {"-i", photo, "-o", folder.string()});
    measure(state, arguments);
    state.counters["limit_MB"] = limit;
    std::filesystem::remove_all(folder);
}

void registerExports()
{
    constexpr double kMegabyte = 1024 * 1024;
    constexpr double kSmall = 4.0 * 1125 * 1125 / kMegabyte;
    constexpr double kLarge = 4.0 * 9248 * 6936 / kMegabyte;
    for (const Export& one : exports()) {
        const bool film = one.arguments.front() == "mp4";
        const auto add = [&](const char* name, std::string (*photo)(), double limit) {
            benchmark::RegisterBenchmark(
                (std::string(name) + "/" + one.name).c_str(),
                [&one, photo, limit](benchmark::State& state) { exportPhoto(state, one, photo(), limit); })
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
        };
        add("exportBlend", lamina::bench::photoOfABlend, film ? 180 : 12 * kSmall);
        add("exportSixtyFourMegapixels", lamina::bench::sixtyFourMegapixelPhoto, 3 * kLarge + (film ? 700 : 200));
    }
}

} // namespace

int main(int argc, char** argv)
{
    registerExports();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
