#pragma once

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/NotificationCenter.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <vector>

namespace lamina {

/// Pictures as they come to lie in the pixels of a canvas: a photo that stays while something else moves is
/// enlarged once and not at every frame. Drawing by a copy gives the same bytes as drawing the picture. Held up to
/// 32 MB and let go when memory is short. Main thread.
class PictureCopies {
public:
    PictureCopies();
    PictureCopies(const PictureCopies&) = delete;
    PictureCopies& operator=(const PictureCopies&) = delete;

    /// Draws the picture into `rect` of user space, with the context's alpha and clip. False, and nothing is drawn,
    /// where no copy would give the same bytes (a picture that is turned, has a profile, or ends within a pixel) or
    /// none is worth its memory yet: a copy is made when the same is drawn a second time.
    bool draw(const UIImage& picture, CGContext& context, const CGRect& rect);
    /// Lets all go.
    void drop();

private:
    struct Entry {
        UIImage picture;
        CGRect rect;
        CGAffineTransform toDevice;
        IntRect area;
        UIImage copy; ///< of the pixels of `area`; none before the second time

        bool isFor(const Entry& other) const;
        std::size_t bytes() const;
        void makeCopy();
    };
    /// Empty where none is there yet, or memory is short.
    UIImage copyFor(Entry wanted);
    void forgetOldest();

    std::vector<Entry> m_entries; ///< the latest last
    NotificationObserver m_memoryWarning;
};

} // namespace lamina
