#pragma once

#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/ByteSource_p.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// The directories of a TIFF or BigTIFF file, or of an EXIF block, which is built alike. Nothing is taken for granted:
/// what points outside isn't there, and a directory is read for its first 512 fields.
class TIFFTags {
public:
    struct Field {
        std::uint16_t tag = 0;
        std::uint16_t type = 0;
        std::uint64_t count = 0; ///< of values
        std::uint64_t place = 0; ///< of the first value in the block
        std::uint64_t entry = 0; ///< of the field itself
    };

    /// A directory of more fields than this is not read to its end.
    static constexpr std::uint64_t kMostFields = 512;

    /// The block that fills a range of a source, which must outlive this; nothing when it has no TIFF header.
    static std::optional<TIFFTags> open(ByteSource& source, ByteRange block);

    /// Where the first directory stands.
    std::uint64_t firstDirectory() const { return m_first; }

    /// How many fields a directory claims to have; nothing when it isn't there.
    std::optional<std::uint64_t> fieldCount(std::uint64_t directory) const { return number(directory, m_big ? 8 : 2); }
    /// Gives each field of a directory to `body` and returns where the next directory stands; 0 when there is none.
    template <class Body>
    std::uint64_t eachField(std::uint64_t directory, const Body& body) const
    {
        const std::uint64_t count = fieldCount(directory).value_or(0);
        std::uint64_t at = directory + (m_big ? 8 : 2);
        if (count > kMostFields)
            return readFields(at, kMostFields, body), 0;
        return readFields(at, count, body) ? number(at + count * fieldSize(), addressSize()).value_or(0) : 0;
    }

    /// A field's first value; nothing when it is no whole number or below zero.
    std::optional<std::uint64_t> number(const Field& field) const;
    /// Whether a field's values are whole numbers.
    static bool isWholeNumber(const Field& field);
    /// Gives a field's first `count` values (no more than it has), whole numbers, to `body`. False when the block ends
    /// before.
    template <class Body>
    bool eachNumber(const Field& field, std::uint64_t count, const Body& body) const
    {
        std::array<std::uint8_t, 4096> piece{};
        const std::size_t size = bytesPerValue(field);
        const std::uint64_t end = field.place + std::min(count, field.count) * size;
        for (std::uint64_t at = field.place; at < end;) {
            const auto bytes =
                std::span(piece).first(static_cast<std::size_t>(std::min<std::uint64_t>(4096, end - at)));
            if (!read(at, bytes))
                return false;
            for (std::size_t i = 0; i < bytes.size(); i += size)
                body(numberOf(bytes.subspan(i, size), m_order));
            at += bytes.size();
        }
        return true;
    }
    /// Whether all values of a field stand in the block.
    bool isInside(const Field& field) const;
    /// A directory of these fields as it would stand in the block, with none behind it.
    std::vector<std::uint8_t> directoryOf(std::span<const Field> fields) const;
    /// A field's text up to its first zero byte; empty when it is none or longer than some sixty bytes.
    std::string text(const Field& field) const;
    /// A part of the block as one of the source; empty where it isn't all there.
    ByteRange rangeInSource(std::uint64_t place, std::uint64_t length) const;

private:
    TIFFTags(ByteSource& source, ByteRange block, std::endian order, bool big)
        : m_source(source)
        , m_block(block)
        , m_order(order)
        , m_big(big)
    {
    }

    std::size_t addressSize() const { return m_big ? 8 : 4; }
    std::size_t fieldSize() const { return m_big ? 20 : 12; }

    static std::size_t bytesPerValue(const Field& field);
    bool read(std::uint64_t place, std::span<std::uint8_t> target) const;
    std::optional<std::uint64_t> number(std::uint64_t place, std::size_t size) const;
    std::optional<Field> fieldAt(std::uint64_t place) const;

    /// False when the block ends before.
    template <class Body>
    bool readFields(std::uint64_t at, std::uint64_t count, const Body& body) const
    {
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::optional<Field> field = fieldAt(at + i * fieldSize());
            if (!field)
                return false;
            body(*field);
        }
        return true;
    }

    ByteSource& m_source;
    ByteRange m_block;
    std::endian m_order;
    bool m_big;
    std::uint64_t m_first = 0;
};

} // namespace lamina
