#include "gpu/kernels/LookupKernel.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "gpu/kernels/LookupKernel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "gpu/kernels/PixelLanes_p.h"
#include "gpu/kernels/PixelParts_p.h"

#ifndef LAMINA_LOOKUP_KERNEL_TYPES
#define LAMINA_LOOKUP_KERNEL_TYPES
namespace lamina::kernels {

/// Entries on a side of the cube.
constexpr std::size_t kSide = 64;
constexpr std::size_t kGreenStep = kSide;
constexpr std::size_t kBlueStep = kSide * kSide;

} // namespace lamina::kernels
#endif

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

constexpr int byFixedPoint(int value, int share)
{
    return (value * share + (1 << 14)) >> 15;
}

constexpr int mixed(int from, int to, int share)
{
    return from + byFixedPoint(to - from, share);
}

/// The same for processors without lanes, by the same whole numbers.
void LookupRow(const std::uint8_t* in, std::size_t pixels, const std::uint32_t* cube, std::uint32_t share,
               std::uint8_t* out)
{
    const auto* const entries = reinterpret_cast<const std::uint8_t*>(cube);
    const auto placeOf = [](std::uint32_t value) { return value * (63 * 257) + (value >> 2); };
    const auto shareOf = [](std::uint32_t place) { return static_cast<int>(place >> 1 & 0x7FFF); };
    for (std::size_t i = 0; i < 4 * pixels; i += 4) {
        const std::uint32_t red = placeOf(in[i]);
        const std::uint32_t green = placeOf(in[i + 1]);
        const std::uint32_t blue = placeOf(in[i + 2]);
        const std::size_t index = (red >> 16) + kSide * (green >> 16) + kSide * kSide * (blue >> 16);
        for (std::size_t c = 0; c < 3; ++c) {
            const auto value = [&](std::size_t offset) { return entries[4 * (index + offset) + c] << 7; };
            const auto across = [&](std::size_t offset) {
                return mixed(value(offset), value(offset + 1), shareOf(red));
            };
            const auto flat = [&](std::size_t offset) {
                return mixed(across(offset), across(offset + kGreenStep), shareOf(green));
            };
            int look = mixed(flat(0), flat(kBlueStep), shareOf(blue));
            if (share < 0x8000)
                look = mixed(in[i + c] << 7, look, static_cast<int>(share));
            out[i + c] = static_cast<std::uint8_t>((look + 64) >> 7);
        }
        out[i + 3] = in[i + 3];
    }
}

#else

namespace hn = hwy::HWY_NAMESPACE;

/// Where a channel lies in the cube.
struct Place {
    hn::Vec<Pixels> entry;
    hn::Vec<Pairs> share; ///< of the next entry
};

template <int Channel>
HWY_INLINE Place placeOf(hn::Vec<Pixels> rgba)
{
    const auto value = hn::And(hn::ShiftRight<8 * Channel>(rgba), hn::Set(Pixels(), 0xFF));
    // 63 / 255 with 16 bits behind the point is 16191 and about a quarter; 255 falls on the last entry.
    const auto place = hn::Add(hn::Mul(value, hn::Set(Pixels(), 63 * 257)), hn::ShiftRight<2>(value));
    const auto share = hn::And(hn::ShiftRight<1>(place), hn::Set(Pixels(), 0x7FFF));
    return {hn::ShiftRight<16>(place), hn::BitCast(Pairs(), hn::Or(share, hn::ShiftLeft<16>(share)))};
}

/// `cube`: entries as R G B A, red fastest, then green; one step of each further than the last is memory too.
/// `share`: of the graded colour, with 15 bits behind the point; 0x8000: all of it.
void LookupRow(const std::uint8_t* in, std::size_t pixels, const std::uint32_t* cube, std::uint32_t share,
               std::uint8_t* out)
{
    const auto part = hn::Set(Pairs(), static_cast<std::int16_t>(share & 0x7FFF));
    forPixels(pixels, [&](std::size_t at, auto lanes) HWY_ATTR {
        const auto rgba = loadRGBA(in + at, lanes);
        const Place red = placeOf<0>(rgba);
        const Place green = placeOf<1>(rgba);
        const Place blue = placeOf<2>(rgba);
        const auto index = hn::BitCast(
            Ints(), hn::Add(red.entry, hn::Add(hn::ShiftLeft<6>(green.entry), hn::ShiftLeft<12>(blue.entry))));
        const auto entries = [&](std::size_t offset) HWY_ATTR {
            const Parts near = partsOf(hn::GatherIndex(Pixels(), cube + offset, index));
            const Parts far = partsOf(hn::GatherIndex(Pixels(), cube + offset + 1, index));
            return mixed(near, far, red.share);
        };
        const Parts lower = mixed(entries(0), entries(kGreenStep), green.share);
        const Parts upper = mixed(entries(kBlueStep), entries(kBlueStep + kGreenStep), green.share);
        Parts look = mixed(lower, upper, blue.share);
        if (share < 0x8000)
            look = mixed(partsOf(rgba), look, part);
        const auto colors = hn::And(rgbaOf(look), hn::Set(Pixels(), 0x00FFFFFF));
        const auto alpha = hn::And(rgba, hn::Set(Pixels(), 0xFF000000));
        storeRGBA(hn::Or(colors, alpha), out + at, lanes);
    });
}

#endif

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lamina::kernels {

HWY_EXPORT(LookupRow);

namespace {

constexpr int kTableSide = 512;
constexpr std::size_t kTilesInRow = 8;
constexpr std::size_t kEntries = kSide * kSide * kSide;
/// What is read beyond the last entry, with no weight.
constexpr std::size_t kBeyond = kBlueStep + kGreenStep + 1;

/// The tiles of the table one after the other.
PixelBuffer cubeOf(const KernelPixels& table)
{
    PixelBuffer cube = PixelBuffer::allocate(4 * (kEntries + kBeyond));
    if (!cube)
        return cube;
    for (std::size_t blue = 0; blue < kSide; ++blue) {
        for (std::size_t green = 0; green < kSide; ++green) {
            const std::uint8_t* const row = table.row(static_cast<int>(blue / kTilesInRow * kSide + green));
            std::memcpy(cube.data() + 4 * kSide * (blue * kSide + green), row + 4 * kSide * (blue % kTilesInRow),
                        4 * kSide);
        }
    }
    std::memset(cube.data() + 4 * kEntries, 0, 4 * kBeyond);
    return cube;
}

bool graded(const KernelFrame& frame, std::uint32_t share)
{
    const PixelBuffer cube = cubeOf(frame.second);
    if (!cube)
        return false;
    const auto* const entries = reinterpret_cast<const std::uint32_t*>(cube.data());
    const auto width = static_cast<std::size_t>(frame.first.size.width);
    parallelRows(0, frame.first.size.height, 4 * width, [&](int first, int last) {
        for (int y = first; y < last; ++y)
            HWY_DYNAMIC_DISPATCH(LookupRow)(frame.first.row(y), width, entries, share, frame.outputRow(y));
    });
    return true;
}

} // namespace

FilterKernel lookupKernel(float intensity)
{
    if (!(intensity >= 0 && intensity <= 1))
        return {};
    const auto share = static_cast<std::uint32_t>(std::lround(intensity * 0x8000));
    return {[share](const KernelFrame& frame) { return graded(frame, share); }, IntSize{kTableSide, kTableSide}};
}

} // namespace lamina::kernels

#endif
