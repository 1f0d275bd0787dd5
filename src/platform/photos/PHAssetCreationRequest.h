#pragma once

#include <string>

namespace lamina {

/// What a file of an asset is. The values are the platform's.
enum class PHAssetResourceType { Photo = 1, Video = 2 };

/// Stands for an asset that a change is about to create.
struct PHObjectPlaceholder {
    std::string localIdentifier; ///< the asset's, once the change has succeeded
};

/// One new asset, as part of a change (see `PHPhotoLibrary::performChanges`), in whose block alone it lives.
class PHAssetCreationRequest {
public:
    /// Adds a request to the change whose block is running in this thread; null outside such a block. It belongs to
    /// the change.
    static PHAssetCreationRequest* creationRequestForAsset();

    /// The asset's file: the library takes a copy, byte for byte, when the block has ended. One added later takes the
    /// place of one before; without any the change fails.
    void addResource(PHAssetResourceType type, const std::string& path);

    const PHObjectPlaceholder& placeholderForCreatedAsset() const { return m_placeholder; }

private:
    friend class PHChange;
    PHAssetCreationRequest();

    PHObjectPlaceholder m_placeholder;
    std::string m_path;
};

} // namespace lamina
