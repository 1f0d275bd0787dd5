#include "platform/gl/GLDisplay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lamina {
namespace {

const GLDevice kSoftware{.index = 0, .software = true};
const GLDevice kCard{.index = 1, .drmFile = "/dev/dri/card0"};
const GLDevice kNode{.index = 2, .drmFile = "/dev/dri/renderD128"};
const std::vector<GLDevice> kAll{kSoftware, kCard, kNode};

std::vector<int> indices(const Result<std::vector<GLDevice>>& devices)
{
    std::vector<int> found;
    if (devices) {
        for (const GLDevice& device : *devices)
            found.push_back(device.index);
    }
    return found;
}

struct Wish {
    const char* wanted;
    std::vector<int> order;
};

class DevicesInOrder : public testing::TestWithParam<Wish> {};

TEST_P(DevicesInOrder, GivesWhatIsWishedBestFirst)
{
    EXPECT_EQ(indices(devicesInOrder(kAll, GetParam().wanted)), GetParam().order) << GetParam().wanted;
}

INSTANTIATE_TEST_SUITE_P(Wishes, DevicesInOrder,
                         testing::Values(Wish{"", {1, 2, 0}}, Wish{"hardware", {1, 2}}, Wish{"software", {0}},
                                         Wish{"2", {2}}, Wish{"0", {0}}, Wish{"/dev/dri/renderD128", {2}}));

TEST(DevicesInOrderErrors, NameTheWishAndWhatThereIs)
{
    for (const char* wanted : {"3", "-1", "1x", "99999999999999999999", "/dev/dri/card7", "card0", "Hardware"}) {
        const auto devices = devicesInOrder(kAll, wanted);
        ASSERT_FALSE(devices.ok()) << wanted;
        const std::string told = devices.error().subject + ": " + devices.error().cause;
        EXPECT_THAT(told, testing::HasSubstr(wanted));
        EXPECT_THAT(told, testing::HasSubstr("/dev/dri/card0"));
    }
    EXPECT_FALSE(devicesInOrder({kSoftware}, "hardware").ok());
    EXPECT_FALSE(devicesInOrder({kCard}, "software").ok());
    EXPECT_FALSE(devicesInOrder({}, "0").ok());
    EXPECT_THAT(indices(devicesInOrder({}, "")), testing::IsEmpty());
}

TEST(DevicesInOrderErrors, AFileIsNotMatchedByDevicesWithoutOne)
{
    EXPECT_EQ(indices(devicesInOrder({kSoftware, kNode}, "")), (std::vector{2, 0}));
    EXPECT_FALSE(devicesInOrder({kSoftware}, "/dev/dri/card0").ok());
}

} // namespace
} // namespace lamina
