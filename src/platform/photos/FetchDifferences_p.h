#pragma once

#include "platform/photos/PHFetchResultChangeDetails.h"
#include "platform/photos/index/PhotoRecords.h"

#include <cstddef>
#include <optional>
#include <span>

namespace lamina {

/// How one list of photos, each in it once, becomes another, in the words of `PHFetchResultChangeDetails`; `changed`
/// are those whose content is another, in any order. Nothing when one of the lists would have more than `most` entries,
/// or all of `removed` and `inserted` together. Takes time in proportion to the lists.
std::optional<PHFetchResultChangeDetails::Lists> fetchDifferences(std::span<const PhotoID> before,
                                                                  std::span<const PhotoID> after,
                                                                  std::span<const PhotoID> changed, std::size_t most);

} // namespace lamina
