#include "cli/capture/CaptureDevices.h"

#include "cli/common/Messages.h"
#include "cli/common/NearestName.h"
#include "platform/files/ASCIICase.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/capture/CaptureService.h"

#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

using Cameras = std::vector<std::shared_ptr<AVCaptureDevice>>;

Cameras camerasThat(const Cameras& all, const std::function<bool(const AVCaptureDevice&)>& fit)
{
    Cameras some;
    for (const std::shared_ptr<AVCaptureDevice>& camera : all) {
        if (fit(*camera))
            some.push_back(camera);
    }
    return some;
}

/// "'A', 'B' and 'C'".
std::string listed(const Cameras& cameras, std::string (AVCaptureDevice::*name)() const)
{
    std::string text;
    for (std::size_t i = 0; i < cameras.size(); ++i) {
        text += i == 0 ? "" : i + 1 < cameras.size() ? ", " : " and ";
        text += "'" + ((*cameras[i]).*name)() + "'";
    }
    return text;
}

std::string thereAre(const Cameras& cameras)
{
    return (cameras.size() == 1 ? "there is " : "there are ") + listed(cameras, &AVCaptureDevice::localizedName);
}

AVCaptureDevicePosition positionNamed(const std::string& typed)
{
    if (equalIgnoringCase(typed, "front"))
        return AVCaptureDevicePosition::Front;
    return equalIgnoringCase(typed, "back") ? AVCaptureDevicePosition::Back : AVCaptureDevicePosition::Unspecified;
}

Error ambiguousCamera(const std::string& typed, const Cameras& namesakes)
{
    return {beginning(typed), "several cameras have this name; they are told apart by their IDs, " +
                                  listed(namesakes, &AVCaptureDevice::uniqueID)};
}

Error unknownCamera(const std::string& typed, const Cameras& all)
{
    std::vector<std::string> names;
    for (const std::shared_ptr<AVCaptureDevice>& camera : all) {
        names.push_back(camera->localizedName());
        names.push_back(camera->uniqueID());
    }
    const std::vector<std::string_view> views(names.begin(), names.end());
    return {beginning(typed), "there is no such camera; " +
                                  (all.size() == 1 ? thereAre(all) : didYouMean(typed, views) + " " + thereAre(all))};
}

} // namespace

Outcome findCaptureDevices()
{
    constexpr double kPatience = 2;
    AVCaptureDevice::setSource(CaptureService::openSource());
    CaptureService& service = CaptureService::shared();
    service.start();
    const bool isListed = service.waitUntilListed(kPatience);
    if (std::optional<Error> error = service.error())
        return *std::move(error);
    return isListed ? success() : Outcome(Error{"cameras", "PipeWire lists none in time"});
}

Result<std::shared_ptr<AVCaptureDevice>> cameraNamed(const std::string& typed)
{
    const Cameras all = AVCaptureDevice::devices();
    if (all.empty())
        return Error{typed.empty() ? "capture" : beginning(typed), "there is no camera"};
    if (typed.empty())
        return all.front();
    for (const auto name : {&AVCaptureDevice::uniqueID, &AVCaptureDevice::localizedName}) {
        const Cameras exact =
            camerasThat(all, [&](const AVCaptureDevice& camera) { return (camera.*name)() == typed; });
        if (exact.size() == 1)
            return exact.front();
        if (exact.size() > 1)
            return ambiguousCamera(typed, exact);
    }
    if (const AVCaptureDevicePosition position = positionNamed(typed);
        position != AVCaptureDevicePosition::Unspecified) {
        if (std::shared_ptr<AVCaptureDevice> camera = AVCaptureDevice::defaultVideoDevice(position))
            return camera;
        return Error{beginning(typed), "no camera looks there; " + thereAre(all)};
    }
    const Cameras near = camerasThat(
        all, [&](const AVCaptureDevice& camera) { return equalIgnoringCase(camera.localizedName(), typed); });
    if (near.size() > 1)
        return ambiguousCamera(typed, near);
    return near.size() == 1 ? Result<std::shared_ptr<AVCaptureDevice>>(near.front()) : unknownCamera(typed, all);
}

} // namespace lamina
