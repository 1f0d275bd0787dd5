#include "editors/collage/CollageTools.h"
#include "CollageCanvasFixture.h"
#include "editors/collage/CollageEffects.h"
#include "editors/collage/CollageLayouts.h"
#include "editors/collage/CollagePanels.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "editors/colorpicker/InfColorPickerNavigationController.h"
#include "platform/base/UIColor.h"
#include "platform/view/HeadlessHost.h"
#include "platform/view/ListModel.h"
#include "platform/view/UIViewAnimation.h"

#include <map>
#include <string>
#include <utility>

namespace lamina::test {
namespace {

class MovingHost : public HeadlessHost {
    bool showsMotion() const override { return true; }
};

class CollageTools : public CollageCanvas {
protected:
    /// The tool that is lit alone, the panel in sight, and what stands while a panel does.
    std::string bar() const
    {
        std::string text;
        for (const EditorTool& tool : kCollageTools) {
            const EditorToolCell cell = editor->toolBar().cell(tool.identifier);
            const bool lit = cell.icon == tool.activeIcon;
            EXPECT_EQ(cell.icon, lit ? tool.activeIcon : tool.icon);
            EXPECT_EQ(cell.labelColor, lit ? kEditorAccentColor : UIColor::white()) << tool.identifier;
            text += lit ? tool.identifier : "";
        }
        text += ": " + editor->shownPanel().toStdString();
        const std::pair<bool, const char*> standing[] = {
            {editor->layouts() != nullptr, " layouts"},
            {editor->panels().subScrollView != nullptr, " strip"},
            {editor->stickerStrip() != nullptr, " stickers"},
            {editor->filterEnableBool(), " filter"},
            {editor->frameBool(), " frame"},
            {editor->panels().toolBarScrollViewHidden, " alone"},
        };
        for (const auto& [stands, name] : standing)
            text += stands ? name : "";
        return text;
    }
    /// Answers the question for a colour, which began with `source`.
    void answer(const UIColor& source, const UIColor& color)
    {
        settle();
        const auto stack = std::dynamic_pointer_cast<UINavigationController>(editor->presentedViewController());
        ASSERT_TRUE(stack);
        const auto picker = std::dynamic_pointer_cast<InfColorPickerController>(stack->topViewController());
        EXPECT_EQ(picker->sourceColor(), source);
        picker->setResultColor(color);
        picker->done();
        settle();
        EXPECT_FALSE(editor->presentedViewController());
    }
};

TEST_F(CollageTools, CloseAllPanelsAndOpenTheirOwn)
{
    EXPECT_EQ(bar(), "tools: tools");
    EXPECT_EQ(editor->toolImgArr(),
              (std::vector<std::string_view>{"Gallery", "Layout", "Tools1", "Filter", "Fx", "Sticker", "Reset"}));
    const std::pair<int, const char*> road[] = {
        {1000, "layout: layout layouts strip"},
        {1000, "layout: layout layouts strip"},
        {1002, "filter: filter filter"},
        {1004, "sticker: stickers stickers"},
        {1005, "reset: frame frame"},
        {1003, "fx: effects alone"},
        {1003, "fx: effects alone"},
        {1000, "layout: layout layouts strip"},
        {998, "layout: "},
        {1001, "tools: tools"},
        {1005, "reset: frame frame"},
        {1006, "reset: "},
    };
    for (const auto& [tag, shown] : road) {
        editor->imgGesture(tag);
        settle(); // what is queued comes after the bar's change
        EXPECT_EQ(bar(), shown) << tag;
    }
    EXPECT_FALSE(editor->canUndo());
    editor->chooseTool("fx");
    editor->hidePanel();
    settle();
    EXPECT_EQ(bar(), "fx: ");
    EXPECT_FALSE(editor->panels().fxView.isInView);
    editor->chooseTool("sticker");
    editor->hidePanel();
    EXPECT_EQ(bar(), "sticker: ");
}

TEST_F(CollageTools, PanelsStandWhereTheyAreTold)
{
    using namespace collagepanel;
    PresentationHost::setCurrent(std::make_shared<MovingHost>());
    const CollagePanels& panels = editor->panels();
    EXPECT_EQ(panels.toolSubView.frame.value(), (CGRect{0, 255, kSide, 50}));
    EXPECT_EQ(panels.fxView.frame.value(), (CGRect{0, 400, kSide, 200}));
    editor->imgGesture(1000);
    EXPECT_EQ(panels.toolSubView.frame.value(), (CGRect{0, 400, kSide, 50}));
    EXPECT_EQ(panels.frameView.frame.value(), (CGRect{0, 400, kSide, kSide}));
    const UIViewMotion up{0.5, 0.1, UIViewAnimationCurve::EaseOut};
    EXPECT_EQ(panels.subScrollView->frame.value(), (CGRect{0, 200, kSide, 80}));
    EXPECT_EQ(panels.subScrollView->frame.motion(), up);
    editor->imgGesture(1004);
    EXPECT_EQ(panels.stickerScrollView->frame.value(), (CGRect{0, 200, kSide, 80}));
    editor->imgGesture(1005);
    EXPECT_EQ(panels.frameView.frame.value(), (CGRect{0, 238, kSide, 100}));
    EXPECT_EQ(panels.frameView.background, UIColor::black());
    EXPECT_EQ(shownFrame({414, 812}).origin.y, 812 - 196);
    editor->imgGesture(1003);
    EXPECT_EQ(panels.fxView.frame.value(), (CGRect{0, 196, kSide, 170}));
    editor->imgGesture(1001);
    EXPECT_EQ(panels.toolSubView.frame.motion(), up);
    EXPECT_EQ(panels.fxView.frame.motion(), (UIViewMotion{0.5, 0.1, UIViewAnimationCurve::EaseIn}));
    clock->advance(0.3);
    editor->imgGesture(1003); // before the other has gone
    clock->advance(0.5);
    settle();
    EXPECT_EQ(bar(), "fx: effects alone");
    PresentationHost::setCurrent(nullptr);

    EXPECT_EQ(toolIcon(6), (CGRect{365, 10, 40, 40}));
    EXPECT_EQ(toolLabel(6), (CGRect{365, 55, 44, 10}));
    EXPECT_EQ(toolBarContentSize(7), (CGSize{420, 40}));
    EXPECT_EQ(layoutThumbnail(9), (CGRect{770, 0, 75, 75}));
    EXPECT_EQ(layoutsContentSize(10), (CGSize{850, 75}));
}

TEST_F(CollageTools, TheStripShowsEveryLayoutAndStays)
{
    for (const auto& [count, first, layouts] : {std::tuple{2, 2000, 8U}, std::tuple{3, 3000, 10U}}) {
        open(count);
        editor->imgGesture(1000);
        auto* const strip = dynamic_cast<ListModel<CollageLayout>*>(editor->layouts());
        ASSERT_TRUE(strip);
        ASSERT_EQ(strip->rows().size(), layouts);
        for (int row = 0; const CollageLayout& layout : strip->rows()) {
            EXPECT_EQ(layout.tag, first + row++);
            EXPECT_EQ(layout.picture.size(), (CGSize{75, 75}));
            EXPECT_FALSE(imagesMatch(layout.picture.cgImage(), layout.activePicture.cgImage()));
        }
        EXPECT_EQ(CollageLayouts(state()).dataInArr().back(), count == 2 ? "layout2-8" : "layout3-10");
        editor->imgGesture1(first + 3);
        EXPECT_EQ(editor->layout(), first + 3);
        EXPECT_EQ(editor->layouts(), strip);
        EXPECT_EQ(editor->shownPanel(), "layout");
    }
}

TEST_F(CollageTools, TurnsAndFlipsChangeThePixelsInTheViewAlone)
{
    CollageComposition work = state();
    const UIImage photo(makePicture(2, 2, [](int x, int y) {
        return Rgba{Rgba::value_type(1 + x + 2 * y), 0, 0, 255};
    }));
    work.photoSlots[1].image = photo;
    work.photoSlots[1].transform = CGAffineTransform::scaling(3, 3);
    work.photoSlots[1].alpha = 0.5;
    work.current = 1;
    editor->setComposition(work);
    const std::pair<const char*, std::vector<std::vector<int>>> road[] = {
        {"left", {{2, 4}, {1, 3}}},     {"horizontal", {{4, 2}, {3, 1}}}, {"right", {{3, 4}, {1, 2}}},
        {"vertical", {{1, 2}, {3, 4}}}, {"unknown", {{1, 2}, {3, 4}}},
    };
    for (const auto& [tool, reds] : road) {
        editor->chooseSubTool(tool);
        EXPECT_EQ(componentGrid(editor->secondImage()->image().cgImage()), reds) << tool;
    }
    EXPECT_EQ(editor->subToolBar().cell("vertical").icon, "Vertical1");
    EXPECT_EQ(editor->subToolBar().cell("left").icon, "Left");
    EXPECT_EQ(slot(1).transform, work.photoSlots[1].transform);
    EXPECT_EQ(slot(1).alpha, 0.5);
    EXPECT_TRUE(slot(1).master.isIdenticalTo(work.photoSlots[1].master));
    EXPECT_TRUE(slot(0).image.isIdenticalTo(work.photoSlots[0].image));
    for (int step = 0; step < 4; ++step)
        editor->undo();
    EXPECT_TRUE(slot(1).image.isIdenticalTo(photo));
}

TEST_F(CollageTools, AColorIsThatBehindTheSlotOrThatOfTheLines)
{
    const UIColor teal{0, 0.5, 0.5, 1};
    const UIColor ground = *editor->view().backgroundColor();
    editor->selectSlot(2);
    editor->chooseSubTool("color");
    editor->adjustColor(); // it is there already
    editor->adjustBorderColor();
    answer(ground, teal);
    EXPECT_EQ(editor->secondView()->backgroundColor(), teal);
    EXPECT_EQ(editor->firstView()->backgroundColor(), std::nullopt);
    EXPECT_EQ(editor->slotColor(), "#ff008080");
    EXPECT_EQ(editor->borderView().layer().borderColor(), UIColor::white());

    editor->imgGesture(1005);
    editor->adjustBorderColor();
    answer(UIColor::white(), UIColor::black());
    editor->adjustColor();
    answer(ground, {1, 0, 0, 1});
    EXPECT_EQ(editor->borderView().layer().borderColor(), (UIColor{1, 0, 0, 1}));
    EXPECT_EQ(editor->borderColor(), "#ffff0000");
    EXPECT_EQ(editor->secondView()->backgroundColor(), teal) << "the reset keeps it";
    editor->undo(); // lines that aren't drawn are no step
    EXPECT_EQ(editor->secondView()->backgroundColor(), std::nullopt);
    editor->undo();
    EXPECT_FALSE(editor->canUndo());
}

TEST_F(CollageTools, ResetPutsTheMastersBackAndKeepsAllElse)
{
    open(3);
    CollageComposition work = state();
    for (std::size_t index = 0; index < 3; ++index)
        work.photoSlots[index].image = photo(5);
    work.photoSlots[2].transform = CGAffineTransform::scaling(2, 2);
    work.photoSlots[2].center = {7, 8};
    work.photoSlots[1].alpha = 0.25;
    work.photoSlots[1].background = UIColor::black();
    work.effectFlags[3] = true;
    editor->setComposition(work);
    editor->stickerImgGesture(6001);
    editor->chooseTool("reset");
    for (std::size_t index = 0; index < 3; ++index)
        EXPECT_TRUE(editor->slotImageView(index)->image().isIdenticalTo(slot(index).master)) << index;
    EXPECT_EQ(editor->thirdImage()->transform(), CGAffineTransform::scaling(2, 2));
    EXPECT_EQ(editor->thirdImage()->center(), (CGPoint{7, 8}));
    EXPECT_EQ(editor->secondImage()->alpha(), 0.25);
    EXPECT_EQ(slot(1).background, UIColor::black());
    EXPECT_TRUE(state().effectFlags[3]);
    EXPECT_EQ(state().stickers.size(), 1U);
    editor->undo(); // the tool of that state comes back too
    EXPECT_EQ(bar(), "tools: tools");
    EXPECT_TRUE(editor->firstImage()->image().isIdenticalTo(work.photoSlots[0].image));
    editor->photosBack();
    EXPECT_TRUE(slot(0).image.isIdenticalTo(slot(0).master));
}

/// The red of a pixel of the canvas, at scale 1.
int redAt(const CreateCollageViewController& editor, int x, int y)
{
    return pixelAt(editor.renderedCanvas().cgImage(), x, y)[0];
}

TEST_F(CollageTools, LinesAreDrawnAlongTheEdgesOnTopAndMoveNothing)
{
    constexpr int kMid = static_cast<int>(kSide / 2);
    editor->applyLayout(2003); // two halves
    const UIImage plain = editor->renderedCanvas();
    editor->borderView().setHidden(true);
    EXPECT_TRUE(imagesMatch(plain.cgImage(), editor->renderedCanvas().cgImage())) << "none at first";
    editor->borderView().setHidden(false);

    for (const double value : {3.0, 12.4})
        editor->slide(collageslider::kGap, value);
    editor->slide(collageslider::kBorderWidth, 500);
    EXPECT_EQ(state().borderWidth, 40);
    editor->slide(collageslider::kBorderWidth, 6);
    EXPECT_EQ(editor->sliderText(collageslider::kGap, 12.4), "12");
    const std::tuple<int, int, int> table[] = {
        {kMid - 5, 20, 255}, {kMid + 5, 199, 255}, {kMid - 8, 20, 50}, {kMid + 8, 20, 100},
        {3, 100, 255},       {100, 3, 255},        {8, 100, 50},       {150, 196, 255},
    };
    for (const auto& [x, y, red] : table)
        EXPECT_EQ(redAt(*editor, x, y), red) << x << ", " << y;
    EXPECT_EQ(slot(0).center, kMiddle);
    drag({kMid - 3.0, 100}, {4, 0}); // they take no touches
    EXPECT_EQ(slot(0).center.x, kMid + 4);

    editor->stickerImgGesture(6001);
    EXPECT_EQ(editor->saveTheImg().subviews().back().get(), &editor->borderView());
    editor->applyLayout(2006); // a diamond
    EXPECT_EQ(editor->saveTheImg().subviews().back().get(), &editor->borderView());
    EXPECT_EQ(redAt(*editor, kMid, 50), 100);
    EXPECT_EQ(redAt(*editor, 150, 50), 255);
    editor->undo();
    EXPECT_EQ(redAt(*editor, kMid, 150), 255);
    for (int step = 0; step < 4; ++step) // the layout, the sticker, the drag, the border, the gap
        editor->undo();
    EXPECT_TRUE(imagesMatch(plain.cgImage(), editor->renderedCanvas().cgImage()));
}

} // namespace
} // namespace lamina::test
