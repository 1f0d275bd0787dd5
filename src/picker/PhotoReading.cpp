#include "picker/PhotoReading.h"

#include "hud/BusyPanel.h"
#include "hud/SVProgressHUD.h"
#include "platform/base/Result.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/PictureWork.h"
#include "platform/view/UIViewController.h"

#include <atomic>
#include <memory>
#include <utility>

namespace lamina {

void readPhotosBehindPanel(UIViewController& screen, std::vector<PhotoSource> photos,
                           std::function<void(std::optional<PickedPhotos>)> done)
{
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    const PickedPhotoSize size = pickedPhotoSizeFor(screen.view().bounds().size);
    showBusyPanel([cancelled] { *cancelled = true; });
    inBackground<PickedPhotos>(
        screen.weak_from_this(),
        [photos = std::move(photos), size, cancelled] { return loadPickedPhotos(photos, size, *cancelled); },
        [cancelled, &screen, done = std::move(done)](PickedPhotos read) {
            SVProgressHUD::dismiss();
            const std::vector<Error> damages = *cancelled ? std::vector<Error>() : std::move(read.damages);
            done(*cancelled ? std::nullopt : std::optional(std::move(read)));
            for (const Error& damage : damages)
                presentDamage(screen, damage);
        });
}

} // namespace lamina
