#pragma once

#include <cstddef>
#include <functional>

namespace lamina {

/// The process's threads for splitting pixel work by rows. They are started once, on the first use that is worth it,
/// and kept: fresh threads can land on one core for seconds. The instance is never destroyed.
///
/// Work must give the same result however it is split. The caller works too; a call from inside a worker runs inline.
/// Usable from any thread; calls from several threads at once share the workers.
class WorkerPool {
public:
    /// The one pool of the process.
    static WorkerPool& shared();

    /// Threads that can work at once, the caller included; at least 1.
    unsigned concurrency() const;

    /// Calls `body(first, last)` for pieces of [begin, end) that together cover it once, and returns when all are done.
    /// `grain`: the fewest rows worth a piece; the range runs inline when it is not longer than that. An exception
    /// thrown by `body` ends up with the caller, once every piece that had started is done.
    void parallelFor(int begin, int end, int grain, const std::function<void(int, int)>& body);

    /// Limits the threads used, the caller included (0: as many as there are cores). For tests and benchmarks.
    void setConcurrency(unsigned limit);

    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

private:
    WorkerPool();
    ~WorkerPool() = delete;
    struct Impl;
    Impl* m_impl;
};

/// Rows [begin, end), split so that a piece holds about 16k pixels or more; `body(first, last)` as above.
/// `pixelsPerRow` is the cost of a row in plain pixels.
void parallelRows(int begin, int end, std::size_t pixelsPerRow, const std::function<void(int, int)>& body);

} // namespace lamina
