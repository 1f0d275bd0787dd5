#include "app/ViewController.h"

#include "app/AppMenu.h"
#include "app/HomeArt.h"
#include "app/ImagePIckingViewController.h"
#include "app/MainStoryboard.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/collage/CollagePhotos.h"
#include "editors/common/EditorNotifications.h"
#include "picker/PhotoReading.h"
#include "picker/PickedPhotos.h"
#include "picker/SelectedImagesReceiver.h"
#include "picker/ThemedPicker.h"
#include "picker/YMSPhotoHelper.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/base/ExceptionCause.h"
#include "platform/base/Localization.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

/// What a way on needs from the picker, and where it leads.
struct Entry {
    std::string_view name;
    unsigned photos;
    const char* segue;
};

constexpr std::string_view kThreePhotos = "threePhoto";

constexpr std::array kEntries{
    Entry{"twoPhoto", 2, segue::kPickedToCollage}, Entry{kThreePhotos, 3, segue::kPickedToCollage},
    Entry{"blendPhoto", 2, segue::kPickedToBlend}, // no button sets it: a second way into the blend editor, kept ready
};

const Entry* entryNamed(std::string_view name)
{
    for (const Entry& entry : kEntries)
        if (entry.name == name)
            return &entry;
    return nullptr;
}

/// The short phones, and the space that three entries have on them.
constexpr std::array kShortScreens{480.0, 568.0};
constexpr double kShortScreenSpacing = 55;

ViewController::InterstitialPreload& interstitialPreload()
{
    static ViewController::InterstitialPreload preload;
    return preload;
}

/// The message is completed by what could not be read, a sentence each.
std::shared_ptr<UIAlertController> wrongCountAlert(unsigned photos, const std::vector<Error>& failures)
{
    std::string message =
        photos == 3 ? localizedString("Please select 3 photos") : localizedString("Please select 2 photos");
    for (const Error& failure : failures)
        message += '\n' + failureText(failure);
    return UIAlertController::make(localizedString("Oops"), std::move(message),
                                   {{localizedString("OK"), UIAlertActionStyle::Default, {}}});
}

} // namespace

ViewController::ViewController() = default;
ViewController::~ViewController() = default;

std::shared_ptr<ViewController> ViewController::sharedSelf()
{
    return {shared_from_this(), this};
}

void ViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    m_dismissal =
        NotificationCenter::defaultCenter().addObserver(kDismissEditorsNotification, [this](const Notification&) {
            m_editorWasLeft = true;
            dismissAllViewControllers();
        });
    m_keptWorks = NotificationCenter::defaultCenter().addObserver(kKeptWorksChangedNotification,
                                                                  [this](const Notification&) { findOfferedWork(); });
    const double height = view().bounds().size.height;
    if (std::find(kShortScreens.begin(), kShortScreens.end(), height) != kShortScreens.end())
        verticlebtnConstraints = kShortScreenSpacing;
    interestiallCall();
}

void ViewController::interestiallCall()
{
    const auto complain = [](const std::string& cause) { logWarning("the interstitial can't be preloaded: " + cause); };
    try {
        if (const Outcome outcome = interstitialPreload() ? interstitialPreload()() : success(); !outcome)
            complain(outcome.error().message());
    } catch (...) { // the screen is whole without it
        complain(causeOfException());
    }
}

void ViewController::setInterstitialPreload(InterstitialPreload preload)
{
    interstitialPreload() = std::move(preload);
}

void ViewController::dismissAllViewControllers()
{
    if (presentedViewController())
        dismiss(true);
}

void ViewController::twoPhotoCollage()
{
    selectedBtnStr = "twoPhoto";
    launchSpecialController();
}

void ViewController::threePhotoCollage()
{
    selectedBtnStr = "threePhoto";
    launchSpecialController();
}

QVariant ViewController::collageArt(int photos) const
{
    return QVariant::fromValue(homeArt(static_cast<std::size_t>(photos)));
}

void ViewController::BlendPhoto()
{
    pushSourceChooser();
}

void ViewController::openPhoto()
{
    if (const auto chooser = std::dynamic_pointer_cast<ImagePIckingViewController>(pushSourceChooser()))
        chooser->cameraButton();
}

void ViewController::showMenu()
{
    presentAppMenu(*this);
}

