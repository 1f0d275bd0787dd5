// Pixels in lanes, compiled once for each kind of processor: included by what highway includes again and again.

#if defined(LAMINA_GPU_KERNELS_PIXELLANES_P_H) == defined(HWY_TARGET_TOGGLE)
#ifdef LAMINA_GPU_KERNELS_PIXELLANES_P_H
#undef LAMINA_GPU_KERNELS_PIXELLANES_P_H
#else
#define LAMINA_GPU_KERNELS_PIXELLANES_P_H
#endif

#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// A lane holds a pixel as a number whose lowest byte comes first in memory.
using Floats = hn::ScalableTag<float>;
using Ints = hn::Rebind<std::int32_t, Floats>;
using Pixels = hn::Rebind<std::uint32_t, Floats>;

/// A pixel a lane, 0 to 255 in each channel.
struct Color {
    hn::Vec<Floats> red;
    hn::Vec<Floats> green;
    hn::Vec<Floats> blue;
    hn::Vec<Floats> alpha;
};

/// As many pixels as there are lanes.
struct AllLanes {};
/// Fewer.
struct SomeLanes {
    std::size_t count;
};

HWY_INLINE hn::Vec<Pixels> loadRGBA(const std::uint8_t* p, AllLanes)
{
    return hn::LoadU(Pixels(), reinterpret_cast<const std::uint32_t*>(p));
}

HWY_INLINE hn::Vec<Pixels> loadRGBA(const std::uint8_t* p, SomeLanes lanes)
{
    HWY_ALIGN std::uint32_t pixels[hn::MaxLanes(Pixels())] = {};
    std::memcpy(pixels, p, 4 * lanes.count);
    return hn::Load(Pixels(), pixels);
}

HWY_INLINE void storeRGBA(hn::Vec<Pixels> rgba, std::uint8_t* p, AllLanes)
{
    hn::StoreU(rgba, Pixels(), reinterpret_cast<std::uint32_t*>(p));
}

HWY_INLINE void storeRGBA(hn::Vec<Pixels> rgba, std::uint8_t* p, SomeLanes lanes)
{
    HWY_ALIGN std::uint32_t pixels[hn::MaxLanes(Pixels())];
    hn::Store(rgba, Pixels(), pixels);
    std::memcpy(p, pixels, 4 * lanes.count);
}

template <int Place>
HWY_INLINE hn::Vec<Floats> channelOf(hn::Vec<Pixels> rgba)
{
    const auto value = hn::And(hn::ShiftRight<8 * Place>(rgba), hn::Set(Pixels(), 0xFF));
    return hn::ConvertTo(Floats(), hn::BitCast(Ints(), value));
}

HWY_INLINE Color colorOf(hn::Vec<Pixels> rgba)
{
    return {channelOf<0>(rgba), channelOf<1>(rgba), channelOf<2>(rgba), channelOf<3>(rgba)};
}

template <class Lanes>
HWY_INLINE Color loadColor(const std::uint8_t* p, Lanes lanes)
{
    return colorOf(loadRGBA(p, lanes));
}

/// Cut to a byte and rounded, ties to even.
HWY_INLINE hn::Vec<Pixels> byteOf(hn::Vec<Floats> value)
{
    const auto cut = hn::Min(hn::Max(value, hn::Zero(Floats())), hn::Set(Floats(), 255.0F));
    return hn::BitCast(Pixels(), hn::NearestInt(cut));
}

HWY_INLINE hn::Vec<Pixels> joined(hn::Vec<Floats> red, hn::Vec<Floats> green, hn::Vec<Floats> blue)
{
    return hn::Or(byteOf(red), hn::Or(hn::ShiftLeft<8>(byteOf(green)), hn::ShiftLeft<16>(byteOf(blue))));
}

template <class Lanes>
HWY_INLINE void storeColor(const Color& color, std::uint8_t* p, Lanes lanes)
{
    const auto rgb = joined(color.red, color.green, color.blue);
    storeRGBA(hn::Or(rgb, hn::ShiftLeft<24>(byteOf(color.alpha))), p, lanes);
}

/// The three colours with the alpha that `rgba` has.
template <class Lanes>
HWY_INLINE void storeWithAlphaOf(hn::Vec<Pixels> rgba, hn::Vec<Floats> red, hn::Vec<Floats> green, hn::Vec<Floats> blue,
                                 std::uint8_t* p, Lanes lanes)
{
    const auto alpha = hn::And(rgba, hn::Set(Pixels(), 0xFF000000));
    storeRGBA(hn::Or(joined(red, green, blue), alpha), p, lanes);
}

/// `step(at, lanes)` for groups of pixels that together are all; `at`: the group's first byte.
template <class Step>
HWY_INLINE void forPixels(std::size_t pixels, const Step& step)
{
    const std::size_t n = hn::Lanes(Floats());
    std::size_t i = 0;
    for (; i + n <= pixels; i += n)
        step(4 * i, AllLanes());
    if (i < pixels)
        step(4 * i, SomeLanes{pixels - i});
}

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#endif
