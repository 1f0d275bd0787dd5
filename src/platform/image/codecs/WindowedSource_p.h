#pragma once

#include "platform/image/codecs/ByteSource_p.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace lamina {

/// Reads a few bytes here and there out of another source, which must outlive it, through a window of 4 KB. It reads
/// 1 MB in all at most; then it acts as if the source ended, so that a hostile file costs no more than that.
class WindowedSource final : public ByteSource {
public:
    explicit WindowedSource(ByteSource& source)
        : m_source(source)
    {
    }

    std::uint64_t size() const override { return m_source.size(); }
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> target) override;

    /// Whether a read was refused because too much had been read.
    bool isExhausted() const { return m_exhausted; }

private:
    static constexpr std::size_t kMostBytes = std::size_t{1} << 20;

    /// Reads on behalf of `read`, as long as that is allowed.
    std::size_t fetch(std::uint64_t offset, std::span<std::uint8_t> target);

    ByteSource& m_source;
    std::size_t m_bytesLeft = kMostBytes;
    bool m_exhausted = false;
    std::uint64_t m_start = 0; ///< of the window in the source
    std::size_t m_filled = 0;
    std::array<std::uint8_t, 4096> m_window;
};

} // namespace lamina
