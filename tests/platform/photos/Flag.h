#pragma once

#include "TestPaths.h"
#include "TestPictures.h"
#include "platform/image/pixels/CGImage.h"

#include <gtest/gtest.h>
#include <string>

namespace lamina::test {

/// The flag of four flat quarters, 64 × 48 when shown, stored in the turn of an EXIF tag (1 to 8).
inline std::string flagFile(int tag)
{
    return testData("pictures/exif-" + std::to_string(tag) + ".jpg");
}

/// The flag upright, or a middle part of it: red and green above, blue and yellow below.
inline testing::AssertionResult showsFlag(const CGImage& image)
{
    constexpr Rgba kQuarters[] = {{220, 40, 30, 255}, {30, 170, 60, 255}, {40, 60, 200, 255}, {240, 220, 40, 255}};
    testing::AssertionResult shown = testing::AssertionSuccess();
    for (int i = 0; i < 4 && shown; ++i)
        shown = pixelMatches(image, image.width() * (i % 2 * 2 + 1) / 4, image.height() * (i / 2 * 2 + 1) / 4,
                             kQuarters[i], 6);
    return shown;
}

} // namespace lamina::test
