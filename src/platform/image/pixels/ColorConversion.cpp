#include "platform/image/pixels/ColorConversion.h"

#include "platform/base/Cancelling.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelArithmetic.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <lcms2.h>
#include <mutex>
#include <vector>

// Profiles and rendering intents are those of ICC.1; sRGB is IEC 61966-2-1 with the primaries of Rec. ITU-R BT.709. The
// plain formula for CMYK is that of the PostScript Language Reference, third edition, 1999.

namespace lamina {

namespace {

struct CloseProfile {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, CloseProfile>;

struct FreeCurve {
    void operator()(cmsToneCurve* curve) const { cmsFreeToneCurve(curve); }
};
using Curve = std::unique_ptr<cmsToneCurve, FreeCurve>;

constexpr std::size_t kHeaderSize = 128;

// The cost of a converted pixel in plain ones, for sharing rows out.
constexpr std::size_t kPixelCost = 8;

constexpr cmsUInt32Number kGreyOfFourBytes = COLORSPACE_SH(PT_GRAY) | EXTRA_SH(3) | CHANNELS_SH(1) | BYTES_SH(1);

Profile rgbProfile(const Chromaticities& c, const Curve& curve)
{
    const auto point = [](CGPoint p) { return cmsCIExyY{p.x, p.y, 1}; };
    const cmsCIExyY white = point(c.white);
    const cmsCIExyYTRIPLE primaries{point(c.red), point(c.green), point(c.blue)};
    cmsToneCurve* curves[3] = {curve.get(), curve.get(), curve.get()};
    return Profile(curve ? cmsCreateRGBProfile(&white, &primaries, curves) : nullptr);
}

std::vector<std::uint8_t> bytesOf(const Profile& profile)
{
    cmsUInt32Number size = 0;
    if (!profile || !cmsSaveProfileToMem(profile.get(), nullptr, &size))
        return {};
    std::vector<std::uint8_t> bytes(size);
    if (!cmsSaveProfileToMem(profile.get(), bytes.data(), &size))
        return {};
    return bytes;
}

// IEC 61966-2-1: linear light of an encoded value.
double linearOfSRGB(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

bool isPossible(const Chromaticities& c, double gamma)
{
    if (!(gamma >= 0.1 && gamma <= 10))
        return false;
    for (const CGPoint point : {c.white, c.red, c.green, c.blue})
        if (!(std::abs(point.x) <= 2 && std::abs(point.y) <= 2 && point.y != 0))
            return false;
    return c.white.y > 0.01;
}

cmsUInt32Number inputFormat(CGColorSpace::Model model)
{
    switch (model) {
    case CGColorSpace::Model::RGB:
        return TYPE_RGBA_8;
    case CGColorSpace::Model::Gray:
        return kGreyOfFourBytes;
    case CGColorSpace::Model::CMYK:
        return TYPE_CMYK_8;
    case CGColorSpace::Model::AlphaOnly:
        break;
    }
    return 0;
}

std::uint64_t bigEndian32(std::span<const std::uint8_t> bytes, std::uint64_t at)
{
    std::uint64_t value = 0;
    for (std::uint64_t i = at; i < at + 4; ++i)
        value = value << 8 | (i < bytes.size() ? bytes[static_cast<std::size_t>(i)] : 0);
    return value;
}

/// Whether a chain of elements (ICC.1, multiProcessElementsType) is one that colours go through in no time. The library
/// takes thousands of them, which may all be the same one, and curves of thousands of pieces: minutes from 300 bytes.
bool isShortChain(std::span<const std::uint8_t> chain)
{
    constexpr std::uint64_t kMostElements = 16;
    constexpr std::uint64_t kMostBytes = 64 << 10;
    constexpr std::uint64_t kHead = 16;
    const std::uint64_t count = bigEndian32(chain, 12);
    std::uint64_t bytes = 0;
    for (std::uint64_t i = 0; i < std::min(count, kMostElements); ++i)
        bytes += bigEndian32(chain, kHead + 8 * i + 4);
    return count <= kMostElements && bytes <= kMostBytes;
}

bool isQuicklyFollowed(std::span<const std::uint8_t> profile)
{
    constexpr std::uint32_t kChain = 0x6D706574; // 'mpet'
    constexpr std::uint64_t kMostTags = 100;     // the library reads no more
    const std::uint64_t tags = std::min(bigEndian32(profile, kHeaderSize), kMostTags);
    for (std::uint64_t i = 0; i < tags; ++i) {
        const std::uint64_t offset = bigEndian32(profile, kHeaderSize + 4 + 12 * i + 4);
        if (offset < profile.size() && bigEndian32(profile, offset) == kChain &&
            !isShortChain(profile.subspan(static_cast<std::size_t>(offset))))
            return false;
    }
    return true;
}

std::vector<std::uint8_t> makeSRGBProfile()
{
    // With one node for each 8-bit value a reader's interpolation is exact where it matters.
    std::array<cmsUInt16Number, 256> table;
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<cmsUInt16Number>(std::lround(linearOfSRGB(static_cast<double>(i) / 255) * 65535));
    const Curve curve(cmsBuildTabulatedToneCurve16(nullptr, table.size(), table.data()));
    const Profile profile = rgbProfile(Chromaticities(), curve);
    if (!profile)
        return {};
    cmsSetProfileVersion(profile.get(), 2.1); // what every reader of profiles understands
    if (cmsMLU* name = cmsMLUalloc(nullptr, 1)) {
        cmsMLUsetASCII(name, "en", "US", "sRGB");
        cmsWriteTag(profile.get(), cmsSigProfileDescriptionTag, name);
        cmsMLUfree(name);
    }
    std::vector<std::uint8_t> bytes = bytesOf(profile);
    if (bytes.empty())
        return bytes;
    // The library stamps the moment of creation; the same picture must give the same file tomorrow.
    constexpr std::array<std::uint8_t, 12> kDate{0x07, 0xE8, 0, 1, 0, 1}; // 1 January 2024
    std::copy(kDate.begin(), kDate.end(), bytes.begin() + 24);
    return bytes;
}

/// The profiles met last, each with what became of it: the photos of a camera all have the same one, and it takes two
/// milliseconds to look through. From any thread.
class KnownProfiles {
public:
    struct Known {
        std::vector<std::uint8_t> profile;
        std::optional<ColorConversion> conversion;
    };

    static KnownProfiles& shared()
    {
        static auto* const known = new KnownProfiles;
        return *known;
    }
    std::optional<Known> find(std::span<const std::uint8_t> profile)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = std::find_if(m_known.begin(), m_known.end(), [&](const Known& known) {
            return std::equal(known.profile.begin(), known.profile.end(), profile.begin(), profile.end());
        });
        return found == m_known.end() ? std::nullopt : std::optional(*found);
    }
    void add(std::span<const std::uint8_t> profile, const std::optional<ColorConversion>& conversion)
    {
        constexpr std::size_t kMost = 4;
        constexpr std::size_t kLargest = std::size_t{64} << 10;
        if (profile.size() > kLargest)
            return;
        const std::lock_guard lock(m_mutex);
        m_known.push_front({{profile.begin(), profile.end()}, conversion});
        if (m_known.size() > kMost)
            m_known.pop_back();
    }

private:
    std::mutex m_mutex;
    std::deque<Known> m_known; ///< the newest is the first
};

} // namespace

CGColorSpace::Model profileModel(std::span<const std::uint8_t> iccProfile)
{
    if (iccProfile.size() >= kHeaderSize) {
        const auto states = [&](const char* name) { return std::memcmp(iccProfile.data() + 16, name, 4) == 0; };
        if (states("RGB "))
            return CGColorSpace::Model::RGB;
        if (states("GRAY"))
            return CGColorSpace::Model::Gray;
        if (states("CMYK"))
            return CGColorSpace::Model::CMYK;
    }
    return CGColorSpace::Model::AlphaOnly;
}

ColorConversion::ColorConversion(CGColorSpace::Model model, Transform transform)
    : m_model(model)
    , m_transform(std::move(transform))
{
    if (m_model != CGColorSpace::Model::Gray)
        return;
    auto greys = std::make_shared<GreyTable>();
    for (std::size_t v = 0; v < 256; ++v) {
        std::uint8_t pixel[4] = {static_cast<std::uint8_t>(v), 0, 0, 0};
        cmsDoTransform(m_transform.get(), pixel, pixel, 1);
        std::copy_n(pixel, 3, greys->data() + 3 * v);
    }
    m_greys = std::move(greys);
}

std::optional<ColorConversion> ColorConversion::fromProfile(void* profile, CGColorSpace::Model model)
{
    const Profile target(cmsCreate_sRGBProfile());
    if (!target)
        return std::nullopt;
    const bool inks = model == CGColorSpace::Model::CMYK;
    const cmsUInt32Number intent = inks ? INTENT_PERCEPTUAL : INTENT_RELATIVE_COLORIMETRIC;
    // Without its cache of the last pixel a transform may be used by several threads.
    const cmsUInt32Number flags = cmsFLAGS_NOCACHE | (inks ? 0u : cmsFLAGS_BLACKPOINTCOMPENSATION);
    cmsHTRANSFORM transform = cmsCreateTransform(profile, inputFormat(model), target.get(), TYPE_RGBA_8, intent, flags);
    if (!transform)
        return std::nullopt;
    ColorConversion conversion(model, Transform(transform, cmsDeleteTransform));
    if (conversion.changesNothing())
        return std::nullopt;
    return conversion;
}

std::optional<ColorConversion> ColorConversion::toSRGB(std::span<const std::uint8_t> iccProfile,
                                                       CGColorSpace::Model model)
{
    // Those of presses have up to some three megabytes.
    constexpr std::size_t kLargestProfile = std::size_t{8} << 20;
    if (model == CGColorSpace::Model::AlphaOnly || profileModel(iccProfile) != model ||
        iccProfile.size() > kLargestProfile || !isQuicklyFollowed(iccProfile))
        return std::nullopt;
    // The model stands in the profile, so that it needn't be asked for here.
    if (const auto known = KnownProfiles::shared().find(iccProfile))
        return known->conversion;
    const Profile profile(cmsOpenProfileFromMem(iccProfile.data(), static_cast<cmsUInt32Number>(iccProfile.size())));
    const std::optional<ColorConversion> conversion = profile ? fromProfile(profile.get(), model) : std::nullopt;
    KnownProfiles::shared().add(iccProfile, conversion);
    return conversion;
}

bool ColorConversion::changesNothing() const
{
    if (m_model == CGColorSpace::Model::CMYK)
        return false;
    constexpr int kSteps = 9;
    const auto level = [](int i) { return static_cast<std::uint8_t>(i * 255 / (kSteps - 1)); };
    for (int i = 0; i < kSteps * kSteps * kSteps; ++i) {
        std::uint8_t before[4] = {level(i % kSteps), level(i / kSteps % kSteps), level(i / kSteps / kSteps), 0};
        if (m_model == CGColorSpace::Model::Gray)
            before[1] = before[2] = before[0];
        std::uint8_t after[4];
        std::copy_n(before, 4, after);
        convertRow(after, 1);
        for (int c = 0; c < 3; ++c)
            if (std::abs(after[c] - before[c]) > 1)
                return false;
    }
    return true;
}

void ColorConversion::convertRow(std::uint8_t* pixels, int count) const
{
    if (m_greys) {
        for (std::uint8_t* end = pixels + 4 * static_cast<std::ptrdiff_t>(count); pixels != end; pixels += 4)
            std::copy_n(m_greys->data() + 3 * static_cast<std::size_t>(pixels[0]), 3, pixels);
        return;
    }
    cmsDoTransform(m_transform.get(), pixels, pixels, static_cast<cmsUInt32Number>(count));
    if (m_model == CGColorSpace::Model::CMYK)
        for (int x = 0; x < count; ++x)
            pixels[4 * static_cast<std::size_t>(x) + 3] = 255;
}

void ColorConversion::convertRows(const PixelRows& rows, const std::atomic<bool>* cancelled) const
{
    parallelRows(0, rows.height, kPixelCost * static_cast<std::size_t>(rows.width), [&](int first, int last) {
        for (int y = first; y < last && !isCancelled(cancelled); ++y)
            convertRow(rows.first + static_cast<std::size_t>(y) * rows.bytesPerRow, rows.width);
    });
}

std::vector<std::uint8_t> makeProfile(const Chromaticities& primaries, double gamma)
{
    if (!isPossible(primaries, gamma))
        return {};
    return bytesOf(rgbProfile(primaries, Curve(cmsBuildGamma(nullptr, gamma))));
}

void convertDeviceCMYK(std::uint8_t* pixels, int count)
{
    for (std::uint8_t* end = pixels + 4 * static_cast<std::ptrdiff_t>(count); pixels != end; pixels += 4) {
        const unsigned light = 255u - pixels[3];
        for (int c = 0; c < 3; ++c)
            pixels[c] = mul255(255u - pixels[c], light);
        pixels[3] = 255;
    }
}

void convertDeviceCMYK(const PixelRows& rows)
{
    parallelRows(0, rows.height, 2 * static_cast<std::size_t>(rows.width), [&](int first, int last) {
        for (int y = first; y < last; ++y)
            convertDeviceCMYK(rows.first + static_cast<std::size_t>(y) * rows.bytesPerRow, rows.width);
    });
}

std::span<const std::uint8_t> sRGBProfile()
{
    static const auto* const profile = new std::vector<std::uint8_t>(makeSRGBProfile());
    return *profile;
}

} // namespace lamina
