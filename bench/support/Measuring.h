#pragma once

#include "platform/image/pixels/CGImage.h"

#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <unistd.h>
#include <utility>
#include <vector>

namespace lamina::bench {

/// Seconds that the work takes.
double seconds(const auto& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

/// The memory of this process that is in use.
inline double residentMegabytes()
{
    std::ifstream statm("/proc/self/statm");
    long total = 0;
    long resident = 0;
    statm >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

/// R G B A pixels in which neither caches nor branches find a pattern; the same at every call.
inline CGImage noisePicture(int width, int height, CGImageAlphaInfo alpha)
{
    const CGImageLayout layout = CGImageLayout::rgba(width, height, alpha);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    std::uint32_t state = 1;
    for (std::size_t i = 0; i < layout.byteCount(); ++i) {
        state = state * 1664525u + 1013904223u;
        buffer.data()[i] = static_cast<std::uint8_t>(state >> 24);
    }
    return CGImage::make(layout, std::move(buffer));
}

} // namespace lamina::bench
