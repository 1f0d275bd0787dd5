#pragma once

#include "FilterReference.h"

#include <cmath>

namespace lamina::test {

/// `color` graded by a table of 8 x 8 tiles of 64 x 64 entries: interpolated between the eight entries around it.
inline Color lookedUp(const Texture& table, const Color& color)
{
    const double blue = 63 * color[2];
    Color tiles[2];
    for (int k = 0; k < 2; ++k) {
        const int tile = static_cast<int>(k == 0 ? std::floor(blue) : std::ceil(blue));
        // Entry 0 of a tile is the middle of its first texel, entry 63 that of its last.
        const int column = tile % 8;
        const int row = tile / 8;
        const double x = column * 64 + 0.5 + 63 * color[0];
        const double y = row * 64 + 0.5 + 63 * color[1];
        tiles[k] = table.sample(x / 512, y / 512);
    }
    Color result = color;
    for (std::size_t k = 0; k < 3; ++k)
        result[k] = std::lerp(tiles[0][k], tiles[1][k], blue - std::floor(blue));
    return result;
}

inline Formula lookUp(const CGImage& table, double intensity)
{
    return [texture = Texture(table), intensity](const Texture& in, double u, double v) {
        const Color color = in.sample(u, v);
        Color result = lookedUp(texture, color);
        for (std::size_t k = 0; k < 3; ++k)
            result[k] = std::lerp(color[k], result[k], intensity);
        return result;
    };
}

} // namespace lamina::test
