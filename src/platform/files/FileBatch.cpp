#include "platform/files/FileBatch.h"

#include "platform/files/AtomicWriting_p.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileIdentity.h"
#include "platform/files/FileWriting.h"
#include "platform/files/UnfinishedFile_p.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

/// Each holds a descriptor, and one more where it has its folder to itself; others need some too.
std::size_t mostWaiting()
{
    constexpr rlim_t kMost = 512;
    rlimit files{};
    return ::getrlimit(RLIMIT_NOFILE, &files) == 0 ? std::clamp<rlim_t>(files.rlim_cur / 4, 1, kMost) : kMost;
}

/// A file that is complete and waits for its name.
struct WaitingFile {
    std::string path; ///< as it was asked for
    std::unique_ptr<UnfinishedFile> file;
    std::string name;
    int error = 0;
};

/// To wait for a whole device is to wait for what others write there too: it is for many files.
constexpr std::size_t kFewFiles = 8;

/// What fails for the device concerns all files on it.
void syncFilesOfDevice(const std::vector<WaitingFile*>& files)
{
    const auto sync = files.size() < kFewFiles ? ::fdatasync : ::syncfs;
    int error = 0;
    for (WaitingFile* const waiting : files) {
        if (files.size() < kFewFiles || waiting == files.front())
            error = sync(waiting->file->file().get()) != 0 ? errno : 0;
        waiting->error = error;
    }
}

void syncDevices(std::vector<WaitingFile>& files)
{
    std::map<dev_t, std::vector<WaitingFile*>> devices;
    for (WaitingFile& waiting : files) {
        struct stat status {};
        if (::fstat(waiting.file->file().get(), &status) == 0)
            devices[status.st_dev].push_back(&waiting);
        else
            waiting.error = errno;
    }
    for (const auto& device : devices)
        syncFilesOfDevice(device.second);
}

void takeNames(std::vector<WaitingFile> files, std::vector<Error>& failures)
{
    syncDevices(files);
    for (const WaitingFile& waiting : files) {
        if (waiting.error == 0)
            waiting.file->replace(waiting.name);
        const int error = waiting.error != 0 ? waiting.error : waiting.file->error();
        if (error != 0)
            failures.push_back({waiting.path, writingFailure(error)});
    }
}

/// Whether it may go well without the files that wait: they take room beside those that they replace, and descriptors.
bool isForTheWaiting(const Error& error)
{
    constexpr int kShort[] = {ENOSPC, EMFILE, ENFILE};
    return std::ranges::any_of(kShort, [&](int number) { return error.cause == writingFailure(number); });
}

} // namespace

struct FileBatch::State {
    std::mutex mutex;
    std::vector<WaitingFile> waiting;
    std::vector<Error> failures;
    const std::size_t most = mostWaiting();
    std::mutex naming;                           ///< from the look at what bears a name until that is taken
    std::map<FileIdentity, std::string> written; ///< the path of each file that is in its place or waits for it

    Outcome write(const std::string& path, std::span<const std::uint8_t> bytes)
    {
        const FilePieces pieces = onePiece(bytes);
        std::string other;
        Outcome outcome = writeWhole(path, fillingWith(pieces), throughWith(pieces),
                                     [&](std::unique_ptr<UnfinishedFile> file, const std::string& name, bool replaces) {
                                         file->finish(); // what the file system says only now concerns this file
                                         if (file->error() != 0)
                                             return file->error();
                                         other = enter(path, *file, replaces ? nullptr : &name);
                                         if (!other.empty())
                                             return EEXIST;
                                         return replaces ? wait(path, std::move(file), name) : file->error();
                                     });
        return other.empty() ? outcome : Outcome(Error{path, "is the same file as " + other});
    }

    /// Keeps in mind whose file it is, and has it take the name if any. The path of another file of the batch that this
    /// one would replace, which then stays: names may be one for a file system that doesn't tell capitals apart, and
    /// links may lead to one that wasn't there before.
    std::string enter(const std::string& path, UnfinishedFile& file, const std::string* name)
    {
        const std::lock_guard lock(naming);
        const std::optional<FileIdentity> there = identityOf(path);
        if (there) {
            std::string& owner = written.try_emplace(*there, path).first->second;
            // What was taken away may have left its number to another file.
            if (owner != path && identityOf(owner) == there)
                return owner;
            owner = path;
        }
        if (const std::optional<FileIdentity> itself = identityOf(file.file().get()))
            written.insert_or_assign(*itself, path);
        if (name)
            file.replace(*name);
        return {};
    }

    /// Whether there were any.
    bool finishWaiting()
    {
        const std::lock_guard lock(mutex);
        const bool any = !waiting.empty();
        takeNames(std::exchange(waiting, {}), failures);
        return any;
    }

    int wait(const std::string& path, std::unique_ptr<UnfinishedFile> file, const std::string& name)
    {
        const std::lock_guard lock(mutex);
        waiting.push_back({path, std::move(file), name});
        if (waiting.size() >= most)
            takeNames(std::exchange(waiting, {}), failures);
        return 0;
    }
};

FileBatch::FileBatch()
    : m_state(std::make_unique<State>())
{
}

FileBatch::~FileBatch() = default;

Outcome FileBatch::write(const std::string& path, std::span<const std::uint8_t> bytes)
{
    Outcome written = m_state->write(path, bytes);
    if (!written && isForTheWaiting(written.error()) && m_state->finishWaiting())
        written = m_state->write(path, bytes);
    return written;
}

std::vector<Error> FileBatch::finish()
{
    m_state->finishWaiting();
    const std::lock_guard lock(m_state->mutex);
    return std::exchange(m_state->failures, {});
}

} // namespace lamina
