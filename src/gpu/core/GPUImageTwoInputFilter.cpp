#include "gpu/core/GPUImageTwoInputFilter.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

namespace lamina {

const char* const kGPUImageTwoInputTextureVertexShaderString = R"(
attribute vec4 position;
attribute vec4 inputTextureCoordinate;
attribute vec4 inputTextureCoordinate2;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
    textureCoordinate2 = inputTextureCoordinate2.xy;
}
)";

namespace {

constexpr std::size_t kInputs = 2;

std::string numbered(const char* name, std::size_t slot)
{
    return name + std::to_string(slot + 1);
}

std::vector<std::string> furtherAttributes(std::size_t inputs)
{
    std::vector<std::string> names;
    for (std::size_t slot = 1; slot < inputs; ++slot)
        names.push_back(numbered("inputTextureCoordinate", slot));
    return names;
}

} // namespace

GPUImageTwoInputFilter::GPUImageTwoInputFilter(const std::string& fragmentShader)
    : GPUImageTwoInputFilter(kGPUImageTwoInputTextureVertexShaderString, fragmentShader)
{
}

GPUImageTwoInputFilter::GPUImageTwoInputFilter(const std::string& vertexShader, const std::string& fragmentShader)
    : GPUImageTwoInputFilter(vertexShader, fragmentShader, kInputs)
{
}

GPUImageTwoInputFilter::GPUImageTwoInputFilter(const std::string& vertexShader, const std::string& fragmentShader,
                                               std::size_t inputs)
    : GPUImageFilter(vertexShader, fragmentShader, furtherAttributes(inputs))
    , m_slots(inputs)
{
    for (std::size_t slot = 1; slot < inputs; ++slot) {
        if (m_filterProgram)
            m_slots[slot].textureCoordinateAttribute =
                m_filterProgram->attributeIndex(numbered("inputTextureCoordinate", slot));
        m_slots[slot].inputTextureUniform = uniformIndex(numbered("inputImageTexture", slot).c_str());
    }
}

void GPUImageTwoInputFilter::disableFrameCheck(std::size_t slot)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_slots[slot].frameCheckDisabled = true; });
}

std::size_t GPUImageTwoInputFilter::slotIndex(int textureIndex) const
{
    return std::min(static_cast<std::size_t>(std::max(textureIndex, 0)), m_slots.size() - 1);
}

void GPUImageTwoInputFilter::bindFurtherInputs()
{
    for (std::size_t i = 1; i < m_slots.size(); ++i) {
        const Slot& slot = m_slots[i];
        const QuadCoordinates& coordinates = textureCoordinatesForRotation(slot.inputRotation);
        bindSlot(slot.inputFramebuffer, i, slot.inputTextureUniform, coordinates);
        glEnableVertexAttribArray(slot.textureCoordinateAttribute);
        glVertexAttribPointer(slot.textureCoordinateAttribute, 2, GL_FLOAT, GL_FALSE, 0, coordinates.data());
    }
}

/// An array that stays enabled would be read by draws of programs that don't have it.
void GPUImageTwoInputFilter::disableFurtherArrays()
{
    for (std::size_t i = 1; i < m_slots.size(); ++i)
        glDisableVertexAttribArray(m_slots[i].textureCoordinateAttribute);
}

FramebufferHold& GPUImageTwoInputFilter::heldBy(std::size_t slot)
{
    return slot == 0 ? m_firstInputFramebuffer : m_slots[slot].inputFramebuffer;
}

GPUImageFilter::Input GPUImageTwoInputFilter::inputAt(std::size_t slot) const
{
    if (slot == 0)
        return GPUImageFilter::inputAt(0);
    return {m_slots[slot].inputFramebuffer, m_slots[slot].inputRotation};
}

/// Stills come once and are drawn from again.
void GPUImageTwoInputFilter::unlockInputs()
{
    for (std::size_t slot = 0; slot < m_slots.size(); ++slot) {
        if (!m_slots[slot].frameTime.isIndefinite())
            heldBy(slot).giveBack();
    }
}

bool GPUImageTwoInputFilter::haveReceived(std::size_t slots) const
{
    const std::span asked(m_slots.data(), slots);
    return std::ranges::all_of(asked, &Slot::hasReceivedFrame);
}

/// Slots whose check is disabled count as received from the first arrival at another one.
void GPUImageTwoInputFilter::noteArrival(const CMTime& frameTime, std::size_t slot)
{
    for (Slot& other : m_slots)
        other.hasReceivedFrame = other.hasReceivedFrame || other.frameCheckDisabled;
    m_slots[slot].hasReceivedFrame = true;
    m_slots[slot].frameTime = frameTime;
}

CMTime GPUImageTwoInputFilter::timePassedOn(const CMTime& frameTime) const
{
    if (m_slots.size() > kInputs)
        return frameTime;
    return m_slots[m_slots[0].frameTime.isIndefinite() ? 1 : 0].frameTime;
}

void GPUImageTwoInputFilter::newFrameReadyAtTime(const CMTime& frameTime, int textureIndex)
{
    // A frame of a source that outruns the others, or that comes round in a loop. Only the first three slots are asked,
    // so a fourth that comes after them is passed over too.
    constexpr std::size_t kMostAsked = 3;
    if (haveReceived(std::min(m_slots.size(), kMostAsked)))
        return;
    const std::size_t slot = slotIndex(textureIndex);
    noteArrival(frameTime, slot);
    const Slot& opposite = m_slots[m_slots.size() == kInputs && slot == 0 ? 1 : 0];
    const bool movingOppositeStill = !frameTime.isIndefinite() && opposite.frameTime.isIndefinite();
    if (!haveReceived(m_slots.size()) && !movingOppositeStill)
        return;
    GPUImageFilter::newFrameReadyAtTime(timePassedOn(frameTime), 0);
    for (Slot& drawn : m_slots)
        drawn.hasReceivedFrame = false;
}

void GPUImageTwoInputFilter::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex)
{
    const std::size_t slot = slotIndex(textureIndex);
    m_slots[slot].hasSetTexture = true;
    heldBy(slot).take(std::move(framebuffer));
}

int GPUImageTwoInputFilter::nextAvailableTextureIndex() const
{
    for (std::size_t slot = m_slots.size() - 1; slot > 0; --slot) {
        if (m_slots[slot - 1].hasSetTexture)
            return static_cast<int>(slot);
    }
    return 0;
}

void GPUImageTwoInputFilter::setInputSize(CGSize size, int textureIndex)
{
    const std::size_t slot = slotIndex(textureIndex);
    if (slot == 0)
        GPUImageFilter::setInputSize(size, 0);
    if (size != CGSize{})
        return;
    m_slots[slot].hasSetTexture = false;
    heldBy(slot).reset();
}

void GPUImageTwoInputFilter::setInputRotation(GPUImageRotationMode rotation, int textureIndex)
{
    const std::size_t slot = slotIndex(textureIndex);
    (slot == 0 ? m_inputRotation : m_slots[slot].inputRotation) = rotation;
}

CGSize GPUImageTwoInputFilter::rotatedSize(CGSize size, int textureIndex) const
{
    const std::size_t slot = slotIndex(textureIndex);
    return sizeRotatedBy(slot == 0 ? m_inputRotation : m_slots[slot].inputRotation, size);
}

} // namespace lamina
