#include "platform/files/SmallFile.h"

#include "platform/files/FileCauses.h"

#include <cerrno>
#include <cstdio>
#include <memory>

namespace lamina {

namespace {

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

Result<std::vector<std::uint8_t>> readSmallFile(const std::string& path, std::size_t mostBytes)
{
    const std::unique_ptr<std::FILE, Close> file(std::fopen(path.c_str(), "rbe"));
    if (!file)
        return Error{path, readingFailure(errno)};
    std::vector<std::uint8_t> bytes(mostBytes + 1);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    if (std::ferror(file.get()) != 0) // opening a folder succeeds, reading it does not
        return Error{path, readingFailure(errno)};
    if (bytes.size() > mostBytes)
        return Error{path, "the file is too large"};
    return bytes;
}

} // namespace lamina
