#pragma once

#include "platform/base/Result.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lamina {

/// What another program, or another start of this one, asks of the application that is open. A plain value.
struct ApplicationRequest {
    /// One of `kHomeActions`; empty: what the photos say.
    std::string action;
    /// Paths of files, absolute, the first one first. With none, and no action, the window is to come to the front.
    std::vector<std::string> photos;
    /// With it the window system lets a window come to the front: a token of xdg-activation or, on X11, the startup
    /// identifier. Empty: there is none.
    std::string activationToken;
    /// The first of those photos that are not among `photos` since they can't be read here, which the user is told.
    std::optional<Error> leftOut{};
};

/// The home screen's entries, by the names of the desktop file's actions, of --screen and of the bus.
inline constexpr std::array<std::string_view, 3> kHomeActions{"two", "three", "blend"};

/// Of photos in one request, so that no other program can make this one hold what it likes.
inline constexpr std::size_t kMostRequestedPhotos = 256;
/// Bytes of a photo's path, and of an activation token.
inline constexpr std::size_t kLongestRequestedPath = 4096;
inline constexpr int kLongestActivationToken = 1024;

} // namespace lamina
