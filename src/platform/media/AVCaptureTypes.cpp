#include "platform/media/AVCaptureTypes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr std::pair<const char*, IntSize> kNamedPresets[] = {
    {kAVCaptureSessionPresetLow, {192, 144}},
    {kAVCaptureSessionPresetMedium, {480, 360}},
    {kAVCaptureSessionPresetHigh, {1920, 1080}},
    {kAVCaptureSessionPresetPhoto, {1280, 960}},
};

double pixelsOf(IntSize size)
{
    return double(size.width) * double(size.height);
}

} // namespace

IntSize sizeOfCaptureSessionPreset(const std::string& preset)
{
    for (const auto& [name, size] : kNamedPresets) {
        if (preset == name)
            return size;
    }
    const std::size_t cross = preset.rfind('x');
    if (cross == std::string::npos)
        return {};
    std::size_t first = cross;
    while (first > 0 && preset[first - 1] >= '0' && preset[first - 1] <= '9')
        --first;
    IntSize size;
    const char* const end = preset.data() + preset.size();
    const bool isSize = std::from_chars(preset.data() + first, end, size.width).ec == std::errc() &&
                        std::from_chars(preset.data() + cross + 1, end, size.height).ptr == end;
    return isSize && size.width > 0 && size.height > 0 ? size : IntSize();
}

double distanceBetweenSizes(IntSize wanted, IntSize mode)
{
    if (pixelsOf(wanted) <= 0 || pixelsOf(mode) <= 0)
        return -pixelsOf(mode);
    // What both have in common counts as met; the rest is too much or too little, and too little is worse.
    const IntSize common{std::min(wanted.width, mode.width), std::min(wanted.height, mode.height)};
    const double lacking = 1 - pixelsOf(common) / pixelsOf(wanted);
    const double tooMuch = 1 - pixelsOf(common) / pixelsOf(mode);
    const double shape = std::abs(std::log(double(wanted.width) * mode.height / (double(wanted.height) * mode.width)));
    return 4 * lacking + tooMuch + 0.2 * shape;
}

} // namespace lamina
