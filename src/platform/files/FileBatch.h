#pragma once

#include "platform/base/Result.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// Files that are written one after another, or by several threads at once, each whole or not at all as
/// `writeFileAtomically` does. A file that replaces another must be on its device before it takes the other's place;
/// here one wait for the device serves all of them.
///
/// A file under a new name stands there at once. One that replaces another waits beside it under its temporary name
/// until `finish`: until then a reader finds the old one, and what ends the process leaves the old one. When some
/// hundreds wait (each holds a descriptor), or the device is full, they take their places in the middle. A file whose
/// new contents others of the batch are to read is written by `writeFileAtomically`, which waits for the device by
/// itself.
///
/// Usable from any threads at once, but for the destructor.
class FileBatch {
public:
    FileBatch();
    /// Files that still wait are dropped; those that they were to replace stay.
    ~FileBatch();
    FileBatch(const FileBatch&) = delete;
    FileBatch& operator=(const FileBatch&) = delete;

    /// Writes the file or has it wait; the error's subject is the path. What failed here concerns this file alone. It
    /// fails too where the path leads to what the batch has written by another path, whatever the names look like.
    Outcome write(const std::string& path, std::span<const std::uint8_t> bytes);

    /// All that wait take their places, in the order in which they were written. Gives an error for each file that
    /// could not, since the last call; the file that it was to replace is then as before. The batch may go on.
    std::vector<Error> finish();

private:
    struct State;
    const std::unique_ptr<State> m_state;
};

} // namespace lamina
