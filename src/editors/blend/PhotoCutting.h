#pragma once

#include "editors/blend/PickedImages.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/UIImagePickerController.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

class UIViewController;

/// How far a photo can be zoomed in the crop square; a decoder must leave the pixels for it.
inline constexpr double kMaximumCropZoom = 6.0;
/// Photos that a blend lays over each other.
inline constexpr std::size_t kPhotosOfABlend = 2;

namespace blendscene {
/// The screen of the storyboard that cuts photos, a `PhotoCropScreen`.
inline constexpr const char* kCrop = "PinchZoomViewController";
} // namespace blendscene

/// A photo that is to be cut for whoever asks, and not for the slots.
struct CropTask {
    UIImage photo;                 ///< upright
    int number = 1;                ///< of the photo in the blend, 1 or 2
    double side = 0;               ///< of the square, points
    std::optional<PhotoCrop> crop; ///< where the photo stands at first; none: as a new one
    /// The cut, square, one pixel a point, and where the photo stood. Not called for a photo that is not taken.
    std::function<void(UIImage cut, PhotoCrop crop)> done;
};

/// A screen that cuts photos. It dismisses itself, and then answers at once, so that the next screen can be presented.
class PhotoCropScreen {
public:
    virtual ~PhotoCropScreen() = default;
    /// Before the view loads.
    virtual void setTask(CropTask task) = 0;
};

/// A photo of a blend for which another cut is wanted.
struct WantedCut {
    int number = 1;                    ///< 1 or 2
    std::optional<PhotoSource> source; ///< none: the user chooses
    std::optional<PhotoCrop> crop;     ///< where it stands at first; none: as a new one
};

/// A cut that was made.
struct PhotoCut {
    int number = 1;
    UIImage image;
    PhotoCrop crop;
    PhotoSource source;
};

/// Leads an editor's user from photos to their cuts: each is chosen in the system's picker, or read from where it is,
/// and then cut on the crop screen; both lie over the editor. Held by the editor through a shared pointer. Main thread.
///
/// Nothing is handed over before the last photo is cut: who turns back at any step, or has chosen what can't be read
/// (which the picker tells in an alert), finds the editor as it was.
class PhotoCutting : public UIImagePickerControllerDelegate, public std::enable_shared_from_this<PhotoCutting> {
public:
    /// What was cut, in the order in which it was wanted.
    using Completion = std::function<void(const std::vector<PhotoCut>& cuts)>;

    /// The editor outlives this.
    explicit PhotoCutting(UIViewController& editor);

    /// Asks for these photos, one after the other, in a square of `side` points. `source` is where the user chooses.
    /// Nothing while something lies over the editor.
    void begin(std::deque<WantedCut> wanted, double side, UIImagePickerControllerSourceType source,
               Completion completion);

    void imagePickerControllerDidCancel(UIImagePickerController& picker) override;
    void imagePickerController(UIImagePickerController& picker,
                               const UIImagePickerInfo& didFinishPickingMediaWithInfo) override;

private:
    void readNext();
    void cutNext(const UIImagePickerInfo& photo);
    void takeCut(PhotoCut cut);

    UIViewController& m_editor;
    std::deque<WantedCut> m_wanted; ///< those that are not cut yet
    double m_side = 0;
    UIImagePickerControllerSourceType m_source = UIImagePickerControllerSourceType::PhotoLibrary;
    std::vector<PhotoCut> m_cuts;
    Completion m_completion;
};

/// A picker for the photo of that number, which has the pixels for the closest zoom in a square of `side` points. It
/// lies over the screen that presents it.
std::shared_ptr<UIImagePickerController> makeCropPicker(std::weak_ptr<UIImagePickerControllerDelegate> delegate,
                                                        UIImagePickerControllerSourceType source, double side,
                                                        int number);

/// Tells that `count` photos, at least one, have no place in a blend; then `goOn` is called.
void presentLeftOut(UIViewController& screen, std::size_t count, std::function<void()> goOn);

} // namespace lamina
