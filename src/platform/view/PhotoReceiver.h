#pragma once

#include "platform/photos/PhotoSource.h"

#include <vector>

namespace lamina {

/// A screen that takes pictures which come from outside: dropped on it, pasted, or given when the application starts.
class PhotoReceiver {
public:
    virtual ~PhotoReceiver() = default;
    /// Whether it would take any just now. Default: yes.
    virtual bool wantsPhotos() const { return true; }
    /// At least one, the first first.
    virtual void receivePhotos(std::vector<PhotoSource> photos) = 0;
};

} // namespace lamina
