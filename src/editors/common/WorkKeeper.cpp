#include "editors/common/WorkKeeper.h"

#include "platform/base/Log.h"
#include "platform/photos/PictureQueue.h"

#include <utility>

namespace lamina {

WorkKeeper::WorkKeeper()
    : m_self(std::make_shared<WorkKeeper*>(this))
{
}

WorkKeeper::~WorkKeeper()
{
    *m_self = nullptr;
}

void WorkKeeper::start(Source source)
{
    if (keptWorksFolder().empty())
        return;
    m_source = std::move(source);
    if (m_work)
        return;
    m_work = KeptWork::begin(m_source.kind);
    touch();
}

void WorkKeeper::touch()
{
    ++m_revision;
    m_isReleased = false;
    if (!m_source.record)
        return;
    m_isWritten = false;
    if (!m_timer.isPending())
        m_timer = DispatchTimer(DispatchQueue::main(), kDelay, [this] { flush(); });
}

void WorkKeeper::flush()
{
    m_timer.cancel();
    if (std::exchange(m_isWritten, true) || !m_source.record)
        return;
    inBackground(
        [write = m_source.record(), print = m_source.print()](KeptWork& work) { return work.write(write, print); });
}

void WorkKeeper::release(int revision)
{
    if (revision != m_revision || !m_source.record)
        return;
    m_timer.cancel();
    m_isWritten = true;
    m_isReleased = true;
    inBackground([](KeptWork& work) { return work.remove(); });
}

/// Blocks of the queue run one after another: each is the only one that uses the work.
void WorkKeeper::inBackground(std::function<Outcome(KeptWork&)> work)
{
    pictureQueue().async([run = std::move(work), work = m_work, keeper = m_self,
                          expected = DispatchQueue::main().expectWork()]() mutable {
        const Outcome outcome = run(*work);
        work.reset(); // whoever waits for this may want to open it
        if (outcome)
            return;
        DispatchQueue::main().async([keeper, expected, error = outcome.error()] {
            if (*keeper)
                (*keeper)->tell(error);
        });
    });
}

void WorkKeeper::tell(const Error& error)
{
    m_isWritten = false; // there may be room when it is tried again
    if (std::exchange(m_hasFailed, true))
        return;
    logWarning(error.message());
    m_source.onError(error);
}

} // namespace lamina
