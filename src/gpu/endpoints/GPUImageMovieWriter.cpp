#include "gpu/endpoints/GPUImageMovieWriter.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/Log.h"
#include "platform/gl/EAGLContext.h"

#include <utility>

namespace lamina {

namespace {

/// Null where the graph has no context.
std::shared_ptr<EAGLSharegroup> sharegroupOfTheGraph()
{
    return valueFromVideoProcessingQueue([]() -> std::shared_ptr<EAGLSharegroup> {
        EAGLContext* shared = GPUImageContext::sharedImageProcessingContext().context();
        return shared ? shared->sharegroup() : nullptr;
    });
}

} // namespace

GPUImageMovieWriter::GPUImageMovieWriter(const std::string& path, CGSize size)
    : GPUImageMovieWriter(path, size, kAVFileTypeQuickTimeMovie)
{
}

GPUImageMovieWriter::GPUImageMovieWriter(const std::string& path, CGSize size, const std::string& fileType,
                                         const GPUImageMovieWriterSettings& outputSettings)
    : m_path(path)
    , m_fileType(fileType)
    , m_videoSize(GPUImageFramebuffer::wholePixels(size))
    , m_movieWriterContext(std::make_unique<GPUImageContext>())
    , m_encodingLiveVideo(outputSettings.encodingLiveVideo)
{
    m_movieWriterContext->useSharegroup(sharegroupOfTheGraph());
    Outcome readable = success();
    runSynchronouslyOnContextQueue(*m_movieWriterContext, [&] {
        m_readback = std::make_unique<FrameReadback>(*m_movieWriterContext, m_videoSize);
        readable = m_readback->availability();
    });
    if (readable)
        initializeMovieWithOutputSettings(outputSettings);
    else
        fail(readable.error());
}

GPUImageMovieWriter::~GPUImageMovieWriter()
{
    stopTaking();
    if (m_assetWriter)
        m_assetWriter->cancelWriting();
    runSynchronouslyOnContextQueue(*m_movieWriterContext, [this] { m_readback.reset(); });
}

void GPUImageMovieWriter::initializeMovieWithOutputSettings(const GPUImageMovieWriterSettings& settings)
{
    m_isRecording = false;
    m_enabled = true;
    if (m_videoSize.isEmpty())
        return fail({m_path, "a movie has at least one pixel"});
    Result<std::unique_ptr<AVAssetWriter>> made = AVAssetWriter::make(m_path, m_fileType);
    if (!made)
        return fail(made.error());
    m_assetWriter = std::move(*made);
    m_assetWriter->setMovieFragmentInterval(settings.movieFragmentInterval);
    Result<std::shared_ptr<AVAssetWriterInput>> input =
        m_assetWriter->addVideoInput({.size = m_videoSize, .crf = settings.crf, .frameRate = settings.frameRate});
    if (!input)
        return fail(input.error());
    m_video.input = std::move(*input);
    m_video.input->setExpectsMediaDataInRealTime(m_encodingLiveVideo);
}

void GPUImageMovieWriter::fail(const Error& error)
{
    logError("Error: " + error.message());
    {
        const std::scoped_lock lock(m_callbacksMutex);
        if (!m_error)
            m_error = error;
    }
    stopTaking();
    tellFailure(error);
}

void GPUImageMovieWriter::tellFailure(const Error& error)
{
    if (m_failureTold.exchange(true))
        return;
    // Whoever is told may stop the source, for which nobody may wait who keeps the writer's queue busy.
    runAsynchronouslyOnVideoProcessingQueue([weak = weak_from_this(), error] {
        const auto self = weak.lock();
        if (!self)
            return;
        if (const auto block = self->guarded(self->m_failureBlock))
            block(error);
        else if (const auto delegate = self->guarded(self->m_delegate).lock())
            delegate->movieRecordingFailedWithError(error);
    });
}

std::optional<Error> GPUImageMovieWriter::error() const
{
    std::optional<Error> own = guarded(m_error);
    return own || !m_assetWriter ? own : m_assetWriter->error();
}

void GPUImageMovieWriter::startRecording()
{
    m_alreadyFinishedRecording = false;
    m_failureTold = false;
    m_times.prepare();
    if (const std::optional<Error> known = error())
        return tellFailure(*known);
    runSynchronouslyOnContextQueue(*m_movieWriterContext, [this] {
        if (!isPulled(m_audio))
            startWriting();
        const AVAssetWriterStatus status = m_assetWriter->status();
        m_isRecording = status == AVAssetWriterStatus::Unknown || status == AVAssetWriterStatus::Writing;
        if (!m_isRecording && !guarded(m_error))
            fail({m_path, "a movie is recorded once"});
    });
}

void GPUImageMovieWriter::startRecordingInOrientation(const AVTrackTransform& orientation)
{
    setTransform(orientation);
    startRecording();
}

/// On the writer's queue.
void GPUImageMovieWriter::startWriting()
{
    if (m_assetWriter->status() != AVAssetWriterStatus::Unknown)
        return;
    if (const Outcome started = m_assetWriter->startWriting(); !started)
        fail(started.error());
}

/// False when it doesn't record any more.
bool GPUImageMovieWriter::startSession(const CMTime& time, const Track& track)
{
    if (m_times.hasStarted())
        return true;
    runSynchronouslyOnContextQueue(*m_movieWriterContext, [&] {
        if (!m_isRecording || m_times.hasStarted())
            return;
        if (!isPulled(track))
            startWriting();
        m_assetWriter->startSessionAtSourceTime(time);
        m_times.start(time);
    });
    return m_isRecording;
}

/// From any thread; whoever waits for the writer waits no longer.
void GPUImageMovieWriter::stopTaking()
{
    const std::scoped_lock lock(m_roomMutex);
    m_isRecording = false;
    m_roomChanged.notify_all();
}

/// Later, unless the writer has gone by then; its end waits for the block that runs.
void GPUImageMovieWriter::runOnWriterQueue(DispatchQueue::Block block)
{
    runAsynchronouslyOnContextQueue(*m_movieWriterContext, [weak = weak_from_this(), block = std::move(block)] {
        if (!weak.expired())
            block();
    });
}

void GPUImageMovieWriter::cancelRecording()
{
    if (!m_assetWriter || m_assetWriter->status() == AVAssetWriterStatus::Completed)
        return;
    stopTaking();
    runSynchronouslyOnContextQueue(*m_movieWriterContext, [this] {
        m_alreadyFinishedRecording = true;
        markAsFinished(m_video);
        markAsFinished(m_audio);
        m_assetWriter->cancelWriting();
    });
}

void GPUImageMovieWriter::finishRecordingWithCompletionHandler(std::function<void()> handler)
{
    bool isOver = false;
    runSynchronouslyOnContextQueue(*m_movieWriterContext, [&] {
        stopTaking();
        isOver = !m_isFinishing && (!m_assetWriter || m_assetWriter->status() != AVAssetWriterStatus::Writing);
        if (isOver)
            return;
        m_finishHandlers.push_back(std::move(handler));
        if (std::exchange(m_isFinishing, true))
            return;
        markAsFinished(m_video);
        markAsFinished(m_audio);
        m_assetWriter->finishWriting([self = shared_from_this()] { self->finished(); });
    });
    if (isOver && handler)
        handler(); // not on the writer's queue, for which it may wait
}

/// On a thread of the platform's.
void GPUImageMovieWriter::finished()
{
    if (const std::optional<Error> failure = m_assetWriter->error())
        fail(*failure);
    std::vector<std::function<void()>> handlers;
    runSynchronouslyOnContextQueue(*m_movieWriterContext, [&] {
        m_isFinishing = false;
        handlers.swap(m_finishHandlers);
    });
    for (const std::function<void()>& handler : handlers) {
        if (handler)
            handler();
    }
}

/// On the writer's queue.
void GPUImageMovieWriter::markAsFinished(Track& track)
{
    if (!track.input || track.encodingIsFinished || m_assetWriter->status() != AVAssetWriterStatus::Writing)
        return;
    track.encodingIsFinished = true;
    track.input->markAsFinished();
}

void GPUImageMovieWriter::setEncodingLiveVideo(bool live)
{
    m_encodingLiveVideo = live;
    tellPace();
}

void GPUImageMovieWriter::tellPace()
{
    if (m_isRecording)
        return;
    for (const Track* track : {&m_video, &m_audio}) {
        if (track->input)
            track->input->setExpectsMediaDataInRealTime(isLive());
    }
}

std::map<std::string, std::string> GPUImageMovieWriter::metaData() const
{
    return m_assetWriter ? m_assetWriter->metadata() : std::map<std::string, std::string>();
}

void GPUImageMovieWriter::setMetaData(const std::map<std::string, std::string>& metaData)
{
    if (m_assetWriter)
        m_assetWriter->setMetadata(metaData);
}

AVTrackTransform GPUImageMovieWriter::transform() const
{
    return m_video.input ? m_video.input->transform() : AVTrackTransform{};
}

void GPUImageMovieWriter::setTransform(const AVTrackTransform& transform)
{
    if (m_video.input)
        m_video.input->setTransform(transform);
}

void GPUImageMovieWriter::setCompletionBlock(std::function<void()> block)
{
    runSynchronouslyOnVideoProcessingQueue([&] { exchangeGuarded(m_completionBlock, block); });
}

void GPUImageMovieWriter::setFailureBlock(std::function<void(const Error&)> block)
{
    runSynchronouslyOnVideoProcessingQueue([&] { exchangeGuarded(m_failureBlock, block); });
}

void GPUImageMovieWriter::setDelegate(const std::weak_ptr<GPUImageMovieWriterDelegate>& delegate)
{
    std::weak_ptr<GPUImageMovieWriterDelegate> value = delegate;
    exchangeGuarded(m_delegate, value);
}

void GPUImageMovieWriter::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int)
{
    m_firstInputFramebuffer.take(std::move(framebuffer));
}

/// A source that is removed takes along what nobody counts.
void GPUImageMovieWriter::setInputSize(CGSize size, int)
{
    if (size == CGSize{})
        m_firstInputFramebuffer.reset();
}

void GPUImageMovieWriter::setInputRotation(GPUImageRotationMode rotation, int)
{
    m_inputRotation = rotation;
}

CGSize GPUImageMovieWriter::maximumOutputSize() const
{
    return {static_cast<double>(m_videoSize.width), static_cast<double>(m_videoSize.height)};
}

void GPUImageMovieWriter::endProcessing()
{
    if (const auto block = guarded(m_completionBlock)) {
        if (!m_alreadyFinishedRecording.exchange(true))
            block();
    } else if (const auto delegate = guarded(m_delegate).lock()) {
        delegate->movieRecordingCompleted();
    }
}

} // namespace lamina
