#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/filters/FilterCatalogue.h"
#include "gpu/sources/GPUImagePicture.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "support/Measuring.h"
#include "support/TextureSource.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <string>
#include <vector>

// The filter graph beside bare GL: the same shader and sampling in the same program and context, drawn by hand. "bare"
// is the ratio of the medians, and "limit" what it may be. Both are timed in turn, each to the end of its glFinish:
// drivers that draw on the processor put off all work until then.

namespace {

using namespace lamina;
using namespace lamina::bench;

constexpr IntSize kPhoto{4000, 3000};
constexpr IntSize kCanvas{1125, 1125};

/// A point operation such as the looks are made of.
constexpr const char* kTintFragmentShader = R"(
    precision highp float;
    varying vec2 textureCoordinate;
    uniform sampler2D inputImageTexture;
    uniform float amount;
    void main()
    {
        vec4 color = texture2D(inputImageTexture, textureCoordinate);
        float luminance = dot(color.rgb, vec3(0.2125, 0.7154, 0.0721));
        gl_FragColor = vec4(mix(color.rgb, vec3(luminance), amount), color.a);
    })";

CGImage noise(IntSize size)
{
    return noisePicture(size.width, size.height, CGImageAlphaInfo::Last);
}

/// Counters for what was timed in turn.
void report(benchmark::State& state, const std::vector<double>& ours, const std::vector<double>& bare, double limit)
{
    if (ours.empty())
        return;
    state.counters["bare"] = median(ours) / median(bare);
    state.counters["bare_ms"] = 1e3 * median(bare);
    state.counters["limit"] = limit;
}

/// Drawing by hand with one program: a texture to draw from and two to draw into in turn. On the queue.
class BareGL {
public:
    BareGL(IntSize size, const char* fragmentShader)
        : m_size(size)
        , m_program(linkedProgram(kGPUImageVertexShaderString, fragmentShader, {"position", "inputTextureCoordinate"}))
        , m_sampler(m_program ? m_program->uniformIndex("inputImageTexture") : -1)
    {
        glGenTextures(3, m_textures.data());
        glGenFramebuffers(3, m_framebuffers.data());
        for (std::size_t i = 0; i < 3; ++i) {
            glActiveTexture(GL_TEXTURE1);
            glBindTexture(GL_TEXTURE_2D, m_textures[i]);
            for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
                glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
            for (const GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
                glTexParameteri(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
            upload(i, nullptr);
            glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffers[i]);
            glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_textures[i], 0);
        }
    }
    ~BareGL()
    {
        glDeleteFramebuffers(3, m_framebuffers.data());
        glDeleteTextures(3, m_textures.data());
    }
    BareGL(const BareGL&) = delete;
    BareGL& operator=(const BareGL&) = delete;

    void upload(const std::uint8_t* pixels) { upload(0, pixels); }

    void draw(int passes)
    {
        GPUImageContext::setActiveShaderProgram(m_program);
        std::size_t from = 0;
        for (int i = 0; i < passes; ++i) {
            const std::size_t to = from == 1 ? 2 : 1;
            glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffers[to]);
            glViewport(0, 0, m_size.width, m_size.height);
            glClearColor(0, 0, 0, 0);
            glClear(GL_COLOR_BUFFER_BIT);
            glActiveTexture(GL_TEXTURE2);
            glBindTexture(GL_TEXTURE_2D, m_textures[from]);
            glUniform1i(m_sampler, 2);
            glEnableVertexAttribArray(0);
            glEnableVertexAttribArray(1);
            glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, kGPUImageQuadVertices.data());
            glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 0,
                                  GPUImageFilter::textureCoordinatesForRotation(kGPUImageNoRotation).data());
            glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
            from = to;
        }
    }

    /// Of the last pass of one.
    void read(std::uint8_t* pixels)
    {
        glReadPixels(0, 0, m_size.width, m_size.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    }

private:
    void upload(std::size_t index, const std::uint8_t* pixels)
    {
        glActiveTexture(GL_TEXTURE1);
        glBindTexture(GL_TEXTURE_2D, m_textures[index]);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, m_size.width, m_size.height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    }

    IntSize m_size;
    std::shared_ptr<GLProgram> m_program;
    GLint m_sampler;
    std::array<GLuint, 3> m_textures{};
    std::array<GLuint, 3> m_framebuffers{};
};

