#include "platform/media/AVCaptureSession.h"

#include <algorithm>
#include <utility>

namespace lamina {

AVCaptureSession::~AVCaptureSession()
{
    stopRunning();
}

bool AVCaptureSession::canAddInput(const std::shared_ptr<AVCaptureDeviceInput>& input) const
{
    return input && std::ranges::find(m_inputs, input) == m_inputs.end();
}

void AVCaptureSession::addInput(std::shared_ptr<AVCaptureDeviceInput> input)
{
    if (!canAddInput(input))
        return;
    m_inputs.push_back(std::move(input));
    if (m_running)
        m_inputs.back()->start(m_frameHandler);
}

void AVCaptureSession::startRunning()
{
    if (m_running || m_inputs.empty())
        return;
    m_running = true;
    for (const auto& input : m_inputs)
        input->start(m_frameHandler);
}

void AVCaptureSession::stopRunning()
{
    if (!std::exchange(m_running, false))
        return;
    for (const auto& input : m_inputs)
        input->stop();
}

} // namespace lamina
