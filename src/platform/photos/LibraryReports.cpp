#include "platform/photos/LibraryReports_p.h"

#include "platform/base/DispatchQueue.h"

#include <algorithm>

namespace lamina {

LibraryEngine& photoLibrary()
{
    static LibraryEngine& engine = []() -> LibraryEngine& {
        LibraryEngine& made = LibraryEngine::shared();
        made.setChangeHandler([](const LibraryChange& change) {
            DispatchQueue::main().async([change] { LibraryReports::shared().tell(change); });
        });
        return made;
    }();
    return engine;
}

LibraryReports& LibraryReports::shared()
{
    static auto* const reports = new LibraryReports;
    return *reports;
}

void LibraryReports::add(const std::weak_ptr<PHPhotoLibraryChangeObserver>& observer)
{
    std::erase_if(m_entries, [](const Entry& entry) { return entry.alive.expired(); });
    const auto alive = observer.lock();
    if (alive && !isRegistered(alive.get()))
        m_entries.push_back({alive.get(), observer});
}

void LibraryReports::remove(const PHPhotoLibraryChangeObserver* observer)
{
    std::erase_if(m_entries, [&](const Entry& entry) { return entry.observer == observer; });
}

bool LibraryReports::isRegistered(const PHPhotoLibraryChangeObserver* observer) const
{
    return std::any_of(m_entries.begin(), m_entries.end(),
                       [&](const Entry& entry) { return entry.observer == observer; });
}

void LibraryReports::tell(const LibraryChange& change)
{
    m_recent.add(change);
    const PHChange report(std::make_shared<const PHChange::Content>(PHChange::Content{change.after, m_recent}));
    const std::vector<Entry> entries = m_entries;
    for (const Entry& entry : entries)
        if (const auto alive = entry.alive.lock(); alive && isRegistered(entry.observer))
            alive->photoLibraryDidChange(report);
}

} // namespace lamina
