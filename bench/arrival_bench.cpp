// A photo of 12 megapixels that arrives in pieces of 16 KB, beside decoding the whole file, which is the limit. With a
// picture asked for at the end, and after each of its hundred parts. `MB`: by how much a process of its own grows.

#include "platform/image/codecs/CGImageSource.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "support/BenchPhotos.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <jpeglib.h>
#include <malloc.h>
#include <map>
#include <png.h>
#include <span>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace lamina;
using Bytes = std::vector<std::uint8_t>;

Bytes contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The same coefficients in the usual ten scans.
Bytes inScans(const Bytes& photo)
{
    jpeg_error_mgr errors{};
    jpeg_decompress_struct from{};
    jpeg_compress_struct to{};
    from.err = to.err = jpeg_std_error(&errors); // ends the program
    jpeg_create_decompress(&from);
    jpeg_create_compress(&to);
    jpeg_mem_src(&from, photo.data(), photo.size());
    jpeg_read_header(&from, TRUE);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&to, &memory, &size);
    jvirt_barray_ptr* const coefficients = jpeg_read_coefficients(&from);
    jpeg_copy_critical_parameters(&from, &to);
    jpeg_simple_progression(&to);
    jpeg_write_coefficients(&to, coefficients);
    jpeg_finish_compress(&to);
    const Bytes bytes(memory, memory + size);
    jpeg_destroy_compress(&to);
    jpeg_destroy_decompress(&from);
    std::free(memory);
    return bytes;
}

Bytes asPNG(const CGImage& picture, int interlacing)
{
    Bytes bytes;
    png_structp png =
        png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr); // errors end the program
    png_infop info = png_create_info_struct(png);
    const auto write = [](png_structp writer, png_bytep data, std::size_t count) {
        auto& target = *static_cast<Bytes*>(png_get_io_ptr(writer));
        target.insert(target.end(), data, data + count);
    };
    png_set_write_fn(png, &bytes, write, nullptr);
    png_set_compression_level(png, 1);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width()), static_cast<png_uint_32>(picture.height()), 8,
                 PNG_COLOR_TYPE_RGB, interlacing, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_set_filler(png, 0, PNG_FILLER_AFTER);
    std::vector<png_bytep> rows;
    for (int y = 0; y < picture.height(); ++y)
        rows.push_back(const_cast<png_bytep>(picture.row(y))); // which it only reads
    png_write_image(png, rows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return bytes;
}

const Bytes& file(std::string_view kind)
{
    static std::map<std::string_view, Bytes> files;
    Bytes& bytes = files[kind];
    if (!bytes.empty())
        return bytes;
    const Bytes photo = contents(bench::twelveMegapixelPhoto());
    if (kind == "jpeg")
        bytes = photo;
    else if (kind == "progressive")
        bytes = inScans(photo);
    else
        bytes = asPNG(decodePicture(photo, "photo")->cgImage(),
                      kind == "interlaced" ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE);
    return bytes;
}

void decodeWhole(const Bytes& bytes)
{
    Result<UIImage> picture = decodePicture(bytes, "photo");
    benchmark::DoNotOptimize(picture);
}

template <std::size_t looks>
void decodeArriving(const Bytes& bytes)
{
    constexpr std::size_t kPiece = 16'384;
    const auto source = CGImageSource::makeIncremental();
    CGImage picture;
    std::size_t looked = 0;
    for (std::size_t size = 0; size < bytes.size();) {
        size = std::min(size + kPiece, bytes.size());
        source->updateData(std::span(bytes).first(size), size == bytes.size());
        if (looks * size / bytes.size() == looked)
            continue;
        looked = looks * size / bytes.size();
        picture = source->imageAtIndex();
    }
    benchmark::DoNotOptimize(picture);
}

using Decode = void (*)(const Bytes&);

double megabytesOf(Decode decode, const Bytes& bytes)
{
    int ends[2];
    if (::pipe(ends) != 0)
        return 0;
    const pid_t child = ::fork();
    if (child == 0) {
        const auto peak = [] {
            rusage usage{};
            ::getrusage(RUSAGE_SELF, &usage);
            return static_cast<double>(usage.ru_maxrss) / 1024;
        };
        const double before = peak();
        decode(bytes);
        const double grown = peak() - before;
        ::_exit(::write(ends[1], &grown, sizeof grown) == sizeof grown ? 0 : 1);
    }
    double grown = 0;
    ::waitpid(child, nullptr, 0);
    if (::read(ends[0], &grown, sizeof grown) != sizeof grown)
        grown = 0;
    ::close(ends[0]);
    ::close(ends[1]);
    return grown;
}

void arrive(benchmark::State& state, std::string_view kind, Decode decode)
{
    const Bytes& bytes = file(kind);
    PixelBuffer::releaseIdle();
    ::malloc_trim(0); // what making the files has left would serve
    state.counters["MB"] = megabytesOf(decode, bytes);
    for (auto _ : state)
        decode(bytes);
}

const bool registered = [] {
    struct Way {
        const char* name;
        Decode decode;
    };
    for (const char* kind : {"jpeg", "progressive", "png", "interlaced"}) {
        for (const Way& way :
             {Way{"whole", decodeWhole}, {"arriving", decodeArriving<1>}, {"shown", decodeArriving<100>}})
            benchmark::RegisterBenchmark((std::string(kind) + "/" + way.name).c_str(), arrive, kind, way.decode)
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime();
    }
    return true;
}();

} // namespace

BENCHMARK_MAIN();
