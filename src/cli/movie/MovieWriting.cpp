#include "cli/movie/MovieWriting.h"

#include "cli/export/ExportSettings.h"
#include "export/functions/ExportWork.h"
#include "export/functions/MP4Function.h"
#include "platform/files/ASCIICase.h"
#include "platform/media/AVAssetWriter.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <utility>

namespace lamina {

namespace {

struct Container {
    std::string_view extension;
    const char* fileType;
};
constexpr std::array<Container, 3> kContainers{
    {{".mp4", kAVFileTypeMPEG4}, {".mov", kAVFileTypeQuickTimeMovie}, {".mkv", kAVFileTypeMatroska}}};

} // namespace

Result<std::string> movieFileType(const std::string& output)
{
    if (output == "-")
        return Error{output, "a movie is a file: name one"};
    const std::string extension = std::filesystem::path(output).extension().string();
    for (const Container& container : kContainers) {
        if (equalIgnoringCase(container.extension, extension))
            return std::string(container.fileType);
    }
    return Error{output, "the name of the output must end in .mp4, .mov or .mkv"};
}

Result<int> parseMovieQuality(const std::string& text)
{
    const Result<VideoQuality> quality = parseVideoQuality(text);
    if (!quality)
        return Error{"--quality", quality.error().cause + ", not '" + text + "'"};
    return rateFactor(*quality);
}

WriterControl controlOf(const std::shared_ptr<GPUImageMovieWriter>& writer)
{
    return {
        [writer] { return writer->error(); }, [writer] { writer->cancelRecording(); },
        [writer](std::function<void()> handler) { writer->finishRecordingWithCompletionHandler(std::move(handler)); }};
}

WritingErrors::WritingErrors()
{
    m_usual = setLogSink([this](LogLevel level, std::string_view text) { take(level, text); });
}

WritingErrors::~WritingErrors()
{
    setLogSink(std::move(m_usual));
}

void WritingErrors::take(LogLevel level, std::string_view text)
{
    const std::lock_guard lock(m_mutex);
    if (level == LogLevel::Error && m_first.empty())
        m_first = text;
    // Of these the writer only warns.
    const auto tells = [&](std::string_view what) { return text.find(what) != std::string_view::npos; };
    if (tells("Had to drop a video frame"))
        ++m_droppedFrames;
    if (tells("Had to drop an audio frame"))
        ++m_droppedSounds;
    if (tells("Problem appending"))
        m_hasFailedPieces = true;
}

std::string WritingErrors::first() const
{
    const std::lock_guard lock(m_mutex);
    return m_first;
}

int WritingErrors::droppedFrames() const
{
    const std::lock_guard lock(m_mutex);
    return m_droppedFrames;
}

int WritingErrors::droppedSounds() const
{
    const std::lock_guard lock(m_mutex);
    return m_droppedSounds;
}

bool WritingErrors::hasFailedPieces() const
{
    const std::lock_guard lock(m_mutex);
    return m_hasFailedPieces;
}

bool WritingErrors::hasLostPieces() const
{
    return hasFailedPieces() || droppedFrames() + droppedSounds() > 0;
}

} // namespace lamina
