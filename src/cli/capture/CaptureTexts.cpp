#include "cli/capture/CaptureTexts.h"

#include "cli/common/JsonText.h"
#include "cli/common/PictureOutput.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/ShownText.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureTypes.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace lamina {

namespace {

constexpr const char* kIndent = "      ";

std::string rate(double framesPerSecond)
{
    return formatValue(static_cast<float>(framesPerSecond));
}

/// "15 to 30 frames a second"; empty where a mode tells none.
std::string ratesText(const AVCaptureDeviceFormat& mode)
{
    if (mode.maxFrameRate <= 0)
        return {};
    const std::string least = mode.minFrameRate == mode.maxFrameRate ? std::string()
                              : mode.minFrameRate > 0                ? rate(mode.minFrameRate) + " to "
                                                                     : "up to ";
    return ", " + least + rate(mode.maxFrameRate) + " frames a second";
}

/// A line for each size with its rates: "640 x 480 pixels, 15 to 30 frames a second, YUY2, NV12".
std::string modesText(const std::vector<AVCaptureDeviceFormat>& modes)
{
    std::string text;
    std::string last;
    for (const AVCaptureDeviceFormat& mode : modes) {
        const std::string line = kIndent + sizeInPixels(mode.size) + ratesText(mode);
        if (line != last)
            text += (last.empty() ? "" : "\n") + line;
        text += mode.encoding.empty() ? "" : ", " + shownText(mode.encoding);
        last = line;
    }
    return text + (text.empty() ? "" : "\n");
}

const char* positionName(AVCaptureDevicePosition position)
{
    switch (position) {
    case AVCaptureDevicePosition::Front:
        return "front";
    case AVCaptureDevicePosition::Back:
        return "back";
    case AVCaptureDevicePosition::Unspecified:
        break;
    }
    return nullptr;
}

/// "front, turned by 90 degrees"; empty where nothing is told.
std::string placeText(const AVCaptureDevice& camera)
{
    const char* const position = positionName(camera.position());
    std::string text = position ? position : "";
    if (camera.rotation() != 0)
        text += (text.empty() ? "turned by " : ", turned by ") + std::to_string(camera.rotation()) + " degrees";
    return text;
}

std::string headText(const AVCaptureDevice& device)
{
    return "  " + shownText(device.localizedName()) + "\n" + kIndent + shownText(device.uniqueID()) + "\n";
}

nlohmann::ordered_json headJson(const AVCaptureDevice& device)
{
    return {{"name", device.localizedName()}, {"id", device.uniqueID()}};
}

nlohmann::ordered_json asJson(const AVCaptureDeviceFormat& mode)
{
    return {{"width", mode.size.width},
            {"height", mode.size.height},
            {"minRate", mode.minFrameRate},
            {"maxRate", mode.maxFrameRate},
            {"encoding", mode.encoding}};
}

} // namespace

std::string captureDevicesAsText()
{
    std::string text;
    for (const std::shared_ptr<AVCaptureDevice>& camera : AVCaptureDevice::devices()) {
        text += (text.empty() ? "Cameras:\n" : "") + headText(*camera);
        if (const std::string place = placeText(*camera); !place.empty())
            text += kIndent + place + "\n";
        text += modesText(camera->formats());
    }
    if (text.empty())
        text = "There is no camera.\n";
    std::string microphones;
    for (const std::shared_ptr<AVCaptureDevice>& microphone : AVCaptureDevice::devices(AVTrackMediaType::Audio))
        microphones += headText(*microphone);
    return text + "\n" + (microphones.empty() ? "There is no microphone.\n" : "Microphones:\n" + microphones);
}

std::string stillAsJson(const CaptureJob& job, IntSize size)
{
    return jsonText({{"input", job.camera->localizedName()},
                     {"output", job.output},
                     {"filters", job.chain->names()},
                     {"width", size.width},
                     {"height", size.height}});
}

std::string captureDevicesAsJson()
{
    nlohmann::ordered_json cameras = nlohmann::ordered_json::array();
    for (const std::shared_ptr<AVCaptureDevice>& camera : AVCaptureDevice::devices()) {
        nlohmann::ordered_json entry = headJson(*camera);
        const char* const position = positionName(camera->position());
        entry["position"] = position ? nlohmann::ordered_json(position) : nlohmann::ordered_json(nullptr);
        entry["rotation"] = camera->rotation();
        entry["modes"] = nlohmann::ordered_json::array();
        for (const AVCaptureDeviceFormat& mode : camera->formats())
            entry["modes"].push_back(asJson(mode));
        cameras.push_back(std::move(entry));
    }
    nlohmann::ordered_json microphones = nlohmann::ordered_json::array();
    for (const std::shared_ptr<AVCaptureDevice>& microphone : AVCaptureDevice::devices(AVTrackMediaType::Audio))
        microphones.push_back(headJson(*microphone));
    return jsonText({{"cameras", std::move(cameras)}, {"microphones", std::move(microphones)}});
}

} // namespace lamina
