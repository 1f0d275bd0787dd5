#include "platform/photos/PhotosAlbum.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PictureQueue.h"

#include <string>

namespace lamina {

bool saveToPhotosAlbum(const UIImage& image)
{
    pictureQueue().async([image, work = DispatchQueue::main().expectWork()] {
        const Result<std::string> path = savePNGToPhotoLibrary(image.upright().cgImage());
        if (!path)
            logError(path.error().subject + ": " + path.error().cause);
    });
    return true;
}

} // namespace lamina
