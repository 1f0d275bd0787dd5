#include "gpu/core/GPUImageFilter.h"

#include "gpu/core/GLErrors.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUTextureOptions.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace lamina {

namespace {

constexpr double kCaptureTimeoutSeconds = 3;

constexpr std::array<QuadCoordinates, 8> kTextureCoordinates{{
    {0, 0, 1, 0, 0, 1, 1, 1}, // none
    {1, 0, 1, 1, 0, 0, 0, 1}, // left
    {0, 1, 0, 0, 1, 1, 1, 0}, // right
    {0, 1, 1, 1, 0, 0, 1, 0}, // flipped top to bottom
    {1, 0, 0, 0, 1, 1, 0, 1}, // flipped left to right
    {0, 0, 0, 1, 1, 0, 1, 1}, // right, then top to bottom
    {1, 1, 1, 0, 0, 1, 0, 0}, // right, then left to right
    {1, 1, 0, 1, 1, 0, 0, 0}, // half a turn
}};

/// The size of the viewport where it is the one told; empty else: steps that are made for another size don't lead from
/// texel to texel.
IntSize wholeSizeOfViewport(CGSize told)
{
    std::array<GLint, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    const IntSize size{viewport[2], viewport[3]};
    return CGSize{static_cast<double>(size.width), static_cast<double>(size.height)} == told ? size : IntSize{};
}

constexpr bool isZero(CGSize size)
{
    return size.width == 0 && size.height == 0;
}

} // namespace

CGSize sizeFittingInside(CGSize aspect, CGSize bounds)
{
    if (!(aspect.width > 0 && aspect.height > 0))
        return {};
    const double scale = std::min(bounds.width / aspect.width, bounds.height / aspect.height);
    return {aspect.width * scale, aspect.height * scale};
}

GPUImageFilter::GPUImageFilter()
    : GPUImageFilter(kGPUImagePassthroughFragmentShaderString)
{
}

GPUImageFilter::GPUImageFilter(const std::string& fragmentShader)
    : GPUImageFilter(kGPUImageVertexShaderString, fragmentShader)
{
}

GPUImageFilter::GPUImageFilter(const std::string& vertexShader, const std::string& fragmentShader)
    : GPUImageFilter(vertexShader, fragmentShader, std::vector<std::string>())
{
}

GPUImageFilter::GPUImageFilter(const std::string& vertexShader, const std::string& fragmentShader,
                               const std::vector<std::string>& moreAttributes)
{
    m_imageCaptureSemaphore.signal();
    runSynchronouslyOnVideoProcessingQueue(
        [&] { buildProgram(firstPass(), vertexShader, fragmentShader, moreAttributes); });
}

std::shared_ptr<GPUImageFilter> GPUImageFilter::makeWithFragmentShaderFromFile(const std::string& name)
{
    return std::make_shared<GPUImageFilter>(shaderTextFromFile(name, "fsh"));
}

GPUImageFilter::Pass GPUImageFilter::firstPass()
{
    return {0, m_filterProgram, m_filterPositionAttribute, m_filterTextureCoordinateAttribute,
            m_filterInputTextureUniform};
}

void GPUImageFilter::buildProgram(const Pass& pass, const std::string& vertexShader, const std::string& fragmentShader,
                                  const std::vector<std::string>& moreAttributes)
{
    std::vector<std::string> attributes{"position", "inputTextureCoordinate"};
    attributes.insert(attributes.end(), moreAttributes.begin(), moreAttributes.end());
    pass.program = linkedProgram(vertexShader, fragmentShader, attributes);
    if (!pass.program)
        return;
    pass.positionAttribute = pass.program->attributeIndex("position");
    pass.textureCoordinateAttribute = pass.program->attributeIndex("inputTextureCoordinate");
    pass.inputTextureUniform = pass.program->uniformIndex("inputImageTexture");
    GPUImageContext::setActiveShaderProgram(pass.program);
    glEnableVertexAttribArray(pass.positionAttribute);
    glEnableVertexAttribArray(pass.textureCoordinateAttribute);
}

GLint GPUImageFilter::uniformIndex(const char* name) const
{
    return valueFromVideoProcessingQueue([&] { return m_filterProgram ? m_filterProgram->uniformIndex(name) : -1; });
}

const QuadCoordinates& GPUImageFilter::textureCoordinatesForRotation(GPUImageRotationMode rotation)
{
    const auto row = static_cast<std::size_t>(rotation);
    return kTextureCoordinates[row < kTextureCoordinates.size() ? row : 0];
}

void GPUImageFilter::useNextFrameForImageCapture()
{
    m_usingNextFrameForImageCapture = true;
    m_imageCaptureSemaphore.tryWait();
}

