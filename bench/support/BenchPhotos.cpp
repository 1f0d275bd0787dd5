#include "BenchPhotos.h"

#include "platform/image/PictureDecoding.h"
#include "platform/image/Resampling.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <jpeglib.h>
#include <random>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace lamina::bench {

namespace {

constexpr int kWidth = 4000;
constexpr int kHeight = 3000;

/// Enlarging leaves the finest detail empty, which would make the entropy coding cheaper than a camera's noise does.
void addGrain(std::vector<std::uint8_t>& row, std::mt19937& random)
{
    std::normal_distribution<float> grain(0, 4);
    for (std::uint8_t& sample : row) {
        const float noisy = static_cast<float>(sample) + grain(random);
        sample = static_cast<std::uint8_t>(noisy < 0 ? 0 : noisy > 255 ? 255 : noisy);
    }
}

void writeJpeg(const CGImage& image, const std::string& path)
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
    jpeg_set_quality(&encoder, 95, TRUE);
    jpeg_start_compress(&encoder, TRUE);
    std::mt19937 random(7);
    for (int y = 0; y < kHeight; ++y) {
        std::vector<std::uint8_t> row(image.row(y), image.row(y) + 4 * kWidth);
        addGrain(row, random);
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&encoder, rows, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
    std::fclose(file);
}

void makePhoto(int variant, const std::string& path)
{
    const Result<UIImage> sample =
        loadPicture(variant == 0 ? LAMINA_SAMPLES "/meadow.jpg" : LAMINA_SAMPLES "/dunes.jpg");
    if (!sample) {
        std::fprintf(stderr, "%s: %s\n", sample.error().subject.c_str(), sample.error().cause.c_str());
        std::abort();
    }
    writeJpeg(resampled(sample->cgImage(), {kWidth, kHeight}), path + ".new");
    std::filesystem::rename(path + ".new", path);
}

} // namespace

std::string twelveMegapixelPhoto(int variant)
{
    const std::string path =
        (std::filesystem::temp_directory_path() / ("lamina-bench-" + std::to_string(variant) + ".jpg")).string();
    if (std::filesystem::exists(path))
        return path;
    // In a process of its own: a benchmark that measures the memory of others must stay small, because they inherit its peak.
    const pid_t child = ::fork();
    if (child == 0) {
        makePhoto(variant, path);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (status != 0)
        std::abort();
    return path;
}

} // namespace lamina::bench
