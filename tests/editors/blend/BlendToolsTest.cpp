#include "BlendEditorFixture.h"
#include "editors/blend/BlendPanels.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "editors/colorpicker/InfColorPickerNavigationController.h"
#include "platform/base/UIColor.h"
#include "platform/view/HeadlessHost.h"
#include "platform/view/UIViewAnimation.h"

#include <QStringList>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

using Editor = BlendPhotoViewController;
constexpr UIColor kGround{0x12 / 255.0, 0x13 / 255.0, 0x16 / 255.0, 1};

class BlendTools : public BlendEditor {
protected:
    /// The tool with the accent, those with a grey cell, the panel in sight, which photo moves, and the strip's flag.
    std::string bar() const
    {
        std::string gray;
        for (const char* const tool : {"reset", "pan", "tools", "effects", "stickers"})
            gray += editor->toolBar().cell(tool).background == UIColor::gray() ? std::string(" ") + tool : "";
        return std::string(editor->toolBar().activeTool()) + "," + gray + ", " + editor->shownPanel().toStdString() +
               ", " + std::to_string(editor->movingPhoto()) + (state().toolBool ? " t" : "");
    }
    /// The photos that differ from `before`, by their numbers.
    std::string changedSince(const BlendComposition& before) const
    {
        std::string changed;
        for (const std::size_t i : {0u, 1u}) {
            const BlendPhoto& now = state().photos[i];
            const bool same = now.image.isIdenticalTo(before.photos[i].image) && now.alpha == before.photos[i].alpha;
            changed += same ? "" : std::to_string(i + 1);
        }
        return changed;
    }
    void select(bool first, bool second, std::size_t current)
    {
        BlendComposition composition = state();
        composition.photo1Selected = first;
        composition.photo2Selected = second;
        composition.current = current;
        composition.mode = BlendMode::Tools;
        composition.contrastBool = composition.brightBool = false;
        editor->setComposition(composition);
    }
};

TEST_F(BlendTools, ToolsTakeOverTheBarFromEachOther)
{
    const std::pair<const char*, const char*> road[] = {
        {"tools", "tools, tools, tools, 0 t"},
        {"tools", "tools,, , 0 t"}, // the pictures stay
        {"tools", "tools, tools, tools, 0 t"},
        {"pan", "pan, tools, , 2 t"},
        {"tools", "tools, tools, tools, 0 t"},
        {"effects", "effects, effects, effects, 0"},
        {"stickers", "stickers, stickers, stickers, 0"},
        {"pan", "pan, stickers, , 2"},
        {"stickers", "stickers, stickers, stickers, 0"},
        {"stickers", "stickers,, , 0"},
        {"effects", "effects, effects, effects, 0"},
        {"tools", "tools, tools, tools, 0 t"},
        {"stickers", "stickers, stickers, stickers, 0"},
        {"tools", "tools, tools, tools, 0 t"},
        {"reset", "reset, reset, , 2 t"},
        {"stickers", "stickers, stickers, stickers, 0"},
        {"pan", "pan, stickers, , 2"},
    };
    for (const auto& [tool, shown] : road) {
        SCOPED_TRACE(shown);
        editor->chooseTool(tool);
        EXPECT_EQ(bar(), shown);
        const double before = transform().tx;
        dragBy(3);
        editor->nudge(2, 0);
        EXPECT_EQ(transform().tx - before, editor->movingPhoto() == 2 ? 5 : 0);
    }
}

TEST_F(BlendTools, UndoBringsAToolBackWhereAnotherHasTakenOver)
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
    editor->toolBtn();
    EXPECT_EQ(bar(), "tools,, , 0 t");
    editor->panBtn();
    editor->redo();
    EXPECT_EQ(bar(), "effects, effects, effects, 0");
    for (const char* const tool : {"pan", "stickers", "tools"}) // choosing a tool is no step
        editor->chooseTool(tool);
    editor->undo();
    EXPECT_EQ(bar(), "pan,, , 2 t");
}

