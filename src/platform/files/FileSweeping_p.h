#pragma once

#include <chrono>
#include <string_view>

namespace lamina {

/// So old is a file that nobody writes any more.
inline constexpr std::chrono::hours kLeftoversKept{24};

/// Whether a file bears a name that UnfinishedFile gives.
bool isUnfinishedName(std::string_view name);

/// Removes from an open folder what processes that were killed have left unfinished: regular files of this user's that
/// bear such a name, were last written more than a day ago, and that nobody holds the lock on with which an
/// UnfinishedFile lives. Reads names for 5 ms and removes for a quarter of a second at most: of a very large folder a
/// part is swept. Usable from any thread.
void sweepUnfinishedFiles(int folder);

} // namespace lamina
