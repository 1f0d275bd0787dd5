#include "platform/media/capture/pipewire/VideoModes_p.h"

#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <numeric>
#include <spa/param/format-utils.h>
#include <spa/param/format.h>
#include <spa/pod/iter.h>
#include <string>
#include <tuple>
#include <utility>

namespace lamina {

namespace {

/// Nobody has more; who claims more isn't asked for the rest.
constexpr std::size_t kMostModes = 512;
/// Frames a second. Who is made of numbers alone claims any.
constexpr double kMostRate = 1000;

constexpr std::pair<RawEncoding, std::uint32_t> kVideoFormats[] = {
    {RawEncoding::NV12, SPA_VIDEO_FORMAT_NV12},   {RawEncoding::I420, SPA_VIDEO_FORMAT_I420},
    {RawEncoding::YUY2, SPA_VIDEO_FORMAT_YUY2},   {RawEncoding::UYVY, SPA_VIDEO_FORMAT_UYVY},
    {RawEncoding::BGRx, SPA_VIDEO_FORMAT_BGRx},   {RawEncoding::BGRA, SPA_VIDEO_FORMAT_BGRA},
    {RawEncoding::RGBx, SPA_VIDEO_FORMAT_RGBx},   {RawEncoding::RGBA, SPA_VIDEO_FORMAT_RGBA},
    {RawEncoding::BGR, SPA_VIDEO_FORMAT_BGR},     {RawEncoding::RGB, SPA_VIDEO_FORMAT_RGB},
    {RawEncoding::GRAY8, SPA_VIDEO_FORMAT_GRAY8},
};

constexpr IntSize kUsualSizes[] = {{160, 120},   {176, 144},   {320, 240},   {352, 288},  {640, 360},   {640, 480},
                                   {800, 600},   {1024, 768},  {1280, 720},  {1280, 960}, {1600, 1200}, {1920, 1080},
                                   {2592, 1944}, {2560, 1440}, {3264, 2448}, {3840, 2160}};

/// The numbers of a property that may be one, several or a range.
template <class Number>
struct Numbers {
    std::uint32_t choice = SPA_CHOICE_None;
    std::vector<Number> all; ///< a range: the node's own choice, the least, the most; of several: its own, then all

