#include "gpu/endpoints/GPUImageMovie.h"

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/MoviePlayerLink.h"
#include "gpu/endpoints/YUVConversion.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Log.h"
#include "platform/media/AVPlayerItem.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// Quarters clockwise after a mirroring, as a rotation of inputs.
GPUImageRotationMode rotationFor(const AVTrackTransform& transform)
{
    static constexpr GPUImageRotationMode kPlain[] = {kGPUImageNoRotation, kGPUImageRotateRight, kGPUImageRotate180,
                                                      kGPUImageRotateLeft};
    // In these names the flip comes before the turn.
    static constexpr GPUImageRotationMode kMirrored[] = {kGPUImageFlipHorizontal, kGPUImageRotateRightFlipHorizontal,
                                                         kGPUImageFlipVertical, kGPUImageRotateRightFlipVertical};
    const int quarters = transform.quarters & 3;
    return transform.mirrors ? kMirrored[quarters] : kPlain[quarters];
}

} // namespace

GPUImageMovie::GPUImageMovie()
    : m_upload(kColorConversionMatrix601)
{
}

GPUImageMovie::GPUImageMovie(std::string url)
    : GPUImageMovie()
{
    m_url = std::move(url);
}

GPUImageMovie::GPUImageMovie(std::shared_ptr<const AVURLAsset> asset)
    : GPUImageMovie()
{
    m_asset = std::move(asset);
}

GPUImageMovie::GPUImageMovie(std::shared_ptr<AVPlayerItem> playerItem)
    : GPUImageMovie()
{
    m_playerItem = std::move(playerItem);
}

GPUImageMovie::~GPUImageMovie()
{
    stopReading();
    GPUImageOutput::removeAllTargets();
}

void GPUImageMovie::setDelegate(const std::shared_ptr<GPUImageMovieDelegate>& delegate)
{
    const std::scoped_lock lock(m_mutex);
    m_delegate = delegate;
}

void GPUImageMovie::setConvertsOnDevice(bool convertsOnDevice)
{
    m_convertsOnDevice = convertsOnDevice;
    if (convertsOnDevice)
        yuvConversionSetup();
}

void GPUImageMovie::enableSynchronizedEncodingUsingMovieWriter(std::shared_ptr<GPUImageSynchronizedWriter> writer)
{
    m_synchronizedMovieWriter = std::move(writer);
}

/// Null where a pass runs already or, for one that is to follow another, where that was ended meanwhile.
GPUImageMovie::StopFlag GPUImageMovie::beginPass(const StopFlag& before)
{
    std::shared_ptr<AVAssetReader> former; // ends without the lock
    const std::scoped_lock lock(m_mutex);
    const bool isOver = before && (before != m_stop || *before);
    if (isOver || m_isProcessing.exchange(true))
        return nullptr;
    m_keepLooping = m_shouldRepeat && !m_synchronizedMovieWriter;
    former.swap(m_reader);
    m_error.reset();
    m_hasEnded = false;
    m_stop = std::make_shared<std::atomic<bool>>(false);
    return m_stop;
}

void GPUImageMovie::startProcessing()
{
    if (m_playerItem) {
        processPlayerItem();
        return;
    }
    submitPass(beginPass());
}

void GPUImageMovie::submitPass(const StopFlag& stop)
{
    if (!stop)
        return;
    const auto self = std::static_pointer_cast<GPUImageMovie>(shared_from_this());
    m_readingQueue.async([self, stop] { self->readPass(stop); });
}

void GPUImageMovie::processAsset()
{
    const StopFlag stop = beginPass();
    if (isOnVideoProcessingQueue())
        return submitPass(stop); // each frame waits for this queue
    if (stop)
        m_readingQueue.sync([&] { readPass(stop); }); // after a pass that winds up
}

Outcome GPUImageMovie::prepareToRead(const std::atomic<bool>& stopped)
{
    std::shared_ptr<const AVURLAsset> asset = this->asset();
    if (!asset) {
        auto made = AVURLAsset::make(m_url, &stopped);
        if (!made)
            return made.error();
        asset = *made;
        const std::scoped_lock lock(m_mutex);
        m_asset = asset;
    }
    return checkDevice(asset->videoTracks().empty() ? IntSize{} : asset->videoTracks().front().naturalSize,
                       asset->path());
}

Outcome GPUImageMovie::checkDevice(IntSize frame, const std::string& subject)
{
    if (Outcome available = GPUImageContext::availability(); !available)
        return available;
    if (std::max(frame.width, frame.height) > GPUImageContext::maximumTextureSizeForThisDevice())
        return Error{subject, "the device has no textures of this size"};
    return success();
}

std::unique_ptr<AVAssetReader> GPUImageMovie::createAssetReader()
{
    const std::shared_ptr<const AVURLAsset> asset = this->asset();
    if (!asset)
        return nullptr;
    std::unique_ptr<AVAssetReader> reader = AVAssetReader::make(asset);
    if (!reader)
        return nullptr;
    reader->addVideoOutput(wantedFormat(*asset));
    if (audioEncodingTarget() && !asset->audioTracks().empty())
        reader->addAudioOutput(wantsStoredAudio());
    return reader;
}

bool GPUImageMovie::wantsStoredAudio() const
{
    return audioEncodingTarget() && audioEncodingTarget()->shouldPassthroughAudio();
}

