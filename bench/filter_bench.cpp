#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/filters/FilterCatalogue.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"
#include "support/Measuring.h"
#include "support/TextureSource.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// What filters cost. "speed" draws some of them in turn with bare GL (where the processor draws, in its time and not by
// the clock): "bare" is the ratio to draws of the same shaders
// with the same sampling, "before" that to draws of the same filter's plain texts with interpolated sampling, which is
// what a GPU is given. "limit" and "limit_before" are what they may be. "catalogue" is the table of all filters, new
// ones as they come; those that take more than a second are marked. "endurance" tells what ten thousand frames leave
// behind.

namespace {

using namespace lamina;
using namespace lamina::bench;

constexpr IntSize kPhoto{4000, 3000};
constexpr IntSize kCanvas{1125, 1125};
constexpr double kMostSeconds = 1;

struct ShaderPair {
    std::string vertex;
    std::string fragment;
};

/// The texts that were compiled last, without what the library puts before them. On the queue.
std::vector<ShaderPair>& compiled()
{
    static std::vector<ShaderPair> pairs;
    return pairs;
}

} // namespace

/// Preferred by the linker to the driver's own, which it calls.
extern "C" void glShaderSource(GLuint shader, GLsizei count, const GLchar* const* texts, const GLint* lengths)
{
    using Function = void (*)(GLuint, GLsizei, const GLchar* const*, const GLint*);
    static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "glShaderSource"));
    GLint kind = 0;
    glGetShaderiv(shader, GL_SHADER_TYPE, &kind);
    if (kind == GL_VERTEX_SHADER)
        compiled().push_back({texts[count - 1], {}});
    else if (!compiled().empty())
        compiled().back().fragment = texts[count - 1];
    real(shader, count, texts, lengths);
}

namespace {

GLuint shaderOf(GLenum kind, const std::string& text)
{
    const GLuint shader = glCreateShader(kind);
    const char* const plain = text.c_str();
    glShaderSource(shader, 1, &plain, nullptr);
    glCompileShader(shader);
    return shader;
}

/// A program as GL makes it of the texts, with nothing before them.
GLuint plainProgram(const ShaderPair& texts)
{
    const GLuint program = glCreateProgram();
    glAttachShader(program, shaderOf(GL_VERTEX_SHADER, texts.vertex));
    glAttachShader(program, shaderOf(GL_FRAGMENT_SHADER, texts.fragment));
    glBindAttribLocation(program, 0, "position");
    glBindAttribLocation(program, 1, "inputTextureCoordinate");
    glLinkProgram(program);
    return program;
}

/// A program as the library makes it, for this process.
GLuint libraryProgram(const ShaderPair& texts)
{
    GPUImageContext::setActiveShaderProgram(
        linkedProgram(texts.vertex, texts.fragment, {"position", "inputTextureCoordinate"}));
    GLint program = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    return static_cast<GLuint>(program);
}

/// One or two passes drawn by hand. On the queue.
class BarePasses {
public:
    BarePasses(IntSize size, std::vector<GLuint> programs, TextureReads reads)
        : m_size(size)
        , m_programs(std::move(programs))
        , m_reads(reads)
    {
        for (std::size_t i = 0; i < m_programs.size(); ++i)
            m_outputs.push_back(std::make_unique<GPUImageFramebuffer>(sizeOf(size)));
    }

    void draw(GPUImageFramebuffer& input)
    {
        GPUImageFramebuffer* from = &input;
        for (std::size_t i = 0; i < m_programs.size(); ++i) {
            m_outputs[i]->activateFramebuffer();
            glClearColor(0, 0, 0, 0);
            glClear(GL_COLOR_BUFFER_BIT);
            glUseProgram(m_programs[i]);
            setSteps(m_programs[i], i == 0);
            glActiveTexture(GL_TEXTURE2);
            from->bindForReading(m_reads);
            glUniform1i(glGetUniformLocation(m_programs[i], "inputImageTexture"), 2);
            glEnableVertexAttribArray(0);
            glEnableVertexAttribArray(1);
            glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, kGPUImageQuadVertices.data());
            glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 0,
                                  GPUImageFilter::textureCoordinatesForRotation(kGPUImageNoRotation).data());
            glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
            from = m_outputs[i].get();
        }
        GPUImageContext::sharedImageProcessingContext().setCurrentShaderProgram(nullptr);
    }

