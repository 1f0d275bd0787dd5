#pragma once

#include "promotion/PromotionRecords.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lamina {

/// A feed's body, a JSON array of records in UTF-8; nothing when it is another, or when any of its records lacks a key
/// or has a value of another type. For `iOSAppList`, `CustomInterstrial` and `ImageDataResource`.
///
/// Further keys are passed over, and of a key that stands twice in a record the last one counts. An integer is a number
/// without a fraction (1 and 1.0) within 64 bits; null and true are none. An empty array is a feed. From any thread.
template <class Record>
std::optional<std::vector<Record>> decodeFeed(std::span<const std::uint8_t> body);

/// Made once, beside the reader.
extern template std::optional<std::vector<iOSAppList>> decodeFeed(std::span<const std::uint8_t>);
/// Likewise.
extern template std::optional<std::vector<CustomInterstrial>> decodeFeed(std::span<const std::uint8_t>);
/// Likewise.
extern template std::optional<std::vector<ImageDataResource>> decodeFeed(std::span<const std::uint8_t>);

} // namespace lamina
