#pragma once

#include "platform/base/Result.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace lamina {

/// Writes the whole file or nothing: a temporary name in the target folder, then a rename. The error's subject is the
/// path. Usable from any thread.
///
/// An existing file keeps its contents on failure. On success it keeps its owner, group, permissions, access list and
/// attributes of the user's, which the new one has before anything is in it; where the owner can't be kept the group
/// is, and where that can't either nobody may read the new file who couldn't read the old one. Its contents are on the
/// device before it takes the name, so that a loss of power leaves the one or the other. (Of access lists those of the
/// POSIX kind are kept; of NFS 4's only what the permissions tell of them, which may be more than they allow.) Of a
/// file with several names this one is replaced; the others go on leading to the old contents.
///
/// A symbolic link stays one, and what it leads to is replaced or made. The system follows it, and refuses it where the
/// folders of others are protected by its rules. A file that may not be written is left alone even where its folder
/// would allow replacing it, and one in a folder that may not be written can't be replaced. A pipe or device is written
/// through, since nothing there can be replaced; so is a file that has lost its name.
///
/// The temporary file is hidden and its name ends in ".lamina-unfinished"; one that was left by a process that was
/// killed is swept a day later by who writes into the folder. Whether a process still writes it is told by its lock: on
/// a network disk that keeps locks within each host, one that takes longer than a day may lose it to another host.
Outcome writeFileAtomically(const std::string& path, std::span<const std::uint8_t> bytes);

/// Gives what a file is to hold piece by piece, each valid until the next is asked for; an empty one is the end.
using FilePieces = std::function<std::span<const std::uint8_t>()>;

/// The same for what is never whole in memory.
Outcome writeFileAtomically(const std::string& path, const FilePieces& pieces);

/// Writes a file by the path that it is given, which lasts as long as the call; an error's subject is ignored.
using FileFiller = std::function<Outcome(const std::string& path)>;

/// The same for what a library writes by the file's name, reading back what it wrote if it likes: `fill` is called
/// once, in this thread, with a path under /proc that leads to the temporary file, which is empty. What fails there
/// fails here, with the error's cause; the file is then as it was. A pipe or device is refused.
Outcome writeFileAtomically(const std::string& path, const FileFiller& fill);

/// Writes the whole file under a name that is free, or nothing: true when written, false when anything bears the name
/// already (a file, a folder, a symbolic link wherever it leads), which is left as it is. Of several that want the same
/// name at once, in this process or another, one gets it. The error's subject is the path. The temporary file is as
/// above. Usable from any thread.
Result<bool> writeNewFile(const std::string& path, std::span<const std::uint8_t> bytes);
/// The same for what `fill` writes, as above.
Result<bool> writeNewFile(const std::string& path, const FileFiller& fill);

/// Writes the whole file, or nothing, under the first name of STEM.EXT, "STEM 2.EXT", "STEM 3.EXT" ... that is free,
/// and gives its path; `stem` is a path, `extension` begins with its full stop. No file is ever replaced, also when
/// several want the same names at once. `fill` and the rest are as above.
Result<std::string> writeNumberedFile(const std::string& stem, const std::string& extension, const FileFiller& fill);
Result<std::string> writeNumberedFile(const std::string& stem, const std::string& extension,
                                      std::span<const std::uint8_t> bytes);

/// Ordinary: the system writes to the device when it likes. OnDevice: what was written, and its name, survive a loss of
/// power.
enum class Durability { Ordinary, OnDevice };

/// Writes the whole file or nothing, for the owner alone (mode 0600), whatever bears the name: that is replaced, and
/// not followed where it is a link. `OnDevice` the bytes are there before the file takes its name, so that a loss of
/// power leaves the file of before or this one. The error's subject is the path. The temporary file is as above. Usable
/// from any thread.
Outcome writePrivateFile(const std::string& path, std::span<const std::uint8_t> bytes,
                         Durability durability = Durability::OnDevice);

/// What the names of temporary files end in.
inline constexpr std::string_view kUnfinishedSuffix = ".lamina-unfinished";

/// Removes the temporary files that are being written at the moment, for a program about to leave on a signal: safe to
/// be called from a signal handler, from any thread, while others go on writing. A write under way that goes on
/// afterwards fails, or ends as if it had the device to itself, and none begins any more: the handler should not return
/// to it. All are known: of more than a thousand at once the last fail.
void removeUnfinishedFiles();

} // namespace lamina
