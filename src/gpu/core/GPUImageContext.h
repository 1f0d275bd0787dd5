#pragma once

#include "gpu/core/GLProgram.h"
#include "gpu/core/GLProgramCache.h"
#include "gpu/core/GPUImageFramebufferCache.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/Result.h"
#include "platform/gl/EAGLContext.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace lamina {

/// The GL context of the filter graph with its serial queue, its cache of programs and its pool of framebuffers. One is
/// shared by the whole process and never destroyed: the graph lives in it. The GL context itself is made when it is
/// first needed, on the queue.
///
/// Further ones serve who draws beside the graph, such as a writer of movies: in the shared one's sharegroup they see
/// the graph's textures. They have a queue and programs of their own (`linkedProgram` of a context); framebuffers and
/// their counts stay with the shared one, whose queue is where they are fetched, locked and unlocked.
///
/// Where no context can be had (no driver), `availability` tells why; everything else then does nothing: programs don't
/// link, framebuffers have no texture, filters give no picture.
class GPUImageContext {
public:
    GPUImageContext();
    /// Waits for its queue. Nobody may hold a program of the context any more.
    ~GPUImageContext();
    GPUImageContext(const GPUImageContext&) = delete;
    GPUImageContext& operator=(const GPUImageContext&) = delete;

    /// The address under which the queue tells that it belongs to a context.
    static const void* contextKey();
    /// The one of the process, made on first use. From any thread.
    static GPUImageContext& sharedImageProcessingContext();
    /// The video processing queue: that of the shared context.
    static DispatchQueue& sharedContextQueue() { return sharedImageProcessingContext().contextQueue(); }
    /// The pool of the shared context.
    static GPUImageFramebufferCache& sharedFramebufferCache()
    {
        return sharedImageProcessingContext().framebufferCache();
    }

    /// Makes the shared context current on the calling thread, the queue's. False: there is none.
    static bool useImageProcessingContext() { return sharedImageProcessingContext().useAsCurrentContext(); }
    /// Null is ignored. On the queue.
    static void setActiveShaderProgram(const std::shared_ptr<GLProgram>& program)
    {
        sharedImageProcessingContext().setContextShaderProgram(program);
    }

    /// Why the shared context can't be had; success when it stands. Makes it when it is not there yet. From any thread.
    static Outcome availability();

    /// The longest side of a texture in pixels: the device's limit, or a lower one that was set. Like the other limits
    /// it is asked of the device once, and 0 without a context. From any thread.
    static int maximumTextureSizeForThisDevice();
    /// How many textures a fragment shader may sample.
    static int maximumTextureUnitsForThisDevice();
    /// How many vectors of four a vertex shader may hand to a fragment shader: the device's limit, or a lower one that
    /// was set. An array takes a vector an entry, however short its entries.
    static int maximumVaryingVectorsForThisDevice();
    /// Whether it is the processor that draws: low precision and interpolation between texels then cost time instead of
    /// saving it. From any thread.
    static bool deviceDrawsOnProcessor();
    /// The same of a driver that calls itself so (GL_RENDERER).
    static bool drawsOnProcessor(std::string_view renderer);
    /// Whether filters that have a kernel run it on pixels in our own memory instead of drawing: where the processor
    /// draws anyway, unless the variable LAMINA_FILTER_KERNELS of the environment is 0. From any thread.
    static bool usesKernels();
    /// Switches kernels on or off, for comparisons; on has an effect only where the processor draws. Not while frames
    /// are under way.
    static void setUsesKernels(bool uses);
    /// By its whole name, as "GL_EXT_texture_rg". From any thread.
    static bool deviceSupportsOpenGLESExtension(std::string_view extension);
    /// Textures of one or two channels (GL_EXT_texture_rg).
    static bool deviceSupportsRedTextures();
    /// Fragment shaders that read what they draw over (GL_EXT_shader_framebuffer_fetch).
    static bool deviceSupportsFramebufferReads();
    /// Textures that share memory with the processor don't exist here.
    static constexpr bool supportsFastTextureUpload() { return false; }

    /// `size` where both sides are below the texture limit; otherwise reduced in proportion so that the longer side is
    /// the limit. Not rounded.
    static CGSize sizeThatFitsWithinATextureForSize(CGSize size);
    /// The same for a limit of one's own; the zero size where that is 0.
    static CGSize sizeThatFits(CGSize size, double limit);
    /// Lowers the texture limit, to bound memory or to try what happens to large pictures; 0: the device's own.
    static void limitTextureSize(int limit);
    /// Lowers the limit of varyings for shaders that are made from now on; 0: the device's own.
    static void limitVaryingVectors(int limit);

    /// Makes this context current on the calling thread, which must be its queue's. False: there is none.
    bool useAsCurrentContext();
    /// Binds the program unless it is bound already. On the queue.
    void setContextShaderProgram(const std::shared_ptr<GLProgram>& program);
    /// Shows what was drawn into the bound renderbuffer. On the queue.
    void presentBufferForDisplay();
    /// The program of these two texts out of the `programCache`, perhaps not yet linked: test `initialized`. On the
    /// queue.
    std::shared_ptr<GLProgram> programForVertexShaderString(const std::string& vertexShader,
                                                            const std::string& fragmentShader);
    /// The group that the context is made in; only before it is made.
    void useSharegroup(std::shared_ptr<EAGLSharegroup> sharegroup);
    /// A new GL context in the sharegroup.
    Result<std::shared_ptr<EAGLContext>> createContext() const;

    /// The GL context, made on first use; null when there is none to be had. On the queue.
    EAGLContext* context();
    /// The pool of framebuffers; the graph uses the shared context's.
    GPUImageFramebufferCache& framebufferCache() { return *m_framebufferCache; }
    /// The programs that were made so far; a memory warning drops the idle ones. On the queue.
    const GLProgramCache& programCache() const { return m_programCache; }
    DispatchQueue& contextQueue() { return *m_contextQueue; }
    const std::shared_ptr<GLProgram>& currentShaderProgram() const { return m_currentShaderProgram; }
    void setCurrentShaderProgram(std::shared_ptr<GLProgram> program) { m_currentShaderProgram = std::move(program); }

private:
    void purgeIdlePrograms();

    GLProgramCache m_programCache;
    std::shared_ptr<EAGLSharegroup> m_sharegroup;
    std::shared_ptr<EAGLContext> m_context;
    std::optional<Error> m_failure;
    std::shared_ptr<GLProgram> m_currentShaderProgram;
    std::unique_ptr<DispatchQueue> m_contextQueue;
    std::unique_ptr<GPUImageFramebufferCache> m_framebufferCache;
    NotificationObserver m_memoryWarningObserver;
};

} // namespace lamina
