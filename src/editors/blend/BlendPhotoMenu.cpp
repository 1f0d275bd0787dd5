// The blend editor's photos get others in their places: the menu of each photo, and pictures from outside.

#include "editors/blend/BlendPhotoViewController.h"

#include "editors/blend/BlendTools.h"
#include "editors/blend/PhotoCutting.h"
#include "editors/common/EditorToolBar.h"
#include "platform/base/Localization.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIAlertController.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

constexpr const char* kNoOriginal = QT_TRANSLATE_NOOP("Lamina", "its original is no longer at hand");

int numberOf(std::size_t photo)
{
    return static_cast<int>(photo) + 1;
}

} // namespace

/// For answers that may come when the editor has gone.
std::weak_ptr<BlendPhotoViewController> BlendPhotoViewController::weakSelf()
{
    return std::static_pointer_cast<BlendPhotoViewController>(shared_from_this());
}

QVariantList BlendPhotoViewController::photoMenu() const
{
    EditorToolBar menu(kBlendPhotoActions, {});
    for (const EditorTool& action : kBlendPhotoActions)
        menu.setEnabled(action.identifier, true);
    return menu.list();
}

void BlendPhotoViewController::openPhotoMenu(int photo)
{
    if (photo == 0)
        photo = numberOf(photoInHand());
    if (photo < 0 || photo > numberOf(kSecond))
        return;
    setMenuPhoto(photo);
}

void BlendPhotoViewController::closePhotoMenu()
{
    setMenuPhoto(0);
}

bool BlendPhotoViewController::letGo()
{
    const bool open = m_menuPhoto != 0;
    closePhotoMenu();
    return open || CompositionEditor::letGo();
}

void BlendPhotoViewController::setMenuPhoto(int photo)
{
    if (std::exchange(m_menuPhoto, photo) != photo)
        emit menuPhotoChanged();
}

void BlendPhotoViewController::choosePhotoAction(const QString& identifier)
{
    const int menu = m_menuPhoto;
    if (menu == 0)
        return;
    closePhotoMenu();
    const std::string action = identifier.toStdString();
    const std::size_t photo = static_cast<std::size_t>(menu) - 1;
    if (action == photoaction::kReplace)
        replacePhoto(photo);
    else if (action == photoaction::kCrop)
        cropPhotoAgain(photo);
    else if (action == photoaction::kSwap)
        swapPhotos();
}

std::size_t BlendPhotoViewController::photoInHand() const
{
    const bool first = composition().photo1Selected;
    const bool second = composition().photo2Selected;
    return second ? kSecond : first ? kFirst : composition().current;
}

void BlendPhotoViewController::openPhoto()
{
    replacePhoto(photoInHand());
}

void BlendPhotoViewController::replacePhoto(std::size_t photo)
{
    using Source = UIImagePickerControllerSourceType;
    const auto replaceFrom = [weak = weakSelf(), photo](Source source) {
        if (const auto self = weak.lock())
            self->cutPhotos({{numberOf(photo), {}, {}}}, source);
    };
    if (!UIImagePickerController::isSourceTypeAvailable(Source::Camera))
        return replaceFrom(Source::PhotoLibrary);
    present(UIAlertController::make(localizedString("Replace"), "",
                                    {{localizedString("Photo library"), UIAlertActionStyle::Default,
                                      [replaceFrom] { replaceFrom(Source::PhotoLibrary); }},
                                     {localizedString("Camera"), UIAlertActionStyle::Default,
                                      [replaceFrom] { replaceFrom(Source::Camera); }},
                                     {localizedString("Cancel"), UIAlertActionStyle::Cancel, {}}},
                                    UIAlertControllerStyle::ActionSheet),
            true);
}

void BlendPhotoViewController::cropPhotoAgain(std::size_t index)
{
    const BlendPhoto& photo = composition().photos[index];
    if (photo.source.path.empty() && !photo.source.bytes)
        return presentFailure(*this, localizedString("Can’t crop the photo"),
                              {localizedString("The photo"), kNoOriginal});
    cutPhotos({{numberOf(index), photo.source, photo.crop}}, UIImagePickerControllerSourceType::PhotoLibrary);
}

void BlendPhotoViewController::cutPhotos(std::deque<WantedCut> wanted, UIImagePickerControllerSourceType source)
{
    m_cutting->begin(std::move(wanted), m_side, source, [this](const std::vector<PhotoCut>& cuts) { takeCuts(cuts); });
}

void BlendPhotoViewController::takeCuts(const std::vector<PhotoCut>& cuts)
{
    act([&] {
        for (const PhotoCut& cut : cuts) {
            BlendPhoto& photo = editedComposition().photos[static_cast<std::size_t>(cut.number) - 1];
            photo.actualImage = photo.image = cut.image;
            photo.crop = cut.crop;
            photo.source = cut.source;
        }
        showOtherPhotos();
    });
}

void BlendPhotoViewController::swapPhotos()
{
    act([this] {
        std::swap(editedComposition().photos[kFirst], editedComposition().photos[kSecond]);
        showOtherPhotos();
    });
}

/// The snapshots are of those that were there before.
void BlendPhotoViewController::showOtherPhotos()
{
    forgetSnapshots();
    for (const std::size_t index : {kFirst, kSecond}) {
        const BlendPhoto& photo = composition().photos[index];
        m_imgViews[index]->setImage(photo.image);
        m_imgViews[index]->setAlpha(photo.alpha);
        m_imgViews[index]->setTransform(photo.transform);
    }
}

bool BlendPhotoViewController::wantsPhotos() const
{
    return !presentedViewController();
}

void BlendPhotoViewController::receivePhotos(std::vector<PhotoSource> photos)
{
    if (photos.empty() || !wantsPhotos())
        return;
    std::deque<WantedCut> wanted;
    if (photos.size() == 1)
        wanted.push_back({numberOf(photoInHand()), std::move(photos.front()), {}});
    else
        for (const std::size_t index : {kFirst, kSecond})
            wanted.push_back({numberOf(index), std::move(photos[index]), {}});
    const std::size_t leftOut = photos.size() - wanted.size();
    const auto cut = [weak = weakSelf(), wanted] {
        if (const auto self = weak.lock())
            self->cutPhotos(wanted, UIImagePickerControllerSourceType::PhotoLibrary);
    };
    if (leftOut == 0)
        return cut();
    presentLeftOut(*this, leftOut, cut);
}

} // namespace lamina
