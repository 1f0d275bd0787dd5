#pragma once

#include "platform/base/Result.h"
#include "platform/photos/PHAssetChangeRequest.h"

#include <string>

namespace lamina {

/// What a file of an asset is. The values are the platform's.
enum class PHAssetResourceType { Photo = 1, Video = 2 };

/// One new asset of a file that is there already, as part of a change.
class PHAssetCreationRequest : public PHAssetChangeRequest {
public:
    /// Adds a request to the change whose block is running in this thread; null outside such a block. It belongs to
    /// the change.
    static PHAssetCreationRequest* creationRequestForAsset();

    /// The asset's file: the library takes a copy, byte for byte, when the block has ended. One added later takes the
    /// place of one before; without any the change fails.
    void addResource(PHAssetResourceType type, const std::string& path);

private:
    friend class PHChangeRequests;
    using PHAssetChangeRequest::PHAssetChangeRequest;
    Result<NewPhoto> newPhoto() const override;

    std::string m_path;
};

} // namespace lamina
