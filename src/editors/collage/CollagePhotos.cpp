// Photos that come to a collage from outside: dropped on it, or pasted.

#include "editors/collage/CollagePhotos.h"

#include "editors/collage/CreateCollageViewController.h"
#include "editors/common/PhotosLeftOut.h"
#include "picker/PhotoReading.h"
#include "picker/PickedPhotos.h"
#include "platform/base/Localization.h"
#include "platform/base/Result.h"
#include "platform/view/FailureAlert.h"

#include <optional>
#include <string>
#include <utility>

namespace lamina {

void presentLeftOutOfCollage(UIViewController& screen, std::size_t count, std::function<void()> goOn)
{
    presentTooManyPhotos(screen,
                         count == 1
                             ? localizedString("The collage has no place for one of the photos.")
                             : localizedText("The collage has no place for %1 of the photos.", {std::to_string(count)}),
                         std::move(goOn));
}

bool CreateCollageViewController::wantsPhotos() const
{
    return !presentedViewController() && !m_readsPhotos && !isBusy();
}

void CreateCollageViewController::receivePhotos(std::vector<PhotoSource> photos)
{
    if (photos.empty() || !wantsPhotos())
        return;
    const std::size_t firstSlot = photos.size() == 1 ? composition().current : 0;
    const std::size_t places = photos.size() == 1 ? 1 : composition().count;
    if (photos.size() <= places)
        return readPhotos(std::move(photos), firstSlot);
    const std::size_t leftOut = photos.size() - places;
    photos.resize(places);
    presentLeftOutOfCollage(*this, leftOut, [weak = weak_from_this(), photos = std::move(photos), firstSlot] {
        if (const auto self = std::static_pointer_cast<CreateCollageViewController>(weak.lock()))
            self->readPhotos(photos, firstSlot);
    });
}

void CreateCollageViewController::readPhotos(std::vector<PhotoSource> photos, std::size_t firstSlot)
{
    m_readsPhotos = true;
    readPhotosBehindPanel(*this, std::move(photos), [this, firstSlot](const std::optional<PickedPhotos>& read) {
        m_readsPhotos = false;
        if (read)
            takePhotos(*read, firstSlot);
    });
}

/// All of them or none: who misses one would have to tell which slots have changed.
void CreateCollageViewController::takePhotos(const PickedPhotos& read, std::size_t firstSlot)
{
    for (const Error& failure : read.failures)
        presentFailure(*this, localizedString("Can’t open the photo"), failure);
    if (!read.failures.empty())
        return;
    act([&] {
        for (std::size_t index = 0; index < read.images.size(); ++index)
            replaceMaster(firstSlot + index, read.images[index], read.images[index]);
        followPhotos();
    });
}

} // namespace lamina
