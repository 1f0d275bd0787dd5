#include "platform/host/system/FolderListing.h"

#include "platform/image/codecs/PictureFormats.h"

#include <QCollator>
#include <QLocale>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <string_view>

namespace lamina {

namespace fs = std::filesystem;

namespace {

struct Candidate {
    FolderEntry entry;
    fs::file_time_type changed;
    QCollatorSortKey key;
};

Error refusal(const std::string& folder, const std::error_code& failure)
{
    if (failure == std::errc::no_such_file_or_directory)
        return Error{folder, "The folder does not exist."};
    if (failure == std::errc::permission_denied)
        return Error{folder, "You are not allowed to look into this folder."};
    if (failure == std::errc::not_a_directory)
        return Error{folder, "This is not a folder."};
    return Error{folder, "The folder can’t be read."};
}

std::optional<QString> asText(const std::string& name)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(QByteArrayView(name.data(), static_cast<qsizetype>(name.size())));
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

/// Of the containers that are read.
constexpr std::array<std::string_view, 12> kMovieExtensions{".mp4",  ".m4v", ".mov", ".mkv", ".webm", ".avi",
                                                            ".mpeg", ".mpg", ".ts",  ".3gp", ".ogv",  ".flv"};

bool isNamedAs(FolderFiles kind, const std::string& name)
{
    if (kind == FolderFiles::Pictures)
        return pictureFormatForFileName(name) != nullptr;
    const QString extension = QString::fromStdString(fs::path(name).extension().string()).toLower();
    return std::ranges::find(kMovieExtensions, extension.toStdString()) != kMovieExtensions.end();
}

std::optional<Candidate> candidate(const fs::directory_entry& file, FolderOrder order, FolderFiles kind,
                                   const QCollator& collator)
{
    std::string name = file.path().filename().string();
    if (name.starts_with('.'))
        return std::nullopt;
    std::error_code failure;
    const bool isFolder = file.is_directory(failure);
    if (!isFolder && (!isNamedAs(kind, name) || !file.is_regular_file(failure)))
        return std::nullopt;
    const std::optional<QString> text = asText(name);
    if (!text)
        return std::nullopt;
    fs::file_time_type changed = fs::file_time_type::min();
    if (!isFolder && order == FolderOrder::NewestFirst)
        changed = file.last_write_time(failure);
    return Candidate{{std::move(name), file.path().string(), isFolder}, changed, collator.sortKey(*text)};
}

QCollator readersOrder()
{
    // The locale "C" sorts by code points, which is no order for readers.
    const QLocale locale;
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

bool standsBefore(const Candidate& x, const Candidate& y)
{
    if (x.entry.isFolder != y.entry.isFolder)
        return x.entry.isFolder;
    if (x.changed != y.changed)
        return x.changed > y.changed;
    if (const int order = x.key.compare(y.key); order != 0)
        return order < 0;
    return x.entry.name < y.entry.name;
}

} // namespace

Result<FolderContents> listFolder(const std::string& folder, FolderOrder order, std::size_t limit,
                                  const std::atomic<bool>& cancelled, FolderFiles kind)
{
    std::error_code failure;
    fs::directory_iterator file(folder, failure);
    if (failure)
        return refusal(folder, failure);

    const QCollator collator = readersOrder();
    std::vector<Candidate> found;
    for (; !failure && !cancelled && file != fs::end(file); file.increment(failure))
        if (std::optional<Candidate> taken = candidate(*file, order, kind, collator))
            found.push_back(*std::move(taken));
    if (failure)
        return refusal(folder, failure);
    if (cancelled)
        return FolderContents();

    FolderContents contents;
    const std::size_t kept = std::min(limit, found.size());
    std::partial_sort(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(kept), found.end(), standsBefore);
    contents.leftOut = found.size() - kept;
    contents.entries.reserve(kept);
    for (std::size_t i = 0; i < kept; ++i)
        contents.entries.push_back(std::move(found[i].entry));
    return contents;
}

} // namespace lamina
