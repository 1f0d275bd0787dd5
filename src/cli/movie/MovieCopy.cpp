#include "cli/movie/MovieCopy.h"

#include "cli/movie/MovieCut.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/CMSampleBuffer.h"

#include <atomic>
#include <memory>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// A track on its way from the reader to the writer, each on a queue of its own, so that none waits for another.
class TrackCopy {
public:
    TrackCopy(const char* name, std::shared_ptr<AVAssetReaderOutput> output, std::shared_ptr<AVAssetWriterInput> input)
        : m_output(std::move(output))
        , m_input(std::move(input))
        , m_queue(name)
    {
    }

    /// Copies all there is, then calls `ended`; `copied` hears of every piece.
    void start(std::function<void(const CMSampleBuffer&)> copied, std::function<void()> ended)
    {
        m_queue.async([this, copied = std::move(copied), ended = std::move(ended)] {
            while (const std::optional<CMSampleBuffer> piece = m_output->copyNextSampleBuffer()) {
                if (!append(*piece)) {
                    m_isBroken = !m_input->isFinished();
                    break;
                }
                copied(*piece);
            }
            m_input->markAsFinished();
            ended();
        });
    }
    /// A piece could not be written, and those after it were left out. Once it has ended.
    bool isBroken() const { return m_isBroken; }

private:
    bool append(const CMSampleBuffer& piece)
    {
        constexpr double kForEver = 1e9;
        return m_input->waitUntilReady(kForEver) && m_input->appendSampleBuffer(piece);
    }

    std::shared_ptr<AVAssetReaderOutput> m_output;
    std::shared_ptr<AVAssetWriterInput> m_input;
    std::atomic<bool> m_isBroken{false};
    DispatchQueue m_queue; ///< last: its work needs the others
};

class MovieCopy {
public:
    MovieCopy(const MovieJob& job, std::unique_ptr<AVAssetWriter> writer)
        : m_job(job)
        , m_reader(makeCutReader(job.asset, job.range))
        , m_writer(std::move(writer))
    {
    }

    MovieEnd run(const std::function<void(double)>& tell)
    {
        if (const Outcome ready = connectTracks(); !ready)
            return MovieEnd::failed(ready.error(), ExitCode::Failed);
        if (const Outcome reading = m_reader->startReading(); !reading)
            return MovieEnd::failed(reading.error(), ExitCode::Input);
        if (const Outcome writing = m_writer->startWriting(); !writing)
            return MovieEnd::failed(writing.error(), ExitCode::Output);
        m_writer->startSessionAtSourceTime(m_job.range.start);
        m_running = m_sound ? 2 : 1;
        const auto ended = [this] {
            if (--m_running == 0)
                m_progress.finish();
        };
        m_picture->start([this](const CMSampleBuffer& frame) { m_progress.count(frame.presentationTime); }, ended);
        if (m_sound)
            m_sound->start([](const CMSampleBuffer&) {}, ended);
        m_progress.waitFor(m_job, tell);
        return end();
    }

private:
    MovieEnd end()
    {
        const bool isBroken = m_picture->isBroken() || (m_sound && m_sound->isBroken());
        if (isBroken && !m_writer->error() && !m_reader->error()) { // who knows the cause tells it below
            m_writer->cancelWriting();
            return MovieEnd::failed({m_job.output, "a frame could not be written"}, ExitCode::Output);
        }
        const WriterControl writing{
            [this] { return m_writer->error(); }, [this] { m_writer->cancelWriting(); },
            [this](std::function<void()> handler) { m_writer->finishWriting(std::move(handler)); }};
        return endOf(m_job.asset->path(), m_reader->error(), writing, m_progress);
    }

    Outcome connectTracks()
    {
        m_writer->setMovieFragmentInterval(kCMTimeZero);
        const AVVideoTrack& picture = m_job.picture();
        const Result<std::shared_ptr<AVAssetWriterInput>> input =
            m_writer->addVideoInput({picture.naturalSize, m_job.crf, picture.nominalFrameRate});
        if (!input)
            return input.error();
        (*input)->setExpectsMediaDataInRealTime(false);
        (*input)->setTransform(picture.preferredTransform);
        m_picture =
            std::make_unique<TrackCopy>("movie's picture", m_reader->addVideoOutput(CVPixelFormat::AsDecoded), *input);
        return m_job.sound() ? connectSound(*m_job.sound()) : success();
    }

    Outcome connectSound(const AVAudioTrack& sound)
    {
        Result<std::shared_ptr<AVAssetWriterInput>> input = m_writer->addStoredAudioInput(*m_job.asset);
        const bool isStored = input.ok();
        if (!isStored)
            input = m_writer->addAudioInput(soundSettings(sound));
        if (!input)
            return input.error();
        (*input)->setExpectsMediaDataInRealTime(false);
        m_sound = std::make_unique<TrackCopy>("movie's sound", m_reader->addAudioOutput(isStored), *input);
        return success();
    }

    const MovieJob& m_job;
    std::unique_ptr<AVAssetReader> m_reader;
    std::unique_ptr<AVAssetWriter> m_writer;
    MovieProgress m_progress;
    std::atomic<int> m_running{0};
    std::unique_ptr<TrackCopy> m_picture; ///< these end before what they use
    std::unique_ptr<TrackCopy> m_sound;
};

} // namespace

MovieEnd copyMovie(const MovieJob& job, const std::function<void(double)>& tell)
{
    Result<std::unique_ptr<AVAssetWriter>> writer = AVAssetWriter::make(job.output, job.fileType);
    if (!writer)
        return MovieEnd::failed(writer.error(), ExitCode::Failed);
    return MovieCopy(job, std::move(*writer)).run(tell);
}

} // namespace lamina
