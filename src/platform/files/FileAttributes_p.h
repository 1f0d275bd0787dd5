#pragma once

namespace lamina {

/// Gives an open file that is new and empty, and whose mode is 0600, what the open file `former` has: owner and group
/// where we may, permissions, access list, and the attributes of the user's name space. Where the group can't be kept
/// the permissions are narrowed, so that nobody can read the new file who couldn't read the former; what would let it
/// run as its owner or group falls away, as it does for every file that is written to. The error's number, or 0: on a
/// file system that leaves the new file open wider than the former it is EPERM. Usable from any thread.
int takeAttributes(int file, int former);

} // namespace lamina
