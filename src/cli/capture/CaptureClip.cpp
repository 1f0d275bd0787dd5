#include "cli/capture/CaptureClip.h"

#include "cli/capture/FrameGate.h"
#include "cli/common/ExitCode.h"
#include "cli/common/Interruption.h"
#include "cli/filters/FilterDrawing.h"
#include "cli/movie/MovieWriting.h"
#include "gpu/core/DrawingFailures.h"
#include "gpu/core/GPUImageFilterPipeline.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "gpu/endpoints/GPUImageVideoCamera.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/media/AVCaptureDevice.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace lamina {

namespace {

using Clock = std::chrono::steady_clock;

/// Seconds that a camera may take until its first frame.
constexpr double kPatience = 10;
/// Seconds longer than it should take, after which a recording ends even if the camera stands still.
constexpr double kGrace = 2;
constexpr double kPause = 0.1;

/// What the threads of the camera, the graph and the writer tell of a recording; they may hold it longer than that
/// lives.
class RecordingState {
public:
    /// The camera has ended by itself.
    void endByCamera(const Error& error)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_cameraError = error;
        }
        end();
    }
    std::optional<Error> cameraError() const
    {
        const std::lock_guard lock(m_mutex);
        return m_cameraError;
    }
    /// All was recorded, or nothing more can be.
    void end() { m_progress.finish(); }
    bool isOver() const { return m_progress.isOver(); }

    /// A frame is about to be written: false where it is beyond the end, which is told then. One thread at a time.
    bool take(const CMTime& time, double mostSeconds)
    {
        if (m_progress.frames() == 0)
            m_first = time.seconds();
        const double seconds = time.seconds() - m_first;
        const double interval = std::max(0.0, seconds - m_seconds);
        if (seconds + interval / 2 >= mostSeconds && m_progress.frames() > 0) {
            end();
            return false;
        }
        m_seconds = seconds;
        m_progress.count(time);
        if (m_progress.frames() == 1)
            DispatchQueue::main().async([] {}); // wakes who waits
        return true;
    }
    const MovieProgress& progress() const { return m_progress; }
    /// From the first frame to the last.
    double seconds() const { return m_seconds; }

private:
    mutable std::mutex m_mutex;
    std::optional<Error> m_cameraError;
    MovieProgress m_progress;
    double m_first = 0;
    std::atomic<double> m_seconds{0};
};

class ClipCapture {
public:
    ClipCapture(const CaptureJob& job, const WritingErrors& errors)
        : m_job(job)
        , m_errors(errors)
    {
    }

    CapturedClip run(const std::function<void(const CaptureProgress&)>& tell)
    {
        if (std::optional<MovieEnd> stopped = connect())
            return {*std::move(stopped)};
        m_camera->startCameraCapture();
        if (std::optional<MovieEnd> stopped = waitForFrames()) {
            m_camera->stopCameraCapture();
            return {*std::move(stopped)};
        }
        const Interruptions interruptions;
        CapturedClip clip;
        if (const Outcome sound = startWriter(); !sound)
            clip.warnings.push_back(sound.error());
        record(interruptions, tell);
        stop();
        clip.end = end(interruptions);
        clip.dropped = m_errors.droppedFrames();
        if (const std::string first = m_errors.first(); clip.end.code == ExitCode::Good && !first.empty())
            clip.warnings.push_back({m_job.output, first});
        if (clip.end.code == ExitCode::Good)
            clip.cutShort = brokenOff();
        m_pipeline.reset();
        letGoAsLast(m_camera);
        letGoAsLast(m_writer); // it is held while its end is told
        return clip;
    }

private:
    std::optional<MovieEnd> connect()
    {
        if (const Outcome possible = drawingIsPossible(); !possible)
            return MovieEnd::failed(possible.error(), ExitCode::Failed);
        const std::string preset = std::to_string(m_job.size.width) + "x" + std::to_string(m_job.size.height);
        Result<std::shared_ptr<GPUImageVideoCamera>> camera = GPUImageVideoCamera::make(preset, m_job.camera);
        if (!camera)
            return MovieEnd::failed(m_job.ofCamera(camera.error()), ExitCode::Input);
        m_camera = *std::move(camera);
        m_camera->captureSession()->setFrameRate(m_job.frameRate);
        m_camera->followDeviceOrientation();
        m_camera->setEndHandler([state = m_state](const Error& error) { state->endByCamera(error); });
        Result<std::unique_ptr<GPUImageFilterPipeline>> pipeline = m_job.chain->connect(m_camera);
        if (!pipeline)
            return MovieEnd::failed(pipeline.error(), ExitCode::Failed);
        m_pipeline = *std::move(pipeline);
        last().addTarget(m_gate);
        return std::nullopt;
    }

