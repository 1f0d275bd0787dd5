#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace lamina {

/// What the bytes of a bitmap that is drawn into are: R G B A premultiplied, a grey, a coverage, or C M Y K.
enum class SurfaceKind { RGBA, Gray, Alpha, CMYK };

/// The memory of a bitmap that is drawn into: a rectangle of the device. Pictures taken of it share its bytes; the
/// first write afterwards moves to a copy.
class Surface {
public:
    /// Zeroed. Nothing when the rectangle is empty or memory is short. `bytesPerRow` 0: no padding.
    static std::optional<Surface> make(SurfaceKind kind, const IntRect& bounds, std::size_t bytesPerRow = 0);

    SurfaceKind kind() const { return m_kind; }
    const IntRect& bounds() const { return m_bounds; }
    std::size_t bytesPerRow() const { return m_bytesPerRow; }
    /// Bytes a pixel: 1 or 4.
    int channels() const { return m_kind == SurfaceKind::RGBA || m_kind == SurfaceKind::CMYK ? 4 : 1; }

    /// To be called before writing. False when the bytes are shared and memory for a copy is short.
    bool detach();
    std::uint8_t* at(int x, int y) { return m_data + offsetOf(x, y); }
    const std::uint8_t* at(int x, int y) const { return m_data + offsetOf(x, y); }
    std::shared_ptr<const std::uint8_t> share() const { return m_owner; }
    std::size_t byteCount() const { return m_bytesPerRow * static_cast<std::size_t>(m_bounds.height); }

    /// Sets the fourth byte of all pixels to 255: an opaque bitmap of R G B A.
    void makeOpaque();

private:
    std::size_t offsetOf(int x, int y) const
    {
        return static_cast<std::size_t>(y - m_bounds.y) * m_bytesPerRow +
               static_cast<std::size_t>(x - m_bounds.x) * static_cast<std::size_t>(channels());
    }

    SurfaceKind m_kind = SurfaceKind::RGBA;
    IntRect m_bounds;
    std::size_t m_bytesPerRow = 0;
    std::uint8_t* m_data = nullptr;
    std::shared_ptr<const std::uint8_t> m_owner;
};

} // namespace lamina
