#pragma once

#include "editors/blend/BlendHistory.h"
#include "editors/blend/BlendToolBar.h"
#include "platform/base/Result.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIRotationGestureRecognizer.h"
#include "platform/view/UIViewController.h"

#include <QString>
#include <QVariant>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// The blend editor: two photos laid over each other, each with its own alpha and transform, over a backdrop. Nothing
/// is computed on pixels while a person works; `flattened` renders the stack once.
///
/// The state is the `BlendComposition`; the view tree shows it:
/// `baseView` > `saveTheImg` > `mainImgView` > `imgView2`, `imgView1` (and stickers), each W × W points, where W is the
/// width of the main screen when the view loads. Main thread only.
///
/// Undo goes over the composition. One change is one step: a gesture from its start to its end, a reset, a run of keys
/// or of the wheel without a pause of a second. Every action first ends a gesture that is under way, which then is a
/// step of its own.
class BlendPhotoViewController : public UIViewController {
    Q_OBJECT
    // A drag wakes none of these but, once, `edited`.
    Q_PROPERTY(QVariantList tools READ tools NOTIFY barChanged FINAL)
    Q_PROPERTY(bool photo1Selected READ photo1Selected NOTIFY selectionChanged FINAL)
    Q_PROPERTY(bool photo2Selected READ photo2Selected NOTIFY selectionChanged FINAL)
    Q_PROPERTY(bool panBool READ panBool NOTIFY selectionChanged FINAL)
    Q_PROPERTY(bool photo2OnTop READ photo2OnTop NOTIFY selectionChanged FINAL)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY historyChanged FINAL)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY historyChanged FINAL)
    Q_PROPERTY(bool edited READ isEdited NOTIFY editedChanged FINAL)
    Q_PROPERTY(QVariant photo1Picture READ photo1Picture NOTIFY picturesChanged FINAL)
    Q_PROPERTY(QVariant photo2Picture READ photo2Picture NOTIFY picturesChanged FINAL)
    Q_PROPERTY(bool saving READ isSaving NOTIFY savingChanged FINAL)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged FINAL)

