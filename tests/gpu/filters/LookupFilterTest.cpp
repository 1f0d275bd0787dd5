#include "LookupReference.h"
#include "TestPaths.h"

#include "gpu/filters/GPUImageLookupFilter.h"
#include "gpu/filters/LookupTables.h"
#include "platform/image/codecs/PictureDecoding.h"

#include <gtest/gtest.h>
#include <optional>

namespace lamina::test {
namespace {

std::shared_ptr<GPUImageLookupFilter> makeLookup(std::optional<float> intensity)
{
    auto filter = std::make_shared<GPUImageLookupFilter>();
    if (intensity)
        filter->setIntensity(*intensity);
    return filter;
}

TEST(LookupTables, AreTheFilesOfTheHouse)
{
    for (const std::string name : {"lookup_amatorka.png", "lookup_identity.png", "lookup_miss_etikate.png",
                                   "lookup_soft_elegance_1.png", "lookup_soft_elegance_2.png"}) {
        SCOPED_TRACE(name);
        const Result<UIImage> file = loadPicture(samples("../lookup/" + std::string(name)));
        ASSERT_TRUE(file);
        const CGImage table = lookupTable(name);
        ASSERT_TRUE(table);
        EXPECT_EQ(table.size(), (IntSize{512, 512}));
        EXPECT_FALSE(table.hasAlpha());
        expectPicture(table, file->cgImage(), 0);
        EXPECT_TRUE(lookupTable(name).sharesBytesWith(table));
    }
    EXPECT_FALSE(lookupTable("lookup_unknown.png"));
    EXPECT_FALSE(lookupTable(""));
}

TEST(LookupFilter, TheIdentityTableChangesNothing)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    const Formula unchanged = [](const Texture& in, double u, double v) { return in.sample(u, v); };
    for (const CGImage& picture : usualPictures()) {
        const auto at = [&](float intensity) {
            return filteredPair(*makeLookup(intensity), picture, lookupTable("lookup_identity.png"));
        };
        expectPicture(at(1), evaluated(picture, unchanged), 1); // entries are rounded to bytes
        expectPicture(at(0), evaluated(picture, unchanged), 0);
    }
}

TEST(LookupFilter, GradesByTheTable)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    const CGImage table = lookupTable("lookup_miss_etikate.png");
    for (const CGImage& picture : usualPictures()) {
        for (const float intensity : {1.0F, 0.6F}) {
            expectPicture(filteredPair(*makeLookup(intensity), picture, table),
                          evaluated(picture, lookUp(table, intensity)));
        }
    }
}

// Also after a filter of the same program has used it.
TEST(LookupFilter, ShowsNoLookBeforeItsIntensityIsSet)
{
    ASSERT_NO_FATAL_FAILURE(requireContext());
    const CGImage picture = gradientPicture(37, 23, false);
    const CGImage table = lookupTable("lookup_amatorka.png");
    const CGImage graded = filteredPair(*makeLookup(1), picture, table);
    EXPECT_GT(largestDifference(graded, picture).largest, 20);
    const auto fresh = makeLookup({});
    EXPECT_EQ(fresh->intensity(), 1);
    expectPicture(filteredPair(*fresh, picture, table), picture, 0);
}

} // namespace
} // namespace lamina::test
