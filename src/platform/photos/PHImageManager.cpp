#include "platform/photos/PHImageManager.h"

#include "platform/base/AbandonableWork.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/AssetThumbnails_p.h"
#include "platform/photos/PictureQueue.h"
#include "platform/photos/thumbnails/PictureWorkers.h"

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <semaphore>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

namespace {

using DeliveryMode = PHImageRequestOptionsDeliveryMode;
using Wanted = AssetThumbnails::Wanted;

/// The picture, or the empty one; the log then tells why, unless nobody wants it any more.
UIImage pictureOrLog(const Result<UIImage>& picture, const std::atomic<bool>* cancelled)
{
    if (picture)
        return *picture;
    if (!cancelled || !*cancelled)
        logWarning(picture.error().subject + ": " + picture.error().cause);
    return {};
}

/// A picture, and what is to be said of it.
struct ReadPhoto {
    Result<UIImage> picture;
    std::string warning;
};

ReadPhoto readWhole(const AssetPictureRequest& request, const std::atomic<bool>* cancelled)
{
    std::string warning;
    Result<UIImage> picture = loadAssetPicture(request, cancelled, &warning);
    if (!warning.empty())
        logWarning(request.asset.path + ": " + warning);
    return {std::move(picture), std::move(warning)};
}

UIImage pictureNow(const AssetPictureRequest& request, const PHImageRequestOptions& options)
{
    if (isThumbnail(request))
        return pictureOrLog(AssetThumbnails::shared().load(request, nullptr), nullptr);
    const ReadPhoto read = readWhole(request, nullptr);
    if (!read.warning.empty() && options.warningHandler)
        options.warningHandler(read.warning);
    return pictureOrLog(read.picture, nullptr);
}

/// Photos that are read at the same time, at most: one that somebody waits for, and those that were cancelled where
/// their decoder does not hear of it. Each may take all the memory that a photo may.
constexpr int kMostRead = 3;

/// A place among these, given back when the last copy goes; null when the request was cancelled before one was free.
std::shared_ptr<void> placeForReading(const std::atomic<bool>& cancelled)
{
    static auto* const places = new std::counting_semaphore<kMostRead>(kMostRead);
    constexpr std::chrono::milliseconds kLook{10};
    while (!places->try_acquire_for(kLook))
        if (cancelled)
            return nullptr;
    return {places, [](auto* taken) { taken->release(); }};
}

} // namespace

/// The requests under way. Work on other threads knows a request by what it wants; the handlers stay here, and are
/// called and let go on the main queue, where they came to life.
class PHImageManager::Requests : public std::enable_shared_from_this<Requests> {
public:
    PHImageRequestID add(const AssetPictureRequest& wanted, const PHImageRequestOptions& options,
                         ResultHandler handler);
    void cancel(PHImageRequestID identifier);
    void cancelAll();

private:
    struct Request {
        PHImageRequestID identifier = PHInvalidImageRequestID;
        AssetPictureRequest wanted;
        Wanted answers = Wanted::Final;
        std::atomic<bool> cancelled = false;
        PictureWorkers::Ticket waiting; ///< guarded by the mutex
    };
    using RequestPointer = std::shared_ptr<Request>;
    struct Handlers {
        ResultHandler result;
        std::function<void(const std::string&)> warning;
    };
    struct Entry {
        RequestPointer request;
        std::shared_ptr<const Handlers> handlers;
    };
    enum class Answer { Coarse, Final };

    void wait(const RequestPointer& request, PictureWorkRank rank, PictureWorkKind kind,
              void (Requests::*work)(const RequestPointer&));
    void look(const RequestPointer& request);
    void readThumbnail(const RequestPointer& request);
    void readPhoto(const RequestPointer& request);
    void answer(const RequestPointer& request, const UIImage& picture, Answer kind, const std::string& warning = {});
    void deliver(PHImageRequestID identifier, const UIImage& picture, Answer kind, const std::string& warning);
    void stop(std::vector<Entry> entries);

    std::mutex m_mutex;
    PHImageRequestID m_last = PHInvalidImageRequestID;
    std::map<PHImageRequestID, Entry> m_entries;
};

PHImageRequestID PHImageManager::Requests::add(const AssetPictureRequest& wanted, const PHImageRequestOptions& options,
                                               ResultHandler handler)
{
    const auto request = std::make_shared<Request>();
    request->wanted = wanted;
    request->answers = options.deliveryMode == DeliveryMode::Opportunistic ? Wanted::CoarseToo : Wanted::Final;
    {
        const std::lock_guard lock(m_mutex);
        request->identifier = ++m_last;
        const auto handlers = std::make_shared<const Handlers>(std::move(handler), options.warningHandler);
        m_entries.emplace(m_last, Entry{request, handlers});
    }
    const bool small = isThumbnail(wanted);
    if (small || request->answers == Wanted::CoarseToo)
        wait(request, PictureWorkRank::Look, PictureWorkKind::Ordinary, &Requests::look);
    if (!small)
        pictureQueue().async([self = shared_from_this(), request, expected = DispatchQueue::main().expectWork()] {
            self->readPhoto(request);
        });
    return request->identifier;
}

