#include "progressive/ProgressiveCache_p.h"

#include "platform/base/Result.h"
#include "platform/files/FileReading.h"
#include "platform/files/FileWriting.h"
#include "platform/files/PrivateFolder.h"
#include "platform/net/NSURLConnection.h"

#include <QCryptographicHash>
#include <QString>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

namespace lamina::progressivecache {

namespace fs = std::filesystem;

namespace {

/// Empty where nothing can be kept of the address.
std::string pathOf(const std::string& url)
{
    const std::string place = folder();
    const std::string name = fileName(url);
    return place.empty() || name.empty() ? std::string() : place + "/" + name;
}

} // namespace

std::string folder()
{
    const std::string caches = cacheFolder();
    return caches.empty() ? std::string() : caches + "/NYXProgressiveImageViewCache";
}

std::string fileName(const std::string& url)
{
    const QByteArray bytes = QByteArray::fromStdString(url);
    if (QString::fromUtf8(bytes).toUtf8() != bytes)
        return {};
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex().toStdString();
}

std::optional<double> age(const std::string& url)
{
    std::error_code failure;
    const fs::file_time_type written = fs::last_write_time(pathOf(url), failure);
    if (failure)
        return std::nullopt;
    return std::chrono::duration<double>(fs::file_time_type::clock::now() - written).count();
}

std::optional<std::vector<std::uint8_t>> read(const std::string& url)
{
    Result<std::vector<std::uint8_t>> bytes =
        readSmallFile(pathOf(url), static_cast<std::size_t>(NSURLRequest().mostBytes));
    return bytes ? std::optional(std::move(bytes).value()) : std::nullopt;
}

void write(const std::string& url, std::span<const std::uint8_t> bytes)
{
    const std::string path = pathOf(url);
    if (!path.empty() && makePrivateFolder(folder()))
        static_cast<void>(writePrivateFile(path, bytes, Durability::Ordinary));
}

void remove(const std::string& url)
{
    std::error_code ignored;
    if (const std::string path = pathOf(url); !path.empty())
        fs::remove(path, ignored);
}

void removeAll()
{
    std::error_code ignored;
    if (const std::string place = folder(); !place.empty())
        fs::remove_all(place, ignored);
}

} // namespace lamina::progressivecache
