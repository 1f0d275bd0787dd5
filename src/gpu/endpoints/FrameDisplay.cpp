#include "gpu/endpoints/FrameDisplay.h"

#include "gpu/core/DrawingFailures.h"
#include "gpu/core/GLErrors.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUTextureOptions.h"
#include "gpu/endpoints/GPUImageView.h"
#include "gpu/kernels/ScalingKernel.h"
#include "platform/base/Causes.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelMoves.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr int kTextureUnit = 4;

/// How the pixels of a frame are moved, in the order of the rotation modes.
constexpr std::array<PixelMove, 8> kMoves{{
    {},
    {.quarters = 1},
    {.quarters = 3},
    {.mirrorY = true},
    {.mirrorX = true},
    {.quarters = 1, .mirrorX = true},
    {.quarters = 1, .mirrorY = true},
    {.quarters = 2},
}};

bool isLinear(const GPUTextureOptions& options)
{
    return options.minFilter == GL_LINEAR && options.magFilter == GL_LINEAR;
}

std::uint32_t packed(const FrameExchange::Color& color)
{
    std::array<std::uint8_t, 4> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes.at(i) = static_cast<std::uint8_t>(std::lround(255 * color.at(i)));
    return std::bit_cast<std::uint32_t>(bytes);
}

} // namespace

FrameDisplay::FrameDisplay(std::shared_ptr<FrameExchange> exchange, std::function<void()> pictureIsReady)
    : m_exchange(std::move(exchange))
    , m_pictureIsReady(std::move(pictureIsReady))
{
}

FrameDisplay::~FrameDisplay()
{
    destroyDisplayFramebuffer();
}

void FrameDisplay::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer)
{
    m_inputFramebufferForDisplay.take(std::move(framebuffer));
}

void FrameDisplay::setInputSize(CGSize size)
{
    m_inputImageSize = sizeRotatedBy(m_inputRotation, size);
    // The source has gone, and with it what it kept uncounted: the pool may give that to anybody.
    if (m_inputImageSize == CGSize{} && (m_frame.isDrawn || !m_frame.framebuffer.isCounted()))
        m_frame.framebuffer.reset();
}

void FrameDisplay::newFrameReady()
{
    if (!m_inputFramebufferForDisplay)
        return;
    m_frame.framebuffer = std::move(m_inputFramebufferForDisplay);
    m_frame.imageSize = m_inputImageSize;
    m_frame.rotation = m_inputRotation;
    m_frame.isDrawn = false;
    drawIfWanted();
}

void FrameDisplay::drawIfWanted()
{
    if (!m_frame.framebuffer || !m_exchange->beginDrawing())
        return;
    std::optional<DisplayedFrame> frame = drawn();
    m_frame.isDrawn = true;
    if (m_inputImageSize == CGSize{})
        m_frame.framebuffer.reset(); // it has outlasted its source
    const bool isThere = frame.has_value();
    m_exchange->endDrawing(std::move(frame));
    if (isThere)
        m_pictureIsReady();
}

void FrameDisplay::sizeHasSettled()
{
    if (m_exchange->geometry().pixels() != m_sizeInPixels)
        drawIfWanted();
}

/// Nothing where the view has no area, or its picture can't be made.
std::optional<DisplayedFrame> FrameDisplay::drawn()
{
    if (!prepareDrawable())
        return std::nullopt;
    std::uint8_t* const pixels = m_pictures.begin(m_sizeInPixels);
    if (!pixels) {
        DrawingFailures::note(cause::kNoMemory, m_sizeInPixels);
        return std::nullopt;
    }
    recalculateViewGeometry();
    if (!drawOnProcessor(pixels) && !drawByGL(pixels))
        return std::nullopt;
    return DisplayedFrame{m_pictures.end(), m_frame.imageSize, m_scaling};
}

// ---- the drawable ----

/// The present size: the view's once that has settled. Until then the window stretches pictures of the former one.
bool FrameDisplay::prepareDrawable()
{
    const DisplayGeometry geometry = m_exchange->geometry();
    const IntSize pixels = geometry.pixels();
    if (pixels.isEmpty())
        destroyDisplayFramebuffer();
    else if (m_sizeInPixels.isEmpty() || geometry.isSettled() || pixels == m_sizeInPixels)
        createDisplayFramebuffer(geometry);
    return !m_sizeInPixels.isEmpty();
}

void FrameDisplay::createDisplayFramebuffer(const DisplayGeometry& geometry)
{
    m_boundsSizeAtFrameBufferEpoch = geometry.bounds;
    if (geometry.pixels() == m_sizeInPixels)
        return;
    destroyDisplayFramebuffer();
    m_sizeInPixels = geometry.pixels();
    m_exchange->setSizeInPixels(m_sizeInPixels);
}

void FrameDisplay::destroyDisplayFramebuffer()
{
    if (m_drawable && GPUImageContext::useImageProcessingContext())
        m_drawable.reset();
    m_pictures.letGo();
    m_sizeInPixels = {};
    m_exchange->setSizeInPixels({});
}

