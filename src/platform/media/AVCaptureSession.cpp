#include "platform/media/AVCaptureSession.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/media/AVAssetReader.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace lamina {

namespace {

/// Whether a camera would give the same for both.
bool isTheSame(const AVCaptureDevice& device, AVCaptureRequest one, const AVCaptureRequest& other)
{
    if (const auto mode = device.nearestFormat(one.size, one.frameRate);
        mode && mode == device.nearestFormat(other.size, other.frameRate))
        one.size = other.size;
    return one == other;
}

bool isForStills(const AVCaptureOutput& output)
{
    return dynamic_cast<const AVCaptureStillImageOutput*>(&output) != nullptr;
}

} // namespace

/// An input, and how it runs. Started and stopped under the configuration's mutex; what is said to be belongs to the
/// other.
struct AVCaptureSession::Running {
    std::shared_ptr<AVCaptureDeviceInput> input;
    bool isStarted = false;
    bool hasEnded = false;                        ///< the other's
    const AVCaptureOutput* stillOutput = nullptr; ///< for whose still it was started, if any; the other's
    AVCaptureRequest request;

    AVTrackMediaType type() const { return input->device()->mediaType(); }
};

AVCaptureSession::AVCaptureSession() = default;

AVCaptureSession::~AVCaptureSession()
{
    stopRunning();
}

std::vector<std::shared_ptr<AVCaptureDeviceInput>> AVCaptureSession::inputs() const
{
    const std::scoped_lock lock(m_mutex);
    std::vector<std::shared_ptr<AVCaptureDeviceInput>> all;
    for (const auto& running : m_inputs)
        all.push_back(running->input);
    return all;
}

std::vector<std::shared_ptr<AVCaptureOutput>> AVCaptureSession::outputs() const
{
    const std::scoped_lock lock(m_mutex);
    return m_outputs;
}

bool AVCaptureSession::canAddInput(const std::shared_ptr<AVCaptureDeviceInput>& input) const
{
    const std::scoped_lock lock(m_mutex);
    return input && std::ranges::none_of(m_inputs, [&](const auto& running) {
               return running->input == input || running->type() == input->device()->mediaType();
           });
}

void AVCaptureSession::addInput(std::shared_ptr<AVCaptureDeviceInput> input)
{
    const std::scoped_lock configuration(m_configurationMutex);
    if (!canAddInput(input))
        return;
    const auto running = std::make_shared<Running>();
    running->input = std::move(input);
    {
        const std::scoped_lock lock(m_mutex);
        m_inputs.push_back(running);
    }
    applyChanges();
}

void AVCaptureSession::removeInput(const std::shared_ptr<AVCaptureDeviceInput>& input)
{
    const std::scoped_lock configuration(m_configurationMutex);
    std::shared_ptr<Running> removed;
    {
        const std::scoped_lock lock(m_mutex);
        const auto found = std::ranges::find_if(m_inputs, [&](const auto& each) { return each->input == input; });
        if (found == m_inputs.end())
            return;
        removed = *found;
        m_inputs.erase(found);
        m_running = m_running && !m_inputs.empty();
    }
    if (removed->isStarted)
        removed->input->stop();
}

bool AVCaptureSession::canAddOutput(const std::shared_ptr<AVCaptureOutput>& output) const
{
    return output && !output->session();
}

void AVCaptureSession::addOutput(std::shared_ptr<AVCaptureOutput> output)
{
    const std::scoped_lock configuration(m_configurationMutex);
    if (!canAddOutput(output))
        return;
    {
        const std::scoped_lock lock(output->m_sessionMutex);
        output->m_session = weak_from_this();
    }
    {
        const std::scoped_lock lock(m_mutex);
        m_outputs.push_back(std::move(output));
    }
    applyChanges();
}

void AVCaptureSession::removeOutput(const std::shared_ptr<AVCaptureOutput>& output)
{
    const std::scoped_lock configuration(m_configurationMutex);
    {
        const std::scoped_lock lock(m_mutex);
        if (std::erase(m_outputs, output) == 0)
            return;
        if (m_stillOutput == output.get())
            m_stillOutput = nullptr;
    }
    {
        const std::scoped_lock lock(output->m_sessionMutex);
        output->m_session.reset();
    }
    output->ended({{}, cause::kCancelled});
    applyChanges();
}

std::string AVCaptureSession::sessionPreset() const
{
    const std::scoped_lock lock(m_mutex);
    return m_preset;
}

void AVCaptureSession::setSessionPreset(const std::string& preset)
{
    const std::scoped_lock configuration(m_configurationMutex);
    {
        const std::scoped_lock lock(m_mutex);
        m_preset = preset;
    }
    applyChanges();
}

double AVCaptureSession::frameRate() const
{
    const std::scoped_lock lock(m_mutex);
    return m_frameRate;
}

void AVCaptureSession::setFrameRate(double framesPerSecond)
{
    const std::scoped_lock configuration(m_configurationMutex);
    {
        const std::scoped_lock lock(m_mutex);
        m_frameRate = framesPerSecond;
    }
    applyChanges();
}

void AVCaptureSession::beginConfiguration()
{
    const std::scoped_lock configuration(m_configurationMutex);
    ++m_configurations;
}

void AVCaptureSession::commitConfiguration()
{
    const std::scoped_lock configuration(m_configurationMutex);
    m_configurations = std::max(m_configurations - 1, 0);
    applyChanges();
}

bool AVCaptureSession::isRunning() const
{
    const std::scoped_lock lock(m_mutex);
    return m_running;
}

