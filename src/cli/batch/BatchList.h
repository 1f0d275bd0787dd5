#pragma once

#include "platform/base/Result.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lamina {

/// Which files of a whole list a process takes: every `count`-th one, beginning with the `number`-th.
struct Shard {
    std::size_t number = 1; ///< from 1 to `count`
    std::size_t count = 1;

    /// Whether it takes the file at this place of the list, from 0.
    bool takes(std::size_t place) const { return place % count == number - 1; }
};

/// Reads "K/N", whole numbers with K from 1 to N.
Result<Shard> parseShard(const std::string& text);

/// The names in a list, in their order: each on a line of its own, or ended by a NUL byte where the list has any. Lines
/// may end as on other systems, and empty ones are passed over. Nothing else is taken away: blanks belong to names.
std::vector<std::string> namesIn(std::string_view list);

/// `namesIn` what a file holds, "-" for standard input; a pipe is read to its end. The error's subject is the file:
/// what can't be read, holds more than 64 MB or names more than a million files.
Result<std::vector<std::string>> readNameList(const std::string& path);

} // namespace lamina
