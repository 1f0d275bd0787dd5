// From the choice of three photos to the collage's canvas, in the window on the offscreen platform with Qt's own
// painter.

#include "WindowDriver.h"
#include "app/ViewController.h"
#include "editors/collage/CreateCollageViewController.h"
#include "platform/host/Application.h"
#include "platform/host/CanvasItem.h"
#include "platform/photos/PhotoSource.h"
#include "support/BenchPhotos.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <vector>

namespace {

using namespace lamina;
using namespace lamina::test;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Until the first frame in which the canvas is painted; limit: 350 ms. The longest time that the window hears nothing
/// meanwhile is that between two beats of a timer that beats whenever the event loop comes round; limit: 50 ms.
void chooseThreeToCanvas(benchmark::State& state)
{
    const std::vector<PhotoSource> photos{PhotoSource::fromFile(bench::twelveMegapixelPhoto(0)),
                                          PhotoSource::fromFile(bench::twelveMegapixelPhoto(1)),
                                          PhotoSource::fromFile(bench::twelveMegapixelPhoto(0))};
    double worst = 0;
    for (auto _ : state) {
        LaunchOptions options;
        options.size = {414, 736};
        WindowDriver driver(options);
        driver.settle();
        bool drawn = false;
        QObject::connect(&driver.view(), &QQuickWindow::frameSwapped, &driver.view(), [&] {
            const CanvasItem* const canvas = driver.top<CreateCollageViewController>() ? driver.canvas() : nullptr;
            drawn = canvas && !canvas->shownImage().isNull();
        });
        QTimer heart;
        auto beat = Clock::now();
        QObject::connect(&heart, &QTimer::timeout, &heart, [&] {
            worst = std::max(worst, secondsSince(beat));
            beat = Clock::now();
        });
        heart.start(0);
        const auto start = beat = Clock::now();
        driver.top<ViewController>()->receivePhotos(photos);
        while (!drawn && secondsSince(start) < 10)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        state.SetIterationTime(secondsSince(start));
        if (!drawn)
            state.SkipWithError("the canvas doesn't come");
    }
    state.counters["limit_ms"] = 350;
    state.counters["stall_ms"] = worst * 1000;
    state.counters["stall_limit_ms"] = 50;
}
BENCHMARK(chooseThreeToCanvas)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    // A phone's display: three pixels a point.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "3");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    benchmark::Initialize(&argc, argv);
    const QGuiApplication qt(argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