std::shared_ptr<GPUImageFilter> tint(float amount = 0.5F)
{
    auto filter = std::make_shared<GPUImageFilter>(kTintFragmentShader);
    filter->setFloat(amount, "amount");
    return filter;
}

void passes(benchmark::State& state, IntSize size, int count)
{
    std::vector<std::shared_ptr<GPUImageFilter>> chain;
    for (int i = 0; i < count; ++i) {
        chain.push_back(tint());
        if (i > 0)
            chain[chain.size() - 2]->addTarget(chain.back());
    }
    const CGImage pixels = noise(size);
    std::vector<double> bare;
    std::vector<double> ours;
    runSynchronouslyOnVideoProcessingQueue([&] {
        BareGL gl(size, kTintFragmentShader);
        gl.upload(pixels.bytes().data());
        TextureSource source(size);
        source.addTarget(chain.front());
        const auto drawBare = [&] { gl.draw(count); };
        const auto drawOurs = [&] { source.push(); };
        for (int warmUp = 0; warmUp < 2; ++warmUp) {
            secondsToFinish(drawBare);
            secondsToFinish(drawOurs);
        }
        for (auto _ : state) {
            bare.push_back(secondsToFinish(drawBare));
            ours.push_back(secondsToFinish(drawOurs));
            state.SetIterationTime(ours.back());
        }
    });
    report(state, ours, bare, 1.05);
}

void pictureThroughAFilter(benchmark::State& state, IntSize size)
{
    const auto filter = tint();
    const CGImage image = noise(size);
    std::vector<double> bare;
    std::vector<double> ours;
    auto gl = valueFromVideoProcessingQueue([&] { return std::make_shared<BareGL>(size, kTintFragmentShader); });
    const auto runBare = [&] {
        runSynchronouslyOnVideoProcessingQueue([&] {
            PixelBuffer pixels = PixelBuffer::allocate(image.bytes().size());
            gl->upload(image.bytes().data());
            gl->draw(1);
            gl->read(pixels.data());
            benchmark::DoNotOptimize(pixels.data());
        });
    };
    CGImage result;
    const auto runOurs = [&] { result = filter->newCGImageByFilteringCGImage(image); };
    runBare();
    runOurs();
    for (auto _ : state) {
        result = {}; // lets its memory go, as the bare one does
        bare.push_back(seconds(runBare));
        ours.push_back(seconds(runOurs));
        if (!result) {
            state.SkipWithError("gave no picture");
            break;
        }
        state.SetIterationTime(ours.back());
    }
    runSynchronouslyOnVideoProcessingQueue([&] { gl.reset(); });
    report(state, ours, bare, 1.10);
}

/// The row of thumbnails: each look is a new filter, its programs are there already. The first of the fourteen is the
/// picture as it is.
void fourteenThumbnails(benchmark::State& state)
{
    constexpr std::array kLooks{"GPUImageAmatorkaFilter",     "GPUImageSepiaFilter",  "GpuImageCustomFilter3",
                                "GPUImageGrayscaleFilter",    "GPUImageToonFilter",   "GPUImageHueFilter",
                                "GPUImageSoftEleganceFilter", "GPUImageHazeFilter",   "GPUImageEmbossFilter",
                                "GPUImageMonochromeFilter",   "GpuImageCustomFilter", "GPUImageErosionFilter",
                                "GpuImageCustomHue"};
    const UIImage thumbnail(noise({66, 66}));
    std::string missing;
    const auto fill = [&] {
        for (const char* look : kLooks) {
            const FilterDescription* description = filterCatalogue().find(look);
            auto filter = description ? makeFilter(*description, {}) : Error{look, "is not in the catalogue"};
            if (!filter || !(*filter)->imageByFilteringImage(thumbnail))
                missing = look;
        }
    };
    fill();
    std::vector<double> times;
    for (auto _ : state) {
        times.push_back(seconds(fill));
        state.SetIterationTime(times.back());
    }
    if (!missing.empty())
        state.SkipWithError(("no picture from " + missing).c_str());
    else if (!times.empty())
        state.counters["limit_ms"] = 60;
}

