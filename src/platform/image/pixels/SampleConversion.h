#pragma once

#include <algorithm>
#include <cstdint>

namespace lamina {

/// A sample of [0, largest] in [0, 255], rounded to nearest. `largest` below 2^24.
constexpr std::uint8_t to8Bits(std::uint32_t value, std::uint32_t largest)
{
    return static_cast<std::uint8_t>((std::min(value, largest) * std::uint64_t{255} + largest / 2) / largest);
}

/// round(value · 255 / 65535), which is value / 257 to the nearest.
constexpr std::uint8_t from16Bits(std::uint32_t value)
{
    return static_cast<std::uint8_t>((value + 128) / 257);
}

/// A premultiplied colour component in its straight form. A clear pixel has no colour and gives 0; a component above
/// its alpha, which is not possible in a sound picture, saturates.
constexpr std::uint8_t straightComponent(std::uint32_t premultiplied, std::uint32_t alpha)
{
    if (alpha == 0)
        return 0;
    return static_cast<std::uint8_t>(std::min<std::uint32_t>(255, (premultiplied * 255 + alpha / 2) / alpha));
}

/// Pixels of RGBA from premultiplied to straight, in place.
inline void makeStraight(std::uint8_t* rgba, int pixels)
{
    for (std::uint8_t* end = rgba + 4 * static_cast<std::ptrdiff_t>(pixels); rgba != end; rgba += 4) {
        if (rgba[3] == 255)
            continue;
        for (int c = 0; c < 3; ++c)
            rgba[c] = straightComponent(rgba[c], rgba[3]);
    }
}

} // namespace lamina
