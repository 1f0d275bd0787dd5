#pragma once

#include <array>
#include <atomic>

namespace lamina {

/// The files that this process is writing at the moment, by an open folder and their names in it, in memory that a
/// signal handler may read: fixed places, each handed over by its state. Usable from any thread.
class UnfinishedNames {
public:
    /// More than a process writes at once: each of them holds a descriptor besides.
    static constexpr int kMost = 1024;
    /// Of a name, its end included.
    static constexpr int kLongestName = 48;

    /// Takes a place for a file that is about to be made; -1 when all are taken, or the files are being removed. The
    /// folder stays open until `leave`.
    static int enter(int folder, const char* name);
    /// The file is there, or could not be made: whoever removes all of them needn't wait for it.
    static void tried(int place);
    static void leave(int place);

    /// Removes the files, and lets no more be made; waits a little for those that are just being made by other threads.
    /// Safe in a signal handler.
    static void removeAll();
    /// Sleeps for a moment where the files were removed because the process is about to end, so that no thread
    /// complains about it on the way.
    static void waitForEnd();

private:
    enum State : int { kFree, kFilling, kMaking, kMade };
    struct Entry {
        std::atomic<int> state{kFree};
        int folder = -1;
        char name[kLongestName] = {};
    };
    static_assert(std::atomic<int>::is_always_lock_free); // or the handler could wait for what it interrupted

    static std::array<Entry, kMost> s_entries;
    static std::atomic<bool> s_isEnding;
};

} // namespace lamina
