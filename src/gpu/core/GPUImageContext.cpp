#include "gpu/core/GPUImageContext.h"

#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/Log.h"
#include "platform/base/MemoryWarning.h"
#include "platform/gl/GLHeaders.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cassert>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <set>
#include <sstream>

namespace lamina {

namespace {

struct Capabilities {
    GLint textureSize = 0;
    GLint textureUnits = 0;
    GLint varyingVectors = 0;
    bool drawsOnProcessor = false;
    std::set<std::string, std::less<>> extensions;
};

const char* driverText(GLenum name)
{
    const GLubyte* text = glGetString(name);
    return text ? reinterpret_cast<const char*>(text) : "";
}

Capabilities readCapabilities()
{
    Capabilities read;
    if (!GPUImageContext::useImageProcessingContext())
        return read;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &read.textureSize);
    glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, &read.textureUnits);
    glGetIntegerv(GL_MAX_VARYING_VECTORS, &read.varyingVectors);
    read.drawsOnProcessor = GPUImageContext::drawsOnProcessor(driverText(GL_RENDERER));
    std::istringstream words(driverText(GL_EXTENSIONS));
    for (std::string word; words >> word;)
        read.extensions.insert(word);
    return read;
}

/// Read once. A thread that has to wait for the first reading holds no lock meanwhile that the queue could want.
const Capabilities& capabilities()
{
    static std::mutex mutex;
    static std::atomic<const Capabilities*> kept{nullptr};
    if (const Capabilities* known = kept.load())
        return *known;
    Capabilities read;
    runSynchronouslyOnVideoProcessingQueue([&] { read = readCapabilities(); });
    const std::scoped_lock lock(mutex);
    if (!kept.load())
        kept.store(new Capabilities(std::move(read))); // for the life of the process
    return *kept.load();
}

bool kernelsAreWanted()
{
    const char* const said = std::getenv("LAMINA_FILTER_KERNELS");
    return !said || std::string_view(said) != "0";
}

std::atomic<bool>& kernelSwitch()
{
    static std::atomic<bool> isOn{kernelsAreWanted()};
    return isOn;
}

std::atomic<int> s_textureLimit{0};
std::atomic<int> s_varyingLimit{0};

/// 0: there is no lower limit.
int lowered(int device, const std::atomic<int>& limit)
{
    const int set = limit.load();
    return set > 0 ? std::min(set, device) : device;
}

} // namespace

GPUImageContext::GPUImageContext()
    : m_contextQueue(std::make_unique<DispatchQueue>("com.vx.GPUImage.openGLESContextQueue"))
    , m_framebufferCache(std::make_unique<GPUImageFramebufferCache>())
    , m_memoryWarningObserver(NotificationCenter::defaultCenter().addObserver(
          UIApplicationDidReceiveMemoryWarningNotification, [this](const Notification&) { purgeIdlePrograms(); }))
{
    m_contextQueue->setSpecific(contextKey(), this);
    m_contextQueue->forbidWaitingForMain();
}

GPUImageContext::~GPUImageContext()
{
    m_memoryWarningObserver.remove();
    // Programs go while their context is current, and that is on the queue.
    m_contextQueue->sync([this] {
        m_currentShaderProgram.reset();
        m_programCache.purgeIdlePrograms();
        assert(m_programCache.count() == 0);
        m_context.reset();
    });
}

const void* GPUImageContext::contextKey()
{
    static const char key = 0;
    return &key;
}

GPUImageContext& GPUImageContext::sharedImageProcessingContext()
{
    static GPUImageContext& shared = *new GPUImageContext;
    return shared;
}

Outcome GPUImageContext::availability()
{
    GPUImageContext& shared = sharedImageProcessingContext();
    std::optional<Error> failure;
    runSynchronouslyOnVideoProcessingQueue([&] {
        shared.context();
        failure = shared.m_failure;
    });
    if (failure)
        return *failure;
    return success();
}

int GPUImageContext::maximumTextureSizeForThisDevice()
{
    return lowered(capabilities().textureSize, s_textureLimit);
}

int GPUImageContext::maximumTextureUnitsForThisDevice()
{
    return capabilities().textureUnits;
}

