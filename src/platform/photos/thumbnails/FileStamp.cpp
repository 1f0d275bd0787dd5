#include "platform/photos/thumbnails/FileStamp.h"

#include <sys/stat.h>

namespace lamina {

std::optional<FileStamp> stampOfFile(const std::string& path)
{
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return FileStamp{status.st_dev, status.st_ino, status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec,
                     status.st_size, path};
}

} // namespace lamina