std::shared_ptr<UIViewController> ViewController::pushSourceChooser()
{
    const std::shared_ptr<UINavigationController> stack = navigationController();
    auto chooser = UIStoryboard::named(kMainStoryboard)->instantiateViewController(scene::kSourceChoice);
    if (!stack || !chooser) {
        logError("the home screen can't open the choice of a photo's source");
        return nullptr;
    }
    stack->pushViewController(chooser, true);
    return chooser;
}

bool ViewController::wantsPhotos() const
{
    return !m_readsPhotos && !m_opensWork;
}

void ViewController::receivePhotos(std::vector<PhotoSource> photos)
{
    if (photos.size() >= entryNamed(kThreePhotos)->photos)
        beginCollage(std::string(kThreePhotos), std::move(photos));
    else
        beginBlend(std::move(photos));
}

void ViewController::beginBlend(std::vector<PhotoSource> photos)
{
    if (photos.empty())
        return;
    const std::shared_ptr<UIViewController> chooser = pushSourceChooser();
    if (auto* const receiver = dynamic_cast<PhotoReceiver*>(chooser.get()))
        receiver->receivePhotos(std::move(photos));
}

void ViewController::beginCollage(const std::string& entry, std::vector<PhotoSource> photos)
{
    const Entry* const wanted = entryNamed(entry);
    if (!wanted || !wantsPhotos())
        return;
    selectedBtnStr = entry;
    const std::size_t count = photos.size();
    photos.resize(std::min<std::size_t>(count, wanted->photos));
    if (photos.size() == count)
        return openPicked(std::move(photos));
    const std::size_t leftOut = count - wanted->photos;
    presentLeftOutOfCollage(*this, leftOut,
                            [self = sharedSelf(), photos = std::move(photos)] { self->openPicked(photos); });
}

void ViewController::launchSpecialController()
{
    const Entry* const entry = entryNamed(selectedBtnStr);
    yms_presentCustomAlbumPhotoView(*this, makeThemedPicker(entry ? entry->photos : 1), sharedSelf());
}

void ViewController::prepareForSegue(UIStoryboardSegue& segue, QObject* sender)
{
    UIViewController::prepareForSegue(segue, sender);
    if (segue.identifier == segue::kPickedToCollage) {
        m_editorWasLeft = true; // once this screen is seen again
        if (auto* const editor = segue.destination<SelectedImagesReceiver>())
            editor->setSelectedImages(chosenImages);
    } else if (segue.identifier == segue::kPickedToBlend) {
        if (auto* const editor = segue.destination<BlendPhotoViewController>())
            editor->getImageArr = chosenImages;
    }
}

bool ViewController::respondsTo(Call call) const
{
    return call != Call::DidCancel; // a cancelled picker goes by itself
}

void ViewController::photoPickerViewController(YMSPhotoPickerViewController& picker,
                                               const UIImage& didFinishPickingImage)
{
    picker.dismiss(true, [self = sharedSelf(), image = didFinishPickingImage] { self->chosenImages = {image}; });
}

void ViewController::photoPickerViewController(YMSPhotoPickerViewController& picker,
                                               const std::vector<PHAsset>& didFinishPickingImages)
{
    picker.dismiss(true,
                   [self = sharedSelf(), photos = photoSources(didFinishPickingImages)] { self->openPicked(photos); });
}

void ViewController::openPicked(std::vector<PhotoSource> photos)
{
    if (std::exchange(m_readsPhotos, true))
        return;
    readPhotosBehindPanel(*this, std::move(photos), [this](std::optional<PickedPhotos> read) {
        m_readsPhotos = false;
        if (!read)
            return;
        chosenImages = std::move(read->images);
        goOnWithChosenImages(read->failures);
    });
}

void ViewController::goOnWithChosenImages(const std::vector<Error>& failures)
{
    const Entry* const entry = entryNamed(selectedBtnStr);
    if (!entry)
        return;
    if (chosenImages.size() == entry->photos)
        performSegue(entry->segue, this);
    else
        present(wrongCountAlert(entry->photos, failures), true);
}

void ViewController::photoPickerViewControllerDidReceivePhotoAlbumAccessDenied(YMSPhotoPickerViewController&)
{
    presentAlbumAccessAlert(*this);
}

void ViewController::photoPickerViewControllerDidReceiveCameraAccessDenied(YMSPhotoPickerViewController& picker)
{
    presentCameraAccessAlert(picker);
}

} // namespace lamina
