#pragma once

#include "EveryProcessor.h"
#include "GeometrySupport.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace lamina::test {

struct Named {
    const char* name;
    std::function<UIImage(const UIImage&)> filter;
};

/// The picture as A R G B premultiplied, or with 255 before opaque pixels: the plain way, for four bytes in the order
/// R G B A.
inline std::vector<Bytes> drawnPlainly(const UIImage& image)
{
    std::vector<Bytes> all = allBytes(image);
    for (Bytes& p : all) {
        const std::uint8_t alpha = image.cgImage().hasAlpha() ? p[3] : 255;
        const bool straight = image.cgImage().alphaInfo() == CGImageAlphaInfo::Last;
        for (std::uint8_t& c : p)
            c = straight ? static_cast<std::uint8_t>(std::lround(c * alpha / 255.0)) : c;
        p = {alpha, p[0], p[1], p[2]};
    }
    return all;
}

/// Pictures of sizes below, at and beyond the number of lanes, with and without alpha.
inline std::vector<UIImage> noisePictures()
{
    std::vector<UIImage> all;
    for (const IntSize size :
         {IntSize{1, 1}, {1, 40}, {2, 3}, {3, 2}, {3, 3}, {4, 5}, {5, 5}, {17, 9}, {64, 7}, {331, 203}}) {
        for (const CGImageAlphaInfo alpha :
             {CGImageAlphaInfo::NoneSkipLast, CGImageAlphaInfo::PremultipliedLast, CGImageAlphaInfo::Last})
            all.push_back(noise(size.width, size.height, bitmapInfo(alpha)));
    }
    return all;
}

/// Byte for byte; says where the first difference is.
inline void expectBytes(const UIImage& got, const std::vector<Bytes>& wanted, const std::string& what)
{
    const std::vector<Bytes> bytes = allBytes(got);
    ASSERT_EQ(bytes.size(), wanted.size()) << what;
    const auto [g, w] = std::mismatch(bytes.begin(), bytes.end(), wanted.begin());
    if (g != bytes.end()) {
        ADD_FAILURE() << what << ", " << got.cgImage().width() << " wide, pixel " << g - bytes.begin() << ": "
                      << testing::PrintToString(*g) << ", wanted " << testing::PrintToString(*w);
    }
}

} // namespace lamina::test
