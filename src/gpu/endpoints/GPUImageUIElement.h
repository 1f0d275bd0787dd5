#pragma once

#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageOutput.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/AlphaForm.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/view/CALayer.h"
#include "platform/view/UIView.h"

#include <atomic>
#include <memory>
#include <optional>

namespace lamina {

/// A view or a layer, with all that stands in it, as a source: a title over a movie, a watermark.
///
/// Each update is a frame for the targets. It is drawn and uploaded only where something that is seen has changed since
/// the one before; otherwise the same framebuffer goes on. The layer draws in its own coordinates: bounds that begin
/// elsewhere than at (0, 0) are not moved into the corner. A layer without area, and one larger than the device's
/// textures, push nothing until that has changed, and are logged once; so is memory that is short.
///
/// Views belong to the main thread: made there, and drawn there. An update from there has reached all targets when it
/// returns. Any other thread may update too, the video processing queue included (a filter's completion block): what
/// has not changed is pushed on the queue, and what has is handed to the main queue, so that nobody waits for it; for
/// that the element must be held by a std::shared_ptr. One thread updates at a time.
class GPUImageUIElement : public GPUImageOutput {
public:
    /// Draws the layer at once, so that targets are handed a frame when they are added.
    explicit GPUImageUIElement(std::shared_ptr<UIView> view);
    explicit GPUImageUIElement(std::shared_ptr<CALayer> layer);
    ~GPUImageUIElement() override;

    /// Pixels per point: by default the main screen's of a view, 1 of a layer. Main thread. What is not positive and
    /// finite is ignored.
    double contentsScale() const;
    void setContentsScale(double scale);
    /// What targets are told, cut to whole pixels there. Main thread.
    CGSize layerSizeInPixels() const;
    /// What alpha does to the colours that targets see: by default they are premultiplied, as they were drawn, and as
    /// the blends that work on such colours take them. Blends of straight colours (alpha, normal, source over) lay soft
    /// edges right where these are straight. Main thread.
    AlphaForm alphaForm() const { return m_alphaForm; }
    void setAlphaForm(AlphaForm form);

    /// A frame of an indefinite time.
    void update() { updateWithTimestamp(kCMTimeIndefinite); }
    /// A frame of `time`, which begins with 0 and goes on by the shared clock.
    void updateUsingCurrentTime();
    /// A frame of this time.
    void updateWithTimestamp(const CMTime& frameTime);

    /// Of the last `updateUsingCurrentTime`; invalid before the first.
    CMTime time() const { return m_time; }
    /// When that was, in the shared clock's seconds.
    double actualTimeOfLastUpdate() const { return m_actualTimeOfLastUpdate; }

private:
    void begin();
    void drawIfChanged();
    Result<CGImage> draw() const;
    bool upload(const CGImage& drawn);
    void push(const CMTime& frameTime);

    std::shared_ptr<UIView> m_view;
    std::shared_ptr<CALayer> m_layer;
    std::optional<double> m_contentsScale;
    AlphaForm m_alphaForm = AlphaForm::Premultiplied;
    double m_drawnScale = 0;
    bool m_hasFailed = false; ///< and it is logged
    CMTime m_time;
    double m_actualTimeOfLastUpdate = 0;
    /// Shared with the layer's observer, which may outlast this for a moment.
    std::shared_ptr<std::atomic<bool>> m_hasChanged = std::make_shared<std::atomic<bool>>(true);
    CALayer::ChangeObserver m_observer;
    std::atomic<int> m_handedToMain{0}; ///< updates on their way there, which later ones must not overtake

    FramebufferHold m_drawn; ///< touched on the queue
};

} // namespace lamina
