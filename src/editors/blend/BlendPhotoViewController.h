#pragma once

#include "editors/blend/BlendComposition.h"
#include "editors/blend/BlendToolBar.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIRotationGestureRecognizer.h"
#include "platform/view/UIViewController.h"

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// The blend editor: two photos laid over each other, each with its own alpha and transform, over a backdrop. Nothing is
/// computed on pixels while a person works; `flattened` renders the stack once.
///
/// The state is the `BlendComposition`; the view tree shows it:
/// `baseView` > `saveTheImg` > `mainImgView` > `imgView2`, `imgView1` (and stickers), each W × W points, where W is the width of the
/// main screen when the view loads. Main thread only.
class BlendPhotoViewController : public UIViewController {
    Q_OBJECT
public:
    BlendPhotoViewController();
    ~BlendPhotoViewController() override;

    /// Takes the photos from the two slots, selects the second and builds the stack in move mode. A slot that is empty leaves its
    /// image view without a picture.
    void viewDidLoad() override;
    bool prefersStatusBarHidden() const { return true; }

    /// What has been done so far.
    const BlendComposition& composition() const { return m_composition; }
    /// Takes the editor to another state: the tree is built anew from it. Views held from before are out of the tree then.
    void setComposition(const BlendComposition& composition);

    /// Both photos as they came in, untransformed, half transparent, the second below the first, over a clear backdrop; then move
    /// mode, which takes the second to the front.
    void createLayout();

    /// Actions of the two selection buttons: a tap on the selected one swaps. In move mode the first photo can't be chosen: an
    /// alert says so, both buttons end up off, and the second photo stays movable.
    void photo1();
    void photo2();
    /// Back to the photos as they came in, with nothing on them. The tags of stickers count on, and slider snapshots stay.
    void resetBtn();
    /// Move mode: hides the panels, selects the second photo and gives it the gestures.
    void panBtn();
    /// Gives the gestures to the photo that the buttons name, and takes it and then the stickers to the front.
    void panBtnFunc();
    /// Switches interaction on for the view and attaches a pan and a pinch.
    void addGesture(UIImageView& view);

    /// Each event adds its increment to the transform of the gesture's view, inside that transform, and consumes it.
    void handlePan1(UIPanGestureRecognizer& gesture);
    void pinch(UIPinchGestureRecognizer& gesture);
    /// No recogniser calls it: photos of a blend turn by quarters only.
    void rotationGes(UIRotationGestureRecognizer& gesture);

    /// The stack as one picture of W × scale pixels a side at the main screen's scale, on white: the backdrop turns white, on
    /// the canvas too. Empty when memory is short.
    UIImage flattened();

    UIView& baseView() const { return *m_baseView; }
    UIView& saveTheImg() const { return *m_saveTheImg; }
    UIImageView& mainImgView() const { return *m_mainImgView; }
    UIImageView& imgView1() const { return *m_imgViews[0]; }
    UIImageView& imgView2() const { return *m_imgViews[1]; }
    UIImageView& currentImageView() const { return *m_imgViews[m_composition.current]; }

    const BlendToolBar& toolBar() const { return m_toolBar; }
    /// Space between the bar's buttons: `resetConstraint`, `panConstraint` and their six siblings have one value.
    double toolSpacing() const { return m_toolSpacing; }

    /// Where the panels stand, for the view that draws them.
    struct Panels {
        double toolSubViewTopConst = -250; ///< 0 shows the strip of sub-tools
        CGRect fxView;
        CGRect stickerScrollView;
    };
    const Panels& panels() const { return m_panels; }

    /// Tag of the next sticker.
    int stickerHandleTag() const { return m_stickerHandleTag; }

signals:
    /// After every change of the composition, the bar or the panels.
    void changed();

private:
    void buildTree();
    void hidePanels();
    void showNotMovableAlert();
    void bringStickersToFront();
    std::optional<std::size_t> photoOf(const UIView* view) const;
    void setPhotoTransform(std::size_t photo, const CGAffineTransform& transform);

    BlendComposition m_composition;
    BlendToolBar m_toolBar;
    Panels m_panels;
    double m_side = 0; ///< W
    double m_toolSpacing = 0;
    std::shared_ptr<UIView> m_baseView;
    std::shared_ptr<UIView> m_saveTheImg;
    std::shared_ptr<UIImageView> m_mainImgView;
    std::array<std::shared_ptr<UIImageView>, 2> m_imgViews;
    int m_stickerHandleTag = 0;
    std::vector<int> m_stickerTags;
};

} // namespace lamina
