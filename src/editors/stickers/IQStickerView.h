#pragma once

#include "editors/common/EditHistory.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UILongPressGestureRecognizer.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIView.h"

#include <memory>
#include <optional>
#include <utility>

namespace lamina {

class IQStickerView;

/// What a sticker tells whoever uses it. All of it is optional. Main thread.
class IQStickerViewDelegate {
public:
    virtual ~IQStickerViewDelegate() = default;
    /// A drag, a resize or a turn begins,
    virtual void stickerViewDidBeginEditing(IQStickerView&) {}
    /// goes on, and
    virtual void stickerViewDidChangeEditing(IQStickerView&) {}
    /// ends, or is cancelled.
    virtual void stickerViewDidEndEditing(IQStickerView&) {}
    /// The close handle has removed the sticker from its parent.
    virtual void stickerViewDidClose(IQStickerView&) {}
    /// At the end of showEditingHandles.
    virtual void stickerViewDidShowEditingHandles(IQStickerView&) {}
    /// At the end of hideEditingHandles.
    virtual void stickerViewDidHideEditingHandles(IQStickerView&) {}
};

/// What an editor hears of a sticker, for undo and for its panels: what has changed by the user's doing, by gestures or
/// otherwise. Told after the delegate. Main thread.
class IQStickerObserver {
public:
    virtual ~IQStickerObserver() = default;
    /// A gesture begins, which ends by a stickerDidEnd.
    virtual void stickerDidBegin(IQStickerView&) {}
    /// Place, size or turn have changed by a gesture under way.
    virtual void stickerDidChange(IQStickerView&) {}
    /// A change is over, which is a step: a whole gesture, ended or cancelled (series None), or one of the small
    /// changes that come many at a time (moveBy, scaleBy, turnBy), which no begin goes before.
    virtual void stickerDidEnd(IQStickerView&, EditSeries) {}
    /// A tap has selected the sticker, or has let go of it and brought it to the front.
    virtual void stickerWasTapped(IQStickerView&) {}
    /// The sticker was deleted: it has left its parent, and keeps its tag.
    virtual void stickerWasDeleted(IQStickerView&) {}
};

/// Content that depends on its size, such as a picture drawn for it.
class IQStickerContent {
public:
    virtual ~IQStickerContent() = default;
    /// The size that the content has stays for now: at the end of a gesture, and when the handles are hidden. It may be
    /// the one that it had before.
    virtual void sizeDidSettle() = 0;
    /// The content has another size, and may soon have yet another: small changes come many at a time, and no end of
    /// theirs is told.
    virtual void sizeDidChange() = 0;
};

/// A view over a picture that the user drags, turns, scales and deletes by three handles at its corners: any content
/// with a border, 18 points inside its edge. Lengths in points, angles in radians, clockwise on the screen. Main
/// thread.
///
/// A sticker's scale lies in its bounds; its transform is a turn and nothing else, about the centre. No gesture makes a
/// side shorter than 37 or longer than 4096, so that it can always be caught again and be kept.
///
/// A tap selects (handles, and a brown border), another lets go of it (no handles, a clear border) and brings it to the
/// front. One sticker of the process is the active one, which loses its handles when another shows its own. As every
/// sticker hides its handles when it is made, a new one makes none the active one: the handles of the one before then
/// stay when another is selected.
///
/// A drag by several fingers follows their middle and doesn't jump as they come and go. A gesture that is cancelled
/// ends where it was.
class IQStickerView : public UIView {
public:
    /// From the edge to the content, and half of a handle's side.
    static constexpr double kGlobalInset = 18;
    /// Of a sticker's sides.
    static constexpr double kLeastSide = 2 * kGlobalInset + 1;
    /// See kLeastSide: some ten canvases.
    static constexpr double kLargestSide = 4096;

    /// Sides below 37 are raised to that. Nothing is shown but what a content brings.
    explicit IQStickerView(const CGRect& frame);

    /// The sticker that was selected last and has not been let go of since, whether or not it was deleted; null: none.
    /// It is held.
    static const std::shared_ptr<IQStickerView>& activeStickerView();
    /// Lets go of the active sticker where it stands in `tree` or in none, handles as they are: for who takes the tree
    /// away.
    static void releaseActiveStickerView(const UIView& tree);

    /// Default none; not held.
    std::shared_ptr<IQStickerViewDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<IQStickerViewDelegate> delegate) { m_delegate = std::move(delegate); }
    /// As the delegate.
    std::shared_ptr<IQStickerObserver> observer() const { return m_observer.lock(); }
    void setObserver(std::weak_ptr<IQStickerObserver> observer) { m_observer = std::move(observer); }

