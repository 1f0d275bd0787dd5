#pragma once

#include "editors/colorpicker/ColorImages.h"
#include "platform/base/CGGeometry.h"
#include "platform/view/UIImageView.h"

#include <array>
#include <memory>

namespace lamina {

/// All colours of one hue: saturation to the right, brightness upwards. The picture is made anew at each hue, in
/// memory that is used again. Main thread.
class InfColorSquareView : public UIImageView {
public:
    explicit InfColorSquareView(const CGRect& frame = {});

    /// In [0, 1]; default 0.
    float hue() const { return m_hue; }
    /// Nothing where the picture of this hue is there.
    void setHue(float hue);
    /// Makes the picture of the hue and shows it; none where memory is short.
    void updateContent();

private:
    std::shared_ptr<ColorSquarePixels> freePixels();

    float m_hue = 0;
    /// The one that is shown, and the one to fill next: whoever shows the tree may hold the former picture a while.
    std::array<std::shared_ptr<ColorSquarePixels>, 2> m_pixels;
};

} // namespace lamina
