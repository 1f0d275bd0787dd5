#include "app/LiveCamera.h"

#include "gpu/core/GPUImageOutput.h"
#include "gpu/endpoints/GPUImageVideoCamera.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/media/AVCaptureTypes.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace lamina {

namespace {

std::int64_t pixels(IntSize size)
{
    return std::int64_t{size.width} * size.height;
}

} // namespace

LiveCamera::~LiveCamera()
{
    stop();
}

/// The one that was chosen last, else one that looks away from who holds the device, else any.
std::shared_ptr<AVCaptureDevice> LiveCamera::device() const
{
    if (!m_device.empty())
        if (auto chosen = AVCaptureDevice::deviceWithUniqueID(m_device))
            return chosen;
    auto back = AVCaptureDevice::defaultVideoDevice(AVCaptureDevicePosition::Back);
    return back ? back : AVCaptureDevice::defaultVideoDevice();
}

Outcome LiveCamera::start()
{
    if (m_camera)
        return success();
    const auto found = device();
    if (!found)
        return Error{{}, QT_TRANSLATE_NOOP("Lamina", "there is no camera")};
    auto made = GPUImageStillCamera::make(kAVCaptureSessionPreset1280x720, found);
    if (!made)
        return made.error();
    m_camera = *std::move(made);
    m_device = found->uniqueID();
    frames().expectFirst();
    m_camera->addTarget(sharedFrames());
    m_camera->followDeviceOrientation();
    m_camera->setEndHandler([weak = weak_from_this(), camera = m_camera.get()](const Error& error) {
        DispatchQueue::main().async([weak, camera, error] {
            const auto self = std::static_pointer_cast<LiveCamera>(weak.lock());
            if (!self || self->m_camera.get() != camera)
                return; // another one runs by now
            self->stop();
            self->tellEnd(error);
        });
    });
    if (m_recorder)
        m_camera->setAudioEncodingTarget(m_recorder);
    m_camera->startCameraCapture();
    return success();
}

void LiveCamera::stop()
{
    const auto camera = std::exchange(m_camera, nullptr);
    if (!camera)
        return;
    camera->setEndHandler({});
    camera->stopCameraCapture();
    if (m_recorder)
        camera->setAudioEncodingTarget(nullptr);
    camera->removeAllTargets();
}

bool LiveCamera::hasSound() const
{
    return AVCaptureDevice::defaultDevice(AVTrackMediaType::Audio) != nullptr;
}

void LiveCamera::setRecorder(std::shared_ptr<GPUImageAudioEncodingTarget> recorder)
{
    m_recorder = hasSound() || !recorder ? std::move(recorder) : nullptr;
    if (m_camera)
        m_camera->setAudioEncodingTarget(m_recorder);
}

bool LiveCamera::hasAnother()
{
    return AVCaptureDevice::devices().size() > 1;
}

void LiveCamera::chooseAnother()
{
    const auto all = AVCaptureDevice::devices();
    const auto present = device();
    if (all.empty() || !present)
        return;
    const auto found = std::ranges::find(all, present->uniqueID(), &AVCaptureDevice::uniqueID);
    const auto next = found == all.end() ? 0 : static_cast<std::size_t>(found - all.begin() + 1);
    m_device = all[next % all.size()]->uniqueID();
}

bool LiveCamera::takesLargerStills() const
{
    const auto device = m_camera ? m_camera->inputCamera() : nullptr;
    const auto formats = device ? device->formats() : std::vector<AVCaptureDeviceFormat>();
    const CGSize frame = frames().size();
    return !formats.empty() && static_cast<double>(pixels(formats.front().size)) > frame.width * frame.height;
}

void LiveCamera::takeStill(const std::shared_ptr<GPUImageOutput>& last,
                           std::function<void(const Result<UIImage>&)> done)
{
    if (m_camera)
        m_camera->capturePhotoAsImageProcessedUpToFilter(last, UIImageOrientation::Up, std::move(done));
}

} // namespace lamina
