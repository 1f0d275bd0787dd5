#pragma once

#include "gpu/core/GLProgram.h"
#include "platform/gl/GLHeaders.h"

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace lamina {

class GPUImageContext;

/// Passes position and one texture coordinate on.
extern const char* const kGPUImageVertexShaderString;
/// Gives the input as it is.
extern const char* const kGPUImagePassthroughFragmentShaderString;
/// Exchanges red and blue, for who reads what is drawn as B G R A.
extern const char* const kGPUImageColorSwizzlingFragmentShaderString;

/// Four (x, y) pairs for the corners of a quad in the order of a triangle strip: bottom left, bottom right, top left,
/// top right of clip space, which are the picture's top left, top right, bottom left, bottom right.
using QuadCoordinates = std::array<GLfloat, 8>;
/// The whole of clip space.
extern const QuadCoordinates kGPUImageQuadVertices;

/// The linked program of the two texts, from the context's cache, with these attributes in this order. Null where it
/// can't be built; then three lines in the log tell the driver's words. On the context's queue.
std::shared_ptr<GLProgram> linkedProgram(GPUImageContext& context, const std::string& vertexShader,
                                         const std::string& fragmentShader, const std::vector<std::string>& attributes);
/// The same of the shared context.
std::shared_ptr<GLProgram> linkedProgram(const std::string& vertexShader, const std::string& fragmentShader,
                                         const std::vector<std::string>& attributes);

/// The text of a shader in a file: `name` is its path without the extension ("vsh" or "fsh"). Empty when it can't be
/// read, which is logged; a program made of it doesn't link.
std::string shaderTextFromFile(const std::string& name, const char* extension);

/// A value for a uniform: its numbers, and the call that sets them.
struct UniformValue {
    std::function<void(GLint uniform, const std::vector<float>& numbers)> set;
    std::vector<float> numbers;
};

/// The uniform values of one filter in one program, as calls that set them again. Filters of the same shaders share a
/// program; each restores its own values before it draws. Touched on the video processing queue alone.
class UniformState {
public:
    using Block = std::function<void()>;
    /// Runs the block now and at every `restore`, in the place of the former one of this location. `values`: the
    /// numbers that it sets, for who computes with them himself; none where they are the block's own affair.
    void setAndExecute(GLint uniform, Block block, std::vector<float> values = {});
    /// Sets all values again.
    void restore() const;
    /// The numbers of the last block of this location; none where they were never told.
    std::span<const float> values(GLint uniform) const;

private:
    struct Kept {
        Block block;
        std::vector<float> values;
    };
    std::map<GLint, Kept> m_blocks;
};

} // namespace lamina
