#include "platform/photos/PHImageManager.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/PictureQueue.h"

#include <atomic>
#include <map>
#include <mutex>
#include <utility>

namespace lamina {

namespace {

/// The picture, or the empty one; the log then tells why, unless nobody wants it any more.
UIImage pictureOrLog(const AssetPictureRequest& request, const std::atomic<bool>* cancelled)
{
    const Result<UIImage> picture = loadAssetPicture(request, cancelled);
    if (picture)
        return *picture;
    if (!cancelled || !*cancelled)
        logWarning(picture.error().subject + ": " + picture.error().cause);
    return {};
}

} // namespace

/// Requests under way, each with the flag that stops it.
class PHImageManager::Requests {
public:
    using Flag = std::shared_ptr<std::atomic<bool>>;

    PHImageRequestID add(Flag flag)
    {
        const std::lock_guard lock(m_mutex);
        m_flags.emplace(++m_last, std::move(flag));
        return m_last;
    }
    void remove(PHImageRequestID request)
    {
        const std::lock_guard lock(m_mutex);
        m_flags.erase(request);
    }
    void cancel(PHImageRequestID request)
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_flags.find(request); found != m_flags.end())
            *found->second = true;
    }
    void cancelAll()
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& [request, flag] : m_flags)
            *flag = true;
    }

private:
    std::mutex m_mutex;
    PHImageRequestID m_last = PHInvalidImageRequestID;
    std::map<PHImageRequestID, Flag> m_flags;
};

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
    if (options.synchronous) {
        resultHandler(pictureOrLog(request, nullptr));
        return PHInvalidImageRequestID;
    }
    const auto stopped = std::make_shared<std::atomic<bool>>(false);
    const PHImageRequestID identifier = m_requests->add(stopped);
    // The handler and what it holds are let go on the main queue, where they came to life.
    auto answer = [requests = m_requests, identifier, stopped,
                   handler = std::move(resultHandler)](const UIImage& picture) {
        requests->remove(identifier);
        if (!*stopped)
            handler(picture);
    };
    auto work = [request, stopped, answer = std::move(answer),
                 expected = DispatchQueue::main().expectWork()]() mutable {
        UIImage picture;
        if (!*stopped)
            picture = pictureOrLog(request, stopped.get());
        DispatchQueue::main().async([answer = std::move(answer), picture = std::move(picture)] { answer(picture); });
    };
    if (isThumbnail(request))
        runShortPictureWork(std::move(work));
    else
        pictureQueue().async(std::move(work));
    return identifier;
}

void PHImageManager::cancelImageRequest(PHImageRequestID requestID)
{
    m_requests->cancel(requestID);
}

} // namespace lamina
