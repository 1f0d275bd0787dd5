#include "gpu/core/GPUImageFramebufferCache.h"

#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/MemoryWarning.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdio>
#include <utility>

namespace lamina {

namespace {

FramebufferKind kindOf(const GPUImageFramebuffer& framebuffer)
{
    return {framebuffer.size(), framebuffer.textureOptions(), framebuffer.missingFramebuffer()};
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
    runSynchronouslyOnVideoProcessingQueue([this] { m_idle.clear(); }); // after what is under way for it
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
        framebuffer = takeIdle({size, options, onlyTexture});
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

std::shared_ptr<GPUImageFramebuffer> GPUImageFramebufferCache::takeIdle(const FramebufferKind& kind)
{
    assert(isOnVideoProcessingQueue());
    const auto idle = m_idle.find(kind);
    if (idle == m_idle.end())
        return nullptr;
    std::shared_ptr<GPUImageFramebuffer> last = std::move(idle->second.back().framebuffer);
    m_idleBytes -= idle->second.back().bytes;
    idle->second.pop_back();
    if (idle->second.empty())
        m_idle.erase(idle);
    --m_idleCount;
    last->forgetPixels();
    return last;
}

void GPUImageFramebufferCache::returnFramebufferToCache(const std::shared_ptr<GPUImageFramebuffer>& framebuffer)
{
    framebuffer->clearAllLocks();
    runAsynchronouslyOnVideoProcessingQueue([this, framebuffer] { put(framebuffer); });
}

void GPUImageFramebufferCache::put(std::shared_ptr<GPUImageFramebuffer> framebuffer)
{
    assert(isOnVideoProcessingQueue());
    framebuffer->letGoOfSpareMemory();
    const std::size_t bytes = framebuffer->heldBytes();
    // Of what is drawn into the next pass has a use, however large it is; a picture that large seldom comes twice.
    if (framebuffer->missingFramebuffer() && bytes > kIdleByteLimit)
        return;
    m_idleBytes += bytes;
    ++m_idleCount;
    IdleOfKind& others = m_idle[kindOf(*framebuffer)];
    others.push_back({std::move(framebuffer), ++m_returns, bytes});
    while (m_idleBytes > kIdleByteLimit && m_idleCount > 1)
        dropOldest();
}

void GPUImageFramebufferCache::dropOldest()
{
    const auto oldest =
        std::ranges::min_element(m_idle, {}, [](const auto& entry) { return entry.second.front().returned; });
    IdleOfKind& ofKind = oldest->second;
    m_idleBytes -= ofKind.front().bytes;
    --m_idleCount;
    ofKind.erase(ofKind.begin());
    if (ofKind.empty())
        m_idle.erase(oldest);
}

void GPUImageFramebufferCache::purgeAllUnassignedFramebuffers()
{
    runAsynchronouslyOnVideoProcessingQueue([this] {
        m_idle.clear();
        m_idleCount = 0;
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
    return valueFromVideoProcessingQueue([this] { return m_idleCount; });
}

} // namespace lamina
