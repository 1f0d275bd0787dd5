// How a blend is written into a record, and read from it.

#include "editors/blend/BlendComposition.h"
#include "editors/blend/BlendTools.h"
#include "editors/blend/PickedImages.h"
#include "editors/common/EditorSlider.h"
#include "editors/common/KeptPictures.h"
#include "editors/common/KeptWork.h"
#include "editors/common/RecordReading.h"
#include "editors/common/RecordValue.h"
#include "platform/base/Result.h"
#include "platform/base/UIColor.h"
#include "platform/files/FileURL.h"
#include "platform/photos/PhotoSource.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace lamina {

namespace {

/// One more whenever a record says something that this version could not know.
constexpr KeptKind kBlendKind{"blend", 2};

constexpr std::pair<const char*, bool BlendComposition::*> kFlags[] = {
    {"photo1Selected", &BlendComposition::photo1Selected},
    {"photo2Selected", &BlendComposition::photo2Selected},
    {"toolBool", &BlendComposition::toolBool},
    {"contrastBool", &BlendComposition::contrastBool},
    {"brightBool", &BlendComposition::brightBool},
    {"opacityBool", &BlendComposition::opacityBool},
};

RecordValue recordOf(const PhotoCrop& crop)
{
    return {{"photoSize", crop.photoSize},
            {"squareSide", crop.squareSide},
            {"zoomScale", crop.zoomScale},
            {"contentOffset", crop.contentOffset}};
}

/// The file that the photo was cut from, as a URL, since the name of a file need not be text; null: none is known. What
/// was pasted is not kept.
RecordValue recordOf(const PhotoSource& source)
{
    std::error_code failed;
    const std::string path = source.path.empty() ? "" : std::filesystem::absolute(source.path, failed).string();
    return path.empty() ? RecordValue() : RecordValue(fileURLOfPath(path));
}

RecordValue recordOf(const BlendPhoto& photo, KeptPictures& pictures)
{
    return {{"actualImage", pictures.keep(photo.actualImage)},
            {"crop", recordOf(photo.crop)},
            {"source", recordOf(photo.source)},
            {"image", pictures.keep(photo.image)},
            {"transform", photo.transform},
            {"alpha", photo.alpha}};
}

void readCrop(const RecordValue& record, PhotoCrop& crop)
{
    record.at("photoSize").get_to(crop.photoSize);
    record.at("squareSide").get_to(crop.squareSide);
    record.at("zoomScale").get_to(crop.zoomScale);
    record.at("contentOffset").get_to(crop.contentOffset);
}

/// Works that were kept by former versions have none.
PhotoSource readSource(const RecordValue& record)
{
    const auto found = record.find("source");
    if (found == record.end() || !found->is_string())
        return {};
    Result<std::string> path = pathOfFileURL(found->get<std::string>());
    return path ? PhotoSource::fromFile(*std::move(path)) : PhotoSource();
}

bool readPhoto(const RecordValue& record, KeptPictures& pictures, BlendPhoto& photo)
{
    readCrop(record.at("crop"), photo.crop);
    photo.source = readSource(record);
    record.at("transform").get_to(photo.transform);
    record.at("alpha").get_to(photo.alpha);
    return photo.transform.inverted() && photo.alpha >= 0 && photo.alpha <= 1 &&
           pictures.find(record.at("actualImage"), photo.actualImage) && pictures.find(record.at("image"), photo.image);
}

bool isStack(const std::array<std::size_t, 2>& order)
{
    return order[0] + order[1] == 1 && order[0] <= 1;
}

/// A record of the first version knows move mode and none of the others.
bool readMode(const RecordValue& record, BlendMode& mode)
{
    const int fallback = record.value("panBool", true) ? 0 : 1;
    mode = static_cast<BlendMode>(record.value("mode", fallback));
    return mode >= BlendMode::Move && mode <= BlendMode::AddStickers;
}

/// Nor does it know where the sliders stood.
bool readSliders(const RecordValue& record, BlendComposition& composition)
{
    composition.sliders = record.value("sliders", kBlendSliderStarts);
    return std::equal(
        composition.sliders.begin(), composition.sliders.end(), kBlendSliders.begin(),
        [](double value, const EditorSlider& slider) { return value >= slider.minimum && value <= slider.maximum; });
}

/// A slider works from a snapshot that is there.
void checkSnapshots(BlendComposition& composition)
{
    if (composition.applyFxOnImage1 && (composition.applyFxOnImage2 || !composition.bothSelected()))
        return;
    composition.contrastBool = composition.brightBool = false;
}

bool readAll(const RecordValue& record, KeptPictures& pictures, BlendComposition& composition)
{
    record.at("side").get_to(composition.side);
    record.at("order").get_to(composition.order);
    record.at("current").get_to(composition.current);
    for (const auto& [name, flag] : kFlags)
        record.at(name).get_to(composition.*flag);
    const RecordValue& photos = record.at("photos");
    return isKeptSide(composition.side) && isStack(composition.order) && composition.current <= 1 &&
           readColor(record.at("backdrop"), composition.backdrop) &&
           readStickers(record.value("stickers", RecordValue::array()), composition.stickers) &&
           readMode(record, composition.mode) && readSliders(record, composition) &&
           readPhoto(photos.at(0), pictures, composition.photos[0]) &&
           readPhoto(photos.at(1), pictures, composition.photos[1]) &&
           pictures.find(record.at("applyFxOnImage1"), composition.applyFxOnImage1) &&
           pictures.find(record.at("applyFxOnImage2"), composition.applyFxOnImage2);
}

} // namespace

KeptKind keptKind(const BlendComposition&)
{
    return kBlendKind;
}

void writeRecord(const BlendComposition& composition, KeptPictures& pictures, RecordValue& record)
{
    record = {{"side", composition.side},
              {"photos", {recordOf(composition.photos[0], pictures), recordOf(composition.photos[1], pictures)}},
              {"order", composition.order},
              {"backdrop", composition.backdrop ? RecordValue(*composition.backdrop) : RecordValue()},
              {"current", composition.current},
              {"mode", static_cast<int>(composition.mode)},
              {"sliders", composition.sliders},
              {"stickers", recordOf(composition.stickers)},
              {"applyFxOnImage1", pictures.keep(composition.applyFxOnImage1)},
              {"applyFxOnImage2", pictures.keep(composition.applyFxOnImage2)}};
    for (const auto& [name, flag] : kFlags)
        record[name] = composition.*flag;
}

bool readRecord(const RecordValue& record, KeptPictures& pictures, BlendComposition& composition)
{
    BlendComposition read;
    if (!readRecordValue([&] { return readAll(record, pictures, read); }))
        return false;
    checkSnapshots(read);
    composition = std::move(read);
    return true;
}

} // namespace lamina
