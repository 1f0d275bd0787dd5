#pragma once

#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/thumbnails/FileStamp.h"

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace lamina {

/// Thumbnails on disk: a JPEG file each, for the owner alone, named by its photo's stamp in one of 256 folders, and
/// sealed with a checksum over file and stamp, so that what is damaged, cut short, of another photo or not ours is
/// never shown. Bounded: the least used ones go. Several processes may use one folder. Where nothing can be written the
/// application goes on without. All operations from any thread; they take the time of a small file.
class ThumbnailStore {
public:
    static constexpr std::int64_t kMostBytes = std::int64_t{300} << 20;

    /// The folder is made with the first thumbnail. Empty: nothing is kept.
    explicit ThumbnailStore(std::string folder, std::int64_t mostBytes = kMostBytes);

    /// The thumbnail of the file with this stamp, reduced on the way as `DecodeOptions::shortSide` says; empty when
    /// there is none. One that is found counts as used now.
    UIImage find(const FileStamp& file, int shortSide) const;
    /// Keeps an opaque, upright picture, in place of one that is there. True when so much was written, or nobody knows
    /// how much is there, that `trim` should be called when there is time.
    bool keep(const FileStamp& file, const UIImage& thumbnail);
    /// Looks through the folder, and removes the least used files where it holds too much.
    void trim() const;

private:
    std::string pathFor(const FileStamp& file) const;
    Outcome write(const std::string& path, const std::vector<std::uint8_t>& bytes) const;
    bool mayWrite();
    bool isMuchSinceTrimming(std::int64_t bytes);
    void couldNotWrite(const Error& error);

    const std::string m_folder;
    const std::int64_t m_mostBytes;
    std::mutex m_mutex;
    std::int64_t m_untrimmed; ///< bytes written since the folder was looked through
    std::chrono::steady_clock::time_point m_pausedUntil;
    bool m_told = false; ///< that nothing can be written
};

} // namespace lamina
