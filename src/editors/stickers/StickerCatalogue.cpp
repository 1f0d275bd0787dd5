#include "editors/stickers/StickerCatalogue.h"

#include <QtGlobal>

#include <algorithm>
#include <array>

namespace lamina {

namespace {

constexpr std::array<StickerEntry, kStickerCount> kStickers = {{
    {"big117", QT_TRANSLATE_NOOP("Lamina", "Sun"), StickerGroup::Weather},
    {"big121", QT_TRANSLATE_NOOP("Lamina", "Cloud"), StickerGroup::Weather},
    {"big122", QT_TRANSLATE_NOOP("Lamina", "Rainbow"), StickerGroup::Weather},
    {"big123", QT_TRANSLATE_NOOP("Lamina", "Moon"), StickerGroup::Weather},
    {"big124", QT_TRANSLATE_NOOP("Lamina", "Snowflake"), StickerGroup::Weather},
    {"big125", QT_TRANSLATE_NOOP("Lamina", "Umbrella"), StickerGroup::Weather},
    {"big126", QT_TRANSLATE_NOOP("Lamina", "Storm"), StickerGroup::Weather},
    {"big130", QT_TRANSLATE_NOOP("Lamina", "Wind"), StickerGroup::Weather},
    {"big132", QT_TRANSLATE_NOOP("Lamina", "Drop"), StickerGroup::Weather},
    {"big133", QT_TRANSLATE_NOOP("Lamina", "Thermometer"), StickerGroup::Weather},
    {"big134", QT_TRANSLATE_NOOP("Lamina", "Snowman"), StickerGroup::Weather},
    {"big135", QT_TRANSLATE_NOOP("Lamina", "Cat"), StickerGroup::Animals},
    {"big138", QT_TRANSLATE_NOOP("Lamina", "Dog"), StickerGroup::Animals},
    {"big139", QT_TRANSLATE_NOOP("Lamina", "Bear"), StickerGroup::Animals},
    {"big140", QT_TRANSLATE_NOOP("Lamina", "Bunny"), StickerGroup::Animals},
    {"big141", QT_TRANSLATE_NOOP("Lamina", "Frog"), StickerGroup::Animals},
    {"big143", QT_TRANSLATE_NOOP("Lamina", "Chick"), StickerGroup::Animals},
    {"big144", QT_TRANSLATE_NOOP("Lamina", "Penguin"), StickerGroup::Animals},
    {"big145", QT_TRANSLATE_NOOP("Lamina", "Fish"), StickerGroup::Animals},
    {"big146", QT_TRANSLATE_NOOP("Lamina", "Whale"), StickerGroup::Animals},
    {"big147", QT_TRANSLATE_NOOP("Lamina", "Bee"), StickerGroup::Animals},
    {"big148", QT_TRANSLATE_NOOP("Lamina", "Ladybird"), StickerGroup::Animals},
    {"big149", QT_TRANSLATE_NOOP("Lamina", "Butterfly"), StickerGroup::Animals},
    {"big150", QT_TRANSLATE_NOOP("Lamina", "Cactus"), StickerGroup::Plants},
    {"big152", QT_TRANSLATE_NOOP("Lamina", "Tulip"), StickerGroup::Plants},
    {"big153", QT_TRANSLATE_NOOP("Lamina", "Daisy"), StickerGroup::Plants},
    {"big154", QT_TRANSLATE_NOOP("Lamina", "Sunflower"), StickerGroup::Plants},
    {"big155", QT_TRANSLATE_NOOP("Lamina", "Leaf"), StickerGroup::Plants},
    {"big156", QT_TRANSLATE_NOOP("Lamina", "Clover"), StickerGroup::Plants},
    {"big157", QT_TRANSLATE_NOOP("Lamina", "Tree"), StickerGroup::Plants},
    {"big158", QT_TRANSLATE_NOOP("Lamina", "Pine"), StickerGroup::Plants},
    {"big159", QT_TRANSLATE_NOOP("Lamina", "Mushroom"), StickerGroup::Plants},
    {"big160", QT_TRANSLATE_NOOP("Lamina", "Sprout"), StickerGroup::Plants},
    {"big161", QT_TRANSLATE_NOOP("Lamina", "Ice cream"), StickerGroup::Food},
    {"big162", QT_TRANSLATE_NOOP("Lamina", "Donut"), StickerGroup::Food},
    {"big164", QT_TRANSLATE_NOOP("Lamina", "Cupcake"), StickerGroup::Food},
    {"big165", QT_TRANSLATE_NOOP("Lamina", "Pizza"), StickerGroup::Food},
    {"big166", QT_TRANSLATE_NOOP("Lamina", "Strawberry"), StickerGroup::Food},
    {"big167", QT_TRANSLATE_NOOP("Lamina", "Cherry"), StickerGroup::Food},
    {"big168", QT_TRANSLATE_NOOP("Lamina", "Lemon"), StickerGroup::Food},
    {"big169", QT_TRANSLATE_NOOP("Lamina", "Melon"), StickerGroup::Food},
    {"big171", QT_TRANSLATE_NOOP("Lamina", "Avocado"), StickerGroup::Food},
    {"big172", QT_TRANSLATE_NOOP("Lamina", "Coffee"), StickerGroup::Food},
    {"big173", QT_TRANSLATE_NOOP("Lamina", "Toast"), StickerGroup::Food},
    {"big174", QT_TRANSLATE_NOOP("Lamina", "Rice"), StickerGroup::Food},
    {"big175", QT_TRANSLATE_NOOP("Lamina", "Camera"), StickerGroup::Travel},
    {"big176", QT_TRANSLATE_NOOP("Lamina", "Rocket"), StickerGroup::Travel},
    {"big177", QT_TRANSLATE_NOOP("Lamina", "Boat"), StickerGroup::Travel},
    {"big178", QT_TRANSLATE_NOOP("Lamina", "Balloon"), StickerGroup::Travel},
    {"big180", QT_TRANSLATE_NOOP("Lamina", "Tent"), StickerGroup::Travel},
    {"big181", QT_TRANSLATE_NOOP("Lamina", "Compass"), StickerGroup::Travel},
    {"big182", QT_TRANSLATE_NOOP("Lamina", "Suitcase"), StickerGroup::Travel},
    {"big184", QT_TRANSLATE_NOOP("Lamina", "Car"), StickerGroup::Travel},
    {"big185", QT_TRANSLATE_NOOP("Lamina", "Mountain"), StickerGroup::Travel},
    {"big186", QT_TRANSLATE_NOOP("Lamina", "Lighthouse"), StickerGroup::Travel},
    {"big187", QT_TRANSLATE_NOOP("Lamina", "Palm"), StickerGroup::Travel},
    {"big188", QT_TRANSLATE_NOOP("Lamina", "Heart"), StickerGroup::Feelings},
    {"big191", QT_TRANSLATE_NOOP("Lamina", "Two hearts"), StickerGroup::Feelings},
    {"big192", QT_TRANSLATE_NOOP("Lamina", "Smile"), StickerGroup::Feelings},
    {"big193", QT_TRANSLATE_NOOP("Lamina", "Wink"), StickerGroup::Feelings},
    {"big194", QT_TRANSLATE_NOOP("Lamina", "Shades"), StickerGroup::Feelings},
    {"big195", QT_TRANSLATE_NOOP("Lamina", "Sleepy"), StickerGroup::Feelings},
    {"big196", QT_TRANSLATE_NOOP("Lamina", "Laugh"), StickerGroup::Feelings},
    {"big197", QT_TRANSLATE_NOOP("Lamina", "Letter"), StickerGroup::Feelings},
    {"big198", QT_TRANSLATE_NOOP("Lamina", "Bubble"), StickerGroup::Feelings},
    {"big199", QT_TRANSLATE_NOOP("Lamina", "Crown"), StickerGroup::Feelings},
    {"big200", QT_TRANSLATE_NOOP("Lamina", "Bow"), StickerGroup::FramesAndRibbons},
    {"big201", QT_TRANSLATE_NOOP("Lamina", "Banner"), StickerGroup::FramesAndRibbons},
    {"big202", QT_TRANSLATE_NOOP("Lamina", "Tape"), StickerGroup::FramesAndRibbons},
    {"big203", QT_TRANSLATE_NOOP("Lamina", "Rosette"), StickerGroup::FramesAndRibbons},
    {"big204", QT_TRANSLATE_NOOP("Lamina", "Tag"), StickerGroup::FramesAndRibbons},
    {"big205", QT_TRANSLATE_NOOP("Lamina", "Film"), StickerGroup::FramesAndRibbons},
    {"big206", QT_TRANSLATE_NOOP("Lamina", "Round frame"), StickerGroup::FramesAndRibbons},
    {"big207", QT_TRANSLATE_NOOP("Lamina", "Corners"), StickerGroup::FramesAndRibbons},
    {"big208", QT_TRANSLATE_NOOP("Lamina", "Garland"), StickerGroup::FramesAndRibbons},
    {"big209", QT_TRANSLATE_NOOP("Lamina", "Star"), StickerGroup::Sparkles},
    {"big210", QT_TRANSLATE_NOOP("Lamina", "Twinkle"), StickerGroup::Sparkles},
    {"big211", QT_TRANSLATE_NOOP("Lamina", "Sparkles"), StickerGroup::Sparkles},
    {"big111", QT_TRANSLATE_NOOP("Lamina", "Comet"), StickerGroup::Sparkles},
    {"big112", QT_TRANSLATE_NOOP("Lamina", "Confetti"), StickerGroup::Sparkles},
    {"big113", QT_TRANSLATE_NOOP("Lamina", "Diamond"), StickerGroup::Sparkles},
    {"big114", QT_TRANSLATE_NOOP("Lamina", "Firework"), StickerGroup::Sparkles},
    {"big115", QT_TRANSLATE_NOOP("Lamina", "Swirl"), StickerGroup::Sparkles},
    {"big116", QT_TRANSLATE_NOOP("Lamina", "Bubbles"), StickerGroup::Sparkles},
}};

constexpr std::array<const char*, 8> kGroupTitles = {
    QT_TRANSLATE_NOOP("Lamina", "Weather"),
    QT_TRANSLATE_NOOP("Lamina", "Animals"),
    QT_TRANSLATE_NOOP("Lamina", "Plants"),
    QT_TRANSLATE_NOOP("Lamina", "Food"),
    QT_TRANSLATE_NOOP("Lamina", "Travel"),
    QT_TRANSLATE_NOOP("Lamina", "Feelings"),
    QT_TRANSLATE_NOOP("Lamina", "Frames and ribbons"),
    QT_TRANSLATE_NOOP("Lamina", "Sparkles"),
};

} // namespace

std::span<const StickerEntry, kStickerCount> stickerCatalogue()
{
    return kStickers;
}

std::optional<std::size_t> stickerIndex(std::string_view name)
{
    const auto* const found = std::find_if(kStickers.begin(), kStickers.end(),
                                           [name](const StickerEntry& entry) { return entry.name == name; });
    if (found == kStickers.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - kStickers.begin());
}

const char* stickerGroupTitle(StickerGroup group)
{
    return kGroupTitles[static_cast<std::size_t>(group)];
}

} // namespace lamina
