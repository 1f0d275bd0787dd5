#pragma once

#include <string>

namespace lamina {

namespace cause {

inline constexpr const char* kNoThread = "the system has no more threads to give";
inline constexpr const char* kUnknown = "something went wrong";

} // namespace cause

/// The cause to tell people of the exception that is being handled: `cause::kNoMemory`, `cause::kNoThread`, or what it
/// says itself. To be called in a catch block, or in a handler of `std::terminate`; there may be no exception at all.
std::string causeOfException();

} // namespace lamina
