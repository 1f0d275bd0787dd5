#include "platform/media/VideoExport.h"

#include "platform/base/AbandonableWork.h"
#include "platform/base/Causes.h"
#include "platform/base/UIColor.h"
#include "platform/files/FileReading.h"
#include "platform/files/FileWriting.h"
#include "platform/files/ProgramFolder.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PictureOpacity.h"
#include "platform/media/Clip.h"
#include "platform/media/ClipReading_p.h"
#include "platform/media/MediaModule_p.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <variant>

namespace lamina {

namespace {

constexpr int kStillFramesPerSecond = 30;
constexpr int kMostStillFrames = 3600 * kStillFramesPerSecond;

std::int64_t macroblocks(double width, double height)
{
    const auto blocks = [](double side) { return (std::llround(side) + 15) / 16; };
    return blocks(width) * blocks(height);
}

bool fits(double width, double height)
{
    return std::max(width, height) <= kLongestVideoSide && macroblocks(width, height) <= kMostMacroblocks;
}

/// The largest factor up to 1 with which the sides fit, to a hundred-thousandth.
double fittingFactor(double width, double height)
{
    constexpr int kSteps = 100'000;
    int good = 0;
    int bad = kSteps + 1;
    while (bad - good > 1) {
        const int middle = (good + bad) / 2;
        (fits(width * middle / kSteps, height * middle / kSteps) ? good : bad) = middle;
    }
    return static_cast<double>(good) / kSteps;
}

int side(double length)
{
    return std::max(1, static_cast<int>(std::llround(length)));
}

/// Whether the pixels can stay as they are.
bool isPlain(const UIImage& picture, IntSize size)
{
    const CGImage& image = picture.cgImage();
    return picture.imageOrientation() == UIImageOrientation::Up && image.size() == size && hasPlainRows(image);
}

/// On white, upright, in the pixels of the video; empty when memory is short.
CGImage opaquePicture(const UIImage& picture, double scale)
{
    const IntSize size = videoSize(picture.pixelSize(), scale);
    if (isPlain(picture, size))
        return picture.cgImage();
    std::optional<CGContext> context = CGContext::image({double(size.width), double(size.height)}, true, 1);
    if (!context)
        return {};
    const CGRect whole{0, 0, double(size.width), double(size.height)};
    context->setFillColor(UIColor::white());
    context->fillRect(whole);
    drawInRect(picture, *context, whole);
    return context->makeImage();
}

/// The picture as it is encoded; the error's subject is the path.
Result<CGImage> drawPicture(const UIImage& picture, const std::string& path, const VideoExportOptions& options)
{
    if (!picture)
        return Error{path, "there is no picture"};
    const auto draw = [picture, scale = options.scale] { return opaquePicture(picture, scale); };
    const std::optional<CGImage> drawn = doUnlessCancelled(draw, options.cancelled);
    if (!drawn || (options.cancelled && options.cancelled->load()))
        return Error{path, cause::kCancelled};
    return *drawn ? Result<CGImage>(*drawn) : Error{path, cause::kNoMemory};
}

FilmSettings filmSettings(const std::string& path, const VideoExportOptions& options)
{
    return {path, std::clamp(options.crf, 1, 51), options.progress ? &options.progress : nullptr, options.cancelled};
}

/// Writes the film whole or not at all. `source`: what it is made from, of which errors without a subject speak.
template <class Film>
Outcome writeFilm(const std::string& source, const std::string& path, const VideoExportOptions& options,
                  const Film& film)
{
    bool sourceFailed = false;
    Outcome outcome = writeFileAtomically(path, [&](const std::string& descriptorPath) {
        Outcome filled = film(filmSettings(descriptorPath, options));
        sourceFailed = !filled && filled.error().subject.empty() && filled.error().cause != cause::kCancelled;
        return filled;
    });
    if (!outcome)
        return Error{sourceFailed ? source : path, outcome.error().cause};
    if (options.progress)
        options.progress(1);
    return outcome;
}

ClipFile clipFile(const OpenedFile& file, const VideoExportOptions& options)
{
    return {file.descriptor.get(), ClipLimits{}.memoryLimit, {options.cancelled, ClipLimits{}.seconds}};
}

} // namespace

IntSize videoSize(IntSize size, double scale)
{
    const double factor = std::isfinite(scale) && scale > 0 ? scale : 1;
    const double width = size.width * factor;
    const double height = size.height * factor;
    const double reduction = fits(width, height) ? 1 : fittingFactor(width, height);
    return {side(width * reduction), side(height * reduction)};
}

std::string blankAudioFile()
{
    return installedFile("LAMINA_SOUNDS", "../share/lamina/sounds", "Blank Audio.mp3");
}

Outcome writeStillVideo(const StillVideo& still, const std::string& path, const VideoExportOptions& options)
{
    const Result<const MediaModule*> module = mediaModule();
    if (!module)
        return Error{path, module.error().cause};
    const Result<CGImage> drawn = drawPicture(still.picture, path, options);
    if (!drawn)
        return drawn.error();
    const CGImage& picture = *drawn;
    const double frames = std::clamp(still.seconds * kStillFramesPerSecond, 1.0, double(kMostStillFrames));
    StillFilm film{{picture.row(0), picture.bytesPerRow(), picture.size()}, static_cast<int>(std::llround(frames)), {}};
    const auto write = [&](const FilmSettings& settings) { return (*module)->writeStill(film, settings); };
    if (still.soundFile.empty())
        return writeFilm(path, path, options, write);
    const Result<OpenedFile> sound = openFileForReading(still.soundFile);
    if (!sound)
        return sound.error();
    film.sound = clipFile(*sound, options);
    return writeFilm(still.soundFile, path, options, write);
}

Outcome convertVideo(const std::string& clip, const std::string& path, const VideoExportOptions& options)
{
    return withClip<std::monostate>(clip, [&](const MediaModule& module, const OpenedFile& file) {
        return writeFilm(clip, path, options, [&](const FilmSettings& settings) {
            const auto size = [&](IntSize shown) { return videoSize(shown, options.scale); };
            return module.convert(clipFile(file, options), size, settings);
        });
    });
}

} // namespace lamina
