#include "picker/PickerScenes.h"

#include "picker/CollectionItem.h"
#include "picker/YMSAlbumPickerViewController.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "picker/YMSSinglePhotoViewController.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHImageManager.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"

#include <memory>
#include <optional>
#include <vector>

namespace lamina {

namespace {

std::shared_ptr<UIViewController> emptyAlbumList()
{
    return std::make_shared<YMSAlbumPickerViewController>(std::vector<CollectionItem>(), std::nullopt, nullptr);
}

std::shared_ptr<UIViewController> noPhoto()
{
    return std::make_shared<YMSSinglePhotoViewController>(PHAsset(), std::weak_ptr<PHImageManager>(), nullptr);
}

std::shared_ptr<UIViewController> picker()
{
    return std::make_shared<YMSPhotoPickerViewController>();
}

} // namespace

void addPickerScenes(UIStoryboard& storyboard)
{
    storyboard.addScene("YMSPhotoPickerViewController", {picker, "YMSPhotoPickerScreen.qml"});
    storyboard.addScene("YMSAlbumPickerViewController", {emptyAlbumList, "YMSAlbumPickerScreen.qml"});
    storyboard.addScene("YMSSinglePhotoViewController", {noPhoto, "YMSSinglePhotoScreen.qml"});
}

} // namespace lamina