CGImage GPUImageFilter::newCGImageFromCurrentlyProcessedOutput()
{
    if (!m_imageCaptureSemaphore.wait(kCaptureTimeoutSeconds))
        return {};
    CGImage image;
    runSynchronouslyOnVideoProcessingQueue([&] {
        const std::shared_ptr<GPUImageFramebuffer> framebuffer = framebufferForOutput();
        m_usingNextFrameForImageCapture = false;
        // Read before, it may be at work for somebody else by now, whose count it then is.
        const bool held = std::exchange(m_holdsFrameForCapture, false);
        if (framebuffer)
            image =
                held ? framebuffer->newCGImageFromFramebufferContents(alphaForm()) : framebuffer->contents(alphaForm());
    });
    m_imageCaptureSemaphore.signal();
    return image;
}

CGSize GPUImageFilter::sizeOfFBO() const
{
    const CGSize maximum = maximumOutputSize();
    return isZero(maximum) || m_inputTextureSize.width < maximum.width ? m_inputTextureSize : maximum;
}

GPUImageFilter::Pass GPUImageFilter::passAt(int index)
{
    Pass pass = firstPass();
    pass.programIndex = index;
    return pass;
}

CGSize GPUImageFilter::sizeOfPass(int) const
{
    return sizeOfFBO();
}

std::shared_ptr<GPUImageFramebuffer> GPUImageFilter::beginOutput(const GPUVector4& clearColor, CGSize size) const
{
    auto output =
        GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(size, outputTextureOptions(), false);
    output->activateFramebuffer();
    glClearColor(clearColor.one, clearColor.two, clearColor.three, clearColor.four);
    glClear(GL_COLOR_BUFFER_BIT);
    return output;
}

void GPUImageFilter::bindInput(const std::shared_ptr<GPUImageFramebuffer>& input, int unit, GLint uniform,
                               TextureReads reads)
{
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    if (input)
        input->bindForReading(reads);
    else
        glBindTexture(GL_TEXTURE_2D, 0);
    glUniform1i(uniform, unit);
}

bool GPUImageFilter::readsTexelCentres(int, std::size_t slot) const
{
    return m_filterProgram->reads(slot) == ShaderReads::InPlace;
}

bool GPUImageFilter::liesOnGrid(const std::shared_ptr<GPUImageFramebuffer>& input,
                                const QuadCoordinates& textureCoordinates) const
{
    const auto* const row = std::ranges::find(kTextureCoordinates, textureCoordinates);
    if (!input || m_drawnSize.isEmpty() || row == kTextureCoordinates.end())
        return false;
    const auto rotation = static_cast<GPUImageRotationMode>(row - kTextureCoordinates.begin());
    const IntSize size = input->pixelSize();
    return (swapsWidthAndHeight(rotation) ? IntSize{size.height, size.width} : size) == m_drawnSize;
}

void GPUImageFilter::bindSlot(const std::shared_ptr<GPUImageFramebuffer>& input, std::size_t slot, GLint uniform,
                              const QuadCoordinates& textureCoordinates) const
{
    const bool atCentres = liesOnGrid(input, textureCoordinates) && readsTexelCentres(m_drawnProgramIndex, slot);
    bindInput(input, kFirstTextureUnit + static_cast<int>(slot), uniform,
              atCentres ? TextureReads::TexelCentres : TextureReads::Anywhere);
}

void GPUImageFilter::drawPass(const Pass& pass, const std::shared_ptr<GPUImageFramebuffer>& input,
                              const QuadCoordinates& vertices, const QuadCoordinates& textureCoordinates)
{
    m_drawnProgramIndex = pass.programIndex;
    m_drawnSize = vertices == kGPUImageQuadVertices ? wholeSizeOfViewport(sizeOfFBO()) : IntSize{};
    willDrawPass(pass.programIndex, liesOnGrid(input, textureCoordinates));
    GPUImageContext::setActiveShaderProgram(pass.program);
    setUniformsForProgramAtIndex(pass.programIndex);
    bindSlot(input, 0, pass.inputTextureUniform, textureCoordinates);
    bindFurtherInputs();
    glVertexAttribPointer(pass.positionAttribute, 2, GL_FLOAT, GL_FALSE, 0, vertices.data());
    glVertexAttribPointer(pass.textureCoordinateAttribute, 2, GL_FLOAT, GL_FALSE, 0, textureCoordinates.data());
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    checkDraw("drawing a filter");
    disableFurtherArrays();
}

namespace {

void readFrom(GLuint attribute, const VertexArray& array)
{
    if (array.data)
        glVertexAttribPointer(attribute, array.components, array.type, array.normalized, array.stride, array.data);
    else
        glDisableVertexAttribArray(attribute);
}

} // namespace

