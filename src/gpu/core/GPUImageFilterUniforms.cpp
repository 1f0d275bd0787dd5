#include "gpu/core/GLProgram.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

#include <cstring>
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

std::span<const float> GPUImageFilter::uniformValues(GLint uniform) const
{
    return m_uniformState->values(uniform);
}

std::span<const float> GPUImageFilter::uniformValues(const char* name) const
{
    return m_filterProgram ? uniformValues(m_filterProgram->uniformIndex(name)) : std::span<const float>();
}

void GPUImageFilter::setUniform(UniformPlace place, const std::shared_ptr<GLProgram>& program, UniformValue value)
{
    if (!program)
        return;
    // The filter may be gone when the block runs; the state is not.
    runAsynchronouslyOnVideoProcessingQueue(
        [state = uniformStateFor(program), program, place = std::move(place), value = std::move(value)] {
            if (!program->initialized())
                return;
            const std::string* name = std::get_if<std::string>(&place);
            const GLint uniform = name ? program->uniformIndex(*name) : std::get<GLint>(place);
            if (uniform < 0)
                return;
            GPUImageContext::setActiveShaderProgram(program);
            state->setAndExecute(
                uniform, [value, uniform] { value.set(uniform, value.numbers); }, value.numbers);
        });
}

namespace {

using Numbers = const std::vector<float>&;

UniformValue integer(int value)
{
    return {[value](GLint uniform, Numbers) { glUniform1i(uniform, value); }, {static_cast<float>(value)}};
}

UniformValue number(float value)
{
    return {[](GLint uniform, Numbers numbers) { glUniform1f(uniform, numbers[0]); }, {value}};
}

UniformValue pair(double first, double second)
{
    return {[](GLint uniform, Numbers numbers) { glUniform2f(uniform, numbers[0], numbers[1]); },
            {static_cast<float>(first), static_cast<float>(second)}};
}

UniformValue vector3(const GPUVector3& value)
{
    return {[](GLint uniform, Numbers numbers) { glUniform3fv(uniform, 1, numbers.data()); },
            {value.one, value.two, value.three}};
}

UniformValue vector4(const GPUVector4& value)
{
    return {[](GLint uniform, Numbers numbers) { glUniform4fv(uniform, 1, numbers.data()); },
            {value.one, value.two, value.three, value.four}};
}

UniformValue array(std::span<const float> values)
{
    return {[](GLint uniform, Numbers numbers) {
                glUniform1fv(uniform, static_cast<GLsizei>(numbers.size()), numbers.data());
            },
            {values.begin(), values.end()}};
}

/// The numbers of a matrix, column by column, as GL reads them.
template <class Matrix>
std::vector<float> numbersOf(const Matrix& value)
{
    static_assert(sizeof(Matrix) == 9 * sizeof(float) || sizeof(Matrix) == 16 * sizeof(float));
    std::vector<float> numbers(sizeof(Matrix) / sizeof(float));
    std::memcpy(numbers.data(), &value, sizeof(Matrix));
    return numbers;
}

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
    setUniform(uniform, program,
               {[](GLint place, Numbers numbers) { glUniformMatrix3fv(place, 1, GL_FALSE, numbers.data()); },
                numbersOf(value)});
}

void GPUImageFilter::setMatrix4f(const GPUMatrix4x4& value, GLint uniform, const std::shared_ptr<GLProgram>& program)
{
    setUniform(uniform, program,
               {[](GLint place, Numbers numbers) { glUniformMatrix4fv(place, 1, GL_FALSE, numbers.data()); },
                numbersOf(value)});
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
