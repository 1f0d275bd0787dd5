#include "BlendEditorFixture.h"
#include "editors/blend/BlendPanels.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "editors/colorpicker/InfColorPickerNavigationController.h"
#include "platform/base/UIColor.h"
#include "platform/view/HeadlessHost.h"
#include "platform/view/UIViewAnimation.h"

#include <QVariantMap>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

UIImage gray(std::uint8_t value)
{
    return flat({value, value, value, 255});
}

class BlendTools : public BlendEditor {
protected:
    /// The tool with the accent, those with a grey cell, the panel in sight, which photo moves, and the strip's flag.
    std::string bar() const
    {
        std::string gray;
        for (const char* const tool : {"reset", "tools", "effects", "stickers"})
            gray += editor->toolBar().cell(tool).background == UIColor::gray() ? std::string(" ") + tool : "";
        return std::string(editor->toolBar().activeTool()) + "," + gray + ", " + editor->shownPanel().toStdString() +
               ", " + std::to_string(editor->movingPhoto()) + (state().toolBool ? " t" : "");
    }
    void makeGray()
    {
        BlendComposition grays = state();
        grays.photos[0].image = gray(60);
        grays.photos[1].image = grays.photos[1].actualImage = gray(100);
        editor->setComposition(grays);
        editor->FxBtn();
    }
    int level(std::size_t photo) const { return pixelAt(state().photos[photo].image.cgImage(), 3, 3)[1]; }
    int contrast(double value) const { return editor->contrastFun(value), level(state().current); }
    int brightness(double value) const { return editor->brightnFun(value), level(state().current); }
    double shownValue(int row) const { return editor->sliders()[row].toMap()["value"].toDouble(); }
    void drag(int tag, std::initializer_list<double> values)
    {
        editor->beginSliding(tag);
        for (const double& value : values) {
            clock->advance(&value == values.begin() ? 0 : 2); // it rests for longer than what parts a run of keys
            editor->slide(tag, value);
        }
        editor->endSliding(tag);
    }
    void pass(double seconds)
    {
        clock->advance(seconds);
        DispatchQueue::main().drain();
    }
};

TEST_F(BlendTools, TakeOverTheBarFromEachOther)
{
    const std::pair<const char*, const char*> road[] = {
        {"tools", "tools, tools, tools, 0 t"},           {"tools", "tools,, , 0 t"}, // the pictures stay
        {"tools", "tools, tools, tools, 0 t"},           {"pan", "pan, tools, , 2 t"},
        {"tools", "tools, tools, tools, 0 t"},           {"effects", "effects, effects, effects, 0"},
        {"stickers", "stickers, stickers, stickers, 0"}, {"stickers", "stickers,, , 0"},
        {"effects", "effects, effects, effects, 0"},     {"reset", "reset, reset, , 2"},
    };
    for (const auto& [tool, shown] : road) {
        editor->chooseTool(tool);
        EXPECT_EQ(bar(), shown);
        const double before = transform().tx;
        dragBy(3);
        editor->nudge(2, 0);
        EXPECT_EQ(transform().tx - before, editor->movingPhoto() == 2 ? 5 : 0) << shown;
    }
}

TEST_F(BlendTools, ComeBackByUndoWhereAnotherHasTakenOver)
{
    editor->toolBtn();
    editor->leftBtn();
    editor->FxBtn();
    editor->contrastFun(20);
    editor->hideFxViewBtnClicked();
    editor->undo(); // the panel stays away
    EXPECT_EQ(bar(), "effects, effects, , 0");
    editor->undo();
    EXPECT_EQ(bar(), "tools, tools, tools, 0 t");
    editor->redo();
    EXPECT_EQ(bar(), "effects, effects, effects, 0");
}

