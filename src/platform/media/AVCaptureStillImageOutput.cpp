#include "platform/base/DispatchQueue.h"
#include "platform/media/AVCaptureOutput.h"
#include "platform/media/AVCaptureSession.h"
#include "platform/media/ExposureSettling_p.h"

#include <utility>

namespace lamina {

namespace {

constexpr double kPatience = 10; // seconds

} // namespace

AVCaptureStillImageOutput::AVCaptureStillImageOutput() = default;
AVCaptureStillImageOutput::~AVCaptureStillImageOutput() = default;

bool AVCaptureStillImageOutput::isCapturingStillImage() const
{
    const std::scoped_lock lock(m_mutex);
    return m_completion != nullptr;
}

void AVCaptureStillImageOutput::captureStillImageAsynchronously(Completion completion)
{
    int still = 0;
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_completion) {
            const auto nobody = [](const Result<CMSampleBuffer>&) {};
            m_completion = completion ? std::exchange(completion, nullptr) : nobody;
            m_settling = std::make_unique<ExposureSettling>();
            still = ++m_still;
        }
    }
    if (completion)
        return completion(Error{{}, "another still is being taken"});
    const auto self = std::static_pointer_cast<AVCaptureStillImageOutput>(shared_from_this());
    m_queue.async([self, still] {
        const auto from = self->session();
        const Outcome begun = from ? from->beginStill(*self) : Outcome(Error{{}, "the camera isn’t running"});
        if (!begun)
            self->finish(still, begun.error());
    });
    m_queue.after(kPatience, [weak = std::weak_ptr(self), still] {
        if (const auto output = weak.lock())
            output->finish(still, Error{{}, "the camera gives no picture"});
    });
}

void AVCaptureStillImageOutput::take(const CMSampleBuffer& sample, const AVCaptureDevice&)
{
    int still = 0;
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_settling || !m_settling->isSettledWith(sample))
            return;
        m_settling.reset();
        still = m_still;
    }
    const auto self = std::static_pointer_cast<AVCaptureStillImageOutput>(shared_from_this());
    m_queue.async([self, still, sample] { self->finish(still, sample); });
}

void AVCaptureStillImageOutput::ended(const Error& error)
{
    const auto self = std::static_pointer_cast<AVCaptureStillImageOutput>(shared_from_this());
    int still = 0;
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_completion)
            return;
        still = m_still;
    }
    m_queue.async([self, still, error] { self->finish(still, error); });
}

/// On the queue, for the still of that number: the camera goes back first, so that who hears of the still finds it
/// running.
void AVCaptureStillImageOutput::finish(int number, Result<CMSampleBuffer> still)
{
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_completion || m_still != number)
            return;
    }
    if (const auto from = session())
        from->endStill(*this);
    Completion completion;
    {
        const std::scoped_lock lock(m_mutex);
        completion = std::exchange(m_completion, nullptr);
        m_settling.reset();
    }
    if (completion)
        completion(std::move(still));
}

} // namespace lamina