/// A slider's work between two frames, beside handing an empty block to the queue. Nothing is built anew.
void uniformChange(benchmark::State& state)
{
    constexpr int kChanges = 1000;
    const auto filter = tint();
    const auto settle = [] { runSynchronouslyOnVideoProcessingQueue([] {}); };
    std::vector<double> bare;
    std::vector<double> ours;
    for (auto _ : state) {
        bare.push_back(seconds([&] {
            for (int i = 0; i < kChanges; ++i)
                runAsynchronouslyOnVideoProcessingQueue([] {});
            settle();
        }));
        ours.push_back(seconds([&] {
            for (int i = 0; i < kChanges; ++i)
                filter->setFloat(static_cast<float>(i) / kChanges, "amount");
            settle();
        }));
        state.SetIterationTime(ours.back() / kChanges);
    }
    if (!ours.empty())
        state.counters["blocks"] = median(ours) / median(bare);
}

/// A program that was not there: what a change of a uniform must not cost.
void programBuilding(benchmark::State& state)
{
    static int number = 0;
    for (auto _ : state) {
        const std::string text = std::string(kTintFragmentShader) + "// " + std::to_string(++number);
        const GPUImageFilter filter(text);
        benchmark::DoNotOptimize(filter.canRender());
    }
}

void contextMaking(benchmark::State& state)
{
    for (auto _ : state) {
        const auto context = EAGLContext::make(EAGLRenderingAPI::OpenGLES2);
        if (!context || !EAGLContext::setCurrentContext(context->get())) {
            state.SkipWithError("there is no context");
            break;
        }
        benchmark::DoNotOptimize(glGetString(GL_VERSION));
        EAGLContext::setCurrentContext(nullptr);
    }
    state.counters["limit_ms"] = 20;
}

void registerAll(double firstContextSeconds)
{
    const auto timed = [](benchmark::internal::Benchmark* benchmark) {
        benchmark->Unit(benchmark::kMillisecond)->MinTime(2)->UseManualTime();
    };
    for (const auto& [name, size] : {std::pair{"canvas", kCanvas}, {"photo", kPhoto}}) {
        const std::string at = std::string("/") + name;
        timed(benchmark::RegisterBenchmark(("onePass" + at).c_str(), passes, size, 1));
        timed(benchmark::RegisterBenchmark(("tenPasses" + at).c_str(), passes, size, 10));
        timed(benchmark::RegisterBenchmark(("imageByFilteringImage" + at).c_str(), pictureThroughAFilter, size));
    }
    timed(benchmark::RegisterBenchmark("fourteenThumbnails", fourteenThumbnails));
    benchmark::RegisterBenchmark("uniformChange", uniformChange)
        ->Unit(benchmark::kMicrosecond)
        ->Iterations(100) // of a thousand changes each
        ->UseManualTime();
    benchmark::RegisterBenchmark("programBuilding", programBuilding)->Unit(benchmark::kMillisecond)->UseRealTime();
    benchmark::RegisterBenchmark("context/cold",
                                 [=](benchmark::State& state) {
                                     for (auto _ : state)
                                         state.SetIterationTime(firstContextSeconds);
                                 })
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1)
        ->UseManualTime();
    benchmark::RegisterBenchmark("context/warm", contextMaking)->Unit(benchmark::kMillisecond)->UseRealTime();
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    Outcome available = std::monostate{};
    const double first = seconds([&] { available = GPUImageContext::availability(); });
    if (!available) {
        std::fprintf(stderr, "%s: %s\n", available.error().subject.c_str(), available.error().cause.c_str());
        return 1;
    }
    registerAll(first);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