    /// Whatever the writer stands behind.
    GPUImageOutput& last() const
    {
        return m_job.chain->isEmpty() ? static_cast<GPUImageOutput&>(*m_camera) : *m_pipeline->filters().back();
    }

    std::optional<MovieEnd> waitForFrames() const
    {
        const bool come = DispatchQueue::main().runUntil(
            [this] { return m_gate->frameSize().has_value() || m_state->isOver(); }, kPatience);
        if (const std::optional<std::string> cause = m_failures.first())
            return noPicture(*cause);
        const CGSize size = m_gate->frameSize().value_or(CGSize{});
        if (std::optional<Error> error = m_state->cameraError())
            return MovieEnd::failed(m_job.ofCamera(*error), ExitCode::Input);
        if (!come)
            return MovieEnd::failed({m_job.camera->localizedName(), "gives no frames"}, ExitCode::Input);
        return size.width < 1 || size.height < 1 ? std::optional(noPicture("not a pixel is left")) : std::nullopt;
    }

    MovieEnd noPicture(const std::string& cause) const
    {
        return MovieEnd::failed({m_job.drawerName(), "gives no picture: " + cause}, ExitCode::Failed);
    }

    /// A frame can't be had twice: what was recorded before one failed is kept, and nothing is put behind it.
    bool hasFailed() const { return m_failures.first() || m_errors.hasFailedPieces(); }

    /// Why there is less than there should be.
    std::optional<Error> brokenOff() const
    {
        if (const std::optional<std::string> cause = m_failures.first())
            return noPicture(*cause).error;
        if (m_errors.hasFailedPieces())
            return Error{m_job.output, "a frame could not be written"};
        const std::optional<Error> error = m_state->cameraError();
        return error ? std::optional(m_job.ofCamera(*error)) : std::nullopt;
    }

    /// In frames a second; 0: nobody knows.
    double plannedRate() const
    {
        const auto mode = m_job.camera->nearestFormat(m_job.size, m_job.frameRate);
        if (m_job.frameRate <= 0 || !mode || mode->maxFrameRate <= 0)
            return m_job.frameRate;
        return std::clamp(m_job.frameRate, std::min(mode->minFrameRate, mode->maxFrameRate), mode->maxFrameRate);
    }

    /// An error says why there is no sound, where there should be.
    Outcome startWriter()
    {
        m_writer = std::make_shared<GPUImageMovieWriter>(
            m_job.output, *m_gate->frameSize(), m_job.fileType,
            GPUImageMovieWriterSettings{.crf = m_job.crf, .frameRate = plannedRate()});
        m_writer->setFailureBlock([state = m_state](const Error&) { state->end(); });
        Outcome sound = success();
        const std::shared_ptr<AVCaptureDevice> microphone =
            m_job.isMute ? nullptr : AVCaptureDevice::defaultDevice(AVTrackMediaType::Audio);
        m_soundWaits = microphone && m_camera->addAudioInputsAndOutputs();
        if (m_soundWaits)
            m_writer->setHasAudioTrack(true);
        else if (microphone)
            sound = Error{microphone->localizedName(), "can't be opened; the clip has no sound"};
        m_writer->startRecording();
        if (m_writer->error()) {
            m_state->end();
            return sound;
        }
        const double most = m_job.seconds > 0 ? m_job.seconds : std::numeric_limits<double>::infinity();
        runSynchronouslyOnVideoProcessingQueue([&] { // between two frames
            m_gate->setHandler([this, most](const CMTime& time) {
                if (!m_state->isOver() && !hasFailed() && m_state->take(time, most))
                    return;
                m_state->end();
                m_writer->setPaused(true); // this frame, and all sound from here on, is left out
            });
            last().addTarget(m_writer);
        });
        return sound;
    }

