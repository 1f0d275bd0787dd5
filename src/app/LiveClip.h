#pragma once

#include "app/LiveChain.h"
#include "app/LiveSource.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace lamina {

class GPUImageMovieWriter;

/// A clip that is being recorded: what comes out of the chain, with the source's sound where it has any. Kept as far as
/// it came, whatever ends it. Main thread.
class LiveClip {
public:
    /// Begins at once, in a new file of the folder for documents. `size`: of the frames, in pixels. `failed` hears on
    /// the main thread, at most once, why nothing more can be written.
    static Result<std::unique_ptr<LiveClip>> begin(std::shared_ptr<LiveChain> chain, std::shared_ptr<LiveSource> source,
                                                   CGSize size, std::function<void(const Error&)> failed);
    /// As `finish`, without a word.
    ~LiveClip();
    LiveClip(const LiveClip&) = delete;
    LiveClip& operator=(const LiveClip&) = delete;

    /// Of a source whose time goes on while it stands still: that is left out.
    void setPaused(bool paused);
    /// Of what was recorded.
    double seconds() const;
    /// Writes it to its end. Told on the main thread: the file; empty where nothing was recorded.
    void finish(std::function<void(const Result<std::string>& path)> done);

private:
    LiveClip(std::shared_ptr<LiveChain> chain, std::shared_ptr<LiveSource> source, std::string path);

    std::shared_ptr<LiveChain> m_chain;
    std::shared_ptr<LiveSource> m_source;
    std::string m_path;
    std::shared_ptr<GPUImageMovieWriter> m_writer;
};

} // namespace lamina
