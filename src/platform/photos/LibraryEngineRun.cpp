#include "platform/photos/LibraryEngineImpl_p.h"

#include "platform/base/ExceptionCause.h"
#include "platform/base/FreeMemory.h"
#include "platform/base/Log.h"
#include "platform/photos/FactsReader_p.h"
#include "platform/photos/FolderWalk_p.h"
#include "platform/photos/LibraryRoots.h"
#include "platform/photos/LibraryScanner_p.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/index/PhotoRecords.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <poll.h>
#include <pthread.h>
#include <string>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace lamina {

namespace {

using std::chrono::milliseconds;

/// Changes come in crowds: they are waited for until there is a pause, but not for longer than the last one says.
constexpr milliseconds kPause{250};
constexpr milliseconds kLongestGathering{1000};

/// Between snapshots while there is more to find: soon at first, then seldom, since each makes views count anew.
constexpr milliseconds kFirstInterval{250};
constexpr milliseconds kLongestInterval{1000};

/// Times may lie anywhere, a wait may not.
constexpr milliseconds kLongestSleep{60'000};

constexpr std::chrono::microseconds kTurn{100};

/// Where loose files are: in no folder of the tree, not even in one that has no row at the moment.
constexpr FolderID kNoFolder = -1;

} // namespace

LibraryEngine::Impl::Impl(LibraryRoots roots, Limits limits)
    : m_limits(limits)
    , m_wake(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
    , m_roots(std::move(roots))
{
}

LibraryEngine::Impl::~Impl()
{
    if (m_thread.joinable())
        m_thread.join();
}

void LibraryEngine::Impl::start()
{
    const std::lock_guard starting(m_startMutex);
    if (m_scanner)
        return;
    const LibraryRoots roots = takeRoots();
    m_index = PhotoIndex::open(roots.cacheFolder);
    m_losses = m_index->lossCount();
    m_scanner = std::make_unique<LibraryScanner>(m_index, m_limits.watches, [this] { wake(); });
    m_scanner->load(roots);
    const LibrarySnapshotPtr first = makeSnapshot({}, m_scanner->takeTreeChanged());
    {
        const std::lock_guard lock(m_mutex);
        m_snapshot = first;
    }
    if (m_stopped)
        return;
    begin();
    try {
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        m_isThreadless = true;
    }
}

LibraryRoots LibraryEngine::Impl::takeRoots()
{
    const std::lock_guard lock(m_mutex);
    m_loadedRoots = m_wantedRoots;
    return m_roots;
}

bool LibraryEngine::Impl::isRunning() const
{
    return snapshot() != nullptr;
}

LibrarySnapshotPtr LibraryEngine::Impl::snapshot() const
{
    const std::lock_guard lock(m_mutex);
    return m_snapshot;
}

LibraryRoots LibraryEngine::Impl::roots() const
{
    const std::lock_guard lock(m_mutex);
    return m_roots;
}

void LibraryEngine::Impl::setHandler(std::function<void(const LibraryChange&)> handler)
{
    const std::lock_guard lock(m_mutex);
    m_handler = std::move(handler);
}

void LibraryEngine::Impl::configure(LibraryRoots roots)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_roots == roots)
            return;
        m_roots = std::move(roots);
        ++m_wantedRoots;
    }
    // A start that is under way has either set its snapshot by now, or reads these roots.
    const std::lock_guard starting(m_startMutex);
    if (m_scanner)
        post([this] { reload(); });
}

void LibraryEngine::Impl::post(std::function<void()> command)
{
    {
        const std::lock_guard lock(m_mutex);
        m_commands.push_back(std::move(command));
    }
    wake();
    if (m_isThreadless)
        workHere();
}

void LibraryEngine::Impl::wake() const
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(m_wake.get(), &one, sizeof one);
}

void LibraryEngine::Impl::hold()
{
    ++m_wantedHolds;
    const std::lock_guard step(m_stepMutex);
    --m_wantedHolds;
    ++m_holds;
}

void LibraryEngine::Impl::release()
{
    {
        const std::lock_guard step(m_stepMutex);
        --m_holds;
    }
    wake();
    if (m_isThreadless)
        workHere();
}

void LibraryEngine::Impl::waitUntilComplete()
{
    if (m_isThreadless)
        return workHere();
    std::unique_lock lock(m_mutex);
    m_news.wait(lock, [this] { return m_isFinished || (m_snapshot->complete && m_shownRoots == m_wantedRoots); });
}

void LibraryEngine::Impl::stop(milliseconds longest)
{
    m_stopped = true;
    wake();
    const std::lock_guard starting(m_startMutex);
    if (!m_thread.joinable())
        return;
    std::unique_lock lock(m_mutex);
    m_news.wait_for(lock, longest, [this] { return m_isFinished; });
}

// The thread.

void LibraryEngine::Impl::begin()
{
    m_lastPublished = Clock::now();
    m_interval = kFirstInterval;
    m_gatherEnd = m_lastPublished;
    m_isGathering = true; // the first walk
}

bool LibraryEngine::Impl::isHeld()
{
    const std::lock_guard step(m_stepMutex);
    return m_holds > 0;
}

