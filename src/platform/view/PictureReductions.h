#pragma once

#include "platform/base/NotificationCenter.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <vector>

namespace lamina {

/// Large pictures made small once, for as long as they move: reading all of a photo anew at every turn of it takes far
/// longer than a frame may. Held up to 32 MB and let go when memory is short. Main thread.
class PictureReductions {
public:
    PictureReductions();
    PictureReductions(const PictureReductions&) = delete;
    PictureReductions& operator=(const PictureReductions&) = delete;

    /// The picture, or one to be drawn in its place: `stretch` says how many device pixels one of its own becomes along
    /// the longer axis. A reduction is never finer than the device, so that drawing has nothing left to reduce, and at
    /// most half as coarse again; pictures that are small, or hardly reduced, stand for themselves.
    UIImage fitting(const UIImage& picture, double stretch);

    /// Whether `fitting` has given a reduction since the last `drop`.
    bool wereUsed() const { return m_used; }
    /// Lets all go.
    void drop();

private:
    struct Entry {
        CGImage source;
        double stretch; ///< that the reduction was made for
        UIImage reduced;
    };
    UIImage make(const UIImage& picture, double stretch);

    std::vector<Entry> m_entries; ///< the latest last
    bool m_used = false;
    NotificationObserver m_memoryWarning;
};

} // namespace lamina
