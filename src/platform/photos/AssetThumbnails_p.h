#pragma once

#include "platform/base/NotificationCenter.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/ThumbnailMemory_p.h"
#include "platform/photos/thumbnails/FileStamp.h"
#include "platform/photos/thumbnails/PictureWorkers.h"
#include "platform/photos/thumbnails/ThumbnailStore.h"

#include <atomic>
#include <cstddef>
#include <optional>
#include <string>

namespace lamina {

/// The thumbnails of assets, from wherever they are to be had soonest: memory, our own files, the desktop's, the photo
/// itself. Upright, scale 1, in sRGB; what is translucent lies on white. Each file is known by its stamp, so that a
/// replaced one is read anew. All operations from any thread; they take the time of files and decoders.
class AssetThumbnails {
public:
    struct Places {
        std::string keptFolder;    ///< of our own thumbnails; empty: none are kept
        std::string desktopFolder; ///< of the desktop's; empty: none are looked at
        std::size_t memory = std::size_t{24} << 20;
    };
    explicit AssetThumbnails(Places places);
    /// The one over the user's folders, which gives its memory back when the system is short of it. Never destroyed.
    static AssetThumbnails& shared();

    /// Which answers are welcome.
    enum class Wanted { Final, CoarseToo };
    struct Found {
        UIImage picture; ///< empty and final: the file is known to hold no picture
        bool isFinal = false;
    };
    /// What is at hand without decoding the photo. For a request that is no thumbnail it is never final.
    Found find(const AssetPictureRequest& request, Wanted wanted);

    /// What was read, and what of it is to be kept on disk.
    struct Reading {
        Result<UIImage> picture;
        FileStamp file;
        UIImage kept; ///< empty: nothing
    };
    /// Reads the photo itself; the request must be a thumbnail. Set `cancelled` (may be null) from any thread to stop.
    /// The errors are those of `loadAssetPicture`.
    Reading read(const AssetPictureRequest& request, const std::atomic<bool>* cancelled);
    /// To be called when the picture has been handed on: keeps the rest, at once or when there is time.
    void keep(const Reading& reading);

    /// All of it: the thumbnail, found or read and kept.
    Result<UIImage> load(const AssetPictureRequest& request, const std::atomic<bool>* cancelled);

private:
    UIImage findOnDisk(const FileStamp& file, const AssetPictureRequest& request, UIImage& coarse);
    UIImage coarsePicture(const FileStamp& file, const AssetPictureRequest& request, UIImage coarse);
    void keepNow(const FileStamp& file, const UIImage& picture);
    Reading failed(const Error& error, const std::optional<FileStamp>& file, const std::string& path);

    ThumbnailMemory m_memory;
    ThumbnailStore m_store;
    const std::string m_desktopFolder;
    std::atomic<int> m_unkept = 0; ///< pictures that wait to be written
    NotificationObserver m_memoryWarning;
};

/// How much else may be read beside this file: a format whose decoder can't be stopped leaves a thread to the others.
PictureWorkKind readingKind(const std::string& path);

} // namespace lamina
