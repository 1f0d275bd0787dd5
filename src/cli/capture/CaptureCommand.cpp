#include "cli/capture/CaptureCommand.h"

#include "cli/capture/CaptureDevices.h"
#include "cli/capture/CaptureStill.h"
#include "cli/capture/CaptureTexts.h"
#include "cli/common/Messages.h"
#include "cli/common/PictureOutput.h"
#include "cli/common/ProgressBar.h"
#include "cli/filters/FilterParsing.h"
#include "cli/movie/MovieReport.h"
#include "cli/movie/MovieWriting.h"
#include "gpu/core/TypedValue.h"
#include "platform/base/CGGeometry.h"
#include "platform/media/AVCaptureDevice.h"

#include <CLI/Option.hpp>
#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <variant>

namespace lamina {

namespace {

constexpr ValueRange kSeconds{0.1, 360'000}; // a hundred hours
constexpr ValueRange kRates{1, 1000};

constexpr const char* kFooter =
    R"(The name of the output says what is captured: a picture is a still in the camera's largest size, taken once its
exposure has settled; .mp4, .mov and .mkv are clips, with the sound of the microphone where there is one. Both are upright,
and mirrored where the camera looks at you. Cameras are those that PipeWire knows.

A clip ends with --for, or with Ctrl+C, which keeps it; a second Ctrl+C leaves nothing. Where the camera is unplugged
meanwhile, the clip up to there is kept and the exit code is 1.

Examples: lamina capture --list
          lamina capture -o me.jpg --camera front --filter GPUImageSepiaFilter
          lamina capture -o clip.mp4 --for 10 --size 640x480 --rate 30 --mute
          lamina capture -o - | lamina op horizontalFlip -i - -o flipped.png)";

/// "12.3 s".
std::string secondsText(double seconds)
{
    constexpr double kTenths = 10;
    return formatValue(static_cast<float>(std::floor(seconds * kTenths) / kTenths)) + " s";
}

} // namespace

CaptureCommand::CaptureCommand(CLI::App& application)
    : Command(application, "capture", "Take a still or a clip with a camera, through filters if wanted")
{
    options().add_flag("--list", m_lists, "List the cameras with their modes, and the microphones");
    options()
        .add_option("--camera", m_camera, "Name or ID of a camera, front or back [the system's first]")
        ->type_name("NAME");
    m_chain.addTo(options());
    addClipOptions();
    options()
        .add_option("-o,--output", m_job.output,
                    "File to write: .mp4, .mov or .mkv for a clip; a picture's name for a still, - is PNG on standard "
                    "output")
        ->type_name("FILE");
    options().add_flag("--json", m_json, "Print the list, or an object that tells what was written, for programs");
    addQuiet();
    options().footer(kFooter);
}

void CaptureCommand::addClipOptions()
{
    const auto number = [](const ValueRange& range) {
        return checkedBy([range](const std::string& text) { return parseNumber(text, range); });
    };
    m_clipOptions = {
        options()
            .add_option("--size", m_sizeText,
                        "Clips: pixels of the camera's frames before they are turned; the nearest mode is taken "
                        "[1280x720]")
            ->type_name("WxH"),
        options()
            .add_option("--rate", m_rate, "Clips: frames a second, the nearest that the camera has [its own]")
            ->type_name("N")
            ->check(number(kRates)),
        options()
            .add_option("--for", m_job.seconds, "Clips: how long, in seconds [until Ctrl+C]")
            ->type_name("SECONDS")
            ->check(number(kSeconds)),
        options()
            .add_option("--quality", m_quality, "Clips: low, medium, high or a number from 0.2 to 1.5 [high]")
            ->type_name("Q"),
        options().add_flag("--mute", m_job.isMute, "Clips: leave out the sound"),
    };
}

Outcome CaptureCommand::checkListing() const
{
    for (const CLI::Option* option : options().parse_order()) {
        const std::string name = option->get_name();
        if (name != "--list" && name != "--json" && name != "--quiet")
            return Error{"--list", "only lists; leave out " + name};
    }
    return success();
}

Outcome CaptureCommand::checkOutput()
{
    if (m_job.output.empty())
        return Error{name(), "--output is required, or --list"};
    if (const Result<std::string> fileType = movieFileType(m_job.output))
        m_job.fileType = *fileType;
    else if (!checkOutputName(m_job.output))
        return Error{m_job.output, "the name of the output must end in .mp4, .mov or .mkv for a clip, or in " +
                                       outputExtensions() + " for a still"};
    if (m_job.output == "-" && m_json)
        return Error{"--json", "goes to standard output, as the picture would; name a file for the picture"};
    return success();
}

Outcome CaptureCommand::checkClip()
{
    if (!m_job.isClip()) {
        const auto given =
            std::ranges::find_if(m_clipOptions, [](const CLI::Option* each) { return each->count() > 0; });
        return given == m_clipOptions.end() ? success() : Outcome(Error{(*given)->get_name(), "is for clips"});
    }
    const Result<int> quality = parseMovieQuality(m_quality);
    if (!quality)
        return quality.error();
    m_job.crf = *quality;
    m_job.frameRate = m_rate;
    if (m_sizeText.empty())
        return success();
    const Result<IntSize> size = parsePixelSize(m_sizeText);
    if (!size)
        return size.error();
    m_job.size = *size;
    return success();
}

Outcome CaptureCommand::check()
{
    if (m_lists)
        return checkListing();
    if (Outcome output = checkOutput(); !output)
        return output;
    if (Outcome clip = checkClip(); !clip)
        return clip;
    return m_chain.check(options());
}

ExitCode CaptureCommand::list() const
{
    if (const Outcome found = findCaptureDevices(); !found)
        warn(found.error());
    return printData(m_json ? captureDevicesAsJson() : captureDevicesAsText());
}

ExitCode CaptureCommand::run()
{
    if (const Outcome checked = check(); !checked)
        return fail(checked.error(), ExitCode::Usage);
    if (m_lists)
        return list();
    if (const Outcome writable = checkOutputPlace(m_job.output); !writable)
        return fail(writable.error(), ExitCode::Output);
    if (const Outcome chain = m_chain.read(); !chain)
        return fail(chain.error(), ExitCode::Input);
    m_job.chain = &m_chain;
    if (const Outcome found = findCaptureDevices(); !found)
        return fail(found.error(), ExitCode::Input);
    Result<std::shared_ptr<AVCaptureDevice>> camera = cameraNamed(m_camera);
    if (!camera)
        return fail(camera.error(), ExitCode::Input);
    m_job.camera = *std::move(camera);
    return m_job.isClip() ? recordClip() : takeStill();
}

ExitCode CaptureCommand::takeStill()
{
    const CapturedStill still = captureStill(m_job);
    if (still.code != ExitCode::Good)
        return fail(still.error, still.code);
    const ExitCode delivered = deliverPicture(still.picture, m_job.output, isQuiet());
    if (delivered != ExitCode::Good || !m_json)
        return delivered;
    return printData(stillAsJson(m_job, still.picture.pixelSize()));
}

ExitCode CaptureCommand::recordClip()
{
    CapturedClip clip;
    {
        ProgressBar bar(!isQuiet());
        clip = captureClip(m_job, [&](const CaptureProgress& progress) {
            const std::string seconds = secondsText(progress.seconds);
            if (m_job.seconds > 0)
                bar.show(progress.seconds / m_job.seconds,
                         [&] { return seconds + " of " + secondsText(m_job.seconds); });
            else
                bar.show(
                    [&] { return seconds + ", " + std::to_string(progress.frames) + " frames; Ctrl+C ends the clip"; });
        });
    }
    for (const Error& warning : clip.warnings)
        warn(warning);
    if (clip.end.code == ExitCode::Interrupted)
        return ExitCode::Interrupted;
    return clip.end.code == ExitCode::Good ? tell(clip) : fail(clip.end.error, clip.end.code);
}

ExitCode CaptureCommand::tell(const CapturedClip& clip) const
{
    Result<MovieReport> report =
        reportOn(m_job.camera->localizedName(), m_job.output, m_chain.names(), clip.end.frames);
    if (!report)
        return fail(report.error(), ExitCode::Failed);
    report->dropped = clip.dropped;
    report->frames -= clip.dropped;
    if (!isQuiet())
        note(asLine(*report));
    if (m_json) {
        if (const ExitCode printed = printData(asJson(*report)); printed != ExitCode::Good)
            return printed;
    }
    if (!clip.cutShort)
        return ExitCode::Good;
    return fail({clip.cutShort->subject, clip.cutShort->cause + "; what was recorded until then is in " + m_job.output},
                ExitCode::Failed);
}

} // namespace lamina
