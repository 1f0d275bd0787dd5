#pragma once

#include "platform/image/codecs/ByteSource_p.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>

namespace lamina {

/// Reads a source from a position on, through a small buffer, for codecs that take a few bytes at a time. It remembers
/// whether more was wanted than there was, which is how a decoder tells a file that ends early from a damaged one.
class SequentialReader {
public:
    explicit SequentialReader(ByteSource& source, std::uint64_t offset = 0)
        : m_source(source)
        , m_next(offset)
    {
    }

    /// Fills `target` and returns how many bytes there were.
    std::size_t read(std::span<std::uint8_t> target)
    {
        std::size_t done = 0;
        while (done < target.size() && (m_used < m_filled || refill())) {
            const std::size_t count = std::min(target.size() - done, m_filled - m_used);
            std::memcpy(target.data() + done, m_buffer.data() + m_used, count);
            m_used += count;
            done += count;
        }
        return done;
    }

    /// The next byte, or -1 at the end.
    int byte() { return m_used < m_filled || refill() ? m_buffer[m_used++] : -1; }

    /// True once a read has come up short.
    bool endReached() const { return m_endReached; }

private:
    bool refill()
    {
        m_used = 0;
        m_filled = m_source.read(m_next, m_buffer);
        m_next += m_filled;
        m_endReached = m_endReached || m_filled == 0;
        return m_filled > 0;
    }

    ByteSource& m_source;
    std::uint64_t m_next;
    std::size_t m_used = 0;
    std::size_t m_filled = 0;
    bool m_endReached = false;
    std::array<std::uint8_t, 16384> m_buffer;
};

} // namespace lamina
