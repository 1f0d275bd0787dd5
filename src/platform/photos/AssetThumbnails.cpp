#include "platform/photos/AssetThumbnails_p.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/base/MemoryWarning.h"
#include "platform/files/FileReading.h"
#include "platform/files/PrivateFolder.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureFacts.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/photos/AssetScaling_p.h"
#include "platform/photos/DesktopThumbnail_p.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PhotoLoading.h"
#include "platform/photos/PhotoSource.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

/// Pixels of the longer side of what is kept, at most: the first that is large enough for a request. The first serves
/// the grid of a phone, the others wide windows, and long panoramas that cover a square.
constexpr std::array kKeptSides{512, 768, 1152};
/// Pixels of the shorter side of what is read, at least: what is kept for a list of albums is to serve a grid too.
constexpr int kLeastRead = 256;

/// Pictures that wait to be written; one of them takes some 1.5 MB.
constexpr int kMostUnkept = 16;

CGSize reducedTo(int longSide, IntSize picture)
{
    const double factor = static_cast<double>(longSide) / std::max(picture.width, picture.height);
    const auto side = [factor](int length) { return std::max(1.0, std::round(length * factor)); };
    return {side(picture.width), side(picture.height)};
}

/// What is kept of a picture that was read for the request: it as it was read where that is small enough, else reduced.
/// Empty where no size that is kept would do.
UIImage keptPicture(const UIImage& picture, const AssetPictureRequest& request)
{
    const IntSize own = picture.pixelSize();
    for (const int side : kKeptSides) {
        const CGSize size = side < std::max(own.width, own.height) ? reducedTo(side, own) : picture.size();
        if (isEnoughFor(request, {static_cast<int>(size.width), static_cast<int>(size.height)}))
            return redrawn(picture, size, Ground::White);
    }
    return {};
}

/// The sides of the photo as shown; empty where nobody knows them.
IntSize photoSize(const PHAsset& asset)
{
    if (asset.pixelWidth > 0 && asset.pixelHeight > 0)
        return {asset.pixelWidth, asset.pixelHeight};
    const Result<PictureFacts> facts = readPictureFacts(asset.path);
    return facts ? IntSize{facts->width, facts->height} : IntSize();
}

} // namespace

AssetThumbnails::AssetThumbnails(Places places)
    : m_memory(places.memory)
    , m_store(std::move(places.keptFolder))
    , m_desktopFolder(std::move(places.desktopFolder))
    , m_memoryWarning(NotificationCenter::defaultCenter().addObserver(UIApplicationDidReceiveMemoryWarningNotification,
                                                                      [this](const Notification&) { m_memory.drop(); }))
{
}

AssetThumbnails& AssetThumbnails::shared()
{
    static auto* const thumbnails = [] {
        const std::string own = cacheFolder();
        return new AssetThumbnails({own.empty() ? own : own + "/thumbnails", desktopThumbnailFolder()});
    }();
    return *thumbnails;
}

AssetThumbnails::Found AssetThumbnails::find(const AssetPictureRequest& request, Wanted wanted)
{
    const std::optional<FileStamp> file = stampOfFile(request.asset.path);
    if (!file)
        return {};
    UIImage coarse;
    if (isThumbnail(request)) {
        if (const std::optional<UIImage> known = m_memory.find(*file, request))
            return {*known, true};
        if (const UIImage found = findOnDisk(*file, request, coarse)) {
            const UIImage sized = sizedForRequest(found, request, Ground::White);
            m_memory.keep(*file, request, sized);
            return {sized, true};
        }
    }
    if (wanted == Wanted::CoarseToo)
        return {coarsePicture(*file, request, std::move(coarse)), false};
    return {};
}

/// `coarse` takes what was found and is too small.
UIImage AssetThumbnails::findOnDisk(const FileStamp& file, const AssetPictureRequest& request, UIImage& coarse)
{
    UIImage kept = m_store.find(file, decodedShortSide(request, *wholeTarget(request)));
    if (isEnoughFor(request, kept.pixelSize()))
        return kept;
    coarse = std::move(kept);
    return loadDesktopThumbnail(m_desktopFolder, file, request);
}

