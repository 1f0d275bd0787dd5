#pragma once

#include "editors/common/KeptWork.h"
#include "picker/YMSPhotoPickerViewControllerDelegate.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/Result.h"
#include "platform/view/PhotoReceiver.h"
#include "platform/view/UIViewController.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// The home screen, at the bottom of the navigation stack. It offers three ways on: a collage of two or of three
/// photos, by way of the photo picker whose delegate it is, and a blend of two, by way of the screen that asks for a
/// source. Main thread only.
///
/// The notification `kDismissEditorsNotification` dismisses all that this screen presents.
///
/// A work that was not exported is offered here, until it is gone on with or another of its kind is begun, or the
/// person removes it.
class ViewController : public UIViewController, public YMSPhotoPickerViewControllerDelegate, public PhotoReceiver {
    Q_OBJECT
    Q_PROPERTY(bool workOffered READ workOffered NOTIFY offeredWorkChanged FINAL)
    Q_PROPERTY(bool workWasLeft READ workWasLeft NOTIFY offeredWorkChanged FINAL)
    Q_PROPERTY(QString workLine READ workLine NOTIFY offeredWorkChanged FINAL)
    Q_PROPERTY(QVariant workPrint READ workPrint NOTIFY workPrintChanged FINAL)

public:
    ViewController();
    ~ViewController() override;

    /// The collage that was asked for last, "twoPhoto" or "threePhoto"; "blendPhoto" leads picked photos to the blend
    /// editor. Default empty.
    std::string selectedBtnStr;
    /// The photos that came from the picker last, in the order of choice.
    std::vector<UIImage> chosenImages;
    /// Space between the three entries, points; 0 leaves it to the layout.
    double verticlebtnConstraints = 0;

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void prepareForSegue(UIStoryboardSegue& segue, QObject* sender) override;

    /// Begins what loads a full-screen recommendation before it is needed; called once, when the screen has loaded. A
    /// failure is only logged.
    void interestiallCall();
    using InterstitialPreload = std::function<Outcome()>;
    /// What `interestiallCall` runs, on the main thread and without waiting; empty, as it is by default: nothing.
    static void setInterstitialPreload(InterstitialPreload preload);

    /// Dismisses what this screen presents, in one animated step.
    void dismissAllViewControllers();

    /// A `lamina::UIImage`: what lies on the print of the entry for so many photos; see homeArt.
    Q_INVOKABLE QVariant collageArt(int photos) const;
    /// The entries of the collages: open the photo picker for two photos, and for three.
    Q_INVOKABLE void twoPhotoCollage();
    /// See twoPhotoCollage.
    Q_INVOKABLE void threePhotoCollage();
    /// The entry of the blend: pushes the screen that asks where a photo comes from.
    Q_INVOKABLE void BlendPhoto();

    /// Begins a blend and opens the photo library for its first photo.
    Q_INVOKABLE void openPhoto();
    /// Opens the application's menu.
    Q_INVOKABLE void showMenu();
    /// Whether there is a work to go on with.
    bool workOffered() const { return m_offer.has_value(); }
    /// Whether an editor was left since the start, so that the work is opened again rather than gone on with.
    bool workWasLeft() const { return m_editorWasLeft; }
    /// What it is, and when it was last changed: "Blend, today at 19:22".
    QString workLine() const;
    /// A `lamina::UIImage`: how it looked; empty until it was read.
    QVariant workPrint() const { return QVariant::fromValue(m_print); }
    /// Opens the editor with the work as it was left. What stands in the way is told in an alert.
    Q_INVOKABLE void continueWork();
    /// Asks whether to remove the work for good.
    Q_INVOKABLE void discardWork();

    /// Presents the photo picker in this screen's colours, for as many photos as `selectedBtnStr` needs.
    void launchSpecialController();

    bool respondsTo(Call call) const override;
    /// Keeps the picture, and stays on this screen.
    void photoPickerViewController(YMSPhotoPickerViewController& picker, const UIImage& didFinishPickingImage) override;
    /// Reads the pictures in full quality, behind a panel that can cancel, after which nothing is changed; then opens
    /// the editor that `selectedBtnStr` names. What can't be read is left out. An alert says so when the editor needs
    /// another number of photos, and why.
    void photoPickerViewController(YMSPhotoPickerViewController& picker,
                                   const std::vector<PHAsset>& didFinishPickingImages) override;
    /// Alerts with a way to the system's settings: the first over this screen, the second over the picker.
    void photoPickerViewControllerDidReceivePhotoAlbumAccessDenied(YMSPhotoPickerViewController& picker) override;
    void photoPickerViewControllerDidReceiveCameraAccessDenied(YMSPhotoPickerViewController& picker) override;

    bool wantsPhotos() const override;
    /// Photos that come from outside begin what their number says: three or more a collage of three, fewer a blend.
    void receivePhotos(std::vector<PhotoSource> photos) override;
    /// Begins a blend with photos that come from outside, at least one.
    void beginBlend(std::vector<PhotoSource> photos);
    /// Begins the collage of the entry, "twoPhoto" or "threePhoto", with photos that come from outside: they are read
    /// as those of the picker are, and an alert says so when they are too few. Of too many the first ones are taken,
    /// and an alert says that as well.
    void beginCollage(const std::string& entry, std::vector<PhotoSource> photos);

signals:
    void offeredWorkChanged();
    void workPrintChanged();

private:
    void findOfferedWork();
    void readPrint();
    void openWork(const Result<std::shared_ptr<KeptWork>>& work);
    void openEditor(const std::shared_ptr<UIViewController>& editor, bool isPushed);
    void removeWork();
    std::shared_ptr<ViewController> sharedSelf();
    std::shared_ptr<UIViewController> pushSourceChooser();
    void openPicked(std::vector<PhotoSource> photos);
    void goOnWithChosenImages(const std::vector<Error>& failures);

    NotificationObserver m_dismissal;
    NotificationObserver m_keptWorks;
    std::optional<KeptOffer> m_offer;
    UIImage m_print; ///< of the offer
    bool m_editorWasLeft = false;
    bool m_opensWork = false;   ///< it is being read
    bool m_readsPhotos = false; ///< the busy panel is shown
};

} // namespace lamina
