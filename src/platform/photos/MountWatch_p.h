#pragma once

#include "platform/files/FileReading.h"

#include <set>
#include <string>
#include <vector>

namespace lamina {

/// Hears of cards and sticks: a watched folder doesn't tell that another file system has come to lie over it. For one
/// thread at a time.
class MountWatch {
public:
    MountWatch();

    /// To be waited on with POLLPRI, which tells of a change once; -1: the system doesn't tell.
    int descriptor() const { return m_table.get(); }
    /// The folders on which something was mounted, or is no longer, since the last time.
    std::vector<std::string> takeChanges();

private:
    std::multiset<std::string> read() const;

    FileDescriptor m_table;
    std::multiset<std::string> m_mounts;
};

} // namespace lamina
