#pragma once

#include "editors/common/ChangeNotifier.h"
#include "editors/common/EditHistory.h"
#include "editors/common/EditorSlider.h"
#include "editors/common/EditorToolBar.h"
#include "editors/common/KeptWork.h"
#include "editors/common/LatestWork.h"
#include "editors/common/WorkKeeper.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIRotationGestureRecognizer.h"
#include "platform/view/UIViewController.h"

#include <QString>
#include <QVariantList>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace lamina {

/// What every editor is: photos on a canvas that gestures, wheel and keys move, a bar of tools, undo, and the ways out.
/// An editor derives from `CompositionEditor`, which adds the composition and its history. Main thread only.
///
/// One change is one step of undo: a gesture from its start to its end, an action, a run of keys or of the wheel
/// without a pause of a second. Every action first ends a gesture that is under way, which then is a step of its own.
///
/// Pictures that take long are made beside the main thread (`runWork`, `runStep`): what has been asked for is a step
/// when the picture has landed. Every action, and whatever shows or keeps the work, first has what is outstanding
/// landed.
class EditorViewController : public UIViewController {
    Q_OBJECT
    // A drag wakes none of these but, once, `edited`.
    Q_PROPERTY(QVariantList tools READ tools NOTIFY barChanged FINAL)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY historyChanged FINAL)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY historyChanged FINAL)
    Q_PROPERTY(bool edited READ isEdited NOTIFY editedChanged FINAL)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged FINAL)
    Q_PROPERTY(QVariantList sliders READ sliders NOTIFY slidersChanged FINAL)
    Q_PROPERTY(bool busy READ isBusy NOTIFY busyChanged FINAL)
    Q_PROPERTY(bool stickerActive READ stickerActive NOTIFY stickerChanged FINAL)

public:
    /// See EditorToolBar.
    QVariantList tools() const { return m_tools; }
    const EditorToolBar& toolBar() const { return m_toolBar; }
    /// Does what the tool is for; nothing for one that is unknown or not enabled.
    Q_INVOKABLE void chooseTool(const QString& identifier);

    /// Whether there is a step to go back, and one to go forth.
    virtual bool canUndo() const = 0;
    /// See canUndo.
    virtual bool canRedo() const = 0;
    /// A step back: all that the composition holds is as it was, and the canvas takes touches as it did then.
    Q_INVOKABLE void undo();
    /// A step forth, which was undone before.
    Q_INVOKABLE void redo();
    /// Whether the picture differs from the one that the editor opened with.
    bool isEdited() const { return m_edited; }

    /// Each event adds its increment to the view of the gesture, and consumes it. An increment after which the view
    /// could not be brought back (flattened to nothing, not finite) is left out. Nothing for a view that the editor
    /// doesn't know.
    void handlePan1(UIPanGestureRecognizer& gesture);
    /// Zooms, as handlePan1 moves.
    void pinch(UIPinchGestureRecognizer& gesture);
    /// Turns, as handlePan1 moves.
    void rotationGes(UIRotationGestureRecognizer& gesture);

    /// Does to the active sticker or, where none is, to the photo that takes gestures what a pan by (dx, dy) points of
    /// the canvas does, to the bit; for keys and scripts. Nothing while neither is there.
    Q_INVOKABLE void nudge(double dx, double dy);
    /// The same for a pinch by `factor`; one that is not finite and positive does nothing.
    Q_INVOKABLE void zoomBy(double factor);
    /// The same for a turn by `angle` radians, clockwise; nothing for a photo whose gestures don't turn it.
    Q_INVOKABLE void turnBy(double angle);
    /// Takes the photo that takes gestures to the middle, as large and as turned as it is, where nothing of it is seen
    /// any more; that is a step. Nothing while a part of it is seen.
    Q_INVOKABLE void bringPhotoBack();

    /// The editor's sliders with the values at which they stand; see sliderRows. What a user has moved stands where it
    /// was put; `slidersChanged` comes when it stands elsewhere: the panel opens, a step is undone or redone.
    QVariantList sliders() const;
    /// The value as it is written beside the slider; empty for a tag that no slider has.
    Q_INVOKABLE QString sliderText(int tag, double value) const;
    /// A finger is on the slider: all that follows until `endSliding` is one step. Taps, which hardly move it, join as
    /// keys do, so that two of them and what they ask for are one step.
    Q_INVOKABLE void beginSliding(int tag);
    /// Does what the slider does at that value, cut to its range. Without `beginSliding` it is a step of its own, and
    /// such steps of one slider join as keys do. Nothing for a tag that no slider has, and values that are not finite.
    Q_INVOKABLE void slide(int tag, double value);
    /// See beginSliding. Nothing where none has begun, or another action has ended it.
    Q_INVOKABLE void endSliding(int tag);

    /// Whether a picture is being made that is to land here.
    bool isBusy() const { return m_work.isBusy() || m_previews.isBusy(); }
    /// Waits for what is being made, and has it landed: the steps that it makes are recorded then. What a finger on a
    /// slider has done so far is not settled by this; see endSliding.
    virtual void landWork();

    /// Whether a sticker shows its handles, and so takes keys.
    bool stickerActive() const { return activeSticker() != nullptr; }
    /// Takes handles and borders from all stickers; that is no step.
    Q_INVOKABLE virtual void letGoOfStickers() {}
    /// A quick tap on the canvas, in its points, after what was tapped there has heard of it: beside the active sticker
    /// it lets go of that one.
    Q_INVOKABLE virtual void tapCanvas(double x, double y);
    /// What a step back does first: takes away a menu, or lets go of stickers. False: there is nothing of the kind.
    Q_INVOKABLE virtual bool letGo();
    /// Removes the active sticker, which is a step. Nothing where none is.
    Q_INVOKABLE virtual void deleteSticker() {}

    /// The canvas as one picture, after all that is outstanding, its points times the main screen's scale a side. First
    /// come the changes that an export makes to the canvas itself, where the editor has any; they are no step. Empty
    /// when memory is short.
    UIImage flattened();
    /// The same of the canvas as it stands.
    UIImage renderedCanvas() const;

    /// Opens with a work that was kept, undo beginning there. To be called before the view loads; false when nothing
    /// in it can be read.
    virtual bool resumeWork(std::shared_ptr<KeptWork> work) = 0;
    void viewWillDisappear(bool animated) override;

    /// That the work can't be kept, until it is dismissed; empty: nothing to tell.
    QString notice() const { return m_notice; }
    /// Takes the notice away.
    Q_INVOKABLE void dismissNotice();

