#include "support/BenchPhotos.h"

#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/drawing/Resampling.h"

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

/// Which sample, at which size, under which name.
struct Photo {
    const char* sample;
    IntSize size;
    const char* name;
    int quality = 95;
};

constexpr IntSize kTwelveMegapixels{4000, 3000};
constexpr Photo kLargePhoto{LAMINA_SAMPLES "/meadow.jpg", {11600, 8700}, "100-megapixels"};
constexpr Photo kPhotoOf64{LAMINA_SAMPLES "/meadow.jpg", {9248, 6936}, "64-megapixels"};
constexpr Photo kPhotoOf24{LAMINA_SAMPLES "/meadow.jpg", {6000, 4000}, "24-megapixels"};
constexpr Photo kPhotoOfABlend{LAMINA_SAMPLES "/meadow.jpg", {1125, 1125}, "blend"};
constexpr IntSize kThreeMegapixels{2000, 1500};
constexpr Photo kPhotosOfMany[kSmallPhotos] = {
    {LAMINA_SAMPLES "/meadow.jpg", kThreeMegapixels, "small-0", 85},
    {LAMINA_SAMPLES "/dunes.jpg", kThreeMegapixels, "small-1", 85},
    {LAMINA_SAMPLES "/city-rain.jpg", kThreeMegapixels, "small-2", 85},
    {LAMINA_SAMPLES "/dawn-ridge.jpg", kThreeMegapixels, "small-3", 85},
    {LAMINA_SAMPLES "/sea-sunset.jpg", kThreeMegapixels, "small-4", 85},
    {LAMINA_SAMPLES "/aurora-lake.jpg", kThreeMegapixels, "small-5", 85},
};
constexpr Photo kPhotos[] = {
    {LAMINA_SAMPLES "/meadow.jpg", kTwelveMegapixels, "0"},
    {LAMINA_SAMPLES "/dunes.jpg", kTwelveMegapixels, "1"},
};

/// Enlarging leaves the finest detail empty, which would make the entropy coding cheaper than a camera's noise does.
void addGrain(std::vector<std::uint8_t>& row, std::mt19937& random)
{
    std::normal_distribution<float> grain(0, 4);
    for (std::uint8_t& sample : row) {
        const float noisy = static_cast<float>(sample) + grain(random);
        sample = static_cast<std::uint8_t>(noisy < 0 ? 0 : noisy > 255 ? 255 : noisy);
    }
}

void writeJpeg(const CGImage& image, const std::string& path, int quality)
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (file == nullptr)
        std::abort();
    jpeg_compress_struct encoder;
    jpeg_error_mgr errors;
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    jpeg_stdio_dest(&encoder, file);
    encoder.image_width = static_cast<JDIMENSION>(image.width());
    encoder.image_height = static_cast<JDIMENSION>(image.height());
    encoder.input_components = 4;
    encoder.in_color_space = JCS_EXT_RGBX;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, quality, TRUE);
    jpeg_start_compress(&encoder, TRUE);
    std::mt19937 random(7);
    for (int y = 0; y < image.height(); ++y) {
        std::vector<std::uint8_t> row(image.row(y),
                                      image.row(y) + std::size_t{4} * static_cast<unsigned>(image.width()));
        addGrain(row, random);
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&encoder, rows, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
    std::fclose(file);
}

void makePhoto(const Photo& photo, const std::string& path)
{
    const Result<UIImage> sample = loadPicture(photo.sample);
    if (!sample) {
        std::fprintf(stderr, "%s: %s\n", sample.error().subject.c_str(), sample.error().cause.c_str());
        std::abort();
    }
    writeJpeg(resampled(sample->cgImage(), photo.size), path + ".new", photo.quality);
    std::filesystem::rename(path + ".new", path);
}

std::string pathOf(const Photo& photo)
{
    const std::string name = std::string("lamina-bench-") + photo.name + ".jpg";
    std::string path = (std::filesystem::temp_directory_path() / name).string();
    if (std::filesystem::exists(path))
        return path;
    // In a process of its own: a benchmark that measures the memory of others must stay small, because they inherit its
    // peak.
    const pid_t child = ::fork();
    if (child == 0) {
        makePhoto(photo, path);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (status != 0)
        std::abort();
    return path;
}

} // namespace

std::string twelveMegapixelPhoto(int variant)
{
    return pathOf(kPhotos[variant]);
}

std::string hundredMegapixelPhoto()
{
    return pathOf(kLargePhoto);
}

std::string sixtyFourMegapixelPhoto()
{
    return pathOf(kPhotoOf64);
}

std::string twentyFourMegapixelPhoto()
{
    return pathOf(kPhotoOf24);
}

std::string smallPhoto(int variant)
{
    return pathOf(kPhotosOfMany[variant]);
}

std::string photoOfABlend()
{
    return pathOf(kPhotoOfABlend);
}

} // namespace lamina::bench
