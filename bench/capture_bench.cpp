// Cameras: what a frame's way into the program costs, when the first one comes (limit: 300 ms), and that neither time
// nor idleness costs anything: memory after a while beside memory after some frames, processor time while nobody
// captures (limit: none). LAMINA_BENCH_SECONDS says how long it captures for (default 10).

#include "PipeWireSession.h"
#include "TestCameraNode.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/media/AVCaptureDevice.h"
#include "platform/media/capture/CaptureService.h"
#include "platform/media/capture/RawFrameConversion_p.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace lamina;
using namespace lamina::test;

constexpr CVPixelFormat kFormats[] = {CVPixelFormat::BGRA, CVPixelFormat::BiPlanar420FullRange};

CGImage ramp(IntSize size)
{
    const auto layout = CGImageLayout::rgba(size.width, size.height, CGImageAlphaInfo::NoneSkipLast);
    PixelBuffer pixels = PixelBuffer::allocate(layout.byteCount());
    for (std::size_t i = 0; i < pixels.size(); ++i)
        pixels.data()[i] = static_cast<std::uint8_t>(i / 64 + i % 4 * 40);
    return CGImage::make(layout, std::move(pixels));
}

/// A frame of 1080 rows from one encoding, on one core. `memcpy` is the limit that memory sets: its pixels once.
void convert(benchmark::State& state)
{
    const IntSize size{1920, 1080};
    const auto encoding = static_cast<RawEncoding>(state.range(0));
    const CVPixelFormat format = kFormats[state.range(1)];
    const auto bytes = rawBytesOf(ramp(size), encoding);
    const std::size_t pixels = std::size_t{1920} * 1080;
    RawFrame frame;
    frame.encoding = encoding;
    frame.size = size;
    frame.planes[0] = {bytes.data(), bytes.size(), 0};
    if (encoding == RawEncoding::NV12 || encoding == RawEncoding::I420)
        frame.planes[1] = {bytes.data() + pixels, bytes.size() - pixels, 0};
    if (encoding == RawEncoding::I420)
        frame.planes[2] = {bytes.data() + pixels * 5 / 4, pixels / 4, 0};
    RawFrameConverter converter;
    for (auto _ : state)
        benchmark::DoNotOptimize(converter.converted(frame, format));
    state.SetLabel(std::string(kRawEncodingNames[static_cast<std::size_t>(encoding)]) +
                   (state.range(1) == 0 ? " to BGRA" : " to 420f"));
}
BENCHMARK(convert)->ArgsProduct({benchmark::CreateDenseRange(0, 11, 1), {0, 1}})->Unit(benchmark::kMillisecond);

void copyOfPixels(benchmark::State& state)
{
    const std::vector<char> in(std::size_t{4} * 1920 * 1080, 7);
    std::vector<char> out(in.size());
    for (auto _ : state) {
        std::copy(in.begin(), in.end(), out.begin());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(copyOfPixels)->Unit(benchmark::kMillisecond);

/// Waits for frames.
class Frames {
public:
    AVCaptureHandlers handlers()
    {
        return {[this](const CMSampleBuffer&) {
                    const std::scoped_lock lock(m_mutex);
                    ++m_count;
                    m_came.notify_all();
                },
                [](const Error&) {}};
    }
    bool waitFor(int count)
    {
        std::unique_lock lock(m_mutex);
        return m_came.wait_for(lock, std::chrono::seconds(20), [&] { return m_count >= count; });
    }
    int count()
    {
        const std::scoped_lock lock(m_mutex);
        return m_count;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_came;
    int m_count = 0;
};

/// One session with a camera of each kind for all of the following.
PipeWireSession& session()
{
    static PipeWireSession only;
    return only;
}

std::shared_ptr<AVCaptureDevice> cameraNamed(const std::string& name)
{
    for (int i = 0; i < 2000; ++i) {
        for (const auto& each : CaptureService::shared().devices(AVTrackMediaType::Video)) {
            if (each->uniqueID() == name)
                return each;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return nullptr;
}

/// From starting a camera to its first frame.
void firstFrame(benchmark::State& state)
{
    session();
    CaptureService::shared().start();
    const auto camera = cameraNamed("test-camera");
    if (!camera)
        return state.SkipWithError("no camera");
    Frames warm; // until the session's own linking has come up
    const auto first = camera->makeInput().value();
    first->start({{640, 480}, 30}, warm.handlers());
    warm.waitFor(1);
    first->stop();
    for (auto _ : state) {
        Frames frames;
        const auto input = camera->makeInput().value();
        const auto begin = std::chrono::steady_clock::now();
        input->start({{640, 480}, 30}, frames.handlers());
        if (!frames.waitFor(1))
            return state.SkipWithError("no frame");
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
        input->stop();
    }
}
BENCHMARK(firstFrame)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(20);

/// From nothing (the module not loaded, no connection) to the list of devices.
void firstList(benchmark::State& state)
{
    session();
    for (auto _ : state) {
        CaptureService::shared().start();
        if (!CaptureService::shared().waitUntilListed(20))
            return state.SkipWithError("no list");
    }
}
BENCHMARK(firstList)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

double residentMegabytes()
{
    std::ifstream file("/proc/self/statm");
    double pages = 0;
    double resident = 0;
    file >> pages >> resident;
    return resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1 << 20);
}

double processorSeconds()
{
    timespec spent = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
    return static_cast<double>(spent.tv_sec) + 1e-9 * static_cast<double>(spent.tv_nsec);
}

double benchSeconds()
{
    const char* const told = std::getenv("LAMINA_BENCH_SECONDS");
    return told ? std::atof(told) : 10;
}

/// Frames of 1280 × 720 in YUY2 (0) or MJPG (1) at 30 a second: processor time a second, with the test's camera's own,
/// and how memory grows.
void capturing(benchmark::State& state)
{
    session();
    CaptureService::shared().start();
    const bool isFile = state.range(0) == 1;
    const std::string name = isFile ? "files" : "pairs";
    TestCameraNode node({.name = name,
                         .encoding = isFile ? RawEncoding::MJPG : RawEncoding::YUY2,
                         .sizes = {{1280, 720}},
                         .picture = ramp({1280, 720})});
    const auto camera = cameraNamed(name);
    if (!camera)
        return state.SkipWithError("no camera");
    Frames frames;
    const auto input = camera->makeInput().value();
    input->start({{1280, 720}, 30, CVPixelFormat::BiPlanar420FullRange}, frames.handlers());
    for (auto _ : state) {
        if (!frames.waitFor(30))
            return state.SkipWithError("no frames");
        const double memory = residentMegabytes();
        const double processor = processorSeconds();
        const int count = frames.count();
        const double seconds = benchSeconds();
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
        state.counters["cores"] = (processorSeconds() - processor) / seconds;
        state.counters["frames/s"] = (frames.count() - count) / seconds;
        state.counters["grown MB"] = residentMegabytes() - memory;
    }
    input->stop();
}
BENCHMARK(capturing)->Arg(0)->Arg(1)->Iterations(1)->UseRealTime();

/// Nobody captures; the service is connected, or (1) waits for one that is gone.
void idle(benchmark::State& state)
{
    session().start();
    CaptureService::shared().start();
    CaptureService::shared().waitUntilListed(20);
    if (state.range(0) == 1)
        session().stop();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    for (auto _ : state) {
        const double processor = processorSeconds();
        const double seconds = benchSeconds();
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
        state.counters["ms/s"] = 1000 * (processorSeconds() - processor) / seconds;
    }
}
BENCHMARK(idle)->Arg(0)->Arg(1)->Iterations(1)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