void GPUImageFilter::drawVertices(const Pass& pass, const std::shared_ptr<GPUImageFramebuffer>& input,
                                  const VertexDraw& draw)
{
    GPUImageContext::setActiveShaderProgram(pass.program);
    setUniformsForProgramAtIndex(pass.programIndex);
    bindInput(input, kFirstTextureUnit, pass.inputTextureUniform);
    readFrom(pass.positionAttribute, draw.positions);
    // An enabled array that is shorter than the draw would be read beyond its end.
    readFrom(pass.textureCoordinateAttribute, draw.textureCoordinates);
    if (draw.addsToWhatIsThere) {
        glEnable(GL_BLEND);
        glBlendEquation(GL_FUNC_ADD);
        glBlendFunc(GL_ONE, GL_ONE);
    }
    glDrawArrays(draw.primitive, 0, draw.count);
    checkDraw("drawing a filter's vertices");
    if (draw.addsToWhatIsThere)
        glDisable(GL_BLEND);
    glEnableVertexAttribArray(pass.positionAttribute);
    glEnableVertexAttribArray(pass.textureCoordinateAttribute);
}

void GPUImageFilter::holdForCapture(GPUImageFramebuffer& output)
{
    m_holdsFrameForCapture = m_usingNextFrameForImageCapture;
    if (m_holdsFrameForCapture)
        output.lock();
}

void GPUImageFilter::signalCapture()
{
    if (m_holdsFrameForCapture)
        m_imageCaptureSemaphore.signal();
}

void GPUImageFilter::unlockInputs()
{
    m_firstInputFramebuffer.giveBack();
}

void GPUImageFilter::dropFrame()
{
    unlockInputs();
    // Whoever waits for a frame of a filter that can't draw need not wait for its time to be over.
    if (!canRender() && m_usingNextFrameForImageCapture)
        m_imageCaptureSemaphore.signal();
}

GPUImageFilter::Input GPUImageFilter::inputAt(std::size_t) const
{
    return {m_firstInputFramebuffer, m_inputRotation};
}

namespace {

bool isUpright(const std::shared_ptr<GPUImageFramebuffer>& input, GPUImageRotationMode rotation, IntSize size)
{
    return input && rotation == kGPUImageNoRotation && input->pixelSize() == size && input->hasHostPixels();
}

bool holdsPlainBytes(const GPUTextureOptions& options)
{
    return options.internalFormat == GL_RGBA && options.type == GL_UNSIGNED_BYTE;
}

} // namespace

std::shared_ptr<GPUImageFramebuffer> GPUImageFilter::runKernel(const QuadCoordinates& vertices,
                                                               const QuadCoordinates& textureCoordinates)
{
    const bool isWhole =
        vertices == kGPUImageQuadVertices && textureCoordinates == textureCoordinatesForRotation(kGPUImageNoRotation);
    const CGSize size = sizeOfFBO();
    const IntSize pixels = GPUImageFramebuffer::wholePixels(size);
    const FilterKernel made = isWhole && GPUImageContext::usesKernels() ? kernel() : FilterKernel();
    const Input first = inputAt(0);
    if (!made || pixels.isEmpty() || !holdsPlainBytes(outputTextureOptions()) ||
        !isUpright(first.framebuffer, first.rotation, pixels))
        return nullptr;
    const IntSize secondSize = made.secondSize.value_or(pixels);
    const Input second = inputAt(inputCount() - 1);
    const bool hasSecond = inputCount() > 1;
    if (hasSecond && !isUpright(second.framebuffer, second.rotation, secondSize))
        return nullptr;
    auto firstPixels = first.framebuffer->hostPixels();
    auto secondPixels = hasSecond ? second.framebuffer->hostPixels() : nullptr;
    if (!firstPixels || (hasSecond && !secondPixels))
        return nullptr;
    auto output =
        GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(size, outputTextureOptions(), false);
    std::uint8_t* const written = output->hostPixelsToWrite();
    if (!written || !made.run({{firstPixels.get(), pixels}, {secondPixels.get(), secondSize}, written})) {
        output->unlock();
        return nullptr; // it is drawn instead
    }
    firstPixels.reset(); // who fetches the framebuffer next writes into them
    secondPixels.reset();
    unlockInputs();
    return output;
}