TEST_F(BlendTools, WhichPhotoAToolActsOn)
{
    const struct {
        bool first;
        bool second;
        std::size_t current;
        const char* turned;
        const char* slid;
        std::size_t then;
    } table[] = {
        {true, true, 0, "2", "12", 1},  {true, false, 1, "1", "1", 0},  {false, true, 0, "2", "2", 1},
        {false, false, 0, "1", "1", 0}, {false, false, 1, "2", "2", 1},
    };
    using Action = std::function<void()>;
    const Action turns[] = {[this] { editor->chooseSubTool("left"); }, [this] { editor->chooseSubTool("vertical"); }};
    const Action slides[] = {[this] { editor->opacityFun(0.7); }, [this] { editor->contrastFun(30); },
                             [this] { editor->brightnFun(30); }};
    for (const auto& c : table) {
        SCOPED_TRACE(&c - table);
        const auto check = [&](const auto& actions, const char* changed, std::size_t then) {
            for (const Action& action : actions) {
                editor->resetBtn();
                select(c.first, c.second, c.current);
                const BlendComposition before = state();
                action();
                EXPECT_EQ(changedSince(before), changed);
                EXPECT_EQ(state().current, then);
            }
        };
        check(turns, c.turned, c.then);
        check(slides, c.slid, c.first && c.second ? c.current : c.then);
    }
}

TEST_F(BlendTools, TurnsAndFlipsMovePixelsAndKeepTheTransform)
{
    // The four quarters of a picture, by their reds.
    const UIImage photo(makePicture(2, 2, [](int x, int y) -> Rgba {
        return {std::uint8_t(1 + x + 2 * y), 0, 0, 255};
    }));
    const struct {
        const char* tool;
        std::vector<std::vector<int>> reds;
    } table[] = {
        {"left", {{2, 4}, {1, 3}}},
        {"right", {{3, 1}, {4, 2}}},
        {"horizontal", {{2, 1}, {4, 3}}},
        {"vertical", {{3, 4}, {1, 2}}},
        {"no tool", {{1, 2}, {3, 4}}},
        {"left left left left", {{1, 2}, {3, 4}}},
        {"left horizontal", {{4, 2}, {3, 1}}},
    };
    BlendComposition work = state();
    work.photos[1].image = work.photos[1].actualImage = photo;
    work.photos[1].transform = CGAffineTransform::translation(3, 4).scaled(2, 2);
    editor->setComposition(work);
    for (const auto& c : table) {
        SCOPED_TRACE(c.tool);
        editor->setComposition(work);
        const QString tools = c.tool;
        for (const QString& tool : tools == "no tool" ? QStringList(tools) : tools.split(' '))
            editor->chooseSubTool(tool);
        EXPECT_EQ(componentGrid(editor->imgView2().image().cgImage()), c.reds);
        EXPECT_EQ(transform(), work.photos[1].transform);
        EXPECT_TRUE(state().photos[1].actualImage.isIdenticalTo(photo));
    }
    EXPECT_EQ(editor->subToolBar().activeTool(), "horizontal");
    EXPECT_EQ(editor->subToolBar().cell("horizontal").icon, "Horizontal1");
    EXPECT_EQ(editor->subTools(), editor->subToolBar().list());
    editor->resetBtn();
    EXPECT_TRUE(editor->imgView2().image().isIdenticalTo(photo));
}

TEST_F(BlendTools, TheBackdropIsChosenInThePicker)
{
    const auto choose = [this](std::optional<UIColor> color) {
        editor->chooseSubTool("color");
        editor->adjustColor1(); // it is there already
        DispatchQueue::main().runUntilIdle();
        const auto stack = std::dynamic_pointer_cast<UINavigationController>(editor->presentedViewController());
        const auto picker =
            stack ? std::dynamic_pointer_cast<InfColorPickerController>(stack->topViewController()) : nullptr;
        ASSERT_TRUE(picker);
        EXPECT_EQ(picker->sourceColor(), kGround);
        if (color)
            picker->setResultColor(*color);
        picker->done();
        DispatchQueue::main().runUntilIdle();
        EXPECT_FALSE(editor->presentedViewController());
    };
    EXPECT_EQ(editor->backdrop(), "#00000000");
    choose(UIColor{1, 0.5, 0, 1});
    EXPECT_EQ(editor->backdrop(), "#ffff8000");
    EXPECT_EQ(editor->mainImgView().backgroundColor(), (UIColor{1, 0.5, 0, 1}));
    choose({}); // what it began with, too
    EXPECT_EQ(editor->backdrop(), "#ff121316");
    editor->undo();
    EXPECT_EQ(editor->backdrop(), "#ffff8000");
    editor->undo();
    EXPECT_EQ(editor->mainImgView().backgroundColor(), std::nullopt);
    EXPECT_FALSE(editor->canUndo());
}

