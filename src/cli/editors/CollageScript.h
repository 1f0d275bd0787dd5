#pragma once

#include "cli/editors/CollageSteps.h"
#include "cli/editors/EditorScript.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <memory>
#include <vector>

namespace lamina {

class CreateCollageViewController;

/// Goes through the collage editor without a window, as a user would. One at a time; on the main thread, whose queue it
/// pumps.
class CollageScript {
public:
    /// The screen that the editor sees, in points, `scale` pixels a point; two or three photos, upright.
    CollageScript(CGSize screen, double scale, std::vector<UIImage> photos);
    ~CollageScript();

    /// The error has no subject: the editor could not do it, and nothing is to come of the script.
    Outcome perform(const CollageStep& step);
    /// The picture of all that was done; empty where memory was short.
    UIImage flattened();

private:
    ScriptStage m_stage;
    std::shared_ptr<CreateCollageViewController> m_editor;
};

} // namespace lamina
