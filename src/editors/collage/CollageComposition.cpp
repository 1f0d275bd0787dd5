#include "editors/collage/CollageComposition.h"

#include <algorithm>

namespace lamina {

namespace {

bool looksAlike(const CollageSlot& one, const CollageSlot& other)
{
    return one.center == other.center && one.transform == other.transform && one.alpha == other.alpha &&
           one.background == other.background && one.image.isIdenticalTo(other.image);
}

/// Lines that aren't drawn have no colour.
bool framesLookAlike(const CollageComposition& one, const CollageComposition& other)
{
    const bool isDrawn = one.borderWidth > 0 || one.gap > 0;
    return one.borderWidth == other.borderWidth && one.gap == other.gap &&
           (!isDrawn || one.borderColor == other.borderColor);
}

} // namespace

bool looksAlike(const CollageComposition& one, const CollageComposition& other)
{
    return one.layout == other.layout && framesLookAlike(one, other) && one.stickersBelow == other.stickersBelow &&
           looksAlike(one.stickers, other.stickers) &&
           std::equal(one.photoSlots.begin(), one.photoSlots.end(), other.photoSlots.begin(),
                      [](const CollageSlot& a, const CollageSlot& b) { return looksAlike(a, b); });
}

std::size_t byteCount(const CollageComposition& composition, PictureMemory& counted)
{
    std::size_t bytes = counted.add(composition.applyFxOnImg) + counted.add(composition.beforeApplyFilterImage);
    for (const CollageSlot& slot : composition.photoSlots)
        bytes += counted.add(slot.master) + counted.add(slot.image);
    return bytes;
}

} // namespace lamina