    /// Default none. A new one takes the place of the present one below the handles, stands 18 points inside the edge
    /// whatever the sticker's size, and has a brown border of 1 point until the sticker is let go of. Null takes the
    /// present one away.
    const std::shared_ptr<UIView>& contentView() const { return m_contentView; }
    void setContentView(std::shared_ptr<UIView> content);

    /// Whether a handle can be used; default true. One that can't is hidden. One that is made usable is shown, whatever
    /// the others are.
    bool enableClose() const { return m_enableClose; }
    void setEnableClose(bool enable);
    /// See enableClose.
    bool enableResize() const { return m_enableResize; }
    void setEnableResize(bool enable);
    /// See enableClose.
    bool enableRotate() const { return m_enableRotate; }
    void setEnableRotate(bool enable);
    /// Whether the view casts a shadow; default false.
    bool showContentShadow() const { return m_showContentShadow; }
    void setShowContentShadow(bool show);

    /// The handles: delete at the top left, resize at the bottom left, turn and scale at the bottom right.
    UIImageView& closeView() const { return *m_closeView; }
    UIImageView& resizeView() const { return *m_resizeView; }
    UIImageView& rotateView() const { return *m_rotateView; }

    bool isShowingEditingHandles() const { return m_isShowingEditingHandles; }
    /// Hides the handles of the active sticker and makes this one active. The border's colour stays.
    void showEditingHandles();
    /// Also makes none active, whichever it was. The border stays.
    void hideEditingHandles();
    /// Whether a border is seen, apart from the handles.
    bool showsBorder() const;
    /// Turns the border brown, or clear.
    void setShowsBorder(bool shows);

    /// Gives handles and border the size on the screen that they have in a parent without a transform.
    void refresh();
    void setFrame(const CGRect& frame) override;
    void setBounds(const CGRect& bounds) override;
    void didMoveToSuperview() override;

    // What the gestures do, each at every step of its recogniser.

    /// Selects the sticker, or lets go of it and brings it to the front.
    void contentTapped();
    /// Removes the sticker from its parent. It stays the active one if it is.
    void singleTap();
    /// Moves by the way that the fingers have made in the parent.
    void moveGesture(UIPanGestureRecognizer& gesture);
    /// Makes each side longer by twice the way to the left and down, along the sticker's own axes; the middle stays.
    void resizeTranslate(UILongPressGestureRecognizer& gesture);
    /// Turns with the finger about the middle, and scales by the root of the ratio of its distances from there; where a
    /// side would be too short or too long it turns alone.
    void rotateViewPanGesture(UILongPressGestureRecognizer& gesture);

    // The same for keys, wheels and scripts, without a finger. What isn't finite, and what would make a side too short
    // or too long, changes nothing, and nobody is told; false then.

    /// In the parent's points.
    bool moveBy(double dx, double dy);
    /// Both sides, about the centre; the factor is that of the sides themselves.
    bool scaleBy(double factor);
    /// About the centre.
    bool turnBy(double angle);
    /// What the close handle does.
    void close() { singleTap(); }

    /// Wheels and touchpads scale and turn the sticker while it shows its handles, and then reach nothing else.
    bool magnifyBy(double factor) override;
    /// See magnifyBy.
    bool rotateBy(double angle) override;

private:
    void makeHandles();
    void attachGestures();
    void setHandleEnabled(UIImageView& handle, bool& flag, bool enable);
    void setHandlesHidden(bool hidden);
    CGPoint frameCenter() const;
    double angle() const;
    void growBy(double wChange, double hChange);
    bool scaleBounds(const CGRect& from, double scale);
    void tellStep(const UIGestureRecognizer& gesture);
    void tellEnd(EditSeries series);
    void layOutContent();
    void settle();
    IQStickerContent* content() const { return dynamic_cast<IQStickerContent*>(m_contentView.get()); }

    std::shared_ptr<UIImageView> m_closeView;
    std::shared_ptr<UIImageView> m_rotateView;
    std::shared_ptr<UIImageView> m_resizeView;
    std::shared_ptr<UIView> m_contentView;
    std::weak_ptr<IQStickerViewDelegate> m_delegate;
    std::weak_ptr<IQStickerObserver> m_observer;
    bool m_isShowingEditingHandles = false;
    bool m_enableClose = true;
    bool m_enableResize = true;
    bool m_enableRotate = true;
    bool m_showContentShadow = false;

    // What is known from a gesture's start, or from its last step; touches in the parent's coordinates.
    bool m_isInGesture = false; ///< or in one of many small changes
    CGPoint m_beginningCenter;
    CGPoint m_prevPoint;
    CGRect m_initialBounds;
    double m_initialDistance = 0;
    double m_deltaAngle = 0;
};

} // namespace lamina
