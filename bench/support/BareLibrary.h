#pragma once

#include <cstddef>
#include <string>
#include <vector>

// What the photo library's work costs when only what can't be left out is done, by the bare libraries.

namespace lamina::bench {

/// Lists the folder and those in it, and opens each file, asks for its size and reads its first 4 KB. Gives the number
/// of files.
std::size_t walkBare(const std::string& folder);

/// Makes an SQLite file with one row for each of 50,000 photos, in one transaction.
void fillBareTable(const std::string& path);
/// Opens such a file and reads id, folder and date of every row, newest first, and then all columns of the first 24.
/// Gives the number of rows.
std::size_t readBareTable(const std::string& path);

/// Decodes JPEG files at an eighth of their sides, on two threads.
void decodeBare(const std::vector<std::string>& paths);

} // namespace lamina::bench
