#include "gpu/endpoints/FrameLayer.h"

#include "gpu/endpoints/GPUImageFillMode.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/UIColor.h"

#include <cmath>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// Of a length that is turned or not.
double scaleOf(const CGAffineTransform& transform)
{
    return std::hypot(transform.a, transform.b);
}

bool isUpright(const CGAffineTransform& transform)
{
    return transform.b == 0 && transform.c == 0 && transform.a > 0 && transform.d > 0;
}

} // namespace

void FrameLayer::takeFrame()
{
    if (std::optional<DisplayedFrame> frame = m_exchange->take()) {
        m_frame = *std::move(frame);
        changed();
    }
}

/// Until there is a picture of the view's size and mode, the frame in the last one stands where it would stand in that.
CGRect FrameLayer::placeOfPicture() const
{
    const CGSize view = bounds().size;
    const CGSize scaling = fillScaling(m_exchange->fillMode(), m_frame.imageSize, view);
    const CGSize size{view.width * scaling.width / m_frame.scaling.width,
                      view.height * scaling.height / m_frame.scaling.height};
    return {{bounds().midX() - size.width / 2, bounds().midY() - size.height / 2}, size};
}

void FrameLayer::drawInContext(CGContext& context) const
{
    if (m_exchange->notePainting(scaleOf(context.deviceTransform())) && m_frameIsWanted)
        m_frameIsWanted();
    if (drawPixelOnPixel(context))
        return;
    context.saveGState();
    context.clipToRect(bounds());
    const FrameExchange::Color color = m_exchange->backgroundColor();
    context.setFillColor(UIColor{color[0], color[1], color[2], 1});
    context.fillRect(bounds());
    if (m_frame.picture) {
        const CGRect place = placeOfPicture();
        context.drawImage(m_frame.picture,
                          CGAffineTransform{place.size.width / m_frame.picture.width(), 0, 0,
                                            place.size.height / m_frame.picture.height(), place.minX(), place.minY()});
    }
    context.restoreGState();
}

/// A picture that was drawn for just these pixels is moved to the nearest whole ones. False: it was drawn for others.
bool FrameLayer::drawPixelOnPixel(CGContext& context) const
{
    const CGAffineTransform t = context.deviceTransform();
    if (!m_frame.picture || !isUpright(t) || m_frame.picture.size() != m_exchange->geometry().pixels() ||
        m_frame.scaling != fillScaling(m_exchange->fillMode(), m_frame.imageSize, bounds().size))
        return false;
    const CGPoint corner = t.apply(bounds().origin);
    const CGAffineTransform toDevice = CGAffineTransform::translation(std::round(corner.x), std::round(corner.y));
    if (const std::optional<CGAffineTransform> toUser = t.inverted())
        context.drawImage(m_frame.picture, toDevice.concatenating(*toUser));
    return true;
}

} // namespace lamina
