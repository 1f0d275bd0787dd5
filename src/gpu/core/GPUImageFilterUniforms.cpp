#include "gpu/core/GLProgram.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

#include <cassert>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

// Setting uniforms. Values are copied into a block that is run now, on the queue, and again before each draw.

namespace lamina {

void GPUImageFilter::setBackgroundColorRed(float red, float green, float blue, float alpha)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_backgroundColor = {red, green, blue, alpha}; });
}

const std::shared_ptr<UniformState>& GPUImageFilter::uniformStateFor(const std::shared_ptr<GLProgram>&) const
{
    return m_uniformState;
}

void GPUImageFilter::setAndExecuteUniformStateCallbackAtIndex(GLint uniform, const std::shared_ptr<GLProgram>& program,
                                                              UniformState::Block block)
{
    uniformStateFor(program)->setAndExecute(uniform, std::move(block));
}

void GPUImageFilter::setUniformsForProgramAtIndex(int)
{
    m_uniformState->restore();
}

void GPUImageFilter::setUniform(UniformPlace place, const std::shared_ptr<GLProgram>& program,
                                std::function<void(GLint)> apply)
{
    if (!program)
        return;
    // The filter may be gone when the block runs; the state is not.
    runAsynchronouslyOnVideoProcessingQueue(
        [state = uniformStateFor(program), program, place = std::move(place), apply = std::move(apply)] {
            if (!program->initialized())
                return;
            const std::string* name = std::get_if<std::string>(&place);
            const GLint uniform = name ? program->uniformIndex(*name) : std::get<GLint>(place);
            if (uniform < 0)
                return;
            GPUImageContext::setActiveShaderProgram(program);
            state->setAndExecute(uniform, [apply, uniform] { apply(uniform); });
        });
}

namespace {

auto integer(int value)
{
    return [value](GLint uniform) { glUniform1i(uniform, value); };
}

auto number(float value)
{
    return [value](GLint uniform) { glUniform1f(uniform, value); };
}

auto pair(double first, double second)
{
    return
        [x = static_cast<float>(first), y = static_cast<float>(second)](GLint uniform) { glUniform2f(uniform, x, y); };
}

auto vector3(const GPUVector3& value)
{
    return [value](GLint uniform) { glUniform3fv(uniform, 1, &value.one); };
}

auto vector4(const GPUVector4& value)
{
    return [value](GLint uniform) { glUniform4fv(uniform, 1, &value.one); };
}

auto array(std::span<const float> values)
{
    return [copy = std::vector<float>(values.begin(), values.end())](GLint uniform) {
        glUniform1fv(uniform, static_cast<GLsizei>(copy.size()), copy.data());
    };
}

// Records of floats lie in memory as GL reads them.
static_assert(sizeof(GPUVector3) == 3 * sizeof(GLfloat) && sizeof(GPUVector4) == 4 * sizeof(GLfloat));
static_assert(sizeof(GPUMatrix3x3) == 9 * sizeof(GLfloat) && sizeof(GPUMatrix4x4) == 16 * sizeof(GLfloat));

} // namespace

void GPUImageFilter::setInteger(int value, const std::string& uniformName)
{
    setUniform(uniformName, m_filterProgram, integer(value));
}

void GPUImageFilter::setFloat(float value, const std::string& uniformName)
{
    setUniform(uniformName, m_filterProgram, number(value));
}

void GPUImageFilter::setSize(CGSize value, const std::string& uniformName)
{
    setUniform(uniformName, m_filterProgram, pair(value.width, value.height));
}

void GPUImageFilter::setPoint(CGPoint value, const std::string& uniformName)
{
    setUniform(uniformName, m_filterProgram, pair(value.x, value.y));
}

void GPUImageFilter::setFloatVec3(const GPUVector3& value, const std::string& uniformName)
{
    setUniform(uniformName, m_filterProgram, vector3(value));
}

void GPUImageFilter::setFloatVec4(const GPUVector4& value, const std::string& uniformName)
{
    setUniform(uniformName, m_filterProgram, vector4(value));
}

void GPUImageFilter::setFloatArray(std::span<const float> values, const std::string& uniformName)
{
    setUniform(uniformName, m_filterProgram, array(values));
}

void GPUImageFilter::setMatrix3f(const GPUMatrix3x3& value, GLint uniform, const std::shared_ptr<GLProgram>& program)
{
    setUniform(uniform, program, [value](GLint place) { glUniformMatrix3fv(place, 1, GL_FALSE, &value.one.one); });
}

void GPUImageFilter::setMatrix4f(const GPUMatrix4x4& value, GLint uniform, const std::shared_ptr<GLProgram>& program)
{
    setUniform(uniform, program, [value](GLint place) { glUniformMatrix4fv(place, 1, GL_FALSE, &value.one.one); });
}

void GPUImageFilter::setFloat(float value, GLint uniform, const std::shared_ptr<GLProgram>& program)
{
    setUniform(uniform, program, number(value));
}

void GPUImageFilter::setPoint(CGPoint value, GLint uniform, const std::shared_ptr<GLProgram>& program)
{
    setUniform(uniform, program, pair(value.x, value.y));
}

void GPUImageFilter::setSize(CGSize value, GLint uniform, const std::shared_ptr<GLProgram>& program)
{
    setUniform(uniform, program, pair(value.width, value.height));
}

void GPUImageFilter::setVec3(const GPUVector3& value, GLint uniform, const std::shared_ptr<GLProgram>& program)
{
    setUniform(uniform, program, vector3(value));
}

void GPUImageFilter::setVec4(const GPUVector4& value, GLint uniform, const std::shared_ptr<GLProgram>& program)
{
    setUniform(uniform, program, vector4(value));
}

void GPUImageFilter::setFloatArray(std::span<const float> values, GLint uniform,
                                   const std::shared_ptr<GLProgram>& program)
{
    setUniform(uniform, program, array(values));
}

void GPUImageFilter::setInteger(int value, GLint uniform, const std::shared_ptr<GLProgram>& program)
{
    setUniform(uniform, program, integer(value));
}

} // namespace lamina
