#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <span>
#include <vector>

namespace lamina::test {

using Bytes = std::vector<std::uint8_t>;

/// Makes damaged files out of sound and hostile ones; a number makes the same file each time.
class DamagedFiles {
public:
    explicit DamagedFiles(std::vector<Bytes> files)
        : m_files(std::move(files))
    {
    }

    Bytes file(std::uint64_t number)
    {
        m_random.seed(number * 0x9E3779B97F4A7C15u + 1);
        Bytes bytes = m_files[below(m_files.size())];
        using Change = void (DamagedFiles::*)(Bytes&);
        static constexpr Change kChanges[]{
            &DamagedFiles::flip,   &DamagedFiles::overwrite, &DamagedFiles::setExtreme, &DamagedFiles::setExtreme,
            &DamagedFiles::nudge,  &DamagedFiles::nudge,     &DamagedFiles::setLength,  &DamagedFiles::setLength,
            &DamagedFiles::remove, &DamagedFiles::repeat,    &DamagedFiles::swap,       &DamagedFiles::splice,
            &DamagedFiles::cut};
        for (std::size_t left = 1 + below(1 + below(4)); left > 0; --left) {
            // A head tells what it is, and nothing reads a file without one.
            if (bytes.size() > 2 * kHead)
                (this->*kChanges[below(std::size(kChanges))])(bytes);
        }
        if (below(2) == 0)
            mendPngSums(bytes);
        return bytes;
    }

private:
    static constexpr std::size_t kHead = 12;

    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : m_random() % limit; }
    /// Near the start more often than not: what stands there decides more than pixels do.
    std::size_t place(const Bytes& bytes, std::size_t room = 1)
    {
        const std::size_t end = bytes.size() - std::min(room, bytes.size() - kHead);
        const std::size_t reach = below(5) < 3 ? std::min<std::size_t>(end, 600) : end;
        return reach > kHead / 2 ? kHead / 2 + below(reach - kHead / 2) : 0;
    }
    std::size_t length(const Bytes& bytes, std::size_t at)
    {
        return std::min(bytes.size() - at, 1 + below(below(2) == 0 ? 16 : bytes.size() / 2));
    }
    static auto iterator(Bytes& bytes, std::size_t at) { return bytes.begin() + static_cast<std::ptrdiff_t>(at); }

    void flip(Bytes& bytes) { bytes[place(bytes)] ^= static_cast<std::uint8_t>(1 << below(8)); }
    void overwrite(Bytes& bytes)
    {
        for (std::size_t count = 1 + below(12); count > 0; --count)
            bytes[place(bytes)] = static_cast<std::uint8_t>(m_random());
    }
    void write(Bytes& bytes, std::size_t at, std::uint64_t value, std::size_t size, bool bigFirst)
    {
        for (std::size_t i = 0; i < size; ++i)
            bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * (bigFirst ? size - 1 - i : i)));
    }
    std::uint64_t extreme()
    {
        static constexpr std::uint64_t kValues[]{
            0,          1,          2,          0x7F,       0xFF,  0x7FFF,     0xFFFF, 0x10000,
            0x7FFFFFFF, 0x80000000, 0xFFFFFFF0, 0xFFFFFFFF, 16384, 0x3FFFFFFF, 60000,  ~std::uint64_t{0}};
        return kValues[below(std::size(kValues))];
    }
    void setExtreme(Bytes& bytes)
    {
        const std::size_t size = std::size_t{1} << below(4);
        write(bytes, place(bytes, size), extreme(), size, below(2) == 0);
    }
    /// A number becomes a little more or less.
    void nudge(Bytes& bytes) { bytes[place(bytes)] += static_cast<std::uint8_t>(below(9)) - 4; }
    /// What stands before or behind four letters, as the lengths of boxes and chunks do.
    void setLength(Bytes& bytes)
    {
        const std::size_t start = place(bytes, 9);
        for (std::size_t at = std::max<std::size_t>(start, 4); at + 8 < bytes.size(); ++at) {
            if (!std::all_of(iterator(bytes, at), iterator(bytes, at + 4), [](int c) { return std::isalpha(c) != 0; }))
                continue;
            const std::uint64_t value = below(2) == 0 ? extreme() : below(2 * bytes.size());
            const bool isRiff = bytes[0] == 'R';
            write(bytes, isRiff ? at + 4 : at - 4, value, 4, !isRiff);
            return;
        }
    }
    void remove(Bytes& bytes)
    {
        const std::size_t at = place(bytes);
        bytes.erase(iterator(bytes, at), iterator(bytes, at + length(bytes, at)));
    }
    void repeat(Bytes& bytes)
    {
        const std::size_t at = place(bytes);
        const Bytes piece(iterator(bytes, at), iterator(bytes, at + length(bytes, at)));
        for (std::size_t count = 1 + below(3); count > 0 && bytes.size() < kLongest; --count)
            bytes.insert(iterator(bytes, at), piece.begin(), piece.end());
    }
    void swap(Bytes& bytes)
    {
        const std::size_t first = place(bytes);
        const std::size_t second = place(bytes);
        const std::size_t count = std::min(length(bytes, first), length(bytes, second));
        for (std::size_t i = 0; i < count; ++i)
            std::swap(bytes[first + i], bytes[second + i]);
    }
    /// A piece of another file over this one.
    void splice(Bytes& bytes)
    {
        const Bytes& other = m_files[below(m_files.size())];
        const std::size_t from = below(other.size());
        const std::size_t at = place(bytes);
        const std::size_t count = std::min({other.size() - from, bytes.size() - at, 1 + below(400)});
        std::copy_n(other.begin() + static_cast<std::ptrdiff_t>(from), count, iterator(bytes, at));
    }
    void cut(Bytes& bytes) { bytes.resize(std::max(kHead, place(bytes))); }

    /// So that a decoder of PNG looks behind the sums.
    static void mendPngSums(Bytes& bytes)
    {
        constexpr std::array<std::uint8_t, 4> kSignature{0x89, 'P', 'N', 'G'};
        if (!std::equal(kSignature.begin(), kSignature.end(), bytes.begin()))
            return;
        std::size_t at = 8;
        while (at + 12 <= bytes.size()) {
            std::uint64_t size = 0;
            for (std::size_t i = 0; i < 4; ++i)
                size = size << 8 | bytes[at + i];
            if (size > bytes.size() - at - 12)
                return;
            const std::uint32_t sum = sumOf(std::span(bytes).subspan(at + 4, static_cast<std::size_t>(size) + 4));
            at += static_cast<std::size_t>(size) + 12;
            for (std::size_t i = 0; i < 4; ++i)
                bytes[at - 4 + i] = static_cast<std::uint8_t>(sum >> (8 * (3 - i)));
        }
    }
    static std::uint32_t sumOf(std::span<const std::uint8_t> bytes)
    {
        std::uint32_t sum = ~0u;
        for (const std::uint8_t byte : bytes) {
            sum ^= byte;
            for (int bit = 0; bit < 8; ++bit)
                sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320u : 0u);
        }
        return ~sum;
    }

    static constexpr std::size_t kLongest = 1u << 20;

    std::vector<Bytes> m_files;
    std::mt19937_64 m_random;
};

} // namespace lamina::test
