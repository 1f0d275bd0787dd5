#pragma once

#include "gpu/core/FilterProgram.h"
#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GLProgram.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/core/VertexDraw.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/gl/GLHeaders.h"
#include "platform/image/pixels/CGImage.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace lamina {

/// One input, one pass: draws the input over the whole of a pooled framebuffer with one pair of shaders and pushes that
/// to its targets. The base of all filters; by itself it passes pictures through.
///
/// Shaders are OpenGL ES 2.0 (GLSL 1.00). The vertex shader gets the attributes `position` and
/// `inputTextureCoordinate`, the fragment shader the sampler `inputImageTexture`. Row 0 of the texture is the top of
/// the picture. A shader that doesn't build leaves three lines in the log and a filter that renders nothing.
///
/// Construction and uniform setters may happen on any thread; uniform values take effect in the order of the calls,
/// from the next frame. A change of a uniform rebuilds nothing. Everything of `GPUImageInput` runs on the video
/// processing queue.
class GPUImageFilter : public GPUImageStage {
public:
    GPUImageFilter();
    explicit GPUImageFilter(const std::string& fragmentShader);
    GPUImageFilter(const std::string& vertexShader, const std::string& fragmentShader);
    /// `name`: the path of the fragment shader without its extension "fsh".
    static std::shared_ptr<GPUImageFilter> makeWithFragmentShaderFromFile(const std::string& name);

    /// The corners of the input for a rotation; the first row for values outside the enumeration.
    static const QuadCoordinates& textureCoordinatesForRotation(GPUImageRotationMode rotation);

    /// Called on the queue when the size of the output is known or has changed: subclasses recompute what hangs on it.
    virtual void setupFilterForSize(CGSize) {}

    /// The kept frame is taken by `newCGImageFromCurrentlyProcessedOutput`, which waits for it at most three seconds
    /// (real time) and gives nothing then. A second taking reads the frame that is still the output, if there is one.
    void useNextFrameForImageCapture() override;
    CGImage newCGImageFromCurrentlyProcessedOutput() override;

    /// The size that is drawn: the input's, or `maximumOutputSize` where that is narrower.
    virtual CGSize sizeOfFBO() const;
    /// The size that targets are told.
    virtual CGSize outputFrameSize() const { return m_inputTextureSize; }

    /// Draws the input into a new output, in as many passes as `passCount` says, or drops the frame where rendering is
    /// prevented or impossible. `vertices` are places in clip space, `textureCoordinates` the same corners' places in
    /// the input. On the queue.
    virtual void renderToTextureWithVertices(const QuadCoordinates& vertices,
                                             const QuadCoordinates& textureCoordinates);
    /// Draws and hands on a frame without an input, as generators do, at the size that `forceProcessingAtSize` has set;
    /// nothing where there is none. What reads the input finds it opaque black. Waits for the queue.
    void generateFrameAtTime(const CMTime& frameTime);
    /// Hands the output to the targets and lets them draw. On the queue.
    void informTargetsAboutNewFrameAtTime(const CMTime& frameTime);

    /// What the output is cleared to before the draw; components 0 to 1, all 0 at first.
    void setBackgroundColorRed(float red, float green, float blue, float alpha);

    // Uniforms by their names in the (first) program; nothing happens for a name it doesn't have.

    /// An `int`, or the texture unit of a sampler.
    void setInteger(int value, const std::string& uniformName);
    /// A `float`.
    void setFloat(float value, const std::string& uniformName);
    /// A `vec2` of width and height.
    void setSize(CGSize value, const std::string& uniformName);
    /// A `vec2` of x and y.
    void setPoint(CGPoint value, const std::string& uniformName);
    /// A `vec3`.
    void setFloatVec3(const GPUVector3& value, const std::string& uniformName);
    /// A `vec4`.
    void setFloatVec4(const GPUVector4& value, const std::string& uniformName);
    /// A `float[]`. The floats are copied.
    void setFloatArray(std::span<const float> values, const std::string& uniformName);

