#include "cli/photos/PhotoImport.h"

#include "platform/base/DispatchQueue.h"
#include "platform/image/codecs/PictureFacts.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/photos/PHAssetCreationRequest.h"
#include "platform/photos/PHPhotoLibrary.h"

#include <optional>
#include <vector>

namespace lamina {

namespace {

/// The library knows pictures by their names, and then by what is in them.
Outcome checkPicture(const std::string& path)
{
    if (const Result<PictureFacts> facts = readPictureFacts(path); !facts)
        return facts.error();
    if (pictureFormatForFileName(path) == nullptr)
        return Error{path, "the name must end as a picture's does, as in .jpg"};
    return success();
}

} // namespace

Result<PHAsset> importPhoto(const std::string& path)
{
    if (const Outcome checked = checkPicture(path); !checked)
        return checked.error();
    std::string identifier;
    std::optional<Outcome> outcome;
    PHPhotoLibrary::performChanges(
        [&] {
            PHAssetCreationRequest* const request = PHAssetCreationRequest::creationRequestForAsset();
            request->addResource(PHAssetResourceType::Photo, path);
            identifier = request->placeholderForCreatedAsset().localIdentifier;
        },
        [&outcome](const Outcome& ended) { DispatchQueue::main().async([&outcome, ended] { outcome = ended; }); });
    DispatchQueue::main().runUntil([&outcome] { return outcome.has_value(); });
    if (!*outcome)
        return outcome->error();
    const std::vector<PHAsset> assets = fetchAssetsWithLocalIdentifiers({identifier});
    return assets.empty() ? Result<PHAsset>(Error{path, "the library has lost the copy"}) : assets.front();
}

} // namespace lamina
