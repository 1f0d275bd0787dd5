#include "platform/photos/PhotosAlbum.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PictureQueue.h"

#include <memory>
#include <utility>

namespace lamina {

namespace {

/// `save` gives the path, or the error.
template <class Save>
void saveBehind(Save save, PhotoSavedHandler handler)
{
    auto work = [save = std::move(save), handler = std::move(handler),
                 expected = DispatchQueue::main().expectWork()]() mutable {
        Result<std::string> path = save();
        if (!path)
            logError(path.error().message());
        // The handler and what it holds are let go on the main queue, where they came to life.
        if (handler)
            DispatchQueue::main().async([handler = std::move(handler), path = std::move(path)] { handler(path); });
    };
    pictureQueue().async(std::move(work));
}

} // namespace

bool saveToPhotosAlbum(const UIImage& image, PhotoSavedHandler handler)
{
    saveBehind([image] { return savePNGToPhotoLibrary(image.upright().cgImage()); }, std::move(handler));
    return true;
}

void saveToPhotosAlbum(std::vector<std::uint8_t> bytes, const std::string& extension, PhotoSavedHandler handler)
{
    const auto file = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
    saveBehind([file, extension] { return saveToPhotoLibrary(*file, extension); }, std::move(handler));
}

void UISaveVideoAtPathToSavedPhotosAlbum(const std::string& path, PhotoSavedHandler handler)
{
    saveBehind([path] { return copyToPhotoLibrary(path); }, std::move(handler));
}

} // namespace lamina