std::shared_ptr<GPUImageFramebuffer> GPUImageFilter::drawPasses(const QuadCoordinates& vertices,
                                                                const QuadCoordinates& textureCoordinates)
{
    if (auto made = runKernel(vertices, textureCoordinates))
        return made;
    const QuadCoordinates& upright = textureCoordinatesForRotation(kGPUImageNoRotation);
    const int last = std::max(passCount(), 1) - 1;
    std::shared_ptr<GPUImageFramebuffer> drawn; // by the pass before
    for (int index = 0; index <= last; ++index) {
        std::shared_ptr<GPUImageFramebuffer> output = beginOutput(m_backgroundColor, sizeOfPass(index));
        drawPass(passAt(index), index == 0 ? m_firstInputFramebuffer : drawn, vertices,
                 index == 0 ? textureCoordinates : upright);
        if (index == (everyPassReadsInputs() ? last : 0))
            unlockInputs();
        if (drawn)
            drawn->unlock();
        drawn = std::move(output);
    }
    return drawn;
}

void GPUImageFilter::renderToTextureWithVertices(const QuadCoordinates& vertices,
                                                 const QuadCoordinates& textureCoordinates)
{
    if (preventRendering() || !canRender()) {
        dropFrame();
        return;
    }
    m_outputFramebuffer = drawPasses(vertices, textureCoordinates);
    holdForCapture(*m_outputFramebuffer);
    signalCapture();
}

void GPUImageFilter::newFrameReadyAtTime(const CMTime& frameTime, int)
{
    renderToTextureWithVertices(kGPUImageQuadVertices, textureCoordinatesForRotation(m_inputRotation));
    informTargetsAboutNewFrameAtTime(frameTime);
}

void GPUImageFilter::generateFrameAtTime(const CMTime& frameTime)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        const CGSize size = sizeOfFBO();
        if (!isMeasurable(size))
            return;
        setupFilterForSize(size);
        GPUImageFilter::newFrameReadyAtTime(frameTime, 0);
    });
}

void GPUImageFilter::informTargetsAboutNewFrameAtTime(const CMTime& frameTime)
{
    std::shared_ptr<GPUImageFramebuffer> output = framebufferForOutput();
    if (!output || preventRendering())
        return;
    if (const FrameProcessingCompletionBlock completion = frameProcessingCompletionBlock())
        completion(*this, frameTime);
    m_isEndProcessing = false;
    if (!m_holdsFrameForCapture)
        removeOutputFramebuffer();
    pushToTargets(
        {.framebuffer = std::move(output), .size = outputFrameSize(), .time = frameTime, .givesUpCount = true});
}

void GPUImageFilter::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int)
{
    m_firstInputFramebuffer.take(std::move(framebuffer));
}

void GPUImageFilter::setInputSize(CGSize size, int textureIndex)
{
    if (isZero(size))
        m_firstInputFramebuffer.reset(); // its source is gone
    if (preventRendering())
        return;
    if (!m_overrideInputSize)
        m_inputTextureSize = rotatedSize(size, textureIndex);
    else if (!isZero(m_forcedMaximumSize))
        m_inputTextureSize = sizeFittingInside(size, m_forcedMaximumSize);
    setupFilterForSize(sizeOfFBO());
}

void GPUImageFilter::setInputRotation(GPUImageRotationMode rotation, int)
{
    m_inputRotation = rotation;
}

CGSize GPUImageFilter::rotatedSize(CGSize size, int) const
{
    return sizeRotatedBy(m_inputRotation, size);
}

CGPoint GPUImageFilter::rotatedPoint(CGPoint point, GPUImageRotationMode rotation)
{
    const auto [x, y] = point;
    switch (rotation) {
    case kGPUImageNoRotation:
        return point;
    case kGPUImageRotateLeft:
        return {1 - y, x};
    case kGPUImageRotateRight:
        return {y, 1 - x};
    case kGPUImageFlipVertical:
        return {x, 1 - y};
    case kGPUImageFlipHorizontal:
        return {1 - x, y};
    case kGPUImageRotateRightFlipVertical:
        return {y, x};
    case kGPUImageRotateRightFlipHorizontal:
        return {1 - y, 1 - x};
    case kGPUImageRotate180:
        return {1 - x, 1 - y};
    }
    return point;
}

void GPUImageFilter::forceProcessingAtSize(CGSize size)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_overrideInputSize = !isZero(size);
        if (!m_overrideInputSize)
            return;
        m_inputTextureSize = size;
        m_forcedMaximumSize = {};
    });
}

void GPUImageFilter::forceProcessingAtSizeRespectingAspectRatio(CGSize size)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_overrideInputSize = !isZero(size);
        m_forcedMaximumSize = size;
        if (!m_overrideInputSize)
            m_inputTextureSize = {};
    });
}

void GPUImageFilter::endProcessing()
{
    if (m_isEndProcessing)
        return;
    m_isEndProcessing = true;
    const std::vector<Target> targets = targetList();
    for (const Target& target : targets)
        target.input->endProcessing();
}

} // namespace lamina