public:
    BlendPhotoViewController();
    ~BlendPhotoViewController() override;

    /// Photos chosen in the system's picker before the editor opens; the editor works with those of the two slots.
    std::vector<UIImage> getImageArr;

    /// `baseView`; loads the view.
    std::shared_ptr<UIView> canvasView() override;

    /// Takes the photos from the two slots, selects the second and builds the stack in move mode. A slot that is empty
    /// leaves its image view without a picture.
    void viewDidLoad() override;
    bool prefersStatusBarHidden() const { return true; }

    /// What has been done so far.
    const BlendComposition& composition() const { return m_composition; }
    /// Takes the editor to another state, which is a step: the tree is built anew from it, and in move mode the bar and
    /// the panels are those of that mode. Views held from before are out of the tree then.
    void setComposition(const BlendComposition& composition);

    /// Both photos as they came in, untransformed, half transparent, the second below the first, over a clear backdrop;
    /// then move mode, which takes the second to the front. Part of a change: whoever calls it records the step.
    void createLayout();

    /// Actions of the two selection buttons: a tap on the selected one swaps. In move mode the first photo can't be
    /// chosen: an alert says so, both buttons end up off, and the second photo stays movable.
    Q_INVOKABLE void photo1();
    Q_INVOKABLE void photo2();
    /// Back to the photos as they came in, with nothing on them. The tags of stickers count on, and slider snapshots
    /// stay.
    Q_INVOKABLE void resetBtn();
    /// Move mode: hides the panels, selects the second photo and gives it the gestures.
    Q_INVOKABLE void panBtn();
    /// Gives the gestures to the photo that the buttons name, and takes it and then the stickers to the front.
    void panBtnFunc();
    /// Switches interaction on for the view and attaches a pan and a pinch.
    void addGesture(UIImageView& view);

    /// Each event adds its increment to the transform of the gesture's view, inside that transform, and consumes it. An
    /// increment after which the photo could not be brought back (flattened to nothing, not finite) is left out.
    void handlePan1(UIPanGestureRecognizer& gesture);
    void pinch(UIPinchGestureRecognizer& gesture);
    /// No recogniser calls it: photos of a blend turn by quarters only.
    void rotationGes(UIRotationGestureRecognizer& gesture);

    /// What a pan by (dx, dy) points of the canvas does to the current photo, and a pinch by `factor`; for keys. In
    /// move mode only; a factor that is not finite and positive does nothing.
    Q_INVOKABLE void nudge(double dx, double dy);
    Q_INVOKABLE void zoomBy(double factor);

    /// A step back or forth: photos, transforms, order, backdrop, selection and mode as they were.
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();

    /// Asks whether to discard the work. Yes: posts the notification "PinchZoomViewController" with this screen as its
    /// sender, on which the home screen closes everything, and empties the two slots.
    Q_INVOKABLE void backBtn();
    /// Saves the flattened picture as a PNG file in the photo library's folder, in the background, and puts up a
    /// notice; what goes wrong is told in an alert. Nothing while a picture is being saved.
    Q_INVOKABLE void shareBtn();
    Q_INVOKABLE void dismissNotice();

    /// The stack as one picture of W × scale pixels a side at the main screen's scale, on white: the backdrop turns
    /// white, on the canvas too, which is no step. Empty when memory is short.
    UIImage flattened();

    UIView& baseView() const { return *m_baseView; }
    UIView& saveTheImg() const { return *m_saveTheImg; }
    UIImageView& mainImgView() const { return *m_mainImgView; }
    UIImageView& imgView1() const { return *m_imgViews[0]; }
    UIImageView& imgView2() const { return *m_imgViews[1]; }
    UIImageView& currentImageView() const { return *m_imgViews[m_composition.current]; }

    /// See blendToolList.
    QVariantList tools() const { return m_tools; }
    bool photo1Selected() const { return m_composition.photo1Selected; }
    bool photo2Selected() const { return m_composition.photo2Selected; }
    bool panBool() const { return m_composition.panBool; }
    bool photo2OnTop() const { return m_composition.order.back() == 1; }
    bool canUndo() const { return m_history.canUndo(); }
    bool canRedo() const { return m_history.canRedo(); }
    /// Whether the picture differs from the one that the editor opened with.
    bool isEdited() const { return m_edited; }
    /// A `lamina::UIImage`: the photo as it looks now, untransformed.
    QVariant photo1Picture() const { return QVariant::fromValue(m_composition.photos[0].image); }
    QVariant photo2Picture() const { return QVariant::fromValue(m_composition.photos[1].image); }
    bool isSaving() const { return m_saving; }
    /// Where the last picture was saved, until it is dismissed or the next one is; empty: nothing to tell.
    QString notice() const { return m_notice; }

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
    /// After every change of the composition, the bar or the panels: at each step of a gesture too.
    void changed();
    /// After changes of what the properties above name; never during a gesture, but for `editedChanged`.
    void barChanged();
    void selectionChanged();
    void historyChanged();
    void editedChanged();
    void picturesChanged();
    void savingChanged();
    void noticeChanged();

private:
    /// What was last told to those who watch.
    struct Told {
        BlendToolBar bar;
        std::array<bool, 4> selection{}; ///< in the order of the properties
        std::array<bool, 2> history{};
        std::array<UIImage, 2> pictures;
    };

    void buildTree();
    void enterMoveMode();
    void show(const BlendComposition& composition);
    void cancelGestures();
    void endGesture(const UIGestureRecognizer& gesture, BlendSeries series);
    void tell();
    void tellEdited();
    void saved(const Result<std::string>& path);
    void showSaveFailure(const Error& error);
    void setSaving(bool saving);
    void setNotice(const QString& notice);
    void hidePanels();
    void showNotMovableAlert();
    void bringStickersToFront();
    std::optional<std::size_t> photoOf(const UIView* view) const;
    void setPhotoTransform(std::size_t photo, const CGAffineTransform& transform);

    BlendComposition m_composition;
    BlendHistory m_history;
    BlendToolBar m_toolBar;
    QVariantList m_tools; ///< of m_toolBar, made when it changes
    Told m_told;
    bool m_edited = false;
    bool m_saving = false;
    QString m_notice;
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
