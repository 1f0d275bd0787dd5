#include "platform/photos/PhotoLoading.h"

#include "platform/base/Cancelling.h"
#include "platform/base/Causes.h"
#include "platform/image/pixels/UprightPicture.h"

#include <utility>

namespace lamina {

Result<PictureFacts> photoFacts(const PhotoSource& source)
{
    return source.bytes ? readPictureFacts(*source.bytes, source.name) : readPictureFacts(source.path);
}

Result<UIImage> loadAsStored(const PhotoSource& source, const DecodeOptions& options)
{
    Result<UIImage> photo =
        source.bytes ? decodePicture(*source.bytes, source.name, options) : loadPicture(source.path, options);
    if (!photo)
        return Error{source.name, photo.error().cause};
    return photo;
}

Result<UIImage> loadUpright(const PhotoSource& source, const DecodeOptions& options)
{
    const Result<UIImage> photo = loadAsStored(source, options);
    if (!photo)
        return photo;
    UIImage turned = upright(*photo, options.cancelled);
    if (isCancelled(options.cancelled))
        return Error{source.name, cause::kCancelled};
    return madeOrNoMemory(std::move(turned), source.name);
}

Result<UIImage> madeOrNoMemory(UIImage made, const std::string& subject)
{
    if (!made)
        return Error{subject, cause::kNoMemory};
    return made;
}

} // namespace lamina