signals:
    /// After every change of the composition, the bar or the panels: at each step of a gesture too.
    void changed();
    /// After changes of what the properties above name; never during a gesture, but for `editedChanged`.
    void barChanged();
    void historyChanged();
    void editedChanged();
    void noticeChanged();
    void slidersChanged();
    void busyChanged();
    void stickerChanged();

protected:
    /// The bar opens with the tool `active`; see EditorToolBar.
    EditorViewController(std::span<const EditorTool> tools, std::string_view active);
    ~EditorViewController() override;

    /// Enables the tool, and says what choosing it does.
    void setToolAction(std::string_view tool, std::function<void()> action);
    /// The bar, to be changed within an action.
    EditorToolBar& editedToolBar() { return m_toolBar; }

    /// Runs `change` as an action: a gesture under way ends, what is outstanding lands, and what has changed is
    /// recorded and told.
    void act(const std::function<void()>& change);
    /// Ends every gesture under way in the canvas, and the move of a slider, and has what is outstanding landed: what
    /// they have done is recorded.
    void cancelGestures();
    /// Has a picture made beside the main thread; see LatestWork. Then `landed` takes it, and what has changed is told
    /// as in the midst of a gesture. For sliders: their step follows when the last one has landed.
    void runWork(LatestWork::Work work, LatestWork::Landed landed);
    /// The same for what is shown in between alone: no step waits for it, and it waits for no exact picture.
    void runPreview(LatestWork::Work work, LatestWork::Landed landed);
    /// As runWork, where each that lands is a step. Whoever calls it has cancelled the gestures.
    void runStep(LatestWork::Work work, LatestWork::Landed landed);
    /// What is outstanding never lands, and makes no step.
    void forgetWork();
    /// Ends the drag of a slider that is under way, which is a step. Nothing where none is.
    void endSliding();
    /// Records the state as it is now, and tells what has changed.
    void endStep(EditSeries series = EditSeries::None);
    /// Tells all that has changed.
    void tell();
    /// The same in the midst of a gesture: only the canvas, and whether it is edited.
    void tellGesture();
    /// Has `notify` called by `tell` whenever `read` gives another value. See ChangeNotifier.
    template <class Read, class Notify, class Same = std::equal_to<>>
    void watch(Read read, Notify notify, Same same = {})
    {
        m_notifier.watch(std::move(read), std::move(notify), std::move(same));
    }

    /// The view for an editor's tree to stand in; see EditorCanvasView. Not within a constructor.
    std::shared_ptr<UIView> makeCanvas(const CGRect& frame);

    /// Attaches a new recogniser whose action is one of the three above: attachGesture(view, &Editor::pinch). A finger
    /// that joins a drag ends it, so that a pinch can follow.
    template <class Recognizer>
    void attachGesture(UIView& view, void (EditorViewController::*action)(Recognizer&))
    {
        auto recognizer = std::make_shared<Recognizer>();
        if constexpr (std::is_same_v<Recognizer, UIPanGestureRecognizer>)
            recognizer->setRestartsWithAnotherTouch(true);
        recognizer->addTarget(this, action);
        view.addGestureRecognizer(std::move(recognizer));
    }

    /// Keeps the work from now on, wherever works are kept: in the form `kind`, as `record` gives it.
    void keepWork(const KeptKind& kind, std::function<KeptWork::Write()> record);
    WorkKeeper& keeper() { return m_keeper; }

    /// The work as it was when it was last flattened is safe elsewhere: it is not kept any more, unless it has changed
    /// since.
    void workExported();
    /// Asks whether to discard the work; yes runs `discard`, unless the editor is gone by then.
    void askToDiscard(std::function<void()> discard);

    /// The photo that takes gestures now; null: none.
    virtual UIView* gestureView() const = 0;
    /// The view in whose points a pan is told.
    virtual UIView& gestureSpace() const = 0;
    /// Whether the view is one of the photos that gestures may move.
    virtual bool isPhotoView(const UIView* view) const = 0;
    /// What a pan by points of the gesture space, and any other gesture, does to a photo. `tellGesture` follows a
    /// change.
    virtual void panPhoto(UIView& view, CGPoint by) = 0;
    virtual void transformPhoto(UIView& view, const CGAffineTransform& transform) = 0;

    /// The sticker that shows its handles; null, the default: none. Its `magnifyBy` and `rotateBy` end in steps.
    virtual UIView* activeSticker() const { return nullptr; }
    /// Moves it by points of the canvas, which ends in a step.
    virtual void moveSticker([[maybe_unused]] UIView& sticker, [[maybe_unused]] CGPoint by) {}

    /// The sliders in their order. Default: none.
    virtual std::span<const EditorSlider> sliderTable() const { return {}; }
    /// Where the slider of that tag stands, for tags of the table.
    virtual double sliderValue([[maybe_unused]] int tag) const { return 0; }
    /// Does what the slider does, and keeps the value; for tags of the table and values in their range. May do it by
    /// `runWork`.
    virtual void applySlider([[maybe_unused]] int tag, [[maybe_unused]] double value) {}
    /// Whether a finger is on a slider, so that what is shown in between may be coarse.
    bool isSliding() const { return m_sliding.has_value(); }
    /// The finger has left the slider, or what it does ends otherwise: what is shown in between is to be made exactly,
    /// where it is not. Default: nothing.
    virtual void settleSlider() {}
    /// A slide that is put off until the step before it is there.
    struct SlideAhead {
        int tag;
        double value;
        std::optional<EditSeries> ended; ///< as a step of that kind; none: a finger goes on with it
    };
    /// Shows by `runPreview` what those slides will come to, one after another, on top of what is being made.
    /// `applySlider` follows for each of them. Default: nothing.
    virtual void previewSlides([[maybe_unused]] std::span<const SlideAhead> slides) {}
    /// Sliders stand elsewhere than their user has put them, which the next `tell` says.
    void renewSliders() { m_slidersRenewed = true; }

    /// The view that an export shows.
    virtual const UIView& exportedView() const = 0;
    /// Hides what stands on the canvas for the user's hands alone, and gives what brings it back: for a picture in
    /// between of which nobody hears. Default: nothing.
    virtual std::function<void()> hideHandles() const
    {
        return [] {};
    }
    /// The changes that an export makes to the canvas. Default: none.
    virtual void prepareExport() {}

