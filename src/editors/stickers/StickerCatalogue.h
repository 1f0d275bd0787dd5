#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

/// The stickers that there are. Their drawings are named pictures (`imageNamed`) of the names here; a name says nothing
/// of its place in the order.
namespace lamina {

/// What stickers are sorted by, in the order in which the groups stand in a strip.
enum class StickerGroup { Weather, Animals, Plants, Food, Travel, Feelings, FramesAndRibbons, Sparkles };

inline constexpr std::size_t kStickerCount = 84;

/// One sticker of the catalogue.
struct StickerEntry {
    std::string_view name; ///< of the drawing
    const char* word;      ///< what it shows, in English; translated where it is shown or read out
    StickerGroup group = StickerGroup::Weather;
};

/// All of them in the order of the strip, that is group by group.
std::span<const StickerEntry, kStickerCount> stickerCatalogue();

/// The place of a name in the catalogue; nothing for a name that is not in it.
std::optional<std::size_t> stickerIndex(std::string_view name);

/// What a group is called, in English; translated where it is shown.
const char* stickerGroupTitle(StickerGroup group);

} // namespace lamina