/// Has `work` done for the request when its turn has come, unless it is cancelled before.
void PHImageManager::Requests::wait(const RequestPointer& request, PictureWorkRank rank, PictureWorkKind kind,
                                    void (Requests::*work)(const RequestPointer&))
{
    const std::lock_guard lock(m_mutex);
    if (!request->cancelled)
        request->waiting = PictureWorkers::shared().add(
            rank, [self = shared_from_this(), request, work] { ((*self).*work)(request); }, kind, request->waiting);
}

void PHImageManager::Requests::look(const RequestPointer& request)
{
    const AssetThumbnails::Found found = AssetThumbnails::shared().find(request->wanted, request->answers);
    if (found.isFinal)
        return answer(request, found.picture, Answer::Final);
    if (found.picture)
        answer(request, found.picture, Answer::Coarse);
    if (isThumbnail(request->wanted))
        wait(request, PictureWorkRank::Read, readingKind(request->wanted.asset.path), &Requests::readThumbnail);
}

void PHImageManager::Requests::readThumbnail(const RequestPointer& request)
{
    AssetThumbnails& thumbnails = AssetThumbnails::shared();
    const AssetThumbnails::Reading reading = thumbnails.read(request->wanted, &request->cancelled);
    answer(request, pictureOrLog(reading.picture, &request->cancelled), Answer::Final);
    thumbnails.keep(reading);
}

void PHImageManager::Requests::readPhoto(const RequestPointer& request)
{
    const std::shared_ptr<void> place = request->cancelled ? nullptr : placeForReading(request->cancelled);
    if (!place)
        return;
    // Some decoders can't be stopped: the next photo does not wait for them.
    const std::optional<ReadPhoto> read = doUnlessCancelled(
        [request, place, expected = DispatchQueue::main().expectWork()] {
            return readWhole(request->wanted, &request->cancelled);
        },
        &request->cancelled);
    if (read)
        answer(request, pictureOrLog(read->picture, &request->cancelled), Answer::Final, read->warning);
}

void PHImageManager::Requests::answer(const RequestPointer& request, const UIImage& picture, Answer kind,
                                      const std::string& warning)
{
    DispatchQueue::main().async([self = shared_from_this(), identifier = request->identifier, picture, kind, warning] {
        self->deliver(identifier, picture, kind, warning);
    });
}

/// A coarse picture that comes after the final one finds nobody any more.
void PHImageManager::Requests::deliver(PHImageRequestID identifier, const UIImage& picture, Answer kind,
                                       const std::string& warning)
{
    std::shared_ptr<const Handlers> handlers;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_entries.find(identifier);
        if (found == m_entries.end())
            return;
        handlers = found->second.handlers;
        if (kind == Answer::Final)
            m_entries.erase(found);
    }
    if (!warning.empty() && handlers->warning)
        handlers->warning(warning);
    handlers->result(picture);
}

void PHImageManager::Requests::cancel(PHImageRequestID identifier)
{
    std::vector<Entry> entries;
    {
        const std::lock_guard lock(m_mutex);
        if (const auto node = m_entries.extract(identifier))
            entries.push_back(std::move(node.mapped()));
    }
    stop(std::move(entries));
}

void PHImageManager::Requests::cancelAll()
{
    std::vector<Entry> entries;
    {
        const std::lock_guard lock(m_mutex);
        for (auto& [identifier, entry] : std::exchange(m_entries, {}))
            entries.push_back(entry);
    }
    stop(std::move(entries));
}

void PHImageManager::Requests::stop(std::vector<Entry> entries)
{
    for (const Entry& entry : entries) {
        PictureWorkers::Ticket waiting;
        {
            const std::lock_guard lock(m_mutex);
            entry.request->cancelled = true;
            waiting = entry.request->waiting;
        }
        PictureWorkers::shared().withdraw(waiting);
    }
    if (!entries.empty() && !DispatchQueue::main().isCurrent())
        DispatchQueue::main().async([entries = std::move(entries)] {});
}

PHImageManager::PHImageManager()
    : m_requests(std::make_shared<Requests>())
{
}

PHImageManager::~PHImageManager()
{
    m_requests->cancelAll();
}

PHImageRequestID PHImageManager::requestImageForAsset(const PHAsset& asset, CGSize targetSize,
                                                      PHImageContentMode contentMode,
                                                      const PHImageRequestOptions& options, ResultHandler resultHandler)
{
    const AssetPictureRequest request{asset, targetSize, contentMode, options.resizeMode, options.memoryLimit};
    if (!options.synchronous)
        return m_requests->add(request, options, std::move(resultHandler));
    resultHandler(pictureNow(request, options));
    return PHInvalidImageRequestID;
}

void PHImageManager::cancelImageRequest(PHImageRequestID requestID)
{
    m_requests->cancel(requestID);
}

} // namespace lamina
