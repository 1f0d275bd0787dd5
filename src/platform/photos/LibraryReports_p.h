#pragma once

#include "platform/photos/LibraryEngine_p.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/PHChange.h"
#include "platform/photos/PHChange_p.h"

#include <memory>
#include <vector>

namespace lamina {

/// The process's engine, whose changes are told to observers from now on. From any thread.
LibraryEngine& photoLibrary();

/// Tells the observers of the library's changes. Main thread only; never destroyed.
class LibraryReports {
public:
    static LibraryReports& shared();

    void add(const std::weak_ptr<PHPhotoLibraryChangeObserver>& observer);
    void remove(const PHPhotoLibraryChangeObserver* observer);
    /// Those that are there now, in their order. Observers may be added and removed meanwhile.
    void tell(const LibraryChange& change);

private:
    struct Entry {
        const PHPhotoLibraryChangeObserver* observer; ///< to be compared alone
        std::weak_ptr<PHPhotoLibraryChangeObserver> alive;
    };
    bool isRegistered(const PHPhotoLibraryChangeObserver* observer) const;

    std::vector<Entry> m_entries;
    RecentChanges m_recent;
};

} // namespace lamina
