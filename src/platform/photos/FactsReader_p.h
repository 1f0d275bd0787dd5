#pragma once

#include "platform/photos/FolderWalk_p.h"
#include "platform/photos/index/PhotoRecords.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace lamina {

/// The record of a file as it is now, its header read. What can't be read has no size, and the file's date.
PhotoRecord readRecord(const std::string& folderPath, const ListedFile& file);

/// What is to be read of a file, and then what was.
struct FactsJob {
    std::uint64_t ticket = 0; ///< the caller's
    std::string folderPath;
    ListedFile file;
    PhotoRecord record; ///< `id` and `folder` are the caller's and stay
};

/// Reads the headers of files in two threads of low priority, which are started with the first one; where the system
/// has none to give, in the thread that submits them. All operations are usable from any thread.
class FactsReader {
public:
    /// `wake` is called in a thread that reads when `take` has something.
    explicit FactsReader(std::function<void()> wake);
    ~FactsReader() { stop(); }
    FactsReader(const FactsReader&) = delete;
    FactsReader& operator=(const FactsReader&) = delete;

    void submit(std::vector<FactsJob> jobs);
    /// What has been read since the last time, in no order.
    std::vector<FactsJob> take();
    /// What was submitted and not taken yet.
    std::size_t pending() const;
    /// Ends the threads, each after the file that it is reading. Nothing is read any more. From one thread.
    void stop();

private:
    void startThreads();
    void work();
    /// Reads a batch of those that wait, without the lock meanwhile.
    void readSome(std::unique_lock<std::mutex>& lock);

    const std::function<void()> m_wake;
    mutable std::mutex m_mutex;
    std::condition_variable m_more;
    std::deque<FactsJob> m_waiting;
    std::vector<FactsJob> m_done;
    std::size_t m_reading = 0;
    std::atomic<bool> m_stopped = false;
    std::vector<std::thread> m_threads;
};

/// Makes the calling thread give way to all that a person waits for, at the processor and at the disk.
void lowerThreadPriority();

} // namespace lamina