/// Planes keep the levels in which they are stored.
CVPixelFormat GPUImageMovie::wantedFormat(const AVURLAsset& asset) const
{
    if (!m_convertsOnDevice)
        return CVPixelFormat::BGRA;
    const bool isFullRange = !asset.videoTracks().empty() && asset.videoTracks().front().isFullRange;
    return isFullRange ? CVPixelFormat::BiPlanar420FullRange : CVPixelFormat::BiPlanar420VideoRange;
}

std::optional<GPUImageRotationMode> GPUImageMovie::rotation() const
{
    const std::shared_ptr<const AVURLAsset> asset = this->asset();
    if (!asset || asset->videoTracks().empty())
        return std::nullopt;
    const AVTrackTransform transform = asset->videoTracks().front().preferredTransform;
    return transform == AVTrackTransform{} ? std::nullopt : std::optional(rotationFor(transform));
}

CMTime GPUImageMovie::duration() const
{
    const std::shared_ptr<const AVURLAsset> asset = this->asset();
    return asset ? asset->duration() : kCMTimeZero;
}

double GPUImageMovie::progress() const
{
    const std::shared_ptr<AVAssetReader> reader = this->reader();
    const AVAssetReaderStatus status = reader ? reader->status() : AVAssetReaderStatus::Unknown;
    if (status == AVAssetReaderStatus::Completed)
        return 1;
    if (status != AVAssetReaderStatus::Reading)
        return 0;
    const double start = m_timeRange.start.seconds();
    const double rest = duration().seconds() - start;
    const double asked = m_timeRange.duration.isNumeric() ? m_timeRange.duration.seconds() : rest;
    const double length = std::min(asked, rest);
    return length > 0 ? std::clamp((processingFrameTime().seconds() - start) / length, 0.0, 1.0) : 0;
}

void GPUImageMovie::stopReading()
{
    std::shared_ptr<AVAssetReader> reader;
    std::shared_ptr<MoviePlayerLink> playerLink; // ends without the lock
    {
        const std::scoped_lock lock(m_mutex);
        if (m_stop)
            *m_stop = true;
        reader = m_reader;
        playerLink.swap(m_playerLink);
    }
    if (reader && reader->status() == AVAssetReaderStatus::Reading)
        reader->cancelReading();
    m_pacing.wake();
}

void GPUImageMovie::endProcessing()
{
    m_keepLooping = false;
    {
        const std::scoped_lock lock(m_mutex); // at once, or a repeat might begin in between
        if (m_hasEnded.exchange(true))
            return;
        if (m_stop)
            *m_stop = true;
    }
    stopReading();
    // A frame that is under way goes before; those that come after see that it is over.
    runSynchronouslyOnVideoProcessingQueue([this] {
        const std::vector<Target> targets = targetList();
        for (const Target& target : targets)
            target.input->endProcessing();
    });
    if (m_synchronizedMovieWriter) {
        m_synchronizedMovieWriter->setVideoInputReadyCallback([] { return false; });
        m_synchronizedMovieWriter->setAudioInputReadyCallback([] { return false; });
    }
    m_isProcessing = false;
    const std::shared_ptr<GPUImageMovieDelegate> delegate = this->delegate();
    setDelegate(nullptr);
    if (delegate)
        delegate->didCompletePlayingMovie();
}

void GPUImageMovie::cancelProcessing()
{
    endProcessing();
}

void GPUImageMovie::failToStart(const Error& error)
{
    logError("Error reading from file at URL: " + error.message());
    rememberError(error);
    m_keepLooping = false;
    m_isProcessing = false;
    if (const std::shared_ptr<GPUImageMovieDelegate> delegate = this->delegate())
        delegate->didFailPlayingMovie(error);
}

void GPUImageMovie::fail(const Error& error)
{
    rememberError(error);
    if (const std::shared_ptr<GPUImageMovieDelegate> delegate = this->delegate())
        delegate->didFailPlayingMovie(error);
    else
        logError(error.message());
}

void GPUImageMovie::rememberError(const Error& error)
{
    const std::scoped_lock lock(m_mutex);
    m_error = error;
}

bool GPUImageMovie::isStopped() const
{
    const std::scoped_lock lock(m_mutex);
    return m_passStop && *m_passStop;
}

std::shared_ptr<const AVURLAsset> GPUImageMovie::asset() const
{
    const std::scoped_lock lock(m_mutex);
    return m_asset;
}

std::string GPUImageMovie::path() const
{
    const std::shared_ptr<const AVURLAsset> asset = this->asset();
    return asset ? asset->path() : m_url;
}

std::shared_ptr<AVAssetReader> GPUImageMovie::reader() const
{
    const std::scoped_lock lock(m_mutex);
    return m_reader;
}

std::shared_ptr<AVAssetReaderOutput> GPUImageMovie::output(AVTrackMediaType type) const
{
    const std::shared_ptr<AVAssetReader> reader = this->reader();
    if (!reader)
        return nullptr;
    const auto& outputs = reader->outputs();
    const auto found = std::ranges::find(outputs, type, &AVAssetReaderOutput::mediaType);
    return found == outputs.end() ? nullptr : *found;
}

std::shared_ptr<GPUImageMovieDelegate> GPUImageMovie::delegate() const
{
    const std::scoped_lock lock(m_mutex);
    return m_delegate.lock();
}

std::optional<Error> GPUImageMovie::error() const
{
    const std::scoped_lock lock(m_mutex);
    return m_error;
}

CMTime GPUImageMovie::processingFrameTime() const
{
    const std::scoped_lock lock(m_mutex);
    return m_processingFrameTime;
}

} // namespace lamina
