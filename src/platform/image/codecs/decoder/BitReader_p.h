#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace lamina {

/// Reads numbers of some bits each, the highest bit first; what would stand behind the end is 0.
class BitReader {
public:
    explicit BitReader(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes)
    {
    }

    /// The next `count` bits (32 at most).
    std::uint32_t bits(int count)
    {
        std::uint32_t value = 0;
        for (; count > 0; --count, ++m_at) {
            const std::size_t byte = m_at / 8;
            const bool set = byte < m_bytes.size() && (m_bytes[byte] >> (7 - m_at % 8) & 1) != 0;
            value = value << 1 | (set ? 1u : 0u);
        }
        return value;
    }
    bool flag() { return bits(1) != 0; }
    void skip(std::size_t count) { m_at += count; }

    /// An Exp-Golomb number (as many zeros as it has bits behind its first one); 0 for one of more than 32 bits.
    std::uint32_t golomb()
    {
        int zeros = 0;
        while (!overran() && !flag())
            ++zeros;
        if (zeros > 31) {
            m_at = 8 * m_bytes.size() + 1;
            return 0;
        }
        return (1u << zeros) - 1 + bits(zeros);
    }

    /// Whether more was wanted than there was, or a number was none.
    bool overran() const { return m_at > 8 * m_bytes.size(); }

private:
    std::span<const std::uint8_t> m_bytes;
    std::size_t m_at = 0; ///< in bits
};

} // namespace lamina
