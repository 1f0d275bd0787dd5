#include "platform/media/AVCaptureOutput.h"

#include "platform/base/Causes.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/PixelBufferImage.h"

#include <utility>

namespace lamina {

std::shared_ptr<AVCaptureSession> AVCaptureOutput::session() const
{
    const std::scoped_lock lock(m_sessionMutex);
    return m_session.lock();
}

void AVCaptureDataOutput::setSampleBufferDelegate(std::weak_ptr<AVCaptureSampleBufferDelegate> delegate,
                                                  std::shared_ptr<DispatchQueue> queue)
{
    const std::scoped_lock lock(m_mutex);
    m_delegate = std::move(delegate);
    m_queue = std::move(queue);
}

void AVCaptureDataOutput::take(const CMSampleBuffer& sample, const AVCaptureDevice&)
{
    std::weak_ptr<AVCaptureSampleBufferDelegate> delegate;
    std::shared_ptr<DispatchQueue> queue;
    {
        const std::scoped_lock lock(m_mutex);
        delegate = m_delegate;
        queue = m_queue;
    }
    if (!queue) {
        if (const auto heard = delegate.lock())
            heard->captureOutput(*this, sample);
        return;
    }
    if (m_discardsLate && mediaType() == AVTrackMediaType::Video && *m_waiting > 0)
        return;
    ++*m_waiting;
    queue->async([self = std::static_pointer_cast<AVCaptureDataOutput>(shared_from_this()), delegate, sample,
                  waiting = m_waiting] {
        --*waiting;
        if (const auto heard = delegate.lock())
            heard->captureOutput(*self, sample);
    });
}

const std::vector<CVPixelFormat>& AVCaptureVideoDataOutput::availableVideoPixelFormats()
{
    static const std::vector<CVPixelFormat> formats{CVPixelFormat::BiPlanar420FullRange,
                                                    CVPixelFormat::BiPlanar420VideoRange, CVPixelFormat::BGRA};
    return formats;
}

AVCaptureVideoPreviewOutput::AVCaptureVideoPreviewOutput(PictureHandler handler)
    : m_handler(std::move(handler))
{
}

void AVCaptureVideoPreviewOutput::take(const CMSampleBuffer& sample, const AVCaptureDevice& device)
{
    if (!sample.imageBuffer)
        return;
    const UIImageOrientation orientation =
        orientationOfFrames(device.rotation(), device.position() == AVCaptureDevicePosition::Front);
    if (const UIImage picture(imageOfPixelBuffer(*sample.imageBuffer), 1, orientation); picture)
        m_handler(picture.upright());
}

} // namespace lamina
