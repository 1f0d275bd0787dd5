#include "platform/base/WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <pthread.h>
#include <system_error>
#include <thread>
#include <vector>

namespace lamina {

namespace {

thread_local bool t_insideWork = false;

unsigned coreCount()
{
    return std::max(1u, std::thread::hardware_concurrency());
}

/// One call of parallelFor: pieces are handed out by a counter, so that a slow core takes fewer.
struct Job {
    std::int64_t begin;
    std::int64_t end;
    std::int64_t step;
    const std::function<void(int, int)>* body;
    std::atomic<int> next{0};
    int pieces;
    int helpers = 0; // workers inside; guarded by the pool's mutex
    std::mutex errorMutex;
    std::exception_ptr error;

    void run()
    {
        t_insideWork = true;
        for (int i = next.fetch_add(1); i < pieces; i = next.fetch_add(1)) {
            const std::int64_t first = begin + i * step;
            try {
                (*body)(static_cast<int>(first), static_cast<int>(std::min(end, first + step)));
            } catch (...) {
                const std::lock_guard lock(errorMutex);
                if (!error)
                    error = std::current_exception();
                next = pieces;
            }
        }
        t_insideWork = false;
    }

    bool hasWork() const { return next.load() < pieces; }
};

} // namespace

struct WorkerPool::Impl {
    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable done;
    std::vector<Job*> jobs;
    unsigned workers = 0;
    std::atomic<unsigned> limit{coreCount()};

    void startWorkers()
    {
        try {
            for (; workers + 1 < limit; ++workers)
                std::thread([this] { work(); }).detach();
        } catch (const std::system_error&) {
            // The system has no more threads to give: those that run do the work, at least the caller.
        }
    }

    Job* claim()
    {
        for (Job* job : jobs) {
            if (job->hasWork() && static_cast<unsigned>(job->helpers) + 1 < limit)
                return job;
        }
        return nullptr;
    }

    void work()
    {
        pthread_setname_np(pthread_self(), "lamina-worker");
        std::unique_lock lock(mutex);
        for (;;) {
            Job* job = nullptr;
            wake.wait(lock, [&] { return (job = claim()) != nullptr; });
            ++job->helpers;
            lock.unlock();
            job->run();
            lock.lock();
            if (--job->helpers == 0)
                done.notify_all();
        }
    }
};

WorkerPool& WorkerPool::shared()
{
    static WorkerPool* const pool = new WorkerPool; // never destroyed: workers may still run while the process ends
    return *pool;
}

WorkerPool::WorkerPool()
    : m_impl(new Impl)
{
}

unsigned WorkerPool::concurrency() const
{
    return m_impl->limit;
}

void WorkerPool::setConcurrency(unsigned limit)
{
    m_impl->limit = limit == 0 ? coreCount() : limit;
}

void WorkerPool::parallelFor(int begin, int end, int grain, const std::function<void(int, int)>& body)
{
    if (begin >= end)
        return;
    const unsigned threads = m_impl->limit;
    const std::int64_t rows = std::int64_t{end} - begin;
    if (t_insideWork || threads < 2 || rows <= grain) {
        body(begin, end);
        return;
    }
    // A few pieces a thread level out cores of unequal speed.
    const std::int64_t wanted = std::int64_t{threads} * 4;
    const std::int64_t step = std::max<std::int64_t>({1, grain, (rows + wanted - 1) / wanted});
    Job job{begin, end, step, &body, {}, static_cast<int>((rows + step - 1) / step), 0, {}, {}};
    {
        const std::lock_guard lock(m_impl->mutex);
        m_impl->startWorkers();
        m_impl->jobs.push_back(&job);
    }
    m_impl->wake.notify_all();
    job.run();
    std::unique_lock lock(m_impl->mutex);
    std::erase(m_impl->jobs, &job);
    m_impl->done.wait(lock, [&] { return job.helpers == 0; });
    lock.unlock();
    if (job.error)
        std::rethrow_exception(job.error);
}

void parallelRows(int begin, int end, std::size_t pixelsPerRow, const std::function<void(int, int)>& body)
{
    constexpr std::size_t kPixelsPerPiece = 16 * 1024;
    const std::size_t grain = kPixelsPerPiece / std::max<std::size_t>(1, pixelsPerRow) + 1;
    WorkerPool::shared().parallelFor(begin, end, static_cast<int>(grain), body);
}

} // namespace lamina