bool FrameDisplay::setDisplayFramebuffer()
{
    if (!m_drawable)
        m_drawable = std::make_unique<DisplayDrawable>(m_sizeInPixels);
    return m_drawable->activate();
}

bool FrameDisplay::presentFramebuffer(std::uint8_t* pixels)
{
    return m_drawable->present(pixels);
}

/// A window's first row is its top one, and the drawable's pixels come from its bottom row on: the quad stands on its
/// head, so that nobody has to turn the rows over afterwards.
void FrameDisplay::recalculateViewGeometry()
{
    m_scaling = fillScaling(m_exchange->fillMode(), m_frame.imageSize, m_boundsSizeAtFrameBufferEpoch);
    const auto w = static_cast<GLfloat>(m_scaling.width);
    const auto h = static_cast<GLfloat>(m_scaling.height);
    m_imageVertices = {-w, h, w, h, -w, -h, w, -h};
}

// ---- drawing ----

/// In the picture's pixels; parts may lie outside.
CGRect FrameDisplay::placeOfFrame() const
{
    const CGSize size{m_scaling.width * m_sizeInPixels.width, m_scaling.height * m_sizeInPixels.height};
    return {{(m_sizeInPixels.width - size.width) / 2, (m_sizeInPixels.height - size.height) / 2}, size};
}

/// False where the pixels are GL's alone.
bool FrameDisplay::drawOnProcessor(std::uint8_t* pixels)
{
    GPUImageFramebuffer& frame = *m_frame.framebuffer;
    if (!GPUImageContext::usesKernels() || !isLinear(frame.textureOptions()) || !frame.hasHostPixels())
        return false;
    const std::shared_ptr<const std::uint8_t> own = frame.hostPixels();
    const CGImageLayout layout =
        CGImageLayout::rgba(frame.pixelSize().width, frame.pixelSize().height, CGImageAlphaInfo::NoneSkipLast);
    const CGImage picture = CGImage::make(layout, own, layout.byteCount());
    const KernelPixels upright = uprightPixels(picture);
    if (!upright.bytes)
        return false;
    kernels::drawScaled(upright, placeOfFrame(), packed(m_exchange->backgroundColor()), {pixels, m_sizeInPixels});
    return true;
}

/// The picture's, turned by the input's rotation. No bytes where there is no memory, or no picture.
KernelPixels FrameDisplay::uprightPixels(const CGImage& picture)
{
    IntSize size = picture.size();
    if (!picture || m_frame.rotation == kGPUImageNoRotation)
        return {picture.bytes().data(), size};
    const PixelMove& move = kMoves.at(m_frame.rotation);
    if (move.swapsSides())
        std::swap(size.width, size.height);
    const std::size_t byteCount = picture.bytes().size();
    if (m_turned.size() != byteCount)
        m_turned = PixelBuffer::allocate(byteCount);
    if (m_turned)
        movePixels(picture, move, 0, m_turned.data(), 4 * static_cast<std::size_t>(size.width));
    return {m_turned.data(), size};
}

bool FrameDisplay::setupProgram()
{
    if (!GPUImageContext::useImageProcessingContext())
        return false;
    if (!m_displayProgram) {
        m_displayProgram = linkedProgram(kGPUImageVertexShaderString, kGPUImagePassthroughFragmentShaderString,
                                         {"position", "inputTextureCoordinate"});
        if (!m_displayProgram)
            return false;
        m_displayPositionAttribute = m_displayProgram->attributeIndex("position");
        m_displayTextureCoordinateAttribute = m_displayProgram->attributeIndex("inputTextureCoordinate");
        m_displayInputTextureUniform = m_displayProgram->uniformIndex("inputImageTexture");
    }
    GPUImageContext::setActiveShaderProgram(m_displayProgram);
    glEnableVertexAttribArray(m_displayPositionAttribute);
    glEnableVertexAttribArray(m_displayTextureCoordinateAttribute);
    return true;
}

bool FrameDisplay::drawByGL(std::uint8_t* pixels)
{
    if (!setupProgram() || !setDisplayFramebuffer())
        return false;
    const FrameExchange::Color color = m_exchange->backgroundColor();
    glClearColor(color[0], color[1], color[2], color[3]);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glActiveTexture(GL_TEXTURE0 + kTextureUnit);
    m_frame.framebuffer->bindForReading(TextureReads::Anywhere);
    glUniform1i(m_displayInputTextureUniform, kTextureUnit);
    glVertexAttribPointer(m_displayPositionAttribute, 2, GL_FLOAT, GL_FALSE, 0, m_imageVertices.data());
    glVertexAttribPointer(m_displayTextureCoordinateAttribute, 2, GL_FLOAT, GL_FALSE, 0,
                          GPUImageView::textureCoordinatesForRotation(m_frame.rotation).data());
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    checkDraw("drawing a view's picture");
    return presentFramebuffer(pixels);
}

} // namespace lamina
