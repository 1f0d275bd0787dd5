#include "platform/base/UIDevice.h"

#include <atomic>

namespace lamina {

namespace {

std::atomic<UIDeviceOrientation> s_orientation{UIDeviceOrientation::Unknown};

} // namespace

UIDeviceOrientation UIDevice::orientation()
{
    return s_orientation.load();
}

void UIDevice::setOrientation(UIDeviceOrientation orientation)
{
    s_orientation.store(orientation);
}

} // namespace lamina
