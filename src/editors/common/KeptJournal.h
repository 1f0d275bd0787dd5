#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lamina {

/// SHA-256 in 64 small hexadecimal digits: a name for contents, and a check of them. Usable from any thread.
std::string contentHash(std::span<const std::uint8_t> bytes);

/// The bytes of a journal: a file of a few records, each a text in a frame of its own that tells its length and its
/// hash: "lamina-kept 1 LENGTH HASH", the text, an end of line.
std::vector<std::uint8_t> journalOf(std::span<const std::string> records);

/// What a journal holds that is whole.
struct JournalContents {
    std::vector<std::string> records; ///< in their order
    /// It was written by a later version, in frames of another form.
    bool isNewer = false;
};

/// Reads the records that are whole, whatever lies between them: a journal that was cut off or damaged gives the others.
JournalContents readJournal(std::span<const std::uint8_t> bytes);

} // namespace lamina