TEST_F(BlendTools, ActOnThePhotosThatTheButtonsName)
{
    const struct {
        bool first, second;
        std::size_t current;
        std::string turned, slid;
    } table[] = {
        {true, true, 0, "2", "12"},  {true, false, 1, "1", "1"},  {false, true, 0, "2", "2"},
        {false, false, 0, "1", "1"}, {false, false, 1, "2", "2"},
    };
    const std::function<void()> actions[] = {
        [this] { editor->chooseSubTool("vertical"); },
        [this] { editor->opacityFun(0.7); },
        [this] { editor->contrastFun(30); },
    };
    BlendComposition before = state();
    for (const auto& c : table) {
        before.photo1Selected = c.first;
        before.photo2Selected = c.second;
        before.current = c.current;
        for (const auto& action : actions) {
            editor->setComposition(before);
            action();
            std::string changed;
            for (const std::size_t i : {kFirst, kSecond})
                if (state().photos[i].alpha != 0.5 || !state().photos[i].image.isIdenticalTo(before.photos[i].image))
                    changed += "12"[i];
            EXPECT_EQ(changed, &action == actions ? c.turned : c.slid);
            EXPECT_EQ(state().current, changed == "12" ? c.current : changed == "1" ? kFirst : kSecond);
        }
    }
}

TEST_F(BlendTools, TurnsAndFlipsMovePixelsAndKeepTheTransform)
{
    const std::pair<const char*, std::vector<std::vector<int>>> table[] = {
        {"left", {{2, 4}, {1, 3}}},     {"right", {{3, 1}, {4, 2}}},   {"horizontal", {{2, 1}, {4, 3}}},
        {"vertical", {{3, 4}, {1, 2}}}, {"unknown", {{1, 2}, {3, 4}}},
    };
    BlendComposition work = state();
    work.photos[1].image = UIImage(makePicture(2, 2, [](int x, int y) {
        return Rgba{Rgba::value_type(1 + x + 2 * y), 0, 0, 255};
    }));
    work.photos[1].transform = CGAffineTransform::translation(3, 4).scaled(2, 2);
    for (const auto& [tool, reds] : table) {
        editor->setComposition(work);
        editor->chooseSubTool(tool);
        EXPECT_EQ(componentGrid(editor->imgView2().image().cgImage()), reds) << tool;
        EXPECT_EQ(transform(), work.photos[1].transform);
    }
    EXPECT_EQ(editor->subToolBar().cell("vertical").icon, "Vertical1");
    EXPECT_EQ(editor->subToolBar().cell("left").icon, "Left");
}

TEST_F(BlendTools, TheBackdropIsWhatThePickerBeginsWithUntilChosen)
{
    editor->chooseSubTool("color");
    editor->adjustColor1(); // it is there already
    DispatchQueue::main().runUntilIdle();
    const auto stack = std::dynamic_pointer_cast<UINavigationController>(editor->presentedViewController());
    ASSERT_TRUE(stack);
    std::dynamic_pointer_cast<InfColorPickerController>(stack->topViewController())->done();
    DispatchQueue::main().runUntilIdle();
    EXPECT_FALSE(editor->presentedViewController());
    EXPECT_EQ(editor->mainImgView().backgroundColor(), (UIColor{0x12 / 255.0, 0x13 / 255.0, 0x16 / 255.0, 1}));
    EXPECT_EQ(editor->backdrop(), "#ff121316");
    editor->undo();
    EXPECT_EQ(editor->mainImgView().backgroundColor(), std::nullopt);
}

TEST_F(BlendTools, SlidersWorkFromSnapshotsThatTheyShare)
{
    makeGray();
    brightness(-20);
    EXPECT_EQ(brightness(40), 140) << "moves don't add up";
    EXPECT_EQ(contrast(100), 155) << "from the brightened photo: 128 + 12 · 2.2677";
    EXPECT_EQ(brightness(10), 150) << "from the same";
    contrast(0);
    EXPECT_TRUE(state().photos[1].image.isIdenticalTo(state().applyFxOnImage1));
    editor->FxBtn();
    editor->resetBtn();
    EXPECT_EQ(brightness(20), 160) << "neither of them forgets the snapshot";
    editor->FxBtn();
    editor->photo2(); // to the first
    const int first = brightness(5);
    editor->toolBtn(); // the second is the current one now, with the first one's snapshot
    EXPECT_EQ(brightness(6), first + 1);
    EXPECT_EQ(level(kFirst), first);

    BlendComposition both = state();
    both.photo2Selected = true;
    both.brightBool = false;
    editor->setComposition(both);
    brightness(30);
    EXPECT_EQ(brightness(-10), first - 9);
    EXPECT_EQ(level(kFirst), first - 10);
}

