#pragma once

#include "platform/image/pixels/UIImage.h"
#include "platform/view/UIView.h"

#include <memory>

namespace lamina {

class DrawnLayer;

/// All hues from the left to the right, at full saturation and brightness. Main thread.
class InfColorBarView : public UIView {
public:
    explicit InfColorBarView(const CGRect& frame = {});

private:
    InfColorBarView(const CGRect& frame, std::shared_ptr<DrawnLayer> layer);

    UIImage m_hues; ///< empty where memory was short: nothing is drawn then
};

} // namespace lamina
