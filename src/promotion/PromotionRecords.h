#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What the feeds hold, a record each. Fields are named as the feeds' keys.
namespace lamina {

/// An application that the server knows. A plain value.
struct iOSAppList {
    std::string appName; ///< under which it shows itself
    std::string accountName;
    std::int64_t isCheck = 0; ///< 1: promotions are switched on for it
};

/// A promotion. A plain value.
struct CustomInterstrial {
    std::string appLink;        ///< the page of what is promoted
    std::string interstialLink; ///< URL of the picture
    std::int64_t isCheck = 0;   ///< not looked at
};

/// A promotion with its picture in it. No feed has them yet. A plain value.
struct ImageDataResource {
    std::string interstialLink;
    std::string appLink;
    std::vector<std::uint8_t> imagedata; ///< a picture file's contents; base64 in the feed
};

} // namespace lamina
