#include "platform/image/codecs/TIFFTags_p.h"

#include <algorithm>

namespace lamina {

namespace {

/// Bytes of a value by its type's number; 0: a type that doesn't exist.
constexpr std::array<std::uint8_t, 19> kValueSizes{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};

enum Type : std::uint16_t {
    kByte = 1,
    kASCII = 2,
    kShort = 3,
    kLong = 4,
    kSignedByte = 6,
    kSignedShort = 8,
    kSignedLong = 9,
    kDirectory = 13,
    kLong8 = 16,
    kSignedLong8 = 17,
    kDirectory8 = 18
};

bool isSigned(std::uint16_t type)
{
    return type == kSignedByte || type == kSignedShort || type == kSignedLong || type == kSignedLong8;
}

} // namespace

std::optional<TIFFTags> TIFFTags::open(ByteSource& source, ByteRange block)
{
    std::array<std::uint8_t, 4> mark{};
    if (block.offset > source.size() || block.length < 8 || source.read(block.offset, mark) != mark.size())
        return std::nullopt;
    const std::endian order = mark[0] == 'I' ? std::endian::little : std::endian::big;
    const std::uint64_t version = numberOf(std::span(mark).last(2), order);
    if (mark[0] != mark[1] || (mark[0] != 'I' && mark[0] != 'M') || (version != 42 && version != 43))
        return std::nullopt;
    block.length = std::min(block.length, source.size() - block.offset);
    TIFFTags tags(source, block, order, version == 43);
    const std::optional<std::uint64_t> first = tags.number(tags.m_big ? 8 : 4, tags.addressSize());
    if (!first)
        return std::nullopt;
    tags.m_first = *first;
    return tags;
}

ByteRange TIFFTags::rangeInSource(std::uint64_t place, std::uint64_t length) const
{
    if (place > m_block.length || length > m_block.length - place)
        return {};
    return {m_block.offset + place, length};
}

std::size_t TIFFTags::bytesPerValue(const Field& field)
{
    return field.type < kValueSizes.size() ? kValueSizes[field.type] : 0;
}

bool TIFFTags::isInside(const Field& field) const
{
    const std::size_t size = bytesPerValue(field);
    return size > 0 && field.place <= m_block.length && field.count <= (m_block.length - field.place) / size;
}

bool TIFFTags::read(std::uint64_t place, std::span<std::uint8_t> target) const
{
    const ByteRange range = rangeInSource(place, target.size());
    return range.length > 0 && m_source.read(range.offset, target) == target.size();
}

std::optional<std::uint64_t> TIFFTags::number(std::uint64_t place, std::size_t size) const
{
    std::array<std::uint8_t, 8> bytes{};
    const std::span<std::uint8_t> target = std::span(bytes).first(size);
    return read(place, target) ? std::optional(numberOf(target, m_order)) : std::nullopt;
}

std::optional<TIFFTags::Field> TIFFTags::fieldAt(std::uint64_t place) const
{
    std::array<std::uint8_t, 20> bytes{};
    if (!read(place, std::span(bytes).first(fieldSize())))
        return std::nullopt;
    const auto part = [&](std::size_t at, std::size_t size) {
        return numberOf(std::span(bytes).subspan(at, size), m_order);
    };
    Field field;
    field.entry = place;
    field.tag = static_cast<std::uint16_t>(part(0, 2));
    field.type = static_cast<std::uint16_t>(part(2, 2));
    field.count = part(4, addressSize());
    // Values that are no longer than an address stand in its place.
    const std::uint64_t valuePlace = 4 + addressSize();
    const std::size_t size = bytesPerValue(field);
    const bool inPlace = size > 0 && field.count <= addressSize() / size;
    field.place = inPlace ? place + valuePlace : part(static_cast<std::size_t>(valuePlace), addressSize());
    return field;
}

bool TIFFTags::isWholeNumber(const Field& field)
{
    if (isSigned(field.type))
        return true;
    switch (field.type) {
    case kByte:
    case kShort:
    case kLong:
    case kDirectory:
    case kLong8:
    case kDirectory8:
        return true;
    default:
        return false;
    }
}

std::optional<std::uint64_t> TIFFTags::number(const Field& field) const
{
    if (!isWholeNumber(field) || field.count == 0)
        return std::nullopt;
    const std::size_t size = bytesPerValue(field);
    const std::optional<std::uint64_t> value = number(field.place, size);
    const bool isNegative = value && isSigned(field.type) && *value >> (8 * size - 1) != 0;
    return isNegative ? std::nullopt : value;
}

std::vector<std::uint8_t> TIFFTags::directoryOf(std::span<const Field> fields) const
{
    const std::size_t countSize = m_big ? 8 : 2;
    std::vector<std::uint8_t> bytes(countSize + fields.size() * fieldSize() + addressSize());
    for (std::size_t i = 0; i < countSize; ++i) {
        const std::size_t shift = 8 * (m_order == std::endian::little ? i : countSize - 1 - i);
        bytes[i] = static_cast<std::uint8_t>(std::uint64_t{fields.size()} >> shift);
    }
    for (std::size_t i = 0; i < fields.size(); ++i)
        read(fields[i].entry, std::span(bytes).subspan(countSize + i * fieldSize(), fieldSize()));
    return bytes;
}

std::string TIFFTags::text(const Field& field) const
{
    std::array<std::uint8_t, 64> bytes{};
    if (field.type != kASCII || field.count > bytes.size() ||
        !read(field.place, std::span(bytes).first(static_cast<std::size_t>(field.count))))
        return {};
    return {bytes.begin(), std::find(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(field.count), 0)};
}

} // namespace lamina
