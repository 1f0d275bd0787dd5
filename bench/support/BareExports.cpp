#include "support/BareExports.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <jpeglib.h>
#include <lcms2.h>
#include <libdeflate.h>
#include <png.h>
#include <thread>
#include <tiffio.h>
#include <utility>
#include <vector>
#include <zlib.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/dict.h>
}

namespace lamina::bench {

namespace {

using Bytes = std::vector<std::uint8_t>;

void demand(bool good, const char* what)
{
    if (good)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    std::abort();
}

Bytes rgbOf(const CGImage& image)
{
    Bytes rgb;
    rgb.reserve(3 * static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()));
    const auto rgba = image.bytes();
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        rgb.insert(rgb.end(), {rgba[i], rgba[i + 1], rgba[i + 2]});
    return rgb;
}

std::uint8_t paeth(int left, int above, int corner)
{
    const int estimate = left + above - corner;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toCorner = std::abs(estimate - corner);
    if (toLeft <= toAbove && toLeft <= toCorner)
        return static_cast<std::uint8_t>(left);
    return static_cast<std::uint8_t>(toAbove <= toCorner ? above : corner);
}

Bytes paethRows(const Bytes& rgb, std::size_t rowBytes, std::size_t height)
{
    Bytes rows((rowBytes + 1) * height);
    const Bytes nothing(rowBytes);
    for (std::size_t y = 0; y < height; ++y) {
        const std::uint8_t* row = rgb.data() + y * rowBytes;
        const std::uint8_t* above = y > 0 ? row - rowBytes : nothing.data();
        std::uint8_t* out = rows.data() + y * (rowBytes + 1);
        *out++ = 4;
        for (std::size_t i = 0; i < rowBytes; ++i)
            out[i] =
                static_cast<std::uint8_t>(row[i] - paeth(i < 3 ? 0 : row[i - 3], above[i], i < 3 ? 0 : above[i - 3]));
    }
    return rows;
}

/// The work on each half at once; the sum of what comes of them.
std::size_t onBothCores(std::size_t rows, const std::function<std::size_t(std::size_t first, std::size_t last)>& work)
{
    std::size_t lower = 0;
    std::thread other([&] { lower = work(rows / 2, rows); });
    const std::size_t upper = work(0, rows / 2);
    other.join();
    return upper + lower;
}

std::size_t deflated(const std::uint8_t* bytes, std::size_t count)
{
    uLongf size = compressBound(count);
    Bytes target(size);
    demand(compress2(target.data(), &size, bytes, count, 1) == Z_OK, "zlib");
    return size;
}

} // namespace

std::size_t filterAndDeflate(const CGImage& image)
{
    const auto height = static_cast<std::size_t>(image.height());
    const Bytes rows = paethRows(rgbOf(image), 3 * static_cast<std::size_t>(image.width()), height);
    libdeflate_compressor* const compressor = libdeflate_alloc_compressor(1);
    Bytes target(libdeflate_zlib_compress_bound(compressor, rows.size()));
    const std::size_t size =
        libdeflate_zlib_compress(compressor, rows.data(), rows.size(), target.data(), target.size());
    libdeflate_free_compressor(compressor);
    demand(size > 0, "libdeflate");
    return size;
}

std::size_t pngOfLevelSix(const CGImage& image)
{
    const Bytes rgb = rgbOf(image);
    png_image description{};
    description.version = PNG_IMAGE_VERSION;
    description.width = static_cast<png_uint_32>(image.width());
    description.height = static_cast<png_uint_32>(image.height());
    description.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = 0;
    demand(png_image_write_to_memory(&description, nullptr, &size, 0, rgb.data(), 0, nullptr) != 0, "libpng");
    return size;
}

std::size_t jpegThereAndBack(const CGImage& image)
{
    jpeg_error_mgr errors;
    jpeg_compress_struct encoder;
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    unsigned char* file = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&encoder, &file, &size);
    encoder.image_width = static_cast<JDIMENSION>(image.width());
    encoder.image_height = static_cast<JDIMENSION>(image.height());
    encoder.input_components = 4;
    encoder.in_color_space = JCS_EXT_RGBX;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, 100, TRUE);
    encoder.comp_info[0].h_samp_factor = encoder.comp_info[0].v_samp_factor = 1;
    jpeg_start_compress(&encoder, TRUE);
    while (encoder.next_scanline < encoder.image_height) {
        JSAMPROW row = const_cast<JSAMPROW>(image.row(static_cast<int>(encoder.next_scanline)));
        jpeg_write_scanlines(&encoder, &row, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);

    jpeg_decompress_struct decoder;
    decoder.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decoder);
    jpeg_mem_src(&decoder, file, size);
    jpeg_read_header(&decoder, TRUE);
    decoder.out_color_space = JCS_EXT_RGBX;
    jpeg_start_decompress(&decoder);
    Bytes pixels(4 * std::size_t{decoder.output_width} * decoder.output_height);
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW row = pixels.data() + 4 * std::size_t{decoder.output_width} * decoder.output_scanline;
        jpeg_read_scanlines(&decoder, &row, 1);
    }
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
    std::free(file);
    return size;
}

