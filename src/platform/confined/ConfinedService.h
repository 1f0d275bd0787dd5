#pragma once

#include "platform/files/FileReading.h"

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace lamina {

/// What a confined program does. Its `main` is `return serveConfined(...)`.
struct ConfinedService {
    /// Loads all that will ever be needed from files. In the only thread there is.
    std::function<void()> prepare;
    /// Answers a request: its bytes, the descriptors that came with it, and where the answer goes; returns the answer's
    /// size. One at a time, in the main thread.
    std::function<std::size_t(std::span<const std::byte> request, std::span<FileDescriptor> descriptors,
                              std::span<std::byte> answer)>
        answer;
    /// Gives memory back that is kept for the next request. Called when none has come for a while; may be empty.
    std::function<void()> rest;
};

/// Prepares, gives up all that a confined process gives up (`confineProcess`), and answers requests (`ConfinedPool`)
/// until whoever asks is gone, also in the midst of one, or has asked nothing for half a minute; then the process ends.
/// Where memory runs short it ends at once and says why. Returns the exit status.
int serveConfined(const ConfinedService& service);

/// For a service that meets the want of memory by itself: ends the process in the midst of a request, and says why.
[[noreturn]] void leaveForWantOfMemory();

} // namespace lamina
