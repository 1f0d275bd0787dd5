#pragma once

#include "platform/image/codecs/ByteNumbers_p.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace lamina {

/// Reads one number after another out of bytes; what would stand behind their end is 0.
class ByteCursor {
public:
    explicit ByteCursor(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes)
    {
    }

    /// The whole number of the next `size` bytes (0 to 8), the highest first.
    std::uint64_t number(std::size_t size) { return overran(size) ? 0 : numberOf(take(size)); }
    /// The next bytes; none when there are fewer.
    std::span<const std::uint8_t> bytes(std::size_t size)
    {
        return overran(size) ? std::span<const std::uint8_t>{} : take(size);
    }
    void skip(std::size_t size) { bytes(size); }

    std::size_t left() const { return m_bytes.size() - m_at; }
    bool atEnd() const { return left() == 0; }
    /// Whether more was wanted than there was.
    bool overran() const { return m_overran; }

private:
    bool overran(std::size_t size)
    {
        if (size > left()) {
            m_overran = true;
            m_at = m_bytes.size();
        }
        return m_overran;
    }
    std::span<const std::uint8_t> take(std::size_t size)
    {
        m_at += size;
        return m_bytes.subspan(m_at - size, size);
    }

    std::span<const std::uint8_t> m_bytes;
    std::size_t m_at = 0;
    bool m_overran = false;
};

} // namespace lamina
