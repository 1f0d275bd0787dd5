#pragma once

#include "platform/view/UIView.h"

#include "platform/image/pixels/UIImage.h"

namespace lamina {

/// Shows a picture by its content mode. Not opaque, and takes no touches until told to.
class UIImageView : public UIView {
public:
    explicit UIImageView(const CGRect& frame = {});
    /// As large as the picture, in points.
    explicit UIImageView(const UIImage& image);

    /// Default the empty picture.
    const UIImage& image() const { return layer().contents(); }
    /// The empty picture shows nothing.
    void setImage(const UIImage& image) { layer().setContents(image); }
    /// That of the picture, in points.
    CGSize intrinsicContentSize() const override { return image().size(); }
};

} // namespace lamina
