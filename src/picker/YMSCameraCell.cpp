#include "picker/YMSCameraCell.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/base/UIDevice.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureOutput.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UIImagePickerController.h"

#include <QPointer>

#include <atomic>
#include <utility>

namespace lamina {

namespace {

constexpr double kSeenThrough = 0.5;
constexpr double kClosed = 1;

} // namespace

YMSCameraCell::YMSCameraCell() = default;

YMSCameraCell::~YMSCameraCell() = default;

std::shared_ptr<AVCaptureSession> YMSCameraCell::session()
{
    const bool open = m_session && !m_session->inputs().empty();
    if (open || AVCaptureDevice::videoAuthorizationStatus() == AVAuthorizationStatus::NotDetermined)
        return m_session;
    m_session = std::make_shared<AVCaptureSession>();
    setVeilAlpha(openCamera() ? kSeenThrough : kClosed);
    return m_session;
}

void YMSCameraCell::closeCamera()
{
    const std::shared_ptr<AVCaptureSession> session = std::exchange(m_session, nullptr);
    if (!session)
        return;
    session->stopRunning();
    for (const auto& input : session->inputs())
        session->removeInput(input); // whoever else holds the session
}

bool YMSCameraCell::openCamera()
{
    const std::shared_ptr<AVCaptureDevice> device = AVCaptureDevice::defaultVideoDevice();
    if (!device)
        return false;
    const Result<std::shared_ptr<AVCaptureDeviceInput>> input = device->makeInput();
    if (!input)
        logWarning(input.error().message());
    if (!input || !m_session->canAddInput(*input))
        return false;
    // While one frame is on its way to this tile the others are left out.
    const auto pending = std::make_shared<std::atomic<bool>>(false);
    m_session->setSessionPreset(kAVCaptureSessionPreset640x480); // enough for the largest tile
    m_session->addOutput(
        std::make_shared<AVCaptureVideoPreviewOutput>([cell = QPointer(this), pending](const UIImage& frame) {
            if (pending->exchange(true))
                return;
            DispatchQueue::main().async([cell, pending, frame] {
                *pending = false;
                if (cell)
                    cell->showFrame(frame);
            });
        }));
    m_session->addInput(*input);
    return true;
}

void YMSCameraCell::showFrame(const UIImage& frame)
{
    m_preview = frame;
    emit previewChanged();
}

void YMSCameraCell::setVeilAlpha(double alpha)
{
    if (std::exchange(m_veilAlpha, alpha) != alpha)
        emit veilAlphaChanged();
}

void YMSCameraCell::updateAvailability()
{
    const bool available = UIImagePickerController::isSourceTypeAvailable(UIImagePickerControllerSourceType::Camera);
    if (std::exchange(m_available, available) != available)
        emit availableChanged();
}

QVariant YMSCameraCell::previewVariant() const
{
    return QVariant::fromValue(m_preview);
}

int YMSCameraCell::previewOrientation() const
{
    const UIDeviceOrientation held = UIDevice::orientation();
    switch (held) {
    case UIDeviceOrientation::PortraitUpsideDown:
    case UIDeviceOrientation::LandscapeLeft:
    case UIDeviceOrientation::LandscapeRight:
        return static_cast<int>(held);
    default:
        return static_cast<int>(UIDeviceOrientation::Portrait);
    }
}

} // namespace lamina
