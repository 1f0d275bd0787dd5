#include "CommandRunner.h"
#include "GraphFixture.h"
#include "gpu/core/TypedValue.h"
#include "gpu/filters/FilterCatalogue.h"
#include "gpu/filters/blur/GPUImageBoxBlurFilter.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"
#include "gpu/filters/edge/MorphologyShaders.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <dlfcn.h>
#include <set>
#include <sstream>
#include <utility>
#include <variant>

namespace lamina::test {
namespace {

struct Shader {
    std::string text;
    GLenum kind;
    friend auto operator<=>(const Shader&, const Shader&) = default;
};

/// Every text that has gone to GL since the program's start. Touched on the video processing queue.
std::set<Shader>& collected()
{
    static std::set<Shader> shaders;
    return shaders;
}

} // namespace
} // namespace lamina::test

/// Preferred by the linker to the driver's own, which it calls. The last text is the shader's; what stands before it is
/// for the device at hand.
extern "C" void glShaderSource(GLuint shader, GLsizei count, const GLchar* const* texts, const GLint* lengths)
{
    using Function = void (*)(GLuint, GLsizei, const GLchar* const*, const GLint*);
    static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "glShaderSource"));
    GLint kind = 0;
    glGetShaderiv(shader, GL_SHADER_TYPE, &kind);
    lamina::test::collected().insert({texts[count - 1], static_cast<GLenum>(kind)});
    real(shader, count, texts, lengths);
}

namespace lamina::test {
namespace {

using ShaderValidationTest = GraphFixture;

/// The text as it would be if what an extension that is not known to the compiler gives were another vector of four.
std::string withoutFramebufferFetch(std::string text)
{
    for (const auto& [part, instead] :
         {std::pair<std::string, std::string>{"#extension GL_EXT_shader_framebuffer_fetch : require", ""},
          {"gl_LastFragData[0]", "gl_FragCoord"}}) {
        if (const std::size_t place = text.find(part); place != std::string::npos)
            text.replace(place, part.size(), instead);
    }
    return text;
}

/// What a compiler that knows nothing but OpenGL ES 2.0 says to the shader, within what every device has and no more:
/// the least counts, and indices and loops that can be unrolled; empty where it is content. The shader stays
/// in a file of the build folder.
std::string objections(const Shader& shader, const std::string& name)
{
    const std::string stage = shader.kind == GL_VERTEX_SHADER ? "vert" : "frag";
    std::filesystem::create_directories(LAMINA_SHADER_FOLDER);
    const std::string path = std::string(LAMINA_SHADER_FOLDER) + "/" + name + "." + stage;
    writeFile(path, withoutFramebufferFetch(shader.text));
    const CommandResult result =
        runCommand("/usr/bin/env", {"glslangValidator", "-S", stage, LAMINA_SHADER_LIMITS, path});
    return result.exitCode == 0 ? std::string() : path + "\n" + result.output + result.errors + shader.text;
}

/// The uniforms that shaders of this kind declare, each on a line of its own.
std::set<std::string> uniformsOf(const std::set<Shader>& shaders, GLenum kind)
{
    std::set<std::string> names;
    for (const Shader& shader : shaders) {
        std::istringstream lines(shader.text);
        for (std::string line; shader.kind == kind && std::getline(lines, line);) {
            if (line.starts_with("uniform "))
                names.insert(line.substr(line.rfind(' ') + 1));
        }
    }
    return names;
}

/// With values of each property that may lead to other shaders: the ends of its range and some in between.
void makeInAllWays(const FilterDescription& description)
{
    constexpr double kReach = 64;
    ASSERT_TRUE(description.make({})->canRender()) << description.className;
    for (const FilterProperty& property : description.properties) {
        const bool whole = std::holds_alternative<int>(property.fallback);
        if (!whole && !std::holds_alternative<float>(property.fallback))
            continue;
        for (const double share : {0.0, 0.02, 0.05, 0.1, 0.2, 0.25, 0.5, 0.75, 1.0}) {
            const double number =
                std::lerp(std::max(property.range.minimum, -kReach), std::min(property.range.maximum, kReach), share);
            const TypedValue value =
                whole ? TypedValue(static_cast<int>(std::lround(number))) : TypedValue(static_cast<float>(number));
            const auto filter = makeFilter(description, {{property.name, value}});
            EXPECT_TRUE(filter.ok() && (*filter)->canRender())
                << description.className << " with " << property.name << " " << number;
        }
    }
}

TEST_F(ShaderValidationTest, EveryShaderOfTheCatalogueIsStrictlyOpenGLES2)
{
    ASSERT_FALSE(filterCatalogue().all().empty());
    // Whatever other tests have compiled, which may be wrong on purpose, goes; the filters' shaders are compiled anew.
    NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification);
    onQueue([] { collected().clear(); });
    for (const auto& [name, description] : filterCatalogue().all())
        makeInAllWays(description);
    using Gaussian = GPUImageGaussianBlurFilter;
    using Box = GPUImageBoxBlurFilter;
    for (const unsigned radius : {0U, 1U, 7U}) {
        Gaussian().switchToVertexShader(Gaussian::vertexShaderForOptimizedBlurOfRadius(5 * radius, 9),
                                        Gaussian::fragmentShaderForOptimizedBlurOfRadius(5 * radius, 9));
        Gaussian().switchToVertexShader(Gaussian::vertexShaderForStandardBlurOfRadius(radius, 2),
                                        Gaussian::fragmentShaderForStandardBlurOfRadius(radius, 2));
        Box().switchToVertexShader(Box::vertexShaderForStandardBlurOfRadius(radius, 2),
                                   Box::fragmentShaderForStandardBlurOfRadius(radius, 2));
    }

    for (unsigned radius = 1; radius <= kLargestMorphologyRadius; ++radius) {
        for (const MorphologyPlaces places : {MorphologyPlaces::HandedOver, MorphologyPlaces::Computed})
            GPUImageFilter(morphologyVertexShader(places, radius),
                           morphologyFragmentShader(Morphology::Erosion, MorphologyChannels::Red, places, radius));
    }

    const std::set<Shader> shaders = valueFromVideoProcessingQueue([] { return collected(); });
    // Most filters have a fragment shader of their own; radii of blurs and of morphology make more of both kinds.
    ASSERT_GT(shaders.size(), filterCatalogue().all().size());
    int number = 0;
    for (const Shader& shader : shaders)
        EXPECT_EQ(objections(shader, "shader" + std::to_string(++number)), "");

    // Where fragment shaders lack the high precision, a uniform that is in both would differ in precision, and not
    // link.
    const std::set<std::string> inVertexShaders = uniformsOf(shaders, GL_VERTEX_SHADER);
    const std::set<std::string> inFragmentShaders = uniformsOf(shaders, GL_FRAGMENT_SHADER);
    EXPECT_THAT(inVertexShaders, testing::Contains("texelWidthOffset;"));
    EXPECT_THAT(inFragmentShaders, testing::Contains("hazeDistance;"));
    for (const std::string& name : inVertexShaders)
        EXPECT_FALSE(inFragmentShaders.contains(name)) << name;
}

} // namespace
} // namespace lamina::test