int GPUImageContext::maximumVaryingVectorsForThisDevice()
{
    return lowered(capabilities().varyingVectors, s_varyingLimit);
}

bool GPUImageContext::deviceDrawsOnProcessor()
{
    return capabilities().drawsOnProcessor;
}

bool GPUImageContext::usesKernels()
{
    return kernelSwitch() && deviceDrawsOnProcessor();
}

void GPUImageContext::setUsesKernels(bool uses)
{
    kernelSwitch() = uses;
}

bool GPUImageContext::drawsOnProcessor(std::string_view renderer)
{
    constexpr std::array kNames{"llvmpipe", "softpipe", "swrast", "SWR", "SwiftShader", "Software Rasterizer"};
    return std::ranges::any_of(kNames,
                               [&](std::string_view name) { return renderer.find(name) != std::string_view::npos; });
}

bool GPUImageContext::deviceSupportsOpenGLESExtension(std::string_view extension)
{
    return capabilities().extensions.contains(extension);
}

bool GPUImageContext::deviceSupportsRedTextures()
{
    return deviceSupportsOpenGLESExtension("GL_EXT_texture_rg");
}

bool GPUImageContext::deviceSupportsFramebufferReads()
{
    return deviceSupportsOpenGLESExtension("GL_EXT_shader_framebuffer_fetch");
}

CGSize GPUImageContext::sizeThatFitsWithinATextureForSize(CGSize size)
{
    return sizeThatFits(size, maximumTextureSizeForThisDevice());
}

CGSize GPUImageContext::sizeThatFits(CGSize size, double limit)
{
    if (!(limit > 0))
        return {};
    if (size.width < limit && size.height < limit)
        return size;
    if (size.width > size.height)
        return {limit, size.height * (limit / size.width)};
    return {size.width * (limit / size.height), limit};
}

void GPUImageContext::limitTextureSize(int limit)
{
    s_textureLimit.store(limit);
}

void GPUImageContext::limitVaryingVectors(int limit)
{
    s_varyingLimit.store(limit);
}

EAGLContext* GPUImageContext::context()
{
    // A context that became current on another thread would be lost to the queue.
    assert(contextOfCurrentQueue() == this);
    if (m_context || m_failure)
        return m_context.get();
    Result<std::shared_ptr<EAGLContext>> made = createContext();
    if (!made) {
        m_failure = made.error();
        logError(m_failure->subject + ": " + m_failure->cause);
        return nullptr;
    }
    m_context = std::move(*made);
    if (EAGLContext::setCurrentContext(m_context.get())) {
        glDisable(GL_DEPTH_TEST); // never used
        glDisable(GL_DITHER);     // the same bytes for the same input
    }
    return m_context.get();
}

Result<std::shared_ptr<EAGLContext>> GPUImageContext::createContext() const
{
    return EAGLContext::make(EAGLRenderingAPI::OpenGLES2, m_sharegroup);
}

bool GPUImageContext::useAsCurrentContext()
{
    EAGLContext* own = context();
    if (!own)
        return false;
    return EAGLContext::currentContext() == own || EAGLContext::setCurrentContext(own);
}

void GPUImageContext::setContextShaderProgram(const std::shared_ptr<GLProgram>& program)
{
    if (!program || !useAsCurrentContext() || m_currentShaderProgram == program)
        return;
    m_currentShaderProgram = program;
    program->use();
}

void GPUImageContext::presentBufferForDisplay()
{
    if (EAGLContext* own = context())
        own->presentRenderbuffer(GL_RENDERBUFFER);
}

std::shared_ptr<GLProgram> GPUImageContext::programForVertexShaderString(const std::string& vertexShader,
                                                                         const std::string& fragmentShader)
{
    assert(contextOfCurrentQueue() == this);
    useAsCurrentContext(); // a program made without one would be kept as one that never links
    return m_programCache.programForShaders(vertexShader, fragmentShader);
}

void GPUImageContext::purgeIdlePrograms()
{
    m_contextQueue->async([this] {
        if (m_context && useAsCurrentContext())
            m_programCache.purgeIdlePrograms();
    });
}

void GPUImageContext::useSharegroup(std::shared_ptr<EAGLSharegroup> sharegroup)
{
    m_sharegroup = std::move(sharegroup);
}

} // namespace lamina
