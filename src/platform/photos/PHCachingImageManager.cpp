#include "platform/photos/PHCachingImageManager.h"

#include "platform/photos/AssetPicture.h"
#include "platform/photos/AssetThumbnails_p.h"
#include "platform/photos/thumbnails/PictureWorkers.h"

#include <atomic>
#include <cstddef>
#include <utility>

namespace lamina {

/// A list of assets on its way into the caches, one at a time.
class PHCachingImageManager::Warming : public std::enable_shared_from_this<Warming> {
public:
    /// `request`: what is made of each of the assets.
    Warming(std::vector<PHAsset> assets, AssetPictureRequest request)
        : m_assets(std::move(assets))
        , m_request(std::move(request))
    {
    }
    void waitForTurn()
    {
        // Never two at a time: a thread stays free for what is asked for meanwhile.
        PictureWorkers::shared().add(
            PictureWorkRank::Warm, [self = shared_from_this()] { self->makeNext(); }, PictureWorkKind::OneAtATime);
    }
    void stop() { m_stopped = true; }
    bool isOver() const { return m_stopped || m_next >= m_assets.size(); }

private:
    void makeNext()
    {
        if (isOver())
            return;
        m_request.asset = m_assets[m_next++];
        // A file that can't be read is told of when it is asked for.
        static_cast<void>(AssetThumbnails::shared().load(m_request, &m_stopped));
        if (!isOver())
            waitForTurn();
    }

    const std::vector<PHAsset> m_assets;
    AssetPictureRequest m_request;
    std::atomic<std::size_t> m_next = 0;
    std::atomic<bool> m_stopped = false;
};

PHCachingImageManager::PHCachingImageManager() = default;

PHCachingImageManager::~PHCachingImageManager()
{
    stopCachingImagesForAllAssets();
}

void PHCachingImageManager::startCachingImagesForAssets(const std::vector<PHAsset>& assets, CGSize targetSize,
                                                        PHImageContentMode contentMode,
                                                        const PHImageRequestOptions& options)
{
    std::erase_if(m_warmings, [](const auto& warming) { return warming->isOver(); });
    const AssetPictureRequest request{{}, targetSize, contentMode, options.resizeMode, options.memoryLimit};
    if (assets.empty() || !isThumbnail(request))
        return;
    m_warmings.push_back(std::make_shared<Warming>(assets, request));
    m_warmings.back()->waitForTurn();
}

void PHCachingImageManager::stopCachingImagesForAllAssets()
{
    for (const auto& warming : std::exchange(m_warmings, {}))
        warming->stop();
}

} // namespace lamina
