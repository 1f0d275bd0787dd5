#pragma once

#include "gpu/core/GPUImageInput.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/view/UIView.h"

#include <atomic>
#include <memory>

namespace lamina {

/// How frames fill a view. The values are the platform's.
enum class GPUImageFillMode {
    Stretch = 0,                    ///< over all of it
    PreserveAspectRatio = 1,        ///< all of the frame is seen, the background beside it
    PreserveAspectRatioAndFill = 2, ///< all of the view is covered, the frame is cut
};

/// The end of a graph that shows its frames, as a view of the tree.
///
/// As a view it belongs to the main thread; as a consumer to the video processing queue. Neither waits for the other:
/// of frames that come faster than the window shows them the latest wins, and while none come nothing is done. Made by
/// `std::make_shared`.
class GPUImageView : public UIView, public GPUImageInput {
public:
    explicit GPUImageView(const CGRect& frame = {});
    ~GPUImageView() override;

    /// Default PreserveAspectRatio. From any thread.
    GPUImageFillMode fillMode() const;
    void setFillMode(GPUImageFillMode fillMode);
    /// What is seen beside a frame, 0 to 1 each; default opaque black. From any thread.
    void setBackgroundColorRed(float red, float green, float blue, float alpha);
    /// Of the drawable, once there is one; else what it would have. From any thread.
    CGSize sizeInPixels() const;
    /// Default true. From any thread.
    void setEnabled(bool enabled);
};

} // namespace lamina
