#pragma once

#include "platform/base/MainObserver.h"
#include "platform/view/PhotoReceiver.h"
#include "platform/view/UIImagePickerController.h"
#include "platform/view/UIViewController.h"

#include <cstddef>
#include <deque>
#include <memory>

namespace lamina {

/// The screen that asks where the next photo of a blend comes from: the camera or the library. Which photo that is, the
/// slots tell: the first one while `firstPickedImage` is empty. What is picked goes to the crop screen. Main thread
/// only.
class ImagePIckingViewController : public UIViewController,
                                   public UIImagePickerControllerDelegate,
                                   public PhotoReceiver {
    Q_OBJECT
    Q_PROPERTY(QString selectImage READ selectImage NOTIFY selectImageChanged FINAL)
    Q_PROPERTY(bool cameraAvailable READ cameraAvailable NOTIFY cameraAvailableChanged FINAL)
    Q_PROPERTY(int step READ step NOTIFY selectImageChanged FINAL)
    Q_PROPERTY(bool firstPhotoSetAside READ firstPhotoSetAside NOTIFY firstPhotoSetAsideChanged FINAL)

public:
    ImagePIckingViewController();
    ~ImagePIckingViewController() override;

    /// Name of the backdrop: "SCREENbg" while the first photo is wanted, then "SCREEN2bg".
    const QString& selectImage() const { return m_selectImage; }
    /// The photo that is wanted: 1 or 2.
    int step() const;

    /// Whether there is a camera; looked up each time that the screen appears, and when one has come or gone.
    bool cameraAvailable() const { return m_cameraAvailable; }

    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;

    /// Whether the first photo was given up and can be taken again: until another is taken, or this screen is left for
    /// the home screen.
    bool firstPhotoSetAside() const { return m_firstPhotoSetAside; }
    /// Takes it again with its crop, so that the second photo is wanted.
    Q_INVOKABLE void useFirstPhotoAgain();

    /// Back to the home screen; the slots stay.
    Q_INVOKABLE void backButton();
    /// Opens the camera, or says that there is none. (The two names run against what they open.)
    Q_INVOKABLE void galleryButton();
    /// Opens the photo library.
    Q_INVOKABLE void cameraButton();

    void imagePickerControllerDidCancel(UIImagePickerController& picker) override;
    void imagePickerController(UIImagePickerController& picker,
                               const UIImagePickerInfo& didFinishPickingMediaWithInfo) override;

    /// Not while a picker or the crop screen is up or on its way, or a photo is about to be opened.
    bool wantsPhotos() const override;
    /// Reads the first one as if it had been picked; one more waits for the second step. An alert tells of those that a
    /// blend has no room for, and comes first. Photos that waited before are forgotten. Nothing happens while none are
    /// wanted.
    void receivePhotos(std::vector<PhotoSource> photos) override;

signals:
    void selectImageChanged();
    void cameraAvailableChanged();
    void firstPhotoSetAsideChanged();

private:
    void lookForCamera();
    void readSlots();
    std::shared_ptr<UIImagePickerController> makePicker(UIImagePickerControllerSourceType source);
    void pickByHand(UIImagePickerControllerSourceType source);
    bool isFree() const { return !m_leadsToCrop && !presentedViewController(); }
    bool isPhotoDue() const { return !m_waiting.empty() && m_waiting.front().step == step(); }
    void openWaitingPhoto();

    /// A photo that came from outside, for the first or the second step.
    struct WaitingPhoto {
        PhotoSource photo;
        int step = 1;
    };

    QString m_selectImage;
    bool m_firstPhotoSetAside = false;
    std::deque<WaitingPhoto> m_waiting;
    std::size_t m_leftOut = 0; ///< photos of which the user has to be told yet
    bool m_cameraAvailable = false;
    MainObserver m_camerasObserver;
    bool m_leadsToCrop = false; ///< a photo was picked, and the picker is still on its way out
};

} // namespace lamina
