#pragma once

#include "editors/blend/BlendComposition.h"
#include "editors/blend/BlendPanels.h"
#include "editors/blend/PhotoCutting.h"
#include "editors/colorpicker/InfColorPickerControllerDelegate.h"
#include "editors/common/EditorSlider.h"
#include "editors/common/EditorToolBar.h"
#include "editors/common/PictureTools.h"
#include "editors/stickers/StickerEditor.h"
#include "export/ExportFinish.h"
#include "platform/base/CGGeometry.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/PhotoReceiver.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UIImagePickerController.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIView.h"

#include <QString>
#include <QVariant>
#include <QVariantList>

#include <array>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace lamina {

/// The blend editor: two photos laid over each other, each with its own alpha and transform, over a backdrop.
/// Pixels are computed by turns, flips, contrast and brightness alone; all else changes views, whose stack `flattened`
/// renders once.
///
/// The state is the `BlendComposition`; the view tree shows it:
/// `baseView` > `saveTheImg` > `mainImgView` > `imgView2`, `imgView1` (and stickers), each W × W points, where W is the
/// width of the main screen when the view loads, or that of the work which is resumed. Main thread only.
///
/// In move mode the current photo takes gestures, keys and the wheel; every other tool takes them from it. An export
/// turns the backdrop white, on the canvas too.
///
/// Which photo a tool acts on is asked of the selection buttons each time:
///
///   selected   sub-tools       sliders
///   both       the second      both
///   one        that one        that one
///   none       the current     the current
///
/// A tool that does so makes its photo the current one. Contrast and brightness of one photo ask only when they take
/// their snapshot, and go on with the current one until the selection changes. What a step of undo brings back is the
/// tool's bar and panel too, where another tool has taken over since.
///
/// A photo from outside (dropped, pasted) takes the place of the photo in hand: the one that the buttons name, the
/// second where they name both, and the current one where they name none. Of several the first two take both places,
/// which is one step.
class BlendPhotoViewController : public StickerEditor<BlendComposition>,
                                 public PhotoReceiver,
                                 public InfColorPickerControllerDelegate {
    Q_OBJECT
    Q_PROPERTY(bool photo1Selected READ photo1Selected NOTIFY selectionChanged FINAL)
    Q_PROPERTY(bool photo2Selected READ photo2Selected NOTIFY selectionChanged FINAL)
    Q_PROPERTY(bool panBool READ panBool NOTIFY selectionChanged FINAL)
    Q_PROPERTY(int movingPhoto READ movingPhoto NOTIFY selectionChanged FINAL)
    Q_PROPERTY(bool photo2OnTop READ photo2OnTop NOTIFY selectionChanged FINAL)
    Q_PROPERTY(QVariant photo1Picture READ photo1Picture NOTIFY picturesChanged FINAL)
    Q_PROPERTY(QVariant photo2Picture READ photo2Picture NOTIFY picturesChanged FINAL)
    Q_PROPERTY(QString shownPanel READ shownPanel NOTIFY panelsChanged FINAL)
    Q_PROPERTY(QVariantList subTools READ subTools NOTIFY subToolsChanged FINAL)
    Q_PROPERTY(QString backdrop READ backdrop NOTIFY backdropChanged FINAL)
    Q_PROPERTY(QObject* stickerStrip READ stickerStrip NOTIFY panelsChanged FINAL)
    Q_PROPERTY(int menuPhoto READ menuPhoto NOTIFY menuPhotoChanged FINAL)
    Q_PROPERTY(QVariantList photoMenu READ photoMenu CONSTANT FINAL)

public:
    BlendPhotoViewController();
    ~BlendPhotoViewController() override;

    /// Photos chosen in the system's picker before the editor opens; the editor works with those of the two slots.
    std::vector<UIImage> getImageArr;

    /// `baseView`; loads the view.
    std::shared_ptr<UIView> canvasView() override;

    /// Takes the photos from the two slots, selects the second and builds the stack in move mode. A slot that is empty
    /// leaves its image view without a picture. A work that is resumed comes as it was left, and its photos fill the
    /// slots.
    void viewDidLoad() override;
    bool prefersStatusBarHidden() const { return true; }

    /// Both photos as they came in, untransformed, half transparent, the second below the first, over a clear backdrop;
    /// then move mode, which takes the second to the front. Part of a change: whoever calls it records the step.
    void createLayout();

    /// Action of the first selection button: selects its photo, or swaps where it is selected. In move mode the first
    /// photo can't be chosen: an alert says so, both buttons end up off, and the second photo stays movable.
    Q_INVOKABLE void photo1();
    /// The same for the second photo, which stays selected in move mode.
    Q_INVOKABLE void photo2();
    /// Back to the photos as they came in, with nothing on them. The tags of stickers count on, and slider snapshots
    /// stay.
    Q_INVOKABLE void resetBtn();
    /// Move mode: hides the panels, selects the second photo and gives it the gestures.
    Q_INVOKABLE void panBtn();
    /// Gives the gestures to the photo that the buttons name, and takes it and then the stickers to the front.
    void panBtnFunc();
    /// Switches interaction on for the view and attaches a pan and a pinch. No turn: photos of a blend turn by quarters
    /// only.
    void addGesture(UIImageView& view);

    /// Opens the strip of sub-tools, or closes it where it was this button that had opened it. The second photo becomes
    /// the current one.
    Q_INVOKABLE void toolBtn();
    /// Turn a photo by a quarter, to the left.
    Q_INVOKABLE void leftBtn();
    /// The same to the right.
    Q_INVOKABLE void rightBtn();
    /// Left and right of a photo change places; its pixels do, the transform that gestures gave it stays.
    Q_INVOKABLE void horizontalBtn();
    /// The same for top and bottom.
    Q_INVOKABLE void verticalBtn();
    /// Asks for the colour of the backdrop, beginning with that of the screen itself. Nothing while something lies over
    /// the editor.
    Q_INVOKABLE void adjustColor1();
    /// The backdrop takes the colour, and the picker goes.
    void colorPickerControllerDidFinish(InfColorPickerController& picker) override;
    /// Does what the sub-tool of that identifier is for; nothing for one that is unknown.
    Q_INVOKABLE void chooseSubTool(const QString& identifier);

    /// Opens the effects panel, with its sliders where they start.
    Q_INVOKABLE void FxBtn();
    /// Closes the effects panel.
    Q_INVOKABLE void hideFxViewBtnClicked();
    /// Changes the contrast of the photos that sliders act on. The value works on a snapshot that was taken at the
    /// first move since the selection changed, so that moves don't add up; 0 gives the snapshot back. A slider that
    /// takes its snapshot takes it for the other one as well, which then builds on what this one has done.
    Q_INVOKABLE void contrastFun(double value);
    /// The same for the brightness.
    Q_INVOKABLE void brightnFun(double value);
    /// Sets the alpha of the photos that sliders act on.
    Q_INVOKABLE void opacityFun(double value);

    /// Opens the strip of stickers, or closes it where it was this button that had opened it.
    Q_INVOKABLE void stickerBtn();
    /// Puts the sticker of the strip's thumbnail of that tag into the middle of the canvas. Nothing for a tag that
    /// stands for none.
    Q_INVOKABLE void stickerImgGesture(int tag);
    /// Opens the menu of photo 1 or 2, in the place of the other's; 0: of the photo in hand. It closes with the next
    /// change. Nothing for other numbers.
    Q_INVOKABLE void openPhotoMenu(int photo);
    Q_INVOKABLE void closePhotoMenu();
    bool letGo() override;
    /// Does one of the menu's actions, each a step, with the photo whose menu is open, and closes it; nothing while
    /// none is open, or for an unknown action.
    ///   replace   another photo is chosen and cropped, and takes the place of this one on the canvas, as it is moved
    ///             and as much as it shines through
    ///   crop      the same with the original of this photo, from where it was cropped
    ///   swap      the first photo becomes the second, each with all that was done to it: only what lay above lies
    ///   below
    Q_INVOKABLE void choosePhotoAction(const QString& identifier);
    /// Replaces the photo in hand.
    Q_INVOKABLE void openPhoto();

    /// Not while something lies over the editor.
    bool wantsPhotos() const override;
    /// An alert tells of those that have no place, and comes first.
    void receivePhotos(std::vector<PhotoSource> photos) override;

    /// Asks whether to discard the work. Yes: posts `kDismissEditorsNotification` with this screen as its sender, and
    /// empties the two slots.
    Q_INVOKABLE void backBtn();
    /// Takes the work away: see ExportFinish. Stickers come to the front.
    Q_INVOKABLE void shareBtn();

    UIView& baseView() const { return *m_baseView; }
    UIView& saveTheImg() const { return *m_saveTheImg; }
    UIImageView& mainImgView() const { return *m_mainImgView; }
    UIImageView& imgView1() const { return *m_imgViews[0]; }
    UIImageView& imgView2() const { return *m_imgViews[1]; }
    /// The photo that gestures act on, and the tools while no button is selected.
    UIImageView& currentImageView() const { return *m_imgViews[composition().current]; }

    /// The state of the selection buttons.
    bool photo1Selected() const { return composition().photo1Selected; }
    /// See photo1Selected.
    bool photo2Selected() const { return composition().photo2Selected; }
    /// Whether move mode is on.
    bool panBool() const { return composition().mode == BlendMode::Move; }
    /// The photo that fingers move, 1 or 2, whatever the buttons say; 0 outside move mode.
    int movingPhoto() const { return panBool() ? static_cast<int>(composition().current) + 1 : 0; }
    /// Whether the second photo lies over the first.
    bool photo2OnTop() const { return composition().order.back() == 1; }
    /// A `lamina::UIImage`: the photo as it looks now, untransformed.
    QVariant photo1Picture() const { return QVariant::fromValue(composition().photos[0].image); }
    QVariant photo2Picture() const { return QVariant::fromValue(composition().photos[1].image); }

    /// The photo whose menu is open, 1 or 2; 0: none.
    int menuPhoto() const { return m_menuPhoto; }
    /// The menu, as EditorToolBar::list tells.
    QVariantList photoMenu() const;

    /// Space between the bar's buttons: `resetConstraint`, `panConstraint` and their six siblings have one value.
    double toolSpacing() const { return m_toolSpacing; }

    /// Where the panels stand.
    const BlendPanels& panels() const { return m_panels; }
    /// Which of the panels is in sight: "tools", "effects", "stickers"; empty: none.
    QString shownPanel() const;
    /// The strip of sub-tools; see EditorToolBar.
    QVariantList subTools() const { return m_subTools; }
    const EditorToolBar& subToolBar() const { return m_subToolBar; }
    /// The colour behind the photos, as "#AARRGGBB".
    QString backdrop() const;
    /// The stickers to choose from, a list model; null while there is none.
    QObject* stickerStrip() const { return stickerEditing().strip(); }

signals:
    /// After changes of what the properties above name; never during a gesture.
    void selectionChanged();
    void picturesChanged();
    void panelsChanged();
    void subToolsChanged();
    void backdropChanged();
    void menuPhotoChanged();

protected:
    std::span<const EditorSlider> sliderTable() const override { return kBlendSliders; }
    double sliderValue(int tag) const override;
    void applySlider(int tag, double value) override;
    void showComposition() override;
    UIView* gestureView() const override;
    UIView& gestureSpace() const override { return *m_saveTheImg; }
    bool isPhotoView(const UIView* view) const override { return photoOf(view).has_value(); }
    void panPhoto(UIView& view, CGPoint by) override;
    void transformPhoto(UIView& view, const CGAffineTransform& transform) override;
    const UIView& exportedView() const override { return *m_mainImgView; }
    void prepareExport() override;

private:
    static constexpr int kFirstStickerTag = 500;

    /// What one of the two sliders of tone does.
    struct Tone {
        bool BlendComposition::*isSnapshotTaken;
        UIImage (*operation)(const UIImage& image, float value);
    };

    void setUpTools();
    void takePickedPhotos();
    static void putPickedPhotos(const BlendComposition& composition);
    void watchProperties();
    void buildTree();
    std::shared_ptr<UIImageView> makePhotoView(const BlendPhoto& photo) const;
    void enterMoveMode();
    void forgetSnapshots();
    void hidePanels();
    void takeBar(BlendMode mode);
    void enterToolMode(BlendMode mode);
    void showMode(BlendMode mode);
    void openToolStrip();
    void openEffects();
    void closeEffects();
    void openStickerStrip();
    void doSubTool(std::string_view tool);
    std::size_t resolvedPhoto();
    void setPhotoImage(std::size_t photo, const UIImage& image);
    void changeTone(const Tone& tone, double value);
    void takeSnapshots();
    void changeOpacity(double value);
    void showNotMovableAlert();
    void finishStickers(BlendComposition& recorded);
    std::weak_ptr<BlendPhotoViewController> weakSelf();
    void setMenuPhoto(int photo);
    std::size_t photoInHand() const;
    void replacePhoto(std::size_t photo);
    void cropPhotoAgain(std::size_t photo);
    void cutPhotos(std::deque<WantedCut> wanted, UIImagePickerControllerSourceType source);
    void takeCuts(const std::vector<PhotoCut>& cuts);
    void swapPhotos();
    void showOtherPhotos();
    std::optional<std::size_t> photoOf(const UIView* view) const;

    std::shared_ptr<ExportFinish> m_finish;
    BlendPanels m_panels;
    EditorToolBar m_subToolBar = makePictureToolBar();
    QVariantList m_subTools; ///< of m_subToolBar, made when it changes
    /// Whether the two buttons that open and close their strip are on.
    bool m_toolSelected = false;
    bool m_stickerSelected = false;
    std::shared_ptr<PhotoCutting> m_cutting;
    int m_menuPhoto = 0;
    double m_side = 0; ///< W
    double m_toolSpacing = 0;
    std::shared_ptr<UIView> m_baseView;
    std::shared_ptr<UIView> m_saveTheImg;
    std::shared_ptr<UIImageView> m_mainImgView;
    std::array<std::shared_ptr<UIImageView>, 2> m_imgViews;
};

} // namespace lamina
