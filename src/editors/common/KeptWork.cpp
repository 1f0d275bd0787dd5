#include "editors/common/KeptWork.h"

#include "editors/common/KeptJournal.h"
#include "editors/common/KeptWorkFiles_p.h"
#include "editors/common/RecordReading.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/NotificationCenter.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileWriting.h"
#include "platform/image/codecs/PictureEncoding.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <utility>

namespace lamina {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kRecords = 2;
/// Of processes that work at once.
constexpr int kMostFolders = 16;

double secondsNow()
{
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

std::vector<std::string> picturesNamedIn(const std::string& text)
{
    std::vector<std::string> names;
    readRecordValue([&] {
        RecordValue::parse(text).at(keptfield::kPictures).get_to(names);
        return true;
    });
    return names;
}

void tellChange()
{
    DispatchQueue::main().async([] { NotificationCenter::defaultCenter().post(kKeptWorksChangedNotification); });
}

} // namespace

DispatchQueue& keptWorksQueue()
{
    static auto* const queue = new DispatchQueue("kept works");
    return *queue;
}

KeptWork::KeptWork(const KeptKind& kind)
    : m_kind(kind)
{
}

KeptWork::~KeptWork()
{
    if (!m_lock)
        return;
    m_lock.reset();
    tellChange();
}

std::shared_ptr<KeptWork> KeptWork::begin(const KeptKind& kind)
{
    return std::shared_ptr<KeptWork>(new KeptWork(kind));
}

Result<std::shared_ptr<KeptWork>> KeptWork::open(const KeptOffer& offer, const KeptKind& kind)
{
    const std::shared_ptr<KeptWork> work(new KeptWork(kind));
    if (!work->claimFolder(offer.folder))
        return workIsOpenElsewhere();
    auto records = readKeptRecords(offer.folder, {kind});
    if (!records)
        return workIsDamaged();
    work->m_records = std::move(*records);
    work->loadPictures();
    return work;
}

bool KeptWork::claimFolder(const std::string& folder)
{
    m_lock = FolderLock::take(folder);
    if (!m_lock)
        return false;
    m_hadFolder = true;
    m_folder = folder;
    m_pictures.emplace(folder);
    return true;
}

Outcome KeptWork::claim()
{
    if (m_lock)
        return success();
    // Once it had a place of its own it leaves that of others alone.
    if (const auto offered = newestWork({m_kind}); !m_hadFolder && offered && claimFolder(offered->folder))
        return success();
    if (Outcome made = makePrivateFolder(keptWorksFolder()); !made)
        return made;
    for (int number = 1; number <= kMostFolders; ++number) {
        const std::string folder = keptFolder(m_kind, number);
        if (Outcome made = makePrivateFolder(folder); !made)
            return made;
        if (!keptRecordsAreIn(folder) && claimFolder(folder))
            return success();
    }
    return Error{keptWorksFolder(), "too many works are open"};
}

bool KeptWork::read(const std::function<bool(const RecordValue& record, KeptPictures& pictures)>& read)
{
    return std::any_of(m_records.rbegin(), m_records.rend(), [&](const std::string& text) {
        const RecordValue record = RecordValue::parse(text, nullptr, false);
        return record.contains(keptfield::kWork) && read(record[keptfield::kWork], *m_pictures);
    });
}

std::string KeptWork::recordOf(RecordValue work, const std::vector<std::string>& pictures) const
{
    const RecordValue record{{keptfield::kEditor, std::string(m_kind.name)},
                             {keptfield::kVersion, m_kind.version},
                             {keptfield::kWhen, secondsNow()},
                             {keptfield::kPictures, pictures},
                             {keptfield::kWork, std::move(work)}};
    return record.dump(-1, ' ', true, RecordValue::error_handler_t::replace);
}

Outcome KeptWork::write(const Write& write, const UIImage& print)
{
    if (Outcome claimed = claim(); !claimed)
        return claimed;
    m_pictures->beginRecord();
    RecordValue work;
    write(*m_pictures, work);
    const Result<std::vector<std::string>> pictures = m_pictures->endRecord();
    if (!pictures)
        return pictures.error();
    if (Outcome written = writeJournal(recordOf(std::move(work), *pictures)); !written)
        return written;
    Outcome printed = writePrint(print);
    removeOtherFiles();
    m_pictures->forgetOthers(pictureNames());
    return printed;
}

Outcome KeptWork::writeJournal(const std::string& record)
{
    std::vector<std::string> records = m_records;
    records.push_back(record);
    if (records.size() > kRecords)
        records.erase(records.begin());
    Outcome written = writePrivateFile(keptFile(m_folder, keptfile::kJournal), journalOf(records));
    if (written)
        m_records = std::move(records);
    return written;
}

Outcome KeptWork::writePrint(const UIImage& print) const
{
    const std::string path = keptFile(m_folder, keptfile::kPrint);
    const Result<std::vector<std::uint8_t>> png = encodePNG(print.cgImage(), path);
    const Outcome written = png ? writePrivateFile(path, *png) : Outcome(png.error());
    std::error_code ignored;
    if (!written)
        fs::remove(path, ignored); // none is better than that of another state
    return print ? written : success();
}

/// Of the last record, or of the one before where that one's are not all there; not of both, since they may be large.
void KeptWork::loadPictures()
{
    for (auto text = m_records.rbegin(); text != m_records.rend(); ++text) {
        if (m_pictures->load(picturesNamedIn(*text)))
            return;
    }
}

std::vector<std::string> KeptWork::pictureNames() const
{
    std::vector<std::string> names;
    for (const std::string& text : m_records)
        std::ranges::copy(picturesNamedIn(text), std::back_inserter(names));
    return names;
}

/// Pictures that no record names any more, and what a kill has left unfinished. The folder is ours.
void KeptWork::removeOtherFiles() const
{
    const std::vector<std::string> named = pictureNames();
    std::error_code failure;
    for (fs::directory_iterator entry(m_folder, failure), end; !failure && entry != end; entry.increment(failure)) {
        const std::string name = entry->path().filename().string();
        const bool isOld = isKeptPictureName(name) && std::find(named.begin(), named.end(), name) == named.end();
        std::error_code ignored;
        if (isOld || name.ends_with(kUnfinishedSuffix))
            fs::remove(entry->path(), ignored);
    }
}

Outcome KeptWork::remove()
{
    if (!m_lock)
        return success();
    m_records.clear();
    m_pictures->forgetOthers({});
    std::error_code failure;
    // Without the journal the rest is nothing, whenever this ends.
    fs::remove(keptFile(m_folder, keptfile::kJournal), failure);
    if (!failure)
        fs::remove_all(m_folder, failure);
    const std::string folder = std::exchange(m_folder, {});
    m_lock.reset();
    tellChange();
    if (failure)
        return Error{folder, writingFailure(failure.value())};
    return success();
}

Outcome removeKeptWork(const KeptOffer& offer)
{
    const auto lock = FolderLock::take(offer.folder);
    if (!lock)
        return workIsOpenElsewhere();
    std::error_code failure;
    fs::remove_all(offer.folder, failure);
    tellChange();
    if (failure)
        return Error{offer.folder, writingFailure(failure.value())};
    return success();
}

} // namespace lamina
