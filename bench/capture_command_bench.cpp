// Cameras: what the time until the first frame, the graph and `lamina capture` cost with the camera of a PipeWire that
// belongs to this program. LAMINA_CAPTURE_SECONDS says how long each recording is (5): 600 for ten minutes of one.

#include "CommandRunner.h"
#include "PipeWireSession.h"
#include "ProcessUsage.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/endpoints/GPUImageVideoCamera.h"
#include "gpu/filters/color/GPUImageBrightnessFilter.h"
#include "gpu/filters/color/GPUImageSepiaFilter.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/AVCaptureOutput.h"
#include "platform/media/AVCaptureSession.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/capture/CaptureService.h"

#include <atomic>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace {

using namespace lamina;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

double recordingSeconds()
{
    const char* const told = std::getenv("LAMINA_CAPTURE_SECONDS");
    return told ? std::atof(told) : 5;
}

/// Null where PipeWire can't be started.
std::shared_ptr<AVCaptureDevice> camera(benchmark::State& state)
{
    AVCaptureDevice::setSource(CaptureService::openSource());
    CaptureService::shared().start();
    CaptureService::shared().waitUntilListed(10);
    std::shared_ptr<AVCaptureDevice> first = AVCaptureDevice::defaultVideoDevice();
    if (!first)
        state.SkipWithError("there is no camera");
    return first;
}

class FirstFrame : public AVCaptureSampleBufferDelegate {
public:
    void captureOutput(AVCaptureOutput&, const CMSampleBuffer&) override
    {
        if (!m_hasCome.exchange(true))
            m_come.set_value();
    }
    void wait() { m_come.get_future().wait(); }

private:
    std::atomic<bool> m_hasCome{false};
    std::promise<void> m_come;
};

/// From the start of the stream. Limit: 300 ms.
void firstFrame(benchmark::State& state)
{
    const test::PipeWireSession pipewire(test::PipeWireSession::Camera);
    const std::shared_ptr<AVCaptureDevice> device = camera(state);
    for (auto _ : state) {
        if (!device)
            break;
        const auto session = std::make_shared<AVCaptureSession>();
        const auto output = std::make_shared<AVCaptureVideoDataOutput>();
        const auto first = std::make_shared<FirstFrame>();
        output->setSampleBufferDelegate(first, nullptr);
        session->addInput(*device->makeInput());
        session->addOutput(output);
        session->setSessionPreset(kAVCaptureSessionPreset640x480);
        const Clock::time_point begin = Clock::now();
        session->startRunning();
        first->wait();
        state.SetIterationTime(secondsSince(begin));
        session->stopRunning();
    }
    CaptureService::shared().stop();
    state.counters["limit_ms"] = 300;
}
BENCHMARK(firstFrame)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

/// 640 × 480 at 30 a second through two filters, without anybody who writes them. Limit: half a core. The camera's own
/// work is another process's.
void graphOfTwoFilters(benchmark::State& state)
{
    const test::PipeWireSession pipewire(test::PipeWireSession::Camera);
    const std::shared_ptr<AVCaptureDevice> device = camera(state);
    const auto made = GPUImageVideoCamera::make(kAVCaptureSessionPreset640x480, device);
    if (!made)
        return state.SkipWithError("the camera can't be opened");
    const auto sepia = std::make_shared<GPUImageSepiaFilter>();
    const auto brightness = std::make_shared<GPUImageBrightnessFilter>();
    std::atomic<int> frames{0};
    brightness->setFrameProcessingCompletionBlock([&frames](GPUImageOutput&, const CMTime&) { ++frames; });
    (*made)->setFrameRate(30);
    (*made)->addTarget(sepia);
    sepia->addTarget(brightness);
    (*made)->startCameraCapture();
    constexpr std::chrono::milliseconds kWarm{500};
    std::this_thread::sleep_for(kWarm);
    for (auto _ : state) {
        rusage usage{};
        ::getrusage(RUSAGE_SELF, &usage);
        const double before = test::usageOf(usage).processorSeconds;
        const int framesBefore = frames;
        const Clock::time_point begin = Clock::now();
        std::this_thread::sleep_for(std::chrono::duration<double>(recordingSeconds()));
        const double seconds = secondsSince(begin);
        ::getrusage(RUSAGE_SELF, &usage);
        state.SetIterationTime(seconds);
        state.counters["cores"] = (test::usageOf(usage).processorSeconds - before) / seconds;
        state.counters["frames_per_s"] = (frames - framesBefore) / seconds;
    }
    (*made)->stopCameraCapture();
    CaptureService::shared().stop();
    state.counters["limit_cores"] = 0.5;
}
BENCHMARK(graphOfTwoFilters)->UseManualTime()->Unit(benchmark::kSecond)->Iterations(1);

/// One recording by the command: cores while it ran, frames a second that were written, those that were dropped, and
/// the peak of memory.
void record(benchmark::State& state, double seconds, std::vector<std::string> options)
{
    const test::TemporaryFolder folder;
    std::vector<std::string> arguments{
        "capture", "--mute", "--json", "--for", std::to_string(seconds), "-o", folder.path("clip.mp4")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Clock::time_point begin = Clock::now();
    const test::CommandResult run = test::runCommand(LAMINA_COMMAND, arguments);
    state.SetIterationTime(secondsSince(begin));
    if (run.exitCode != 0)
        return state.SkipWithError(run.errors.c_str());
    const nlohmann::json told = nlohmann::json::parse(run.output);
    const double written = told["seconds"];
    state.counters["cores"] = run.processorSeconds / secondsSince(begin);
    state.counters["frames_per_s"] = static_cast<int>(told["frames"]) / written;
    state.counters["dropped"] = told["dropped"];
    state.counters["peak_MB"] = static_cast<double>(run.peakKilobytes) / 1024;
}

/// The same graph with an encoder behind it.
void clipOfTwoFilters(benchmark::State& state)
{
    const test::PipeWireSession pipewire(test::PipeWireSession::Camera);
    for (auto _ : state)
        record(state, recordingSeconds(),
               {"--size", "640x480", "--rate", "30", "--filter", "GPUImageSepiaFilter", "--filter",
                "GPUImageBrightnessFilter"});
}
BENCHMARK(clipOfTwoFilters)->UseManualTime()->Unit(benchmark::kSecond)->Iterations(1);

/// In real time: as many frames a second as the camera gives, none dropped.
void sepiaOf720p(benchmark::State& state)
{
    const test::PipeWireSession pipewire(test::PipeWireSession::Camera);
    for (auto _ : state)
        record(state, recordingSeconds(), {"--size", "1280x720", "--rate", "30", "--filter", "GPUImageSepiaFilter"});
}
BENCHMARK(sepiaOf720p)->UseManualTime()->Unit(benchmark::kSecond)->Iterations(1);

/// A recording beside a tenth of it: memory has to be the same.
void memoryOfALongClip(benchmark::State& state)
{
    const test::PipeWireSession pipewire(test::PipeWireSession::Camera);
    for (auto _ : state) {
        const std::vector<std::string> options{"--size", "320x240", "--rate", "30", "--filter", "GPUImageSepiaFilter"};
        record(state, recordingSeconds() / 10, options);
        state.counters["tenth_MB"] = state.counters["peak_MB"];
        record(state, recordingSeconds(), options);
    }
}
BENCHMARK(memoryOfALongClip)->UseManualTime()->Unit(benchmark::kSecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