    // Uniforms by their locations in one of the filter's programs; nothing happens without a linked program or for
    // location -1.

    /// A `mat3`; the value's records are its columns.
    void setMatrix3f(const GPUMatrix3x3& value, GLint uniform, const std::shared_ptr<GLProgram>& program);
    /// A `mat4`; the value's records are its columns.
    void setMatrix4f(const GPUMatrix4x4& value, GLint uniform, const std::shared_ptr<GLProgram>& program);
    /// A `float`.
    void setFloat(float value, GLint uniform, const std::shared_ptr<GLProgram>& program);
    /// A `vec2` of x and y.
    void setPoint(CGPoint value, GLint uniform, const std::shared_ptr<GLProgram>& program);
    /// A `vec2` of width and height.
    void setSize(CGSize value, GLint uniform, const std::shared_ptr<GLProgram>& program);
    /// A `vec3`.
    void setVec3(const GPUVector3& value, GLint uniform, const std::shared_ptr<GLProgram>& program);
    /// A `vec4`.
    void setVec4(const GPUVector4& value, GLint uniform, const std::shared_ptr<GLProgram>& program);
    /// A `float[]`. The floats are copied.
    void setFloatArray(std::span<const float> values, GLint uniform, const std::shared_ptr<GLProgram>& program);
    /// An `int`, or the texture unit of a sampler.
    void setInteger(int value, GLint uniform, const std::shared_ptr<GLProgram>& program);

    /// Runs the block now and before every draw of the program. On the queue, with the program active.
    void setAndExecuteUniformStateCallbackAtIndex(GLint uniform, const std::shared_ptr<GLProgram>& program,
                                                  UniformState::Block block);
    /// Restores the values of one of the filter's programs before its draw: 0 the first. On the queue.
    virtual void setUniformsForProgramAtIndex(int programIndex);

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    int nextAvailableTextureIndex() const override { return 0; }
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;
    CGSize maximumOutputSize() const override { return {}; }
    /// Told to the targets, once; again after they have had a further frame.
    void endProcessing() override;
    bool wantsMonochromeInput() const override { return false; }
    void setCurrentlyReceivingMonochromeInput(bool monochrome) override
    {
        m_currentlyReceivingMonochromeInput = monochrome;
    }
    bool currentlyReceivingMonochromeInput() const { return m_currentlyReceivingMonochromeInput; }

    /// The size as the slot's rotation turns it.
    virtual CGSize rotatedSize(CGSize size, int textureIndex) const;
    /// A point of the unit square as the rotation turns it.
    static CGPoint rotatedPoint(CGPoint point, GPUImageRotationMode rotation);

    /// Renders at exactly this size, whatever the input; the zero size takes that back.
    void forceProcessingAtSize(CGSize size) override;
    /// Renders at the largest size of the input's aspect ratio within `size`; the zero size takes that back.
    void forceProcessingAtSizeRespectingAspectRatio(CGSize size) override;

    /// True freezes the filter: frames that arrive are dropped and the targets get none.
    bool preventRendering() const { return m_preventRendering; }
    void setPreventRendering(bool prevent) { m_preventRendering = prevent; }

    bool canRender() const override { return m_filterProgram != nullptr; }

protected:
    /// `moreAttributes` follow `position` and `inputTextureCoordinate` in this order.
    GPUImageFilter(const std::string& vertexShader, const std::string& fragmentShader,
                   const std::vector<std::string>& moreAttributes);

    /// For constructors of subclasses: the location in the first program, -1 without one. From any thread.
    GLint uniformIndex(const char* name) const;

    /// Where the values for `program` are kept.
    virtual const std::shared_ptr<UniformState>& uniformStateFor(const std::shared_ptr<GLProgram>& program) const;

