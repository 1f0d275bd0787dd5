#pragma once

#include "platform/base/Result.h"
#include "platform/photos/PHAssetChangeRequest.h"
#include "platform/photos/PHAssetCollectionChangeRequest.h"
#include "platform/photos/PHAssetCreationRequest.h"

#include <functional>
#include <memory>
#include <vector>

namespace lamina {

/// The requests of one change, gathered while its block runs and carried out together: all of them or none.
class PHChangeRequests {
public:
    /// Runs the block in this thread and then carries out what it has requested. The error's subject is the file
    /// concerned.
    static Outcome perform(const std::function<void()>& changes);

    /// The change whose block is running in this thread; null outside.
    static PHChangeRequests* current();

    PHAssetChangeRequest* addCreation(const UIImage& image);
    PHAssetCreationRequest* addCreation();
    PHAssetCollectionChangeRequest* addCollectionChange(const PHAssetCollection& collection);

private:
    Outcome carryOut() const;
    Result<std::string> folderFor(const PHAssetChangeRequest& creation) const;

    std::vector<std::unique_ptr<PHAssetChangeRequest>> m_creations;
    std::vector<std::unique_ptr<PHAssetCollectionChangeRequest>> m_collectionChanges;
};

} // namespace lamina
