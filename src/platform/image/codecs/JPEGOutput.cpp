#include "platform/image/codecs/JPEGOutput_p.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/codecs/JPEGCoefficients_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace lamina {

namespace {

constexpr int kEighths = 8;

constexpr std::uint64_t divideUp(std::uint64_t value, std::uint64_t divisor)
{
    return (value + divisor - 1) / divisor;
}

/// The smallest number of eighths that leaves `shortSide` pixels on the shorter side. Where that is more than half, the
/// whole is read instead if it is of moderate size: the library has vector code for the whole and the half, and none
/// for what lies between (12 megapixels: 45 ms whole, 70 ms at seven eighths).
unsigned reducedEighths(unsigned width, unsigned height, int shortSide)
{
    constexpr std::uint64_t kModerateBytes = 64u << 20;
    if (shortSide <= 0)
        return kEighths;
    const std::uint64_t shorter = std::min(width, height);
    const bool wholeIsModerate = std::uint64_t{4} * width * height <= kModerateBytes;
    const unsigned most = wholeIsModerate ? kEighths / 2 : kEighths - 1;
    for (unsigned eighths = 1; eighths <= most; ++eighths)
        if (divideUp(shorter * eighths, kEighths) >= static_cast<std::uint64_t>(shortSide))
            return eighths;
    return kEighths;
}

/// Whether the picture's claim may be believed. Where the coefficients of several scans are too much to be held as they
/// are, they are packed.
Outcome weigh(JPEGInput& input, std::uint64_t blocks, std::uint64_t fileBytes, const DecodeOptions& options)
{
    constexpr std::uint64_t kWorkingBytesPerColumn = 64; // the codec's rows while it upsamples and converts
    jpeg_decompress_struct& info = input.info();
    const auto accepted = [&](std::uint64_t held) {
        return checkClaim(info.image_width, info.image_height, held, fileBytes, options);
    };
    const std::uint64_t held =
        std::uint64_t{4} * info.output_width * info.output_height + kWorkingBytesPerColumn * info.image_width;
    if (!jpeg_has_multiple_scans(&info) || accepted(held + blocks * sizeof(JBLOCK)))
        return accepted(held);
    const Outcome packed = accepted(held + blocks * PackedCoefficients::kLeastBytesPerBlock);
    if (packed)
        input.packCoefficients(options.memoryLimit - held);
    return packed;
}

void invert(const PixelRows& rows)
{
    parallelRows(0, rows.height, static_cast<std::size_t>(rows.width), [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            std::uint8_t* row = rows.first + static_cast<std::size_t>(y) * rows.bytesPerRow;
            for (std::size_t i = 0; i < 4 * static_cast<std::size_t>(rows.width); ++i)
                row[i] = static_cast<std::uint8_t>(255 - row[i]);
        }
    });
}

CGColorSpace::Model modelOf(const jpeg_decompress_struct& info)
{
    if (info.out_color_space == JCS_CMYK)
        return CGColorSpace::Model::CMYK;
    return info.jpeg_color_space == JCS_GRAYSCALE ? CGColorSpace::Model::Gray : CGColorSpace::Model::RGB;
}

} // namespace

std::uint64_t blockCount(const jpeg_decompress_struct& info)
{
    std::uint64_t blocks = 0;
    for (int i = 0; i < info.num_components; ++i) {
        const jpeg_component_info& component = info.comp_info[i];
        const auto along = [](unsigned side, int sampling, int most) {
            const auto unit = 8 * static_cast<std::uint64_t>(most);
            return divideUp(side, unit) * static_cast<std::uint64_t>(sampling);
        };
        blocks += along(info.image_width, component.h_samp_factor, info.max_h_samp_factor) *
                  along(info.image_height, component.v_samp_factor, info.max_v_samp_factor);
    }
    return blocks;
}

Outcome prepareOutput(JPEGInput& input, std::uint64_t fileBytes, const DecodeOptions& options)
{
    jpeg_decompress_struct& info = input.info();
    if (info.arith_code)
        return Error{{}, "JPEG pictures with arithmetic coding are not supported"};
    switch (info.jpeg_color_space) {
    case JCS_GRAYSCALE:
    case JCS_YCbCr:
    case JCS_RGB:
        info.out_color_space = JCS_EXT_RGBA;
        break;
    case JCS_CMYK:
    case JCS_YCCK:
        info.out_color_space = JCS_CMYK;
        break;
    default:
        return Error{{}, "this kind of JPEG is not supported"};
    }
    info.scale_num = reducedEighths(info.image_width, info.image_height, options.shortSide);
    info.scale_denom = kEighths;
    info.dct_method = JDCT_ISLOW;
    // It would guess at what scans left out; such files are refused or whole.
    info.do_block_smoothing = FALSE;
    if (!input.attempt([&] { jpeg_calc_output_dimensions(&info); }))
        return input.error();

    const std::uint64_t blocks = blockCount(info);
    input.limitWork(blocks, fileBytes);
    return weigh(input, blocks, fileBytes, options);
}

JPEGColors::JPEGColors(JPEGInput& input)
    : m_hasInks(input.info().out_color_space == JCS_CMYK)
    , m_isInverted(input.info().saw_Adobe_marker != 0)
    , m_conversion(ColorConversion::toSRGB(input.profile(), modelOf(input.info())))
{
}

void JPEGColors::convertRows(const PixelRows& rows, const std::atomic<bool>* cancelled) const
{
    if (m_hasInks && m_isInverted)
        invert(rows);
    if (m_conversion)
        m_conversion->convertRows(rows, cancelled);
    else if (m_hasInks)
        convertDeviceCMYK(rows);
}

} // namespace lamina