private:
    /// One texel, down in the first of two passes and across in the second.
    void setSteps(GLuint program, bool down) const
    {
        const auto set = [program](const char* name, float value) {
            glUniform1f(glGetUniformLocation(program, name), value);
        };
        const float width = 1 / static_cast<float>(m_size.width);
        const float height = 1 / static_cast<float>(m_size.height);
        set("texelWidth", width);
        set("texelHeight", height);
        set("texelWidthOffset", down ? 0 : width);
        set("texelHeightOffset", down ? height : 0);
    }

    IntSize m_size;
    std::vector<GLuint> m_programs;
    TextureReads m_reads;
    std::vector<std::unique_ptr<GPUImageFramebuffer>> m_outputs;
};

struct Speed {
    const char* name;
    const char* filter;
    FilterSettings settings;
    std::size_t passes;
    double limitBefore;
    /// The texts before, where a device may be given others.
    std::vector<ShaderPair> textsBefore = {};
};

std::vector<Speed> speeds()
{
    using Blur = GPUImageGaussianBlurFilter;
    constexpr unsigned kReach = 22; // of a bell of sigma 10
    const ShaderPair pairs{Blur::vertexShaderForOptimizedBlurOfRadius(kReach, 10),
                           Blur::fragmentShaderForOptimizedBlurOfRadius(kReach, 10)};
    return {{"sepia", "GPUImageSepiaFilter", {}, 1, 0.85},
            {"toon", "GPUImageToonFilter", {}, 1, 0.5},
            {"erosion", "GPUImageErosionFilter", {}, 2, 0.34},
            {"gaussian10", "GPUImageGaussianBlurFilter", {{"blurRadiusInPixels", 10.0F}}, 2, 0.6, {pairs, pairs}}};
}

/// The shaders of each pass of a filter that has just been made and set. One for all passes is compiled once.
std::vector<ShaderPair> textsOfPasses(const Speed& wanted)
{
    if (!wanted.textsBefore.empty() && !GPUImageContext::deviceDrawsOnProcessor())
        return wanted.textsBefore;
    const std::vector<ShaderPair>& all = compiled();
    if (all.size() < wanted.passes)
        return {wanted.passes, all.back()};
    return {all.end() - static_cast<std::ptrdiff_t>(wanted.passes), all.end()};
}

void speed(benchmark::State& state, const Speed& wanted)
{
    std::array<std::vector<double>, 3> times;
    NotificationCenter::defaultCenter().post(
        UIApplicationDidReceiveMemoryWarningNotification); // drops programs: what is asked for is compiled, and seen
    runSynchronouslyOnVideoProcessingQueue([&] {
        TextureSource source(kPhoto);
        const FilterDescription& description = *filterCatalogue().find(wanted.filter);
        compiled().clear();
        auto filter = *makeFilter(description, wanted.settings);
        source.addTarget(filter);
        source.push();
        const std::vector<ShaderPair> texts = textsOfPasses(wanted);
        std::vector<GLuint> bare;
        std::vector<GLuint> before;
        for (const ShaderPair& pass : texts)
            bare.push_back(libraryProgram(pass));
        for (const ShaderPair& pass : wanted.textsBefore.empty() ? texts : wanted.textsBefore)
            before.push_back(plainProgram(pass));
        BarePasses bareDraw(kPhoto, bare, TextureReads::TexelCentres);
        BarePasses drawBefore(kPhoto, before, TextureReads::Anywhere);
        const auto timed = [](const auto& draw) {
            return GPUImageContext::deviceDrawsOnProcessor() ? processorSecondsToFinish(draw) : secondsToFinish(draw);
        };
        const auto inTurn = [&] {
            return std::array{timed([&] { source.push(); }), timed([&] { bareDraw.draw(source.framebuffer()); }),
                              timed([&] { drawBefore.draw(source.framebuffer()); })};
        };
        inTurn();
        for (auto _ : state) {
            const std::array now = inTurn();
            for (std::size_t i = 0; i < now.size(); ++i)
                times[i].push_back(now[i]);
            state.SetIterationTime(now[0]);
        }
    });
    if (times[0].empty())
        return;
    state.counters["bare"] = median(times[0]) / median(times[1]);
    state.counters["limit"] = 1.05;
    state.counters["before"] = median(times[0]) / median(times[2]);
    state.counters["limit_before"] = wanted.limitBefore;
    state.counters["before_ms"] = 1e3 * median(times[2]);
}

