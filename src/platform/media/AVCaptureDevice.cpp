#include "platform/media/AVCaptureDevice.h"

#include "platform/base/NotificationCenter.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace lamina {

namespace {

constexpr double kUsualFrameRate = 30;

struct InstalledSource {
    std::mutex mutex;
    AVCaptureDevice::Source source;
};

InstalledSource& installed()
{
    static auto* const only = new InstalledSource;
    return *only;
}

AVCaptureDevice::Source source()
{
    const std::scoped_lock lock(installed().mutex);
    return installed().source;
}

} // namespace

void AVCaptureDevice::setSource(Source other)
{
    {
        const std::scoped_lock lock(installed().mutex);
        installed().source = other.authorizationStatus ? std::move(other) : Source();
    }
    devicesDidChange();
}

void AVCaptureDevice::devicesDidChange()
{
    NotificationCenter::defaultCenter().post(kAVCaptureDevicesDidChangeNotification);
}

AVAuthorizationStatus AVCaptureDevice::videoAuthorizationStatus()
{
    const Source present = source();
    return present.authorizationStatus ? present.authorizationStatus() : AVAuthorizationStatus::Authorized;
}

void AVCaptureDevice::requestVideoAccess(std::function<void(bool granted)> handler)
{
    if (const auto request = source().requestAccess)
        request(std::move(handler));
    else
        handler(videoAuthorizationStatus() == AVAuthorizationStatus::Authorized);
}

std::optional<AVCaptureDeviceFormat> AVCaptureDevice::nearestFormat(IntSize size, double frameRate) const
{
    const double wanted = frameRate > 0 ? frameRate : kUsualFrameRate;
    const auto distance = [&](const AVCaptureDeviceFormat& mode) {
        const double missed = std::max({wanted - mode.maxFrameRate, mode.minFrameRate - wanted, 0.0});
        return std::pair(distanceBetweenSizes(size, mode.size), missed);
    };
    const std::vector<AVCaptureDeviceFormat> all = formats();
    const auto nearest = std::ranges::min_element(all, {}, distance);
    return nearest == all.end() ? std::nullopt : std::optional(*nearest);
}

std::vector<std::shared_ptr<AVCaptureDevice>> AVCaptureDevice::devices(AVTrackMediaType type)
{
    const Source present = source();
    return present.devices ? present.devices(type) : std::vector<std::shared_ptr<AVCaptureDevice>>();
}

std::shared_ptr<AVCaptureDevice> AVCaptureDevice::defaultDevice(AVTrackMediaType type)
{
    const auto all = devices(type);
    return all.empty() ? nullptr : all.front();
}

std::shared_ptr<AVCaptureDevice> AVCaptureDevice::defaultVideoDevice(AVCaptureDevicePosition position)
{
    const auto all = devices(AVTrackMediaType::Video);
    for (const AVCaptureDevicePosition wanted : {position, AVCaptureDevicePosition::Unspecified}) {
        const auto found = std::ranges::find_if(all, [&](const auto& each) { return each->position() == wanted; });
        if (found != all.end())
            return *found;
    }
    return nullptr;
}

std::shared_ptr<AVCaptureDevice> AVCaptureDevice::deviceWithUniqueID(const std::string& uniqueID)
{
    for (const AVTrackMediaType type : {AVTrackMediaType::Video, AVTrackMediaType::Audio}) {
        for (const auto& device : devices(type)) {
            if (device->uniqueID() == uniqueID)
                return device;
        }
    }
    return nullptr;
}

} // namespace lamina
