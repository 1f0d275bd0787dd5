#pragma once

#include "cli/movie/MovieJob.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace lamina {

/// The type of file that the name of a movie's output asks for, in any case of letters. The error's subject is the
/// name.
Result<std::string> movieFileType(const std::string& output);

/// The value of `--quality` as x264's measure of loss.
Result<int> parseMovieQuality(const std::string& text);

/// The end of a graph's writer.
WriterControl controlOf(const std::shared_ptr<GPUImageMovieWriter>& writer);

/// Waits until no other thread holds it any more, a decoder that hangs for some seconds, and lets go of it: what a
/// movie consists of ends here, not while the process does.
template <class Part>
void letGoAsLast(std::shared_ptr<Part>& part)
{
    constexpr std::chrono::milliseconds kPause{1};
    constexpr int kMostPauses = 5000;
    for (int pauses = 0; part.use_count() > 1 && pauses < kMostPauses; ++pauses)
        std::this_thread::sleep_for(kPause);
    part.reset();
}

/// Takes the place of the log while a movie is written: what fails is told by the command, and only what nobody else
/// tells of is kept. One at a time.
class WritingErrors {
public:
    WritingErrors();
    ~WritingErrors();
    WritingErrors(const WritingErrors&) = delete;
    WritingErrors& operator=(const WritingErrors&) = delete;

    /// Empty where all was well.
    std::string first() const;
    /// How many frames came when there was no room for them, as in a live recording they may.
    int droppedFrames() const;
    /// The same of pieces of sound.
    int droppedSounds() const;
    /// Something that was to be written was not.
    bool hasFailedPieces() const;
    /// Any of these: nothing of a movie that can be made again may be missing.
    bool hasLostPieces() const;

private:
    void take(LogLevel level, std::string_view text);

    LogSink m_usual;
    mutable std::mutex m_mutex; ///< for what follows
    std::string m_first;
    int m_droppedFrames = 0;
    int m_droppedSounds = 0;
    bool m_hasFailedPieces = false;
};

} // namespace lamina
