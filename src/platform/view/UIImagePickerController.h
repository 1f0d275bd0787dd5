#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/UIImagePickerCamera.h"
#include "platform/view/UIView.h"
#include "platform/view/UIViewController.h"

#include <functional>
#include <memory>
#include <optional>

namespace lamina {

class PhotoLoad;
class UIImagePickerController;

/// Where the photo comes from.
enum class UIImagePickerControllerSourceType { PhotoLibrary = 0, Camera = 1 };

/// What the user has picked.
struct UIImagePickerInfo {
    UIImage originalImage;   ///< UIImagePickerControllerOriginalImage: upright
    std::string name;        ///< to show
    PhotoSource source = {}; ///< from which it can be read again; neither path nor bytes: it can't be
    std::string damage = {}; ///< what its decoder says of a damaged one, for `presentDamage`; mostly empty
};

/// Hears what became of a picker. It dismisses the picker; one without a delegate dismisses itself. Main thread.
class UIImagePickerControllerDelegate {
public:
    virtual ~UIImagePickerControllerDelegate() = default;
    virtual void imagePickerControllerDidCancel(UIImagePickerController& picker);
    virtual void imagePickerController(UIImagePickerController& picker,
                                       const UIImagePickerInfo& didFinishPickingMediaWithInfo);
};

/// The system's own way to one photo. The window lets the user choose a file while this is presented; the photo is then
/// read in the background, and can be given up until it is there. With the camera as its source it is a screen on which
/// one is taken. Main thread.
///
/// A photo that can't be read is no answer: the picker dismisses itself, and an alert over the screen that presented it
/// names the photo and the cause. So does one for the camera where nobody serves any, as soon as it has appeared.
class UIImagePickerController : public UIViewController {
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY stateChanged FINAL)
    Q_PROPERTY(QString photoName READ photoNameText NOTIFY stateChanged FINAL)
    Q_PROPERTY(QObject* camera READ cameraObject CONSTANT FINAL)

public:
    /// Finished: there is a photo, or there will be none.
    enum State { Choosing, Loading, Finished };
    Q_ENUM(State)
    using SourceType = UIImagePickerControllerSourceType;

    UIImagePickerController();
    ~UIImagePickerController() override;

    /// The library always is; the camera when `setCameraAvailability` says so (default: no).
    static bool isSourceTypeAvailable(SourceType type);
    /// Installed by whoever knows of cameras and serves a picker that wants one; asked each time. Empty: there are
    /// none.
    static void setCameraAvailability(std::function<bool()> isAvailable);
    /// Installed by whoever takes photos: makes the camera of one picker. Empty: there is none.
    using CameraFactory = std::function<std::unique_ptr<UIImagePickerCamera>()>;
    static void setCameraFactory(CameraFactory makeCamera);

    /// Default: the library.
    SourceType sourceType() const { return m_sourceType; }
    void setSourceType(SourceType type) { m_sourceType = type; }
    /// Not owned.
    std::shared_ptr<UIImagePickerControllerDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<UIImagePickerControllerDelegate> delegate) { m_delegate = std::move(delegate); }
    /// Pixels that the photo's shorter side has to keep; default 0: all of them.
    int shortSide() const { return m_shortSide; }
    void setShortSide(int pixels) { m_shortSide = pixels; }
    /// A photo that is chosen already: it is read as soon as the picker has appeared.
    void setPreselected(PhotoSource photo) { m_preselected = std::move(photo); }
    bool hasPreselected() const { return m_preselected.has_value(); }

    /// The camera of a picker that wants one, made when it is first asked for; null: it wants none, or nobody makes
    /// any.
    UIImagePickerCamera* camera();
    QObject* cameraObject() { return camera(); }
    /// Whether this is the screen of a camera, and not the system's way to a file.
    bool takesPhotos() { return camera() != nullptr; }
    /// What the camera sees.
    std::shared_ptr<UIView> canvasView() override;
    /// The photo that was taken is the user's choice; only where one was.
    Q_INVOKABLE void usePhoto();

    State state() const { return m_state; }
    /// Of the photo that is being read; empty before.
    const std::string& photoName() const { return m_photo.name; }
    QString photoNameText() const { return QString::fromStdString(photoName()); }

    /// The user's choice; only while choosing.
    void choose(PhotoSource photo);
    /// The user wants none, or no longer; the delegate hears of it once. Nothing once finished.
    Q_INVOKABLE void cancel();
    /// Choosing went wrong, or reading did: handled as a photo that can't be read.
    void fail(const Error& error);

    UISystemPresentation systemPresentation() const override { return UISystemPresentation::ImagePicker; }
    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;

signals:
    void stateChanged();

private:
    void finish();
    void leave();
    void giveUp(std::string title, const Error& error);
    void photoArrived(Result<UIImage> photo);
    void tell(const UIImagePickerInfo& info);

    SourceType m_sourceType = SourceType::PhotoLibrary;
    std::weak_ptr<UIImagePickerControllerDelegate> m_delegate;
    int m_shortSide = 0;
    std::optional<PhotoSource> m_preselected;
    State m_state = Choosing;
    PhotoSource m_photo; ///< that was chosen
    std::unique_ptr<PhotoLoad> m_load;
    std::unique_ptr<UIImagePickerCamera> m_camera;
};

} // namespace lamina
