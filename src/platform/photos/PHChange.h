#pragma once

#include "platform/photos/PHFetchResultChangeDetails.h"

#include "platform/photos/PHFetchResult.h"

#include <memory>
#include <optional>
#include <utility>

namespace lamina {

/// One change of the library, as its observers are told. Cheap to copy; usable from any thread.
class PHChange {
public:
    /// What the change means for a fetch result, however long ago that was fetched; nothing where it means nothing, or
    /// where the result knows of the change already. Takes some milliseconds for 50,000 pictures.
    std::optional<PHFetchResultChangeDetails> changeDetailsForFetchResult(const PHFetchResult& object) const;

    struct Content; // for the implementation
    explicit PHChange(std::shared_ptr<const Content> content)
        : m_content(std::move(content))
    {
    }

private:
    std::shared_ptr<const Content> m_content; ///< never null
};

/// Hears of changes of the library; see `PHPhotoLibrary::registerChangeObserver`.
class PHPhotoLibraryChangeObserver {
public:
    virtual ~PHPhotoLibraryChangeObserver() = default;

    /// On the main thread, once for each change, in the order of the changes.
    virtual void photoLibraryDidChange(const PHChange& changeInstance) = 0;
};

} // namespace lamina
