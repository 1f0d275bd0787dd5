#include "platform/photos/FactsReader_p.h"

#include "platform/base/Result.h"
#include "platform/image/codecs/PictureFacts.h"

#include <algorithm>
#include <iterator>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

constexpr int kThreads = 2;
/// Files that a thread takes at once, so that the two seldom wait for each other.
constexpr std::size_t kBatch = 32;

} // namespace

void lowerThreadPriority()
{
    constexpr int kNice = 10;
    constexpr int kWhoThread = 1;                    // IOPRIO_WHO_PROCESS, which is one thread
    constexpr int kLowestBestEffort = (2 << 13) | 7; // IOPRIO_CLASS_BE, its last level
    const auto thread = static_cast<id_t>(gettid());
    setpriority(PRIO_PROCESS, thread, kNice);
    syscall(SYS_ioprio_set, kWhoThread, thread, kLowestBestEffort);
}

PhotoRecord readRecord(const std::string& folderPath, const ListedFile& file)
{
    constexpr double kNanosecond = 1e-9;
    PhotoRecord record{.name = file.name,
                       .key = file.key,
                       .modified = file.modified,
                       .bytes = file.bytes,
                       .date = static_cast<double>(file.modified) * kNanosecond};
    const std::string path = pathIn(folderPath, file.name);
    if (const Result<PictureFacts> facts = readPictureFacts(path)) {
        record.width = facts->width;
        record.height = facts->height;
        record.date = facts->date.value_or(record.date);
        record.hasFacts = true;
    } else {
        // One that may not be read now is tried again with the next walk.
        record.hasFacts = access(path.c_str(), R_OK) == 0;
    }
    return record;
}

FactsReader::FactsReader(std::function<void()> wake)
    : m_wake(std::move(wake))
{
}

void FactsReader::submit(std::vector<FactsJob> jobs)
{
    std::unique_lock lock(m_mutex);
    std::ranges::move(jobs, std::back_inserter(m_waiting));
    startThreads();
    m_more.notify_all();
    while (m_threads.empty() && !m_stopped && !m_waiting.empty())
        readSome(lock);
}

void FactsReader::startThreads()
{
    try {
        while (m_threads.size() < kThreads && !m_stopped)
            m_threads.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        // The system has no more to give: one is enough, and without any the caller reads.
    }
}

std::vector<FactsJob> FactsReader::take()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_done, {});
}

std::size_t FactsReader::pending() const
{
    const std::lock_guard lock(m_mutex);
    return m_waiting.size() + m_reading + m_done.size();
}

void FactsReader::stop()
{
    std::vector<std::thread> threads;
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
        threads.swap(m_threads);
    }
    m_more.notify_all();
    for (std::thread& thread : threads)
        thread.join();
}

void FactsReader::work()
{
    pthread_setname_np(pthread_self(), "photo facts");
    lowerThreadPriority();
    std::unique_lock lock(m_mutex);
    while (true) {
        m_more.wait(lock, [this] { return m_stopped || !m_waiting.empty(); });
        if (m_stopped)
            return;
        readSome(lock);
    }
}

void FactsReader::readSome(std::unique_lock<std::mutex>& lock)
{
    // The last ones are shared out, too.
    const std::size_t count = std::min(kBatch, (m_waiting.size() + 1) / 2);
    const auto end = m_waiting.begin() + static_cast<std::ptrdiff_t>(count);
    std::vector<FactsJob> batch(std::make_move_iterator(m_waiting.begin()), std::make_move_iterator(end));
    m_waiting.erase(m_waiting.begin(), end);
    m_reading += count;
    lock.unlock();
    for (FactsJob& job : batch) {
        if (m_stopped)
            return lock.lock();
        PhotoRecord record = readRecord(job.folderPath, job.file);
        record.id = job.record.id;
        record.folder = job.record.folder;
        job.record = std::move(record);
    }
    lock.lock();
    m_reading -= count;
    std::ranges::move(batch, std::back_inserter(m_done));
    lock.unlock();
    m_wake();
    lock.lock();
}

} // namespace lamina
