// Five hundred photos made small by one command, beside what the work can't cost less than.

#include "support/BareDecode.h"
#include "support/BenchPhotos.h"

#include <algorithm>
#include <atomic>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace {

namespace fs = std::filesystem;
using lamina::bench::kSmallPhotos;

constexpr int kPhotos = 500;
constexpr int kWidth = 256;
constexpr int kHeight = 192;

/// Photos of 2000 × 1500 pixels, made once.
const std::vector<std::string>& photos()
{
    static const std::vector<std::string> paths = [] {
        const fs::path folder = fs::temp_directory_path() / "lamina-bench-batch";
        fs::create_directories(folder);
        std::vector<std::string> made;
        for (int i = 0; i < kPhotos; ++i) {
            made.push_back((folder / (std::to_string(i) + ".jpg")).string());
            if (!fs::exists(made.back()))
                fs::copy_file(lamina::bench::smallPhoto(i % kSmallPhotos), made.back());
        }
        return made;
    }();
    return paths;
}

std::string outputFolder()
{
    return (fs::temp_directory_path() / "lamina-bench-batch-out").string();
}

/// What an output sample takes of one axis.
struct Span {
    int first = 0;
    std::vector<float> weights;
};

std::vector<Span> spans(int from, int to)
{
    std::vector<Span> all;
    for (int i = 0; i < to; ++i) {
        const double low = static_cast<double>(i) * from / to;
        const double high = static_cast<double>(i + 1) * from / to;
        Span span{static_cast<int>(low), {}};
        for (int s = span.first; s < high && s < from; ++s)
            span.weights.push_back(
                static_cast<float>((std::min(high, s + 1.0) - std::max<double>(low, s)) * to / from));
        all.push_back(span);
    }
    return all;
}

/// The mean of the area under each pixel, four bytes a pixel.
void areaMean(const std::vector<JSAMPLE>& in, int width, int height, std::vector<JSAMPLE>& out)
{
    const std::vector<Span> columns = spans(width, kWidth);
    const std::vector<Span> rows = spans(height, kHeight);
    const auto samples = 4 * static_cast<std::size_t>(width);
    std::vector<float> sums(samples);
    out.resize(std::size_t{4} * kWidth * kHeight);
    JSAMPLE* target = out.data();
    for (const Span& row : rows) {
        std::fill(sums.begin(), sums.end(), 0.5F);
        for (std::size_t t = 0; t < row.weights.size(); ++t) {
            const JSAMPLE* line = in.data() + (static_cast<std::size_t>(row.first) + t) * samples;
            const float weight = row.weights[t];
            for (std::size_t i = 0; i < samples; ++i)
                sums[i] += weight * line[i];
        }
        for (const Span& column : columns) {
            float pixel[4] = {};
            const float* source = sums.data() + std::size_t{4} * static_cast<unsigned>(column.first);
            for (const float weight : column.weights) {
                for (int c = 0; c < 4; ++c)
                    pixel[c] += weight * *source++;
            }
            for (const float sample : pixel)
                *target++ = static_cast<JSAMPLE>(std::min(sample, 255.0F));
        }
    }
}

/// As the command writes JPEG files: best quality, colours in full.
void encode(std::vector<JSAMPLE>& pixels, const std::string& path)
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (file == nullptr)
        std::abort();
    jpeg_compress_struct encoder;
    jpeg_error_mgr errors;
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    jpeg_stdio_dest(&encoder, file);
    encoder.image_width = kWidth;
    encoder.image_height = kHeight;
    encoder.input_components = 4;
    encoder.in_color_space = JCS_EXT_RGBX;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, 100, TRUE);
    encoder.comp_info[0].h_samp_factor = encoder.comp_info[0].v_samp_factor = 1;
    jpeg_start_compress(&encoder, TRUE);
    for (std::size_t y = 0; y < kHeight; ++y) {
        JSAMPROW row = pixels.data() + 4 * kWidth * y;
        jpeg_write_scanlines(&encoder, &row, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
    std::fclose(file);
}

/// Seconds of processor time, of this process or of the children that it has waited for.
double processorSeconds(int whose)
{
    rusage usage{};
    ::getrusage(whose, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Both roads alike: into a new folder, with the processor time beside the real one.
void measure(benchmark::State& state, int whose, const auto& work)
{
    photos();
    double before = 0;
    double spent = 0;
    for (auto _ : state) {
        state.PauseTiming();
        fs::remove_all(outputFolder());
        before = processorSeconds(whose);
        state.ResumeTiming();
        work();
        spent += processorSeconds(whose) - before;
    }
    state.counters["processor_s"] = benchmark::Counter(spent, benchmark::Counter::kAvgIterations);
}

/// The limit: libjpeg-turbo alone, reducing to two eighths, the mean of the area and the encoder, a thread a core.
void fiveHundredPhotosBare(benchmark::State& state)
{
    measure(state, RUSAGE_SELF, [] {
        fs::create_directories(outputFolder());
        std::atomic<int> next{0};
        std::vector<std::jthread> threads;
        for (unsigned i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i) {
            threads.emplace_back([&next] {
                std::vector<JSAMPLE> read;
                std::vector<JSAMPLE> small;
                constexpr unsigned kEighths = 2;
                for (int photo = next++; photo < kPhotos; photo = next++) {
                    lamina::bench::bareDecode(photos()[static_cast<unsigned>(photo)], read, kEighths);
                    areaMean(read, 500, 375, small);
                    encode(small, outputFolder() + "/" + std::to_string(photo) + ".jpg");
                }
            });
        }
    });
}
BENCHMARK(fiveHundredPhotosBare)->UseRealTime()->Unit(benchmark::kMillisecond);

/// At most 1.3 times the limit.
void fiveHundredPhotos(benchmark::State& state)
{
    std::vector<std::string> arguments{
        LAMINA_COMMAND, "op", "scaleToFitSize=256x256", "-o", outputFolder() + "/{name}.jpg", "--each"};
    arguments.insert(arguments.end(), photos().begin(), photos().end());
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    measure(state, RUSAGE_CHILDREN, [&argv] {
        pid_t child = 0;
        int status = 0;
        if (::posix_spawn(&child, LAMINA_COMMAND, nullptr, nullptr, argv.data(), environ) != 0 ||
            ::waitpid(child, &status, 0) != child || status != 0)
            std::abort();
    });
}
BENCHMARK(fiveHundredPhotos)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
