#include "export/LibrarySaving_p.h"

#include "platform/base/DispatchQueue.h"
#include "platform/files/FileReading.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PictureQueue.h"

namespace lamina {

void storeInLibrary(const SaveModelDetails& details, std::function<void(const Result<std::string>&)> handler)
{
    pictureQueue().async([details, handler = std::move(handler), expected = DispatchQueue::main().expectWork()] {
        Result<std::string> path = savePNGToPhotoLibrary(details.shareimage.cgImage());
        DispatchQueue::main().async([handler, path, expected] { handler(path); });
    });
}

Outcome storeAtPlace(const SaveModelDetails& details, const UIDocumentPlace& place)
{
    if (!details.sharedURL.empty())
        return copyFileToPlace(details.sharedURL, place);
    if (details.bytes)
        return writeFileAtPlace(place, *details.bytes);
    const auto encoded = encodePicture(details.shareimage.upright().cgImage(), *pictureFormatForUTI(kUTTypeJPEG),
                                       place.path, {.quality = details.quality});
    if (!encoded)
        return encoded.error();
    return writeFileAtPlace(place, *encoded);
}

} // namespace lamina
