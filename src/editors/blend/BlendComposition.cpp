#include "editors/blend/BlendComposition.h"

#include <algorithm>

namespace lamina {

namespace {

bool looksAlike(const BlendPhoto& one, const BlendPhoto& other)
{
    return one.transform == other.transform && one.alpha == other.alpha && one.image.isIdenticalTo(other.image);
}

} // namespace

bool looksAlike(const BlendComposition& one, const BlendComposition& other)
{
    const UIColor paper = UIColor::white();
    return one.order == other.order && one.backdrop.value_or(paper) == other.backdrop.value_or(paper) &&
           looksAlike(one.stickers, other.stickers) &&
           std::equal(one.photos.begin(), one.photos.end(), other.photos.begin(),
                      [](const BlendPhoto& a, const BlendPhoto& b) { return looksAlike(a, b); });
}

std::size_t byteCount(const BlendComposition& composition, PictureMemory& counted)
{
    std::size_t bytes = counted.add(composition.applyFxOnImage1) + counted.add(composition.applyFxOnImage2);
    for (const BlendPhoto& photo : composition.photos)
        bytes += counted.add(photo.actualImage) + counted.add(photo.image) + counted.add(photo.source.bytes);
    return bytes;
}

} // namespace lamina