std::size_t tiffOfLZW(const CGImage& image, const std::string& path)
{
    constexpr int kRows = 64;
    TIFF* const file = TIFFOpen(path.c_str(), "w");
    demand(file != nullptr, "libtiff");
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, image.width());
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, image.height());
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, 4);
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(file, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(file, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(file, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, kRows);
    Bytes strip(image.bytesPerRow() * kRows); // the library works in it
    for (int y = 0; y < image.height(); y += kRows) {
        const std::size_t size = image.bytesPerRow() * static_cast<std::size_t>(std::min(kRows, image.height() - y));
        std::copy_n(image.row(y), size, strip.data());
        const tmsize_t written = TIFFWriteEncodedStrip(file, static_cast<std::uint32_t>(y / kRows), strip.data(),
                                                       static_cast<tmsize_t>(size));
        demand(written >= 0, "libtiff");
    }
    TIFFClose(file);
    return std::filesystem::file_size(path);
}

std::size_t deflateRGB(const CGImage& image)
{
    const Bytes rgb = rgbOf(image);
    const std::size_t rowBytes = 3 * static_cast<std::size_t>(image.width());
    return onBothCores(static_cast<std::size_t>(image.height()), [&](std::size_t first, std::size_t last) {
        return deflated(rgb.data() + first * rowBytes, (last - first) * rowBytes);
    });
}

std::size_t inksAndDeflate(const CGImage& image, const std::string& profile)
{
    // Warm: prepared with the first call.
    static const cmsHTRANSFORM transform = [&] {
        cmsHPROFILE inks = cmsOpenProfileFromFile(profile.c_str(), "r");
        demand(inks != nullptr, "lcms2");
        cmsHPROFILE light = cmsCreate_sRGBProfile();
        cmsHTRANSFORM made = cmsCreateTransform(light, TYPE_RGBA_8, inks, TYPE_CMYK_8, INTENT_PERCEPTUAL,
                                                cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_NOCACHE);
        cmsCloseProfile(light);
        cmsCloseProfile(inks);
        return made;
    }();
    const auto width = static_cast<std::size_t>(image.width());
    Bytes inks(image.bytes().size());
    return onBothCores(static_cast<std::size_t>(image.height()), [&](std::size_t first, std::size_t last) {
        std::uint8_t* const target = inks.data() + 4 * width * first;
        cmsDoTransform(transform, image.bytes().data() + 4 * width * first, target,
                       static_cast<cmsUInt32Number>(width * (last - first)));
        return deflated(target, 4 * width * (last - first));
    });
}

namespace {

std::size_t drain(AVCodecContext* encoder, AVPacket* packet)
{
    std::size_t size = 0;
    while (avcodec_receive_packet(encoder, packet) == 0) {
        size += static_cast<std::size_t>(packet->size);
        av_packet_unref(packet);
    }
    return size;
}

AVFrame* noisyFrame(int width, int height)
{
    AVFrame* frame = av_frame_alloc();
    frame->format = AV_PIX_FMT_YUV420P;
    frame->width = width;
    frame->height = height;
    demand(av_frame_get_buffer(frame, 0) == 0, "FFmpeg");
    std::uint32_t state = 1;
    for (int plane = 0; plane < 3; ++plane)
        for (int y = 0; y < (plane > 0 ? height / 2 : height); ++y)
            for (int x = 0; x < frame->linesize[plane]; ++x) {
                state = state * 1664525u + 1013904223u;
                frame->data[plane][y * frame->linesize[plane] + x] = static_cast<std::uint8_t>(118 + (state >> 28));
            }
    return frame;
}

} // namespace

std::size_t x264Alone(int width, int height)
{
    constexpr int kFrames = 90;
    const AVCodec* const codec = avcodec_find_encoder_by_name("libx264");
    demand(codec != nullptr, "libx264");
    AVCodecContext* encoder = avcodec_alloc_context3(codec);
    encoder->width = width + width % 2;
    encoder->height = height + height % 2;
    encoder->pix_fmt = AV_PIX_FMT_YUV420P;
    encoder->time_base = {1, 30};
    encoder->max_b_frames = 0;
    encoder->thread_count = 2;
    AVDictionary* options = nullptr;
    for (const auto& [key, value] : {std::pair{"preset", "veryfast"}, {"tune", "stillimage"}, {"crf", "18"}})
        av_dict_set(&options, key, value, 0);
    demand(avcodec_open2(encoder, codec, &options) == 0, "libx264");
    av_dict_free(&options);
    AVFrame* frame = noisyFrame(encoder->width, encoder->height);
    AVPacket* packet = av_packet_alloc();
    std::size_t size = 0;
    for (int i = 0; i < kFrames; ++i) {
        frame->pts = i;
        demand(avcodec_send_frame(encoder, frame) == 0, "libx264");
        size += drain(encoder, packet);
    }
    avcodec_send_frame(encoder, nullptr);
    size += drain(encoder, packet);
    av_packet_free(&packet);
    av_frame_free(&frame);
    avcodec_free_context(&encoder);
    return size;
}

} // namespace lamina::bench
