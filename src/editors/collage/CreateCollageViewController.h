#pragma once

#include "editors/collage/CollageComposition.h"
#include "editors/collage/CollageEffectWork.h"
#include "editors/collage/CollageFilterRow.h"
#include "editors/collage/CollageLayouts.h"
#include "editors/collage/CollagePanels.h"
#include "editors/collage/FilterSteps.h"
#include "editors/colorpicker/InfColorPickerControllerDelegate.h"
#include "editors/common/EditorSlider.h"
#include "editors/common/EditorToolBar.h"
#include "editors/common/PictureTools.h"
#include "editors/stickers/StickerEditor.h"
#include "export/ExportFinish.h"
#include "picker/SelectedImagesReceiver.h"
#include "picker/YMSPhotoPickerViewControllerDelegate.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"
#include "platform/view/PhotoReceiver.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UIImagePickerController.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIView.h"

#include <QString>
#include <QVariantList>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace lamina {

class CollageBorderView;
struct PickedPhotos;
class ThreeFramesViewController;
class TwoFramesViewController;

/// The collage editor: two or three photos in a square, each clipped by its slot.
///
/// The state is the `CollageComposition`; the view tree shows it:
/// `baseView` > `saveTheImg` > `firstView` > `firstImage`, `secondView` > `secondImage`, `thirdView` > `thirdImage`
/// (and stickers), each W × W points, where W is the width of the main screen when the view loads, or that of the work
/// which is resumed. The slot layers lie on top of one another; what the eye takes for cells are the parts that the
/// masks of the layout leave open. Main thread only.
///
/// One slot is the current one: all tools act on it, and it alone takes touches. A tap on another one's photo only
/// points out which one is current. A slot's master picture is replaced by the gallery, the camera, a photo that is
/// dropped or pasted, and a swap, by nothing else; turns, flips, filters and effects change what is shown.
///
/// Slots are numbered 1 to 3 where people see them, and 0 to 2 as indices. With two photos there is no third: its views
/// are null, and what is done to it does nothing.
class CreateCollageViewController : public StickerEditor<CollageComposition>,
                                    public SelectedImagesReceiver,
                                    public PhotoReceiver,
                                    public InfColorPickerControllerDelegate,
                                    public YMSPhotoPickerViewControllerDelegate,
                                    public UIImagePickerControllerDelegate {
    Q_OBJECT
    Q_PROPERTY(int photoCount READ photoCount CONSTANT FINAL)
    Q_PROPERTY(int currentSlot READ currentSlot NOTIFY slotsChanged FINAL)
    Q_PROPERTY(QVariantList slots READ slotRows NOTIFY slotsChanged FINAL)
    Q_PROPERTY(int layout READ layout NOTIFY layoutChanged FINAL)
    Q_PROPERTY(int layoutRow READ layoutRow NOTIFY layoutChanged FINAL)
    Q_PROPERTY(QObject* layouts READ layouts NOTIFY panelsChanged FINAL)
    Q_PROPERTY(QString shownPanel READ shownPanel NOTIFY panelsChanged FINAL)
    Q_PROPERTY(QVariantList subTools READ subTools NOTIFY subToolsChanged FINAL)
    Q_PROPERTY(QString slotColor READ slotColor NOTIFY slotsChanged FINAL)
    Q_PROPERTY(QString borderColor READ borderColor NOTIFY frameChanged FINAL)
    Q_PROPERTY(QObject* filters READ filters NOTIFY panelsChanged FINAL)
    Q_PROPERTY(int filter READ filter NOTIFY panelsChanged FINAL)
    Q_PROPERTY(int filterRow READ filterRow NOTIFY panelsChanged FINAL)
    Q_PROPERTY(QObject* stickerStrip READ stickerStrip NOTIFY panelsChanged FINAL)

public:
    CreateCollageViewController();
    ~CreateCollageViewController() override;

    // The canvas

    /// The photos that the editor opens with, two or three; those beyond have no place. A copy.
    const std::vector<UIImage>& selectedImages() const { return m_selectedImages; }
    void setSelectedImages(std::vector<UIImage> selectedImages) override;

    /// `baseView`; loads the view.
    std::shared_ptr<UIView> canvasView() override;
    /// Takes the photos as master pictures and builds the canvas in the first layout for so many. A work that is
    /// resumed comes as it was left.
    void viewDidLoad() override;
    bool prefersStatusBarHidden() const { return true; }

    /// Builds the slots anew from their master pictures, without masks: moves, turns, filters, alphas and backgrounds
    /// are gone, and slot 1 is the current one. Stickers lie below the new slots. Part of a change: whoever calls it
    /// records the step.
    void blendPhoto();
    /// `blendPhoto`, then the layout with that number by a new frame object: numbers below 2999 are those of two
    /// photos, from there to 3998 those of three, above there are none; slots that a number has no frame for stay
    /// without masks. One step.
    void applyLayout(int frame);
    /// Attaches a further pan, turn and pinch, and switches interaction on for the view.
    void addGesturesToImageView(UIImageView& view);

    /// The slot buttons: make the slot current, in full. No step.
    Q_INVOKABLE void fstBtn();
    /// See fstBtn.
    Q_INVOKABLE void secondBtn();
    /// See fstBtn. Nothing with two photos.
    Q_INVOKABLE void thirdBtn();
    /// The same by its number; nothing for one that there is none of.
    Q_INVOKABLE void selectSlot(int number);
    /// The current slot's photo stands and lies again as a new layout puts it, which is a step.
    Q_INVOKABLE void fitPhoto();
    /// The photos of two slots, by number, change places: each comes into the other's slot as the picture that is seen
    /// and the master it was made from, and takes over place, zoom and turn there. The current slot stays. One step;
    /// nothing for numbers that there is no slot of, or one and the same.
    Q_INVOKABLE void swapSlots(int one, int other);
    /// The current slot's photo and that of the slot so many further on change places as by `swapSlots`, and the other
    /// slot is the current one then: the photo stays in hand. One step; nothing where there is no such slot.
    Q_INVOKABLE void swapWithNeighbour(int by);
    /// A quick tap on the canvas, in its points: beside the active sticker it lets go of that one. On the part of
    /// another slot that is seen it points out the current one.
    Q_INVOKABLE void tapCanvas(double x, double y) override;
    /// A double tap on the canvas: on the current slot's photo it fits that one.
    Q_INVOKABLE void doubleTapCanvas(double x, double y);

    /// Not while something lies over the editor.
    bool wantsPhotos() const override;
    /// One takes the place of the current slot's photo, several fill the slots from the first; each comes as from the
    /// gallery, all in one step. They are read in the background; one that can't be read is told in an alert, and
    /// nothing is changed. An alert that comes first tells of those that have no place.
    void receivePhotos(std::vector<PhotoSource> photos) override;

    /// 2 or 3, for the life of the editor.
    int photoCount() const { return static_cast<int>(composition().count); }
    /// Number of the current slot.
    int currentSlot() const { return static_cast<int>(composition().current) + 1; }
    /// The slots for the view that draws their buttons: a map for each, in their order, of
    ///   number         of the slot
    ///   picture        its photo as it is shown now
    ///   icon           the layout with this slot marked
    ///   iconSelected   the same for the current slot
    ///   selected       whether it is the current one
    ///   background     behind its photo, as "#AARRGGBB"
    ///   name           to be read out, translated
    QVariantList slotRows() const;
    /// The current slot's outline and then those of the slots that lie over it, each a `lamina::UIBezierPath` in a
    /// square of side 1, which is the canvas. Empty for a layout without masks.
    Q_INVOKABLE QVariantList slotOutline() const;
    /// The layout in force.
    int layout() const { return composition().layout; }
    /// Its row among the layouts for as many photos; -1: it is none of them.
    int layoutRow() const;

    UIView& baseView() const { return *m_baseView; }
    /// The canvas: what is exported.
    UIView& saveTheImg() const { return *m_saveTheImg; }
    /// The layer of the slot with that index; null: there is none. Another one after each change of layout, undo and
    /// redo, as is the photo's view.
    UIView* slotView(std::size_t slot) const { return slot < m_slots.size() ? m_slots[slot].layer.get() : nullptr; }
    /// The photo's view in it, which gestures move.
    UIImageView* slotImageView(std::size_t slot) const
    {
        return slot < m_slots.size() ? m_slots[slot].photo.get() : nullptr;
    }
    UIView* firstView() const { return slotView(0); }             ///< the layer of slot 1
    UIView* secondView() const { return slotView(1); }            ///< the layer of slot 2
    UIView* thirdView() const { return slotView(2); }             ///< the layer of slot 3; null with two photos
    UIImageView* firstImage() const { return slotImageView(0); }  ///< the photo of slot 1
    UIImageView* secondImage() const { return slotImageView(1); } ///< the photo of slot 2
    UIImageView* thirdImage() const { return slotImageView(2); }  ///< the photo of slot 3; null with two photos
    /// Layer and photo of the current slot.
    UIView& currentView() const { return *slotView(composition().current); }
    /// See currentView.
    UIImageView& currentImageView() const { return *slotImageView(composition().current); }
    /// The master pictures.
    const UIImage& selectedImg1() const { return composition().photoSlots[0].master; }
    const UIImage& selectedImg2() const { return composition().photoSlots[1].master; }
    const UIImage& selectedImg3() const { return composition().photoSlots[2].master; }

    /// The bars of slot buttons; the one for the other count is hidden.
    bool twoBtnViewHidden() const { return composition().count == kMostCollageSlots; }
    bool threeBtnViewHidden() const { return !twoBtnViewHidden(); }
    /// Whether slot button 1 to 5 is selected: 1 to 3 stand in the bar for three photos, 4 and 5 in that for two.
    bool btnSelected(int button) const;
    /// What applied the last layout of that kind; null: there was none.
    const std::shared_ptr<TwoFramesViewController>& twoFrameObj() const { return m_twoFrameObj; }
    const std::shared_ptr<ThreeFramesViewController>& threeFramesObj() const { return m_threeFramesObj; }
    /// Height of `baseView`, points.
    double baseViewHeightConstraint() const { return composition().side; }
    /// Space between the buttons of the tool strip, points: one value for all four.
    double leftCOnst() const { return m_toolSpacing; }
    double rightConst() const { return m_toolSpacing; }
    double verticalConst() const { return m_toolSpacing; }
    double colorConst() const { return m_toolSpacing; }

    // Tools

    /// Fills the bar, once, as the view loads: until then no tool can be chosen.
    void addBtnsInScrollView();
    /// Names of the icons that the bar opens with: the tools are active.
    std::vector<std::string_view> toolImgArr() const;
    /// Closes every panel, lights the tool of that tag, 999 to 1005, and opens its panel: for the tool that is active
    /// too. Any other tag only closes the panels. Effects that another tool takes over from leave as
    /// `hideFxViewBtnClicked` has them leave. A tool is no step, but what it does to the picture is: the reset puts the
    /// masters back, and the stickers come to the front before others are added.
    Q_INVOKABLE void imgGesture(int tag);
    /// Takes the panel that is shown out of sight; its tool stays lit. Nothing where there is none.
    Q_INVOKABLE void hidePanel();
    /// Applies the layout of that thumbnail; the strip stays.
    Q_INVOKABLE void imgGesture1(int tag);
    /// Turn the current slot's photo by a quarter, to the left: its pixels as they are seen now. Zoom, place and master
    /// stay. One step.
    Q_INVOKABLE void leftBtn();
    /// The same to the right.
    Q_INVOKABLE void rightBtn();
    /// The same, where left and right change places.
    Q_INVOKABLE void horizontalBtn();
    /// The same for top and bottom.
    Q_INVOKABLE void verticalBtn();
    /// Asks for a colour, beginning with that of the screen itself. Nothing while something lies over the editor.
    Q_INVOKABLE void adjustColor();
    /// The sub-tool of that identifier; nothing for one that there is none of. See picturetool.
    Q_INVOKABLE void chooseSubTool(const QString& identifier);
    /// The colour is that of the lines while the reset tool is the active one, else that behind the current slot's
    /// photo. One step.
    void colorPickerControllerDidFinish(InfColorPickerController& picker) override;
    /// Asks for another photo for the current slot. Nothing while something lies over the editor.
    Q_INVOKABLE void launchSpecialController();
    bool respondsTo(Call call) const override;
    using YMSPhotoPickerViewControllerDelegate::photoPickerViewController;
    /// The photo comes into the current slot, and is its master, when the picker has gone. One step.
    void photoPickerViewController(YMSPhotoPickerViewController& picker, const UIImage& didFinishPickingImage) override;
    void photoPickerViewControllerDidReceivePhotoAlbumAccessDenied(YMSPhotoPickerViewController& picker) override;
    void photoPickerViewControllerDidReceiveCameraAccessDenied(YMSPhotoPickerViewController& picker) override;
    void imagePickerControllerDidCancel(UIImagePickerController& picker) override;
    /// The photo comes at half its size, as a PNG keeps it: whole as the current slot's master, and its middle as a
    /// square of 600 points to be seen. It is made in the background, then the picker goes. One step.
    void imagePickerController(UIImagePickerController& picker,
                               const UIImagePickerInfo& didFinishPickingMediaWithInfo) override;
    /// All master pictures come back into their photo views, which keep zoom, place, alpha and background. Part of a
    /// change: whoever calls it records the step.
    void addFrame();
    /// The same as a step of its own.
    Q_INVOKABLE void photosBack();
    /// Asks for the colour of the lines, beginning with the present one; only while the reset tool is the active one,
    /// and nothing lies over the editor.
    Q_INVOKABLE void adjustBorderColor();
    /// The colour of the lines, whichever tool is active. One step.
    void setBorderColor(const UIColor& color);

    /// The panel of filters is open, or about to be.
    bool filterEnableBool() const { return m_filterEnableBool; }
    /// The reset tool is the active one.
    bool frameBool() const { return m_frameBool; }
    const CollagePanels& panels() const { return m_panels; }
    /// The panel in sight: "layout", "tools", "filter", "effects", "stickers", "frame"; "" for none.
    QString shownPanel() const;
    /// The strip of layouts, a list of `CollageLayout`; null while there is none.
    QObject* layouts() const;
    /// The strip of sub-tools, as `EditorToolBar::list` gives it.
    QVariantList subTools() const { return m_subTools; }
    /// The sub-tool that was chosen last is the active one.
    const EditorToolBar& subToolBar() const { return m_subToolBar; }
    /// The colour behind the current slot's photo, as "#AARRGGBB".
    QString slotColor() const;
    /// That of the lines.
    QString borderColor() const;
    /// Draws the lines, over all else in the canvas.
    UIView& borderView() const;

    // Filters and effects

    /// Takes the current photo's picture as the filter base, fills the row with it and raises its panel; nothing while
    /// `filterEnableBool` says that the panel is not open. Part of a change.
    void addFiltersOnScrollView();
    /// The thumbnail of that tag: the filter base itself for the first look, else its middle through the look. Empty
    /// for a tag that no look has, and where its filter fails.
    UIImage applyFilters(int tag);
    /// The current photo becomes the filter base through the look of that tag, which is a step when it is done: what
    /// another look has done is gone. A large photo may take a while, behind the busy panel, which can be cancelled.
    /// One that can't be filtered stays, and an alert names the cause. Nothing before the row has been filled.
    Q_INVOKABLE void filterImgGesture(int tag);

    /// Makes the effects' panel, with its sliders where they start.
    void createViewForFx();
    /// The nine sliders, each as `slide`. The first one that is touched since the flags were cleared takes the picture
    /// that is shown as the effect base, and so does each other one at its own first touch; all work from that one
    /// base. The flags are cleared by choosing a slot, and by another photo in it. Pictures are made beside the main
    /// thread: see `busy`. While a finger slides, a large photo is shown as a smaller one, until the finger rests or
    /// leaves.
    Q_INVOKABLE void contrast(double value);
    Q_INVOKABLE void brightn(double value);
    /// The bias is the value with its fraction cut off.
    Q_INVOKABLE void emboss(double value);
    /// See emboss.
    Q_INVOKABLE void sharpen(double value);
    /// See emboss.
    Q_INVOKABLE void unsharpen(double value);
    /// Begins at value + 0.2 and ends at value + 0.4, as GPUImageVignetteFilter counts.
    Q_INVOKABLE void vignette(double value);
    Q_INVOKABLE void saturation(double value);
    Q_INVOKABLE void highlight(double value);
    /// The alpha of the photo's view; no picture changes.
    Q_INVOKABLE void opacity(double value);
    /// Closes the effects' panel; the tool stays the active one.
    Q_INVOKABLE void hideFxViewBtnClicked();

    void viewDidAppear(bool animated) override;
    /// Makes the GL context and the programs of all filters in the background, so that the first one that is used finds
    /// them. Ends with the editor.
    void warmFilters();
    /// The filter panel's thumbnails, a list model; see CollageFilterRow.
    QObject* filters() const;
    /// For an editor that nobody sees: its filter panel makes no thumbnails from now on.
    void leaveThumbnailsOut() { m_filterRow.close(); }
    int filter() const { return composition().filter; }
    /// Its row in the panel; that of the photo as it was where none has been chosen.
    int filterRow() const;

    // Stickers, and the ways out

    /// Fills the strip anew; its thumbnails come one by one.
    void stickerBtnClicked();
    /// Puts the sticker of the strip's thumbnail of that tag into the canvas's top left corner, on top of all but the
    /// border. Nothing for a tag that stands for none.
    Q_INVOKABLE void stickerImgGesture(int tag);
    /// The stickers to choose from, a list model; null while there is no strip.
    QObject* stickerStrip() const { return stickerEditing().strip(); }
    /// A panel goes first, then stickers lose their handles.
    bool letGo() override;
    /// Takes the work away: see ExportFinish.
    Q_INVOKABLE void shareBtn();
    /// Pops to the root; nothing is asked.
    Q_INVOKABLE void backBtn();

signals:
    /// After changes of what the properties above name; never during a gesture.
    void slotsChanged();
    void layoutChanged();
    void panelsChanged();
    void subToolsChanged();
    void frameChanged();
    /// The user has tapped another slot's photo: the current slot, of that number, is to be shown.
    void pointedOut(int slot);

protected:
    std::span<const EditorSlider> sliderTable() const override;
    double sliderValue(int tag) const override;
    void applySlider(int tag, double value) override;
    void settleSlider() override;
    void previewSlides(std::span<const SlideAhead> slides) override;
    void showComposition() override;
    void readViews() override;
    UIView* gestureView() const override;
    UIView& gestureSpace() const override { return *m_baseView; }
    bool isPhotoView(const UIView* view) const override { return slotOf(view).has_value(); }
    void panPhoto(UIView& view, CGPoint by) override;
    void transformPhoto(UIView& view, const CGAffineTransform& transform) override;
    const UIView& exportedView() const override { return *m_saveTheImg; }
    void prepareExport() override;
    void stickersRaised() override { showFrame(); }

private:
    static constexpr int kFirstStickerTag = 7000;

    class SlotSight;

    /// The views of a slot.
    struct SlotViews {
        std::shared_ptr<UIView> layer;
        std::shared_ptr<UIImageView> photo;
    };

    // The canvas
    void watchCanvas();
    void takeSelectedImages();
    void makeSaveTheImg();
    CGRect slotFrame() const;
    CGPoint photoCenter() const;
    void buildSlots();
    SlotViews makeSlot(const CollageSlot& slot) const;
    static void showPhoto(const SlotViews& views, const CollageSlot& slot);
    void frameSlots(int frame);
    void select(std::size_t slot);
    void takeTouches();
    /// Shows the picture in the slot; turns, filters and effects come this way. Part of a change.
    void setSlotPicture(std::size_t slot, const UIImage& image);
    /// Another photo comes into the slot, where it takes over place, zoom and turn; effect bases are forgotten. Part of
    /// a change.
    void replaceMaster(std::size_t slot, const UIImage& picture, const UIImage& master);
    /// Part of a change, as is what follows in the panels.
    void swapPhotos(std::size_t one, std::size_t other);
    /// Clears the nine flags: every slider takes a new base at its next touch.
    void forgetEffectBases();
    /// After other photos have come, what is made from them follows.
    void followPhotos();
    void readPhotos(std::vector<PhotoSource> photos, std::size_t firstSlot);
    void takePhotos(const PickedPhotos& read, std::size_t firstSlot);
    void makeSlotIcons();
    std::optional<std::size_t> slotOf(const UIView* view) const;
    std::optional<std::size_t> slotOfLayer(const UIView& view) const;
    std::optional<std::size_t> slotNumbered(int number) const;

    // Tools
    void setUpTools();
    void watchTools();
    void closePanels();
    void lightTool(std::string_view tool);
    void openPanel(std::string_view tool);
    void openLayouts();
    void openFilters();
    void openStickers();
    void openFrame();
    /// Opens the tool that the composition names, where another one has taken over since.
    void showTool();
    void doSubTool(std::string_view tool);
    void takePhoto(const UIImage& picture, const UIImage& master);
    /// Sets the border's width or the gap, by the tag of its slider. Part of a change.
    void setLine(int tag, double width);
    /// Shows what the composition says of the border and the gap, on top of the canvas.
    void showFrame();
    std::shared_ptr<CreateCollageViewController> sharedSelf();

    // Filters and effects
    /// Shows the composition's filter base in the row, where it shows another one.
    void showFilters();
    /// Opens the panel on the composition's filter base, where it has one.
    void reopenFilters();
    void closeEffects();
    void takeFiltered(std::size_t slot, int tag, const UIImage& filtered);
    void takeEffectBase(int tag);
    void changeOpacity(double alpha);
    void showCoarsely(CollageEffectChain wanted);
    void makeExactly(CollageEffect wanted);
    void showEffect(std::size_t slot, const UIImage& picture, int number);
    void tellEffectOutcome(const UIImage& picture);
    void tellFailure();

    // Stickers
    /// Puts the composition's stickers below and above the slots that were just built.
    void showStickers();
    /// Puts all stickers above the slots again. Part of a change.
    void raiseStickers();
    /// Takes handles and borders away; what was recorded last follows.
    void finishStickers();

    std::vector<UIImage> m_selectedImages;
    double m_toolSpacing = 0;
    std::shared_ptr<UIView> m_baseView;
    std::shared_ptr<UIView> m_saveTheImg;
    std::array<SlotViews, kMostCollageSlots> m_slots;
    std::shared_ptr<TwoFramesViewController> m_twoFrameObj;
    std::shared_ptr<ThreeFramesViewController> m_threeFramesObj;
    std::array<std::array<UIImage, 2>, kMostCollageSlots> m_slotIcons; ///< of the layout: plain, and selected
    bool m_readsPhotos = false;

    CollagePanels m_panels;
    std::unique_ptr<CollageLayouts> m_layouts; ///< null while there is no strip of them
    EditorToolBar m_subToolBar = makePictureToolBar();
    QVariantList m_subTools; ///< of m_subToolBar, made when it changes
    std::shared_ptr<CollageBorderView> m_borderView;
    bool m_filterEnableBool = false;
    bool m_frameBool = false;

    CollageFilterRow m_filterRow;
    CollageEffectState m_effects;
    FilterSteps m_warming;
    bool m_warmed = false;

    std::shared_ptr<ExportFinish> m_finish;
};

} // namespace lamina
