#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// The files of pictures that came from the network, a folder of the user's caches. Failures are ignored: without a
/// cache the network is asked. From any thread.
namespace progressivecache {

/// The folder; empty where the user has none for caches.
std::string folder();
/// The name of an address's file: its MD5 in 32 lower-case hexadecimal digits; empty for what is no UTF-8.
std::string fileName(const std::string& url);

/// Whether a file of that age is good; both in seconds, and equal is.
constexpr bool isFresh(double age, double cacheTime)
{
    return cacheTime >= age;
}
/// Seconds since the address's file was written; nothing where there is none.
std::optional<double> age(const std::string& url);
/// Its bytes; nothing where they can't be read.
std::optional<std::vector<std::uint8_t>> read(const std::string& url);
/// Writes it whole or not at all, and makes the folder.
void write(const std::string& url, std::span<const std::uint8_t> bytes);
void remove(const std::string& url);
void removeAll();

} // namespace progressivecache

} // namespace lamina
