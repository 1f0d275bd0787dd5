// The window on the offscreen platform with Qt's own painter: what two cores without a graphics card make of it.

#include "WindowDriver.h"
#include "app/ImagePIckingViewController.h"
#include "app/PinchZoomViewController.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "picker/YMSPhotoHelper.h"
#include "picker/YMSPhotoPickerViewController.h"
#include "platform/host/Application.h"
#include "platform/host/CanvasItem.h"
#include "platform/photos/PHPhotoLibrary.h"
#include "support/BenchPhotos.h"
#include "support/ManyPhotos.h"
#include "support/Measuring.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPainter>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

using namespace lamina;
using namespace lamina::test;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// ---- start ----

/// Seconds until the program has written its byte.
double secondsToFirstFrame(const char* program)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        std::abort();
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, ends[1], STDOUT_FILENO);
    char* const argv[] = {const_cast<char*>(program), nullptr};
    const auto start = Clock::now();
    pid_t child = 0;
    if (::posix_spawn(&child, program, &files, nullptr, argv, environ) != 0)
        std::abort();
    ::close(ends[1]);
    char byte = 0;
    const bool told = ::read(ends[0], &byte, 1) == 1;
    const double seconds = secondsSince(start);
    ::close(ends[0]);
    posix_spawn_file_actions_destroy(&files);
    ::waitpid(child, nullptr, 0);
    if (!told)
        std::abort();
    return seconds;
}

void startToFirstFrame(benchmark::State& state, const char* program)
{
    for (auto _ : state)
        state.SetIterationTime(secondsToFirstFrame(program));
}
BENCHMARK_CAPTURE(startToFirstFrame, lamina, LAMINA_FIRST_FRAME)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(startToFirstFrame, bareQtQuick, LAMINA_BARE_WINDOW)->UseManualTime()->Unit(benchmark::kMillisecond);

// ---- the blend's canvas, 414 points wide ----

LaunchOptions phoneOptions()
{
    LaunchOptions options;
    options.size = {414, 736};
    return options;
}

void openPhoto(WindowDriver& driver, int variant)
{
    driver.waitFor<ImagePIckingViewController>();
    driver.top<ImagePIckingViewController>()->receivePhotos(
        {PhotoSource::fromFile(bench::twelveMegapixelPhoto(variant))});
    driver.waitFor<PinchZoomViewController>();
}

std::unique_ptr<WindowDriver> blendOfTwoPhotos()
{
    auto driver = std::make_unique<WindowDriver>(phoneOptions());
    driver->tap(QStringLiteral("Blend"));
    for (const int variant : {0, 1}) {
        openPhoto(*driver, variant);
        driver->top<PinchZoomViewController>()->doneButton();
        driver->settle();
    }
    if (!driver->waitFor<BlendPhotoViewController>())
        std::abort();
    return driver;
}

/// Brings what has changed to the window now, without waiting for the display's next turn.
void drawFrame(QQuickWindow& window)
{
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(&window, &request);
}

