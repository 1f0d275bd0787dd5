// Pixels in lanes as whole numbers of 16 bits, compiled once for each kind of processor: included by what highway
// includes again and again. Not for HWY_SCALAR, which has no such lanes.

#if defined(LAMINA_GPU_KERNELS_PIXELPARTS_P_H) == defined(HWY_TARGET_TOGGLE)
#ifdef LAMINA_GPU_KERNELS_PIXELPARTS_P_H
#undef LAMINA_GPU_KERNELS_PIXELPARTS_P_H
#else
#define LAMINA_GPU_KERNELS_PIXELPARTS_P_H
#endif

#include "gpu/kernels/PixelLanes_p.h"

#include <hwy/highway.h>

#include <cstdint>

#if HWY_TARGET != HWY_SCALAR

HWY_BEFORE_NAMESPACE();
namespace lamina::kernels {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Pairs = hn::Repartition<std::int16_t, Pixels>;

/// Numbers of 16 bits with seven bits behind the point: red and blue, green and alpha.
struct Parts {
    hn::Vec<Pairs> redBlue;
    hn::Vec<Pairs> greenAlpha;
};

HWY_INLINE Parts partsOf(hn::Vec<Pixels> rgba)
{
    const auto mask = hn::Set(Pixels(), 0x7F807F80);
    return {hn::BitCast(Pairs(), hn::And(hn::ShiftLeft<7>(rgba), mask)),
            hn::BitCast(Pairs(), hn::And(hn::ShiftRight<1>(rgba), mask))};
}

/// `share` has 15 bits behind the point.
HWY_INLINE Parts mixed(const Parts& from, const Parts& to, hn::Vec<Pairs> share)
{
    return {hn::Add(from.redBlue, hn::MulFixedPoint15(hn::Sub(to.redBlue, from.redBlue), share)),
            hn::Add(from.greenAlpha, hn::MulFixedPoint15(hn::Sub(to.greenAlpha, from.greenAlpha), share))};
}

/// Rounded to bytes.
HWY_INLINE hn::Vec<Pixels> rgbaOf(const Parts& parts)
{
    const auto half = hn::Set(Pairs(), std::int16_t{64});
    const auto bytes = hn::Set(Pixels(), 0x00FF00FF);
    const auto rounded = [&](hn::Vec<Pairs> part) HWY_ATTR {
        return hn::And(hn::ShiftRight<7>(hn::BitCast(Pixels(), hn::Add(part, half))), bytes);
    };
    return hn::Or(rounded(parts.redBlue), hn::ShiftLeft<8>(rounded(parts.greenAlpha)));
}

} // namespace HWY_NAMESPACE
} // namespace lamina::kernels
HWY_AFTER_NAMESPACE();

#endif
#endif
