#include "platform/files/UnfinishedNames_p.h"

#include <cstring>
#include <ctime>
#include <unistd.h>

namespace lamina {

namespace {

constexpr timespec kMoment{0, 1'000'000}; // a millisecond
constexpr int kMostMoments = 100;

} // namespace

std::array<UnfinishedNames::Entry, UnfinishedNames::kMost> UnfinishedNames::s_entries;
std::atomic<bool> UnfinishedNames::s_isEnding{false};

int UnfinishedNames::enter(int folder, const char* name)
{
    for (int i = 0; i < kMost; ++i) {
        Entry& entry = s_entries[static_cast<std::size_t>(i)];
        int expected = kFree;
        if (!entry.state.compare_exchange_strong(expected, kFilling))
            continue;
        entry.folder = folder;
        std::strncpy(entry.name, name, kLongestName - 1);
        entry.state.store(kMaking);
        // Asked after the place is seen by others: whoever ends the process finds it, or is found here.
        if (!s_isEnding.load())
            return i;
        entry.state.store(kFree);
        return -1;
    }
    return -1;
}

void UnfinishedNames::tried(int place)
{
    if (place >= 0)
        s_entries[static_cast<std::size_t>(place)].state.store(kMade);
}

void UnfinishedNames::leave(int place)
{
    if (place >= 0)
        s_entries[static_cast<std::size_t>(place)].state.store(kFree);
}

void UnfinishedNames::removeAll()
{
    s_isEnding.store(true);
    int moments = 0;
    for (Entry& entry : s_entries) {
        while (entry.state.load() == kMaking && moments++ < kMostMoments)
            ::nanosleep(&kMoment, nullptr);
        const int state = entry.state.load();
        if (state == kMaking || state == kMade)
            ::unlinkat(entry.folder, entry.name, 0);
    }
}

void UnfinishedNames::waitForEnd()
{
    for (int i = 0; i < kMostMoments && s_isEnding.load(); ++i)
        ::nanosleep(&kMoment, nullptr);
}

} // namespace lamina
