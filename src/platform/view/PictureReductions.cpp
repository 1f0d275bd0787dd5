#include "platform/view/PictureReductions.h"

#include "platform/base/MemoryWarning.h"
#include "platform/image/drawing/Resampling.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace lamina {

namespace {

constexpr std::size_t kMostBytes = std::size_t{32} << 20;
/// Pixels below which a picture is read fast enough as it is.
constexpr double kSmallPicture = 1 << 20;
/// A reduction by less than this is not worth its memory.
constexpr double kLeastReduction = 0.7;
/// How far a reduction may be enlarged while the picture grows.
constexpr double kMostEnlarged = 1.5;
/// By how much the next one is coarser while the picture shrinks, so that not every frame makes one.
constexpr double kShrinkAhead = 1.25;

std::size_t bytesOf(const UIImage& image)
{
    return image.cgImage().bytesPerRow() * static_cast<std::size_t>(image.cgImage().height());
}

/// Less than a thousandth coarser than asked for: sides are whole, and must not come out a pixel too long.
int shortened(int side, double stretch)
{
    constexpr double kRoom = 0.999;
    return std::max(1, static_cast<int>(side * stretch * kRoom));
}

} // namespace

PictureReductions::PictureReductions()
    : m_memoryWarning(NotificationCenter::defaultCenter().addObserver(UIApplicationDidReceiveMemoryWarningNotification,
                                                                      [this](const Notification&) { drop(); }))
{
}

UIImage PictureReductions::fitting(const UIImage& picture, double stretch)
{
    const CGImage& source = picture.cgImage();
    const double pixels = static_cast<double>(source.width()) * source.height();
    if (!(stretch > 0) || stretch > kLeastReduction || pixels < kSmallPicture || source.mask())
        return picture;
    const auto kept = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
        return entry.source.sharesBytesWith(source) && entry.source.size() == source.size();
    });
    double wanted = stretch;
    if (kept != m_entries.end()) {
        constexpr double kSame = 1e-6;
        const double enlarged = stretch / kept->stretch;
        if (enlarged >= 1 - kSame && enlarged <= kMostEnlarged) {
            m_used = true;
            std::rotate(kept, kept + 1, m_entries.end());
            return m_entries.back().reduced;
        }
        if (enlarged < 1)
            wanted = stretch / kShrinkAhead;
        m_entries.erase(kept);
    }
    return make(picture, wanted);
}

UIImage PictureReductions::make(const UIImage& picture, double stretch)
{
    const CGImage& source = picture.cgImage();
    const CGImage small = resampled(source, {shortened(source.width(), stretch), shortened(source.height(), stretch)});
    if (!small)
        return picture;
    m_used = true;
    m_entries.push_back({source, stretch, UIImage(small, picture.scale(), picture.imageOrientation())});
    const auto total = [this] {
        return std::accumulate(m_entries.begin(), m_entries.end(), std::size_t{0},
                               [](std::size_t sum, const Entry& entry) { return sum + bytesOf(entry.reduced); });
    };
    while (m_entries.size() > 1 && total() > kMostBytes)
        m_entries.erase(m_entries.begin());
    return m_entries.back().reduced;
}

void PictureReductions::drop()
{
    m_entries.clear();
    m_used = false;
}

} // namespace lamina
