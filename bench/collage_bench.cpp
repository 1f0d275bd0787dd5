// What a person waits for while a photo of a collage moves: the canvas's repaint, without a window, on a canvas of 414
// points at scale 3, with photos of 12 megapixels in all slots. "limit_ms" and "limit_MB" are what each may take. The
// processor's time is that of all threads: where other programs are at work, a half of it is what two idle cores would
// take.

#include "editors/frames/Frames.h"
#include "editors/frames/ThreeFramesViewController.h"
#include "editors/frames/TwoFramesViewController.h"
#include "platform/base/UIScreen.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/ImageRendering.h"
#include "platform/view/UIImageView.h"
#include "support/Measuring.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace lamina;

constexpr double kSide = 414;
constexpr double kScale = 3;
constexpr CGRect kSquare{0, 0, kSide, kSide};

/// As a camera gives it, but for a pattern that no reduction makes plain.
UIImage photo()
{
    return UIImage(bench::noisePicture(4000, 3000, CGImageAlphaInfo::NoneSkipLast));
}

/// The canvas of a collage on its white paper, as the editor stacks it.
struct Desk {
    explicit Desk(int frame)
    {
        UIScreen::setMain({{kSide, 2.0 * kSide}, kScale});
        paper->setBackgroundColor(UIColor::white());
        paper->addSubview(canvas);
        canvas->layer().setSharesEdges(true);
        canvas->setClipsToBounds(true);
        for (std::size_t i = 0; i < photosOf(frame); ++i)
            addSlot();
        if (layers.size() == 2)
            std::make_shared<TwoFramesViewController>()->setLayout(frame, *layers[0], *layers[1], *canvas);
        else
            std::make_shared<ThreeFramesViewController>()->setLayout(frame, *layers[0], *layers[1], *layers[2],
                                                                     *canvas);
        window.render();
    }
    void addSlot()
    {
        const auto slot = std::make_shared<UIView>(kSquare);
        slot->setClipsToBounds(true);
        const auto view = std::make_shared<UIImageView>(kSquare);
        view->setContentMode(UIViewContentMode::ScaleAspectFill);
        view->setImage(photo());
        slot->addSubview(view);
        canvas->insertSubview(slot, 0);
        layers.push_back(slot);
        photos.push_back(view);
    }

    std::shared_ptr<UIView> paper = std::make_shared<UIView>(kSquare);
    std::shared_ptr<UIView> canvas = std::make_shared<UIView>(kSquare);
    std::vector<std::shared_ptr<UIView>> layers;
    std::vector<std::shared_ptr<UIImageView>> photos;
    CanvasRenderer window{paper, kScale};
};

// ---- memory; the first, so that nothing of the others is left ----

void windowMemory(benchmark::State& state)
{
    double megabytes = 0;
    for (auto _ : state) {
        Desk desk(3006);
        desk.window.setMoving(true);
        for (const auto& view : desk.photos) {
            view->setTransform(CGAffineTransform::rotation(0.3));
            desk.window.render();
        }
        megabytes = bench::residentMegabytes();
        desk.window.setMoving(false);
        desk.window.render();
        megabytes = std::max(megabytes, bench::residentMegabytes());
    }
    state.counters["MB"] = megabytes;
    state.counters["limit_MB"] = 350;
}
BENCHMARK(windowMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

// ---- fingers go on, on a photo ----

using Move = void (*)(UIView& photo, int step);

void drag(UIView& photo, int step)
{
    photo.setCenter({kSide / 2 + step % 97 - 48, kSide / 2 + step % 61 - 30});
}
void pinch(UIView& photo, int step)
{
    photo.setTransform(
        CGAffineTransform::scaling(1 + std::abs(step % 80 - 40) / 40.0, 1 + std::abs(step % 80 - 40) / 40.0));
}
void turn(UIView& photo, int step)
{
    photo.setTransform(CGAffineTransform::rotation(step / 20.0));
}

/// "first_ms" is the frame with which it begins, "rest_ms" the exact one at the end.
void gesture(benchmark::State& state, int frame, std::size_t slot, Move move)
{
    Desk desk(frame);
    UIView& view = *desk.photos[slot];
    int step = 0;
    desk.window.setMoving(true);
    const auto next = [&] {
        move(view, ++step);
        benchmark::DoNotOptimize(desk.window.render());
    };
    state.counters["first_ms"] = 1000 * bench::seconds(next);
    std::vector<double> frames;
    for (auto _ : state)
        frames.push_back(1000 * bench::seconds(next));
    desk.window.setMoving(false);
    state.counters["rest_ms"] = 1000 * bench::seconds([&] { desk.window.render(); });
    state.counters["min_ms"] = *std::ranges::min_element(frames);
    state.counters["median_ms"] = bench::median(frames);
    state.counters["limit_ms"] = 16;
}

void flatten(benchmark::State& state, int frame)
{
    const Desk desk(frame);
    for (auto _ : state)
        benchmark::DoNotOptimize(imageByRenderingView(*desk.canvas, kScale));
}
BENCHMARK_CAPTURE(flatten, frame3006, 3006)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    struct Named {
        const char* name;
        Move move;
    };
    for (const int frame : {2000, 3006, 3008}) {
        for (const Named& one : {Named{"drag", drag}, Named{"pinch", pinch}, Named{"turn", turn}}) {
            const std::string name = "gesture/" + std::to_string(frame) + "/" + one.name;
            benchmark::RegisterBenchmark(name.c_str(), gesture, frame, 0, one.move)
                ->MeasureProcessCPUTime()
                ->UseRealTime()
                ->Unit(benchmark::kMillisecond);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
