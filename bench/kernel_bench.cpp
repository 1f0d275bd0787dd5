#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/filters/FilterCatalogue.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <utility>

// Pictures of 4000 x 3000 through filters, as `tools/compare_filters.py` holds them beside other programs: the least of
// some times each. With LAMINA_FILTER_KERNELS=0 they are drawn.

namespace {

using namespace lamina;

/// A ramp in each channel with some noise on it.
UIImage photo(int width, int height)
{
    const CGImageLayout layout = CGImageLayout::rgba(width, height, CGImageAlphaInfo::NoneSkipLast);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    std::uint32_t random = 1;
    std::uint8_t* pixel = buffer.data();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, pixel += 4) {
            random = random * 1664525 + 1013904223;
            const std::array ramps{x * 255 / width, y * 255 / height, (x + y) * 255 / (width + height), 255};
            for (std::size_t c = 0; c < ramps.size(); ++c)
                pixel[c] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(ramps[c]) + (random >> (8 * c) & 31));
        }
    }
    return UIImage(CGImage::make(layout, std::move(buffer)));
}

double leastMilliseconds(GPUImageStage& filter, const UIImage& picture)
{
    constexpr int kTimes = 7;
    double least = 1e9;
    for (int i = 0; i < kTimes; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        const UIImage made = filter.imageByFilteringImage(picture);
        const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - begin;
        if (made)
            least = std::min(least, spent.count());
    }
    return least;
}

} // namespace

int main()
{
    struct Measured {
        const char* name;
        const char* filter;
        FilterSettings settings;
    };
    const std::array<Measured, 5> all{{{"sepia", "GPUImageSepiaFilter", {}},
                                       {"toon", "GPUImageToonFilter", {}},
                                       {"lookup", "GPUImageAmatorkaFilter", {}},
                                       {"blur10", "GPUImageGaussianBlurFilter", {{"blurRadiusInPixels", 10.0F}}},
                                       {"elegance", "GPUImageSoftEleganceFilter", {}}}};
    if (const Outcome available = GPUImageContext::availability(); !available) {
        std::fprintf(stderr, "%s: %s\n", available.error().subject.c_str(), available.error().cause.c_str());
        return 1;
    }
    const UIImage picture = photo(4000, 3000);
    for (const Measured& measured : all) {
        const auto filter = makeFilter(*filterCatalogue().find(measured.filter), measured.settings);
        if (!filter)
            return 1;
        std::printf("%s %.2f ms\n", measured.name, leastMilliseconds(**filter, picture));
    }
    return 0;
}
