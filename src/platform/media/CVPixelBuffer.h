#pragma once

#include "platform/base/CGGeometry.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace lamina {

/// How the pixels of a movie's frame lie in memory, by their four-character codes.
enum class CVPixelFormat : std::uint32_t {
    BGRA = 0x42475241,                  ///< 'BGRA': one plane of blue, green, red, alpha, 8 bits each
    RGBA = 0x52474241,                  ///< 'RGBA': the same with red first; for a writer alone
    BiPlanar420VideoRange = 0x34323076, ///< '420v': Y (16 to 235), then Cb Cr (16 to 240) at half the sides
    BiPlanar420FullRange = 0x34323066,  ///< '420f': the same with 0 to 255
    AsDecoded = 0,                      ///< as the decoder gave it: without planes here, for a writer alone
};

/// By which weights Y, Cb and Cr were made of red, green and blue.
enum class YCbCrMatrix {
    None, ///< not tagged
    ITU_R_601_4,
    ITU_R_709_2,
    SMPTE_240M_1995,
    ITU_R_2020,
};

/// The pixels of one frame of a movie. Shared by those who read it; whoever made it writes into it before it is shared.
/// From any thread.
class CVPixelBuffer {
public:
    /// Rows from the top down. A plane of half the sides has (side + 1) / 2 of them.
    struct Plane {
        std::uint8_t* bytes = nullptr;
        std::size_t bytesPerRow = 0;
        IntSize size; ///< in samples: of a plane of Cb Cr, pairs
    };

    /// With memory of its own, whose content is anything; null when memory is short. Not for `AsDecoded`.
    static std::shared_ptr<CVPixelBuffer> make(IntSize size, CVPixelFormat format);
    /// Over memory that `owner` keeps.
    CVPixelBuffer(IntSize size, CVPixelFormat format, std::vector<Plane> planes, std::shared_ptr<void> owner)
        : m_size(size)
        , m_format(format)
        , m_planes(std::move(planes))
        , m_owner(std::move(owner))
    {
    }

    /// In pixels.
    IntSize size() const { return m_size; }
    /// How they lie.
    CVPixelFormat pixelFormat() const { return m_format; }
    /// One or two; none of `AsDecoded`.
    const std::vector<Plane>& planes() const { return m_planes; }
    /// None at first.
    YCbCrMatrix matrix() const { return m_matrix; }
    void setMatrix(YCbCrMatrix matrix) { m_matrix = matrix; }
    /// What keeps the memory; of `AsDecoded` the frame itself, in the form of the module that decoded it.
    const std::shared_ptr<void>& owner() const { return m_owner; }

private:
    IntSize m_size;
    CVPixelFormat m_format;
    std::vector<Plane> m_planes;
    std::shared_ptr<void> m_owner;
    YCbCrMatrix m_matrix = YCbCrMatrix::None;
};

} // namespace lamina
