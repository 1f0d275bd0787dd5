#pragma once

#include "gpu/core/ShaderReads.h"
#include "platform/gl/GLHeaders.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace lamina {

class GPUImageContext;

/// A vertex and a fragment shader and the program they are linked to. Made, used and dropped on the queue of its
/// context, which must outlive it (dropping elsewhere hops there).
///
/// Where the processor draws, `lowp` and `mediump` mean `highp`, and so does a sampler without a precision in a shader
/// without extensions: the processor would emulate the lower ones. Where fragment shaders lack `highp`, it means
/// `mediump`.
///
/// Order of use: construct, `addAttribute` for each attribute, `link` unless `initialized`, then `attributeIndex`,
/// `uniformIndex` and `use`. Programs are shared between filters of the same shaders: see
/// `GPUImageContext::programForVertexShaderString`.
class GLProgram {
public:
    /// Not an attribute: what `attributeIndex` gives for a name that was never added.
    static constexpr GLuint kNotFound = 0xFFFFFFFFu;

    /// Compiles both. A failure is logged ("Failed to compile vertex shader") and shows again when `link` fails.
    GLProgram(const std::string& vertexShader, const std::string& fragmentShader);
    /// With the fragment shader from a file: its path without the extension "fsh".
    static std::shared_ptr<GLProgram> makeWithVertexShaderString(const std::string& vertexShader,
                                                                 const std::string& fragmentShaderFilename);
    /// With both from files; the vertex shader's extension is "vsh".
    static std::shared_ptr<GLProgram> makeWithVertexShaderFilename(const std::string& vertexShaderFilename,
                                                                   const std::string& fragmentShaderFilename);
    ~GLProgram();
    GLProgram(const GLProgram&) = delete;
    GLProgram& operator=(const GLProgram&) = delete;

    /// Binds the name to the next free location; nothing for a name that was added before.
    void addAttribute(const std::string& name);
    /// The place of the name among those added, which is its location.
    GLuint attributeIndex(const std::string& name) const;
    /// The location, asked of GL at every call; -1 when the linked program has no such uniform.
    GLint uniformIndex(const std::string& name) const;

    /// False when it can't be linked; the shaders stay for another try.
    bool link();
    /// Makes it GL's program for the draws to come. `GPUImageContext::setActiveShaderProgram` spares it where it is
    /// already.
    void use() const;
    /// Asks the driver what it thinks of the program in the present state; see `programLog`.
    void validate();

    /// Where it reads the texture of the slot (from 0), as its texts tell.
    ShaderReads reads(std::size_t slot) const { return slot < m_reads.size() ? m_reads[slot] : ShaderReads::Anywhere; }

    /// Linked.
    bool initialized() const { return m_initialized; }
    /// What the driver said; empty where it said nothing. `programLog` is that of a failed `link` or of `validate`.
    const std::string& vertexShaderLog() const { return m_vertexShaderLog; }
    const std::string& fragmentShaderLog() const { return m_fragmentShaderLog; }
    const std::string& programLog() const { return m_programLog; }

private:
    bool compileShader(GLuint& shader, GLenum type, const std::string& text);
    void readProgramLog();

    static constexpr std::size_t kSlots = 4; ///< as many as filters have at most

    std::array<ShaderReads, kSlots> m_reads{};
    GPUImageContext* m_context; ///< on whose queue it was made
    std::vector<std::string> m_attributes;
    GLuint m_program = 0;
    GLuint m_vertShader = 0;
    GLuint m_fragShader = 0;
    bool m_initialized = false;
    std::string m_vertexShaderLog;
    std::string m_fragmentShaderLog;
    std::string m_programLog;
};

} // namespace lamina
