#include "editors/common/KeptPictures.h"

#include "editors/common/KeptJournal.h"
#include "editors/common/RecordReading.h"
#include "platform/files/FileReading.h"
#include "platform/files/FileWriting.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <utility>

namespace lamina {

namespace {

constexpr std::string_view kExtension = ".png";
constexpr std::size_t kHashDigits = 64;
/// Of one picture: what the window opens of a photo at most.
constexpr std::size_t kMostBytes = std::size_t{256} << 20;
/// Of all pictures of a work in memory: some twenty photos of twelve megapixels.
constexpr std::size_t kMostBytesOfAll = std::size_t{1} << 30;

/// No display has so many pixels a point.
constexpr double kLargestScale = 64;

constexpr const char* kFile = "file";
constexpr const char* kScale = "scale";
constexpr const char* kOrientation = "orientation";
constexpr const char* kAlpha = "alpha";

CGImage withAlphaInfo(const CGImage& image, CGImageAlphaInfo alpha)
{
    CGImageLayout layout = image.layout();
    layout.bitmapInfo = bitmapInfo(alpha);
    const auto held = std::make_shared<const CGImage>(image);
    return CGImage::make(layout, {held, held->bytes().data()}, held->bytes().size());
}

/// PNG knows straight alpha alone, to which premultiplied pixels don't convert without loss; as they are, called
/// straight, they pass through it whole.
CGImage asStored(const CGImage& image)
{
    const CGImageLayout& layout = image.layout();
    const bool plain = layout.bitmapInfo == bitmapInfo(CGImageAlphaInfo::PremultipliedLast) &&
                       layout.bitsPerPixel == 32 && layout.colorSpace == CGColorSpace::deviceRGB() &&
                       image.mask() == nullptr;
    return plain ? withAlphaInfo(image, CGImageAlphaInfo::Last) : image;
}

bool isSame(const CGImage& one, const CGImage& other)
{
    return one.sharesBytesWith(other) && one.size() == other.size() && one.bitmapInfo() == other.bitmapInfo();
}

bool isAlphaOfStored(int alpha)
{
    return alpha == static_cast<int>(CGImageAlphaInfo::PremultipliedLast) ||
           alpha == static_cast<int>(CGImageAlphaInfo::Last) ||
           alpha == static_cast<int>(CGImageAlphaInfo::NoneSkipLast);
}

} // namespace

bool isKeptPictureName(std::string_view name)
{
    return name.size() == kHashDigits + kExtension.size() && name.ends_with(kExtension) &&
           name.find_first_not_of("0123456789abcdef") == kHashDigits;
}

KeptPictures::KeptPictures(std::string folder)
    : m_folder(std::move(folder))
{
}

void KeptPictures::beginRecord()
{
    m_named.clear();
    m_written = success();
}

Result<std::vector<std::string>> KeptPictures::endRecord()
{
    if (!m_written)
        return m_written.error();
    return std::exchange(m_named, {});
}

RecordValue KeptPictures::keep(const UIImage& picture)
{
    if (!picture || !m_written)
        return nullptr;
    const std::string name = nameOf(picture.cgImage());
    if (std::find(m_named.begin(), m_named.end(), name) == m_named.end())
        m_named.push_back(name);
    RecordValue value{
        {kFile, name}, {kScale, picture.scale()}, {kOrientation, static_cast<int>(picture.imageOrientation())}};
    if (isAlphaOfStored(static_cast<int>(picture.cgImage().alphaInfo())))
        value[kAlpha] = static_cast<int>(picture.cgImage().alphaInfo());
    return value;
}

std::string KeptPictures::nameOf(const CGImage& image)
{
    for (const Held& held : m_held) {
        if (isSame(held.kept, image))
            return held.name;
    }
    const Result<std::string> name = write(image);
    if (!name) {
        m_written = name.error();
        return {};
    }
    m_held.push_back({*name, image, {}});
    return *name;
}

Result<std::string> KeptPictures::write(const CGImage& image) const
{
    const Result<std::vector<std::uint8_t>> png = encodePNG(asStored(image), m_folder);
    if (!png)
        return png.error();
    const std::string name = contentHash(*png).append(kExtension);
    const std::string path = m_folder + '/' + name;
    std::error_code missing;
    if (std::filesystem::file_size(path, missing) == png->size() && !missing)
        return name;
    if (const Outcome written = writePrivateFile(path, *png); !written)
        return written.error();
    return name;
}

bool KeptPictures::find(const RecordValue& value, UIImage& picture)
{
    picture = {};
    if (value.is_null())
        return true;
    std::string name;
    double scale = 1;
    int orientation = 0;
    int alpha = 0;
    const bool read = readRecordValue([&] {
        value.at(kFile).get_to(name);
        value.at(kScale).get_to(scale);
        value.at(kOrientation).get_to(orientation);
        alpha = value.value(kAlpha, alpha);
        return true;
    });
    if (!read || !isKeptPictureName(name) || !(scale > 0 && scale <= kLargestScale) || orientation < 0 ||
        orientation > static_cast<int>(UIImageOrientation::RightMirrored))
        return false;
    CGImage pixels = pixelsOf(name);
    if (pixels && isAlphaOfStored(alpha))
        pixels = withAlphaInfo(pixels, static_cast<CGImageAlphaInfo>(alpha));
    if (!pixels)
        return false;
    m_held.push_back({name, pixels, {}});
    picture = UIImage(pixels, scale, static_cast<UIImageOrientation>(orientation));
    return true;
}

CGImage KeptPictures::pixelsOf(const std::string& name)
{
    for (const Held& held : m_held) {
        if (held.name == name && held.loaded)
            return held.loaded;
    }
    CGImage pixels = readPixels(name);
    if (pixels)
        m_held.push_back({name, {}, pixels});
    return pixels;
}

CGImage KeptPictures::readPixels(const std::string& name) const
{
    const std::string path = m_folder + '/' + name;
    const Result<std::vector<std::uint8_t>> bytes = readSmallFile(path, kMostBytes);
    if (!bytes || !name.starts_with(contentHash(*bytes)))
        return {};
    DecodeOptions options;
    options.memoryLimit = std::min(kMostBytes, roomLeft());
    const Result<UIImage> picture = decodePicture(*bytes, path, options);
    return picture ? picture->cgImage() : CGImage();
}

std::size_t KeptPictures::roomLeft() const
{
    std::size_t taken = 0;
    for (const Held& held : m_held)
        taken += held.loaded.bytes().size();
    return kMostBytesOfAll - std::min(taken, kMostBytesOfAll);
}

bool KeptPictures::load(const std::vector<std::string>& names)
{
    return std::all_of(names.begin(), names.end(),
                       [this](const std::string& name) { return isKeptPictureName(name) && pixelsOf(name); });
}

void KeptPictures::forgetOthers(const std::vector<std::string>& names)
{
    std::erase_if(m_held,
                  [&](const Held& held) { return std::find(names.begin(), names.end(), held.name) == names.end(); });
}

} // namespace lamina
