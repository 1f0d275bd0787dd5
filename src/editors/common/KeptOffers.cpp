// Which works there are that somebody left.

#include "editors/common/KeptJournal.h"
#include "editors/common/KeptWork.h"
#include "editors/common/KeptWorkFiles_p.h"
#include "editors/common/RecordReading.h"
#include "editors/common/RecordValue.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileReading.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace lamina {

namespace fs = std::filesystem;

namespace {

/// Hundreds of times what an editor writes.
constexpr std::size_t kLargestJournal = std::size_t{1} << 20;
constexpr std::size_t kLargestPrint = std::size_t{4} << 20;

constexpr const char* kNewer = "a later version of Lamina has kept this work";
constexpr const char* kDamaged = "what was kept here can't be read";

std::string g_folder;

void logOnce(const Error& error)
{
    static std::mutex mutex;
    static std::set<std::string> logged;
    const std::lock_guard lock(mutex);
    if (logged.insert(error.message()).second)
        logWarning(error.message());
}

/// Empty: the record is of one of the kinds.
std::string whyNot(const RecordValue& record, const std::vector<KeptKind>& kinds)
{
    std::string editor;
    int version = 0;
    double when = 0;
    const bool read = readRecordValue([&] {
        record.at(keptfield::kEditor).get_to(editor);
        record.at(keptfield::kVersion).get_to(version);
        record.at(keptfield::kWhen).get_to(when);
        return record.at(keptfield::kWork).is_object() && std::isfinite(when);
    });
    const auto kind =
        std::find_if(kinds.begin(), kinds.end(), [&](const KeptKind& known) { return known.name == editor; });
    if (!read || kind == kinds.end())
        return kDamaged;
    return version > kind->version ? kNewer : "";
}

/// The work in the folder, if there is one that nobody has open.
std::optional<KeptOffer> offerIn(const std::string& folder, const KeptKind& kind)
{
    std::error_code ignored;
    if (!fs::exists(keptFile(folder, keptfile::kJournal), ignored) || FolderLock::isTaken(folder))
        return std::nullopt;
    const auto records = readKeptRecords(folder, {kind});
    if (!records) {
        logOnce(records.error());
        return std::nullopt;
    }
    const RecordValue last = RecordValue::parse(records->back(), nullptr, false);
    return KeptOffer{folder, std::string(kind.name), last[keptfield::kWhen].get<double>()};
}

/// All folders of the kind, whatever is in them.
std::vector<std::string> foldersOf(const KeptKind& kind)
{
    const std::string first(kind.name);
    std::vector<std::string> folders;
    std::error_code failure;
    for (fs::directory_iterator entry(g_folder, failure), end; !failure && entry != end; entry.increment(failure)) {
        const std::string name = entry->path().filename().string();
        if (name == first || name.starts_with(first + '-'))
            folders.push_back(entry->path().string());
    }
    return folders;
}

} // namespace

void setKeptWorksFolder(std::string folder)
{
    g_folder = std::move(folder);
}

const std::string& keptWorksFolder()
{
    return g_folder;
}

Error workIsOpenElsewhere()
{
    return Error{{}, "it is open in another window"};
}

Error workIsDamaged()
{
    return Error{{}, "a part of it is missing or damaged"};
}

std::string keptFolder(const KeptKind& kind, int number)
{
    return g_folder + '/' + std::string(kind.name) + (number > 1 ? '-' + std::to_string(number) : std::string());
}

std::string keptFile(const std::string& folder, const char* name)
{
    return folder + '/' + name;
}

bool keptRecordsAreIn(const std::string& folder)
{
    const auto bytes = readSmallFile(keptFile(folder, keptfile::kJournal), kLargestJournal);
    if (!bytes)
        return false;
    const JournalContents journal = readJournal(*bytes);
    return journal.isNewer || !journal.records.empty();
}

Result<std::vector<std::string>> readKeptRecords(const std::string& folder, const std::vector<KeptKind>& kinds)
{
    const std::string path = keptFile(folder, keptfile::kJournal);
    const auto bytes = readSmallFile(path, kLargestJournal);
    if (!bytes)
        return bytes.error();
    JournalContents journal = readJournal(*bytes);
    std::string why = journal.isNewer ? kNewer : kDamaged;
    std::erase_if(journal.records, [&](const std::string& text) {
        const std::string fault = whyNot(RecordValue::parse(text, nullptr, false), kinds);
        why = fault.empty() ? why : fault;
        return !fault.empty();
    });
    if (journal.records.empty())
        return Error{path, why};
    return std::move(journal.records);
}

std::optional<KeptOffer> newestWork(const std::vector<KeptKind>& kinds)
{
    std::optional<KeptOffer> newest;
    for (const KeptKind& kind : kinds) {
        for (const std::string& folder : foldersOf(kind)) {
            const auto offer = offerIn(folder, kind);
            if (offer && (!newest || offer->when > newest->when))
                newest = offer;
        }
    }
    return newest;
}

std::optional<KeptOffer> offeredWork(const std::vector<KeptKind>& kinds)
{
    return g_folder.empty() ? std::nullopt : newestWork(kinds);
}

UIImage printOfKeptWork(const KeptOffer& offer)
{
    const std::string path = keptFile(offer.folder, keptfile::kPrint);
    const auto bytes = readSmallFile(path, kLargestPrint);
    if (!bytes)
        return {};
    DecodeOptions options;
    options.memoryLimit = kLargestPrint;
    const Result<UIImage> print = decodePicture(*bytes, path, options);
    return print ? *print : UIImage();
}

} // namespace lamina
