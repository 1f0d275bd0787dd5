#include "picker/YMSPhotoPickerViewController.h"

#include "picker/PhotoArrivals.h"
#include "platform/base/Localization.h"
#include "platform/base/Result.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "platform/photos/PhotoSource.h"
#include "platform/photos/PictureFolders.h"
#include "platform/view/FailureAlert.h"

#include <algorithm>
#include <utility>

// Photos that come from outside the library, and what there is to choose from at all.

namespace lamina {

namespace {

constexpr double kLoadingCheck = 0.25; ///< seconds
/// The system's own way reads what is chosen, to show that it can be; this is enough of it to know.
constexpr int kPixelsThatProve = 64;

QString shown(const std::string& text)
{
    return QString::fromStdString(text);
}

/// The first cause stands for all.
std::string refusalText(const std::vector<Error>& refused)
{
    if (refused.empty())
        return {};
    const std::string first = failureText(refused.front()) + ' ';
    if (refused.size() == 1)
        return first;
    return first +
           localizedText(QT_TRANSLATE_NOOP("Lamina", "Left out besides: %1."), {std::to_string(refused.size() - 1)}) +
           ' ';
}

std::string noRoomText(std::size_t leftOut)
{
    if (leftOut == 0)
        return {};
    return leftOut == 1 ? localizedString(QT_TRANSLATE_NOOP("Lamina", "There is no room for one more photo."))
                        : localizedText(QT_TRANSLATE_NOOP("Lamina", "There is no room for %1 more photos."),
                                        {std::to_string(leftOut)});
}

} // namespace

/// Hears of the file that the user chooses in the system's chooser.
class YMSPhotoPickerViewController::FileChoice : public UIImagePickerControllerDelegate {
public:
    explicit FileChoice(YMSPhotoPickerViewController& picker)
        : m_picker(picker)
    {
    }

    void imagePickerControllerDidCancel(UIImagePickerController& chooser) override { chooser.dismiss(true); }
    void imagePickerController(UIImagePickerController& chooser, const UIImagePickerInfo& info) override
    {
        chooser.dismiss(true, [self = m_picker.weakSelf(), source = info.source] {
            if (const auto picker = self.lock())
                picker->receivePhotos({source});
        });
    }

private:
    YMSPhotoPickerViewController& m_picker; ///< which holds this
};

void YMSPhotoPickerViewController::chooseFiles()
{
    if (!wantsPhotos())
        return;
    if (!m_fileChoice)
        m_fileChoice = std::make_shared<FileChoice>(*this);
    const auto chooser = std::make_shared<UIImagePickerController>();
    chooser->setDelegate(m_fileChoice);
    chooser->setShortSide(kPixelsThatProve);
    present(chooser, true);
}

bool YMSPhotoPickerViewController::wantsPhotos() const
{
    return !presentedViewController();
}

void YMSPhotoPickerViewController::receivePhotos(std::vector<PhotoSource> photos)
{
    takeIntoLibrary(std::move(photos), [self = weakSelf()](const PhotoArrivals& arrivals) {
        if (const auto picker = self.lock())
            picker->photosArrived(arrivals);
    });
}

void YMSPhotoPickerViewController::photosArrived(const PhotoArrivals& arrivals)
{
    std::size_t leftOut = 0;
    for (const PHAsset& asset : arrivals.assets) {
        if (selectionIndexOf(asset))
            continue;
        if (canAddPhoto() && !m_isReadingFullImage)
            chooseByHand(asset);
        else
            ++leftOut;
    }
    const std::string told = refusalText(arrivals.refused) + noRoomText(leftOut);
    if (!told.empty())
        emit notice(shown(told).trimmed());
}

void YMSPhotoPickerViewController::updateLibraryState()
{
    if (m_currentCollectionItem && m_currentCollectionItem->assets.isEmpty())
        refreshCollections(); // there may be none at all any more
    const bool filled = std::ranges::any_of(m_collectionItems, [](const auto& item) { return !item.assets.isEmpty(); });
    const LibraryState state = filled                            ? Filled
                               : !PHPhotoLibrary::showsFolders() ? Hidden
                               : PHPhotoLibrary::isComplete()    ? Empty
                                                                 : Loading;
    // An empty library has nothing to tell when it has been read.
    if (state == Loading)
        m_loadingTimer = DispatchTimer(DispatchQueue::main(), kLoadingCheck, [this] { updateLibraryState(); });
    if (state == m_libraryState)
        return;
    m_libraryState = state;
    emit libraryStateChanged();
}

bool YMSPhotoPickerViewController::showsFolders() const
{
    return PHPhotoLibrary::showsFolders();
}

QString YMSPhotoPickerViewController::emptyLine() const
{
    return shown(
        localizedText(QT_TRANSLATE_NOOP("Lamina", "Photos are looked for in %1"), {shownPath(picturesFolder())}));
}

} // namespace lamina
