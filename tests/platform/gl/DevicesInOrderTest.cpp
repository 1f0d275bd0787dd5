#include "platform/gl/GLDisplay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

namespace lamina {
namespace {

const GLDevice kSoftware{.index = 0, .software = true};
const GLDevice kCard{.index = 1, .drmFile = "/dev/dri/card0"};
const GLDevice kNode{.index = 2, .drmFile = "/dev/dri/renderD128"};
const std::vector<GLDevice> kAll{kSoftware, kCard, kNode};

std::vector<int> indices(const std::vector<GLDevice>& devices)
{
    std::vector<int> found;
    for (const GLDevice& device : devices)
        found.push_back(device.index);
    return found;
}

TEST(DevicesInOrder, GivesWhatIsWishedBestFirst)
{
    using Order = std::vector<int>;
    for (const auto& [wanted, order] : {std::pair<const char*, Order>{"", {1, 2, 0}},
                                        {"hardware", {1, 2}},
                                        {"software", {0}},
                                        {"2", {2}},
                                        {"0", {0}},
                                        {"/dev/dri/renderD128", {2}}})
        EXPECT_EQ(indices(*devicesInOrder(kAll, wanted)), order) << wanted;
    EXPECT_TRUE(devicesInOrder({}, "").ok());
}

TEST(DevicesInOrder, NamesTheWishThatCannotBeMetAndWhatThereIs)
{
    for (const char* wanted : {"3", "-1", "1x", "99999999999999999999", "/dev/dri/card7", "card0", "Hardware"}) {
        const auto devices = devicesInOrder(kAll, wanted);
        ASSERT_FALSE(devices.ok()) << wanted;
        EXPECT_THAT(devices.error().cause, testing::HasSubstr(wanted));
        EXPECT_THAT(devices.error().cause, testing::HasSubstr("/dev/dri/card0"));
    }
    EXPECT_FALSE(devicesInOrder({kSoftware}, "hardware").ok());
    EXPECT_FALSE(devicesInOrder({}, "0").ok());
}

} // namespace
} // namespace lamina
