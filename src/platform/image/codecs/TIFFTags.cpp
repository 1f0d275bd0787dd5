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
    kDirectory = 13,
    kLong8 = 16,
    kDirectory8 = 18
};

std::size_t bytesPerValue(std::uint16_t type)
{
    return type < kValueSizes.size() ? kValueSizes[type] : 0;
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
    field.tag = static_cast<std::uint16_t>(part(0, 2));
    field.type = static_cast<std::uint16_t>(part(2, 2));
    field.count = part(4, addressSize());
    // Values that are no longer than an address stand in its place.
    const std::uint64_t valuePlace = 4 + addressSize();
    const std::size_t size = bytesPerValue(field.type);
    const bool inPlace = size > 0 && field.count <= addressSize() / size;
    field.place = inPlace ? place + valuePlace : part(static_cast<std::size_t>(valuePlace), addressSize());
    return field;
}

std::optional<std::uint64_t> TIFFTags::number(const Field& field) const
{
    switch (field.type) {
    case kByte:
    case kShort:
    case kLong:
    case kDirectory:
    case kLong8:
    case kDirectory8:
        return field.count > 0 ? number(field.place, bytesPerValue(field.type)) : std::nullopt;
    default:
        return std::nullopt;
    }
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