    /// Sound that came before the first frame would begin the clip.
    void letSoundFollow()
    {
        if (!m_soundWaits || m_state->progress().frames() == 0)
            return;
        m_soundWaits = false;
        runSynchronouslyOnVideoProcessingQueue([] {}); // behind the frame that is under way
        m_camera->setAudioEncodingTarget(m_writer);
    }

    void record(const Interruptions& interruptions, const std::function<void(const CaptureProgress&)>& tell)
    {
        const Clock::time_point begin = Clock::now();
        const auto isLate = [&] {
            const std::chrono::duration<double> passed = Clock::now() - begin;
            return m_job.seconds > 0 && passed.count() > m_job.seconds + kGrace;
        };
        const auto hasNews = [this] { return m_state->isOver() || (m_soundWaits && m_state->progress().frames() > 0); };
        while (interruptions.count() == 0 && !isLate() && !m_state->isOver() && !hasFailed()) {
            DispatchQueue::main().runUntil(hasNews, kPause);
            letSoundFollow();
            tell({m_state->seconds(), m_state->progress().frames()});
        }
    }

    void stop()
    {
        m_camera->setEndHandler({});
        m_camera->stopCameraCapture();
        runSynchronouslyOnVideoProcessingQueue([] {}); // behind the frame that is under way, which counts
        m_gate->setHandler({});
        m_writer->setFailureBlock({});
    }

    MovieEnd end(const Interruptions& interruptions) const
    {
        const WriterControl writing = controlOf(m_writer);
        const bool isOurs = !m_writer->error();
        const bool hasNothing = m_state->progress().frames() == 0;
        if (const std::optional<std::string> cause = m_failures.first(); cause && isOurs && hasNothing) {
            writing.cancel();
            return noPicture(*cause);
        }
        const auto isUnwanted = [&] { return interruptions.count() > 1; };
        if (isOurs && (isUnwanted() || (hasNothing && interruptions.count() > 0))) {
            writing.cancel();
            return {ExitCode::Interrupted};
        }
        const std::string name = m_job.camera->localizedName();
        const std::optional<Error> reading =
            hasNothing ? m_state->cameraError().value_or(Error{name, "gives no frames"}) : std::optional<Error>();
        MovieEnd ended = endOf(name, reading, writing, m_state->progress(), [&] {
            if (isUnwanted())
                writing.cancel();
        });
        const bool wasCancelled = m_writer->assetWriter()->status() == AVAssetWriterStatus::Cancelled;
        return isUnwanted() && wasCancelled ? MovieEnd{ExitCode::Interrupted} : ended;
    }

    const CaptureJob& m_job;
    const WritingErrors& m_errors;
    const DrawingFailures m_failures;
    const std::shared_ptr<RecordingState> m_state = std::make_shared<RecordingState>();
    const std::shared_ptr<FrameGate> m_gate = std::make_shared<FrameGate>();
    std::shared_ptr<GPUImageVideoCamera> m_camera;
    std::unique_ptr<GPUImageFilterPipeline> m_pipeline;
    std::shared_ptr<GPUImageMovieWriter> m_writer;
    bool m_soundWaits = false; ///< for the first frame
};

} // namespace

CapturedClip captureClip(const CaptureJob& job, const std::function<void(const CaptureProgress&)>& tell)
{
    const WritingErrors errors;
    return ClipCapture(job, errors).run(tell);
}

} // namespace lamina
