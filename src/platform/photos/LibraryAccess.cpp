#include "platform/photos/LibraryAccess_p.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace lamina {

namespace fs = std::filesystem;

namespace {

enum class Access { Missing, Refused, Given };

Access accessTo(const std::string& folder)
{
    if (!folder.empty() && ::access((folder + '/').c_str(), R_OK | X_OK) == 0)
        return Access::Given;
    return folder.empty() || errno == ENOENT || errno == ENOTDIR ? Access::Missing : Access::Refused;
}

std::vector<Access> accessToEach(const LibraryRoots& roots)
{
    std::vector<Access> found{accessTo(roots.pictures)};
    for (const std::string& folder : roots.further)
        found.push_back(accessTo(folder));
    return found;
}

bool holdsOnlyOwnFolder(const LibraryRoots& roots)
{
    std::error_code failure;
    fs::directory_iterator entry(roots.pictures, failure);
    if (failure || entry == end(entry) || entry->path() != roots.ownFolder)
        return false;
    return entry.increment(failure) == end(entry) && !failure;
}

} // namespace

PHAuthorizationStatus accessTo(const LibraryRoots& roots)
{
    const std::vector<Access> found = accessToEach(roots);
    const auto is = [&](Access access) { return std::find(found.begin(), found.end(), access) != found.end(); };
    return is(Access::Refused) && !is(Access::Given) ? PHAuthorizationStatus::Denied
                                                     : PHAuthorizationStatus::Authorized;
}

bool foldersAreShown(const LibraryRoots& roots)
{
    if (::access(roots.sandboxMark.c_str(), F_OK) != 0)
        return true;
    const std::vector<Access> found = accessToEach(roots);
    return (found.front() != Access::Missing && !holdsOnlyOwnFolder(roots)) ||
           std::any_of(found.begin() + 1, found.end(), [](Access access) { return access != Access::Missing; });
}

} // namespace lamina
