#include "platform/image/drawing/CGContext_p.h"
#include "platform/image/drawing/SharedEdges.h"
#include "platform/image/drawing/SharedEdges_p.h"
#include "platform/image/drawing/Surface_p.h"

#include <cstddef>
#include <functional>
#include <optional>

namespace lamina {

void CGContext::drawSharingEdges(const SharedEdges& edges, const std::function<void(std::size_t)>& draw)
{
    Impl& impl = *m_impl;
    const SharedEdges::Impl& shapes = *edges.m_impl;
    Surface* surface = impl.clipBounds().isEmpty() ? nullptr : impl.target();
    if (!surface)
        return;
    std::optional<JointPixels> joints;
    if (impl.isRGB())
        joints.emplace(shapes, *surface, impl.clipBounds());
    for (std::size_t outline = 0; outline < shapes.masks.size(); ++outline) {
        saveGState();
        impl.intersectClip(shapes.masks[outline]);
        if (!impl.clipBounds().isEmpty())
            draw(outline);
        restoreGState();
        surface = impl.target(); // layers that came and went may have moved it
        if (joints && surface)
            joints->take(*surface, outline);
    }
    if (joints && surface)
        joints->putBack(*surface);
}

} // namespace lamina
