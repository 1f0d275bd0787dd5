#include "platform/media/capture/CaptureDevice_p.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVCaptureTypes.h"
#include "platform/media/CMSampleBuffer.h"

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

constexpr std::int32_t kNanoseconds = 1'000'000'000;

const char* goneCause(AVTrackMediaType type)
{
    return type == AVTrackMediaType::Video ? "the camera was unplugged" : "the microphone was unplugged";
}

} // namespace

CaptureDevice::CaptureDevice(CaptureNode node)
    : m_node(std::move(node))
{
}

CaptureNode CaptureDevice::node() const
{
    const std::scoped_lock lock(m_mutex);
    return m_node;
}

std::shared_ptr<CaptureConnection> CaptureDevice::connection() const
{
    const std::scoped_lock lock(m_mutex);
    return m_connection.lock();
}

void CaptureDevice::update(CaptureNode node, const std::shared_ptr<CaptureConnection>& connection)
{
    const std::scoped_lock lock(m_mutex);
    m_node = std::move(node);
    m_connection = connection;
}

std::string CaptureDevice::uniqueID() const
{
    return told(&CaptureNode::uniqueID);
}

std::string CaptureDevice::localizedName() const
{
    return told(&CaptureNode::name);
}

AVTrackMediaType CaptureDevice::mediaType() const
{
    return told(&CaptureNode::type);
}

AVCaptureDevicePosition CaptureDevice::position() const
{
    return told(&CaptureNode::position);
}

int CaptureDevice::rotation() const
{
    return told(&CaptureNode::rotation);
}

std::vector<AVCaptureDeviceFormat> CaptureDevice::formats() const
{
    return told(&CaptureNode::formats);
}

Result<std::shared_ptr<AVCaptureDeviceInput>> CaptureDevice::makeInput()
{
    if (!connection())
        return Error{localizedName(), goneCause(mediaType())};
    return std::shared_ptr<AVCaptureDeviceInput>(
        std::make_shared<CaptureDeviceInput>(std::static_pointer_cast<CaptureDevice>(shared_from_this())));
}

CaptureDeviceInput::CaptureDeviceInput(std::shared_ptr<CaptureDevice> device)
    : AVCaptureDeviceInput(device)
    , m_source(std::move(device))
{
}

CaptureDeviceInput::~CaptureDeviceInput()
{
    stop();
}

void CaptureDeviceInput::start(const AVCaptureRequest& request, AVCaptureHandlers handlers)
{
    {
        const std::scoped_lock handling(m_handling);
        m_handlers = std::move(handlers);
        m_pixelFormat = request.pixelFormat;
    }
    m_connection = m_source->connection();
    const CaptureNode node = m_source->node();
    if (!m_connection)
        return end({node.name, goneCause(node.type)});
    CaptureStreamRequest wanted{node.id, m_source->nearestFormat(request.size, request.frameRate), request.size,
                                request.frameRate};
    // None of these is called any more once the stream is closed, which this outlives.
    m_stream = m_connection->open(
        wanted, {[this](const RawFrame& frame, std::int64_t time) { return takeFrame(frame, time); },
                 [this](std::shared_ptr<AudioBuffer> sound, std::int64_t time) { takeSound(std::move(sound), time); },
                 [this](const Error& error) { end(error); }});
}

void CaptureDeviceInput::stop()
{
    {
        const std::scoped_lock handling(m_handling);
        m_handlers = {};
    }
    m_stream.reset();
    m_connection.reset();
}

bool CaptureDeviceInput::takeFrame(const RawFrame& frame, std::int64_t nanoseconds)
{
    const std::scoped_lock handling(m_handling);
    if (!m_handlers.sample)
        return true;
    CMSampleBuffer sample;
    sample.presentationTime = CMTime::make(nanoseconds, kNanoseconds);
    sample.imageBuffer = m_converter.converted(frame, m_pixelFormat);
    if (!sample.imageBuffer)
        return false;
    m_handlers.sample(sample);
    return true;
}

void CaptureDeviceInput::takeSound(std::shared_ptr<AudioBuffer> sound, std::int64_t nanoseconds)
{
    const std::scoped_lock handling(m_handling);
    if (!m_handlers.sample)
        return;
    CMSampleBuffer sample;
    sample.presentationTime = CMTime::make(nanoseconds, kNanoseconds);
    sample.duration = CMTime::make(sound->sampleCount(), sound->sampleRate);
    sample.audio = std::move(sound);
    m_handlers.sample(sample);
}

void CaptureDeviceInput::end(const Error& error)
{
    const std::scoped_lock handling(m_handling);
    const auto ended = std::exchange(m_handlers, {}).ended;
    if (ended)
        ended(error);
}

} // namespace lamina
