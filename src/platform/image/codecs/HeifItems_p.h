#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteNumbers_p.h"
#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/HeifBoxes_p.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <span>
#include <vector>

namespace lamina {

namespace cause {
inline constexpr const char* kOtherHeif = "this kind of HEIC picture can't be read";
} // namespace cause

/// One of the things that a HEIF file holds: a coded picture, one made of others, or facts.
struct HeifItem {
    std::array<char, 4> type{};
    /// Where its bytes stand in the file, within its bounds.
    std::vector<ByteRange> pieces;
    bool isCut = false;               ///< some of its bytes would stand behind the end
    bool isScattered = false;         ///< some stand in other files or items, or in more pieces than are read
    std::vector<HeifBox> properties;  ///< in their order
    std::vector<std::uint64_t> parts; ///< of a composed one, in their order
    std::vector<std::uint64_t> auxiliaries;
    std::vector<std::uint64_t> thumbnails;
    std::vector<std::uint64_t> premultipliedBy;

    bool is(const char* name) const { return std::memcmp(type.data(), name, type.size()) == 0; }
    /// Whether it is a picture made of others.
    bool isComposed() const { return is("iden") || is("grid") || is("iovl"); }
    /// The first property of a kind.
    std::optional<HeifBox> property(const char* name) const;
    /// All of its pieces together.
    std::uint64_t length() const;
};

struct HeifSides {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
};

/// What a HEIF file's boxes say of its items.
struct HeifItems {
    std::uint64_t primary = 0;
    std::map<std::uint64_t, HeifItem> items;

    /// Null when there is no such item.
    const HeifItem* find(std::uint64_t id) const;
};

/// The items of a file; references to items that are not there stand as they are. Memory and time are bounded by some
/// megabytes, whatever the file says.
Result<HeifItems> readHeifItems(ByteSource& source);

/// The bytes of a box, of which there may be no more than `most`.
Result<std::vector<std::uint8_t>> readHeifContent(ByteSource& source, const HeifBox& box,
                                                  std::uint64_t most = 1u << 20);

/// The sides that an item's properties tell, before those that crop and turn; 0 when there are none.
HeifSides toldHeifSides(ByteSource& source, const HeifItem& item);
/// And after those.
HeifSides shownHeifSides(ByteSource& source, const HeifItem& item);

/// Which of an item's auxiliary pictures is its alpha.
std::optional<std::uint64_t> alphaOfHeifItem(ByteSource& source, const HeifItems& items, const HeifItem& item);

/// An item's bytes as if they stood in one piece; both must outlive it.
class HeifItemSource final : public ByteSource {
public:
    HeifItemSource(ByteSource& source, const HeifItem& item)
        : m_source(source)
        , m_item(item)
    {
    }

    std::uint64_t size() const override { return m_item.length(); }
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> target) override;

private:
    ByteSource& m_source;
    const HeifItem& m_item;
};

} // namespace lamina
