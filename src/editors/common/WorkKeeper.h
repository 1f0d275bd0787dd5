#pragma once

#include "editors/common/KeptWork.h"
#include "platform/base/DispatchTimer.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/UIImage.h"

#include <functional>
#include <memory>
#include <utility>

namespace lamina {

/// Keeps an editor's work while it is done, in the background: what has changed is written at most a moment later, and
/// changes that come meanwhile are written together, those that come while large pictures are written too. Does nothing
/// where no work is kept. Main thread.
class WorkKeeper {
public:
    /// Seconds from a change to the beginning of the writing.
    static constexpr double kDelay = 0.2;

    /// Where the work comes from. The functions are called on the main thread while the keeper lives.
    struct Source {
        KeptKind kind;
        std::function<KeptWork::Write()> record;   ///< of the work as it is now; itself called in the background
        std::function<UIImage()> print;            ///< how it looks now, small
        std::function<void(const Error&)> onError; ///< called once, with the first failure
    };

    WorkKeeper();
    ~WorkKeeper();
    WorkKeeper(const WorkKeeper&) = delete;
    WorkKeeper& operator=(const WorkKeeper&) = delete;

    /// Begins with a work of its own or, after `resume`, goes on with that one.
    void start(Source source);
    /// The work is gone on with that was kept before. To be called before `start`.
    void resume(std::shared_ptr<KeptWork> work) { m_work = std::move(work); }

    /// The work has changed.
    void touch();
    /// Begins at once to write what has changed. The main queue counts as busy until it is written.
    void flush();

    /// Names the state that the work is in now.
    int revision() const { return m_revision; }
    /// The work of that revision is safe elsewhere: nothing is kept any more until it changes again. Does nothing when
    /// it has changed since.
    void release(int revision);
    /// Whether it is so now.
    bool isReleased() const { return m_isReleased; }

private:
    void writeInTurn();
    void inBackground(std::function<Outcome(KeptWork&)> work);
    void workEnded(const Outcome& outcome);
    void tell(const Error& error);

    Source m_source;
    std::shared_ptr<KeptWork> m_work;
    int m_revision = 0;
    bool m_isWritten = true;
    bool m_isReleased = false;
    int m_underWay = 0;   ///< works in the background that have not ended
    bool m_waits = false; ///< to be written when they have
    bool m_hasFailed = false;
    DispatchTimer m_timer;
    std::shared_ptr<WorkKeeper*> m_self; ///< for answers, which may come when the keeper is gone
};

} // namespace lamina
