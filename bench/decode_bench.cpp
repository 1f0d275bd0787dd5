// Decoding a phone's photo, at full size and as far reduced as a crop allows, beside the codec library alone.

#include "platform/image/codecs/PictureDecoding.h"
#include "support/BenchPhotos.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <jpeglib.h>
#include <memory>

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
    const std::unique_ptr<JSAMPLE[]> pixels(new JSAMPLE[std::size_t{4} * 4000 * 3000]);
    for (auto _ : state) {
        std::FILE* const file = std::fopen(path.c_str(), "rb");
        jpeg_decompress_struct decoder;
        jpeg_error_mgr errors;
        decoder.err = jpeg_std_error(&errors);
        jpeg_create_decompress(&decoder);
        jpeg_stdio_src(&decoder, file);
        jpeg_read_header(&decoder, TRUE);
        decoder.out_color_space = JCS_EXT_RGBX;
        decoder.scale_num = static_cast<unsigned>(state.range(0));
        decoder.scale_denom = 8;
        jpeg_start_decompress(&decoder);
        const std::size_t rowBytes = 4 * std::size_t{decoder.output_width};
        while (decoder.output_scanline < decoder.output_height) {
            JSAMPROW row = pixels.get() + rowBytes * decoder.output_scanline;
            jpeg_read_scanlines(&decoder, &row, 1);
        }
        jpeg_finish_decompress(&decoder);
        jpeg_destroy_decompress(&decoder);
        std::fclose(file);
        benchmark::DoNotOptimize(pixels.get());
    }
}
BENCHMARK(codecAlone)->Arg(8)->Arg(6)->Arg(1)->ArgName("eighths")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
