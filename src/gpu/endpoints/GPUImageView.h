#pragma once

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageInput.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/endpoints/GPUImageFillMode.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/view/UIView.h"

#include <atomic>
#include <memory>

namespace lamina {

class FrameDisplay;
class FrameExchange;
class FrameLayer;

/// The end of a graph that shows its frames, as a view of the tree.
///
/// As a view it belongs to the main thread; as a consumer to the video processing queue. Neither waits for the other:
/// of frames that come faster than the window shows them the latest wins, and while none come nothing is done. A frame
/// is drawn once the one before it has been painted: where nobody paints (the view is hidden, stands in no tree, or its
/// window is covered) the newest frame is kept, undrawn, until somebody does. What other views of its window cover is
/// painted all the same: whoever covers it whole hides it. The last frame's count is kept until the next frame or the
/// source's end.
///
/// Frames are drawn as opaque, in the pixels of the window that paints the view. While its size changes the last
/// pictures are stretched, in their own proportions; a quarter of a second later the last frame and those to come are
/// drawn in the new size.
class GPUImageView : public UIView, public GPUImageInput {
public:
    /// Whoever drops the last reference, the view itself ends on the main thread.
    static std::shared_ptr<GPUImageView> make(const CGRect& frame = {});

    /// Default PreserveAspectRatio. From any thread; what is on show follows.
    GPUImageFillMode fillMode() const;
    void setFillMode(GPUImageFillMode fillMode);
    /// What is seen beside a frame, and before the first: 0 to 1 each, default opaque black. Alpha says nothing: the
    /// view is opaque. From any thread, for the frames to come.
    void setBackgroundColorRed(float red, float green, float blue, float alpha);
    /// Of what frames are drawn into, once there is one; else `maximumOutputSize`. From any thread.
    CGSize sizeInPixels() const;
    /// Default true. From any thread.
    void setEnabled(bool enabled) { m_enabled = enabled; }

    /// The corners of a frame for a rotation, in the order of a quad's vertices, for a screen whose first row is the
    /// last of clip space: `GPUImageFilter`'s with the rows of vertices exchanged. Outside 1 to 7: the first row.
    static const QuadCoordinates& textureCoordinatesForRotation(GPUImageRotationMode rotation);

    void setFrame(const CGRect& frame) override;
    void setBounds(const CGRect& bounds) override;

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    int nextAvailableTextureIndex() const override { return 0; }
    /// The zero size leaves what is on show, which is not drawn in other sizes any more, and a frame of the pool that
    /// waits to be drawn.
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;
    /// The bounds in pixels of the window that has painted the view; of the main screen before the first time.
    CGSize maximumOutputSize() const override;
    void endProcessing() override {}
    bool shouldIgnoreUpdatesToThisTarget() const override { return false; }
    bool enabled() const override { return m_enabled; }
    bool wantsMonochromeInput() const override { return false; }
    void setCurrentlyReceivingMonochromeInput(bool) override {}

private:
    explicit GPUImageView(std::shared_ptr<FrameLayer> layer);
    ~GPUImageView() override;
    void layoutSubviews();
    void redraw();

    std::shared_ptr<FrameExchange> m_exchange;
    std::shared_ptr<FrameDisplay> m_display; ///< the queue's
    std::atomic<bool> m_enabled{true};
};

} // namespace lamina
