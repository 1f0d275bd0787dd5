#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageFourInputFilter.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/image/pixels/CGImage.h"

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <utility>

namespace lamina::test {
namespace {

/// Each slot's red channel in a channel of its own.
std::string redsOf(int inputs)
{
    std::string head = "precision highp float;";
    std::string reds;
    for (int slot = 0; slot < inputs; ++slot) {
        const std::string number = slot == 0 ? "" : std::to_string(slot + 1);
        head += "varying vec2 textureCoordinate" + number + "; uniform sampler2D inputImageTexture" + number + ";";
        reds += "texture2D(inputImageTexture" + number + ", textureCoordinate" + number + ").r, ";
    }
    for (int channel = inputs; channel < 4; ++channel)
        reds += "1.0, ";
    reds.resize(reds.size() - 2);
    return head + "void main() { gl_FragColor = vec4(" + reds + "); }";
}

class MultiInputTest : public GraphFixture {
protected:
    void make(int inputs)
    {
        m_end.reset();
        m_sources.clear();
        if (inputs == 2)
            m_filter = std::make_shared<GPUImageTwoInputFilter>(redsOf(2));
        else if (inputs == 3)
            m_filter = std::make_shared<GPUImageThreeInputFilter>(redsOf(3));
        else
            m_filter = std::make_shared<GPUImageFourInputFilter>(redsOf(4));
        ASSERT_TRUE(m_filter->canRender());
        for (int slot = 0; slot < inputs; ++slot) {
            EXPECT_EQ(m_filter->nextAvailableTextureIndex(), slot);
            m_sources.push_back(std::make_shared<FrameSource>());
            m_sources.back()->addTarget(m_filter);
        }
        m_end = consumerOf(*m_filter);
    }

    /// "S0=10": slot 0 gets a still picture of red 10. "V0=10@3": a frame of a stream at second 3, without "@3" one
    /// without a time, which is what a filter makes of a still. "F1": slot 1 is not waited for any more. "P0":
    /// rendering is prevented. "R1": the source of slot 1 is removed.
    void perform(const std::string& step)
    {
        char what = 0;
        char sign = 0;
        std::size_t slot = 0;
        int red = 0;
        int time = -1;
        std::istringstream(step) >> what >> slot >> sign >> red >> sign >> time;
        const Rgba color{static_cast<std::uint8_t>(red), 0, 0, 255};
        if (what == 'S')
            m_sources.at(slot)->pushStill(solidPicture(2, 2, color));
        else if (what == 'V')
            m_sources.at(slot)->push({2, 2}, color, time < 0 ? kCMTimeIndefinite : second(time));
        else if (what == 'P')
            m_filter->setPreventRendering(true);
        else if (what == 'R')
            m_sources.at(slot)->removeTarget(m_filter);
        else if (slot == 0)
            m_filter->disableFirstFrameCheck();
        else if (slot == 1)
            m_filter->disableSecondFrameCheck();
        else
            dynamic_cast<GPUImageThreeInputFilter&>(*m_filter).disableThirdFrameCheck();
    }

    /// What was drawn, as "TIME: REDS; ".
    std::string drawn() const
    {
        std::string all;
        for (const CountingConsumer::Frame& frame : m_end->frames()) {
            all += frame.time.isIndefinite() ? "-" : std::to_string(frame.time.value);
            for (std::size_t slot = 0; slot < m_sources.size(); ++slot)
                all += (slot == 0 ? ": " : " ") + std::to_string(pixelAt(frame.pixels, 1, 1)[slot]);
            all += "; ";
        }
        return all;
    }

