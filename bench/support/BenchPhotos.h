#pragma once

#include <string>

namespace lamina::bench {

/// A JPEG of 4000 × 3000 pixels as a phone takes them (4:2:0, about 4 MB, a sample photo with fresh grain), made once
/// in the folder for temporary files. `variant` 0 or 1: two different photos. Ends the program when it can't be made.
std::string twelveMegapixelPhoto(int variant = 0);
/// The same with 11600 × 8700 pixels.
std::string hundredMegapixelPhoto();
/// The same with 9248 × 6936 pixels.
std::string sixtyFourMegapixelPhoto();
/// The same with 6000 × 4000 pixels.
std::string twentyFourMegapixelPhoto();
/// The same with 2000 × 1500 pixels at quality 85, about half a megabyte, of any sample.
std::string smallPhoto(int variant);
inline constexpr int kSmallPhotos = 6;

/// The same with 1125 × 1125 pixels, as large as what a blend leaves.
std::string photoOfABlend();

} // namespace lamina::bench
