#pragma once

#include "platform/image/pixels/UIImage.h"

#include <vector>

namespace lamina {

/// An editor that starts from the photos that were chosen for it. Main thread.
class SelectedImagesReceiver {
public:
    virtual ~SelectedImagesReceiver() = default;

    /// The photos in the order of choice, upright; before the editor's view loads.
    virtual void setSelectedImages(std::vector<UIImage> selectedImages) = 0;
};

} // namespace lamina