    std::vector<std::shared_ptr<FrameSource>> m_sources;
    std::shared_ptr<GPUImageTwoInputFilter> m_filter;
    std::shared_ptr<CountingConsumer> m_end;
};

struct Script {
    const char* what;
    int inputs;
    const char* steps;
    const char* drawn;
};

const Script kScripts[] = {
    {"two stills draw when both have come", 2, "S0=10 S1=20 S1=40 S0=30", "-: 10 20; -: 30 40; "},
    {"each frame of a stream draws beside a still", 2, "S1=50 V0=1@1 V0=2@2 V0=3@3", "1: 1 50; 2: 2 50; 3: 3 50; "},
    {"in the other slot too", 2, "S0=50 V1=1@1 V1=2@2", "1: 50 1; 2: 50 2; "},
    {"what a filter makes of a still is kept for the stream", 2, "V1=50 V0=8@1 V0=9@2", "1: 8 50; 2: 9 50; "},
    {"until another one comes", 2, "V0=50 V1=8@1 V0=60 V1=9@2 V0=70 V0=80 V1=9@3", "1: 50 8; 2: 60 9; 3: 80 9; "},
    {"or the slot streams", 2, "V1=50 V0=8@1 V1=60@2 V0=9@3 F1 V0=9@4", "1: 8 50; 3: 9 60; 4: 9 0; "},
    {"or its source is removed", 2, "V1=50 V0=8@1 R1 V0=9@2", "1: 8 50; 2: 9 0; "},
    {"two that were counted draw a stream too", 2, "V0=10 V1=20 V0=30@1 V0=31@2", "-: 10 20; 1: 30 20; 2: 31 20; "},
    {"three keep theirs", 3, "V0=11 V1=21 V2=31@5 V2=32@6", "5: 11 21 31; 6: 11 21 32; "},
    {"four too", 4, "V3=41 V0=11 V1=21 V2=31@5 V2=32@6", "5: 11 21 31 41; 6: 11 21 32 41; "},
    {"one that comes to a filter that is prevented goes at its end", 2, "P0 V1=50 V0=8@1", ""},
    {"two streams draw in pairs at the first one's time", 2, "V1=1@8 V0=2@7 V0=3@9 V1=4@10", "7: 2 1; 9: 3 4; "},
    {"of an input that outruns the other the last frame counts", 2, "V0=1@1 V0=2@2 V0=3@3 V0=4@4 V1=7@5", "4: 4 7; "},
    {"a slot that was freed is not waited for", 2, "V1=20@1 V0=10@1 F1 V0=11@2 V0=12@3",
     "1: 10 20; 2: 11 0; 3: 12 0; "},
    {"three draw at the time of the last to come", 3, "V2=30@3 V0=10@1 V1=20@2", "2: 10 20 30; "},
    {"beside stills every frame of a stream draws", 3, "S0=11 S1=21 V2=31@5 V2=32@6", "5: 11 21 31; 6: 11 21 32; "},
    {"the first and the third can be freed", 3, "F0 F2 S0=1 S2=3 V1=2@1 V1=4@2", "1: 1 2 3; 2: 1 4 3; "},
    {"of four the fourth must not come last", 4, "V3=40@1 V0=10@2 V2=30@3 V1=20@4 V0=1@5 V1=1@6 V2=1@7 V3=1@8",
     "4: 10 20 30 40; "},
    {"a fourth that streams beside a still draws", 4, "S0=10 V3=40@1 V3=41@2", "1: 10 0 0 40; 2: 10 0 0 41; "},
    {"nothing is drawn where rendering is prevented", 4, "P0 V3=1@1 V0=1@1 V1=1@1 V2=1@1", ""},
};

TEST_F(MultiInputTest, DrawsWhenTheSlotsHaveWhatTheyNeed)
{
    for (const Script& script : kScripts) {
        SCOPED_TRACE(script.what);
        ASSERT_NO_FATAL_FAILURE(make(script.inputs));
        emptyPool();
        const std::size_t before = GPUImageFramebufferCache::livingCount();
        std::istringstream steps(script.steps);
        for (std::string step; steps >> step;)
            perform(step);
        EXPECT_EQ(drawn(), script.drawn);
        // A frame for each slot, one on its way, and the output.
        EXPECT_LE(GPUImageFramebufferCache::livingCount(), before + static_cast<std::size_t>(script.inputs) + 2);
        const std::size_t living = GPUImageFramebufferCache::livingCount();
        m_sources.clear();
        m_filter.reset();
        EXPECT_EQ(idleFramebuffers(), living) << "all counts have been given back";
    }
}

TEST_F(MultiInputTest, SourcesFillTheNextSlotAndRemovalFreesIt)
{
    make(4);
    EXPECT_EQ(m_filter->nextAvailableTextureIndex(), 3) << "a fifth source takes the fourth one's slot";
    for (const auto& [removed, next] : {std::pair{3, 3}, {2, 2}, {0, 2}, {1, 0}}) {
        m_sources[static_cast<std::size_t>(removed)]->removeTarget(m_filter);
        EXPECT_EQ(m_filter->nextAvailableTextureIndex(), next);
    }
}

TEST_F(MultiInputTest, TheFirstInputGivesTheSizeAndEachSlotItsRotation)
{
    make(2);
    const CGImage first = chartPicture(4, 2);
    const CGImage other = chartPicture(2, 4);
    m_sources[1]->setRotation(kGPUImageRotateRight);
    m_sources[1]->push(other, second(1));
    m_sources[0]->push(first, second(1));
    EXPECT_TRUE(imagesMatch(m_end->last().pixels, makePicture(4, 2, [&](int x, int y) {
                                return Rgba{pixelAt(first, x, y)[0], pixelAt(other, y, 3 - x)[0], 255, 255};
                            })));
}

} // namespace
} // namespace lamina::test
