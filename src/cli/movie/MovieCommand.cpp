#include "cli/movie/MovieCommand.h"

#include "cli/common/Messages.h"
#include "cli/common/ProgressBar.h"
#include "cli/common/RemainingTime.h"
#include "cli/filters/FilterParsing.h"
#include "cli/movie/MovieCopy.h"
#include "cli/movie/MovieGraph.h"
#include "cli/movie/MovieReport.h"
#include "cli/movie/MovieWriting.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/files/FileURL.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/VideoExport.h"

#include <CLI/Option.hpp>
#include <cmath>
#include <memory>
#include <utility>

namespace lamina {

namespace {

/// In microseconds: nobody types moments more finely.
CMTime timeOf(double seconds)
{
    constexpr int kScale = 1'000'000;
    return CMTime::makeWithSeconds(seconds, kScale);
}

constexpr ValueRange kMoments{0, 360'000}; // a hundred hours

constexpr const char* kFooter =
    R"(Without filters and --size pictures go from the decoder to the encoder as they are, and sound is passed on where
the container takes it. With them every frame is drawn upright by the GPU; so is a turned picture for .mkv, which has no
tag for a turn. Times and the offset of the sound are kept. What is written is H.264, with AAC where sound can't be
passed on.

Examples: lamina movie clip.mov -o clip.mp4
          lamina movie clip.mp4 -o old.mp4 --filter GPUImageSepiaFilter --set intensity=0.8 --filter GPUImageHazeFilter
          lamina movie clip.mp4 -o part.mkv --from 12.5 --to 20 --size 1280x720 --quality medium --mute
          lamina movie clip.mp4 -o film.mp4 --pipeline old-film.json --json)";

} // namespace

MovieCommand::MovieCommand(CLI::App& application)
    : Command(application, "movie", "Convert a movie, through filters if wanted")
{
    options().add_option("IN", m_input, "The movie, of any kind that can be read")->type_name("");
    options()
        .add_option("-o,--output", m_job.output, "File to write: .mp4, .mov or .mkv by its name")
        ->type_name("FILE");
    m_chain.addTo(options());
    const auto moment = checkedBy([](const std::string& text) { return parseNumber(text, kMoments); });
    options().add_option("--from", m_from, "Where to begin, in seconds [0]")->type_name("S")->check(moment);
    options().add_option("--to", m_to, "Where to end, in seconds [the end]")->type_name("S")->check(moment);
    options()
        .add_option("--size", m_sizeText, "Pixels of the output, as it is seen; other proportions stretch the picture")
        ->type_name("WxH");
    options()
        .add_option("--quality", m_quality, "low, medium, high or a number from 0.2 to 1.5 [high]")
        ->type_name("Q");
    options().add_flag("--mute", m_job.isMute, "Leave out the sound");
    options().add_flag("--json", m_json, "Print an object that tells what was written, for programs");
    addQuiet();
    options().footer(kFooter);
}

Outcome MovieCommand::checkRange()
{
    const bool hasEnd = options().get_option("--to")->count() > 0;
    if (hasEnd && m_to <= m_from)
        return Error{"--to", "must be later than where the movie begins"};
    m_job.range.start = timeOf(m_from);
    if (hasEnd)
        m_job.range.duration = timeOf(m_to) - m_job.range.start;
    return success();
}

Outcome MovieCommand::checkSize()
{
    if (m_sizeText.empty())
        return success();
    const Result<IntSize> size = parsePixelSize(m_sizeText);
    if (!size)
        return size.error();
    if (videoSize(*size) != *size)
        return Error{"--size", "a movie has at most " + std::to_string(kMostMacroblocks) +
                                   " blocks of 16 x 16 pixels, as in 3840x2160"};
    m_job.size = *size;
    return success();
}

Outcome MovieCommand::check()
{
    if (m_input.empty())
        return Error{name(), "name a movie"};
    if (m_input == "-")
        return Error{m_input, "a movie is read from a file: name one"};
    if (m_job.output.empty())
        return Error{name(), "--output is required"};
    Result<std::string> fileType = movieFileType(m_job.output);
    if (!fileType)
        return fileType.error();
    m_job.fileType = std::move(*fileType);
    const Result<int> quality = parseMovieQuality(m_quality);
    if (!quality)
        return quality.error();
    m_job.crf = *quality;
    if (Outcome range = checkRange(); !range)
        return range;
    if (Outcome size = checkSize(); !size)
        return size;
    return m_chain.check(options());
}

Outcome MovieCommand::open()
{
    if (Outcome chain = m_chain.read(); !chain)
        return chain;
    m_job.chain = &m_chain;
    Result<std::shared_ptr<const AVURLAsset>> asset = AVURLAsset::make(m_input);
    if (!asset)
        return asset.error();
    m_job.asset = std::move(*asset);
    if (m_job.asset->videoTracks().empty())
        return Error{m_input, "the movie holds no picture"};
    const CMTime duration = m_job.asset->duration();
    if (duration > kCMTimeZero && m_job.range.start >= duration)
        return Error{m_input, "ends before " + formatValue(static_cast<float>(m_from)) + " s"};
    return success();
}

MovieEnd MovieCommand::convert() const
{
    ProgressBar bar(!isQuiet());
    const RemainingTime remaining;
    const auto tell = [&](double done) {
        bar.show(done, [&] {
            const std::string left = remaining.text(done);
            return std::to_string(static_cast<int>(100 * done)) + " %" + (left.empty() ? "" : ", " + left);
        });
    };
    const bool keepsSize = !m_job.size || *m_job.size == m_job.shownSize();
    // Matroska has no tag for a turn.
    const bool keepsTurn =
        m_job.fileType != kAVFileTypeMatroska || m_job.picture().preferredTransform == AVTrackTransform{};
    return m_chain.isEmpty() && keepsSize && keepsTurn ? copyMovie(m_job, tell) : filterMovie(m_job, tell);
}

ExitCode MovieCommand::tell(const MovieEnd& end) const
{
    const Result<MovieReport> report = reportOn(m_job.asset->path(), m_job.output, m_chain.names(), end.frames);
    if (!report)
        return fail(report.error(), ExitCode::Failed);
    if (!isQuiet())
        note(asLine(*report));
    return m_json ? printData(asJson(*report)) : ExitCode::Good;
}

ExitCode MovieCommand::run()
{
    if (const Outcome checked = check(); !checked)
        return fail(checked.error(), ExitCode::Usage);
    if (const Outcome opened = open(); !opened)
        return fail(opened.error(), ExitCode::Input);
    const MovieEnd end = convert();
    return end.code == ExitCode::Good ? tell(end) : fail(end.error, end.code);
}

} // namespace lamina
