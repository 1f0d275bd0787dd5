#pragma once

#include "cli/common/ExitCode.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHChange.h"
#include "platform/photos/PHFetchResult.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>

namespace lamina {

/// What has become of a photo's file. Of one that was removed only identifier and path are told.
enum class PhotoEvent { Added, Removed, Changed };
/// "added" and so on.
const char* nameOf(PhotoEvent event);

/// Tells what becomes of all photos of the library, each time a change is told on the main thread. A file that was
/// renamed or moved is removed under its path and added under the new one.
class PhotoWatch : public PHPhotoLibraryChangeObserver {
public:
    using Teller = std::function<void(PhotoEvent event, const PHAsset& asset)>;

    /// Takes the library as it is now for granted.
    explicit PhotoWatch(Teller tell);

    std::size_t count() const { return m_known.size(); }
    void photoLibraryDidChange(const PHChange& changeInstance) override;

private:
    /// What was last told of a photo.
    struct Known {
        std::string path;
        std::int64_t modified = 0;
    };
    void update(const PHAsset& asset);
    void remove(const std::string& identifier);
    void updateAll();

    Teller m_tell;
    PHFetchResult m_assets;
    std::unordered_map<std::string, Known> m_known; ///< by identifier
};

/// Prints a line for each event, at once, until the process is stopped, or standard output has no reader any more.
/// `line` ends with its line feed.
ExitCode watchPhotos(const std::function<std::string(PhotoEvent event, const PHAsset& asset)>& line, bool isQuiet);

} // namespace lamina
