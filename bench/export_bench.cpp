// Exports of a noisy picture as large as what a blend leaves, beside the libraries beneath them alone. What the command
// needs of memory stands in command_bench.

#include "export/functions/ExportWork.h"
#include "platform/base/UIScreen.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "support/BareExports.h"
#include "support/BareFilm.h"
#include "support/BenchPhotos.h"

#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace lamina;

const UIImage& picture()
{
    static const UIImage photo = [] {
        Result<UIImage> read = loadPicture(bench::photoOfABlend());
        if (!read)
            std::abort();
        return *read;
    }();
    return photo;
}

std::string folder()
{
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "lamina-bench-export";
    std::filesystem::create_directories(path);
    return path.string();
}

struct Pair {
    const char* name;
    SavingtypeMethod type;
    PrintColors colors;
    const char* limit;
    std::function<std::size_t(const CGImage& image)> bare;
    double atMost; ///< how many times the bare library's time it may take
};

const std::vector<Pair>& pairs()
{
    using enum SavingtypeMethod;
    constexpr int kFrames = 90;
    constexpr int kHigh = 18;
    const auto aFilm = [](const CGImage& image) {
        static const bench::BareFilm film(image);
        return static_cast<std::size_t>(film.encode(kFrames, kHigh));
    };
    const auto aTiff = [](const CGImage& image) { return bench::tiffOfLZW(image, folder() + "/bare.tiff"); };
    const auto inks = [](const CGImage& image) {
        return bench::inksAndDeflate(image, LAMINA_ASSETS "/profiles/FOGRA39-coated.icc");
    };
    static const std::vector<Pair> all{
        {"png", png, PrintColors::RGB, "filterAndDeflate", bench::filterAndDeflate, 1.2},
        {"jpg", jpg, PrintColors::RGB, "jpegThereAndBack", bench::jpegThereAndBack, 1.2},
        {"tiff", tiff, PrintColors::RGB, "tiffOfLZW", aTiff, 1.2},
        {"pdfRGB", pdfPrint, PrintColors::RGB, "deflateRGB", bench::deflateRGB, 1.3},
        {"pdfCMYK", pdfPrint, PrintColors::CMYK, "inksAndDeflate", inks, 1.3},
        {"mp4", mp4, PrintColors::RGB, "x264Alone", aFilm, 1.3},
        {"svg", svg, PrintColors::RGB, "pngOfLevelSix", bench::pngOfLevelSix, 0}, // limit: 1.2 times png
    };
    return all;
}

void exporting(benchmark::State& state, const Pair& pair)
{
    ExportOptions options;
    options.width = picture().size().width;
    options.height = picture().size().height;
    options.colors = pair.colors;
    // As from the window: a JPG stays in memory there.
    const ExportPlace place = pair.type == SavingtypeMethod::jpg ? ExportPlace() : ExportPlace{folder(), "file"};
    std::size_t bytes = 0;
    for (auto _ : state) {
        const Result<ExportedFile> file = runExport(pair.type, {picture(), {}}, options, place);
        if (!file)
            std::abort();
        bytes = file->path.empty() ? file->bytes.size() : std::filesystem::file_size(file->path);
    }
    state.counters["bytes"] = static_cast<double>(bytes);
    state.counters["at_most_times"] = pair.atMost;
}

void bare(benchmark::State& state, const Pair& pair)
{
    std::size_t bytes = 0;
    for (auto _ : state)
        bytes = pair.bare(picture().cgImage());
    state.counters["bytes"] = static_cast<double>(bytes);
}

} // namespace

// Each export, and below it the limit. Bytes of png: at most 1.12 times those of pngOfLevelSix.
int main(int argc, char** argv)
{
    ::setenv("LAMINA_MODULES", LAMINA_MODULES, 0);
    ::setenv("LAMINA_PROFILES", LAMINA_ASSETS "/profiles", 0);
    ::setenv("LAMINA_SOUNDS", LAMINA_ASSETS "/sounds", 0);
    UIScreen screen;
    screen.scale = 1; // a pixel in the file for each of the picture
    UIScreen::setMain(screen);
    for (const Pair& pair : pairs())
        for (const auto& [name, work] : {std::pair{pair.name, &exporting}, {pair.limit, &bare}})
            benchmark::RegisterBenchmark(name, [&pair, work = work](benchmark::State& state) { work(state, pair); })
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove_all(folder());
    return 0;
}