/// Whether there is something to do, or to be told, that is not up to what others do.
bool LibraryEngine::Impl::isAtWork() const
{
    return m_isGathering || !isSettled() || !m_isComplete || !m_answers.empty();
}

void LibraryEngine::Impl::workHere()
{
    if (m_worksHere.exchange(true))
        return; // further up
    bool isBusy = true;
    while (!m_stopped && !isHeld() && (isBusy || isAtWork())) {
        const bool isMounted = wait(isBusy);
        isBusy = work(isMounted);
    }
    m_worksHere = false;
}

void LibraryEngine::Impl::run()
{
    pthread_setname_np(pthread_self(), "photo library");
    lowerThreadPriority();
    try {
        bool isBusy = true;
        while (!m_stopped) {
            const bool isMounted = wait(isBusy);
            isBusy = !m_stopped && work(isMounted);
        }
    } catch (...) { // the library stays as it was told last
        logError("photo library: " + causeOfException());
    }
    m_scanner->stop();
    const std::lock_guard lock(m_mutex);
    m_isFinished = true;
    m_news.notify_all();
}

int LibraryEngine::Impl::waitingTime(bool isBusy) const
{
    if (isBusy)
        return 0;
    Time next = Time::max();
    if (m_isGathering)
        next = m_gatherEnd;
    if (!m_scanner->isSettled())
        next = std::min(next, m_lastPublished + m_interval);
    if (m_isAwaitingIdle)
        next = std::min(next, m_idleCheck);
    if (next == Time::max())
        return -1;
    const auto left = std::chrono::ceil<milliseconds>(next - Clock::now());
    return static_cast<int>(std::clamp<milliseconds::rep>(left.count(), 0, kLongestSleep.count()));
}

/// Whether something was mounted.
bool LibraryEngine::Impl::wait(bool isBusy)
{
    // A mutex alone would be ours again before anybody who waits for it has woken.
    while (m_wantedHolds > 0)
        std::this_thread::sleep_for(kTurn);
    std::array<pollfd, 3> descriptors = {{{m_wake.get(), POLLIN, 0},
                                          {m_scanner->watchDescriptor(), POLLIN, 0},
                                          {m_scanner->mountDescriptor(), POLLPRI, 0}}};
    poll(descriptors.data(), descriptors.size(), isHeld() ? -1 : waitingTime(isBusy));
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t taken = read(m_wake.get(), &count, sizeof count);
    return descriptors.back().revents != 0;
}

/// Whether there is more to do at once.
bool LibraryEngine::Impl::work(bool isMounted)
{
    LibraryChange change;
    bool isBusy = false;
    {
        const std::lock_guard step(m_stepMutex);
        gather(m_scanner->readEvents(isMounted));
        if (m_holds > 0)
            return false;
        runCommands();
        if (m_isGathering && Clock::now() >= m_gatherEnd) {
            m_isGathering = false;
            m_hasBegun = true;
            m_scanner->beginRound();
            forgetLoose(); // watched from now on
        }
        isBusy = m_scanner->step();
        if (m_index->lossCount() != m_losses)
            reload();
        else if (isPublicationDue())
            change = publish();
    }
    if (change.after)
        tell(change);
    return isBusy;
}

void LibraryEngine::Impl::runCommands()
{
    std::vector<std::function<void()>> commands;
    {
        const std::lock_guard lock(m_mutex);
        commands.swap(m_commands);
    }
    for (const auto& command : commands)
        command();
}

void LibraryEngine::Impl::gather(bool hasNews)
{
    const Time now = Clock::now();
    if (!std::exchange(m_isAwaitingIdle, m_scanner->hasWriting())) {
        m_idleCheck = now + m_limits.idle;
    } else if (now >= m_idleCheck) {
        m_scanner->touchIdle();
        m_idleCheck = now + m_limits.idle;
    }
    if (!m_scanner->hasMarks() || (m_isGathering && (!hasNews || m_gatherEnd <= now)))
        return;
    if (!m_isGathering)
        m_firstMark = now;
    m_isGathering = true;
    m_gatherEnd = std::min(now + kPause, m_firstMark + kLongestGathering);
}

/// Marks that nobody else will follow are looked at now.
void LibraryEngine::Impl::endGathering()
{
    m_isGathering = true;
    m_gatherEnd = Clock::now();
}

bool LibraryEngine::Impl::isSettled() const
{
    return m_hasBegun && m_scanner->isSettled();
}

bool LibraryEngine::Impl::isPublicationDue()
{
    const bool isDue = isSettled() || m_isUrgent || Clock::now() >= m_lastPublished + m_interval;
    const bool completes = isSettled() && !m_isComplete;
    if (isSettled())
        m_interval = kFirstInterval;
    return isDue && (completes || m_isUrgent || m_isReloaded || m_scanner->hasNews());
}

