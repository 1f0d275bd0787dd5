#include "gpu/core/GPUImageFramebufferCache.h"

#include "gpu/core/VideoProcessingQueue.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace lamina {

namespace {

std::string slotKey(const std::string& hash, long slot)
{
    return hash + "-" + std::to_string(slot);
}

std::string hashOf(const GPUImageFramebuffer& framebuffer)
{
    return GPUImageFramebufferCache::hashForSize(framebuffer.size(), framebuffer.textureOptions(),
                                                 framebuffer.missingFramebuffer());
}

std::size_t bytesOf(const GPUImageFramebuffer& framebuffer)
{
    return framebuffer.bytesPerRow() * static_cast<std::size_t>(framebuffer.pixelSize().height);
}

} // namespace

GPUImageFramebufferCache::GPUImageFramebufferCache()
    : m_memoryWarningObserver(NotificationCenter::defaultCenter().addObserver(
          UIApplicationDidReceiveMemoryWarningNotification,
          [this](const Notification&) { purgeAllUnassignedFramebuffers(); }))
{
}

GPUImageFramebufferCache::~GPUImageFramebufferCache()
{
    m_memoryWarningObserver.remove();
    runSynchronouslyOnVideoProcessingQueue([this] { m_framebufferCache.clear(); }); // after what is under way for it
}

std::string GPUImageFramebufferCache::hashForSize(CGSize size, const GPUTextureOptions& options, bool onlyTexture)
{
    const auto tenths = [](double side) {
        std::array<char, 352> text{}; // the longest double has 309 digits before the point
        std::snprintf(text.data(), text.size(), "%.1f", side);
        return std::string(text.data());
    };
    std::string hash = tenths(size.width) + "x" + tenths(size.height);
    char separator = '-';
    for (const std::uint32_t option : {options.minFilter, options.magFilter, options.wrapS, options.wrapT,
                                       options.internalFormat, options.format, options.type}) {
        hash += separator + std::to_string(option);
        separator = ':';
    }
    return onlyTexture ? hash + "-NOFB" : hash;
}

std::shared_ptr<GPUImageFramebuffer>
GPUImageFramebufferCache::fetchFramebufferForSize(CGSize size, const GPUTextureOptions& options, bool onlyTexture)
{
    std::shared_ptr<GPUImageFramebuffer> framebuffer;
    runSynchronouslyOnVideoProcessingQueue([&] {
        framebuffer = takeIdle(hashForSize(size, options, onlyTexture));
        if (!framebuffer)
            framebuffer = std::make_shared<GPUImageFramebuffer>(size, options, onlyTexture);
        framebuffer->clearAllLocks(); // whatever an unlock too many has left
        framebuffer->lock();
    });
    return framebuffer;
}

std::shared_ptr<GPUImageFramebuffer> GPUImageFramebufferCache::fetchFramebufferForSize(CGSize size, bool onlyTexture)
{
    return fetchFramebufferForSize(size, GPUTextureOptions{}, onlyTexture);
}

/// Walks down from the last slot that was filled. Slots can be empty: what was dropped leaves a hole.
std::shared_ptr<GPUImageFramebuffer> GPUImageFramebufferCache::takeIdle(const std::string& hash)
{
    const auto count = m_framebufferTypeCounts.find(hash);
    if (count == m_framebufferTypeCounts.end() || count->second < 1)
        return nullptr;
    std::shared_ptr<GPUImageFramebuffer> found;
    long slot = count->second - 1;
    for (;; --slot) {
        const auto idle = m_framebufferCache.find(slotKey(hash, slot));
        if (idle != m_framebufferCache.end()) {
            found = std::move(idle->second.framebuffer);
            m_idleBytes -= bytesOf(*found);
            m_framebufferCache.erase(idle);
        }
        if (found || slot == 0)
            break;
    }
    count->second = slot;
    return found;
}

void GPUImageFramebufferCache::returnFramebufferToCache(const std::shared_ptr<GPUImageFramebuffer>& framebuffer)
{
    framebuffer->clearAllLocks();
    runAsynchronouslyOnVideoProcessingQueue([this, framebuffer] { put(framebuffer); });
}

void GPUImageFramebufferCache::put(std::shared_ptr<GPUImageFramebuffer> framebuffer)
{
    const std::string hash = hashOf(*framebuffer);
    long& count = m_framebufferTypeCounts[hash];
    m_idleBytes += bytesOf(*framebuffer);
    m_framebufferCache[slotKey(hash, count)] = Idle{std::move(framebuffer), ++m_returns};
    ++count;
    dropBeyondLimit();
}

void GPUImageFramebufferCache::dropBeyondLimit()
{
    while (m_idleBytes > kIdleByteLimit && m_framebufferCache.size() > 1) {
        const auto oldest =
            std::ranges::min_element(m_framebufferCache, {}, [](const auto& entry) { return entry.second.returned; });
        m_idleBytes -= bytesOf(*oldest->second.framebuffer);
        m_framebufferCache.erase(oldest);
    }
}

void GPUImageFramebufferCache::purgeAllUnassignedFramebuffers()
{
    runAsynchronouslyOnVideoProcessingQueue([this] {
        m_framebufferCache.clear();
        m_framebufferTypeCounts.clear();
        m_idleBytes = 0;
    });
}

void GPUImageFramebufferCache::addFramebufferToActiveImageCaptureList(
    const std::shared_ptr<GPUImageFramebuffer>& framebuffer)
{
    runAsynchronouslyOnVideoProcessingQueue([this, framebuffer] { m_activeImageCaptureList.push_back(framebuffer); });
}

void GPUImageFramebufferCache::removeFramebufferFromActiveImageCaptureList(
    const std::shared_ptr<GPUImageFramebuffer>& framebuffer)
{
    runAsynchronouslyOnVideoProcessingQueue([this, framebuffer] { std::erase(m_activeImageCaptureList, framebuffer); });
}

std::size_t GPUImageFramebufferCache::idleCount()
{
    std::size_t count = 0;
    runSynchronouslyOnVideoProcessingQueue([&] { count = m_framebufferCache.size(); });
    return count;
}

} // namespace lamina
