#include "platform/photos/PhotosAlbum.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/photos/PhotoFolder.h"

namespace lamina {

namespace {

/// One at a time: several encoders at once would only share the cores and multiply the memory.
DispatchQueue& albumQueue()
{
    static auto* const queue = new DispatchQueue("lamina.photos.album");
    return *queue;
}

} // namespace

bool saveToPhotosAlbum(const UIImage& image)
{
    albumQueue().async([image, work = DispatchQueue::main().expectWork()] {
        const Result<std::string> path = savePNGToPhotoLibrary(image.upright().cgImage());
        if (!path)
            logError(path.error().subject + ": " + path.error().cause);
    });
    return true;
}

} // namespace lamina
