#include "platform/photos/thumbnails/ThumbnailStore.h"

#include "platform/base/Log.h"
#include "platform/files/FileReading.h"
#include "platform/files/FileWriting.h"
#include "platform/files/PrivateFolder.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "platform/image/codecs/PictureFormats.h"

#include <QCryptographicHash>

#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace lamina {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLargestFile = std::size_t{2} << 20;
constexpr double kQuality = 0.85;
/// Files that are used all the time are marked as used this seldom.
constexpr std::time_t kMarkedEvery = 3600;
/// After a failure nothing is tried for so long: a full disk may have been cleared.
constexpr std::chrono::seconds kPause{60};
constexpr int kSealBytes = 16;

using Bytes = std::vector<std::uint8_t>;

QByteArrayView viewOf(const void* bytes, std::size_t count)
{
    return {static_cast<const char*>(bytes), static_cast<qsizetype>(count)};
}

/// By path, time and length: numbers of devices are given anew with each start, and those of files on cards whenever
/// one is put in. In this machine's order: the folder does not travel.
QByteArray hashOf(const FileStamp& file, QByteArrayView contents = {})
{
    const std::int64_t numbers[] = {file.modified, file.bytes};
    QCryptographicHash hash(QCryptographicHash::Md5);
    hash.addData(contents);
    hash.addData(viewOf(numbers, sizeof numbers));
    hash.addData(viewOf(file.path.data(), file.path.size()));
    return hash.result();
}

/// Puts the seal behind the file's end, where decoders don't look.
void seal(Bytes& bytes, const FileStamp& file)
{
    const QByteArray hash = hashOf(file, viewOf(bytes.data(), bytes.size()));
    bytes.insert(bytes.end(), hash.begin(), hash.end());
}

bool isSealed(const Bytes& bytes, const FileStamp& file)
{
    if (bytes.size() <= kSealBytes)
        return false;
    const std::size_t content = bytes.size() - kSealBytes;
    return hashOf(file, viewOf(bytes.data(), content)) == viewOf(bytes.data() + content, kSealBytes);
}

/// The time of reading says when a file was used last. Set by hand, as many systems don't.
void markAsUsed(const std::string& path)
{
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || std::time(nullptr) - status.st_atim.tv_sec < kMarkedEvery)
        return;
    const timespec times[] = {{0, UTIME_NOW}, {0, UTIME_OMIT}};
    ::utimensat(AT_FDCWD, path.c_str(), times, 0);
}

struct KeptFile {
    std::int64_t used = 0; ///< nanoseconds
    std::int64_t bytes = 0;
    std::string path;
};

/// All files in the folder and its folders, unfinished ones too.
std::vector<KeptFile> filesIn(const std::string& folder)
{
    std::vector<KeptFile> files;
    std::error_code failure;
    for (fs::recursive_directory_iterator entry(folder, failure); !failure && entry != fs::end(entry);
         entry.increment(failure)) {
        struct stat status {};
        if (::lstat(entry->path().c_str(), &status) == 0 && S_ISREG(status.st_mode))
            files.push_back({status.st_atim.tv_sec * std::int64_t{1'000'000'000} + status.st_atim.tv_nsec,
                             status.st_size, entry->path().string()});
    }
    return files;
}

} // namespace

ThumbnailStore::ThumbnailStore(std::string folder, std::int64_t mostBytes)
    : m_folder(std::move(folder))
    , m_mostBytes(mostBytes)
    , m_untrimmed(mostBytes) // nobody knows yet what is there
{
}

std::string ThumbnailStore::pathFor(const FileStamp& file) const
{
    const std::string name = hashOf(file).toHex().toStdString();
    return m_folder + '/' + name.substr(0, 2) + '/' + name.substr(2) + ".jpg";
}

UIImage ThumbnailStore::find(const FileStamp& file, int shortSide) const
{
    if (m_folder.empty())
        return {};
    const std::string path = pathFor(file);
    const Result<Bytes> bytes = readSmallFile(path, kLargestFile);
    if (!bytes || !isSealed(*bytes, file))
        return {};
    markAsUsed(path);
    const Result<UIImage> thumbnail = decodePicture(*bytes, path, {.shortSide = shortSide});
    return thumbnail ? *thumbnail : UIImage();
}

bool ThumbnailStore::keep(const FileStamp& file, const UIImage& thumbnail)
{
    if (!mayWrite())
        return false;
    const std::string path = pathFor(file);
    Result<Bytes> bytes =
        encodePicture(thumbnail.cgImage(), *pictureFormatForUTI(kUTTypeJPEG), path, {.quality = kQuality});
    if (!bytes)
        return false;
    seal(*bytes, file);
    const Outcome written = write(path, *bytes);
    if (!written)
        couldNotWrite(written.error());
    return written && isMuchSinceTrimming(static_cast<std::int64_t>(bytes->size()));
}

Outcome ThumbnailStore::write(const std::string& path, const Bytes& bytes) const
{
    if (writePrivateFile(path, bytes, Durability::Ordinary))
        return success();
    if (const Outcome made = makePrivateFolder(m_folder); !made) // which may be there with another mode
        return made;
    if (const Outcome made = makePrivateFolder(fs::path(path).parent_path().string()); !made)
        return made;
    return writePrivateFile(path, bytes, Durability::Ordinary);
}

bool ThumbnailStore::mayWrite()
{
    const std::lock_guard lock(m_mutex);
    return !m_folder.empty() && std::chrono::steady_clock::now() >= m_pausedUntil;
}

void ThumbnailStore::couldNotWrite(const Error& error)
{
    const std::lock_guard lock(m_mutex);
    m_pausedUntil = std::chrono::steady_clock::now() + kPause;
    if (!std::exchange(m_told, true))
        logWarning("thumbnails are not kept: " + error.message());
}

bool ThumbnailStore::isMuchSinceTrimming(std::int64_t bytes)
{
    const std::lock_guard lock(m_mutex);
    m_untrimmed += bytes;
    if (m_untrimmed < m_mostBytes / 16)
        return false;
    m_untrimmed = 0;
    return true;
}

void ThumbnailStore::trim() const
{
    std::vector<KeptFile> files = filesIn(m_folder);
    std::int64_t bytes = 0;
    for (const KeptFile& file : files)
        bytes += file.bytes;
    if (bytes <= m_mostBytes)
        return;
    std::sort(files.begin(), files.end(), [](const KeptFile& x, const KeptFile& y) { return x.used < y.used; });
    const std::int64_t wanted = m_mostBytes / 16 * 15;
    for (const KeptFile& file : files) {
        if (bytes <= wanted)
            return;
        std::error_code ignored; // another process may have removed it
        fs::remove(file.path, ignored);
        bytes -= file.bytes;
    }
}

} // namespace lamina
