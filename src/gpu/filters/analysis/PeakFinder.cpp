#include "gpu/filters/analysis/PeakFinder.h"

#include "gpu/core/FilterProgram.h"
#include "platform/base/Log.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace lamina {

void PeakFinder::find(GPUImageFramebuffer& frame)
{
    const std::span<const std::uint8_t> bytes = m_reading.read(frame);
    const int width = frame.pixelSize().width;
    m_peaks.clear();
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        // Of what is not packed all three are alike.
        const unsigned value = m_isPacked ? bytes[i] + 256U * bytes[i + 1] + 65536U * bytes[i + 2] : bytes[i];
        const int pixel = static_cast<int>(i / 4);
        if (value > 0)
            m_peaks.push_back({pixel % width, pixel / width, value});
    }
}

void PeakFinder::newFrameReadyAtTime(const CMTime& frameTime, int)
{
    renderToTextureWithVertices(kGPUImageQuadVertices, textureCoordinatesForRotation(m_inputRotation));
    const std::shared_ptr<GPUImageFramebuffer> frame = framebufferForOutput();
    if (frame && m_peaksBlock && !preventRendering()) {
        const auto start = std::chrono::steady_clock::now();
        find(*frame);
        m_peaksBlock(m_peaks, frame->pixelSize(), frameTime);
        const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
        logDebug("Processing time : " + std::to_string(spent.count()) + " ms");
    }
    informTargetsAboutNewFrameAtTime(frameTime);
}

} // namespace lamina