    /// One of the filter's programs with the locations that every draw needs: the filter's own fields.
    struct Pass {
        int programIndex; ///< of `setUniformsForProgramAtIndex`
        std::shared_ptr<GLProgram>& program;
        GLuint& positionAttribute;
        GLuint& textureCoordinateAttribute;
        GLint& inputTextureUniform;
    };
    /// The program of these shaders, with the base's own attributes and then `moreAttributes` in this order; null where
    /// it can't be built. On the queue.
    static void buildProgram(const Pass& pass, const std::string& vertexShader, const std::string& fragmentShader,
                             const std::vector<std::string>& moreAttributes = {});
    /// Draws `input` (null: black) through the pass's program into the active framebuffer. On the queue.
    void drawPass(const Pass& pass, const std::shared_ptr<GPUImageFramebuffer>& input, const QuadCoordinates& vertices,
                  const QuadCoordinates& textureCoordinates);
    /// The pass of `m_filterProgram`.
    Pass firstPass();
    /// Whether the program reads the slot's texture at nothing but the middles of texels while it has as many as are
    /// drawn, so that interpolating between them is work for nothing. The base knows it of shaders that read a slot at
    /// its own coordinate alone; filters whose varyings lie whole texels away add theirs. Never true where the result
    /// lives on places in between. On the queue.
    virtual bool readsTexelCentres(int programIndex, std::size_t slot) const;
    /// Before a pass is drawn, whose program may be replaced now. `onGrid`: its first input has as many texels as are
    /// drawn, each under a pixel. Nothing here. On the queue.
    virtual void willDrawPass(int, bool /*onGrid*/) {}
    /// Draws points, lines or triangles of the filter's own through the pass's program into the active framebuffer;
    /// `input` as in `drawPass`. Inputs after the first are not bound: their arrays have four places. Blending and
    /// arrays are left as they were found. On the queue.
    void drawVertices(const Pass& pass, const std::shared_ptr<GPUImageFramebuffer>& input, const VertexDraw& draw);

    /// What a kernel reads of an input. On the queue.
    struct Input {
        const std::shared_ptr<GPUImageFramebuffer>& framebuffer;
        GPUImageRotationMode rotation;
    };
    /// How many inputs there are.
    virtual std::size_t inputCount() const { return 1; }
    /// The one in this slot.
    virtual Input inputAt(std::size_t slot) const;
    /// What draws a frame without GL, all passes of it, with the values that are in force now; empty here. It is run
    /// where kernels are used, for whole frames of the input's size that lie upright. On the queue.
    virtual FilterKernel kernel() const { return {}; }
    /// What the kernel makes of the inputs, whose counts are given back then; null where there is none that can work on
    /// them, and they are to be drawn. With the count of the fetch. On the queue.
    std::shared_ptr<GPUImageFramebuffer> runKernel(const QuadCoordinates& vertices,
                                                   const QuadCoordinates& textureCoordinates);
    /// The numbers of a uniform of the first program as they are in force; none where this filter never set them. On
    /// the queue.
    std::span<const float> uniformValues(GLint uniform) const;
    /// The same by its name.
    std::span<const float> uniformValues(const char* name) const;

    // A frame may be drawn in several passes, each of which reads what the one before drew. They take turns with two
    // framebuffers (of one size, where all passes have it); only what the last one draws is kept and handed on. The
    // inputs' rotation acts in the first pass.

    /// How many passes make a frame; 1 here. Less counts as 1.
    virtual int passCount() const { return 1; }
    /// The pass with this number, from 0: the first program here, each time told its number as `programIndex`, by which
    /// `setUniformsForProgramAtIndex` may set what differs.
    virtual Pass passAt(int index);
    /// What the pass draws into; `sizeOfFBO` here.
    virtual CGSize sizeOfPass(int index) const;
    /// Whether passes after the first read inputs after the first too; false: all inputs go back once they are drawn.
    virtual bool everyPassReadsInputs() const { return false; }

