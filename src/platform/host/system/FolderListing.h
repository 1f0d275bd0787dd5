#pragma once

#include "platform/base/Result.h"

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

namespace lamina {

/// How the pictures of a folder are sorted.
enum class FolderOrder { NewestFirst, ByName };

/// Which files of a folder are listed, by their names.
enum class FolderFiles { Pictures, Movies };

/// A folder, or a file that by its name is of the wanted kind.
struct FolderEntry {
    std::string name;
    std::string path; ///< absolute
    bool isFolder = false;
    bool isParent = false; ///< the way up: a folder that is shown by another name
};

/// What a folder holds, as far as it is to be shown.
struct FolderContents {
    std::vector<FolderEntry> entries;
    std::size_t leftOut = 0; ///< how many there would be beyond the limit
};

/// What stands in `folder`: folders first, by name; then files of the kind in `order`, by name where they are equally
/// old. Names go as readers sort them: by the language's letters, whatever their case, and numbers by value. Links
/// count as what they lead to.
///
/// Left out: what is hidden, links that lead nowhere, names that are no UTF-8 and could not be asked for again, and
/// everything beyond the first `limit`. When `cancelled` is set the rest is not read, and what is there does not
/// matter. The error's subject is the folder, its cause a whole sentence, since it is shown by itself in the list's
/// place. Reads the disk: for a background thread.
Result<FolderContents> listFolder(const std::string& folder, FolderOrder order, std::size_t limit,
                                  const std::atomic<bool>& cancelled, FolderFiles kind = FolderFiles::Pictures);

} // namespace lamina
