#pragma once

#include "cli/editors/BlendSteps.h"
#include "cli/editors/EditorScript.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/UIImage.h"

#include <memory>
#include <optional>

namespace lamina {

class BlendPhotoViewController;

/// Where a photo stands in its crop square: zoom from 1 to 6, and the content offset in points after the zoom, which is
/// clamped to what the photo allows.
struct CropStep {
    double zoom = 1;
    CGPoint offset;
};

/// Goes through the screens of a blend without a window, as a user would: crop, done, crop, done, gestures. One at a
/// time; on the main thread, whose queue it pumps.
class BlendScript {
public:
    /// The screen that the controllers see: `width` points, `scale` pixels a point.
    BlendScript(double width, double scale);
    ~BlendScript();

    /// The first and then the second photo, upright. Without a step the crop screen is left as it opens.
    void cropPhoto(UIImage photo, const std::optional<CropStep>& step);
    /// After both photos.
    void perform(const BlendStep& step);
    /// The picture of all that was done; empty where memory was short.
    UIImage flattened();

private:
    ScriptStage m_stage;
    std::shared_ptr<BlendPhotoViewController> m_editor;
};

} // namespace lamina
