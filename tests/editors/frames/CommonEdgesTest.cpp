// Along the edges that two photos of a frame share nothing is seen of what lies beneath.
#include "TestPictures.h"
#include "editors/frames/Frames.h"
#include "editors/frames/ThreeFramesViewController.h"
#include "editors/frames/TwoFramesViewController.h"
#include "platform/base/UIColor.h"
#include "platform/view/ImageRendering.h"

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <vector>

using namespace lamina;
using namespace lamina::test;

namespace {

constexpr double kScreenHeight = 667;
/// Halves and thirds of it end within a pixel.
constexpr double kUnevenSide = 331;

/// A frame whose slots are red, green and blue, on a canvas over paper.
class Paper {
public:
    explicit Paper(int frame)
    {
        constexpr UIColor kColors[] = {{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}};
        m_paper->setFrame(m_square);
        m_paper->setOpaque(false);
        m_paper->addSubview(m_canvas);
        m_canvas->setFrame(m_square);
        m_canvas->setClipsToBounds(true);
        for (std::size_t i = 0; i < photosOf(frame); ++i) {
            views.push_back(std::make_shared<UIView>(m_square));
            views[i]->setClipsToBounds(true);
            views[i]->setBackgroundColor(kColors[i]);
            m_canvas->addSubview(views[i]);
        }
        const auto lay = [&](auto& frames, auto&... each) {
            frames.view().setFrame({0, 0, kUnevenSide, kScreenHeight});
            frames.setLayout(frame, each..., *m_canvas);
        };
        TwoFramesViewController two;
        ThreeFramesViewController three;
        views.size() == 2 ? lay(two, *views[0], *views[1]) : lay(three, *views[0], *views[1], *views[2]);
    }

    std::vector<std::shared_ptr<UIView>> views;

    CGImage drawn(bool sharesEdges, const std::optional<UIColor>& ground = std::nullopt)
    {
        m_paper->setBackgroundColor(ground);
        m_canvas->layer().setSharesEdges(sharesEdges);
        return imageByRenderingView(*m_paper, 1).cgImage();
    }
    CGImage drawnAlone(std::size_t slot)
    {
        for (std::size_t i = 0; i < views.size(); ++i)
            views[i]->setHidden(i != slot);
        const CGImage picture = drawn(false);
        for (const auto& view : views)
            view->setHidden(false);
        return picture;
    }
    std::size_t topmost() const
    {
        const auto& top = m_canvas->subviews().back();
        return static_cast<std::size_t>(std::ranges::find(views, top) - views.begin());
    }

private:
    const CGRect m_square{0, 0, kUnevenSide, kUnevenSide};
    std::shared_ptr<UIView> m_paper = std::make_shared<UIView>();
    std::shared_ptr<UIView> m_canvas = std::make_shared<UIView>();
};

class CommonEdges : public testing::TestWithParam<int> {};

TEST_P(CommonEdges, ShowNothingOfTheGroundAndChangeNoOtherPixel)
{
    Paper paper(GetParam());
    std::vector<std::vector<Rgba>> alone;
    for (std::size_t slot = 0; slot < paper.views.size(); ++slot)
        alone.push_back(pixelsOf(paper.drawnAlone(slot)));
    const auto clear = pixelsOf(paper.drawn(true));
    const auto onWhite = pixelsOf(paper.drawn(true, UIColor::white()));
    const auto oneByOne = pixelsOf(paper.drawn(false, UIColor::white()));
    const bool fills = GetParam() != 2005 && GetParam() != 3008; // all frames but the round ones
    const std::size_t top = paper.topmost();
    const auto sumOf = [](const Rgba& pixel) { return pixel[0] + pixel[1] + pixel[2]; };
    std::size_t changed = 0;
    for (std::size_t i = 0; i < clear.size(); ++i) {
        if (fills) {
            ASSERT_EQ(clear[i][3], 255) << i;
            ASSERT_NEAR(sumOf(clear[i]), 255, 2) << i;
            ASSERT_NEAR(sumOf(onWhite[i]), 255, 2) << i; // white would count three times
            ASSERT_NEAR(clear[i][top], alone[top][i][3], 1) << i;
        }
        const auto isCut = [&](const auto& slot) { return slot[i][3] != 0 && slot[i][3] != 255; };
        ASSERT_TRUE(onWhite[i] == oneByOne[i] || std::ranges::count_if(alone, isCut) > 1) << i;
        changed += onWhite[i] != oneByOne[i];
    }
    const bool meet = fills && GetParam() != 2006 && GetParam() != 2007;
    EXPECT_EQ(changed > 0, meet);
}

INSTANTIATE_TEST_SUITE_P(TwoPhotos, CommonEdges, testing::Range(kTwoFrames, kTwoFrames + kTwoFramesCount));
INSTANTIATE_TEST_SUITE_P(ThreePhotos, CommonEdges, testing::Range(kThreeFrames, kThreeFrames + kThreeFramesCount));

} // namespace
