#include "gpu/core/GLProgram.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GLErrors.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/Log.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace lamina {

namespace {

/// What comes before the text: the one place that decides what precisions mean. A uniform of both shaders must have
/// the same in both.
std::string precisionPrefix(GLenum type, std::string_view text)
{
    if (GPUImageContext::deviceDrawsOnProcessor()) {
        // A statement must not come before a directive on extensions.
        const bool canDeclare = text.find("#extension") == std::string_view::npos;
        return std::string("#define lowp highp\n#define mediump highp\n") +
               (canDeclare ? "precision highp sampler2D;\n" : "");
    }
    if (type != GL_FRAGMENT_SHADER)
        return "";
    std::array<GLint, 2> range{};
    GLint precision = 0;
    glGetShaderPrecisionFormat(GL_FRAGMENT_SHADER, GL_HIGH_FLOAT, range.data(), &precision);
    return precision > 0 ? "" : "#define highp mediump\n";
}

template <class GetLog>
std::string infoLog(GLint length, GetLog getLog)
{
    if (length < 1)
        return {};
    std::string text(static_cast<std::size_t>(length), '\0');
    GLsizei written = 0;
    getLog(length, &written, text.data());
    text.resize(static_cast<std::size_t>(std::clamp<GLsizei>(written, 0, length)));
    return text;
}

} // namespace

GLProgram::GLProgram(const std::string& vertexShader, const std::string& fragmentShader)
    : m_context(contextOfCurrentQueue())
{
    for (std::size_t slot = 0; slot < m_reads.size(); ++slot)
        m_reads[slot] = shaderReads(vertexShader, fragmentShader, slot);
    if (!mayCallGL())
        return;
    m_program = glCreateProgram();
    if (!compileShader(m_vertShader, GL_VERTEX_SHADER, vertexShader))
        logError("Failed to compile vertex shader");
    if (!compileShader(m_fragShader, GL_FRAGMENT_SHADER, fragmentShader))
        logError("Failed to compile fragment shader");
    for (const GLuint shader : {m_vertShader, m_fragShader}) {
        if (shader != 0)
            glAttachShader(m_program, shader);
    }
}

std::shared_ptr<GLProgram> GLProgram::makeWithVertexShaderString(const std::string& vertexShader,
                                                                 const std::string& fragmentShaderFilename)
{
    return std::make_shared<GLProgram>(vertexShader, shaderTextFromFile(fragmentShaderFilename, "fsh"));
}

std::shared_ptr<GLProgram> GLProgram::makeWithVertexShaderFilename(const std::string& vertexShaderFilename,
                                                                   const std::string& fragmentShaderFilename)
{
    return makeWithVertexShaderString(shaderTextFromFile(vertexShaderFilename, "vsh"), fragmentShaderFilename);
}

GLProgram::~GLProgram()
{
    if (m_program == 0)
        return;
    runSynchronouslyOnContextQueue(*m_context, [this] {
        m_context->useAsCurrentContext();
        if (m_vertShader != 0)
            glDeleteShader(m_vertShader);
        if (m_fragShader != 0)
            glDeleteShader(m_fragShader);
        glDeleteProgram(m_program);
    });
}

bool GLProgram::compileShader(GLuint& shader, GLenum type, const std::string& text)
{
    if (text.empty()) {
        logError("Failed to load vertex shader");
        return false;
    }
    shader = glCreateShader(type);
    const std::string prefix = precisionPrefix(type, text);
    const std::array<const GLchar*, 2> texts{prefix.c_str(), text.c_str()};
    glShaderSource(shader, static_cast<GLsizei>(texts.size()), texts.data(), nullptr);
    glCompileShader(shader);
    GLint status = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
    if (status == GL_TRUE)
        return true;
    GLint length = 0;
    glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
    std::string& target = type == GL_VERTEX_SHADER ? m_vertexShaderLog : m_fragmentShaderLog;
    target = infoLog(length, [&](GLsizei size, GLsizei* written, char* buffer) {
        glGetShaderInfoLog(shader, size, written, buffer);
    });
    return false;
}

void GLProgram::addAttribute(const std::string& name)
{
    if (attributeIndex(name) != kNotFound)
        return;
    m_attributes.push_back(name);
    if (m_program != 0 && mayCallGL())
        glBindAttribLocation(m_program, attributeIndex(name), name.c_str());
}

GLuint GLProgram::attributeIndex(const std::string& name) const
{
    const auto found = std::ranges::find(m_attributes, name);
    return found == m_attributes.end() ? kNotFound : static_cast<GLuint>(found - m_attributes.begin());
}

GLint GLProgram::uniformIndex(const std::string& name) const
{
    return m_program != 0 && mayCallGL() ? glGetUniformLocation(m_program, name.c_str()) : -1;
}

bool GLProgram::link()
{
    if (m_program == 0 || !mayCallGL())
        return false;
    glLinkProgram(m_program);
    GLint status = GL_FALSE;
    glGetProgramiv(m_program, GL_LINK_STATUS, &status);
    if (status == GL_FALSE) {
        readProgramLog();
        return false;
    }
    for (GLuint* shader : {&m_vertShader, &m_fragShader}) {
        if (*shader != 0)
            glDeleteShader(*shader);
        *shader = 0;
    }
    m_initialized = true;
    checkGL("linking a program");
    return true;
}

void GLProgram::use() const
{
    if (m_program != 0 && mayCallGL())
        glUseProgram(m_program);
}

void GLProgram::validate()
{
    if (m_program == 0 || !mayCallGL())
        return;
    glValidateProgram(m_program);
    readProgramLog();
}

void GLProgram::readProgramLog()
{
    GLint length = 0;
    glGetProgramiv(m_program, GL_INFO_LOG_LENGTH, &length);
    m_programLog = infoLog(length, [&](GLsizei size, GLsizei* written, char* buffer) {
        glGetProgramInfoLog(m_program, size, written, buffer);
    });
}

} // namespace lamina
