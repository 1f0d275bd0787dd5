#include "platform/media/ExposureSettling_p.h"

#include "platform/media/CVPixelBuffer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace lamina {

namespace {

constexpr double kAlike = 2.5;  // steps of 255
constexpr int kFramesAlike = 5; // what follows one another alike
constexpr double kPatience = 1.5;
constexpr int kSamplesAcross = 32;

/// The mean of some hundred places: of Y, or of green.
double brightnessOf(const CVPixelBuffer& frame)
{
    const CVPixelBuffer::Plane& plane = frame.planes().front();
    const bool isBGRA = frame.pixelFormat() == CVPixelFormat::BGRA;
    const std::size_t pixel = isBGRA ? 4 : 1;
    const int stepX = std::max(plane.size.width / kSamplesAcross, 1);
    const int stepY = std::max(plane.size.height / kSamplesAcross, 1);
    double sum = 0;
    int count = 0;
    for (int y = 0; y < plane.size.height; y += stepY) {
        const std::uint8_t* const row = plane.bytes + static_cast<std::size_t>(y) * plane.bytesPerRow;
        for (int x = 0; x < plane.size.width; x += stepX, ++count)
            sum += row[static_cast<std::size_t>(x) * pixel + (isBGRA ? 1 : 0)];
    }
    return count > 0 ? sum / count : 0;
}

} // namespace

bool ExposureSettling::isSettledWith(const CMSampleBuffer& frame)
{
    if (!frame.imageBuffer || frame.imageBuffer->planes().empty())
        return false;
    const double brightness = brightnessOf(*frame.imageBuffer);
    const double time = frame.presentationTime.seconds();
    const bool isAsLarge = std::exchange(m_size, frame.imageBuffer->size()) == frame.imageBuffer->size();
    if (!m_began || !isAsLarge)
        m_began = time;
    if (isAsLarge && m_brightness && std::abs(brightness - *m_brightness) <= kAlike) {
        ++m_alike;
    } else {
        m_alike = 1;
        m_brightness = brightness;
    }
    return m_alike >= kFramesAlike || time - *m_began > kPatience;
}

} // namespace lamina
