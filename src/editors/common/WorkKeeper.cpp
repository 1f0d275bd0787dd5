#include "editors/common/WorkKeeper.h"

#include "platform/base/Log.h"

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
        m_timer = DispatchTimer(DispatchQueue::main(), kDelay, [this] { writeInTurn(); });
}

/// One at a time: states that wait would each hold their pictures, and be replaced as soon as they are written.
void WorkKeeper::writeInTurn()
{
    m_waits = m_underWay > 0;
    if (!m_waits)
        flush();
}

void WorkKeeper::flush()
{
    m_timer.cancel();
    m_waits = false;
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
    ++m_underWay;
    keptWorksQueue().async([run = std::move(work), work = m_work, keeper = m_self,
                            expected = DispatchQueue::main().expectWork()]() mutable {
        const Outcome outcome = run(*work);
        work.reset(); // whoever waits for this may want to open it
        DispatchQueue::main().async([keeper, expected, outcome] {
            if (*keeper)
                (*keeper)->workEnded(outcome);
        });
    });
}

void WorkKeeper::workEnded(const Outcome& outcome)
{
    --m_underWay;
    if (!outcome)
        tell(outcome.error());
    if (m_waits)
        writeInTurn();
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
