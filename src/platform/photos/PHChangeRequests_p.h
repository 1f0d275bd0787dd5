#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/PHAssetChangeRequest.h"
#include "platform/photos/PHAssetCollectionChangeRequest.h"
#include "platform/photos/PHAssetCreationRequest.h"
#include "platform/photos/PHCollection.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/index/PhotoRecords.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lamina {

/// The requests of one change, gathered while its block runs and carried out together: all of them or none.
class PHChangeRequests {
public:
    /// Runs the block in this thread, carries out what it has requested, and tells `done` how that has ended, before
    /// the library tells anybody what is different. The error's subject is the file or folder concerned.
    static void perform(const std::function<void()>& changes, const std::function<void(const Outcome&)>& done);

    /// The change whose block is running in this thread; null outside.
    static PHChangeRequests* current();

    PHAssetChangeRequest* addCreation(const UIImage& image);
    PHAssetCreationRequest* addCreation();
    PHAssetCollectionChangeRequest* addCollectionChange(const PHAssetCollection& collection);

private:
    /// A photo that is to come.
    struct Creation {
        PhotoID photo = 0;
        std::string folder; ///< empty: our own
        NewPhoto file;
    };
    Result<std::vector<Creation>> creations() const;
    Result<std::string> folderFor(const PHObjectPlaceholder& asset) const;
    Outcome checkAlbums() const;
    static Outcome carryOut(const std::vector<Creation>& creations);

    LibrarySnapshotPtr m_library; ///< at the beginning
    std::vector<std::unique_ptr<PHAssetChangeRequest>> m_creations;
    std::vector<std::unique_ptr<PHAssetCollectionChangeRequest>> m_albumChanges;
};

} // namespace lamina
