#include "platform/photos/ThumbnailMemory_p.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/FreeMemory.h"
#include "platform/photos/AssetScaling_p.h"
#include "platform/photos/PHImageManager.h"

namespace lamina {

namespace {

/// Pictures are let go in another order than they came in, on several threads: after so many bytes of them what is free
/// is given back.
constexpr std::size_t kTrimBytes = std::size_t{8} << 20;

} // namespace

ThumbnailMemory::ThumbnailMemory(std::size_t mostBytes)
    : m_mostBytes(mostBytes)
{
}

ThumbnailMemory::Key ThumbnailMemory::keyOf(const FileStamp& file, const AssetPictureRequest& request)
{
    const CGSize target = wholeTarget(request).value_or(PHImageManagerMaximumSize);
    return {file, static_cast<int>(target.width), static_cast<int>(target.height),
            static_cast<int>(request.contentMode), static_cast<int>(request.resizeMode)};
}

std::size_t ThumbnailMemory::cost(const UIImage& picture)
{
    constexpr std::size_t kEntry = 512; // what the lists hold of one
    return kEntry + picture.cgImage().bytes().size();
}

std::optional<UIImage> ThumbnailMemory::find(const FileStamp& file, const AssetPictureRequest& request)
{
    const std::lock_guard lock(m_mutex);
    std::optional<UIImage> picture = use(keyOf(file, request));
    return picture ? picture : use(unreadableKey(file));
}

std::optional<UIImage> ThumbnailMemory::use(const Key& key)
{
    const auto found = m_places.find(key);
    if (found == m_places.end())
        return std::nullopt;
    m_entries.splice(m_entries.begin(), m_entries, found->second);
    return found->second->picture;
}

UIImage ThumbnailMemory::findAny(const FileStamp& file) const
{
    const std::lock_guard lock(m_mutex);
    UIImage largest;
    for (auto at = m_places.lower_bound(unreadableKey(file)); at != m_places.end() && std::get<0>(at->first) == file;
         ++at) {
        const UIImage& picture = at->second->picture;
        if (picture.size().width > largest.size().width)
            largest = picture;
    }
    return largest;
}

void ThumbnailMemory::keep(const FileStamp& file, const AssetPictureRequest& request, const UIImage& picture)
{
    bool isDue = false;
    {
        const std::lock_guard lock(m_mutex);
        put(keyOf(file, request), picture);
        isDue = m_taken >= kTrimBytes;
        if (isDue)
            m_taken = 0;
    }
    if (isDue)
        returnFreeMemory();
}

void ThumbnailMemory::keepUnreadable(const FileStamp& file)
{
    const std::lock_guard lock(m_mutex);
    put(unreadableKey(file), {});
}

void ThumbnailMemory::put(const Key& key, const UIImage& picture)
{
    // A panorama can be so long that it would push all others out.
    if (cost(picture) > m_mostBytes / 2 || use(key)) // or two requests have made the same
        return;
    m_entries.push_front({key, picture});
    m_places.emplace(key, m_entries.begin());
    m_bytes += cost(picture);
    m_taken += cost(picture);
    while (m_bytes > m_mostBytes && !m_entries.empty()) {
        m_bytes -= cost(m_entries.back().picture);
        m_places.erase(m_entries.back().key);
        m_entries.pop_back();
    }
}

void ThumbnailMemory::drop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_places.clear();
        m_entries.clear();
        m_bytes = 0;
    }
    returnFreeMemory();
}

} // namespace lamina