LibraryChange LibraryEngine::Impl::publish()
{
    m_scanner->flush();
    if (isSettled() && !std::exchange(m_isComplete, true))
        returnFreeMemory(); // of the walk, and of what was read on it
    LibraryPlaces::Changes changes = m_scanner->places().apply();
    const bool isOtherTree = m_scanner->takeTreeChanged();
    if (std::exchange(m_isReloaded, false))
        m_builder.forget();
    LibraryChange change{.before = snapshot(), .after = makeSnapshot(changes, isOtherTree), .changed = {}};
    change.changed = std::move(changes.changed);
    addMoved(change);
    m_lastPublished = Clock::now();
    m_interval = isSettled() ? kFirstInterval : std::min<Clock::duration>(m_interval * 3 / 2, kLongestInterval);
    m_isUrgent = false;
    const std::lock_guard lock(m_mutex);
    m_snapshot = change.after;
    m_shownRoots = m_loadedRoots;
    m_news.notify_all();
    return change;
}

/// Photos whose folder lies elsewhere now have another path, whatever else of them is as before.
void LibraryEngine::Impl::addMoved(LibraryChange& change) const
{
    if (change.before->folderPaths == change.after->folderPaths)
        return;
    std::vector<PhotoID> photos = std::move(change.changed);
    for (const auto& [folder, path] : *change.after->folderPaths) {
        const auto before = change.before->folderPaths->find(folder);
        if (before == change.before->folderPaths->end() || before->second == path)
            continue;
        const PhotoIDs moved = m_builder.photosOf(folder);
        photos.insert(photos.end(), moved->begin(), moved->end());
    }
    std::ranges::sort(photos);
    photos.erase(std::ranges::unique(photos).begin(), photos.end());
    change.changed = std::move(photos);
}

LibrarySnapshotPtr LibraryEngine::Impl::makeSnapshot(const LibraryPlaces::Changes& changes, bool isOtherTree)
{
    auto snapshot = std::make_shared<LibrarySnapshot>(
        m_builder.build(m_scanner->tree(), m_scanner->places(), changes.folders, isOtherTree));
    std::vector<LooseFile> loose;
    for (const auto& [id, file] : m_loose)
        loose.push_back(file);
    snapshot->looseFiles = std::make_shared<const std::vector<LooseFile>>(std::move(loose));
    snapshot->generation = ++m_generation;
    snapshot->index = m_index;
    snapshot->complete = m_isComplete;
    return snapshot;
}

void LibraryEngine::Impl::tell(const LibraryChange& change)
{
    std::function<void(const LibraryChange&)> handler;
    {
        const std::lock_guard lock(m_mutex);
        handler = m_handler;
    }
    if (handler)
        handler(change);
    for (const auto& answer : std::exchange(m_answers, {}))
        answer();
}

// Commands.

void LibraryEngine::Impl::reload()
{
    m_losses = m_index->lossCount();
    m_scanner->load(takeRoots());
    for (const auto& [id, file] : m_loose)
        m_scanner->places().put({id, kNoFolder, file.date}, 1, false);
    m_hasBegun = false;
    m_isComplete = false;
    m_isReloaded = true;
    endGathering();
}

void LibraryEngine::Impl::rescan()
{
    m_scanner->touchBlind();
    endGathering();
}

void LibraryEngine::Impl::adopt(const std::string& path)
{
    m_scanner->touch(path);
    endGathering();
}

void LibraryEngine::Impl::takeLoose(const std::vector<std::string>& paths,
                                    const std::function<void(std::vector<PhotoID>)>& handler)
{
    std::vector<PhotoID> photos;
    for (const std::string& path : paths)
        photos.push_back(looseID(path));
    m_answers.emplace_back([photos = std::move(photos), handler] { handler(photos); });
    m_isUrgent = true;
    std::vector<std::string> loose;
    for (const auto& [id, file] : m_loose)
        loose.push_back(file.path);
    m_scanner->watchFiles(std::move(loose));
    endGathering();
}

PhotoID LibraryEngine::Impl::looseID(const std::string& path)
{
    const std::string folder = parentPath(path);
    const std::string name = path.substr(path.rfind('/') + 1);
    const std::optional<ListedFile> file = findFile(folder, name);
    if (!file)
        return 0;
    const std::optional<PhotoRecord> known = m_index->find(file->key);
    if (known && m_scanner->places().find(known->id))
        return known->id;
    const auto loose = std::ranges::find(m_loose, path, [](const auto& entry) { return entry.second.path; });
    if (loose != m_loose.end())
        return loose->first;
    if (const PhotoID taken = m_scanner->take(folder, *file))
        return taken;
    const PhotoRecord record = readRecord(folder, *file);
    if (!isPhotoName(name) && record.width == 0) // a picture may have any name
        return 0;
    const PhotoID photo = m_index->reserve();
    m_loose[photo] = {photo, path, record.width, record.height, record.date, record.modified};
    m_scanner->places().put({photo, kNoFolder, record.date}, 1, false);
    return photo;
}

void LibraryEngine::Impl::forgetLoose()
{
    std::erase_if(m_loose, [&](const auto& entry) {
        const std::string& path = entry.second.path;
        const bool isGone = !findFile(parentPath(path), path.substr(path.rfind('/') + 1));
        if (isGone)
            m_scanner->places().remove(entry.first);
        return isGone;
    });
}

} // namespace lamina
