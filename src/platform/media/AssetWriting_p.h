#pragma once

#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/files/GrowingFile.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVAssetWriter.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/MovieWriting_p.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// The work of a writer and its inputs. One thread encodes what waits; it keeps this object alive, so that whoever
/// cancels needn't wait for a frame that is being encoded. From any thread.
class AssetWriting : public std::enable_shared_from_this<AssetWriting> {
public:
    AssetWriting(std::string path, const char* container, const MediaModule& module,
                 std::unique_ptr<MovieWriting> movie);

    void setFragmentSeconds(double seconds) { m_settings.fragmentSeconds = seconds; }
    void setMetadata(const std::map<std::string, std::string>& metadata) { m_settings.metadata = metadata; }
    const std::map<std::string, std::string>& metadata() const { return m_settings.metadata; }
    /// Adds an input for the track that `add` makes of the movie; its number.
    Result<std::size_t> addInput(AVTrackMediaType type, const std::function<Outcome(MovieWriting& movie)>& add);

    Outcome start();
    void startSession(const CMTime& time);
    AVAssetWriterStatus status() const;
    std::optional<Error> error() const;
    void cancel();
    void finish(std::function<void()> handler);

    AVTrackMediaType mediaType(std::size_t input) const { return m_inputs[input].type; }
    MovieWriting::TrackKind kind(std::size_t input) const;
    void setKind(std::size_t input, const MovieWriting::TrackKind& kind);
    bool isReady(std::size_t input) const;
    bool waitUntilReady(std::size_t input, double seconds);
    bool append(std::size_t input, const CMSampleBuffer& piece);
    void end(std::size_t input);
    bool isEnded(std::size_t input) const;
    void request(std::size_t input, DispatchQueue& queue, std::function<void()> block);

private:
    struct Input {
        AVTrackMediaType type;
        MovieWriting::TrackKind kind;
        std::deque<CMSampleBuffer> waiting;
        bool isEnded = false;   ///< nothing is appended any more
        bool isDrained = false; ///< and the encoder knows
        bool isIdle = false;    ///< the others don't wait for it
        double reached = 0;     ///< where its pieces stand, in seconds of the movie
        std::uint64_t appended = 0;
        DispatchQueue* queue = nullptr; ///< for the block below
        std::function<void()> block;
        bool isAsked = false; ///< the block is on its way
    };
    /// What the thread does next: takes a piece of an input, tells its end, or, without an input, ends the movie.
    struct Step {
        std::optional<std::size_t> input;
        std::optional<CMSampleBuffer> piece;
    };
    using Lock = std::unique_lock<std::mutex>;

    bool isWriting() const { return m_status == AVAssetWriterStatus::Writing; }
    bool isReady(const Input& input) const;
    bool isRecording() const { return m_settings.fragmentSeconds > 0; }
    Outcome makeFile();
    void run();
    Outcome writeAll();
    std::optional<Step> nextStep(Lock& lock);
    std::optional<std::size_t> earliest() const;
    Input* laggingBehind(std::size_t first);
    Step take(std::size_t input);
    Outcome finishMovie();
    Outcome rewrite();
    Outcome takeName(GrowingFile& file);
    void conclude(const Outcome& outcome);
    std::string keepRecording();
    void ask(std::size_t input);
    void askAll();
    void runBlock(std::size_t input);
    void releaseInputs(Lock& lock);

    const std::string m_path;
    const MediaModule& m_module;
    const std::unique_ptr<MovieWriting> m_movie; ///< of the thread, once there is one
    FilmSettings m_settings;
    std::atomic<bool> m_cancelled = false;

    mutable std::mutex m_mutex;
    std::condition_variable m_work;  ///< for the thread
    std::condition_variable m_ready; ///< for those who append
    std::condition_variable m_ended;
    AVAssetWriterStatus m_status = AVAssetWriterStatus::Unknown;
    std::optional<Error> m_error;
    std::vector<Input> m_inputs;
    std::optional<CMTime> m_start;
    std::unique_ptr<GrowingFile> m_file;
    bool m_runs = false; ///< the thread is there
    bool m_finishes = false;
    std::function<void()> m_handler;
};

} // namespace lamina
