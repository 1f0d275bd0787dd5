#pragma once

#include "platform/base/Result.h"
#include "platform/files/FileReading.h"
#include "platform/files/FileWriting.h"
#include "platform/files/UnfinishedFile_p.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace lamina {

/// Writes the unfinished file; the cause where it failed for another reason than the file.
using Filling = std::function<std::string(UnfinishedFile& file)>;

/// Writes what is open and has no name to be taken; the cause of failure, empty on success.
using Through = std::function<std::string(const FileDescriptor& file)>;

/// Ends a file that is written and has it take its name, at once or, where it `replaces` the one that bears it, later;
/// the error's number, or 0.
using Naming = std::function<int(std::unique_ptr<UnfinishedFile> file, const std::string& name, bool replaces)>;

/// What is in memory already.
FilePieces onePiece(std::span<const std::uint8_t> bytes);

/// Fill with the pieces, which are used up; they must outlive what is given.
Filling fillingWith(const FilePieces& pieces);
Through throughWith(const FilePieces& pieces);

/// Writes the whole file or nothing where `path` leads. What is no regular file is written through.
Outcome writeWhole(const std::string& path, const Filling& fill, const Through& through, const Naming& takeName);

} // namespace lamina
