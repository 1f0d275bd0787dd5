#pragma once

#include "PromotionServer.h"
#include "TestPictures.h"
#include "platform/image/codecs/PictureEncoding.h"

#include <string>

namespace lamina::test {

inline constexpr const char* kOfferedLink = "https://shop.example/cards";

/// One promotion for the application of that name, with a picture that can be had. Held, the list comes when the server
/// is told to release it.
inline void offerOne(PromotionServer& server, const std::string& appName, bool held = false)
{
    server.set(kApps, {.body = R"([{"appName":")" + appName + R"(","accountName":"us","isCheck":1}])"});
    server.set(kPromotions, {.body = R"([{"appLink":")" + std::string(kOfferedLink) + R"(","interstialLink":")" +
                                     server.url("/ad.png") + R"(","isCheck":1}])",
                             .isHeld = held});
    const auto png = *encodePNG(rampPicture(80, 40, 7), "ad");
    server.set("/ad.png", {.body = {png.begin(), png.end()}});
}

} // namespace lamina::test
