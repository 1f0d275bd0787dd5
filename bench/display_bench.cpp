// What it costs to show a graph's frames: reading a drawable back beside copying its bytes, drawing a frame by the
// processor and by GL, and whole roads from a camera's bytes to the window, as the share of one core that 30 frames a
// second take.

#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/DisplayDrawable.h"
#include "gpu/endpoints/GPUImageView.h"
#include "gpu/filters/color/GPUImageContrastFilter.h"
#include "gpu/filters/color/GPUImageSepiaFilter.h"
#include "gpu/kernels/ScalingKernel.h"
#include "platform/base/DispatchQueue.h"
#include "platform/host/CanvasItem.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/UIViewController.h"
#include "support/Measuring.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QQuickWindow>

#include <benchmark/benchmark.h>
#include <cstring>
#include <ctime>
#include <memory>
#include <utility>

namespace {

using namespace lamina;

constexpr int kPoints = 375;
constexpr int kScale = 3;
constexpr int kSide = kPoints * kScale;

double processSeconds()
{
    timespec spent{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
    return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) * 1e-9;
}

// ---- a square of 1125 pixels ----

void readBack(benchmark::State& state)
{
    PixelBuffer pixels = PixelBuffer::zeroed(std::size_t{4} * kSide * kSide);
    std::unique_ptr<DisplayDrawable> drawable;
    runSynchronouslyOnVideoProcessingQueue([&] {
        GPUImageContext::useImageProcessingContext();
        drawable = std::make_unique<DisplayDrawable>(IntSize{kSide, kSide});
    });
    for (auto _ : state) {
        runSynchronouslyOnVideoProcessingQueue([&] {
            drawable->activate();
            glClearColor(1, 0, 0, 1);
            glClear(GL_COLOR_BUFFER_BIT);
            glFinish();
            state.SetIterationTime(bench::seconds([&] { drawable->present(pixels.data()); }));
        });
    }
    runSynchronouslyOnVideoProcessingQueue([&] { drawable.reset(); });
}
BENCHMARK(readBack)->UseManualTime()->Unit(benchmark::kMillisecond);

void copyOfItsBytes(benchmark::State& state)
{
    const std::size_t bytes = std::size_t{4} * kSide * kSide;
    const PixelBuffer from = PixelBuffer::zeroed(bytes);
    PixelBuffer to = PixelBuffer::zeroed(bytes);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::DoNotOptimize(to.data());
    }
}
BENCHMARK(copyOfItsBytes)->UseRealTime()->Unit(benchmark::kMillisecond);

void scaledOnProcessor(benchmark::State& state)
{
    const CGImage frame =
        bench::noisePicture(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), CGImageAlphaInfo::Last);
    PixelBuffer pixels = PixelBuffer::zeroed(std::size_t{4} * kSide * kSide);
    for (auto _ : state)
        kernels::drawScaled({frame.bytes().data(), frame.size()}, CGRect(0, 0, kSide, kSide), 0,
                            {pixels.data(), {kSide, kSide}});
}
BENCHMARK(scaledOnProcessor)
    ->Args({640, 480})
    ->Args({1280, 720})
    ->Args({kSide, kSide})
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// ---- from a camera's bytes to the window ----

/// Hands out frames as a camera does, a copy of its bytes each.
class Camera : public GPUImageOutput {
public:
    Camera(int width, int height)
        : m_picture(bench::noisePicture(width, height, CGImageAlphaInfo::Last))
    {
    }
    void push()
    {
        runSynchronouslyOnVideoProcessingQueue([&] {
            const CGSize size{double(m_picture.width()), double(m_picture.height())};
            const auto framebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(size, {}, true);
            std::memcpy(framebuffer->hostPixelsToWrite(), m_picture.bytes().data(), m_picture.bytes().size());
            pushToTargets({.framebuffer = framebuffer, .size = size, .givesUpCount = true});
        });
    }

private:
    CGImage m_picture;
};

struct Screen : UIViewController {
    std::shared_ptr<UIView> canvasView() override { return shown; }
    std::shared_ptr<GPUImageView> shown = GPUImageView::make({0, 0, kPoints, kPoints});
};

