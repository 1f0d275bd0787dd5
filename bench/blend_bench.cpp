// What a person waits for in the blend editor: its own work and the canvas's repaint, without a window, on a canvas of
// 430 points at scale 3. "limit_ms" and "limit_MB" are what each may take. The processor's time is that of all threads:
// where other programs are at work, a half of it is what two idle cores would take.

#include "editors/blend/BlendPhotoViewController.h"
#include "editors/blend/BlendTools.h"
#include "editors/blend/PickedImages.h"
#include "editors/colorpicker/InfColorSquareView.h"
#include "editors/stickers/StickerBoard.h"
#include "editors/stickers/StickerStrip.h"
#include "imageops/ImageFilters.h"
#include "imageops/ImageGeometry.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/UIScreen.h"
#include "platform/view/CanvasRenderer.h"
#include "platform/view/TouchDispatcher.h"
#include "support/Measuring.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

namespace {

using namespace lamina;

constexpr int kSide = 430;
constexpr double kScale = 3;
constexpr CGPoint kMiddle{kSide / 2.0, kSide / 2.0};
constexpr double kHandleWay = 82; ///< from a new sticker's middle to a handle's, along each axis

UIImage photo()
{
    return UIImage(bench::noisePicture(kSide, kSide, CGImageAlphaInfo::NoneSkipLast));
}

/// The editor with two photos, what a window would show of it, and fingers.
struct Desk {
    Desk()
    {
        UIScreen::setMain({{kSide, 2.0 * kSide}, kScale});
        firstPickedImage = photo();
        secondPickedImage = verticalFlip(photo());
        editor = std::make_shared<BlendPhotoViewController>();
        canvas = std::make_unique<CanvasRenderer>(editor->canvasView(), kScale);
        fingers = std::make_unique<TouchDispatcher>(editor->canvasView());
        settle();
    }
    ~Desk()
    {
        DispatchQueue::main().runUntilIdle();
        clearPickedImages();
    }
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    void settle() const
    {
        DispatchQueue::main().runUntilIdle();
        canvas->render();
    }
    /// The one with that place in the catalogue, of 200 points in the middle.
    IQStickerView& addSticker(int index) const
    {
        const int tag = editor->stickerHandleTag();
        editor->stickerImgGesture(StickerStrip::kFirstTag + index);
        IQStickerView* const sticker = StickerBoard::find(editor->mainImgView(), tag);
        if (sticker == nullptr)
            std::abort();
        return *sticker;
    }

    std::shared_ptr<BlendPhotoViewController> editor;
    std::unique_ptr<CanvasRenderer> canvas;
    std::unique_ptr<TouchDispatcher> fingers;
};

// ---- memory; the first, so that nothing of the others is left ----

/// What the process holds with ten stickers and thirty steps, after they were undone and redone.
void memoryOfTenStickersAndThirtySteps(benchmark::State& state)
{
    double megabytes = 0;
    for (auto _ : state) {
        const Desk desk;
        desk.editor->stickerBtn();
        for (int i = 0; i < 10; ++i)
            desk.addSticker(8 * i).moveBy(10 * i - 50, 40 - 9 * i);
        desk.editor->FxBtn();
        for (int i = 0; i < 10; ++i) {
            i % 2 == 0 ? desk.editor->photo1() : desk.editor->photo2();
            desk.editor->contrastFun(10 + i);
            desk.editor->brightnFun(10 - 2 * i);
            desk.settle();
        }
        const auto walk = [&](auto can, auto step) {
            int steps = 0;
            for (; (*desk.editor.*can)(); ++steps, desk.settle())
                (*desk.editor.*step)();
            return steps;
        };
        state.counters["steps"] = walk(&BlendPhotoViewController::canUndo, &BlendPhotoViewController::undo);
        walk(&BlendPhotoViewController::canRedo, &BlendPhotoViewController::redo);
        megabytes = bench::residentMegabytes();
    }
    state.counters["MB"] = megabytes;
    state.counters["limit_MB"] = 300;
}
BENCHMARK(memoryOfTenStickersAndThirtySteps)->Iterations(1)->Unit(benchmark::kMillisecond);

// ---- a slider goes on ----

/// "call_ms" is the editor's part; the rest is the repaint of the whole canvas.
void sliderMove(benchmark::State& state, int slider)
{
    const Desk desk;
    const EditorSlider& told = *findSlider(kBlendSliders, slider);
    desk.editor->FxBtn();
    desk.settle();
    desk.editor->beginSliding(slider);
    int step = 0;
    double calls = 0;
    for (auto _ : state) {
        const double part = (++step % 89) / 100.0 + 0.1;
        calls +=
            bench::seconds([&] { desk.editor->slide(slider, told.minimum + part * (told.maximum - told.minimum)); });
        benchmark::DoNotOptimize(desk.canvas->render());
    }
    desk.editor->endSliding(slider);
    state.counters["call_ms"] = benchmark::Counter(calls * 1000, benchmark::Counter::kAvgIterations);
    state.counters["limit_ms"] = 4;
}
BENCHMARK_CAPTURE(sliderMove, contrast, blendslider::kContrast)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sliderMove, brightness, blendslider::kBrightness)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sliderMove, opacity, blendslider::kOpacity)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// What of it is the tones themselves.
void contrastAlone(benchmark::State& state)
{
    const UIImage image = photo();
    for (auto _ : state)
        benchmark::DoNotOptimize(contrastAdjustmentWithValue(image, 40));
}
BENCHMARK(contrastAlone)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

