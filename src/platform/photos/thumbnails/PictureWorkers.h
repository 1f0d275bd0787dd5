#pragma once

#include "platform/base/DispatchQueue.h"

#include <QThreadPool>

#include <compare>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>

namespace lamina {

/// What waits is taken up in this order of ranks, the newest or the oldest of one first.
enum class PictureWorkRank {
    Look,  ///< asking the caches: newest first
    Short, ///< what nobody takes back: oldest first
    Read,  ///< reading the files of photos: newest first
    Keep,  ///< writing to the caches: oldest first
    Warm,  ///< reading what nobody has asked for yet: oldest first
};

/// Whether something may be done beside others of its kind, or two of it would leave no thread to the rest.
enum class PictureWorkKind { Ordinary, OneAtATime };

/// Names work that waits; the one made by default is none.
struct PictureWorkTicket {
    PictureWorkRank rank = PictureWorkRank::Look;
    std::int64_t order = 0; ///< 0: none

    friend auto operator<=>(const PictureWorkTicket&, const PictureWorkTicket&) = default;
};

/// Two threads for short work with pictures: who scrolls through photos sees those first that stand on the screen, and
/// what memory they take is bounded. Work runs and is destroyed on one of the threads, must not throw, and must not
/// wait for the main thread; the main queue counts as busy until it has ended. All operations from any thread.
class PictureWorkers {
public:
    using Ticket = PictureWorkTicket;

    /// Never destroyed: pictures may still be on their way when the process ends.
    static PictureWorkers& shared();

    /// `after`: the work that this one goes on with, as whose age it counts.
    Ticket add(PictureWorkRank rank, std::function<void()> work, PictureWorkKind kind = PictureWorkKind::Ordinary,
               const Ticket& after = {});
    /// Takes work back that has not begun, and destroys it in the calling thread. Otherwise nothing happens.
    void withdraw(const Ticket& ticket);

private:
    struct Work {
        std::function<void()> run;
        PictureWorkKind kind = PictureWorkKind::Ordinary;
        MainQueue::ExpectedWork expected;
    };

    PictureWorkers();
    void serve();
    bool takeNext(Work& next);

    std::mutex m_mutex;
    std::map<Ticket, Work> m_waiting; ///< the first is the next
    std::int64_t m_lastOrder = 0;
    int m_serving = 0; ///< threads that look for work, or do it
    bool m_oneRuns = false;
    QThreadPool m_threads;
};

} // namespace lamina
