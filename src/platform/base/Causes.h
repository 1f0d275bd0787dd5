#pragma once

/// Why things fail, in the one wording each cause has everywhere: English, short, without subject and full stop, as the
/// `cause` of an Error. Whoever shows one to the user translates it (`localizedString`). Causes that only one place
/// can give stay there.
namespace lamina::cause {

inline constexpr const char* kNoMemory = "not enough memory";
inline constexpr const char* kTruncated = "the file ends too early";
inline constexpr const char* kCancelled = "cancelled";

} // namespace lamina::cause