enum Chain { kBare, kSepia, kTwoFilters };
enum Where { kCanvas, kWindow, kNowhere };

/// A window with the view, or the canvas alone.
class Shown {
public:
    explicit Shown(Where where)
    {
        m_screen.shown->setFillMode(GPUImageFillMode::PreserveAspectRatioAndFill);
        if (where != kWindow) {
            m_renderer = std::make_unique<CanvasRenderer>(m_screen.shown, kScale);
            return;
        }
        m_window = std::make_unique<QQuickWindow>();
        m_window->resize(kPoints, kPoints);
        m_item = new CanvasItem(m_window->contentItem());
        m_item->setSize({kPoints, kPoints});
        m_item->setController(&m_screen);
        m_window->show();
        QCoreApplication::processEvents();
    }
    ~Shown() { delete m_item; }
    Shown(const Shown&) = delete;
    Shown& operator=(const Shown&) = delete;

    std::shared_ptr<GPUImageView> view() { return m_screen.shown; }
    void paint()
    {
        DispatchQueue::main().drain();
        if (m_renderer) {
            m_renderer->render();
            return;
        }
        QEvent request(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(m_window.get(), &request);
    }

private:
    Screen m_screen;
    std::unique_ptr<CanvasRenderer> m_renderer;
    std::unique_ptr<QQuickWindow> m_window;
    CanvasItem* m_item = nullptr;
};

struct Road {
    const char* name;
    IntSize size;
    Chain chain;
    bool byProcessor; ///< or by GL
    Where where;      ///< a window, or its canvas alone; nowhere: it is not looked at
};

constexpr Road kRoads[]{
    {"640x480/processor/canvas", {640, 480}, kBare, true, kCanvas},
    {"640x480/nobody looks", {640, 480}, kBare, true, kNowhere},
    {"640x480/GL/canvas", {640, 480}, kBare, false, kCanvas},
    {"640x480, two filters/processor/canvas", {640, 480}, kTwoFilters, true, kCanvas},
    {"640x480, two filters/processor/window", {640, 480}, kTwoFilters, true, kWindow},
    {"640x480, two filters/GL/window", {640, 480}, kTwoFilters, false, kWindow},
    {"1280x720, sepia/processor/canvas", {1280, 720}, kSepia, true, kCanvas},
    {"1280x720, sepia/processor/window", {1280, 720}, kSepia, true, kWindow},
    {"1280x720, sepia/GL/window", {1280, 720}, kSepia, false, kWindow},
};

/// The time is that of one frame, its share that of one core that 30 a second take.
void frameToScreen(benchmark::State& state, const Road& road)
{
    GPUImageContext::setUsesKernels(road.byProcessor);
    Camera camera(road.size.width, road.size.height);
    Shown shown(road.where);
    shown.paint();
    const auto first = std::make_shared<GPUImageSepiaFilter>();
    const auto second = std::make_shared<GPUImageContrastFilter>();
    if (road.chain == kBare) {
        camera.addTarget(shown.view());
    } else {
        camera.addTarget(first);
        if (road.chain == kTwoFilters)
            first->addTarget(second);
        (road.chain == kTwoFilters ? std::shared_ptr<GPUImageOutput>(second) : first)->addTarget(shown.view());
    }
    for (int i = 0; i < 5; ++i) {
        camera.push();
        shown.paint();
    }
    const double before = processSeconds();
    for (auto _ : state) {
        camera.push();
        if (road.where != kNowhere)
            shown.paint();
    }
    state.counters["core_at_30"] = 30 * (processSeconds() - before) / static_cast<double>(state.iterations());
    camera.removeAllTargets();
    first->removeAllTargets();
    second->removeAllTargets();
    GPUImageContext::setUsesKernels(true);
}

} // namespace

int main(int argc, char** argv)
{
    // A phone's display: three pixels a point.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "3");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    benchmark::Initialize(&argc, argv);
    QGuiApplication qt(argc, argv);
    for (const Road& road : kRoads)
        benchmark::RegisterBenchmark(road.name, frameToScreen, road)
            ->MeasureProcessCPUTime()
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
