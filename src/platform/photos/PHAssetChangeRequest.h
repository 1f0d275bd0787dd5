#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <string>

namespace lamina {

struct NewPhoto;

/// Stands for an asset that a change is about to create.
struct PHObjectPlaceholder {
    std::string localIdentifier; ///< the asset's, once the change has succeeded

    friend bool operator==(const PHObjectPlaceholder&, const PHObjectPlaceholder&) = default;
};

/// One new asset, as part of a change (see `PHPhotoLibrary::performChanges`), in whose block alone it lives.
class PHAssetChangeRequest {
public:
    /// Adds a request for a new picture to the change whose block is running in this thread; null outside such a
    /// block. It belongs to the change. The picture is kept upright, as JPEG where it is opaque and as PNG where it is
    /// not; without one the change fails.
    static PHAssetChangeRequest* creationRequestForAssetFromImage(const UIImage& image);

    virtual ~PHAssetChangeRequest() = default;
    PHAssetChangeRequest(const PHAssetChangeRequest&) = delete;
    PHAssetChangeRequest& operator=(const PHAssetChangeRequest&) = delete;

    const PHObjectPlaceholder& placeholderForCreatedAsset() const { return m_placeholder; }

protected:
    explicit PHAssetChangeRequest(PHObjectPlaceholder placeholder);

private:
    friend class PHChangeRequests;
    /// The file that the asset will be. The error's subject is the file or folder concerned.
    virtual Result<NewPhoto> newPhoto() const;

    PHObjectPlaceholder m_placeholder;
    UIImage m_image;
};

} // namespace lamina
