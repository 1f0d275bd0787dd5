#include "GLCalls.h"
#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/GPUImageTarget.h"
#include "gpu/endpoints/GPUImageVideoCamera.h"
#include "gpu/filters/FilterCatalogue.h"
#include "platform/base/CMTime.h"
#include "support/BenchCamera.h"
#include "support/Measuring.h"

#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>
#include <memory>
#include <string>
#include <thread>
#include <vector>

// A camera in the process through filters, each frame read as a view would. "cores": the processor's time of the whole
// process, the camera's thread included, over the clock's; "latency_ms": from the camera's handing a frame out to its
// having been read, the median; "first_ms": from the start to the first frame read, of a camera that gives one at once,
// the programs' linking included; "lost": frames that were dropped. Each limit follows its figure.

namespace {

using namespace lamina;
using namespace lamina::bench;

constexpr double kSeconds = 4;

double processorSeconds()
{
    timespec spent{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
    return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) / 1e9;
}

/// The end of a graph: has each frame drawn to its end.
class Reader : public GPUImageTarget {
public:
    std::vector<double> latencies; ///< seconds
    std::atomic<int> count{0};

    void newFrameReadyAtTime(const CMTime& frameTime, int) override
    {
        benchmark::DoNotOptimize(m_framebuffer->hostPixels());
        m_framebuffer.reset();
        latencies.push_back(SteadyClock::instance()->now() - frameTime.seconds());
        ++count;
    }
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int) override
    {
        m_framebuffer.take(std::move(framebuffer));
    }
    void setInputSize(CGSize, int) override {}
    void setInputRotation(GPUImageRotationMode, int) override {}

private:
    FramebufferHold m_framebuffer;
};

/// A camera with filters behind it.
struct Chain {
    std::shared_ptr<BenchCamera> device;
    std::shared_ptr<GPUImageVideoCamera> camera;
    std::vector<std::shared_ptr<GPUImageStage>> filters;
    std::shared_ptr<Reader> reader = std::make_shared<Reader>();

    Chain(IntSize size, const std::vector<std::string>& names)
        : device(std::make_shared<BenchCamera>(size, 30))
        , camera(*GPUImageVideoCamera::make(kAVCaptureSessionPresetHigh, device))
    {
        for (const std::string& name : names)
            filters.push_back(*makeFilter(*filterCatalogue().find(name), {}));
        camera->addTarget(filters.front());
        for (std::size_t i = 1; i < filters.size(); ++i)
            filters[i - 1]->addTarget(filters[i]);
        filters.back()->addTarget(reader);
    }
};

void report(benchmark::State& state, const char* name, double value, double limit)
{
    state.counters[name] = value;
    state.counters[std::string(name) + "_limit"] = limit;
}

/// How frames come into the graph.
enum class Way {
    InMemory, ///< as they come
    Turned,   ///< as of a phone that is held upright
    Drawn,    ///< the device draws, and converts
};

void live(benchmark::State& state, IntSize size, const std::vector<std::string>& names, Way way, double coresLimit)
{
    GPUImageContext::setUsesKernels(way != Way::Drawn);
    for (auto _ : state) {
        Chain chain(size, names);
        chain.camera->setCaptureAsYUV(way == Way::Drawn);
        if (way == Way::Turned)
            chain.camera->setOutputImageOrientation(UIInterfaceOrientation::Portrait);
        const double began = SteadyClock::instance()->now();
        chain.camera->startCameraCapture();
        while (chain.reader->count == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const double first = SteadyClock::instance()->now() - began;
        std::this_thread::sleep_for(std::chrono::milliseconds(300)); // warm
        const double spent = processorSeconds();
        const int given = chain.device->given();
        const int read = chain.reader->count;
        const double taken = seconds([] { std::this_thread::sleep_for(std::chrono::duration<double>(kSeconds)); });
        report(state, "cores", (processorSeconds() - spent) / taken, coresLimit);
        report(state, "lost", chain.device->given() - given - (chain.reader->count - read), 1);
        chain.camera->stopCameraCapture();
        report(state, "latency_ms", 1000 * median(chain.reader->latencies), 1000.0 / 30);
        report(state, "first_ms", 1000 * first, 300);
    }
    GPUImageContext::setUsesKernels(true);
}

/// Frames as fast as they go; 18,000 are ten minutes'.
void many(benchmark::State& state, bool asYUV, int frames)
{
    GPUImageContext::setUsesKernels(!asYUV);
    for (auto _ : state) {
        Chain chain({640, 480}, {"GPUImageSepiaFilter", "GPUImageSaturationFilter"});
        CMSampleBuffer sample;
        sample.imageBuffer = noiseFrame({640, 480}, asYUV ? CVPixelFormat::BiPlanar420VideoRange : CVPixelFormat::BGRA);
        const auto push = [&](int count) {
            for (int i = 0; i < count; ++i) {
                sample.presentationTime = CMTime::make(i, 30);
                chain.camera->processVideoSampleBuffer(sample);
            }
            chain.reader->latencies.clear();
        };
        push(600);
        const double memory = residentMegabytes();
        const test::GLCalls calls = test::glCallsSoFar();
        push(frames);
        report(state, "grown_MB", residentMegabytes() - memory, 1);
        report(state, "gl_objects", (test::glCallsSoFar() - calls).objectsMade(), 0);
    }
    GPUImageContext::setUsesKernels(true);
}

const std::vector<std::string> kTwo{"GPUImageSepiaFilter", "GPUImageSaturationFilter"};

const std::vector<std::string> kSepia{"GPUImageSepiaFilter"};
constexpr IntSize kVGA{640, 480};
constexpr IntSize kHD{1280, 720};

BENCHMARK_CAPTURE(live, vga_two_filters, kVGA, kTwo, Way::InMemory, 0.5)->Iterations(1)->UseRealTime();
BENCHMARK_CAPTURE(live, vga_two_filters_turned, kVGA, kTwo, Way::Turned, 0.5)->Iterations(1)->UseRealTime();
BENCHMARK_CAPTURE(live, vga_two_filters_drawn, kVGA, kTwo, Way::Drawn, 2)->Iterations(1)->UseRealTime();
BENCHMARK_CAPTURE(live, hd_sepia, kHD, kSepia, Way::InMemory, 2)->Iterations(1)->UseRealTime();
BENCHMARK_CAPTURE(live, hd_sepia_drawn, kHD, kSepia, Way::Drawn, 2)->Iterations(1)->UseRealTime();
BENCHMARK_CAPTURE(many, in_memory, false, 18000)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
BENCHMARK_CAPTURE(many, drawn, true, 3000)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
