// What a person waits for while a photo of a collage moves: the canvas's repaint, without a window, on a canvas of 414
// points at scale 3, with photos of 12 megapixels in all slots. "limit_ms" and "limit_MB" are what each may take. The
// processor's time is that of all threads: where other programs are at work, a half of it is what two idle cores would
// take.

#include "editors/collage/CreateCollageViewController.h"
#include "editors/frames/Frames.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/ImageRendering.h"
#include "platform/view/TouchDispatcher.h"
#include "support/Measuring.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace {

using namespace lamina;

constexpr double kSide = 414;
constexpr double kScale = 3;

/// As a camera gives it, but for a pattern that no reduction makes plain.
UIImage photo()
{
    return UIImage(bench::noisePicture(4000, 3000, CGImageAlphaInfo::NoneSkipLast));
}

/// The editor with a photo in each slot, what a window would show of it, and fingers.
struct Desk {
    explicit Desk(int frame)
    {
        UIScreen::setMain({{kSide, 2 * kSide}, kScale});
        editor = std::make_shared<CreateCollageViewController>();
        std::vector<UIImage> photos;
        while (photos.size() < photosOf(frame))
            photos.push_back(photo());
        editor->setSelectedImages(std::move(photos));
        canvas = std::make_unique<CanvasRenderer>(editor->canvasView(), kScale);
        fingers = std::make_unique<TouchDispatcher>(editor->canvasView());
        editor->applyLayout(frame);
        DispatchQueue::main().runUntilIdle();
        canvas->render();
    }
    ~Desk() { DispatchQueue::main().runUntilIdle(); }
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    std::shared_ptr<CreateCollageViewController> editor;
    std::unique_ptr<CanvasRenderer> canvas;
    std::unique_ptr<TouchDispatcher> fingers;
};

// ---- memory; the first, so that nothing of the others is left ----

void windowMemory(benchmark::State& state)
{
    double megabytes = 0;
    for (auto _ : state) {
        Desk desk(3006);
        for (int slot = 1; slot <= 3; ++slot) {
            desk.editor->selectSlot(slot);
            desk.canvas->setMoving(true);
            desk.editor->currentImageView().setTransform(CGAffineTransform::rotation(0.3));
            desk.canvas->render();
            megabytes = std::max(megabytes, bench::residentMegabytes());
            desk.canvas->setMoving(false);
            desk.canvas->render();
        }
        megabytes = std::max(megabytes, bench::residentMegabytes());
    }
    state.counters["MB"] = megabytes;
    state.counters["limit_MB"] = 350;
}
BENCHMARK(windowMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

// ---- fingers go on, on a photo ----

/// Where one finger or two are after so many steps; a grip about the middle.
struct Grip {
    CGPoint first;
    std::optional<CGPoint> second;
};
using Way = Grip (*)(int step);

constexpr CGPoint kMiddle{kSide / 2, kSide / 2};

Grip apart(double way, double angle)
{
    const double x = way * std::cos(angle);
    const double y = way * std::sin(angle);
    return {{kMiddle.x - x, kMiddle.y - y}, CGPoint{kMiddle.x + x, kMiddle.y + y}};
}
Grip drag(int step)
{
    return {{kMiddle.x + step % 97 - 48, kMiddle.y + step % 61 - 30}, std::nullopt};
}
Grip pinch(int step)
{
    return apart(90 + std::abs(step % 120 - 60), 0.6);
}
Grip turn(int step)
{
    return apart(100, step / 20.0);
}

/// Moves the photo of the first slot. "first_ms" is the frame with which it begins, "rest_ms" the exact one at the end.
void gesture(benchmark::State& state, Way way)
{
    const Desk desk(static_cast<int>(state.range(0)));
    int step = 0;
    const auto put = [&](void (TouchDispatcher::*tell)(std::int64_t, CGPoint, double)) {
        const Grip grip = way(step);
        const double time = step / 60.0;
        (*desk.fingers.*tell)(1, grip.first, time);
        if (grip.second)
            (*desk.fingers.*tell)(2, *grip.second, time);
    };
    const auto next = [&] {
        ++step;
        put(&TouchDispatcher::touchMoved);
        benchmark::DoNotOptimize(desk.canvas->render());
    };
    desk.canvas->setMoving(true);
    put(&TouchDispatcher::touchBegan);
    double first = 0;
    while (first == 0 || !(desk.editor->firstImage()->center() != kMiddle ||
                           desk.editor->firstImage()->transform() != CGAffineTransform()))
        first = bench::seconds(next); // until the gesture is known for what it is
    for (auto _ : state)
        next();
    put(&TouchDispatcher::touchEnded);
    desk.canvas->setMoving(false);
    state.counters["first_ms"] = 1000 * first;
    state.counters["rest_ms"] = 1000 * bench::seconds([&] { desk.canvas->render(); });
    state.counters["limit_ms"] = 16;
}
void frames(benchmark::internal::Benchmark* bench)
{
    bench->Arg(2000)->Arg(3006)->Arg(3008)->ArgName("frame")->MeasureProcessCPUTime()->UseRealTime()->Unit(
        benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(gesture, drag, drag)->Apply(frames);
BENCHMARK_CAPTURE(gesture, pinch, pinch)->Apply(frames);
BENCHMARK_CAPTURE(gesture, turn, turn)->Apply(frames);

// ---- the picture that leaves the editor ----

void flatten(benchmark::State& state)
{
    const Desk desk(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(imageByRenderingView(desk.editor->saveTheImg(), kScale));
}
BENCHMARK(flatten)->Apply(frames);

} // namespace

BENCHMARK_MAIN();
