// The exponential moving average, first order (Oppenheim and Schafer, Discrete-Time Signal Processing), at a lag of
// two.

#include "gpu/filters/blur/GPUImageLowPassFilter.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImageBuffer.h"
#include "gpu/core/GPUImageInput.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/blend/GPUImageDissolveBlendFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"

namespace lamina {

namespace {

constexpr float kStrength = 0.5F;

} // namespace

/// A dissolve that draws over its own past. The past is fed from within and not by a target in the list, which users
/// empty as they like.
class GPUImageLowPassFilter::Feedback : public GPUImageDissolveBlendFilter {
public:
    Feedback() { disableSecondFrameCheck(); }
    ~Feedback() override
    {
        runSynchronouslyOnVideoProcessingQueue([this] { forget(); });
    }

    bool hasPast() const { return m_past != nullptr; }

    void setInputSize(CGSize size, int textureIndex) override
    {
        // The source has gone: what the next one brings has nothing to do with it.
        if (size == CGSize{} && textureIndex == 0)
            forget();
        GPUImageDissolveBlendFilter::setInputSize(size, textureIndex);
    }

    void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                     const QuadCoordinates& textureCoordinates) override
    {
        if (preventRendering() || !canRender())
            forget();
        else if (!m_past)
            begin();
        GPUImageDissolveBlendFilter::renderToTextureWithVertices(vertices, textureCoordinates);
        if (m_past)
            remember();
    }

private:
    /// The first frame meets itself.
    void begin()
    {
        m_past = std::make_shared<GPUImageBuffer>();
        // Not counted: the buffer is this filter's own, and a count would keep both for ever.
        m_past->addTarget(std::shared_ptr<GPUImageInput>(std::shared_ptr<void>(), this), 1);
        setInputRotation(m_inputRotation, 1);
        setInputFramebuffer(m_firstInputFramebuffer, 1);
    }

    /// Hands the buffer what has been drawn, whereupon it fills slot 1 for the next frame.
    void remember()
    {
        m_past->setInputSize(sizeOfFBO(), 0);
        m_past->setInputFramebuffer(m_outputFramebuffer, 0);
        m_past->newFrameReadyAtTime(kCMTimeInvalid, 0);
    }

    void forget()
    {
        m_past.reset();
        unlockInputs();
    }

    std::shared_ptr<GPUImageBuffer> m_past;
};

GPUImageLowPassFilter::GPUImageLowPassFilter()
    : m_feedback(std::make_shared<Feedback>())
{
    addFilter(m_feedback);
    setInitialFilters({m_feedback});
    setTerminalFilter(m_feedback);
    setFilterStrength(kStrength);
}

float GPUImageLowPassFilter::filterStrength() const
{
    return m_feedback->mix();
}

void GPUImageLowPassFilter::setFilterStrength(float strength)
{
    m_feedback->setMix(strength);
}

bool GPUImageLowPassFilter::hasPast() const
{
    return m_feedback->hasPast();
}

FilterDescription GPUImageLowPassFilter::describe()
{
    using Self = GPUImageLowPassFilter;
    return filterDescription<Self>("GPUImageLowPassFilter", "blur", 1,
                                   "Evens a stream out over time; a single picture passes",
                                   {filterProperty("filterStrength", &Self::setFilterStrength, kStrength, {0, 1}, "",
                                                   "Share of the past in each frame")});
}

} // namespace lamina
