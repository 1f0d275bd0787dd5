#pragma once

#include "editors/common/KeptWork.h"

#include <optional>
#include <string>
#include <vector>

namespace lamina {

/// What lies in a kept work's folder beside its pictures.
namespace keptfile {
inline constexpr const char* kJournal = "journal";
inline constexpr const char* kPrint = "print.png";
} // namespace keptfile

/// What stands round a work in its record.
namespace keptfield {
inline constexpr const char* kEditor = "editor";
inline constexpr const char* kVersion = "version";
inline constexpr const char* kWhen = "when";
inline constexpr const char* kPictures = "pictures";
inline constexpr const char* kWork = "work";
} // namespace keptfield

/// The folder of the kind's work of that number, from 1, and a file in it.
std::string keptFolder(const KeptKind& kind, int number);
std::string keptFile(const std::string& folder, const char* name);

/// Whether there is anything in the folder that may be somebody's work.
bool keptRecordsAreIn(const std::string& folder);
/// The records of the journal that are whole and of one of the kinds, in a version that is known; never none.
Result<std::vector<std::string>> readKeptRecords(const std::string& folder, const std::vector<KeptKind>& kinds);

/// `offeredWork`, on any thread.
std::optional<KeptOffer> newestWork(const std::vector<KeptKind>& kinds);

} // namespace lamina
