#include "platform/view/PictureCopies.h"

#include "platform/base/MemoryWarning.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/pixels/CGImage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <optional>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kMostBytes = std::size_t{32} << 20;

/// What a copy keeps to the byte.
bool isPlain(const CGImage& image)
{
    return image && !image.mask() && image.colorSpace() == CGColorSpace::deviceRGB();
}

/// Whether drawing it anew takes longer than a frame may.
bool isLarge(const CGImage& image)
{
    constexpr double kLarge = 1 << 20;
    return static_cast<double>(image.width()) * image.height() >= kLarge;
}

/// From edge to edge along one axis of a canvas of `length` pixels: what of it is on the canvas. Nothing where an edge
/// on the canvas lies between two pixels.
std::optional<std::pair<int, int>> wholeSpan(double low, double high, int length)
{
    const auto edge = [length](double place) -> std::optional<int> {
        if (place <= 0 || place >= length)
            return place <= 0 ? 0 : length;
        return place == std::round(place) ? std::optional(static_cast<int>(place)) : std::nullopt;
    };
    const std::optional<int> first = edge(low);
    const std::optional<int> end = edge(high);
    if (!first || !end || *first >= *end)
        return std::nullopt;
    return std::pair(*first, *end);
}

/// The pixels of a canvas that a rectangle covers, where it is not turned and covers none in part.
std::optional<IntRect> wholePixels(const CGAffineTransform& toDevice, const CGRect& rect, IntSize canvas)
{
    if (toDevice.b != 0 || toDevice.c != 0 || !toDevice.isFinite())
        return std::nullopt;
    const CGRect box = toDevice.boundingBox(rect);
    const auto across = wholeSpan(box.minX(), box.maxX(), canvas.width);
    const auto down = wholeSpan(box.minY(), box.maxY(), canvas.height);
    if (!across || !down)
        return std::nullopt;
    return IntRect{across->first, down->first, across->second - across->first, down->second - down->first};
}

} // namespace

PictureCopies::PictureCopies()
    : m_memoryWarning(NotificationCenter::defaultCenter().addObserver(UIApplicationDidReceiveMemoryWarningNotification,
                                                                      [this](const Notification&) { drop(); }))
{
}

bool PictureCopies::Entry::isFor(const Entry& other) const
{
    return contents == other.contents && rect == other.rect && toDevice == other.toDevice && area == other.area;
}

bool PictureCopies::draw(const CALayer& layer, CGContext& context, bool atRest)
{
    const UIImage& picture = layer.contents();
    const CGRect rect = layer.contentsRect();
    const CGAffineTransform toDevice = context.deviceTransform();
    const std::optional<IntRect> area = wholePixels(toDevice, rect, {context.width(), context.height()});
    const std::optional<CGAffineTransform> fromDevice = toDevice.inverted();
    if (!isPlain(picture.cgImage()) || !area || !fromDevice)
        return false;
    const bool atOnce = atRest && isLarge(picture.cgImage());
    const UIImage copy = copyFor({layer.contentsRevision(), rect, toDevice, *area}, picture, atOnce);
    if (!copy)
        return false;
    context.saveGState();
    context.concatCTM(*fromDevice);
    drawInRect(copy, context, CGRect(area->x, area->y, area->width, area->height));
    context.restoreGState();
    return true;
}

UIImage PictureCopies::copyFor(const Entry& wanted, const UIImage& picture, bool atOnce)
{
    if (wanted.bytes() > kMostBytes)
        return {};
    const auto known = std::ranges::find_if(m_entries, [&](const Entry& entry) { return entry.isFor(wanted); });
    const bool isNew = known == m_entries.end();
    if (isNew)
        m_entries.push_back(wanted);
    else
        std::rotate(known, known + 1, m_entries.end());
    forgetOldest();
    if (!m_entries.back().copy && (atOnce || !isNew))
        m_entries.back().makeCopy(picture);
    return m_entries.back().copy;
}

std::size_t PictureCopies::Entry::bytes() const
{
    return std::size_t{4} * static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height);
}

void PictureCopies::forgetOldest()
{
    const auto total = [this] {
        return std::accumulate(m_entries.begin(), m_entries.end(), std::size_t{0},
                               [](std::size_t sum, const Entry& entry) { return sum + entry.bytes(); });
    };
    while (total() > kMostBytes)
        m_entries.erase(m_entries.begin());
}

void PictureCopies::Entry::makeCopy(const UIImage& picture)
{
    const CGSize size{static_cast<double>(area.width), static_cast<double>(area.height)};
    std::optional<CGContext> context = CGContext::image(size, !picture.cgImage().hasAlpha(), 1);
    if (!context)
        return;
    context->concatCTM(toDevice.concatenating(CGAffineTransform::translation(-area.x, -area.y)));
    drawInRect(picture, *context, rect);
    copy = UIImage(context->makeImage());
}

void PictureCopies::drop()
{
    m_entries.clear();
}

} // namespace lamina
