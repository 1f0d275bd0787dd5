#pragma once

#include <string>
#include <vector>

namespace lamina::bench {

inline constexpr int kManyPhotos = 50'000;
inline constexpr int kManyFolders = 100;

/// A folder with 50,000 photos in 100 folders, made once in the folder for temporary files: small JPEG files with as
/// much before their pixels as a phone writes, each with a date of its own. Ends the program when it can't be made.
std::string folderOfManyPhotos();

/// Gives this process a home of its own, new and empty, whose folder for pictures holds those photos. Before anything
/// asks for a folder of the user.
void moveIn();
/// Where that is.
std::string homeFolder();

/// So many files of 12 megapixels in a folder, made where they are missing.
std::vector<std::string> largePhotos(const std::string& folder, int count);

} // namespace lamina::bench