private:
    /// A slider with a finger on it.
    struct Sliding {
        int tag;
        std::optional<double> first = {}; ///< that it was moved to
        bool isDrag = false;              ///< far enough to be no tap
    };

    virtual void recordStep(EditSeries series) = 0;
    virtual void stepBack() = 0;
    virtual void stepForth() = 0;
    virtual bool differsFromOpening() const = 0;

    void finishStep(EditSeries series);
    void finishWork();
    void tellBusy();
    void endSlide(EditSeries series);
    bool isStepOutstanding() const { return m_slideToLand || !m_slidesAhead.empty(); }
    void putOff(int tag, double value);
    void endPutOff(EditSeries series);
    void slideOn();
    void stopCanvasGestures();
    void endGesture(const UIGestureRecognizer& gesture, EditSeries series);
    void beginSeriesOf(int tag);
    bool joinsOutstanding(int tag) const;
    void followFinger(const EditorSlider& slider, double value);
    void tellEdited();
    UIImage workPrint() const;
    void tellNotKept(const Error& error);
    void setNotice(const QString& notice);

    EditorToolBar m_toolBar;
    QVariantList m_tools; ///< of m_toolBar, made when it changes
    std::map<std::string, std::function<void()>, std::less<>> m_toolActions;
    ChangeNotifier m_notifier;
    bool m_edited = false;
    QString m_notice;
    std::optional<Sliding> m_sliding;
    int m_slidTag = 0;                       ///< of the slider that small steps join for
    std::optional<EditSeries> m_slideToLand; ///< a slide's step, to be recorded when its picture has landed
    bool m_busy = false;                     ///< as told last
    std::vector<SlideAhead> m_slidesAhead;   ///< the oldest first; none unless `m_slideToLand`
    LatestWork m_work;
    LatestWork m_previews{LatestWork::Lane::Coarse};
    bool m_slidersRenewed = false;
    WorkKeeper m_keeper;
    int m_flattenedRevision = 0;
    NotificationObserver m_leaving;
};

} // namespace lamina
