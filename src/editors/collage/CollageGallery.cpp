// Another photo for the current slot of a collage, from the gallery or the system's picker.

#include "editors/collage/CreateCollageViewController.h"
#include "hud/BusyPanel.h"
#include "hud/SVProgressHUD.h"
#include "picker/ThemedPicker.h"
#include "picker/YMSPhotoHelper.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/base/Causes.h"
#include "platform/base/Localization.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/SquareCrop.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/PictureWork.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

namespace lamina {

namespace {

constexpr double kSeenSquare = 600; ///< points

/// The two pictures that a photo of the system's picker becomes. Empty: memory was short.
struct HalvedPhoto {
    UIImage whole;
    UIImage square;
};

UIImage halved(const UIImage& photo)
{
    const auto half = [](double side) { return std::max(std::floor(side / 2), 1.0); };
    const CGSize size = {half(photo.size().width), half(photo.size().height)};
    std::optional<CGContext> context = CGContext::image(size, false, 1);
    if (!context)
        return {};
    drawInRect(photo, *context, {{}, size});
    return UIImage(context->makeImage());
}

/// As a PNG keeps it.
UIImage throughPNG(const UIImage& picture)
{
    const auto file = encodePNG(picture.cgImage(), {});
    if (!file)
        return {};
    const Result<UIImage> read = decodePicture(*file, {});
    return read ? *read : UIImage();
}

HalvedPhoto halvedPhoto(const UIImage& photo)
{
    const UIImage whole = throughPNG(halved(photo));
    return {whole, squareImageFromImage(whole, kSeenSquare)};
}

} // namespace

void CreateCollageViewController::launchSpecialController()
{
    if (!presentedViewController())
        yms_presentCustomAlbumPhotoView(*this, makeThemedPicker(1), sharedSelf());
}

bool CreateCollageViewController::respondsTo(Call call) const
{
    return call == Call::DidFinishPickingImage || call == Call::DidReceivePhotoAlbumAccessDenied ||
           call == Call::DidReceiveCameraAccessDenied; // a cancelled picker goes by itself
}

void CreateCollageViewController::photoPickerViewController(YMSPhotoPickerViewController& picker,
                                                            const UIImage& didFinishPickingImage)
{
    picker.dismiss(true, [self = sharedSelf(), photo = didFinishPickingImage] { self->takePhoto(photo, photo); });
}

void CreateCollageViewController::takePhoto(const UIImage& picture, const UIImage& master)
{
    act([&] {
        replaceMaster(composition().current, picture, master);
        followPhotos();
    });
}

void CreateCollageViewController::photoPickerViewControllerDidReceivePhotoAlbumAccessDenied(
    YMSPhotoPickerViewController&)
{
    presentAlbumAccessAlert(*this);
}

void CreateCollageViewController::photoPickerViewControllerDidReceiveCameraAccessDenied(
    YMSPhotoPickerViewController& picker)
{
    presentCameraAccessAlert(picker);
}

void CreateCollageViewController::imagePickerController(UIImagePickerController& picker,
                                                        const UIImagePickerInfo& didFinishPickingMediaWithInfo)
{
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    const auto waiting = std::static_pointer_cast<UIImagePickerController>(picker.shared_from_this());
    showBusyPanel([cancelled] { *cancelled = true; });
    inBackground<HalvedPhoto>(
        weak_from_this(),
        [photo = didFinishPickingMediaWithInfo.originalImage, cancelled] {
            return *cancelled ? HalvedPhoto() : halvedPhoto(photo);
        },
        [this, cancelled, waiting,
         damage = Error{didFinishPickingMediaWithInfo.name, didFinishPickingMediaWithInfo.damage}](
            const HalvedPhoto& photo) {
            SVProgressHUD::dismiss();
            waiting->dismiss(true);
            if (*cancelled)
                return;
            if (!photo.square)
                return presentFailure(*this, localizedString("Can’t open the photo"), {{}, cause::kNoMemory});
            takePhoto(photo.square, photo.whole);
            presentDamage(*this, damage);
        });
}

void CreateCollageViewController::imagePickerControllerDidCancel(UIImagePickerController& picker)
{
    picker.dismiss(true);
}

} // namespace lamina
