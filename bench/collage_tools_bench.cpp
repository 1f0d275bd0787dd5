// What a person waits for while colours of a large photo change in a collage: sliders, looks and their thumbnails, on a
// canvas of 414 points at scale 3. "limit_ms" is what each may take, "stall_ms" the longest that the main thread was
// kept from the window's other work, and "limit_stall_ms" what that may be. The processor's time is that of all
// threads: where other programs are at work, a half of it is what two idle cores would take.

#include "editors/collage/CollageEffects.h"
#include "editors/collage/CollageFilterRow.h"
#include "editors/collage/CollageFilters.h"
#include "editors/collage/CreateCollageViewController.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIScreen.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/view/CanvasRenderer.h"
#include "support/BenchPhotos.h"
#include "support/Measuring.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

namespace {

using namespace lamina;

constexpr double kSide = 414;
constexpr double kScale = 3;
constexpr int kFilterTool = 1002;

UIImage photo(int variant)
{
    Result<UIImage> read = loadPicture(bench::twelveMegapixelPhoto(variant));
    if (!read.ok())
        std::abort();
    return read.value();
}

/// The editor with two photos and what a window would show of it.
struct Desk {
    Desk()
    {
        UIScreen::setMain({{kSide, 2 * kSide}, kScale});
        editor = std::make_shared<CreateCollageViewController>();
        editor->setSelectedImages({photo(0), photo(1)});
        canvas = std::make_unique<CanvasRenderer>(editor->canvasView(), kScale);
        DispatchQueue::main().runUntilIdle();
        canvas->render();
    }

    /// Does it, and all that is due on the main thread until `done`; the seconds that this took in all.
    template <class Done>
    double follow(const std::function<void()>& work, Done done)
    {
        return bench::seconds([&] {
            note(work);
            while (!done()) {
                DispatchQueue::main().runUntil([] { return true; }, 0.0005);
                note([] { DispatchQueue::main().runTurn(); });
                if (canvas->needsRender())
                    note([&] { canvas->render(); });
            }
        });
    }
    void note(const std::function<void()>& work) { stall = std::max(stall, bench::seconds(work)); }

    std::shared_ptr<CreateCollageViewController> editor;
    std::unique_ptr<CanvasRenderer> canvas;
    double stall = 0; ///< the longest so far
};

void report(benchmark::State& state, const Desk& desk, double limit)
{
    state.counters["stall_ms"] = desk.stall * 1000;
    state.counters["limit_stall_ms"] = 50;
    state.counters["limit_ms"] = limit;
}

/// The first in the process: context, programs and what the driver makes of them at their first use. Against the warm
/// ones below this is what warming saves.
void fourteenThumbnailsCold(benchmark::State& state)
{
    Desk desk;
    for (auto _ : state) {
        desk.note([&] { desk.editor->imgGesture(kFilterTool); });
        DispatchQueue::main().runUntilIdle();
    }
    report(state, desk, 0);
}
BENCHMARK(fourteenThumbnailsCold)->Iterations(1)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

void fourteenThumbnails(benchmark::State& state)
{
    Desk desk;
    CollageFilterRow row;
    int turn = 0;
    for (auto _ : state) {
        const UIImage& base = turn++ % 2 == 0 ? desk.editor->selectedImg1() : desk.editor->selectedImg2();
        desk.note([&] { row.fill(base, [] { std::abort(); }); });
        DispatchQueue::main().runUntilIdle();
    }
    report(state, desk, 60);
}
BENCHMARK(fourteenThumbnails)->MeasureProcessCPUTime()->UseRealTime()->Unit(benchmark::kMillisecond);

/// From the slider's event until the window shows its value.
void sliderUnderAFinger(benchmark::State& state, int slider)
{
    Desk desk;
    const EditorSlider& told = *findSlider(kCollageSliders, slider);
    desk.editor->beginSliding(slider);
    int step = 0;
    const auto slide = [&] {
        const double part = (++step % 89) / 100.0 + 0.1;
        desk.editor->slide(slider, told.minimum + part * (told.maximum - told.minimum));
    };
    const auto shown = [&] { return !desk.editor->isBusy() && !desk.canvas->needsRender(); };
    desk.follow(slide, shown); // the first one makes the smaller picture
    desk.stall = 0;
    for (auto _ : state)
        desk.follow(slide, shown);
    desk.editor->endSliding(slider);
    DispatchQueue::main().runUntilIdle();
    report(state, desk, 50);
}

/// A finger that comes back while the exact picture of what it left is made: from there until the window shows its next
/// value.
void sliderPressedAgain(benchmark::State& state, int slider)
{
    Desk desk;
    const EditorSlider& told = *findSlider(kCollageSliders, slider);
    int step = 0;
    const auto slide = [&] {
        desk.editor->beginSliding(slider);
        desk.editor->slide(slider, told.minimum + (++step % 50 + 20) / 100.0 * (told.maximum - told.minimum));
    };
    const auto idle = [&] { return !desk.editor->isBusy() && !desk.canvas->needsRender(); };
    desk.follow(slide, idle);
    double stall = 0;
    for (auto _ : state) {
        desk.stall = 0;
        const UIImage before = desk.editor->currentImageView().image();
        state.SetIterationTime(desk.follow(
            [&] {
                desk.editor->endSliding(slider);
                slide();
            },
            [&] {
                return !desk.editor->currentImageView().image().isIdenticalTo(before) && !desk.canvas->needsRender();
            }));
        stall = std::max(stall, desk.stall);
        desk.editor->endSliding(slider);
        desk.follow(slide, idle);
    }
    desk.stall = stall;
    desk.editor->endSliding(slider);
    DispatchQueue::main().runUntilIdle();
    report(state, desk, 50);
}

/// From lifting the finger to the exact picture.
void sliderAtRest(benchmark::State& state, int slider)
{
    Desk desk;
    const EditorSlider& told = *findSlider(kCollageSliders, slider);
    int step = 0;
    const auto slide = [&] { desk.editor->slide(slider, told.minimum + (++step % 50 + 20) / 100.0 * told.maximum); };
    for (auto _ : state)
        desk.follow(slide, [&] { return !desk.editor->isBusy() && !desk.canvas->needsRender(); });
    report(state, desk, 0);
}

void tappedLook(benchmark::State& state, int tag)
{
    Desk desk;
    desk.editor->imgGesture(kFilterTool);
    DispatchQueue::main().runUntilIdle();
    for (auto _ : state)
        desk.follow([&] { desk.editor->filterImgGesture(tag); },
                    [&] { return !desk.editor->isBusy() && !desk.canvas->needsRender(); });
    report(state, desk, 0);
}

void add(const std::string& name, void (*work)(benchmark::State&, int), int tag)
{
    benchmark::RegisterBenchmark(name.c_str(), work, tag)
        ->MeasureProcessCPUTime()
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

void addSlidersAndLooks()
{
    for (const EditorSlider& slider : kCollageSliders) {
        if (!isCollageEffect(slider.tag))
            continue;
        add(std::string("sliderUnderAFinger/") + slider.label, sliderUnderAFinger, slider.tag);
        add(std::string("sliderAtRest/") + slider.label, sliderAtRest, slider.tag);
        if (slider.tag == collageslider::kOpacity)
            continue; // no picture is made for it
        benchmark::RegisterBenchmark((std::string("sliderPressedAgain/") + slider.label).c_str(), sliderPressedAgain,
                                     slider.tag)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    for (const CollageFilter& filter : collageFilters())
        add(std::string("tappedLook/") + filter.name, tappedLook, filter.tag);
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    addSlidersAndLooks();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