UIImage AssetThumbnails::coarsePicture(const FileStamp& file, const AssetPictureRequest& request, UIImage coarse)
{
    if (!coarse)
        coarse = m_memory.findAny(file);
    if (!coarse && !isThumbnail(request))
        coarse = m_store.find(file, 0);
    if (coarse)
        return coarse;
    const Result<UIImage> embedded = loadEmbeddedThumbnail(request.asset.path);
    return embedded ? redrawn(*embedded, embedded->size(), Ground::White) : UIImage();
}

AssetThumbnails::Reading AssetThumbnails::read(const AssetPictureRequest& request, const std::atomic<bool>* cancelled)
{
    const std::string& path = request.asset.path;
    const std::optional<FileStamp> file = stampOfFile(path);
    const IntSize own = photoSize(request.asset);
    AssetPictureRequest known = request;
    known.asset.pixelWidth = own.width;
    known.asset.pixelHeight = own.height;
    const int shortSide = std::max(kLeastRead, decodedShortSide(known, *wholeTarget(known)));
    std::string warning; // for who takes the photo itself
    const Result<UIImage> stored =
        loadAsStored({path, nullptr, path}, {.shortSide = shortSide, .cancelled = cancelled, .warning = &warning});
    if (!stored)
        return failed(stored.error(), file, path);
    // A small photo is as soon read itself.
    const bool isLarge = std::max(own.width, own.height) > kKeptSides.front();
    UIImage kept = isLarge ? keptPicture(*stored, request) : UIImage();
    const UIImage sized = sizedForRequest(kept ? kept : *stored, request, Ground::White);
    // One that was replaced while it was read may be of both.
    const bool isKnown = sized && file && stampOfFile(path) == file;
    if (isKnown)
        m_memory.keep(*file, request, sized);
    return {madeOrNoMemory(sized, path), file.value_or(FileStamp()), isKnown ? std::move(kept) : UIImage()};
}

/// A file that could be opened and holds no picture is remembered; all else may be different the next time.
AssetThumbnails::Reading AssetThumbnails::failed(const Error& error, const std::optional<FileStamp>& file,
                                                 const std::string& path)
{
    const bool passing = error.cause == cause::kCancelled || error.cause == cause::kNoMemory;
    if (file && !passing && openFileForReading(path))
        m_memory.keepUnreadable(*file);
    return {error, {}, {}};
}

void AssetThumbnails::keep(const Reading& reading)
{
    if (!reading.kept)
        return;
    if (m_unkept.fetch_add(1) < kMostUnkept) {
        PictureWorkers::shared().add(PictureWorkRank::Keep, [this, file = reading.file, kept = reading.kept] {
            keepNow(file, kept);
            --m_unkept;
        });
    } else {
        --m_unkept;
        keepNow(reading.file, reading.kept);
    }
}

void AssetThumbnails::keepNow(const FileStamp& file, const UIImage& picture)
{
    if (m_store.keep(file, picture))
        PictureWorkers::shared().add(PictureWorkRank::Warm, [this] { m_store.trim(); });
}

Result<UIImage> AssetThumbnails::load(const AssetPictureRequest& request, const std::atomic<bool>* cancelled)
{
    if (const Found found = find(request, Wanted::Final); found.isFinal)
        return found.picture ? Result<UIImage>(found.picture) : Error{request.asset.path, cause::kNotAPicture};
    const Reading reading = read(request, cancelled);
    keep(reading);
    return reading.picture;
}

PictureWorkKind readingKind(const std::string& path)
{
    std::array<std::uint8_t, 64> head{};
    const Result<OpenedFile> file = openFileForReading(path);
    const ssize_t count = file ? ::read(file->descriptor.get(), head.data(), head.size()) : 0;
    const PictureFormat* const format =
        pictureFormatForHead(std::span(head).first(static_cast<std::size_t>(std::max<ssize_t>(count, 0))));
    return format && format->uti == "public.heic" ? PictureWorkKind::OneAtATime : PictureWorkKind::Ordinary;
}

} // namespace lamina
