#pragma once

#include <string>
#include <vector>

namespace lamina::test {

/// Copies the sample photos into `folder`, which is made, over and over until there are `count`: "01-aurora-lake.jpg"
/// and so on. Each is a minute older than the one before, the first `minutesOld`, so that their order is known. Gives
/// their paths.
std::vector<std::string> addSamplePhotos(const std::string& folder, int count, int minutesOld);

} // namespace lamina::test