TEST_F(BlendTools, AMoveOfASliderIsOneStepAndKeysJoin)
{
    makeGray();
    int told = 0;
    QObject::connect(editor.get(), &BlendPhotoViewController::slidersChanged, editor.get(), [&told] { ++told; });
    drag(51, {10, 300, 35}); // as far as the slider goes
    drag(52, {0, 0.8});
    for (const double value : {0.6, 0.7, 0.9})
        editor->slide(52, value);
    editor->slide(53, 1); // there is none
    EXPECT_EQ(told, 0);
    for (const double alpha : {0.8, 0.5}) {
        editor->undo();
        EXPECT_EQ(state().photos[1].alpha, alpha);
        EXPECT_EQ(shownValue(2), alpha);
    }
    EXPECT_EQ(told, 2);
    drag(52, {0.9, 0.5});
    EXPECT_TRUE(editor->canRedo()) << "there and back is no step";
    drag(52, {0.3, 0.8});
    for (const double tapped : {0.1, 0.12}) // by a double tap, which then asks for
        drag(52, {tapped});
    editor->slide(52, 0.5);
    for (const double alpha : {0.8, 0.5}) {
        editor->undo();
        EXPECT_EQ(state().photos[1].alpha, alpha);
    }
    editor->FxBtn(); // starts anew, and the photo keeps its look
    EXPECT_EQ(shownValue(1), 0);
    editor->beginSliding(51);
    editor->slide(51, 50);
    editor->undo(); // ends the move
    EXPECT_EQ(level(kSecond), 135);
    EXPECT_TRUE(editor->canRedo());
}

TEST_F(BlendTools, ValuesAreWrittenBesideSliders)
{
    const std::pair<double, const char*> table[] = {{34.4, "+34"}, {-12.5, "−13"}, {-0.4, "0"}, {-1000, "−200"}};
    for (const auto& [value, text] : table)
        EXPECT_EQ(editor->sliderText(50, value).toStdString(), text);
    EXPECT_EQ(editor->sliderText(52, 0.62), "62\u00a0%");
}

class MovingHost : public HeadlessHost {
    bool showsMotion() const override { return true; }
};

TEST_F(BlendTools, PanelsMoveAndGoWithoutANewerOne)
{
    PresentationHost::setCurrent(std::make_shared<MovingHost>());
    constexpr double kHeight = 2.0 * kSide;
    const BlendPanels& panels = editor->panels();
    editor->FxBtn();
    EXPECT_EQ(panels.fxView->value(), (CGRect{0, kHeight - 181, kSide, 180}));
    editor->stickerBtn();
    EXPECT_EQ(panels.stickerScrollView.value(), (CGRect{0, kHeight - 210, kSide, 85}));
    EXPECT_EQ(panels.stickerScrollView.motion(), (UIViewMotion{0.5, 0.1, UIViewAnimationCurve::EaseOut}));
    EXPECT_EQ(panels.fxView->value(), (CGRect{0, kHeight, kSide, 180}));
    EXPECT_EQ(panels.fxView->motion(), (UIViewMotion{0.5, 0.1, UIViewAnimationCurve::EaseIn}));
    pass(0.59);
    EXPECT_TRUE(panels.fxView);
    pass(0.02);
    EXPECT_FALSE(panels.fxView);
    editor->FxBtn();
    editor->hideFxViewBtnClicked();
    pass(0.3);
    editor->FxBtn();
    pass(1);
    EXPECT_EQ(editor->shownPanel(), "effects");
    editor->toolBtn();
    editor.reset(); // before the panel has gone
    pass(1);
    PresentationHost::setCurrent(nullptr);
}

} // namespace
} // namespace lamina::test
