#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/view/CanvasFrame.h"
#include "platform/view/EdgeCopies.h"
#include "platform/view/PictureCopies.h"
#include "platform/view/PictureReductions.h"
#include "platform/view/UIView.h"

#include <functional>
#include <memory>
#include <optional>

namespace lamina {

/// What a window shows of a view tree: a bitmap that is kept up to date by painting again only what has changed.
///
/// The bitmap holds the root view's bounds; the root's own position and transform don't count. Its bytes are always
/// those that painting everything would give, and those of `CALayer::renderInContext` in an image context of the same
/// size and scale whose origin is the bounds' top left; only while something moves (`setMoving`) large pictures are
/// drawn from reductions, to be drawn anew at rest. Several renderers may show one tree. Main thread.
class CanvasRenderer {
public:
    /// `scale`: device pixels per point, above zero, fractions allowed (anything else counts as 1).
    CanvasRenderer(std::shared_ptr<UIView> root, double scale);
    ~CanvasRenderer();
    CanvasRenderer(const CanvasRenderer&) = delete;
    CanvasRenderer& operator=(const CanvasRenderer&) = delete;

    UIView& root() const { return *m_root; }
    double scale() const { return m_scale; }
    /// The next `render` paints everything.
    void setScale(double scale);

    /// True: frames follow one another, and speed counts. False, the default: the next `render` paints what was drawn
    /// from reductions as it is, and these are let go.
    void setMoving(bool moving);

    /// Whether something has changed since the last `render`. True at first.
    bool needsRender() const { return m_pending; }
    /// Paints what has changed; gives back the pixels painted (origin top left), empty when there were none. All of
    /// them when the root's size has changed. Without an area, or when memory is short, there is no bitmap.
    IntRect render();

    /// The bitmap as of the last `render`: RGBA premultiplied. Empty when there is none. It shares the bytes: let it go
    /// before the next `render`, which must copy the whole of it otherwise.
    CGImage image() const;

    /// Called once when something changes, and again only after the next `render`; called at once when something is
    /// pending. It schedules a frame, and must not change the tree nor render.
    void setChangeHandler(std::function<void()> handler);

private:
    void noteChange();
    bool prepareBitmap();
    void paint(const IntRect& area);

    std::shared_ptr<UIView> m_root;
    double m_scale;
    CGSize m_size; ///< the root's, that the bitmap was made for
    mutable std::optional<CGContext> m_context;
    CanvasFrame m_frame;
    PictureReductions m_reductions;
    PictureCopies m_copies;
    EdgeCopies m_edges;
    bool m_moving = false;
    IntRect m_reducedArea; ///< pixels that were drawn from reductions
    bool m_pending = true;
    std::function<void()> m_changeHandler;
    CALayer::ChangeObserver m_observer;
};

} // namespace lamina
