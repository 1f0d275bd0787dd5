// How a collage is written into a record, and read from it.

#include "editors/collage/CollageComposition.h"
#include "editors/collage/CollageEffects.h"
#include "editors/collage/CollageFilters.h"
#include "editors/collage/CollageTools.h"
#include "editors/common/EditorSlider.h"
#include "editors/common/EditorToolBar.h"
#include "editors/common/KeptPictures.h"
#include "editors/common/KeptWork.h"
#include "editors/common/RecordReading.h"
#include "editors/common/RecordValue.h"
#include "editors/frames/Frames.h"
#include "editors/stickers/Sticker.h"
#include "platform/base/UIColor.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// One more whenever a record says something that this version could not know.
constexpr KeptKind kCollageKind{"collage", 1};
/// Of a screen, points: higher than any.
constexpr double kLargestHeight = 16384;

RecordValue recordOf(const CollageSlot& slot, KeptPictures& pictures)
{
    return {{"master", pictures.keep(slot.master)},
            {"image", pictures.keep(slot.image)},
            {"center", slot.center},
            {"transform", slot.transform},
            {"alpha", slot.alpha},
            {"background", slot.background ? RecordValue(*slot.background) : RecordValue()}};
}

bool readSlot(const RecordValue& record, KeptPictures& pictures, CollageSlot& slot)
{
    record.at("center").get_to(slot.center);
    record.at("transform").get_to(slot.transform);
    record.at("alpha").get_to(slot.alpha);
    if (!pictures.find(record.at("master"), slot.master) || !pictures.find(record.at("image"), slot.image))
        return false;
    if (!slot.image)
        slot.image = slot.master;
    return isFinite(slot.center) && slot.transform.inverted() && slot.alpha >= 0 && slot.alpha <= 1 && slot.master &&
           readColor(record.at("background"), slot.background);
}

bool readSlots(const RecordValue& record, KeptPictures& pictures, CollageComposition& composition)
{
    composition.count = record.size();
    if (!record.is_array() || composition.count < 2 || composition.count > kMostCollageSlots)
        return false;
    for (std::size_t slot = 0; slot < composition.count; ++slot) {
        if (!readSlot(record[slot], pictures, composition.photoSlots[slot]))
            return false;
    }
    return true;
}

/// A number that is no frame's leaves the slots whole, as on the screen.
bool isLayoutOf(std::size_t count, int layout)
{
    return !isFrame(layout) || photosOf(layout) == count;
}

bool readCanvas(const RecordValue& record, KeptPictures& pictures, CollageComposition& composition)
{
    record.at("side").get_to(composition.side);
    record.at("screenHeight").get_to(composition.screenHeight);
    record.at("layout").get_to(composition.layout);
    record.at("current").get_to(composition.current);
    return isKeptSide(composition.side) && composition.screenHeight >= 1 &&
           composition.screenHeight <= kLargestHeight && readSlots(record.at("slots"), pictures, composition) &&
           isLayoutOf(composition.count, composition.layout) && composition.current < composition.count;
}

bool readAllStickers(const RecordValue& record, CollageComposition& composition)
{
    if (!readStickers(record.at("stickers"), composition.stickers))
        return false;
    composition.stickersBelow = std::min(record.at("stickersBelow").get<std::size_t>(), composition.stickers.size());
    return true;
}

bool isValueOf(const EditorSlider& slider, double value)
{
    return value >= slider.minimum && value <= slider.maximum;
}

/// A slider works from a base that is there.
bool readEffects(const RecordValue& record, KeptPictures& pictures, CollageComposition& composition)
{
    record.at("effectFlags").get_to(composition.effectFlags);
    record.at("sliders").get_to(composition.sliders);
    if (!pictures.find(record.at("applyFxOnImg"), composition.applyFxOnImg))
        return false;
    if (!composition.applyFxOnImg)
        composition.effectFlags.fill(false);
    return std::equal(composition.sliders.begin(), composition.sliders.end(), kCollageSliders.begin(),
                      [](double value, const EditorSlider& slider) { return isValueOf(slider, value); });
}

bool readFilter(const RecordValue& record, KeptPictures& pictures, CollageComposition& composition)
{
    record.at("filter").get_to(composition.filter);
    constexpr int kLast = kFirstCollageFilter + static_cast<int>(kCollageFilterCount) - 1;
    const bool known =
        composition.filter == 0 || (composition.filter >= kFirstCollageFilter && composition.filter <= kLast);
    return known && pictures.find(record.at("beforeApplyFilterImage"), composition.beforeApplyFilterImage);
}

bool readFrame(const RecordValue& record, CollageComposition& composition)
{
    record.at("borderWidth").get_to(composition.borderWidth);
    record.at("gap").get_to(composition.gap);
    std::optional<UIColor> color;
    const bool read = readColor(record.at("borderColor"), color) && color;
    composition.borderColor = color.value_or(composition.borderColor);
    const double widest = std::max(composition.borderWidth, composition.gap);
    return read && std::min(composition.borderWidth, composition.gap) >= 0 && widest <= kWidestCollageLine;
}

bool readTool(const RecordValue& record, CollageComposition& composition)
{
    record.at("tool").get_to(composition.tool);
    return std::ranges::any_of(kCollageTools,
                               [&](const EditorTool& tool) { return tool.identifier == composition.tool; });
}

bool readAll(const RecordValue& record, KeptPictures& pictures, CollageComposition& composition)
{
    return readCanvas(record, pictures, composition) && readAllStickers(record, composition) &&
           readEffects(record, pictures, composition) && readFilter(record, pictures, composition) &&
           readFrame(record, composition) && readTool(record, composition);
}

} // namespace

KeptKind keptKind(const CollageComposition&)
{
    return kCollageKind;
}

void writeRecord(const CollageComposition& composition, KeptPictures& pictures, RecordValue& record)
{
    record = {{"side", composition.side},
              {"screenHeight", composition.screenHeight},
              {"layout", composition.layout},
              {"slots", RecordValue::array()},
              {"current", composition.current},
              {"stickers", recordOf(composition.stickers)},
              {"stickersBelow", composition.stickersBelow},
              {"effectFlags", composition.effectFlags},
              {"applyFxOnImg", pictures.keep(composition.applyFxOnImg)},
              {"sliders", composition.sliders},
              {"beforeApplyFilterImage", pictures.keep(composition.beforeApplyFilterImage)},
              {"filter", composition.filter},
              {"borderWidth", composition.borderWidth},
              {"gap", composition.gap},
              {"borderColor", composition.borderColor},
              {"tool", composition.tool}};
    for (std::size_t slot = 0; slot < composition.count; ++slot)
        record["slots"].push_back(recordOf(composition.photoSlots[slot], pictures));
}

bool readRecord(const RecordValue& record, KeptPictures& pictures, CollageComposition& composition)
{
    CollageComposition read;
    if (!readRecordValue([&] { return readAll(record, pictures, read); }))
        return false;
    composition = std::move(read);
    return true;
}

} // namespace lamina
