#include "platform/media/AVCaptureDevice.h"

#include <utility>

namespace lamina {

namespace {

AVCaptureDevice::Source& source()
{
    static auto* const installed = new AVCaptureDevice::Source;
    return *installed;
}

} // namespace

void AVCaptureDevice::setSource(Source other)
{
    source() = other.authorizationStatus ? std::move(other) : Source();
}

AVAuthorizationStatus AVCaptureDevice::videoAuthorizationStatus()
{
    return source().authorizationStatus ? source().authorizationStatus() : AVAuthorizationStatus::Authorized;
}

void AVCaptureDevice::requestVideoAccess(std::function<void(bool granted)> handler)
{
    if (const auto request = source().requestAccess)
        request(std::move(handler));
    else
        handler(videoAuthorizationStatus() == AVAuthorizationStatus::Authorized);
}

std::shared_ptr<AVCaptureDevice> AVCaptureDevice::defaultVideoDevice()
{
    return source().defaultVideoDevice ? source().defaultVideoDevice() : nullptr;
}

} // namespace lamina