    bool isRange() const { return (choice == SPA_CHOICE_Range || choice == SPA_CHOICE_Step) && all.size() >= 3; }
    /// Those that can be had, where they are counted.
    std::vector<Number> alternatives() const
    {
        if (choice == SPA_CHOICE_None || all.size() < 2)
            return all;
        return {std::next(all.begin()), all.end()};
    }
};

template <class Number>
Numbers<Number> numbersOf(const spa_pod& description, std::uint32_t key, std::uint32_t type)
{
    Numbers<Number> numbers;
    const spa_pod_prop* const property = spa_pod_find_prop(&description, nullptr, key);
    if (!property)
        return numbers;
    std::uint32_t count = 0;
    const spa_pod* const value = spa_pod_get_values(&property->value, &count, &numbers.choice);
    if (!value || SPA_POD_TYPE(value) != type || SPA_POD_BODY_SIZE(value) < sizeof(Number))
        return numbers;
    const auto* const bytes = static_cast<const std::uint8_t*>(SPA_POD_BODY_CONST(value));
    for (std::size_t i = 0; i < std::min<std::size_t>(count, kMostModes); ++i) {
        Number number;
        std::memcpy(&number, bytes + i * SPA_POD_BODY_SIZE(value), sizeof number);
        numbers.all.push_back(number);
    }
    return numbers;
}

bool isRate(const spa_fraction& rate)
{
    return rate.denom > 0 && rate.num > 0;
}

double perSecond(const spa_fraction& rate)
{
    return rate.denom > 0 ? double(rate.num) / rate.denom : 0;
}

std::vector<RawEncoding> encodingsOf(const spa_pod& description)
{
    std::uint32_t type = 0;
    std::uint32_t subtype = 0;
    std::vector<RawEncoding> encodings;
    if (spa_format_parse(&description, &type, &subtype) < 0 || type != SPA_MEDIA_TYPE_video)
        return encodings;
    if (subtype == SPA_MEDIA_SUBTYPE_mjpg)
        return {RawEncoding::MJPG};
    if (subtype != SPA_MEDIA_SUBTYPE_raw)
        return encodings;
    const auto formats = numbersOf<std::uint32_t>(description, SPA_FORMAT_VIDEO_format, SPA_TYPE_Id);
    for (const std::uint32_t format : formats.alternatives()) {
        if (const auto encoding = encodingOfVideoFormat(format))
            encodings.push_back(*encoding);
    }
    return encodings;
}

IntSize sizeOf(const spa_rectangle& size)
{
    constexpr auto kMost = static_cast<std::uint32_t>(kLargestFrameSide) + 1;
    return {static_cast<int>(std::min(size.width, kMost)), static_cast<int>(std::min(size.height, kMost))};
}

std::vector<IntSize> sizesOf(const spa_pod& description)
{
    const auto told = numbersOf<spa_rectangle>(description, SPA_FORMAT_VIDEO_size, SPA_TYPE_Rectangle);
    std::vector<IntSize> sizes;
    if (told.isRange()) {
        const IntSize least = sizeOf(told.all[1]);
        const IntSize most = sizeOf(told.all[2]);
        sizes = {sizeOf(told.all[0]), most};
        for (const IntSize size : kUsualSizes) {
            if (size.width >= least.width && size.height >= least.height && size.width <= most.width &&
                size.height <= most.height)
                sizes.push_back(size);
        }
    } else {
        for (const spa_rectangle& size : told.alternatives())
            sizes.push_back(sizeOf(size));
    }
    std::erase_if(sizes, [](IntSize size) { return !isFrameSize(size); });
    return sizes;
}

} // namespace

std::optional<std::uint32_t> videoFormatOf(RawEncoding encoding)
{
    const auto* const found = std::ranges::find(kVideoFormats, encoding, &std::pair<RawEncoding, std::uint32_t>::first);
    return found == std::end(kVideoFormats) ? std::nullopt : std::optional(found->second);
}

std::optional<RawEncoding> encodingOfVideoFormat(std::uint32_t format)
{
    const auto* const found = std::ranges::find(kVideoFormats, format, &std::pair<RawEncoding, std::uint32_t>::second);
    return found == std::end(kVideoFormats) ? std::nullopt : std::optional(found->first);
}

std::optional<RawEncoding> encodingNamed(const std::string& name)
{
    const auto* const found = std::ranges::find(kRawEncodingNames, name);
    return found == kRawEncodingNames.end()
               ? std::nullopt
               : std::optional(static_cast<RawEncoding>(found - kRawEncodingNames.begin()));
}

void addModes(const spa_pod& description, std::vector<VideoMode>& modes)
{
    VideoMode mode;
    const auto told = numbersOf<spa_fraction>(description, SPA_FORMAT_VIDEO_framerate, SPA_TYPE_Fraction);
    if (!told.all.empty() && isRate(told.all.front()))
        mode.usual = told.all.front();
    if (told.isRange()) {
        mode.format.minFrameRate = std::min(perSecond(told.all[1]), kMostRate);
        mode.format.maxFrameRate = std::min(perSecond(told.all[2]), kMostRate);
    } else {
        mode.rates = told.alternatives();
        std::erase_if(mode.rates, [](const spa_fraction& rate) { return !isRate(rate); });
        for (const spa_fraction& rate : mode.rates) {
            const double each = perSecond(rate);
            double& least = mode.format.minFrameRate;
            least = least > 0 ? std::min(least, each) : each;
            mode.format.maxFrameRate = std::max(mode.format.maxFrameRate, each);
        }
    }
    const std::vector<IntSize> sizes = sizesOf(description);
    for (const RawEncoding encoding : encodingsOf(description)) {
        mode.format.encoding = kRawEncodingNames[static_cast<std::size_t>(encoding)];
        for (const IntSize size : sizes) {
            if (modes.size() >= kMostModes)
                return;
            mode.format.size = size;
            modes.push_back(mode);
        }
    }
}

void sortModes(std::vector<VideoMode>& modes)
{
    const auto rank = [](const VideoMode& mode) {
        const AVCaptureDeviceFormat& format = mode.format;
        return std::tuple(-std::int64_t{format.size.width} * format.size.height, -format.size.width,
                          encodingNamed(format.encoding), -format.maxFrameRate);
    };
    std::ranges::stable_sort(modes, {}, rank);
    const auto repeated = std::ranges::unique(modes, {}, &VideoMode::format);
    modes.erase(repeated.begin(), repeated.end());
}

std::optional<spa_fraction> nearestRate(const VideoMode& mode, double framesPerSecond)
{
    if (framesPerSecond <= 0)
        return isRate(mode.usual) ? std::optional(mode.usual) : std::nullopt;
    const auto missed = [&](const spa_fraction& rate) { return std::abs(perSecond(rate) - framesPerSecond); };
    if (const auto nearest = std::ranges::min_element(mode.rates, {}, missed); nearest != mode.rates.end())
        return *nearest;
    if (mode.format.maxFrameRate <= 0)
        return std::nullopt;
    const double within = std::clamp(framesPerSecond, mode.format.minFrameRate,
                                     std::max(mode.format.minFrameRate, mode.format.maxFrameRate));
    constexpr std::uint32_t kParts = 1000;
    const auto parts = static_cast<std::uint32_t>(std::lround(std::clamp(within, 0.001, 1e6) * kParts));
    const std::uint32_t common = std::gcd(parts, kParts);
    return spa_fraction{parts / common, kParts / common};
}

} // namespace lamina
