#pragma once

#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/NotificationCenter.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/view/CALayer.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lamina {

/// Pictures as they come to lie in the pixels of a canvas: a photo that stays while something else moves is
/// enlarged once and not at every frame. Drawing by a copy gives the same bytes as drawing the picture. Held up to
/// 32 MB and let go when memory is short; the pictures themselves are not held. Main thread.
class PictureCopies {
public:
    PictureCopies();
    PictureCopies(const PictureCopies&) = delete;
    PictureCopies& operator=(const PictureCopies&) = delete;

    /// Draws the layer's contents into its coordinates, which are user space, with the context's alpha and clip. False,
    /// and nothing is drawn, where no copy would give the same bytes (a picture that is turned, has a profile, or ends
    /// within a pixel) or none is worth its memory yet: a copy is made when the same is drawn a second time, of a large
    /// picture at rest the first time, so that it is there when something else begins to move.
    bool draw(const CALayer& layer, CGContext& context, bool atRest);
    /// Lets all go.
    void drop();

private:
    struct Entry {
        std::uint64_t contents; ///< their revision
        CGRect rect;
        CGAffineTransform toDevice;
        IntRect area;
        UIImage copy = {}; ///< of the pixels of `area`; none before it is worth it

        bool isFor(const Entry& other) const;
        std::size_t bytes() const;
        void makeCopy(const UIImage& picture);
    };
    /// Empty where none is there yet, or memory is short.
    UIImage copyFor(const Entry& wanted, const UIImage& picture, bool atOnce);
    void forgetOldest();

    std::vector<Entry> m_entries; ///< the latest last
    NotificationObserver m_memoryWarning;
};

} // namespace lamina