void dragFrame(benchmark::State& state)
{
    const auto driver = blendOfTwoPhotos();
    const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
    const QPoint middle = WindowDriver::middleOf(*driver->canvas()).toPoint();
    QTest::touchEvent(&driver->view(), finger.get()).press(0, middle, &driver->view());
    int step = 0;
    for (auto _ : state) {
        ++step;
        const QPoint point = middle + QPoint(step % 97 - 48, step % 61 - 30);
        QTest::touchEvent(&driver->view(), finger.get(), false).move(0, point, &driver->view()).commit(false);
        drawFrame(driver->view());
    }
    QTest::touchEvent(&driver->view(), finger.get()).release(0, middle, &driver->view());
    state.counters["canvas_px"] = driver->canvas()->shownImage().width();
}
BENCHMARK(dragFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

void pinchFrame(benchmark::State& state)
{
    const auto driver = blendOfTwoPhotos();
    const std::unique_ptr<QPointingDevice> fingers(QTest::createTouchDevice());
    const QPoint middle = WindowDriver::middleOf(*driver->canvas()).toPoint();
    const auto send = [&](int apart, auto change) {
        auto event = QTest::touchEvent(&driver->view(), fingers.get(), false);
        change(event, 0, middle - QPoint(apart, 0));
        change(event, 1, middle + QPoint(apart, 0));
        event.commit(false);
    };
    send(60, [&](auto& event, int id, QPoint point) { event.press(id, point, &driver->view()); });
    int step = 0;
    for (auto _ : state) {
        ++step;
        send(60 + step % 41, [&](auto& event, int id, QPoint point) { event.move(id, point, &driver->view()); });
        drawFrame(driver->view());
    }
    send(60, [&](auto& event, int id, QPoint point) { event.release(id, point, &driver->view()); });
    state.counters["canvas_px"] = driver->canvas()->shownImage().width();
}
BENCHMARK(pinchFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

/// The limit: Qt's painter puts a picture as large as the canvas into one as large as the window.
void plainBlit(benchmark::State& state)
{
    QImage window(414 * 3, 736 * 3, QImage::Format_RGB32);
    QImage canvas(390 * 3, 390 * 3, QImage::Format_ARGB32_Premultiplied);
    window.fill(Qt::black);
    canvas.fill(Qt::white);
    for (auto _ : state) {
        QPainter painter(&window);
        painter.drawImage(36, 300, canvas);
        painter.end();
        benchmark::DoNotOptimize(window.constBits());
    }
}
BENCHMARK(plainBlit)->Unit(benchmark::kMillisecond);

// ---- opening ----

/// From the choice of a photo to the first frame in which the crop screen shows it.
void chooseToCrop(benchmark::State& state)
{
    const std::string photo = bench::twelveMegapixelPhoto(0);
    for (auto _ : state) {
        WindowDriver driver(phoneOptions());
        driver.tap(QStringLiteral("Blend"));
        driver.waitFor<ImagePIckingViewController>();
        bool drawn = false;
        QObject::connect(&driver.view(), &QQuickWindow::frameSwapped, &driver.view(), [&] {
            const CanvasItem* const canvas = driver.canvas();
            drawn = canvas && !canvas->shownImage().isNull();
        });
        const auto start = Clock::now();
        driver.top<ImagePIckingViewController>()->receivePhotos({PhotoSource::fromFile(photo)});
        while (!drawn && secondsSince(start) < 10)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        state.SetIterationTime(secondsSince(start));
    }
}
BENCHMARK(chooseToCrop)->UseManualTime()->Unit(benchmark::kMillisecond);

/// The longest time that the window hears nothing while it opens a photo of 100 megapixels: between two beats of a
/// timer that beats whenever the event loop comes round.
void openHundredMegapixels(benchmark::State& state)
{
    const std::string photo = bench::hundredMegapixelPhoto();
    for (auto _ : state) {
        WindowDriver driver(phoneOptions());
        driver.tap(QStringLiteral("Blend"));
        driver.waitFor<ImagePIckingViewController>();
        double longest = 0;
        auto beat = Clock::now();
        QTimer heart;
        heart.start(0);
        QObject::connect(&heart, &QTimer::timeout, &heart, [&] {
            longest = std::max(longest, secondsSince(beat));
            beat = Clock::now();
        });
        const auto start = Clock::now();
        driver.top<ImagePIckingViewController>()->receivePhotos({PhotoSource::fromFile(photo)});
        while (!driver.top<PinchZoomViewController>() && secondsSince(start) < 30)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        state.SetIterationTime(secondsSince(start));
        driver.settle();
        state.counters["stall_ms"] = longest * 1000;
    }
}
BENCHMARK(openHundredMegapixels)->UseManualTime()->Unit(benchmark::kMillisecond);

// ---- the picker ----

/// The grid of the picker over 50,000 photos while it is flung: 40 points a frame, with what arrives in between. The
/// worst frame of all beside the mean one, and the memory that the picker has taken above the window, while it is flung
/// and when it has come to rest.
void flungGridFrame(benchmark::State& state)
{
    bench::moveIn();
    qputenv("LAMINA_MODULES", LAMINA_MODULES);
    WindowDriver driver(phoneOptions());
    const auto picker = std::make_shared<YMSPhotoPickerViewController>();
    picker->numberOfPhotoToSelect = 3;
    driver.settle();
    const double before = bench::residentMegabytes();
    yms_presentCustomAlbumPhotoView(*driver.top<UIViewController>(), picker, nullptr);
    const auto grid = [&] { return driver.item(picker->albumTitle()); };
    const bool filled = WindowDriver::waitUntil([&] {
        return PHPhotoLibrary::isComplete() && picker->photosModel()->rowCount() > bench::kManyPhotos && grid();
    });
    if (!filled) {
        state.SkipWithError("the picker doesn't show the photos");
        return;
    }
    driver.settle();
    double worst = 0;
    for (auto _ : state) {
        const double frame = bench::seconds([&] {
            grid()->setProperty("contentY", grid()->property("contentY").toDouble() + 40);
            QCoreApplication::processEvents();
            drawFrame(driver.view());
        });
        worst = std::max(worst, frame);
        state.SetIterationTime(frame);
    }
    state.counters["worst_ms"] = worst * 1000;
    state.counters["flung_MB"] = bench::residentMegabytes() - before;
    picker->scrollViewDidComeToRest();
    state.counters["resting_MB"] = bench::residentMegabytes() - before;
}
BENCHMARK(flungGridFrame)->MeasureProcessCPUTime()->UseManualTime()->Unit(benchmark::kMillisecond);

// ---- at rest ----

double processSeconds()
{
    timespec spent{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &spent);
    return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) * 1e-9;
}

/// Two photos of 12 megapixels blended and nobody touching anything for two seconds: memory, and processor time in
/// thousandths.
void idleWithTwoPhotos(benchmark::State& state)
{
    const auto driver = blendOfTwoPhotos();
    for (auto _ : state) {
        const double before = processSeconds();
        QEventLoop loop;
        QTimer::singleShot(2000, &loop, &QEventLoop::quit);
        loop.exec();
        state.SetIterationTime(2);
        state.counters["cpu_permille"] = (processSeconds() - before) / 2 * 1000;
        state.counters["resident_MB"] = lamina::bench::residentMegabytes();
    }
}
BENCHMARK(idleWithTwoPhotos)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    // A phone's display: three pixels a point.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "3");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    benchmark::Initialize(&argc, argv);
    QGuiApplication qt(argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
