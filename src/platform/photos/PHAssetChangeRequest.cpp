#include "platform/photos/PHAssetChangeRequest.h"

#include "platform/image/codecs/ImageSaving.h"
#include "platform/photos/PHAssetCreationRequest.h"
#include "platform/photos/PHChangeRequests_p.h"
#include "platform/photos/PhotoFolder.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// An opaque picture is kept as cameras keep theirs.
constexpr double kPhotoQuality = 0.95;

Error noPicture()
{
    return {photoLibraryFolder(), "there is no picture"};
}

} // namespace

PHAssetChangeRequest::PHAssetChangeRequest(PHObjectPlaceholder placeholder)
    : m_placeholder(std::move(placeholder))
{
}

PHAssetChangeRequest* PHAssetChangeRequest::creationRequestForAssetFromImage(const UIImage& image)
{
    return PHChangeRequests::current() ? PHChangeRequests::current()->addCreation(image) : nullptr;
}

Result<NewPhoto> PHAssetChangeRequest::newPhoto() const
{
    if (!m_image)
        return noPicture();
    const bool alpha = m_image.cgImage().hasAlpha();
    const std::string uti(utiForType(alpha ? kImageTypePNG : kImageTypeJPEG));
    Result<std::vector<std::uint8_t>> bytes =
        encodeImage(m_image, {.uti = uti, .quality = kPhotoQuality, .backgroundFillColor = {}}, photoLibraryFolder());
    if (!bytes)
        return bytes.error();
    return NewPhoto{alpha ? ".png" : ".jpg", *std::move(bytes)};
}

PHAssetCreationRequest* PHAssetCreationRequest::creationRequestForAsset()
{
    return PHChangeRequests::current() ? PHChangeRequests::current()->addCreation() : nullptr;
}

void PHAssetCreationRequest::addResource(PHAssetResourceType, const std::string& path)
{
    m_path = path;
}

Result<NewPhoto> PHAssetCreationRequest::newPhoto() const
{
    return m_path.empty() ? Result<NewPhoto>(noPicture()) : copyOf(m_path);
}

} // namespace lamina
