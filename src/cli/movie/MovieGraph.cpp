#include "cli/movie/MovieGraph.h"

#include "cli/common/ExitCode.h"
#include "cli/common/Messages.h"
#include "cli/filters/FilterDrawing.h"
#include "cli/movie/MovieChain.h"
#include "cli/movie/MovieCut.h"
#include "cli/movie/MovieWriting.h"
#include "gpu/core/DrawingFailures.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFilterPipeline.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/GPUImageMovie.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "gpu/filters/blur/GPUImageLanczosResamplingFilter.h"
#include "gpu/sources/GPUImageRawDataInput.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

namespace {

CGSize pixelsOf(IntSize size)
{
    return {static_cast<double>(size.width), static_cast<double>(size.height)};
}

/// What the filters make of a frame of that size, found by sending one through others like them.
Result<CGSize> sizeBehind(const MovieChain& chain, IntSize size)
{
    const std::vector<std::uint8_t> black(4 * static_cast<std::size_t>(size.width) *
                                          static_cast<std::size_t>(size.height));
    const auto source = std::make_shared<GPUImageRawDataInput>(black, pixelsOf(size));
    const Result<std::unique_ptr<GPUImageFilterPipeline>> pipeline = chain.connect(source);
    if (!pipeline)
        return pipeline.error();
    const auto probe = std::make_shared<GPUImageFilter>();
    (*pipeline)->filters().back()->addTarget(probe);
    source->processData();
    const CGSize found = valueFromVideoProcessingQueue([&] { return probe->sizeOfFBO(); });
    source->removeAllTargets();
    if (found.width < 1 || found.height < 1)
        return Error{chain.names().back(), "gives no picture: not a pixel is left"};
    return found;
}

/// Scales to `size` what has other sides: smooth where it becomes smaller.
std::shared_ptr<GPUImageStage> scaler(CGSize from, CGSize size)
{
    std::shared_ptr<GPUImageStage> stage;
    if (size.width < from.width || size.height < from.height) {
        const auto lanczos = std::make_shared<GPUImageLanczosResamplingFilter>();
        // The window is meant for halves; for less it is taken as much wider.
        constexpr double kHalves = 2;
        lanczos->setOriginalImageSize(
            {std::min(from.width, kHalves * size.width), std::min(from.height, kHalves * size.height)});
        stage = lanczos;
    } else {
        stage = std::make_shared<GPUImageFilter>();
    }
    stage->forceProcessingAtSize(size);
    return stage;
}

/// A movie of which a part is read.
class CutMovie : public GPUImageMovie {
public:
    explicit CutMovie(const MovieJob& job)
        : GPUImageMovie(job.asset)
    {
        setTimeRange(job.range);
    }

protected:
    std::unique_ptr<AVAssetReader> createAssetReader() override
    {
        std::unique_ptr<AVAssetReader> reader = makeCutReader(asset(), timeRange());
        reader->addVideoOutput(CVPixelFormat::BGRA);
        if (audioEncodingTarget())
            reader->addAudioOutput(audioEncodingTarget()->shouldPassthroughAudio());
        return reader;
    }
};

/// What threads of the movie and its writer tell; they may hold it longer than the graph lives.
class ToldProgress : public GPUImageMovieDelegate {
public:
    /// The movie can't be read at all, or not to its end.
    void didFailPlayingMovie(const Error& /*error*/) override { progress.finish(); }

    MovieProgress progress;
};

class MovieGraph {
public:
    MovieGraph(const MovieJob& job, const WritingErrors& errors)
        : m_job(job)
        , m_errors(errors)
        , m_movie(std::make_shared<CutMovie>(job))
    {
    }