void AVCaptureSession::setEndHandler(EndHandler handler)
{
    const std::scoped_lock lock(m_mutex);
    m_endHandler = std::move(handler);
}

void AVCaptureSession::startRunning()
{
    const std::scoped_lock configuration(m_configurationMutex);
    {
        const std::scoped_lock lock(m_mutex);
        if (m_running || m_inputs.empty())
            return;
        m_running = true;
    }
    applyChanges();
}

void AVCaptureSession::stopRunning()
{
    const std::scoped_lock configuration(m_configurationMutex);
    std::vector<std::shared_ptr<Running>> all;
    {
        const std::scoped_lock lock(m_mutex);
        m_running = false;
        all = m_inputs;
    }
    for (const auto& running : all) {
        if (std::exchange(running->isStarted, false))
            running->input->stop();
    }
    for (const auto& output : outputs())
        output->ended({{}, cause::kCancelled});
}

/// Starts what should run and doesn't, and what has to give something else.
void AVCaptureSession::applyChanges()
{
    if (m_configurations > 0 || !isRunning())
        return;
    std::vector<std::pair<std::shared_ptr<Running>, bool>> all;
    {
        const std::scoped_lock lock(m_mutex);
        for (const auto& running : m_inputs)
            all.emplace_back(running, std::exchange(running->hasEnded, false));
    }
    for (const auto& [running, hadEnded] : all) {
        const AVCaptureRequest request = requestFor(*running->input);
        const bool goesOn =
            running->isStarted && !hadEnded && isTheSame(*running->input->device(), running->request, request);
        if (running->isStarted && !goesOn)
            running->input->stop();
        {
            const std::scoped_lock lock(m_mutex);
            running->stillOutput = m_stillOutput;
        }
        if (!goesOn)
            start(*running, request);
    }
}

AVCaptureRequest AVCaptureSession::requestFor(const AVCaptureDeviceInput& input) const
{
    const std::scoped_lock lock(m_mutex);
    AVCaptureRequest request;
    if (input.device()->mediaType() != AVTrackMediaType::Video)
        return request;
    // Those that get frames now come first.
    const bool takesStill = m_stillOutput != nullptr;
    for (const bool forStills : {!takesStill, takesStill}) {
        for (const auto& output : std::views::reverse(m_outputs)) {
            if (isForStills(*output) == forStills)
                request.pixelFormat = output->pixelFormat().value_or(request.pixelFormat);
        }
    }
    request.frameRate = m_frameRate;
    if (takesStill)
        return request;
    request.size = sizeOfCaptureSessionPreset(m_preset);
    if (request.size == IntSize())
        request.size = sizeOfCaptureSessionPreset(kAVCaptureSessionPresetHigh);
    return request;
}

void AVCaptureSession::start(Running& running, const AVCaptureRequest& request)
{
    running.isStarted = true;
    running.request = request;
    // None of these is called any more once the input has been stopped, which this outlives.
    running.input->start(request, {[this, &running](const CMSampleBuffer& sample) { deliver(running, sample); },
                                   [this, input = std::weak_ptr(running.input)](const Error& error) {
                                       if (const auto ended = input.lock())
                                           inputEnded(ended, error);
                                   }});
}

/// A frame of what the camera has been before it goes over to a still, or comes back, is nobody's.
void AVCaptureSession::deliver(const Running& running, const CMSampleBuffer& sample)
{
    const AVTrackMediaType type = running.type();
    std::vector<std::shared_ptr<AVCaptureOutput>> heard;
    {
        const std::scoped_lock lock(m_mutex);
        if (type == AVTrackMediaType::Video && running.stillOutput != m_stillOutput)
            return;
        for (const auto& output : m_outputs) {
            if (output->mediaType() == type && (type == AVTrackMediaType::Audio || output.get() == m_stillOutput ||
                                                (!m_stillOutput && !isForStills(*output))))
                heard.push_back(output);
        }
    }
    for (const auto& output : heard)
        output->take(sample, *running.input->device());
}

void AVCaptureSession::inputEnded(const std::shared_ptr<AVCaptureDeviceInput>& input, const Error& error)
{
    EndHandler handler;
    {
        const std::scoped_lock lock(m_mutex);
        for (const auto& running : m_inputs) {
            if (running->input == input)
                running->hasEnded = true;
        }
        m_running = false;
        handler = m_endHandler;
    }
    for (const auto& output : outputs())
        output->ended(error);
    if (handler)
        handler(error);
}

Outcome AVCaptureSession::beginStill(const AVCaptureOutput& output)
{
    const std::scoped_lock configuration(m_configurationMutex);
    {
        const std::scoped_lock lock(m_mutex);
        const bool hasCamera = std::ranges::any_of(
            m_inputs, [](const auto& running) { return running->type() == AVTrackMediaType::Video; });
        const bool isOurs = std::ranges::any_of(m_outputs, [&](const auto& each) { return each.get() == &output; });
        if (!m_running || !hasCamera || !isOurs)
            return Error{{}, "the camera isn’t running"};
        if (m_stillOutput)
            return Error{{}, "another still is being taken"};
        m_stillOutput = &output;
    }
    applyChanges();
    return success();
}

void AVCaptureSession::endStill(const AVCaptureOutput& output)
{
    const std::scoped_lock configuration(m_configurationMutex);
    {
        const std::scoped_lock lock(m_mutex);
        if (m_stillOutput == &output)
            m_stillOutput = nullptr;
    }
    applyChanges();
}

} // namespace lamina
