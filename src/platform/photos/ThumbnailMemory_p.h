#pragma once

#include "platform/image/pixels/UIImage.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/thumbnails/FileStamp.h"

#include <cstddef>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <tuple>
#include <utility>

namespace lamina {

/// The thumbnails that were shown last, and the files that turned out to hold no picture; those that were asked for
/// longest ago go first. All operations from any thread.
class ThumbnailMemory {
public:
    /// `mostBytes`: of pixels.
    explicit ThumbnailMemory(std::size_t mostBytes);

    /// What was kept for just this request; an empty picture for a file that can't be read.
    std::optional<UIImage> find(const FileStamp& file, const AssetPictureRequest& request);
    /// The largest picture of the file that is there, made for whatever request; empty when there is none.
    UIImage findAny(const FileStamp& file) const;
    void keep(const FileStamp& file, const AssetPictureRequest& request, const UIImage& picture);
    /// The file can't be read, at whatever size.
    void keepUnreadable(const FileStamp& file);
    void drop();

private:
    /// Stamp; target, content mode and resize mode, all 0 for what can't be read.
    using Key = std::tuple<FileStamp, int, int, int, int>;
    struct Entry {
        Key key;
        UIImage picture;
    };

    static Key keyOf(const FileStamp& file, const AssetPictureRequest& request);
    static Key unreadableKey(const FileStamp& file) { return {file, 0, 0, 0, 0}; }
    static std::size_t cost(const UIImage& picture);
    std::optional<UIImage> use(const Key& key);
    void put(const Key& key, const UIImage& picture);

    const std::size_t m_mostBytes;
    mutable std::mutex m_mutex;
    std::list<Entry> m_entries; ///< the one used last is the first
    std::map<Key, std::list<Entry>::iterator> m_places;
    std::size_t m_bytes = 0;
    std::size_t m_taken = 0; ///< bytes of pictures that came since free memory was given back
};

} // namespace lamina