// ---- a finger goes on, on a sticker ----

/// Where the finger is after so many steps.
using Way = CGPoint (*)(int step);

CGPoint drag(int step)
{
    return {kMiddle.x + step % 97 - 48, kMiddle.y + step % 61 - 30};
}
CGPoint resize(int step)
{
    const double way = kHandleWay + std::abs(step % 80 - 40);
    return {kMiddle.x - way, kMiddle.y + way};
}
CGPoint turn(int step)
{
    const double way = std::sqrt(2) * (kHandleWay + std::abs(step % 80 - 40));
    return {kMiddle.x + way * std::cos(step / 20.0), kMiddle.y + way * std::sin(step / 20.0)};
}

void stickerFrame(benchmark::State& state, CGPoint start, Way way)
{
    const Desk desk;
    desk.addSticker(0).showEditingHandles();
    desk.settle();
    desk.fingers->touchBegan(1, start, 0);
    int step = 0;
    for (auto _ : state) {
        ++step;
        desk.fingers->touchMoved(1, way(step), step / 60.0);
        benchmark::DoNotOptimize(desk.canvas->render());
    }
    desk.fingers->touchEnded(1, way(step), step / 60.0);
    state.counters["limit_ms"] = 6;
}
BENCHMARK_CAPTURE(stickerFrame, drag, kMiddle, drag)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(stickerFrame, resize, {kMiddle.x - kHandleWay, kMiddle.y + kHandleWay}, resize)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(stickerFrame, turn, {kMiddle.x + kHandleWay, kMiddle.y + kHandleWay}, turn)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// ---- the strip of stickers opens ----

int thumbnailsOf(const BlendPhotoViewController& editor)
{
    return static_cast<const ListModelBase*>(editor.stickerStrip())->count();
}

/// From the tool's touch to the last thumbnail, with no drawing kept from before. "turn_ms" is the longest that the
/// window would have stood still meanwhile.
void openStickerStrip(benchmark::State& state)
{
    const Desk desk;
    std::vector<double> turns;
    for (auto _ : state) {
        state.PauseTiming();
        NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification, nullptr);
        desk.settle();
        state.ResumeTiming();
        double longest = bench::seconds([&] { desk.editor->stickerBtn(); });
        while (thumbnailsOf(*desk.editor) < static_cast<int>(kStickerCount)) {
            std::this_thread::sleep_for(std::chrono::microseconds(200));
            longest = std::max(longest, bench::seconds([&] {
                                   DispatchQueue::main().runTurn();
                                   desk.canvas->render();
                               }));
        }
        turns.push_back(longest * 1000);
        state.PauseTiming();
        desk.editor->stickerBtn();
        desk.settle();
        state.ResumeTiming();
    }
    state.counters["turn_ms"] = *std::ranges::max_element(turns);
    state.counters["limit_turn_ms"] = 50;
    state.counters["limit_ms"] = 300;
}
BENCHMARK(openStickerStrip)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

// ---- the colour picker's square ----

void colorSquare(benchmark::State& state)
{
    InfColorSquareView square({0, 0, 256, 256});
    int step = 0;
    for (auto _ : state) {
        square.setHue(static_cast<float>(++step % 360) / 360);
        benchmark::DoNotOptimize(square.image());
    }
    state.counters["limit_ms"] = 0.3;
}
BENCHMARK(colorSquare)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
