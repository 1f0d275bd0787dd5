#include "platform/image/named/NamedPictures.h"

#include "platform/base/Log.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/UIScreen.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/named/PictureDrawing_p.h"
#include "platform/image/named/PictureTable_p.h"

#include <algorithm>
#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <string>

namespace lamina {

namespace {

/// Pictures that were drawn, the latest first.
class DrawnPictures {
public:
    static DrawnPictures& shared()
    {
        static auto* const pictures = new DrawnPictures; // never destroyed: threads may still ask
        return *pictures;
    }

    /// The empty picture where it is not kept.
    UIImage find(const PictureRecord* record, CGSize size, double scale)
    {
        const std::scoped_lock lock(m_mutex);
        const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
            return entry.record == record && entry.size == size && entry.image.scale() == scale;
        });
        if (found == m_entries.end())
            return {};
        m_entries.splice(m_entries.begin(), m_entries, found);
        return found->image;
    }

    void keep(const PictureRecord* record, CGSize size, const UIImage& image)
    {
        const std::scoped_lock lock(m_mutex);
        m_entries.push_front({record, size, image});
        m_bytes += bytesOf(image);
        while (m_bytes > kMostBytes) {
            m_bytes -= bytesOf(m_entries.back().image);
            m_entries.pop_back();
        }
    }

private:
    struct Entry {
        const PictureRecord* record;
        CGSize size; ///< that was asked for: the picture's own is whole pixels
        UIImage image;
    };
    /// A screen full of icons, and one backdrop.
    static constexpr std::size_t kMostBytes = std::size_t{8} << 20;

    DrawnPictures()
        : m_memoryWarning(NotificationCenter::defaultCenter().addObserver(
              UIApplicationDidReceiveMemoryWarningNotification, [this](const Notification&) { drop(); }))
    {
    }

    static std::size_t bytesOf(const UIImage& image)
    {
        return image.cgImage().bytesPerRow() * static_cast<std::size_t>(image.cgImage().height());
    }

    void drop()
    {
        const std::scoped_lock lock(m_mutex);
        m_entries.clear();
        m_bytes = 0;
    }

    std::mutex m_mutex;
    std::list<Entry> m_entries;
    std::size_t m_bytes = 0;
    NotificationObserver m_memoryWarning;
};

/// Null, and logged, when there is none.
const PictureRecord* find(std::string_view name)
{
    const PictureRecord* const record = findPicture(name);
    if (!record)
        logError("no picture is called " + std::string(name));
    return record;
}

void drawFitted(const PictureRecord& record, CGContext& context, const CGRect& rect)
{
    const double factor = std::min(rect.size.width / record.width, rect.size.height / record.height);
    context.saveGState();
    context.translateCTM(rect.midX() - record.width * factor / 2, rect.midY() - record.height * factor / 2);
    context.scaleCTM(factor, factor);
    drawPicture(record, context);
    context.restoreGState();
}

UIImage drawn(const PictureRecord& record, CGSize size, double scale)
{
    std::optional<CGContext> context = CGContext::image(size, false, scale);
    if (!context)
        return {};
    drawFitted(record, *context, CGRect({}, size));
    return context->makeUIImage();
}

} // namespace

UIImage imageNamed(std::string_view name, CGSize size, double scale)
{
    const PictureRecord* const record = find(name);
    if (!record)
        return {};
    const double pixelsPerPoint = scale == 0 ? UIScreen::main().scale : scale;
    UIImage image = DrawnPictures::shared().find(record, size, pixelsPerPoint);
    if (image)
        return image;
    image = drawn(*record, size, pixelsPerPoint);
    if (image)
        DrawnPictures::shared().keep(record, size, image);
    return image;
}

UIImage imageNamed(std::string_view name)
{
    const CGSize size = sizeOfImageNamed(name);
    return imageNamed(name, size);
}

void drawImageNamed(std::string_view name, CGContext& context, const CGRect& rect)
{
    if (const PictureRecord* const record = find(name))
        drawFitted(*record, context, rect);
}

CGSize sizeOfImageNamed(std::string_view name)
{
    const PictureRecord* const record = findPicture(name);
    return record ? CGSize{record->width, record->height} : CGSize();
}

} // namespace lamina