class BlendPanelsMoving : public BlendEditor {
protected:
    class MovingHost : public HeadlessHost {
        bool showsMotion() const override { return true; }
    };
    BlendPanelsMoving() { PresentationHost::setCurrent(std::make_shared<MovingHost>()); }
    ~BlendPanelsMoving() override { PresentationHost::setCurrent(nullptr); }
    void TearDown() override
    {
        pass(1); // nothing moves any more
        BlendEditor::TearDown();
    }
    void pass(double seconds)
    {
        clock->advance(seconds);
        DispatchQueue::main().drain();
    }
    const BlendPanels& panels() const { return editor->panels(); }

    static constexpr double kHeight = 2.0 * kSide;
};

TEST_F(BlendPanelsMoving, StandWhereAndMoveAsTold)
{
    const UIViewMotion tool{0.5, 0.1, UIViewAnimationCurve::EaseOut};
    const UIViewMotion atOnce{0, 0, UIViewAnimationCurve::EaseOut};
    editor->toolBtn();
    EXPECT_EQ(panels().toolSubViewTopConst.value(), 0);
    EXPECT_EQ(panels().toolSubViewTopConst.motion(), tool);
    EXPECT_EQ(panels().stickerScrollView.value(), (CGRect{0, kHeight, kSide, 50}));
    EXPECT_FALSE(panels().fxView);
    editor->FxBtn();
    EXPECT_EQ(panels().toolSubViewTopConst.value(), -250);
    EXPECT_EQ(panels().toolSubViewTopConst.motion(), atOnce);
    EXPECT_EQ(panels().fxView->value(), (CGRect{0, kHeight - 181, kSide, 180}));
    EXPECT_EQ(panels().fxView->motion(), atOnce);
    editor->stickerBtn();
    EXPECT_EQ(panels().stickerScrollView.value(), (CGRect{0, kHeight - 210, kSide, 85}));
    EXPECT_EQ(panels().stickerScrollView.motion(), tool);
    EXPECT_EQ(panels().fxView->value(), (CGRect{0, kHeight, kSide, 180}));
    EXPECT_EQ(panels().fxView->motion(), (UIViewMotion{0.5, 0.1, UIViewAnimationCurve::EaseIn}));

    EXPECT_EQ(blendpanel::createdEffects({430, 900}), (CGRect{0, 1025, 430, 180}));
    EXPECT_EQ(blendpanel::effectsScrollView(430), (CGRect{0, 0, 430, 130}));
    EXPECT_EQ(blendpanel::effectsContentSize(430, 3), (CGSize{430, 150}));
    EXPECT_EQ(blendpanel::effectsHideButton(430), (CGRect{215, 130, 36, 36}));
    EXPECT_EQ(blendpanel::effectsRow(430, 2), (CGRect{0, 95, 430, 40}));
    EXPECT_EQ(blendpanel::effectsRowLabel(), (CGRect{10, 2, 90, 36}));
    EXPECT_EQ(blendpanel::effectsRowSlider(430), (CGRect{120, 0, 290, 40}));
}

TEST_F(BlendPanelsMoving, APanelGoesWhenItIsOutOfSightAndLeavesANewerOne)
{
    editor->FxBtn();
    editor->hideFxViewBtnClicked();
    EXPECT_EQ(editor->shownPanel(), "");
    pass(0.59);
    EXPECT_TRUE(panels().fxView);
    pass(0.02);
    EXPECT_FALSE(panels().fxView);

    editor->FxBtn();
    editor->hideFxViewBtnClicked();
    pass(0.3);
    editor->FxBtn();
    pass(1);
    EXPECT_EQ(editor->shownPanel(), "effects");
    editor->panBtn(); // takes it out of sight, and keeps it
    pass(1);
    EXPECT_EQ(panels().fxView->value().origin.y, kHeight);
    editor->FxBtn();
    editor->toolBtn();
    editor.reset(); // before the panel has gone
    pass(1);
}

} // namespace
} // namespace lamina::test