    /// Draws the inputs in all passes and gives their counts back. What the last pass drew, with the count of the
    /// fetch.
    std::shared_ptr<GPUImageFramebuffer> drawPasses(const QuadCoordinates& vertices,
                                                    const QuadCoordinates& textureCoordinates);

    /// A framebuffer of the output's options, active and cleared; with the count of the fetch.
    std::shared_ptr<GPUImageFramebuffer> beginOutput(const GPUVector4& clearColor, CGSize size) const;
    /// The same of the output's size.
    std::shared_ptr<GPUImageFramebuffer> beginOutput(const GPUVector4& clearColor) const
    {
        return beginOutput(clearColor, sizeOfFBO());
    }
    /// Binds the texture of `input` (none: texture 0) to `unit` and tells the sampler at `uniform`.
    static void bindInput(const std::shared_ptr<GPUImageFramebuffer>& input, int unit, GLint uniform,
                          TextureReads reads = TextureReads::Anywhere);
    /// The same for a slot of the pass that is being drawn; `textureCoordinates`: those of its attribute.
    void bindSlot(const std::shared_ptr<GPUImageFramebuffer>& input, std::size_t slot, GLint uniform,
                  const QuadCoordinates& textureCoordinates) const;
    /// Slot i samples from texture unit 2 + i; unit 1 is for making textures.
    static constexpr int kFirstTextureUnit = 2;
    /// Before the draw, if a capture was asked for: takes the count that `newCGImageFromCurrentlyProcessedOutput` gives
    /// back. A wish that comes later, while the frame is under way, is for the next one.
    void holdForCapture(GPUImageFramebuffer& output);
    /// After the draw of such a frame: lets the waiter go on.
    void signalCapture();
    /// What happens to a frame that is not drawn: every input's count is given back. Where the filter can't render at
    /// all, a waiter for the frame is let go on without one; one that is only prevented may draw in time.
    void dropFrame();
    /// Gives back the counts of the inputs after the draw, in slot order.
    virtual void unlockInputs();
    /// Binds the inputs after the first, with their coordinates in enabled arrays, before the draw; and disables the
    /// arrays after it. Nothing here.
    virtual void bindFurtherInputs() {}
    virtual void disableFurtherArrays() {}

    FramebufferHold m_firstInputFramebuffer;
    std::shared_ptr<GLProgram> m_filterProgram;
    GLuint m_filterPositionAttribute = 0;
    GLuint m_filterTextureCoordinateAttribute = 0;
    GLint m_filterInputTextureUniform = -1;
    GPUVector4 m_backgroundColor;
    GPUImageRotationMode m_inputRotation = kGPUImageNoRotation;
    bool m_currentlyReceivingMonochromeInput = false;
    DispatchSemaphore m_imageCaptureSemaphore{0};

private:
    using UniformPlace = std::variant<GLint, std::string>;
    void setUniform(UniformPlace place, const std::shared_ptr<GLProgram>& program, UniformValue value);

    /// Whether each pixel of the pass has a texel of the input under it.
    bool liesOnGrid(const std::shared_ptr<GPUImageFramebuffer>& input, const QuadCoordinates& textureCoordinates) const;

    std::shared_ptr<UniformState> m_uniformState = std::make_shared<UniformState>();
    int m_drawnProgramIndex = 0; ///< of the pass that is being drawn
    IntSize m_drawnSize;         ///< what it draws pixel by pixel; empty where the quad does not cover the output
    std::atomic<bool> m_preventRendering{false};
    bool m_isEndProcessing = false;
    bool m_holdsFrameForCapture = false; ///< the output has a count for the capture; touched on the queue
};

/// Centred fit: the size of the largest rectangle of `aspect`'s proportions inside `bounds`.
CGSize sizeFittingInside(CGSize aspect, CGSize bounds);

} // namespace lamina