/// A frame through a filter as it is when it is new, with noise in all its slots.
void cost(benchmark::State& state, const FilterDescription& description, IntSize size)
{
    std::vector<double> times;
    double processorSeconds = 0;
    runSynchronouslyOnVideoProcessingQueue([&] {
        const auto filter = makeFilter(description, {});
        std::vector<std::shared_ptr<TextureSource>> sources;
        for (int slot = 0; filter && slot < description.inputs; ++slot) {
            sources.push_back(std::make_shared<TextureSource>(size));
            sources.back()->addTarget(*filter, slot);
        }
        // The first slot comes last: a fourth after it would be passed over.
        const auto draw = [&] {
            for (std::size_t slot = sources.size(); slot-- > 0;)
                sources[slot]->push();
        };
        secondsToFinish(draw);
        for (auto _ : state) {
            processorSeconds = processorSecondsToFinish([&] { times.push_back(secondsToFinish(draw)); });
            state.SetIterationTime(times.back());
        }
    });
    state.counters["processor_ms"] = 1e3 * processorSeconds;
    if (!times.empty() && median(times) > kMostSeconds)
        state.SetLabel("above 1 s");
}

/// What many small frames of a stream leave behind in memory, which should be nothing.
void endurance(benchmark::State& state, const FilterDescription& description)
{
    constexpr int kFrames = 10'000;
    constexpr int kWarm = 1000;
    constexpr int kFramesAtOnce = 10;
    for (auto _ : state) {
        runSynchronouslyOnVideoProcessingQueue([&] {
            const auto filter = makeFilter(description, description.sample);
            TextureSource frames({16, 16});
            TextureSource still({16, 16});
            frames.addTarget(*filter, 0);
            for (int slot = 1; slot < description.inputs; ++slot)
                still.addTarget(*filter, slot);
            still.push();
            const auto push = [&](int from, int to) {
                for (int i = from; i < to; ++i) {
                    frames.push(CMTime::make(i, 30));
                    if (i % kFramesAtOnce == 0) // a driver that draws on the processor stores up what isn't asked for
                        glFinish();
                }
                glFinish();
            };
            push(0, kWarm);
            const double before = residentMegabytes();
            const std::size_t living = GPUImageFramebufferCache::livingCount();
            state.SetIterationTime(seconds([&] { push(kWarm, kWarm + kFrames); }));
            state.counters["grown_MB"] = residentMegabytes() - before;
            state.counters["framebuffers"] = static_cast<double>(GPUImageFramebufferCache::livingCount() - living);
        });
    }
    state.counters["limit_MB"] = 1;
}

void registerAll()
{
    for (const Speed& wanted : speeds())
        benchmark::RegisterBenchmark((std::string("speed/") + wanted.name).c_str(),
                                     [wanted](benchmark::State& state) { speed(state, wanted); })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(5)
            ->UseManualTime();
    for (const auto& [name, description] : filterCatalogue().all()) {
        for (const auto& [at, size] : {std::pair{"/canvas", kCanvas}, {"/photo", kPhoto}})
            benchmark::RegisterBenchmark(("catalogue/" + name + at).c_str(), cost, description, size)
                ->Unit(benchmark::kMillisecond)
                ->Iterations(3)
                ->UseManualTime();
        benchmark::RegisterBenchmark(("endurance/" + name).c_str(), endurance, description)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1)
            ->UseManualTime();
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    if (const Outcome available = GPUImageContext::availability(); !available) {
        std::fprintf(stderr, "%s: %s\n", available.error().subject.c_str(), available.error().cause.c_str());
        return 1;
    }
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
