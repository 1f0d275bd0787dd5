#include "gpu/endpoints/GPUImageUIElement.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/Causes.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/base/UIScreen.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/pixels/PixelConversion.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace lamina {

namespace {

constexpr std::int32_t kTimescale = 600;

Error failure(std::string cause)
{
    return {"view element", std::move(cause)};
}

} // namespace

GPUImageUIElement::GPUImageUIElement(std::shared_ptr<UIView> view)
    : m_view(std::move(view))
    , m_layer(m_view ? m_view->layer().shared_from_this() : nullptr)
{
    begin();
}

GPUImageUIElement::GPUImageUIElement(std::shared_ptr<CALayer> layer)
    : m_layer(std::move(layer))
{
    begin();
}

void GPUImageUIElement::begin()
{
    if (m_layer)
        m_observer = m_layer->observeChanges([changed = m_hasChanged] { *changed = true; });
    update();
}

GPUImageUIElement::~GPUImageUIElement()
{
    GPUImageOutput::removeAllTargets(); // after a push that is under way
    // The last to let go of a graph may be the queue.
    if (!DispatchQueue::main().isCurrent())
        DispatchQueue::main().async([view = std::move(m_view), layer = std::move(m_layer)] {});
}

double GPUImageUIElement::contentsScale() const
{
    return m_contentsScale.value_or(m_view ? UIScreen::main().scale : 1);
}

void GPUImageUIElement::setContentsScale(double scale)
{
    if (scale > 0 && std::isfinite(scale))
        m_contentsScale = scale;
}

CGSize GPUImageUIElement::layerSizeInPixels() const
{
    const CGSize points = m_layer ? m_layer->bounds().size : CGSize{};
    return {points.width * contentsScale(), points.height * contentsScale()};
}

void GPUImageUIElement::setAlphaForm(AlphaForm form)
{
    *m_hasChanged = *m_hasChanged || form != m_alphaForm;
    m_alphaForm = form;
}

void GPUImageUIElement::updateUsingCurrentTime()
{
    const double now = Clock::shared()->now();
    m_time = m_time.isValid() ? m_time + CMTime::makeWithSeconds(now - m_actualTimeOfLastUpdate, kTimescale)
                              : CMTime::make(0, kTimescale);
    m_actualTimeOfLastUpdate = now;
    updateWithTimestamp(m_time);
}

void GPUImageUIElement::updateWithTimestamp(const CMTime& frameTime)
{
    if (DispatchQueue::main().isCurrent()) {
        drawIfChanged();
        runSynchronouslyOnVideoProcessingQueue([&] { push(frameTime); });
    } else if (*m_hasChanged || m_handedToMain > 0) {
        ++m_handedToMain;
        DispatchQueue::main().async([weak = weak_from_this(), frameTime] {
            if (const auto self = std::static_pointer_cast<GPUImageUIElement>(weak.lock())) {
                self->updateWithTimestamp(frameTime);
                --self->m_handedToMain;
            }
        });
    } else {
        // An element that is shared lives until the push is over; any other waits for the queue in its destructor.
        runAsynchronouslyOnVideoProcessingQueue([this, self = weak_from_this().lock(), frameTime] { push(frameTime); });
    }
}

void GPUImageUIElement::drawIfChanged()
{
    const double scale = contentsScale();
    if (!m_hasChanged->exchange(false) && scale == m_drawnScale)
        return;
    m_drawnScale = scale;
    const Result<CGImage> drawn = draw();
    const bool uploaded = valueFromVideoProcessingQueue([&] { return upload(drawn ? *drawn : CGImage()); });
    if (!uploaded && !m_hasFailed)
        logError((drawn ? failure("there is no device, or memory is short") : drawn.error()).message());
    m_hasFailed = !uploaded;
    if (m_hasFailed)
        *m_hasChanged = true; // the next update tries again
}

/// The layer's pixels from the top row on, in whole ones.
Result<CGImage> GPUImageUIElement::draw() const
{
    const IntSize size = GPUImageFramebuffer::wholePixels(layerSizeInPixels());
    if (size.isEmpty())
        return failure("the layer has no area");
    const int limit = GPUImageContext::maximumTextureSizeForThisDevice();
    if (size.width > limit || size.height > limit)
        return failure("the device has no textures of this size");
    std::optional<CGContext> context =
        CGContext::bitmap(size.width, size.height, 4 * static_cast<std::size_t>(size.width), CGColorSpace::deviceRGB(),
                          bitmapInfo(CGImageAlphaInfo::PremultipliedLast));
    if (!context)
        return failure(cause::kNoMemory);
    context->translateCTM(0, size.height);
    context->scaleCTM(contentsScale(), -contentsScale());
    m_layer->renderInContext(*context);
    CGImage image = context->makeImage();
    if (m_alphaForm == AlphaForm::Straight)
        image = convertedToSRGB(image);
    if (!image)
        return failure(cause::kNoMemory);
    return image;
}

bool GPUImageUIElement::upload(const CGImage& drawn)
{
    m_outputFramebuffer.reset();
    m_drawn.reset(); // where nobody holds the former frame any more, this one takes its place
    if (drawn)
        m_drawn = fetchTexture({drawn.bytes().data(), drawn.size()}, outputTextureOptions());
    m_outputFramebuffer = m_drawn;
    return bool(m_drawn);
}

void GPUImageUIElement::push(const CMTime& frameTime)
{
    if (m_drawn)
        pushToTargets({.framebuffer = m_drawn, .size = m_drawn->size(), .time = frameTime});
}

} // namespace lamina