    MovieEnd run(const std::function<void(double)>& tell)
    {
        if (const Outcome possible = drawingIsPossible(); !possible)
            return MovieEnd::failed(possible.error(), ExitCode::Failed);
        const IntSize frame = m_job.shownSize();
        if (std::max(frame.width, frame.height) > GPUImageContext::maximumTextureSizeForThisDevice())
            return MovieEnd::failed({m_job.asset->path(), "the device has no textures of this size"}, ExitCode::Input);
        if (const Outcome ready = connect(); !ready)
            return MovieEnd::failed(ready.error(), ExitCode::Failed);
        m_writer->startRecording();
        if (!m_writer->error()) {
            // Whichever of picture and sound comes first: the movie begins where the job does.
            m_writer->assetWriter()->startSessionAtSourceTime(m_job.range.start);
            m_movie->processAsset();
        } else {
            m_told->progress.finish();
        }
        m_told->progress.waitFor(m_job, tell);
        m_movie->cancelProcessing();
        m_movie->setDelegate(nullptr);
        runSynchronouslyOnVideoProcessingQueue([] {}); // behind the frame that is under way
        MovieEnd ended = end();
        m_writer->setCompletionBlock({});
        m_writer->setFailureBlock({});
        m_pipeline.reset();
        letGoAsLast(m_movie);
        letGoAsLast(m_writer); // it is held while its end is told
        return ended;
    }

private:
    Outcome connect()
    {
        Result<std::unique_ptr<GPUImageFilterPipeline>> pipeline = m_job.chain->connect(m_movie);
        if (!pipeline)
            return pipeline.error();
        m_pipeline = std::move(*pipeline);
        const Result<CGSize> size = addScaler();
        if (!size)
            return size.error();
        m_writer = std::make_shared<GPUImageMovieWriter>(
            m_job.output, *size, m_job.fileType,
            GPUImageMovieWriterSettings{m_job.crf, m_job.picture().nominalFrameRate, false, kCMTimeZero});
        if (const std::optional<Error> error = m_writer->error())
            return *error;
        connectWriter();
        return success();
    }

    /// The size of what comes to the writer.
    Result<CGSize> addScaler()
    {
        const IntSize shown = m_job.shownSize();
        Result<CGSize> made = m_job.chain->isEmpty() ? pixelsOf(shown) : sizeBehind(*m_job.chain, shown);
        if (const std::optional<std::string> cause = m_failures.first())
            return noPicture(*cause);
        if (!made)
            return made;
        const CGSize wanted = m_job.size ? pixelsOf(*m_job.size) : *made;
        if (wanted != *made)
            m_pipeline->addFilter(scaler(*made, wanted));
        else if (m_job.chain->isEmpty())
            m_pipeline->addFilter(std::make_shared<GPUImageFilter>()); // which turns it upright
        return wanted;
    }

    void connectWriter()
    {
        if (m_job.sound())
            connectSound(*m_job.sound());
        m_writer->setCompletionBlock([told = m_told] { told->progress.finish(); });
        m_writer->setFailureBlock([told = m_told](const Error&) { told->progress.finish(); });
        GPUImageStage& last = *m_pipeline->filters().back();
        last.setFrameProcessingCompletionBlock(
            [told = m_told](GPUImageOutput&, const CMTime& time) { told->progress.count(time); });
        last.addTarget(m_writer);
        m_movie->setDelegate(m_told);
        m_movie->enableSynchronizedEncodingUsingMovieWriter(m_writer);
    }

    void connectSound(const AVAudioTrack& sound)
    {
        m_writer->setShouldPassthroughAudio(true);
        m_writer->setPassthroughAsset(m_job.asset);
        m_writer->setHasAudioTrack(true, soundSettings(sound));
        m_movie->setAudioEncodingTarget(m_writer);
    }

    Error noPicture(const std::string& cause) const
    {
        return {m_job.chain->isEmpty() ? "--size" : m_job.chain->names().back(), "gives no picture: " + cause};
    }

    MovieEnd end()
    {
        if (const std::optional<std::string> cause = m_failures.first(); cause && !m_writer->error()) {
            m_writer->cancelRecording();
            return MovieEnd::failed(noPicture(*cause), ExitCode::Failed);
        }
        const auto lost = [this] {
            return MovieEnd::failed({m_job.output, "a frame could not be written"}, ExitCode::Output);
        };
        if (m_errors.hasLostPieces() && !m_writer->error() && !m_movie->error()) {
            m_writer->cancelRecording();
            return lost();
        }
        MovieEnd ended = endOf(m_job.asset->path(), m_movie->error(), controlOf(m_writer), m_told->progress);
        // Frames that were on their way until then are written by now.
        return ended.code == ExitCode::Good && m_errors.hasLostPieces() ? lost() : ended;
    }

    const MovieJob& m_job;
    const WritingErrors& m_errors;
    const DrawingFailures m_failures;
    const std::shared_ptr<ToldProgress> m_told = std::make_shared<ToldProgress>();
    std::shared_ptr<GPUImageMovie> m_movie;
    std::unique_ptr<GPUImageFilterPipeline> m_pipeline;
    std::shared_ptr<GPUImageMovieWriter> m_writer;
};

} // namespace

MovieEnd filterMovie(const MovieJob& job, const std::function<void(double)>& tell)
{
    const WritingErrors errors;
    const MovieEnd end = MovieGraph(job, errors).run(tell);
    if (const std::string first = errors.first(); end.code == ExitCode::Good && !first.empty())
        warn({job.output, first});
    return end;
}

} // namespace lamina
