#include "platform/media/ffmpeg/BGRAConversion_p.h"

#include <algorithm>
#include <cstring>
#include <vector>

// The formulas of ITU-R BT.709-6, 3.2 to 3.4, with sums in whole numbers: the same on every processor.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/media/ffmpeg/BGRAConversion.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

// The loops are plain ones, which the compiler turns into the lanes of each kind of processor.
HWY_BEFORE_NAMESPACE();
namespace lamina {
namespace HWY_NAMESPACE {

constexpr int kBits = 16;
constexpr double kRed = 0.2126;
constexpr double kBlue = 0.0722;
constexpr double kGreen = 1 - kRed - kBlue;

constexpr int weight(double share)
{
    return static_cast<int>(share * (1 << kBits) + (share < 0 ? -0.5 : 0.5));
}

constexpr double kOfLuma = 219.0 / 255;
constexpr double kOfCb = 224.0 / 255 / (2 * (1 - kBlue));
constexpr double kOfCr = 224.0 / 255 / (2 * (1 - kRed));

void LumaRow(const std::uint8_t* pixels, std::size_t count, int blueAt, std::uint8_t* luma)
{
    constexpr int kRounding = (16 << kBits) + (1 << (kBits - 1));
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, pixels + 4 * i, 4);
        const int b = static_cast<int>(pixel >> blueAt & 255);
        const int g = static_cast<int>(pixel >> 8 & 255);
        const int r = static_cast<int>(pixel >> (16 - blueAt) & 255);
        luma[i] = static_cast<std::uint8_t>(
            (weight(kBlue * kOfLuma) * b + weight(kGreen * kOfLuma) * g + weight(kRed * kOfLuma) * r + kRounding) >>
            kBits);
    }
}

/// `sums`: room for three rows of count + 2 numbers.
void ChromaRow(const std::uint8_t* upper, const std::uint8_t* lower, std::size_t count, int blueAt, int* sums,
               std::uint8_t* cb, std::uint8_t* cr)
{
    const std::size_t stride = count + 2;
    int* const blue = sums + 1;
    int* const green = blue + stride;
    int* const red = green + stride;
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t above;
        std::uint32_t below;
        std::memcpy(&above, upper + 4 * i, 4);
        std::memcpy(&below, lower + 4 * i, 4);
        blue[i] = static_cast<int>((above >> blueAt & 255) + (below >> blueAt & 255));
        green[i] = static_cast<int>((above >> 8 & 255) + (below >> 8 & 255));
        red[i] = static_cast<int>((above >> (16 - blueAt) & 255) + (below >> (16 - blueAt) & 255));
    }
    for (int* row : {blue, green, red}) {
        row[-1] = row[0];
        row[count] = row[count - 1];
    }
    constexpr int kAll = kBits + 3; // of the eight shares that a sample is a mean of
    constexpr int kRounding = (128 << kAll) + (1 << (kAll - 1));
    const auto mean = [](const int* row, std::size_t i) {
        return row[static_cast<std::ptrdiff_t>(2 * i) - 1] + 2 * row[2 * i] + row[2 * i + 1];
    };
    for (std::size_t i = 0; i < (count + 1) / 2; ++i) {
        const int b = mean(blue, i);
        const int g = mean(green, i);
        const int r = mean(red, i);
        constexpr int kBlueOfCb = weight((1 - kBlue) * kOfCb);
        constexpr int kRedOfCb = weight(-kRed * kOfCb);
        constexpr int kRedOfCr = weight((1 - kRed) * kOfCr);
        constexpr int kBlueOfCr = weight(-kBlue * kOfCr);
        // What is left for green makes greys come out as exactly 128.
        cb[i] =
            static_cast<std::uint8_t>((kBlueOfCb * b + kRedOfCb * r - (kBlueOfCb + kRedOfCb) * g + kRounding) >> kAll);
        cr[i] =
            static_cast<std::uint8_t>((kRedOfCr * r + kBlueOfCr * b - (kRedOfCr + kBlueOfCr) * g + kRounding) >> kAll);
    }
}

} // namespace HWY_NAMESPACE
} // namespace lamina
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina {

HWY_EXPORT(LumaRow);
HWY_EXPORT(ChromaRow);

void convertBGRATo420(const std::uint8_t* pixels, std::ptrdiff_t bytesPerRow, IntSize size, bool redFirst,
                      const ByteRows (&planes)[3])
{
    const int blueAt = redFirst ? 16 : 0; // the bit
    const auto count = static_cast<std::size_t>(size.width);
    std::vector<int> sums(3 * (count + 2));
    for (int y = 0; y < size.height; y += 2) {
        const std::uint8_t* upper = pixels + y * bytesPerRow;
        const std::uint8_t* lower = y + 1 < size.height ? upper + bytesPerRow : upper;
        std::uint8_t* luma = planes[0].bytes + y * planes[0].bytesPerRow;
        HWY_DYNAMIC_DISPATCH(LumaRow)(upper, count, blueAt, luma);
        if (lower != upper)
            HWY_DYNAMIC_DISPATCH(LumaRow)(lower, count, blueAt, luma + planes[0].bytesPerRow);
        HWY_DYNAMIC_DISPATCH(ChromaRow)
        (upper, lower, count, blueAt, sums.data(), planes[1].bytes + y / 2 * planes[1].bytesPerRow,
         planes[2].bytes + y / 2 * planes[2].bytesPerRow);
    }
}

} // namespace lamina

#endif
