#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/media/CMSampleBuffer.h"

#include <optional>

namespace lamina {

/// Tells when a camera that has just been started gives frames of the brightness at which it stays.
class ExposureSettling {
public:
    /// Looks at the next frame; whether it is settled: the last frames are as large and, to a step of a hundred, as
    /// bright as the first of them, or frames of this size have come for so long that it won't be.
    bool isSettledWith(const CMSampleBuffer& frame);

private:
    int m_alike = 0;
    IntSize m_size;                     ///< of the frame before
    std::optional<double> m_brightness; ///< 0 to 255, of the first of those alike: a slow rise is none
    std::optional<double> m_began;      ///< seconds, of the first frame of that size
};

} // namespace lamina
