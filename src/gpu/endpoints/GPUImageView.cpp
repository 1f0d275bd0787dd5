#include "gpu/endpoints/GPUImageView.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/FrameDisplay.h"
#include "gpu/endpoints/FrameExchange.h"
#include "gpu/endpoints/FrameLayer.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchTimer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kModes = 8;

QuadCoordinates withRowsExchanged(const QuadCoordinates& corners)
{
    QuadCoordinates exchanged = corners;
    std::ranges::rotate(exchanged, exchanged.begin() + 4);
    return exchanged;
}

/// To be called at each change of size; it acts once that has settled. On the queue, since the main thread would count
/// as busy until then.
std::function<void()> redrawingLater(const std::weak_ptr<FrameDisplay>& weakDisplay)
{
    constexpr double kToBeSure = 0.01;
    return [weakDisplay, timer = std::make_shared<DispatchTimer>()] {
        *timer = DispatchTimer(GPUImageContext::sharedContextQueue(), DisplayGeometry::kSettlingTime + kToBeSure,
                               [weakDisplay] {
                                   if (const auto display = weakDisplay.lock())
                                       display->sizeHasSettled();
                               });
    };
}

std::array<QuadCoordinates, kModes> makeCoordinates()
{
    std::array<QuadCoordinates, kModes> all{};
    for (std::size_t mode = 0; mode < kModes; ++mode)
        all.at(mode) =
            withRowsExchanged(GPUImageFilter::textureCoordinatesForRotation(static_cast<GPUImageRotationMode>(mode)));
    return all;
}

} // namespace

std::shared_ptr<GPUImageView> GPUImageView::make(const CGRect& frame)
{
    auto layer = std::make_shared<FrameLayer>(std::make_shared<FrameExchange>());
    const std::shared_ptr<GPUImageView> view(new GPUImageView(std::move(layer)), [](GPUImageView* last) {
        if (DispatchQueue::main().isCurrent())
            delete last;
        else
            DispatchQueue::main().async([last] { delete last; });
    });
    view->setFrame(frame);
    return view;
}

GPUImageView::GPUImageView(std::shared_ptr<FrameLayer> layer)
    : UIView({}, layer)
    , m_exchange(layer->exchange())
{
    const std::weak_ptr<FrameLayer> weakLayer = layer;
    m_display = std::make_shared<FrameDisplay>(m_exchange, [weakLayer] {
        DispatchQueue::main().async([weakLayer] {
            if (const auto shown = weakLayer.lock())
                shown->takeFrame();
        });
    });
    m_exchange->setGeometryChanged(redrawingLater(m_display));
    layer->setFrameIsWanted([weakDisplay = std::weak_ptr(m_display)] {
        runAsynchronouslyOnVideoProcessingQueue([weakDisplay] {
            if (const auto display = weakDisplay.lock())
                display->drawIfWanted();
        });
    });
}

GPUImageView::~GPUImageView()
{
    // It ends on the queue, which nobody waits for here.
    runAsynchronouslyOnVideoProcessingQueue([display = std::move(m_display)] {});
}

const QuadCoordinates& GPUImageView::textureCoordinatesForRotation(GPUImageRotationMode rotation)
{
    static const std::array<QuadCoordinates, kModes> all = makeCoordinates();
    const auto mode = static_cast<std::size_t>(rotation);
    return all.at(mode < kModes ? mode : 0);
}

GPUImageFillMode GPUImageView::fillMode() const
{
    return m_exchange->fillMode();
}

void GPUImageView::setFillMode(GPUImageFillMode fillMode)
{
    m_exchange->setFillMode(fillMode);
    redraw();
}

void GPUImageView::setBackgroundColorRed(float red, float green, float blue, float alpha)
{
    const auto cut = [](float value) { return value > 0 ? std::min(value, 1.0F) : 0.0F; }; // what is no number too
    m_exchange->setBackgroundColor({cut(red), cut(green), cut(blue), cut(alpha)});
    redraw();
}

void GPUImageView::redraw()
{
    auto& layer = static_cast<FrameLayer&>(this->layer());
    if (DispatchQueue::main().isCurrent()) {
        layer.setNeedsDisplay();
        return;
    }
    DispatchQueue::main().async([weak = layer.weak_from_this()] {
        if (const auto shown = std::static_pointer_cast<FrameLayer>(weak.lock()))
            shown->setNeedsDisplay();
    });
}

CGSize GPUImageView::sizeInPixels() const
{
    const IntSize size = m_exchange->sizeInPixels();
    return size.isEmpty() ? maximumOutputSize() : CGSize{double(size.width), double(size.height)};
}

CGSize GPUImageView::maximumOutputSize() const
{
    const DisplayGeometry geometry = m_exchange->geometry();
    return {geometry.bounds.width * geometry.scale, geometry.bounds.height * geometry.scale};
}

void GPUImageView::setFrame(const CGRect& frame)
{
    UIView::setFrame(frame);
    layoutSubviews();
}

void GPUImageView::setBounds(const CGRect& bounds)
{
    UIView::setBounds(bounds);
    layoutSubviews();
}

/// The queue reads the size when it draws.
void GPUImageView::layoutSubviews()
{
    m_exchange->setBounds(bounds().size);
}

void GPUImageView::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int)
{
    m_display->setInputFramebuffer(std::move(framebuffer));
}

void GPUImageView::setInputSize(CGSize size, int)
{
    m_display->setInputSize(size);
}

void GPUImageView::setInputRotation(GPUImageRotationMode rotation, int)
{
    m_display->setInputRotation(rotation);
}

void GPUImageView::newFrameReadyAtTime(const CMTime&, int)
{
    m_display->newFrameReady();
}

} // namespace lamina
