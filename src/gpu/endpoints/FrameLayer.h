#pragma once

#include "gpu/endpoints/FrameExchange.h"
#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/view/CALayer.h"

#include <functional>
#include <memory>
#include <utility>

namespace lamina {

/// The layer of a view that shows a graph's frames: it takes pictures from an exchange, and tells there when it is
/// painted. Main thread.
class FrameLayer : public CALayer {
public:
    explicit FrameLayer(std::shared_ptr<FrameExchange> exchange)
        : m_exchange(std::move(exchange))
    {
    }

    const std::shared_ptr<FrameExchange>& exchange() const { return m_exchange; }
    /// Called when the layer has been painted, and a frame waits to be drawn.
    void setFrameIsWanted(std::function<void()> handler) { m_frameIsWanted = std::move(handler); }
    /// Shows the picture that is on its way.
    void takeFrame();
    /// How it is shown is another now.
    void setNeedsDisplay() { changed(); }

protected:
    void drawInContext(CGContext& context) const override;
    CGRect drawnBounds() const override { return bounds(); }

private:
    CGRect placeOfPicture() const;
    bool drawPixelOnPixel(CGContext& context) const;

    std::shared_ptr<FrameExchange> m_exchange;
    std::function<void()> m_frameIsWanted;
    DisplayedFrame m_frame;
};

} // namespace lamina
